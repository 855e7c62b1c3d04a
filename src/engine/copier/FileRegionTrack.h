#pragma once

#include "engine/writer/recorders/Recorder.h"

#include <QFile>

// A track whose sectors lie in a stretch of a file (a BIN, an ISO, the copier's temporary
// image). The last sector is completed with zeros where the file ends. Read on the worker.
class FileRegionTrack : public TrackSource {
public:
    FileRegionTrack(const QString &path, qint64 offset, qint64 sectors, bool audio);
    bool open();
    qint32 mode() const override { return m_audio ? 0 : 1; }
    qint64 blockCount() const override { return m_sectors; }
    bool read(char *buffer, qint64 bytes) override;
    bool breakSource() override {
        m_broken = true;
        return true;
    }

private:
    QFile m_file;
    qint64 m_offset, m_sectors;
    bool m_audio;
    qint64 m_done = 0;
    bool m_broken = false;
};
