#pragma once

#include "IsoLibrary.h"

#include <QString>

// Watches the reading of source files while an image is produced. Called on libisofs's writer
// thread.
class SourceReadObserver {
public:
    virtual ~SourceReadObserver() = default;
    virtual void fileOpened(const QString &path) = 0;
    // fileError: 0 opening, 2 reading (a file that shrank, vanished or fails to read).
    virtual void fileFailed(qint32 fileError, const QString &path) = 0;
    // The file holds more than the image was laid out for: only `laidOut` bytes are taken.
    virtual void fileGrew(const QString &path, qint64 laidOut, qint64 now) = 0;
};

// The contents of an image file taken from a local file of a size fixed when it was added.
// Reading it gives exactly that many bytes or fails: a file that vanished, shrank or can't be
// read is reported to the observer of the running job and never padded.
namespace SourceFileStream {
// A new stream (one reference, owned by the caller) or nullptr. The path is kept as the bytes
// the file system gave, so that a name in no valid encoding still opens.
IsoStream *create(const QByteArray &localPath, qint64 size);
// The source path of a stream made by create(), decoded for display; empty for any other.
QString sourcePath(IsoStream *stream);
bool isSourceStream(IsoStream *stream);

// What a look at the file behind a stream finds, compared with the size it was added with.
enum class SourceState { Same, Missing, NotRegular, Shrunk, Grew };
// `now` receives the file's current size when it is a regular file.
SourceState inspect(IsoStream *stream, qint64 *now);
// Lays the stream out for a new size (before any layout that includes it).
void resize(IsoStream *stream, qint64 size);
// The observer of the job that produces an image now; nullptr when none.
void setObserver(SourceReadObserver *observer);
} // namespace SourceFileStream
