#include "IsoNameRules.h"

QString IsoNameRules::violation(const QString &strNewName, qint32 isoFileSystem, qint32 isoLevel) {
    const qsizetype intPos = strNewName.indexOf(u'.') + 1;
    QString strName = strNewName;
    QString strExt;
    if (intPos >= 1) {
        strName = strNewName.left(intPos);
        strExt = strNewName.mid(intPos - 1);
    }
    if (strName.isEmpty())
        return QStringLiteral("Item name cannot be blank.");
    if (strNewName.size() > 64 && isoFileSystem == 1)
        return QStringLiteral("Item Name violates Joliet naming rules (64 Char Max).");
    if (isoFileSystem == 1 && isoLevel == 1 && !(strName.size() <= 8 && strExt.size() <= 3))
        return QStringLiteral("Item Name violates ISO9660 Level 1 naming rules (8 + 3 Char Max).");
    if (strNewName.size() > 31 && isoFileSystem == 1 && isoLevel != 1)
        return QStringLiteral("Item Name violates ISO9660 Level 2 naming rules (31 Char Max).");
    return QString();
}
