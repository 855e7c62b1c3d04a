#pragma once

#include <QPixmap>
#include <QString>

// The large pictures of the kinds of disc the information dialog shows ("CDR", "CDROM",
// "CDRW", "DVDR", "DVDRW", "DVDRAM", "DVDROM", "AUDIO"): a disc with its kind written across.
// UI thread.
class MediaLogo {
public:
    static constexpr int Size = 48;
    static QPixmap pixmap(const QString &key);
};
