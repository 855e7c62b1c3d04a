// The ripper on the Image Recorder: a disc written by the writer, read back through paranoia
// and checked against cd-paranoia and soxi.
#include "ReadBack.h"
#include "RipperRig.h"
#include "Rows.h"

#include "engine/writer/recorders/image/ImageRecorder.h"

#include <QtTest>

#include <map>

namespace {
// A sink that keeps what it was given instead of playing it.
struct RecordingOutput : AudioOutput {
    QByteArray played;
    bool open(QString *) override { return true; }
    bool write(const char *pcm, qint64 bytes) override {
        played.append(pcm, bytes);
        return true;
    }
    void close() override {}
};

} // namespace

class tst_Ripper : public QObject {
    Q_OBJECT
private slots:
    void tableOfContentsMatchesCdParanoia() {
        RipperRig rig;
        CDRipperX &r = *rig.ripper;
        QCOMPARE(r.DriveLetter(r.DriveCount() - 1), QStringLiteral("IMG"));
        QVERIFY(rig.waitForStatus(CDRipperX::StatusLoaded));
        QVERIFY(r.ReadTOC());
        int status = -1;
        // cd-paranoia -Q lists "  1.    488 [00:06.38]        0 [00:00.00]    no   no  2".
        const QString query = QString::fromLocal8Bit(
            ReadBack::run("sh", {"-c", "cd-paranoia -d \"$0\" -Q 2>&1", rig.cue()}, &status));
        QRegularExpression row(R"(^\s+(\d+)\.\s+(\d+) \[([\d:.]+)\]\s+(\d+) \[([\d:.]+)\]\s+(\w+))",
                               QRegularExpression::MultilineOption);
        int tracks = 0;
        for (auto m = row.globalMatch(query); m.hasNext(); ++tracks) {
            const auto match = m.next();
            const int t = match.captured(1).toInt();
            QCOMPARE(r.TrackLengthFrames(t), match.captured(2).toInt());
            QCOMPARE(r.FramesToTime(r.TrackLengthFrames(t)), match.captured(3));
            QCOMPARE(r.TrackStartFrame(t), match.captured(4).toInt());
            QCOMPARE(r.FramesToTime(r.TrackStartFrame(t)), match.captured(5));
            QCOMPARE(r.TrackCopyProtected(t),
                     match.captured(6) != u"OK" && match.captured(6) != u"yes");
            QVERIFY(r.TrackIsAudio(t));
        }
        QCOMPARE(tracks, 3);
        QCOMPARE(r.TrackCount(), 3);
        QCOMPARE(r.TrackStartFrame(4), 0); // past the last track
        QCOMPARE(r.FramesToTime(75 * 61 + 7), QStringLiteral("01:01.07"));
    }

    void dataDiscAndTray() {
        RipperRig rig;
        CDRipperX &r = *rig.ripper;
        QVERIFY(rig.waitForStatus(CDRipperX::StatusLoaded));
        r.EjectDisc();
        QVERIFY(rig.waitForStatus(CDRipperX::StatusNoDisc));
        QVERIFY(!r.ReadTOC());
        QCOMPARE(r.TrackCount(), 0);
        // The writer sees the same empty tray: the two engines share it.
        QCOMPARE(ImageRecorder().mediumFile(), QString());

        // A pressed data disc: one data track as long as the image.
        int status = -1;
        ReadBack::run("xorriso",
                      {"-outdev", ImageRecorder::trayFolder() + "/data.iso", "-map",
                       rig.writer.env.appFolder() + "/t1.wav", "/t1.wav"},
                      &status);
        QCOMPARE(status, 0);
        QVERIFY(rig.waitForStatus(CDRipperX::StatusLoaded));
        QVERIFY(r.ReadTOC());
        QCOMPARE(r.TrackCount(), 1);
        QVERIFY(!r.TrackIsAudio(1));
        QCOMPARE(qint64(r.TrackLengthFrames(1)) * 2048,
                 QFileInfo(ImageRecorder::trayFolder() + "/data.iso").size());
        QVERIFY(!r.AddExtractionTrack(1, rig.writer.env.appFolder() + "/x.wav", 1));

        // Closing an empty tray loads a blank disc: loaded, but nothing to read.
        r.EjectDisc();
        QVERIFY(rig.waitForStatus(CDRipperX::StatusNoDisc));
        r.LoadDisc();
        QVERIFY(rig.waitForStatus(CDRipperX::StatusLoaded));
        QVERIFY(!r.ReadTOC());
    }

    void extraction_data() {
        columns<int, QStringList, QStringList>("cancelInTrack", "lastEvents", "files");
        QTest::newRow("tracks 1 and 3")
            << 0 << QStringList{"FileStart 3 Track03.wav", "FileEnd", "End"}
            << QStringList{"Track01.wav", "Track03.wav"};
        QTest::newRow("cancelled in track 2")
            << 2 << QStringList{"FileStart 2 Track02.wav", "Status 14", "End"}
            << QStringList{"Track01.wav"};
    }

    void extraction() {
        auto [cancelInTrack, lastEvents, files] =
            fetch<int, QStringList, QStringList>("cancelInTrack", "lastEvents", "files");
        RipperRig rig;
        CDRipperX &r = *rig.ripper;
        QVERIFY(r.ReadTOC());
        const QString out = rig.writer.env.appFolder() + "/Audio";
        QDir().mkpath(out);
        const QList<int> tracks = cancelInTrack ? QList<int>{1, 2, 3} : QList<int>{1, 3};
        for (int t : tracks)
            QVERIFY(r.AddExtractionTrack(
                t, out + QStringLiteral("/Track%1.wav").arg(t, 2, 10, QChar('0')), t));
        // Held inside the track until it is cancelled at its start.
        auto encoder = std::make_shared<HoldingEncoder>();
        encoder->holdIn = QStringLiteral("Track%1.wav").arg(cancelInTrack, 2, 10, QChar('0'));
        r.SetEncoder(encoder);
        r.setUseEncoder(true);
        connect(&r, &CDRipperX::ExtractingFileStart, &r,
                [&](const QString &, qint32, qint32, qint16 id) {
                    if (id == cancelInTrack) {
                        r.CancelExtraction();
                        encoder->cancelled = true;
                    }
                });
        QVERIFY(r.StartExtraction());
        QVERIFY(!r.StartExtraction()); // one job at a time
        QVERIFY(rig.waitForEnd());

        QCOMPARE(rig.events,
                 QStringList({"Start", "FileStart 1 Track01.wav", "FileEnd"}) + lastEvents);
        QCOMPARE(QDir(out).entryList(QDir::Files, QDir::Name), files);
        QTemporaryDir dir;
        for (const QString &file : files) {
            const int t = file.mid(5, 2).toInt();
            const QByteArray ours = wavePcm(out + "/" + file);
            QCOMPARE(ours.size(), qsizetype(r.TrackLengthFrames(t)) * 2352);
            QVERIFY(ours == ReadBack::cdParanoiaTrack(rig.cue(), t, dir));
            QVERIFY(ours.startsWith(rig.pcm[t - 1]));
            QByteArray soxi;
            for (const char *what : {"-r", "-c", "-b"})
                soxi += ReadBack::run("soxi", {what, out + "/" + file});
            QCOMPARE(soxi.simplified(), QByteArray("44100 2 16"));
        }
    }

    void refusedStarts() {
        RipperRig rig;
        CDRipperX &r = *rig.ripper;
        QVERIFY(r.ReadTOC());
        QVERIFY(!r.StartExtraction()); // nothing queued
        QVERIFY(!r.AddExtractionTrack(4, "/tmp/x.wav", 4));
        QVERIFY(r.AddExtractionTrack(1, "/nonexistent-folder/Track01.wav", 1));
        r.setUseEncoder(true);
        QVERIFY(!r.StartExtraction()); // an encoder is asked for but none is set
        r.setUseEncoder(false);
        QVERIFY(r.StartExtraction());
        QVERIFY(rig.waitForEnd());
        QCOMPARE(rig.events, QStringList({"Start", "Status 10", "End"}));
    }

    void damagedDisc_data() {
        columns<bool, bool>("damage", "healsOnReread");
        QTest::newRow("clean") << false << true;
        QTest::newRow("misread once") << true << true;
        QTest::newRow("scratched: differs on every read") << true << false;
    }

    // A few frames of track 2 read wrong: right on the second read (dust) or wrong every time
    // (a scratch).
    void damagedDisc() {
        auto [damage, healsOnReread] = fetch<bool, bool>("damage", "healsOnReread");
        RipperRig rig;
        CDRipperX &r = *rig.ripper;
        QVERIFY(r.ReadTOC());
        const qint32 start = r.TrackStartFrame(2);
        const QList<qint32> damaged =
            damage ? QList<qint32>{start + 40, start + 41, start + 200} : QList<qint32>{};
        std::map<qint32, int> reads;
        r.SetReadFilter([&](qint32 lsn, qint32 frames, char *pcm) {
            for (qint32 f = lsn; f < lsn + frames; ++f) {
                if (!damaged.contains(f) || (healsOnReread && reads[f]++ > 0))
                    continue;
                const int n = reads[f]++;
                for (int b = 100; b < 2352; b += 97)
                    pcm[(f - lsn) * 2352 + b] ^= char(0x5a + n);
            }
        });
        const QString file = rig.writer.env.appFolder() + "/Track02.wav";
        QVERIFY(r.AddExtractionTrack(2, file, 2));
        QVERIFY(r.StartExtraction());
        QVERIFY(rig.waitForEnd());
        const bool exact = wavePcm(file).startsWith(rig.pcm[1]);
        QVERIFY2(exact || rig.statuses.contains(2), qPrintable(rig.events.join(", ")));
        if (healsOnReread)
            QVERIFY(exact);
        // A mismatch is seen and read again; a clean disc reports nothing.
        QCOMPARE(rig.statuses.contains(5), damage);
        QCOMPARE(rig.statuses.isEmpty(), !damage);
    }

    void playback() {
        RipperRig rig;
        CDRipperX &r = *rig.ripper;
        QVERIFY(r.ReadTOC());
        QSignalSpy failed(&r, &CDRipperX::PlayFailed);
        r.PlayTrack(2);
        QCOMPARE(failed.size(), 1); // no sound device
        auto sink = std::make_shared<RecordingOutput>();
        r.SetAudioOutput(sink);
        r.PlayTrack(2);
        QCOMPARE(r.CurrentTrack(), 2);
        QVERIFY(rig.waitForStatus(CDRipperX::StatusLoaded)); // played to the end
        QCOMPARE(r.CurrentFrame(), r.TrackStartFrame(2) + r.TrackLengthFrames(2));
        QVERIFY(sink->played.startsWith(rig.pcm[1]));
        QCOMPARE(sink->played.size(), qsizetype(r.TrackLengthFrames(2)) * 2352);
    }
};

QTEST_GUILESS_MAIN(tst_Ripper)
#include "tst_ripper.moc"
