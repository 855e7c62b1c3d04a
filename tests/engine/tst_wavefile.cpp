#include "EngineProbe.h"
#include "Fixtures.h"

#include "engine/writer/audio/WaveFile.h"

#include <QBuffer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

using namespace Fixtures;

namespace {
const auto fmt = fmtChunk;
const auto pcm = rampPcm;
} // namespace

class tst_WaveFile : public QObject {
    Q_OBJECT
private slots:
    void judgement_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("status");
        using S = WaveFile::Status;
        const QByteArray cd = fmt(1, 2, 44100, 16);
        QTest::newRow("CD audio") << riff(cd + chunk("data", pcm(1000))) << int(S::Ok);
        QTest::newRow("odd length, 1 frame") << riff(cd + chunk("data", pcm(1))) << int(S::Ok);
        QTest::newRow("LIST and JUNK before fmt")
            << riff(chunk("LIST", QByteArray("INFOISFT\x05\0\0\0test\0\0", 18)) +
                    chunk("JUNK", QByteArray(28, 0)) + cd + chunk("data", pcm(50)))
            << int(S::Ok);
        // The WAVE format puts the format before the samples; a file that doesn't is broken.
        QTest::newRow("fmt after data") << riff(chunk("data", pcm(50)) + cd) << int(S::Malformed);
        QTest::newRow("chunk after data")
            << riff(cd + chunk("data", pcm(50)) + chunk("LIST", "INFO")) << int(S::Ok);
        QTest::newRow("48 kHz") << riff(fmt(1, 2, 48000, 16) + chunk("data", pcm(10)))
                                << int(S::NotCdAudio);
        QTest::newRow("mono") << riff(fmt(1, 1, 44100, 16) + chunk("data", pcm(10)))
                              << int(S::NotCdAudio);
        QTest::newRow("8-bit") << riff(fmt(1, 2, 44100, 8) + chunk("data", QByteArray(100, 'x')))
                               << int(S::NotCdAudio);
        QTest::newRow("24-bit") << riff(fmt(1, 2, 44100, 24) + chunk("data", QByteArray(600, 0)))
                                << int(S::NotCdAudio);
        QTest::newRow("float") << riff(fmt(3, 2, 44100, 32) + chunk("data", QByteArray(800, 0)))
                               << int(S::NotCdAudio);
        QTest::newRow("zero length") << QByteArray() << int(S::Malformed);
        QTest::newRow("truncated header")
            << riff(cd + chunk("data", pcm(10))).left(30) << int(S::Malformed);
        QByteArray longData = riff(cd + chunk("data", pcm(100)));
        qToLittleEndian<quint32>(4000, longData.data() + 12 + 24 + 4);
        QTest::newRow("data longer than the file") << longData << int(S::Malformed);
        QTest::newRow("no data chunk") << riff(cd) << int(S::Malformed);
        QTest::newRow("no fmt chunk") << riff(chunk("data", pcm(10))) << int(S::Malformed);
        QTest::newRow("not RIFF") << QByteArray("ID3\x04\0\0\0\0\0\0garbage", 17) + pcm(100)
                                  << int(S::Malformed);
    }
    void judgement() {
        QFETCH(QByteArray, bytes);
        QFETCH(int, status);
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadOnly);
        WaveFile w;
        QCOMPARE(int(w.open(&buffer)), status);
        // The same verdict through a file on disk.
        QTemporaryDir dir;
        QFile f(dir.filePath("t.wav"));
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(bytes);
        f.close();
        QCOMPARE(int(WaveFile::judge(f.fileName())), status);
    }

    void missingFileCannotBeOpened() {
        QCOMPARE(WaveFile::judge("/nonexistent/a.wav"), WaveFile::Status::CannotOpen);
    }

    void samplesComeOutLittleEndianAndWhole() {
        QByteArray bytes =
            riff(chunk("LIST", "INFO") + fmt(1, 2, 44100, 16) + chunk("data", pcm(777)));
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadOnly);
        WaveFile w;
        QCOMPARE(w.open(&buffer), WaveFile::Status::Ok);
        QCOMPARE(w.frames(), qint64(777));
        QByteArray out(777 * 4, '\0');
        qint64 got = 0;
        while (got < 777) {
            const qint64 n = w.readFrames(out.data() + got * 4, qMin<qint64>(100, 777 - got));
            QVERIFY(n > 0);
            got += n;
        }
        QCOMPARE(w.readFrames(out.data(), 10), qint64(0));
        QVERIFY(!w.failed());
        QCOMPARE(out, pcm(777));
    }

    void mp3RenamedIsRefused() {
        QTemporaryDir dir;
        QFile f(dir.filePath("in.wav"));
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(riff(fmt(1, 2, 44100, 16) + chunk("data", pcm(44100))));
        f.close();
        QProcess lame;
        lame.start("lame", {"--quiet", f.fileName(), dir.filePath("song.mp3")});
        QVERIFY2(lame.waitForFinished(30000) && lame.exitCode() == 0,
                 "lame is installed by scripts/setup");
        QVERIFY(QFile::rename(dir.filePath("song.mp3"), dir.filePath("song.wav")));
        QCOMPARE(WaveFile::judge(dir.filePath("song.wav")), WaveFile::Status::Malformed);
    }
};

QTEST_GUILESS_MAIN(tst_WaveFile)
#include "tst_wavefile.moc"
