// A command-line handle on the engine and the copier for a person with a recorder:
// check-recorder.sh drives it step by step and reads the discs back with outside tools. Every
// step is one engine or copier command, as the windows call them; an event loop runs for their
// events.
#include "engine/copier/BlankDiscHandler.h"
#include "engine/copier/CD2CD.h"
#include "engine/writer/CDWriterPro.h"
#include "engine/writer/recorders/DriveScanner.h"
#include "engine/writer/recorders/Recorder.h"
#include "engine/writer/recorders/burn/BurnRecorder.h"

#include "base/App.h"

#include <QtCore>

#include <cstdio>

namespace {
QTextStream out(stdout);

int usage() {
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
    return 1;
}

// Waits for a job's one ending event and prints it as the script reads it: 0 complete,
// 2 error, 3 cancelled, 4 refused at once.
struct Ending {
    QEventLoop loop;
    int result = -1;
    void end(int code, const QString &text) {
        out << "RESULT " << text << "\n";
        out.flush();
        result = code;
        loop.quit();
    }
    int wait(bool started, const QString &why = {}) {
        if (!started)
            end(4, "refused " + why);
        else if (result < 0)
            loop.exec();
        return result;
    }
};

int engineJob(CDWriterPro &engine, bool cancelAtOne, const std::function<bool()> &start) {
    Ending e;
    QObject::connect(&engine, &CDWriterPro::TrackWriteStatus, &e.loop,
                     [&](qint32 t, qint32 done, qint32 total) {
                         const qint32 percent = total > 0 ? qint32(qint64(done) * 100 / total) : 0;
                         out << "TrackWriteStatus " << t << " " << percent << "%\n";
                         if (cancelAtOne && percent == 1)
                             engine.CancelWrite();
                     });
    QObject::connect(&engine, &CDWriterPro::ClosingSession, &e.loop,
                     [] { out << "closing session\n"; });
    QObject::connect(&engine, &CDWriterPro::ClosingDisc, &e.loop, [] { out << "closing disc\n"; });
    for (auto done : {&CDWriterPro::WriteComplete, &CDWriterPro::EraseDiscComplete})
        QObject::connect(&engine, done, &e.loop, [&] { e.end(0, "complete"); });
    QObject::connect(&engine, &CDWriterPro::WriteCancelled, &e.loop,
                     [&] { e.end(3, "cancelled"); });
    QObject::connect(
        &engine, &CDWriterPro::WriteError, &e.loop,
        [&](qint32 w, qint32 d, const QString &info, const QString &sense) {
            e.end(2, QStringLiteral("error %1 %2 %3 | %4").arg(w).arg(d).arg(info, sense));
        });
    return e.wait(start());
}

int copierJob(CD2CD &copier, qint32 started) {
    Ending e;
    QObject::connect(&copier, &CD2CD::JobComplete, &e.loop, [&] { e.end(0, "complete"); });
    QObject::connect(&copier, &CD2CD::JobFailed, &e.loop,
                     [&](const QString &why) { e.end(2, "error " + why); });
    return e.wait(started >= 0, copier.ResultText());
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

// The index of the drive listed for `device`. File drives share one letter and are listed in
// the order they were added, so a copy's file DEST is the last of them.
qint32 indexOf(const CDWriterPro &engine, const QString &device, bool last = false) {
    qint32 found = -1;
    for (qint32 i = 0; i < engine.DriveCount(); ++i)
        if (engine.DriveLetter(i) == BurnRecorder::letterOf(device) && (found < 0 || last))
            found = i;
    return found;
}

int info(CDWriterPro &engine, const Recorder &drive) {
    out << "MediaType " << engine.MediaType() << "\nDiscStatus " << engine.DiscStatus()
        << "\nLastSessionStatus " << engine.LastSessionStatus() << "\nDiscType "
        << engine.DiscType() << "\nSessionCount " << engine.SessionCount() << "\nFreeBlocks "
        << engine.FreeBlocks() << "\nMaxWriteSpeed " << engine.MaxWriteSpeed() << "\nSpeeds";
    for (qint32 s : drive.writeSpeeds())
        out << " " << s;
    out << "\nCapabilities";
    for (qint32 code : {0, 1, 3, 4, 5, 6, 7, 9, 10, 36, 37, 38, 39, 40, 41, 42})
        out << " " << code << "=" << engine.CurrentDriveCapability(code);
    const MediumState st = drive.medium();
    out << "\nNextWritable " << st.nextWritableAddress << "\nLastSessionStart "
        << st.lastSessionStart << "\n";
    return 0;
}

int copierCommand(CDWriterPro &engine, const QString &device, const QString &command,
                  const QStringList &rest) {
    const qint32 index = indexOf(engine, device);
    CD2CD copier(&engine);
    TrayAtTheDesk desk;
    desk.copier = &copier;
    copier.setBlankDiscHandler(&desk);
    const qint32 address = copier.DeviceAddress(index);
    const QString file = rest.value(0);
    const qint32 test = rest.contains(QStringLiteral("--test")) ? 1 : 0;
    if (command == u"readdisc")
        return copierJob(copier,
                         copier.ReadDiscToFile(address, file, file.endsWith(u".bin") ? 1 : 0));
    if (command == u"cue")
        return copierJob(copier, copier.SubmitAudioJob(address, file, CD2CD::MaxSpeed, test, 0));
    const qint32 target = indexOf(engine, file, file != device);
    return copierJob(
        copier, copier.CopyDisc(address, copier.DeviceAddress(target), CD2CD::MaxSpeed, test, 0));
}
} // namespace

int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments().mid(1);
    if (args.size() < 2)
        return usage();
    QTemporaryDir appFolder;
    App::setPath(appFolder.path());
    const QString device = args[0], command = args[1];
    const QStringList rest = args.mid(2);

    // A file drive ("stdio:/path") lets the script be tried out without a recorder; a copy's
    // second file drive is listed after it.
    if (device.startsWith(u"stdio:"))
        DriveScanner::addPseudoDrive(device.mid(6));
    const QString destination = command == u"copy" ? rest.value(0) : QString();
    if (destination.startsWith(u"stdio:") && destination != device)
        DriveScanner::addPseudoDrive(destination.mid(6));
    CDWriterPro engine;
    engine.InitializeDrives(false);
    if (command == u"list") {
        for (qint32 i = 0; i < engine.DriveCount(); ++i)
            out << i << " " << engine.DriveLetter(i) << " | " << engine.DriveVendor(i) << " | "
                << engine.DriveProduct(i) << " | recorder " << engine.DriveIsRecorder(i) << "\n";
        return 0;
    }
    const qint32 index = indexOf(engine, device);
    if (index < 0 || !engine.SelectDrive(index)) {
        out << "no drive " << device << "\n";
        return 1;
    }
    if (command == u"readdisc" || command == u"cue" || command == u"copy")
        return copierCommand(engine, device, command, rest);
    if (command == u"info")
        return info(engine, *engine.recorder(index));
    if (command == u"tray") {
        engine.MoveTray(rest.value(0) == u"close");
        return 0;
    }
    if (command == u"erase")
        return engineJob(engine, false,
                         [&] { return engine.EraseDisc(rest.value(0) == u"quick"); });
    if (command == u"finish")
        return engineJob(engine, false,
                         [&] { return engine.FinishDisc(rest.value(0) == u"disc"); });
    engine.setUseFileModifiedDate(true);
    engine.setCloseSession(true);
    engine.SetLogging(true, appFolder.filePath("Burnlog.txt"));
    int result = 1;
    if (command == u"audio") {
        engine.setTrackMode(0);
        engine.setFinalizeDisc(true);
        for (qint32 i = 0; i < rest.size(); ++i)
            engine.AddAudioTrack(rest[i], i + 1);
        result = engineJob(engine, false, [&] { return engine.WriteDisc(); });
    } else {
        engine.setTrackMode(1);
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
        if (command == u"iso") {
            result = engineJob(engine, false, [&] { return engine.WriteISOFile(dir); });
        } else if (command == u"write" || command == u"append" || command == u"cancel") {
            const bool append = command == u"append";
            if (append && !engine.ImportLastSession(true)) {
                out << "RESULT import refused\n";
                return 4;
            }
            engine.AddISODirectory(append ? QStringLiteral("\\added") : QStringLiteral("\\"),
                                   dir + QStringLiteral("/*.*"));
            result = engineJob(engine, command == u"cancel", [&] { return engine.WriteDisc(); });
        } else {
            return usage();
        }
    }
    QFile log(appFolder.filePath("Burnlog.txt"));
    if (log.open(QIODevice::ReadOnly))
        out << "---- engine log ----\n" << log.readAll() << "\n";
    return result;
}
