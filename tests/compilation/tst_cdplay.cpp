// The wave player against a sound device that records what it is given: the bytes heard are
// the file's samples, in the player's buffer sizes, through pauses and stops; a bad file says
// why in the player's words and leaves nothing open.
#include "Fixtures.h"
#include "RecordingWaveOutput.h"
#include "Rows.h"
#include "ScriptedAnswers.h"
#include "Waits.h"
#include "compilation/modCDPlay.h"

#include <QtTest>

using namespace Fixtures;

namespace {

// Lets the player's messages run and releases the held buffers until the device has closed.
void drain(RecordingWaveOutput &sink) {
    for (int i = 0; i < 100000; ++i) {
        QCoreApplication::processEvents();
        if (sink.release(1) == 0 && sink.live == 0 && !modCDPlay::isPlaying())
            return;
    }
}

using Waits::settle;

} // namespace

class tst_CdPlay : public QObject {
    Q_OBJECT
private slots:
    void init() {
        m_answers = std::make_unique<ScriptedAnswers>();
        m_sink = std::make_unique<RecordingWaveOutput>();
        modCDPlay::Initialize(&m_window);
    }

    void cleanup() {
        modCDPlay::CloseFile();
        settle();
        QCOMPARE(m_sink->live, 0);
        m_sink.reset();
        m_answers.reset();
    }

    void playsTheSamples_data() {
        columns<QByteArray, QByteArray, int>("wave", "pcm", "bufferSize");
        const QByteArray cd = pseudoRandom((44100 * 2 + 17) * 4, 1);
        const QByteArray mono = pseudoRandom(6001, 8);
        QTest::newRow("CD audio, a last short buffer") << cdWave(cd) << cd << 35280;
        // The channels count twice in the buffer size: 2 x 0.1 s of stereo.
        QTest::newRow("whole buffers") << cdWave(cd.left(35280 * 4)) << cd.left(35280 * 4) << 35280;
        QTest::newRow("8-bit mono, 22 kHz")
            << riff(fmtChunk(1, 1, 22050, 8) + chunk("data", mono)) << mono << 2205;
        QTest::newRow("data before format, chunks around")
            << riff(chunk("LIST", "INFOINAM\x04\0\0\0abc\0") + chunk("data", cd) +
                    chunk("JUNK", "odd") + fmtChunk(1, 2, 44100, 16) +
                    chunk("smpl", QByteArray(36, 1)))
            << cd << 35280;
        QTest::newRow("shorter than one buffer") << cdWave(cd.left(400)) << cd.left(400) << 35280;
        // A data chunk that claims more than the file holds plays what is there.
        QTest::newRow("data cut short")
            << "RIFF" + le32(2000000) + "WAVE" + fmtChunk(1, 2, 44100, 16) + "data" +
                   le32(1000000) + cd.left(9000)
            << cd.left(9000) << 35280;
    }

    void playsTheSamples() {
        auto [wave, pcm, bufferSize] =
            fetch<QByteArray, QByteArray, int>("wave", "pcm", "bufferSize");
        m_sink->held = true;
        modCDPlay::OpenFile(file(wave));
        QVERIFY(modCDPlay::IsFileOpen());
        QCOMPARE(modCDPlay::bufferSize(), bufferSize);
        QVERIFY(modCDPlay::Play());
        QVERIFY(modCDPlay::Play()); // playing already: changes nothing
        drain(*m_sink);
        QVERIFY(m_answers->boxes.isEmpty());
        QCOMPARE(m_sink->opened, 1);
        QCOMPARE(m_sink->live, 0);
        QVERIFY(m_sink->heard == pcm);
        // Whole buffers, then what is left.
        QList<qint64> sizes(pcm.size() / bufferSize, bufferSize);
        if (pcm.size() % bufferSize)
            sizes.append(pcm.size() % bufferSize);
        QCOMPARE(m_sink->writes, sizes);
        QVERIFY(!modCDPlay::Playing());
    }

    void pauseAndStopKeepThePlace() {
        const QByteArray pcm = pseudoRandom(44100 * 3 * 4, 2);
        m_sink->held = true;
        modCDPlay::OpenFile(file(cdWave(pcm)));
        QCOMPARE(modCDPlay::Length(), 44100 * 3);
        // A seek past the end is refused; the next play still starts at the first sample.
        QVERIFY(!modCDPlay::FileSeek(44100 * 3));

        // Paused after three buffers were heard, then resumed: nothing lost, nothing twice.
        QVERIFY(modCDPlay::Play());
        for (int i = 0; i < 3; ++i) {
            settle();
            QCOMPARE(m_sink->release(1), 1);
        }
        settle();
        QCOMPARE(modCDPlay::Position(), 3 * 35280 / 4);
        modCDPlay::PausePlay();
        drain(*m_sink);
        QVERIFY(modCDPlay::Play());
        drain(*m_sink);
        QCOMPARE(m_sink->opened, 2);
        QVERIFY(m_sink->heard == pcm);

        // Stopped mid-track: the next play starts from the first sample again. The end of the
        // track leaves the file at its end, where the window's stop takes it back from.
        modCDPlay::StopPlay();
        m_sink->heard.clear();
        QVERIFY(modCDPlay::Play());
        settle();
        QCOMPARE(m_sink->release(2), 2);
        modCDPlay::StopPlay();
        drain(*m_sink);
        QCOMPARE(m_sink->heard, pcm.left(2 * 35280));
        QVERIFY(modCDPlay::Play());
        drain(*m_sink);
        QVERIFY(m_sink->heard.mid(2 * 35280) == pcm);
        QVERIFY(m_answers->boxes.isEmpty());

        // An empty name closes the file and does nothing else.
        modCDPlay::OpenFile(QString());
        QVERIFY(!modCDPlay::IsFileOpen());
        QVERIFY(m_answers->boxes.isEmpty());
    }

    void badFiles_data() {
        columns<QByteArray, QString>("wave", "message"); // wave: empty: no file at all
        const QByteArray fmt = fmtChunk(1, 2, 44100, 16);
        const QByteArray data = chunk("data", QByteArray(4000, 2));
        QTest::newRow("missing") << QByteArray() << "Error opening input file, rc = 5";
        QTest::newRow("three bytes") << QByteArray("RIF") << "This is not a wave file";
        QTest::newRow("big-endian RIFX")
            << "RIFX" + riff(fmt + data).mid(4) << "This is not a wave file";
        QTest::newRow("AVI") << "RIFF" + le32(4) + "AVI "
                             << "This is not a wave file";
        // The format is looked for before the data: a file with neither tells of the format.
        QTest::newRow("neither format nor data")
            << riff(chunk("JUNK", "12345678")) << "Couldn't get the format chunk";
        QTest::newRow("chunk running past the end")
            << riff("JUNK" + le32(1000000000) + fmt + data) << "Couldn't get the format chunk";
        QTest::newRow("format of 8 bytes")
            << riff(chunk("fmt ", fmt.mid(8, 8)) + data) << "Error reading the wave format";
        QTest::newRow("no channels")
            << riff(fmtChunk(1, 0, 44100, 16) + data) << "Error reading the wave format";
        QTest::newRow("a rate no device plays")
            << riff(fmtChunk(1, 8, 4000000000u, 64) + data) << "Error reading the wave format";
        QTest::newRow("no data") << riff(fmt + chunk("LIST", "x")) << "Couldn't get data chunk";
    }

    void badFiles() {
        auto [wave, message] = fetch<QByteArray, QString>("wave", "message");
        // A good file open before is closed by the failed open.
        modCDPlay::OpenFile(file(cdWave(pseudoRandom(400, 3))));
        QVERIFY(modCDPlay::IsFileOpen());
        modCDPlay::OpenFile(wave.isEmpty() ? m_dir.filePath("none.wav") : file(wave));
        QCOMPARE(m_answers->boxes.size(), 1);
        QCOMPARE(m_answers->boxes.first().prompt, message);
        QCOMPARE(m_answers->boxes.first().buttons, 0); // no icon, the default title
        QVERIFY(!modCDPlay::IsFileOpen());
        QVERIFY(!modCDPlay::Play());
        QCOMPARE(m_sink->opened, 0);
    }

    void refusedDevice() {
        m_sink->refusal = QStringLiteral("No sound device was found: the track can't be played.");
        modCDPlay::OpenFile(file(cdWave(pseudoRandom(4000, 4))));
        QVERIFY(!modCDPlay::Play());
        QCOMPARE(m_answers->boxes.size(), 1);
        QCOMPARE(m_answers->boxes.first().prompt, m_sink->refusal);
        QVERIFY(!modCDPlay::isPlaying());
        QVERIFY(!modCDPlay::Playing());
        QCOMPARE(m_sink->live, 0);
    }

private:
    QString file(const QByteArray &bytes) {
        const QString path = m_dir.filePath(QStringLiteral("%1.wav").arg(++m_files));
        writeFile(path, bytes);
        return path;
    }

    QTemporaryDir m_dir;
    QObject m_window;
    std::unique_ptr<ScriptedAnswers> m_answers;
    std::unique_ptr<RecordingWaveOutput> m_sink;
    int m_files = 0;
};

QTEST_MAIN(tst_CdPlay)
#include "tst_cdplay.moc"
