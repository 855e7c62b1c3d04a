#include "EngineProbe.h"
#include "Fixtures.h"
#include "Rows.h"
#include "TestEnvironment.h"

#include "engine/writer/audio/WaveFile.h"

#include <QtTest>

using namespace Fixtures;

namespace {
const auto fmt = fmtChunk;
const auto pcm = rampPcm;
} // namespace

class tst_WaveFile : public QObject {
    Q_OBJECT
private slots:
    void judgement_data() {
        columns<QByteArray, int>("bytes", "status");
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
        QTest::newRow("text") << QByteArray("RIFF is not enough\n") << int(S::Malformed);
        QTest::newRow("no audio at all") << riff(cd + chunk("data", {})) << int(S::Ok);
        QTest::newRow("extensible format, 16-bit stereo")
            << riff(chunk("fmt ", le16(0xFFFE) + le16(2) + le32(44100) + le32(176400) + le16(4) +
                                      le16(16) + le16(22) + le16(16) + le32(3) + le16(1) +
                                      QByteArray::fromHex("000000001000800000aa00389b71")) +
                    chunk("data", pcm(50)))
            << int(S::Ok);
    }
    void judgement() {
        auto [bytes, status] = fetch<QByteArray, int>("bytes", "status");
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadOnly);
        WaveFile w;
        QCOMPARE(int(w.open(&buffer)), status);
        // The same verdict through a file on disk.
        QTemporaryDir dir;
        writeFile(dir.filePath("t.wav"), bytes);
        QCOMPARE(int(WaveFile::judge(dir.filePath("t.wav"))), status);
        // The track list takes exactly the CD audio that holds some sound.
        TestEnvironment env;
        CDWriterPro engine;
        const bool sound = status == int(WaveFile::Status::Ok) && w.frames() > 0;
        QCOMPARE(engine.AddAudioTrack(dir.filePath("t.wav"), 1), sound);
        QCOMPARE(engine.AudioTrackCount(), sound ? 1 : 0);
    }
};

QTEST_GUILESS_MAIN(tst_WaveFile)
#include "tst_wavefile.moc"
