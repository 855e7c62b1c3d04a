// Failures on purpose through the Image Recorder's settings: each reaches the windows exactly as
// a real one would, leaves nothing held, and the next job works.
#include "EngineRig.h"
#include "Fixtures.h"
#include "Rows.h"

#include "app/modGlobals.h"
#include "base/IniFile.h"
#include "engine/notify/CDNotify.h"
#include "engine/writer/recorders/image/ImageRecorder.h"

#include <QtTest>

using namespace Fixtures;

namespace {
// The box text the WriteError handlers build; `label` is the main frame's sense label or the
// dialogs' one with its leading blank.
QString failureText(const EngineProbe &probe, const QString &sense, const QString &label) {
    QString text =
        QStringLiteral("Writing Error: (%1)   %2\r\n").arg(probe.writeError).arg(probe.errorInfo);
    if (probe.writeError == 3)
        text += GetDriveErrorMessage(probe.driveError) + "\r\n" + label + sense;
    return text;
}

} // namespace

class tst_Failures : public QObject {
    Q_OBJECT
private slots:
    void duringWrite_data() {
        QTest::addColumn<QString>("job"); // audio, data or isofile
        columns<QStringList, QStringList>("settings", "events");
        // text: %1 the failed file, where a file failed; discStatus: after the failure; -1 no disc
        // in the drive
        columns<QString, QString, int>("text", "statusLine", "discStatus");
        const auto row = [](const char *name, const char *job, const QStringList &settings,
                            const QStringList &events, const QString &text, int discStatus) {
            const bool unreadable = text.startsWith("Writing Error: (1)");
            QTest::newRow(name) << QString(job) << settings << events << text
                                << (unreadable ? " ERROR: Error Reading file: %1%1" : "")
                                << discStatus;
        };
        const QStringList audio{"PreparingToWrite", "ReadingTrackFile", "TrackWriteStatus"};
        const QStringList track2 =
            audio + QStringList{"ClosingTrack", "ReadingTrackFile", "TrackWriteStatus"};
        const QStringList data{"PreparingToWrite", "CreatingDirectories", "TrackWriteStatus"};
        const QString unknown = "Writing error of unknown origin (1005).\r\nError Sense Data: "
                                "3/0C/00 WRITE ERROR";
        const QString unreadable = "Writing Error: (1)   A source file could not be read: %1\r\n";
        row("drive error in a data track", "data",
            {"FailAtBlock=20", "FailDriveCode=1008", "FailSense=3/0C/09 LOSS"},
            data + QStringList{"WriteError"},
            "Writing Error: (3)   The drive failed to write block 20\r\n"
            "A buffer under-run has occurred (1008).\r\nError Sense Data: 3/0C/09 LOSS",
            1);
        row("drive error in the second audio track", "audio",
            {"FailAtBlock=600", "FailDriveCode=1005"}, track2 + QStringList{"WriteError"},
            "Writing Error: (3)   The drive failed to write block 600\r\n" + unknown, 1);
        row("code out of range is the default", "audio", {"FailAtBlock=0", "FailDriveCode=2000"},
            audio + QStringList{"WriteError"},
            "Writing Error: (3)   The drive failed to write block 0\r\n" + unknown, 0);
        row("audio source unreadable", "audio", {"UnreadableSourceAtBlock=600"},
            track2 + QStringList{"ReadingTrackFileError", "WriteError"}, unreadable, 1);
        row("ISO file unreadable", "isofile", {"UnreadableSourceAtBlock=10"},
            data + QStringList{"ReadingTrackFileError", "WriteError"}, unreadable, 1);
        row("medium taken away", "audio", {"RemoveMediumAtBlock=100"},
            audio + QStringList{"WriteError"},
            "Writing Error: (3)   The medium was removed during the write\r\n"
            "A disc is not present (1033).\r\nError Sense Data: 2/3A/00 MEDIUM NOT PRESENT",
            -1);
    }

    void duringWrite() {
        auto [job, settings, events, text, statusLine, discStatus] =
            fetch<QString, QStringList, QStringList, QString, QString, int>(
                "job", "settings", "events", "text", "statusLine", "discStatus");
        EngineRig rig;
        CDNotify notify(&rig.engine);
        QSignalSpy removed(&notify, &CDNotify::RemoveComplete);
        QTemporaryDir dir;
        QString failed;
        if (job == u"audio") {
            for (int i = 1; i <= 2; ++i) {
                const QString path = dir.filePath(QStringLiteral("t%1.wav").arg(i));
                writeFile(path, cdWave(pseudoRandom(588 * 400 * 4, i)));
                QVERIFY(rig.engine.AddAudioTrack(path, i));
            }
            failed = dir.filePath("t2.wav");
        } else {
            writeFile(dir.filePath("src/a.bin"), pseudoRandom(300000, 4));
            rig.engine.setTrackMode(1);
            rig.engine.setFinalizeDisc(false);
            rig.engine.ClearISOImage();
            rig.engine.AddISODirectory("\\", dir.filePath("src") + "/*.*");
            if (job == u"isofile") {
                failed = dir.filePath("image.iso");
                QVERIFY(rig.engine.CreateISOFile(failed));
            }
        }
        for (const QString &s : settings)
            EngineRig::setting(s.section(u'=', 0, 0), s.section(u'=', 1));
        rig.probe.events.clear();
        QVERIFY(job == u"isofile" ? rig.engine.WriteISOFile(failed) : rig.engine.WriteDisc());
        QVERIFY(rig.probe.waitForEnd());

        QCOMPARE(squeezed(rig.probe.events), events);
        QCOMPARE(failureText(rig.probe, rig.senseInfo, "Error Sense Data: "),
                 QString(text).replace("%1", failed));
        if (!statusLine.isEmpty()) {
            QCOMPARE(rig.probe.failedFile, failed);
            QCOMPARE(" ERROR: " + GetTrackFileErrorMessage(rig.probe.fileError, failed) + failed,
                     statusLine.arg(failed));
        }
        // A failure fires once: its setting is spent.
        const QString key = settings.first().section(u'=', 0, 0);
        QCOMPARE(IniFile::read(ImageRecorder::settingsFile(), "Image Recorder", key, "unset"),
                 QString());
        QVERIFY(QDir(rig.env.appFolder() + "/Cache").entryList(QDir::Files).isEmpty());

        if (discStatus < 0) {
            // The disc is gone from the drive, and the windows hear of it.
            QCOMPARE(rig.engine.MediaType(), 254);
            QTRY_COMPARE_WITH_TIMEOUT(removed.size(), 1, 5000);
            QCOMPARE(removed.first().first().toString(), QStringLiteral("IMG"));
        } else {
            // What the drive burnt before it stopped stays, in a session it could not close.
            QCOMPARE(rig.engine.DiscStatus(), discStatus);
            QCOMPARE(rig.engine.LastSessionStatus(), discStatus == 1 ? 1 : 0);
        }

        // The drive is free: a fresh disc takes the same job, which now runs to its end.
        rig.engine.MoveTray(false);
        rig.engine.MoveTray(true);
        QCOMPARE(rig.engine.DiscStatus(), 0);
        rig.probe.events.clear();
        QVERIFY(job == u"isofile" ? rig.engine.WriteISOFile(failed) : rig.engine.WriteDisc());
        QVERIFY(rig.probe.waitForEnd());
        QCOMPARE(rig.probe.endingEvent(), QStringLiteral("WriteComplete"));
    }

    void duringEraseAndClose_data() {
        columns<QString, QString, QStringList, QString>("job", "setting", "events", "text");
        QTest::newRow("erase") << "erase"
                               << "FailErase=1036" << QStringList{"EraseDiscStart", "WriteError"}
                               << "Writing Error: (3)   Erasing the medium failed\r\n"
                                  "The disc could not be erased (1036).\r\n"
                                  " Error Sense Data: 3/51/00 ERASE FAILURE";
        QTest::newRow("close session")
            << "session"
            << "FailClose=1042" << QStringList{"ClosingSession", "WriteError"}
            << "Writing Error: (3)   Closing the session failed\r\n"
               "A generic session closing error occurred (1042).\r\n"
               " Error Sense Data: 5/72/00 SESSION FIXATION ERROR";
        QTest::newRow("close disc")
            << "disc"
            << "FailClose=1044" << QStringList{"ClosingSession", "WriteError"}
            << "Writing Error: (3)   Closing the disc failed\r\n"
               "Error closing Lead-out area (1044).\r\n"
               " Error Sense Data: 5/72/00 SESSION FIXATION ERROR";
    }

    void duringEraseAndClose() {
        auto [job, setting, events, text] =
            fetch<QString, QString, QStringList, QString>("job", "setting", "events", "text");
        EngineRig rig("CD-RW 80");
        QTemporaryDir dir;
        writeFile(dir.filePath("a.bin"), pseudoRandom(100000, 9));
        rig.engine.setTrackMode(1);
        rig.engine.setFinalizeDisc(false);
        rig.engine.setCloseSession(false);
        rig.engine.ClearISOImage();
        rig.engine.AddISOFile("\\a.bin", dir.filePath("a.bin"));
        QVERIFY(rig.write());
        QCOMPARE(rig.engine.LastSessionStatus(), 1);
        EngineRig::setting(setting.section(u'=', 0, 0), setting.section(u'=', 1));
        const auto start = [&] {
            rig.probe.events.clear();
            return job == u"erase" ? rig.engine.EraseDisc(true)
                                   : rig.engine.FinishDisc(job == u"disc");
        };
        const QStringList endings{"WriteError", "WriteComplete", "EraseDiscComplete"};
        QVERIFY(start());
        QVERIFY(rig.probe.waitFor(endings));
        QCOMPARE(rig.probe.events, events);
        QCOMPARE(failureText(rig.probe, rig.senseInfo, " Error Sense Data: "), text);
        // Nothing changed on the disc, and the same job works the second time.
        QCOMPARE(rig.engine.LastSessionStatus(), 1);
        QVERIFY(start());
        QVERIFY(rig.probe.waitFor(endings));
        QVERIFY(!rig.probe.events.contains("WriteError"));
        QCOMPARE(rig.engine.DiscStatus(), job == u"erase" ? 0 : job == u"disc" ? 2 : 1);
    }
};

QTEST_GUILESS_MAIN(tst_Failures)
#include "tst_failures.moc"
