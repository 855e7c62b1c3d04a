#include "RuntimeError.h"

RuntimeError::RuntimeError(int number, QString description)
    : m_number(number)
    , m_description(description.isEmpty() ? standardDescription(number) : std::move(description))
    , m_what(
          QStringLiteral("Run-time error %1: %2").arg(m_number).arg(m_description).toStdString()) {}

QString RuntimeError::standardDescription(int number) {
    switch (number) {
    case 3:
        return QStringLiteral("Return without GoSub");
    case InvalidProcedureCall:
        return QStringLiteral("Invalid procedure call or argument");
    case Overflow:
        return QStringLiteral("Overflow");
    case OutOfMemory:
        return QStringLiteral("Out of memory");
    case SubscriptOutOfRange:
        return QStringLiteral("Subscript out of range");
    case DivisionByZero:
        return QStringLiteral("Division by zero");
    case TypeMismatch:
        return QStringLiteral("Type mismatch");
    case FileNotFound:
        return QStringLiteral("File not found");
    case FileAlreadyOpen:
        return QStringLiteral("File already open");
    case DiskFull:
        return QStringLiteral("Disk full");
    case PermissionDenied:
        return QStringLiteral("Permission denied");
    case PathNotFound:
        return QStringLiteral("Path not found");
    case ObjectVariableNotSet:
        return QStringLiteral("Object variable or With block variable not set");
    case CancelSelected:
        return QStringLiteral("Cancel was selected.");
    default:
        return QStringLiteral("Application-defined or object-defined error");
    }
}
