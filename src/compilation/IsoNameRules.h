#pragma once

#include <QString>

// Length limits a renamed item must meet before the engine sees it. Base and extension are
// cut at the first dot, each keeping the dot ("README.T" gives "README." and ".T"); which
// characters are allowed is the engine's business.
class IsoNameRules {
public:
    // The reason the name can't be used, or an empty text when it can.
    static QString violation(const QString &strNewName, qint32 isoFileSystem, qint32 isoLevel);
};
