#pragma once

#include <QString>

// The check a new item name passes before a rename in the data window. The name is split at
// its first dot with the dot counted in both parts ("README.T" is "README." and ".T"), and
// only the lengths are looked at: the engine decides what to do with the characters.
class IsoNameRules {
public:
    // The reason the name can't be used, or an empty text when it can.
    static QString violation(const QString &strNewName, qint32 isoFileSystem, qint32 isoLevel);
};
