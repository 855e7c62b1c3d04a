#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

// An ISO 9660 session as outside tools read it: every regular file (its Rock Ridge path,
// "/dir/name") with the SHA-256 of its bytes. An empty map when the tool failed or read nothing.
namespace IsoReadBack {
enum class Tool { Xorriso, Isoinfo, Bsdtar };
// `session` is the session's first block on a disc image; bsdtar reads the first session only.
QMap<QString, QByteArray> files(Tool tool, const QString &image, qint32 session = 0);
QByteArray sha256(const QString &path);
} // namespace IsoReadBack
