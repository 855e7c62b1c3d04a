// Audio discs written disc at once on the Image Recorder, then read by cd-info and ripped back
// bit for bit by cd-paranoia.
#include "EngineRig.h"
#include "Fixtures.h"
#include "ReadBack.h"
#include "Rows.h"

#include <QtTest>

using namespace Fixtures;

namespace {
constexpr int Frame = 2352;
constexpr int Gap = 150;

struct Track {
    QString path;
    QByteArray pcm;
    int blocks() const { return (int(pcm.size()) + Frame - 1) / Frame; }
};

// Three tracks: one of an odd length that ends inside a frame, one whose chunks come in an
// unusual order, one of whole frames.
QList<Track> makeTracks(const QTemporaryDir &dir) {
    QList<Track> tracks;
    const QByteArray odd = pseudoRandom((5 * 44100 + 1) * 4, 11);
    const QByteArray shuffled = pseudoRandom(198450 * 4, 12);
    const QByteArray whole = pseudoRandom(450 * Frame, 13);
    tracks.append({dir.filePath("one.wav"), odd});
    tracks.append({dir.filePath("two.wav"), shuffled});
    tracks.append({dir.filePath("three.wav"), whole});
    writeFile(tracks[0].path, cdWave(odd));
    writeFile(tracks[1].path, riff(chunk("LIST", QByteArray("INFOINAM\x04\0\0\0two\0", 16)) +
                                   fmtChunk(1, 2, 44100, 16) + chunk("JUNK", QByteArray(30, 0)) +
                                   chunk("data", shuffled) + chunk("smpl", QByteArray(36, 0))));
    writeFile(tracks[2].path, cdWave(whole));
    return tracks;
}

} // namespace

class tst_AudioWrite : public QObject {
    Q_OBJECT
private slots:
    void writeAndRipBack_data() {
        rows<bool>("cache", {{"read while writing", false}, {"cached first", true}});
    }

    void writeAndRipBack() {
        QFETCH(bool, cache);
        EngineRig rig;
        QTemporaryDir dir;
        const QList<Track> tracks = makeTracks(dir);
        for (int i = 0; i < tracks.size(); ++i)
            QVERIFY(rig.engine.AddAudioTrack(tracks[i].path, i + 1));
        rig.engine.setCacheImage(cache);
        const QString log = rig.env.appFolder() + "/Dat/Burnlog.txt";
        rig.engine.SetLogging(true, log);
        QVERIFY(rig.write());

        // The engine's own log tells the write track by track.
        QFile logFile(log);
        QVERIFY(logFile.open(QIODevice::ReadOnly));
        const QByteArray logText = logFile.readAll();
        for (const char *line : {"Writing an audio disc", "3 track(s)", "Track 3 starts.",
                                 "Closing the disc.", "Finished well."})
            QVERIFY2(logText.contains(line), line);

        // Events in the order the windows rest on, tracks numbered from 1.
        // Cached, the files are read first and then the cache is written track by track.
        const QString track = "TrackWriteStatus ClosingTrack ";
        const QString events =
            "PreparingToWrite " +
            (cache ? QString("ReadingTrackFile CachingStatus ").repeated(3) + track.repeated(3)
                   : ("ReadingTrackFile " + track).repeated(3)) +
            "ClosingSession ClosingDisc WriteComplete";
        QCOMPARE(squeezed(rig.probe.events).join(u' '), events);
        QCOMPARE(rig.readFiles, QStringList({tracks[0].path, tracks[1].path, tracks[2].path}));
        if (cache)
            QCOMPARE(rig.probe.caching.last(), qint16(100));
        QVERIFY(std::is_sorted(rig.statusTracks.begin(), rig.statusTracks.end()));
        QCOMPARE(rig.statusTracks.first(), 1);
        QCOMPARE(rig.closedTracks, QList<qint32>({1, 2, 3}));
        QVERIFY(QDir(rig.env.appFolder() + "/Cache").entryList(QDir::Files).isEmpty());

        // A closed CD-DA, as a drive reports it.
        QCOMPARE(rig.engine.MediaType(), 255);
        QCOMPARE(rig.engine.DiscStatus(), 2);
        QCOMPARE(rig.engine.LastSessionStatus(), 3);
        QCOMPARE(rig.engine.DiscType(), 0);
        QCOMPARE(rig.engine.FreeBlocks(), 0);

        const QString cue = rig.eject();

        // cd-info lists every track where the gaps put it.
        const QString info = QString::fromUtf8(ReadBack::run(
            "cd-info", {"--no-header", "--no-device-info", "--no-cddb", "--cue-file", cue}));
        QVERIFY2(info.contains("CD-DA"), qPrintable(info));
        const int second = tracks[0].blocks() + Gap;
        const int third = second + tracks[1].blocks() + Gap;
        QCOMPARE(ReadBack::cdInfoTrackStarts(cue),
                 QList<int>({0, second, third, third + tracks[2].blocks()}));

        for (int i = 0; i < tracks.size(); ++i)
            QVERIFY2(ReadBack::cdParanoiaTrack(cue, i + 1, dir) ==
                         ReadBack::ripOfTrack(tracks[i].pcm, i + 1 == tracks.size()),
                     qPrintable(QStringLiteral("cd-paranoia, track %1").arg(i + 1)));
    }

    void cancelLeavesAnIncompleteSession() {
        // Held to 1x, the 16 seconds of audio outlast the cancel sent from the 1 % event.
        EngineRig rig("CD-R 80", EngineRig::Audio, {"EmulateSpeed=1"});
        QTemporaryDir dir;
        const QList<Track> tracks = makeTracks(dir);
        for (int i = 0; i < tracks.size(); ++i)
            QVERIFY(rig.engine.AddAudioTrack(tracks[i].path, i + 1));
        rig.engine.SetWriteSpeed(176);
        rig.probe.cancelAtOnePercent = true;
        QVERIFY(rig.write());
        QCOMPARE(
            squeezed(rig.probe.events).join(u' '),
            QStringLiteral("PreparingToWrite ReadingTrackFile TrackWriteStatus WriteCancelled"));
        // The frames burnt before the stop stay, in a session that was never closed.
        QCOMPARE(rig.engine.DiscStatus(), 1);
        QCOMPARE(rig.engine.LastSessionStatus(), 1);
        QCOMPARE(rig.engine.FreeBlocks(), 0);
        // The list is still there for a second try on a fresh disc.
        QCOMPARE(rig.engine.AudioTrackCount(), 3);
        rig.engine.MoveTray(false);
        rig.engine.MoveTray(true);
        rig.probe.cancelAtOnePercent = false;
        EngineRig::setting("EmulateSpeed", "0");
        QVERIFY(rig.write());
        QCOMPARE(rig.probe.endingEvent(), QStringLiteral("WriteComplete"));
    }

    void refusedByTheDrive_data() {
        columns<QString, bool, int>("medium", "dataFirst", "driveError");
        QTest::newRow("audio on a DVD") << "DVD-R" << false << 1040;
        QTest::newRow("audio after a data session") << "CD-R 80" << true << 1040;
        QTest::newRow("a closed disc") << "CD-R 74" << true << 1032;
    }

    void refusedByTheDrive() {
        auto [medium, dataFirst, driveError] =
            fetch<QString, bool, int>("medium", "dataFirst", "driveError");
        EngineRig rig(medium);
        QTemporaryDir dir;
        const QList<Track> tracks = makeTracks(dir);
        if (dataFirst) {
            rig.engine.setTrackMode(1);
            rig.engine.setFinalizeDisc(driveError == 1032);
            rig.engine.ClearISOImage();
            rig.engine.AddISOFile("\\one.wav", tracks[0].path);
            QVERIFY(rig.write());
            QCOMPARE(rig.probe.endingEvent(), QStringLiteral("WriteComplete"));
            rig.engine.setTrackMode(0);
        }
        const qint32 sessions = rig.engine.SessionCount();
        QVERIFY(!rig.write()); // no tracks, no write
        QVERIFY(rig.engine.AddAudioTrack(tracks[0].path, 1));
        QVERIFY(rig.write());
        QCOMPARE(rig.probe.events, QStringList({"PreparingToWrite",
                                                "WriteError"})); // refused before anything is read
        QCOMPARE(rig.probe.writeError, 3);
        QCOMPARE(rig.probe.driveError, driveError);
        QVERIFY(!rig.senseInfo.isEmpty());
        QCOMPARE(rig.engine.SessionCount(), sessions);
    }
};

QTEST_GUILESS_MAIN(tst_AudioWrite)
#include "tst_audiowrite.moc"
