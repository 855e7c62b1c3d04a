// The audio track list: the order, numbers and sizes of its tracks (which files it takes is
// tst_wavefile's table).
#include "EngineProbe.h"
#include "Fixtures.h"
#include "Rows.h"
#include "TestEnvironment.h"

#include <QtTest>

using namespace Fixtures;

namespace {
struct Listed {
    QString file;
    qint32 blocks, bytes, number;
};

QList<Listed> listed(CDWriterPro &engine) {
    QList<Listed> rows;
    QObject ctx;
    QObject::connect(&engine, &CDWriterPro::EnumAudioTrack, &ctx,
                     [&](const QString &f, qint32 blocks, qint32 bytes, qint32 number) {
                         rows.append({f, blocks, bytes, number});
                     });
    engine.ListAudioTracks();
    return rows;
}
} // namespace

class tst_AudioTracks : public QObject {
    Q_OBJECT
private slots:
    void positionsAndNumbers() {
        TestEnvironment env;
        CDWriterPro engine;
        QTemporaryDir dir;
        QStringList f;
        for (int i = 0; i < 5; ++i) {
            f << dir.filePath(QStringLiteral("t%1.wav").arg(i));
            writeFile(f.last(), cdWave(rampPcm(44100 * 5 + i)));
        }
        QVERIFY(!engine.AddAudioTrack(dir.filePath("missing.wav"), 1));
        QVERIFY(!engine.AddAudioTrack(dir.path(), 1)); // a folder
        // A position is where the track goes; past the end it goes last, below 1 first.
        QVERIFY(engine.AddAudioTrack(f[0], 1));
        QVERIFY(engine.AddAudioTrack(f[1], 1));
        QVERIFY(engine.AddAudioTrack(f[2], 99));
        QVERIFY(engine.AddAudioTrack(f[3], 2));
        QVERIFY(engine.AddAudioTrack(f[4], 0));
        QList<Listed> rows = listed(engine);
        QStringList order;
        for (const Listed &r : rows)
            order << r.file;
        QCOMPARE(order, QStringList({f[4], f[1], f[3], f[0], f[2]}));
        for (int i = 0; i < rows.size(); ++i)
            QCOMPARE(rows[i].number, i + 1);

        // Indexes count from 1; one that names no track changes nothing.
        engine.RemoveAudioTrack(0);
        engine.RemoveAudioTrack(6);
        QCOMPARE(engine.AudioTrackCount(), 5);
        engine.RemoveAudioTrack(2);
        engine.RemoveAudioTrack(4);
        rows = listed(engine);
        QCOMPARE(rows.size(), 3);
        QCOMPARE(QStringList({rows[0].file, rows[1].file, rows[2].file}),
                 QStringList({f[4], f[3], f[0]}));
        QCOMPARE(rows[2].number, 3);

        engine.ClearAudioTracks();
        QCOMPARE(engine.AudioTrackCount(), 0);
        QCOMPARE(engine.AudioImageBlocks(), 0);
    }

    void sizesCountTheGaps_data() {
        // frames: audio frames of 4 bytes in each wave; blocks: the tracks' blocks as listed
        columns<QList<int>, QList<int>, int>("frames", "blocks", "imageBlocks");
        // 588 audio frames fill one 2352-byte block; every track has a 150-block gap before it.
        QTest::newRow("whole blocks") << QList<int>{588 * 400} << QList<int>{400} << 550;
        QTest::newRow("a frame into the next block")
            << QList<int>{588 * 400 + 1} << QList<int>{401} << 551;
        QTest::newRow("three tracks") << QList<int>{588 * 300, 588 * 301, 588 * 1000}
                                      << QList<int>{300, 301, 1000} << 1601 + 450;
        // Shorter than 4 seconds: silence makes it up to 300 blocks.
        QTest::newRow("one second") << QList<int>{44100} << QList<int>{300} << 450;
    }

    void sizesCountTheGaps() {
        auto [frames, blocks, imageBlocks] =
            fetch<QList<int>, QList<int>, int>("frames", "blocks", "imageBlocks");
        TestEnvironment env;
        CDWriterPro engine;
        QTemporaryDir dir;
        for (int i = 0; i < frames.size(); ++i) {
            const QString path = dir.filePath(QStringLiteral("%1.wav").arg(i));
            writeFile(path, cdWave(QByteArray(frames[i] * 4, 'a')));
            QVERIFY(engine.AddAudioTrack(path, i + 1));
        }
        const QList<Listed> rows = listed(engine);
        for (int i = 0; i < rows.size(); ++i) {
            QCOMPARE(rows[i].blocks, blocks[i]);
            QCOMPARE(rows[i].bytes, frames[i] * 4);
        }
        QCOMPARE(engine.AudioImageBlocks(), imageBlocks);
        QCOMPARE(engine.AudioTrackCount(), frames.size());
    }

    void blocksToTime() {
        CDWriterPro engine;
        const QList<std::pair<int, QString>> rows = {
            {0, "00:00:00"},      {1, "00:00:01"},      {75, "00:01:00"}, {450, "00:06:00"},
            {333000, "74:00:00"}, {359999, "79:59:74"}, {-5, "00:00:00"}};
        for (const auto &[blocks, time] : rows)
            QCOMPARE(engine.BlocksToTime(blocks), time);
    }
};

QTEST_GUILESS_MAIN(tst_AudioTracks)
#include "tst_audiotracks.moc"
