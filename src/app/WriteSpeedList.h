#pragma once

#include <QList>
#include <QString>
#include <QVariant>

// The entries of the write speed list for a medium and a recorder's highest speed: text and
// item data (kB/s; none for "Default"), fastest first. Plain arithmetic, any thread.
class WriteSpeedList {
public:
    struct Entry {
        QString text;
        QVariant itemData;
        bool operator==(const Entry &) const = default;
    };

    // CD-RW, no medium and CD-R take CD speeds; every other medium type takes DVD speeds.
    static bool usesDvdSpeeds(qint32 mediaType);
    static QList<Entry> entries(qint32 mediaType, qint32 maxWriteSpeedKBS);
};
