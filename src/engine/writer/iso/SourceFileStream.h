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
};

// The contents of an image file taken from a local file of a size fixed when it was added.
// Reading it gives exactly that many bytes or fails: a file that vanished, shrank or can't be
// read is reported to the observer of the running job and never padded.
namespace SourceFileStream {
// A new stream (one reference, owned by the caller) or nullptr.
IsoStream *create(const QString &path, qint64 size);
// The source path of a stream made by create(); empty for any other stream.
QString sourcePath(IsoStream *stream);
// The observer of the job that produces an image now; nullptr when none.
void setObserver(SourceReadObserver *observer);
} // namespace SourceFileStream
