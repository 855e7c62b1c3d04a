#pragma once

#include <QString>
#include <exception>
#include <string>

// A run-time error of the program: a number from the classic run-time error table and its
// description. Thrown by the numeric rules (overflow, bounds, conversions) and caught by the
// trap that every entry point from the event loop runs in.
class RuntimeError : public std::exception {
public:
    enum Number : int {
        InvalidProcedureCall = 5,
        Overflow = 6,
        OutOfMemory = 7,
        SubscriptOutOfRange = 9,
        DivisionByZero = 11,
        TypeMismatch = 13,
        FileNotFound = 53,
        FileAlreadyOpen = 55,
        DiskFull = 61,
        PermissionDenied = 70,
        PathNotFound = 76,
        ObjectVariableNotSet = 91,
        CancelSelected = 32755,
        SystemException = 65535,
    };

    RuntimeError(int number, QString description = QString());

    int number() const noexcept { return m_number; }
    const QString &description() const noexcept { return m_description; }
    const char *what() const noexcept override { return m_what.c_str(); }

    // The standard text of a run-time error number ("Overflow" for 6).
    static QString standardDescription(int number);

private:
    int m_number;
    QString m_description;
    std::string m_what;
};
