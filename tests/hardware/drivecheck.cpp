// A command-line handle on the engine for a person with a recorder: check-recorder.sh drives
// it step by step and reads the discs back with outside tools. Runs on one thread with an
// event loop for the engine's events.
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
           "  cancel DIR                    write DIR and cancel at 1 %\n";
    out.flush();
}

// Runs one of the engine's jobs and waits for its one ending event.
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
    for (auto signal : {&CDWriterPro::WriteComplete, &CDWriterPro::EraseDiscComplete})
        QObject::connect(&engine, signal, &loop, [&] {
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
    CDWriterPro engine;
    engine.InitializeDrives(false);
    qint32 index = -1;
    for (qint32 i = 0; i < engine.DriveCount(); ++i) {
        if (command == u"list")
            out << i << " " << engine.DriveLetter(i) << " | " << engine.DriveVendor(i) << " | "
                << engine.DriveProduct(i) << " | recorder " << engine.DriveIsRecorder(i) << "\n";
        if (engine.DriveLetter(i) == BurnRecorder::letterOf(device))
            index = i;
    }
    if (command == u"list")
        return 0;
    if (index < 0 || !engine.SelectDrive(index)) {
        out << "no drive " << device << "\n";
        return 1;
    }
    BurnRecorder direct({device, {}, {}, true});

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
        return engineWrite(engine, false,
                           [&] { return engine.EraseDisc(rest.value(0) == u"quick"); });
    if (command == u"finish")
        return engineWrite(engine, false,
                           [&] { return engine.FinishDisc(rest.value(0) == u"disc"); });
    if (command == u"audio") {
        engine.setTrackMode(0);
        engine.setFinalizeDisc(true);
        for (const QString &wav : rest)
            if (!engine.AddAudioTrack(wav, engine.AudioTrackCount() + 1)) {
                out << "RESULT refused " << wav << "\n";
                return 4;
            }
        return engineWrite(engine, false, [&] { return engine.WriteDisc(); });
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
