#include "EngineVersions.h"

#include <QRegularExpression>
#include <QtGlobal>

#include <blkid/blkid.h>
#include <cdio/version.h>
#include <lame/lame.h>
#include <libburn/libburn.h>
#include <libisofs/libisofs.h>
#include <sndfile.h>
#include <vorbis/codec.h>
#include <zip.h>
extern "C" {
#include <libavcodec/avcodec.h>
}

namespace {

QString triple(int major, int minor, int micro) {
    return QStringLiteral("%1.%2.%3").arg(major).arg(minor).arg(micro);
}

// The first run of digits and dots in a library's own banner ("libsndfile-1.2.0",
// "2.1.0 x86_64-pc-linux-gnu"), or the whole banner when it holds none.
QString numberIn(const char *banner) {
    const QString text = QString::fromUtf8(banner ? banner : "");
    static const QRegularExpression number(QStringLiteral(R"(\d+(\.\d+)+)"));
    const auto match = number.match(text);
    return match.hasMatch() ? match.captured(0) : text.trimmed();
}

} // namespace

QList<EngineVersion> engineVersions() {
    QList<EngineVersion> list;
    int major = 0, minor = 0, micro = 0;
    burn::burn_version(&major, &minor, &micro);
    list.append({QStringLiteral("libburn"), triple(major, minor, micro),
                 QStringLiteral("talks to the recorders"), QStringLiteral("GPL-2.0-or-later"),
                 QStringLiteral("https://dev.lovelyhq.com/libburnia")});
    iso_lib_version(&major, &minor, &micro);
    list.append({QStringLiteral("libisofs"), triple(major, minor, micro),
                 QStringLiteral("builds the ISO 9660 images"), QStringLiteral("GPL-2.0-or-later"),
                 QStringLiteral("https://dev.lovelyhq.com/libburnia")});
    list.append({QStringLiteral("libcdio"), numberIn(cdio_version_string),
                 QStringLiteral("reads audio discs"), QStringLiteral("GPL-3.0-or-later"),
                 QStringLiteral("https://www.gnu.org/software/libcdio/")});
    const char *blkidVersion = nullptr;
    blkid_get_library_version(&blkidVersion, nullptr);
    list.append({QStringLiteral("libblkid"), numberIn(blkidVersion),
                 QStringLiteral("names the volumes and file systems"),
                 QStringLiteral("LGPL-2.1-or-later"),
                 QStringLiteral("https://github.com/util-linux/util-linux")});
    list.append({QStringLiteral("LAME"), numberIn(get_lame_version()),
                 QStringLiteral("encodes MP3 files"), QStringLiteral("LGPL-2.0-or-later"),
                 QStringLiteral("https://lame.sourceforge.io/")});
    // The Vorbis banner carries a date, not a dotted number: keep what follows the vendor.
    QString vorbis = QString::fromUtf8(vorbis_version_string());
    vorbis.remove(QStringLiteral("Xiph.Org libVorbis "));
    list.append({QStringLiteral("libvorbis"), vorbis, QStringLiteral("encodes Ogg Vorbis files"),
                 QStringLiteral("BSD-3-Clause"), QStringLiteral("https://xiph.org/vorbis/")});
    const unsigned codec = avcodec_version();
    list.append({QStringLiteral("libavcodec"),
                 triple(int(codec >> 16), int((codec >> 8) & 0xff), int(codec & 0xff)),
                 QStringLiteral("encodes Windows Media files"), QStringLiteral("LGPL-2.1-or-later"),
                 QStringLiteral("https://ffmpeg.org/")});
    list.append({QStringLiteral("libsndfile"), numberIn(sf_version_string()),
                 QStringLiteral("reads and writes wave files"), QStringLiteral("LGPL-2.1-or-later"),
                 QStringLiteral("https://libsndfile.github.io/libsndfile/")});
    list.append({QStringLiteral("libzip"), numberIn(zip_libzip_version()),
                 QStringLiteral("packs the error report"), QStringLiteral("BSD-3-Clause"),
                 QStringLiteral("https://libzip.org/")});
    list.append({QStringLiteral("Qt"), QString::fromLatin1(qVersion()),
                 QStringLiteral("draws the windows"), QStringLiteral("LGPL-3.0-only"),
                 QStringLiteral("https://www.qt.io/")});
    return list;
}
