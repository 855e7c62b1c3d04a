#include "DiscReadJob.h"

#include "CueSheet.h"
#include "DiscReader.h"

#include "engine/writer/jobs/FileSink.h"

#include <QDir>
#include <QFileInfo>

DiscReadJob::DiscReadJob(CD2CD *owner, Recorder &recorder, const QString &path, qint32 flag)
    : CopierJob(owner)
    , m_recorder(recorder)
    , m_path(path)
    , m_flag(flag) {}

QString DiscReadJob::cuePathOf(const QString &binPath) {
    const QFileInfo info(binPath);
    return info.dir().filePath(info.completeBaseName() + QStringLiteral(".cue"));
}

JobOutcome DiscReadJob::run() {
    const MediumState st = m_recorder.medium();
    if (!st.present())
        return JobOutcome::failed(
            4, QStringLiteral("There is no disc in %1.").arg(m_recorder.product()));
    if (st.lastSessionStart < 0 || st.lastSessionMode < 1)
        return JobOutcome::failed(
            4, QStringLiteral("The disc in %1 holds no data session.").arg(m_recorder.product()));
    // The last session's track: its blocks as the drive says they were written.
    qint32 blocks = 0;
    for (const auto &[start, count] : st.sessionExtents) {
        if (start == st.lastSessionStart)
            blocks = count;
    }
    if (blocks <= 0)
        return JobOutcome::failed(4, QStringLiteral("The size of the disc's last session can't be "
                                                    "learnt."));
    FileSink sink;
    if (!sink.open(m_path, true))
        return JobOutcome::failed(
            2, QStringLiteral("%1 can't be made: %2").arg(m_path, sink.errorString()));
    setShare(0, 100);
    DiscReader reader(*this, m_recorder);
    if (JobOutcome read = reader.readData(st.lastSessionStart, blocks, sink);
        read.kind != JobOutcome::Completed)
        return read; // the sink removes its hidden file
    if (m_flag == 1) {
        // Tools on libcdio measure a BIN in 2352-byte frames whatever its sheet says: zeros
        // after the sectors make them count the track's real length.
        const QByteArray pad(qint64(blocks) * (2352 - 2048), '\0');
        if (!sink.write(pad.constData(), pad.size()))
            return JobOutcome::failed(
                2, QStringLiteral("Writing %1 failed: %2").arg(m_path, sink.errorString()));
        FileSink cue;
        const QByteArray sheet = CueSheet::dataSheet(QFileInfo(m_path).fileName());
        if (!cue.open(cuePathOf(m_path), true) || !cue.write(sheet.constData(), sheet.size()) ||
            !cue.commit())
            return JobOutcome::failed(
                2, QStringLiteral("The cue sheet can't be written: %1").arg(cue.errorString()));
    }
    if (!sink.commit()) {
        if (m_flag == 1)
            QFile::remove(cuePathOf(m_path));
        return JobOutcome::failed(
            2, QStringLiteral("%1 can't be completed: %2").arg(m_path, sink.errorString()));
    }
    return JobOutcome::completed();
}
