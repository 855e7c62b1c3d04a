#pragma once

#include <QtCore>

class QTemporaryDir;

// Discs, ISO files, audio images and printed PDF files read back by tools nobody here wrote.
namespace ReadBack {

// Standard output; the exit code in *status (-1 when it crashed).
QByteArray run(const QString &program, const QStringList &args, int *status = nullptr);
QByteArray sha256(const QString &path);
// A session of -1 is the last one; sorted.
QStringList xorrisoFiles(const QString &image, qint32 session = -1, const QString &type = "f");
// The SHA-256 of the extracted file.
QByteArray xorrisoExtract(const QString &image, const QString &path, QTemporaryDir &dir,
                          qint32 session = -1);
// (start, blocks) of each session.
QList<QPair<int, int>> xorrisoToc(const QString &image);
// "/dir/name" of every regular file with the SHA-256 of its bytes; empty when the tool failed.
enum class Tool { Xorriso, Isoinfo, Bsdtar };
QMap<QString, QByteArray> fileHashes(Tool tool, const QString &image, qint32 session = 0);
// "failed" when it fails.
QByteArray cdParanoiaTrack(const QString &cue, int track, QTemporaryDir &dir);
// Of every track and of the lead-out, in sectors.
QList<int> cdInfoTrackStarts(const QString &cue);
// The samples, silence to the end of the last frame, and the two-second gap before the next
// track, which the table counts to this one.
QByteArray ripOfTrack(const QByteArray &pcm, bool last);
// `pdftotext -layout` of one page (from 1), or of all for 0, without blank lines, runs of
// spaces squeezed to one.
QString pdfText(const QString &pdf, int page = 0);
QString pdfInfo(const QString &pdf, const QString &field);
// In points, as `pdftotext -bbox` places the first such word; -1 when it is not there.
double pdfWordLeft(const QString &pdf, const QString &word, int page = 1);

} // namespace ReadBack
