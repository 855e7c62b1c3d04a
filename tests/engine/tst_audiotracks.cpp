// The audio track list: which wave files it takes, their order, numbers and sizes.
#include "EngineProbe.h"
#include "Fixtures.h"
#include "ReadBack.h"
#include "TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Fixtures;

namespace {
// A real MP3 made by lame from a wave, for the file that only pretends by its name.
QByteArray mp3Bytes(const QTemporaryDir &dir) {
    const QString wav = dir.filePath("for-lame.wav");
    const QString mp3 = dir.filePath("made.mp3");
    writeFile(wav, cdWave(pseudoRandom(44100 * 4, 3)));
    ReadBack::run("lame", {"--quiet", wav, mp3});
    QFile f(mp3);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

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
    void judgement_data();
    void judgement();
    void positionsAndNumbers();
    void sizesCountTheGaps_data();
    void sizesCountTheGaps();
    void blocksToTime_data();
    void blocksToTime();
};

void tst_AudioTracks::judgement_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("accepted");
    QTemporaryDir dir;
    const QByteArray pcm = rampPcm(3000);
    const QByteArray cd = fmtChunk(1, 2, 44100, 16);
    const QByteArray full = cdWave(pcm);
    const QByteArray mp3 = mp3Bytes(dir);
    QVERIFY(mp3.size() > 100);
    QTest::newRow("CD audio") << full << true;
    QTest::newRow("chunks in an unusual order")
        << riff(chunk("LIST", QByteArray("INFOIART\x03\0\0\0ab\0", 15)) +
                chunk("JUNK", QByteArray(7, 'j')) + cd + chunk("fact", le32(3000)) +
                chunk("data", pcm) + chunk("cue ", le32(0)))
        << true;
    QTest::newRow("extensible format, 16-bit stereo")
        << riff(chunk("fmt ", le16(0xFFFE) + le16(2) + le32(44100) + le32(176400) + le16(4) +
                                  le16(16) + le16(22) + le16(16) + le32(3) + le16(1) +
                                  QByteArray::fromHex("000000001000800000aa00389b71")) +
                chunk("data", pcm))
        << true;
    QTest::newRow("MP3 renamed .wav") << mp3 << false;
    QTest::newRow("48 kHz") << riff(fmtChunk(1, 2, 48000, 16) + chunk("data", pcm)) << false;
    QTest::newRow("mono") << riff(fmtChunk(1, 1, 44100, 16) + chunk("data", pcm)) << false;
    QTest::newRow("8-bit") << riff(fmtChunk(1, 2, 44100, 8) + chunk("data", pcm)) << false;
    QTest::newRow("float samples") << riff(fmtChunk(3, 2, 44100, 32) + chunk("data", pcm)) << false;
    QTest::newRow("truncated header") << full.left(30) << false;
    QTest::newRow("data chunk longer than the file") << full.left(full.size() - 1000) << false;
    QTest::newRow("zero-length file") << QByteArray() << false;
    QTest::newRow("no audio at all") << cdWave(QByteArray()) << false;
    QTest::newRow("text") << QByteArray("RIFF is not enough\n") << false;
}

void tst_AudioTracks::judgement() {
    QFETCH(QByteArray, bytes);
    QFETCH(bool, accepted);
    TestEnvironment env;
    CDWriterPro engine;
    QTemporaryDir dir;
    const QString path = dir.filePath("track.wav");
    writeFile(path, bytes);
    QCOMPARE(engine.AddAudioTrack(path, 1), accepted);
    QCOMPARE(engine.AudioTrackCount(), accepted ? 1 : 0);
}

void tst_AudioTracks::positionsAndNumbers() {
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
    QCOMPARE(rows[0].file, f[4]);
    QCOMPARE(rows[1].file, f[3]);
    QCOMPARE(rows[2].file, f[0]);
    QCOMPARE(rows[2].number, 3);

    engine.ClearAudioTracks();
    QCOMPARE(engine.AudioTrackCount(), 0);
    QCOMPARE(engine.AudioImageBlocks(), 0);
    QSignalSpy none(&engine, &CDWriterPro::EnumAudioTrack);
    engine.ListAudioTracks();
    QCOMPARE(none.size(), 0);
}

void tst_AudioTracks::sizesCountTheGaps_data() {
    QTest::addColumn<QList<int>>("frames"); // audio frames of 4 bytes in each wave
    QTest::addColumn<QList<int>>("blocks"); // the tracks' blocks as listed
    QTest::addColumn<int>("imageBlocks");
    // 588 audio frames fill one 2352-byte block; every track has a 150-block gap before it.
    QTest::newRow("whole blocks") << QList<int>{588 * 400} << QList<int>{400} << 550;
    QTest::newRow("a frame into the next block")
        << QList<int>{588 * 400 + 1} << QList<int>{401} << 551;
    QTest::newRow("three tracks") << QList<int>{588 * 300, 588 * 301, 588 * 1000}
                                  << QList<int>{300, 301, 1000} << 1601 + 450;
    // Shorter than 4 seconds: silence makes it up to 300 blocks.
    QTest::newRow("one second") << QList<int>{44100} << QList<int>{300} << 450;
}

void tst_AudioTracks::sizesCountTheGaps() {
    QFETCH(QList<int>, frames);
    QFETCH(QList<int>, blocks);
    QFETCH(int, imageBlocks);
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

void tst_AudioTracks::blocksToTime_data() {
    QTest::addColumn<int>("blocks");
    QTest::addColumn<QString>("time");
    QTest::newRow("nothing") << 0 << "00:00:00";
    QTest::newRow("a frame") << 1 << "00:00:01";
    QTest::newRow("a second") << 75 << "00:01:00";
    QTest::newRow("a gap and 4 s") << 450 << "00:06:00";
    QTest::newRow("74 minutes") << 333000 << "74:00:00";
    QTest::newRow("80 minutes less a frame") << 359999 << "79:59:74";
    QTest::newRow("negative") << -5 << "00:00:00";
}

void tst_AudioTracks::blocksToTime() {
    QFETCH(int, blocks);
    QFETCH(QString, time);
    CDWriterPro engine;
    QCOMPARE(engine.BlocksToTime(blocks), time);
}

QTEST_GUILESS_MAIN(tst_AudioTracks)
#include "tst_audiotracks.moc"
