#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QPair>
#include <QString>
#include <QStringList>

class QTemporaryDir;

// Discs, ISO files, audio images and printed PDF files read back by tools nobody here wrote.
namespace ReadBack {

// Runs a program and gives its standard output; exit code in *status (-1 when it crashed).
QByteArray run(const QString &program, const QStringList &args, int *status = nullptr);
QByteArray sha256(const QString &path);

// What xorriso finds of a type ("f" files, "d" folders) in the session at `session` (-1: the
// last one), sorted.
QStringList xorrisoFiles(const QString &image, qint32 session = -1, const QString &type = "f");
// The SHA-256 of a file xorriso extracts from the session at `session` (-1: the last one).
QByteArray xorrisoExtract(const QString &image, const QString &path, QTemporaryDir &dir,
                          qint32 session = -1);
// The sessions xorriso finds on an image, as (start, blocks).
QList<QPair<int, int>> xorrisoToc(const QString &image);
// A file's bytes as isoinfo extracts them; "<isoinfo failed>" when it fails.
QByteArray isoinfoFile(const QString &image, const QString &path, bool rockRidge = true);
// Every regular file of the session at `session` ("/dir/name") with the SHA-256 of its bytes:
// as xorriso extracts them, as isoinfo reads each of those, or as bsdtar extracts them (the
// first session only). Empty when the tool failed.
enum class Tool { Xorriso, Isoinfo, Bsdtar };
QMap<QString, QByteArray> fileHashes(Tool tool, const QString &image, qint32 session = 0);
// One track of an audio image ripped by cd-paranoia; "failed" when it fails.
QByteArray cdParanoiaTrack(const QString &cue, int track, QTemporaryDir &dir);
// The start of every track and of the lead-out of an audio image, in sectors, as cd-info
// lists them.
QList<int> cdInfoTrackStarts(const QString &cue);
// What a track of these samples is ripped back as: the samples, silence to the end of the last
// frame, and the two-second gap before the next track, which the table counts to this one.
QByteArray ripOfTrack(const QByteArray &pcm, bool last);

// `pdftotext -layout` of one page (from 1), or of all pages for 0, with the blank lines left
// out and the runs of spaces between columns squeezed to one.
QString pdfText(const QString &pdf, int page = 0);
// One field of `pdfinfo` ("Pages", "Title"), trimmed.
QString pdfInfo(const QString &pdf, const QString &field);
// The left edge in points of the first word `word` on a page, as `pdftotext -bbox` places it;
// -1 when the word is not there.
double pdfWordLeft(const QString &pdf, const QString &word, int page = 1);

} // namespace ReadBack
