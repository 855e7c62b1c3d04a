// A command-line handle on the engine for a person with a recorder: check-recorder.sh drives
// it step by step and reads the discs back with outside tools. Runs on one thread with an
// event loop for the engine's events.
#include "engine/copier/BlankDiscHandler.h"
#include "engine/copier/CD2CD.h"
#include "engine/writer/CDWriterPro.h"
#include "engine/writer/recorders/DriveScanner.h"
#include "engine/writer/recorders/Recorder.h"
#include "engine/writer/recorders/burn/BurnRecorder.h"

#include "base/App.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>

#include <cstdio>

namespace {
QTextStream out(stdout);

void usage() {
    out << "usage: tessaly-drivecheck DEVICE COMMAND [ARGS]\n"
           "  list                          drives, as the engine lists them\n"
           "  info                          inquiry, capabilities, speeds, medium state\n"
           "  write [--test] [--final] [--speed KBS] DIR   data session of DIR's contents\n"
           "  append DIR                    import the last session, add DIR, write\n"
           "  iso FILE                      write an ISO file\n"
           "  audio WAV...                  audio CD of 44.1 kHz 16-bit stereo wave files\n"
           "  erase quick|full              blank or clear the medium\n"
           "  finish session|disc           close the session or the disc\n"
           "  tray open|close\n"
           "  cancel DIR                    write DIR and cancel at 1 %\n"
           "  readdisc FILE                 the last session into FILE (.bin: with a cue sheet)\n"
           "  cue FILE [--test]             write a cue sheet's tracks to the blank disc\n"
           "  copy DEST [--test]            copy the disc to the recorder DEST (may be DEVICE)\n";
    out.flush();
}

// The samples of a wave file's "data" chunk, as an audio track.
class WaveTrack : public TrackSource {
public:
    explicit WaveTrack(const QString &path)
        : m_file(path) {
        if (!m_file.open(QIODevice::ReadOnly) || !m_file.seek(12))
            return;
        // Walks the chunks after "RIFF....WAVE" to the samples.
        while (m_file.bytesAvailable() >= 8) {
            const QByteArray head = m_file.read(8);
            const auto *u = reinterpret_cast<const unsigned char *>(head.constData() + 4);
            const qint64 size =
                qint64(u[0]) | qint64(u[1]) << 8 | qint64(u[2]) << 16 | qint64(u[3]) << 24;
            if (head.startsWith("data")) {
                m_bytes = std::min(size, m_file.bytesAvailable());
                return;
            }
            if (!m_file.seek(m_file.pos() + size + (size & 1)))
                return;
        }
    }
    qint32 mode() const override { return 0; }
    qint64 blockCount() const override { return (m_bytes + 2351) / 2352; }
    bool read(char *buffer, qint64 bytes) override {
        const qint64 want = std::min(bytes, m_bytes - m_done);
        const qint64 got = want > 0 ? m_file.read(buffer, want) : 0;
        if (got != want)
            return false;
        m_done += got;
        std::fill(buffer + got, buffer + bytes, 0);
        return true;
    }

private:
    QFile m_file;
    qint64 m_bytes = 0;
    qint64 m_done = 0;
};

class PrintingMonitor : public JobMonitor {
public:
    void trackStarted(qint32 n) override { out << "track " << n << " starts\n"; }
    void trackProgress(qint32 n, qint64 done, qint64 total) override {
        if (total > 0 && done * 10 / total != m_last) {
            m_last = done * 10 / total;
            out << "track " << n << ": " << done << " of " << total << "\n";
            out.flush();
        }
    }
    void closingTrack(qint32 n) override { out << "closing track " << n << "\n"; }
    void closingSession() override { out << "closing session\n"; }
    void closingDisc() override { out << "closing disc\n"; }
    bool cancelRequested() const override { return false; }
    void log(const QString &line) override { out << "log: " << line << "\n"; }

private:
    qint64 m_last = -1;
};

int ending(const JobOutcome &o) {
    if (o.kind == JobOutcome::Completed) {
        out << "RESULT complete\n";
        return 0;
    }
    if (o.kind == JobOutcome::Cancelled) {
        out << "RESULT cancelled\n";
        return 3;
    }
    out << "RESULT error " << o.writeError << " " << o.driveError << " " << o.errorInfo << " | "
        << o.senseInfo << "\n";
    return 2;
}

// Runs a copier job and waits for its one ending event.
int copierJob(CD2CD &copier, const std::function<qint32()> &start) {
    int result = 1;
    QEventLoop loop;
    QObject::connect(&copier, &CD2CD::JobComplete, &loop, [&] {
        out << "RESULT complete\n";
        result = 0;
        loop.quit();
    });
    QObject::connect(&copier, &CD2CD::JobFailed, &loop, [&](const QString &why) {
        out << "RESULT error " << why << "\n";
        result = 2;
        loop.quit();
    });
    if (start() < 0) {
        out << "RESULT refused " << copier.ResultText() << "\n";
        return 4;
    }
    loop.exec();
    out.flush();
    return result;
}

// A person at the drive: the tray opens, and Enter closes it on the blank disc put in.
struct TrayAtTheDesk : BlankDiscHandler {
    CD2CD *copier = nullptr;
    void blankDiscWanted(qint32 address, const QString &driveName) override {
        out << "put a blank disc into " << driveName << " and press Enter\n";
        out.flush();
        std::getchar();
        copier->CloseTray(address);
    }
};

// Runs the engine's write and waits for its one ending event.
int engineWrite(CDWriterPro &engine, bool cancelAtOne, const std::function<bool()> &start) {
    int result = 1;
    QEventLoop loop;
    QObject::connect(&engine, &CDWriterPro::TrackWriteStatus, &loop,
                     [&](qint32 t, qint32 done, qint32 total) {
                         const qint32 percent = total > 0 ? qint32(qint64(done) * 100 / total) : 0;
                         out << "TrackWriteStatus " << t << " " << percent << "%\n";
                         out.flush();
                         if (cancelAtOne && percent == 1)
                             engine.CancelWrite();
                     });
    for (auto signal : {&CDWriterPro::ClosingSession, &CDWriterPro::ClosingDisc})
        QObject::connect(&engine, signal, &loop, [] { out << "closing\n"; });
    QObject::connect(&engine, &CDWriterPro::WriteComplete, &loop, [&] {
        out << "RESULT complete\n";
        result = 0;
        loop.quit();
    });
    QObject::connect(&engine, &CDWriterPro::WriteCancelled, &loop, [&] {
        out << "RESULT cancelled\n";
        result = 3;
        loop.quit();
    });
    QObject::connect(&engine, &CDWriterPro::WriteError, &loop,
                     [&](qint32 w, qint32 d, const QString &info, const QString &sense) {
                         out << "RESULT error " << w << " " << d << " " << info << " | " << sense
                             << "\n";
                         result = 2;
                         loop.quit();
                     });
    if (!start()) {
        out << "RESULT refused\n";
        return 4;
    }
    loop.exec();
    out.flush();
    return result;
}
} // namespace

int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments().mid(1);
    if (args.size() < 2) {
        usage();
        return 1;
    }
    QTemporaryDir appFolder;
    App::setPath(appFolder.path());
    const QString device = args[0], command = args[1];
    const QStringList rest = args.mid(2);

    // A file drive ("stdio:/path") lets the script be tried out without a recorder.
    if (device.startsWith(u"stdio:"))
        DriveScanner::addPseudoDrive(device.mid(6));
    // A copy's second drive; file drives are listed in the order they were added.
    const QString destination = command == u"copy" ? rest.value(0) : QString();
    if (destination.startsWith(u"stdio:") && destination != device)
        DriveScanner::addPseudoDrive(destination.mid(6));
    CDWriterPro engine;
    engine.InitializeDrives(false);
    qint32 index = -1;
    for (qint32 i = 0; i < engine.DriveCount(); ++i) {
        if (command == u"list")
            out << i << " " << engine.DriveLetter(i) << " | " << engine.DriveVendor(i) << " | "
                << engine.DriveProduct(i) << " | recorder " << engine.DriveIsRecorder(i) << "\n";
        if (index < 0 && engine.DriveLetter(i) == BurnRecorder::letterOf(device))
            index = i; // the first: a file DEST is added after DEVICE
    }
    if (command == u"list")
        return 0;
    if (index < 0 || !engine.SelectDrive(index)) {
        out << "no drive " << device << "\n";
        return 1;
    }
    BurnRecorder direct({device, {}, {}, true});
    PrintingMonitor monitor;

    if (command == u"readdisc" || command == u"cue" || command == u"copy") {
        CD2CD copier(&engine);
        TrayAtTheDesk desk;
        desk.copier = &copier;
        copier.setBlankDiscHandler(&desk);
        const qint32 address = copier.DeviceAddress(index);
        const QString file = rest.value(0);
        const qint32 test = rest.contains(QStringLiteral("--test")) ? 1 : 0;
        if (command == u"readdisc")
            return copierJob(copier, [&] {
                return copier.ReadDiscToFile(address, file, file.endsWith(u".bin") ? 1 : 0);
            });
        if (command == u"cue")
            return copierJob(copier, [&] {
                return copier.SubmitAudioJob(address, file, CD2CD::MaxSpeed, test, 0);
            });
        // File drives are listed in the order they were added: a file DEST is the last one.
        qint32 target = address;
        for (qint32 i = 0; i < engine.DriveCount(); ++i)
            if (destination != device &&
                engine.DriveLetter(i) == BurnRecorder::letterOf(destination))
                target = copier.DeviceAddress(i);
        return copierJob(
            copier, [&] { return copier.CopyDisc(address, target, CD2CD::MaxSpeed, test, 0); });
    }

    if (command == u"info") {
        out << "MediaType " << engine.MediaType() << "\nDiscStatus " << engine.DiscStatus()
            << "\nLastSessionStatus " << engine.LastSessionStatus() << "\nDiscType "
            << engine.DiscType() << "\nSessionCount " << engine.SessionCount() << "\nFreeBlocks "
            << engine.FreeBlocks() << "\nMaxWriteSpeed " << engine.MaxWriteSpeed() << "\nSpeeds";
        for (qint32 s : direct.writeSpeeds())
            out << " " << s;
        out << "\nCapabilities";
        for (qint32 code : {0, 1, 3, 4, 5, 6, 7, 9, 10, 36, 37, 38, 39, 40, 41, 42})
            out << " " << code << "=" << engine.CurrentDriveCapability(code);
        const MediumState st = direct.medium();
        out << "\nNextWritable " << st.nextWritableAddress << "\nLastSessionStart "
            << st.lastSessionStart << "\n";
        return 0;
    }
    if (command == u"tray") {
        engine.MoveTray(rest.value(0) == u"close");
        return 0;
    }
    if (command == u"erase")
        return ending(direct.erase(rest.value(0) == u"quick", monitor));
    if (command == u"finish")
        return ending(direct.finish(rest.value(0) == u"disc", monitor));
    if (command == u"audio") {
        std::vector<std::unique_ptr<WaveTrack>> tracks;
        WritePlan plan;
        for (const QString &wav : rest) {
            tracks.push_back(std::make_unique<WaveTrack>(wav));
            plan.tracks.push_back(tracks.back().get());
        }
        plan.finalize = true;
        plan.startAddress = direct.medium().nextWritableAddress;
        return ending(direct.write(plan, monitor));
    }
    engine.setUseFileModifiedDate(true);
    engine.ClearISOImage();
    engine.setCloseSession(true);
    engine.setTrackMode(1);
    engine.SetLogging(true, appFolder.filePath("Burnlog.txt"));
    bool cancel = false;
    QString dir;
    for (int i = 0; i < rest.size(); ++i) {
        if (rest[i] == u"--test")
            engine.setTestWrite(true);
        else if (rest[i] == u"--final")
            engine.setFinalizeDisc(true);
        else if (rest[i] == u"--speed" && i + 1 < rest.size())
            engine.SetWriteSpeed(rest[++i].toInt());
        else
            dir = rest[i];
    }
    int result = 1;
    if (command == u"iso") {
        result = engineWrite(engine, false, [&] { return engine.WriteISOFile(dir); });
    } else if (command == u"write" || command == u"append" || command == u"cancel") {
        if (command == u"append" && !engine.ImportLastSession(true)) {
            out << "RESULT import refused\n";
            return 4;
        }
        cancel = command == u"cancel";
        engine.AddISODirectory(command == u"append" ? QStringLiteral("\\added")
                                                    : QStringLiteral("\\"),
                               dir + QStringLiteral("/*.*"));
        result = engineWrite(engine, cancel, [&] { return engine.WriteDisc(); });
    } else {
        usage();
        return 1;
    }
    QFile log(appFolder.filePath("Burnlog.txt"));
    if (log.open(QIODevice::ReadOnly))
        out << "---- engine log ----\n" << log.readAll() << "\n";
    return result;
}
