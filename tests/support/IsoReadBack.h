#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

// An ISO 9660 session as outside tools read it: every regular file ("/dir/name", Rock Ridge)
// with the SHA-256 of its bytes; empty when the tool failed.
namespace IsoReadBack {
enum class Tool { Xorriso, Isoinfo, Bsdtar };
// `session`: the session's first block on a disc image. bsdtar reads the first session only;
// isoinfo reads the files xorriso finds.
QMap<QString, QByteArray> files(Tool tool, const QString &image, qint32 session = 0);
QByteArray sha256(const QString &path);
} // namespace IsoReadBack
