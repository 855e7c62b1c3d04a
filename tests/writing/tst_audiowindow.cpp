// The audio window on the Image Recorder: waves dropped, refused, removed and moved, the ruler,
// and the disc it writes read back by cd-info and cd-paranoia.
#include "Fixtures.h"
#include "FrameFixture.h"
#include "ReadBack.h"
#include "RecordingWaveOutput.h"
#include "Rows.h"
#include "SnapshotScrubs.h"
#include "ViewGestures.h"
#include "Waits.h"
#include "WidgetSnapshot.h"
#include "WriteRig.h"
#include "app/FormRegistry.h"
#include "app/mdiMain.h"
#include "base/App.h"
#include "compilation/frmAudio.h"
#include "compilation/modCDPlay.h"
#include "engine/writer/CDWriterPro.h"
#include "engine/writer/recorders/image/ImageRecorder.h"
#include "widgets/DefaultInstance.h"
#include "widgets/KeyedItem.h"
#include "widgets/KeyedMenu.h"
#include "widgets/KeyedStatusBar.h"
#include "widgets/KeyedToolbar.h"
#include "widgets/Twips.h"
#include "writing/frmBurn.h"

#include <QtTest>
#include <QtWidgets>

using namespace Fixtures;

namespace {

constexpr int Rate = 44100;

// The frame with the audio window open, a recording sound device and a folder of waves.
struct AudioWindow {
    AudioWindow()
        : rig({}, 1) {
        FormRegistry::open(QStringLiteral("frmAudio"), rig.frame());
        Waits::settle();
        rig.boxes.clear();
    }
    ~AudioWindow() { modCDPlay::CloseFile(); }

    frmAudio *window() const { return DefaultInstance<frmAudio>::peek(); }
    QTreeWidget *list() const { return window()->lvwAudioTracks; }
    QString panel(const char *key) const {
        return rig.frame()->smartStatusBar->Item(QLatin1String(key))->Text();
    }
    // A wave of CD audio of `frames` sample frames; its samples in *pcm.
    QString wave(const QString &name, int frames, QByteArray *pcm = nullptr) {
        const QByteArray samples = pseudoRandom(frames * 4, int(qHash(name)));
        if (pcm)
            *pcm = samples;
        return file(name, cdWave(samples));
    }
    QString file(const QString &name, const QByteArray &bytes) {
        writeFile(dir.filePath(name), bytes);
        return dir.filePath(name);
    }
    QString snapshot(const QString &name) const {
        return WidgetSnapshot::differences(window(), name, SnapshotScrubs::folder(dir.path()));
    }
    QStringList prompts() {
        QStringList asked;
        for (const WriteRig::Box &box : std::as_const(rig.boxes))
            asked.append(box.title + u'|' + box.prompt);
        rig.boxes.clear();
        return asked;
    }

    WriteRig rig;
    RecordingWaveOutput sink;
    QTemporaryDir dir;
};

QString information(const char *text) {
    return App::ProductName() + QStringLiteral(" - Information|") + QLatin1String(text);
}

} // namespace

class tst_AudioWindow : public QObject {
    Q_OBJECT
private slots:
    void compileWriteAndRipBack() {
        AudioWindow w;
        QVERIFY(w.rig.started());
        QByteArray five, seven, odd, four;
        const QString fivePath = w.wave("five.wav", 5 * Rate, &five);
        const QString sevenPath = w.wave("seven.wav", 7 * Rate, &seven);
        // Ends inside a CD frame: padded with silence on the disc.
        const QString oddPath = w.wave("odd.wav", 6 * Rate + 7, &odd);
        const QString fourPath = w.wave("FOUR.WAV", 4 * Rate, &four);
        const QString high = w.file("high.wav", riff(fmtChunk(1, 2, 48000, 16) +
                                                     chunk("data", pseudoRandom(48000 * 4, 3))));
        const QString mp3 = w.file("song.mp3", "ID3");
        QVERIFY(QDir(w.dir.path()).mkdir("folder.wav"));
        ViewGestures::drop(w.list(), {fivePath, mp3, high, sevenPath, w.dir.filePath("folder.wav"),
                                      oddPath, fourPath});
        QCOMPARE(
            w.prompts(),
            QStringList({information("Only .wav files are allowed for an audio disc."),
                         information("Invalid Audio Format...High quality .wav files only!")}));
        QCOMPARE(w.snapshot("audiowindow-dropped"), QString());
        // Removing a track plays the one that takes its place.
        w.list()->setCurrentItem(w.list()->topLevelItem(1));
        w.rig.frame()->runCommand(QStringLiteral("REMOVEAUDIOTRACK"));
        QCOMPARE(w.snapshot("audiowindow-removed"), QString());
        QCOMPARE(w.list()->currentItem()->text(1), oddPath);
        QVERIFY(modCDPlay::isPlaying());
        QTRY_VERIFY(!w.sink.heard.isEmpty());
        QVERIFY(odd.startsWith(w.sink.heard));
        w.window()->cmdStop->click();
        QCOMPARE(w.window()->Slider1->value(), 0);
        // The last track dragged onto the first goes before it.
        ViewGestures::move(w.list()->topLevelItem(2), w.list()->topLevelItem(0));
        QCOMPARE(w.snapshot("audiowindow-moved"), QString());
        QCOMPARE(w.panel("DIRECTORIES"), QStringLiteral(" Tracks: 3"));
        QVERIFY(w.prompts().isEmpty());
        frmBurn *burn = w.rig.openDialog();
        burn->optWrite->setChecked(true);
        QVERIFY(w.rig.writeAndWait(burn));
        QCOMPARE(w.rig.ending, QStringLiteral("WriteComplete"));
        QVERIFY(w.list()->isEnabled());

        const QDir ejected(ImageRecorder::ejectedFolder());
        const QStringList cues = ejected.entryList({"*.cue"}, QDir::Files);
        QCOMPARE(cues.size(), 1);
        const QString cue = ejected.filePath(cues.first());
        const QList<QByteArray> order = {four, five, odd};
        QList<int> starts = {0};
        for (const QByteArray &pcm : order)
            starts.append(starts.last() + int(ReadBack::ripOfTrack(pcm, false).size() / 2352));
        starts.last() -= 150; // no gap after the last track
        QCOMPARE(ReadBack::cdInfoTrackStarts(cue), starts);
        for (int i = 0; i < order.size(); ++i)
            QVERIFY2(ReadBack::cdParanoiaTrack(cue, i + 1, w.dir) ==
                         ReadBack::ripOfTrack(order[i], i + 1 == order.size()),
                     qPrintable(QStringLiteral("track %1").arg(i + 1)));
    }

    void overrunWarning_data() {
        columns<int, bool>("frames", "warned");
        // 703 MB free on a CD-R 80, five kept in reserve: the bar reaches 698 at 313,088 blocks
        // with the gap.
        QTest::newRow("at the boundary") << 312938 << true;
        QTest::newRow("one frame before") << 312937 << false;
    }

    void overrunWarning() {
        auto [frames, warned] = fetch<int, bool>("frames", "warned");
        AudioWindow w;
        // A sparse wave: its header, then the samples' length as a hole.
        const qint64 bytes = qint64(frames) * 2352;
        QByteArray header = cdWave(QByteArray());
        header.replace(4, 4, le32(quint32(36 + bytes))).replace(40, 4, le32(quint32(bytes)));
        const QString path = w.file("long.wav", header);
        QVERIFY(QFile(path).resize(44 + bytes));
        ViewGestures::drop(w.list(), {path});
        QCOMPARE(w.list()->topLevelItemCount(), 1);
        const QStringList expected = {
            App::ProductName() +
            " - Warning|Audio image size is bigger than free space on media!\nYou must remove some "
            "files from the image."};
        QCOMPARE(w.prompts(), warned ? expected : QStringList());
    }

    void hundredthTrackRefused() {
        AudioWindow w;
        QStringList paths;
        for (int i = 1; i <= 101; ++i)
            paths.append(w.wave(QStringLiteral("t%1.wav").arg(i), 100));
        ViewGestures::drop(w.list(), paths);
        QCOMPARE(w.list()->topLevelItemCount(), 99);
        QCOMPARE(w.rig.frame()->Tessaly->AudioTrackCount(), 99);
        QCOMPARE(w.prompts(),
                 QStringList({information("An audio CD holds no more than 99 tracks.\n"
                                          "\"t100.wav\" and the files after it were not "
                                          "added.")}));
    }

    void loadAndUnload() {
        AudioWindow w;
        mdiMain *frame = w.rig.frame();
        // The panels as the window opens are tst_windows' frame-audio.
        ViewGestures::drop(w.list(), {w.wave("a.wav", 5 * Rate)});
        // Seven seconds are a megabyte on the minutes ruler: 10 twips.
        QCOMPARE(FrameFixture::differences("audiowindow-one-track", w.rig.appFolder()), QString());
        ViewGestures::drop(w.list(), {w.wave("b.wav", Rate)});
        QVERIFY(w.prompts().isEmpty());
        // Closing leaves the engine's tracks alone; the next window shows them once it reloads.
        DefaultInstance<frmAudio>::unload();
        Waits::settle();
        // New and Import come back, writing and printing go (open, tst_windows pins them).
        QCOMPARE(FrameFixture::differences("audiowindow-closed", w.rig.appFolder()), QString());
        FormRegistry::open(QStringLiteral("frmAudio"), frame);
        QCOMPARE(w.list()->topLevelItemCount(), 0);
        w.window()->LoadTrackList();
        QCOMPARE(w.list()->topLevelItemCount(), 2);
        frame->runCommand(QStringLiteral("CLEARAUDIOTRACKS"));
        QCOMPARE(w.list()->topLevelItemCount(), 0);
        QCOMPARE(frame->Tessaly->AudioTrackCount(), 0);
        QCOMPARE(w.panel("DATA"), QStringLiteral(" 00:00:00 of 80:00:00 Used"));
    }

    // A track played to its end stops the player and takes the slider back to the start.
    void playerRewindsAtTheEnd() {
        AudioWindow w;
        QVERIFY(w.rig.started());
        QByteArray pcm;
        ViewGestures::drop(w.list(), {w.wave("one.wav", Rate / 2, &pcm)});
        QTreeWidgetItem *track = w.list()->topLevelItem(0);
        w.list()->setCurrentItem(track);
        emit w.list()->itemClicked(track, 0);
        w.window()->cmdPlay->click();
        QTRY_VERIFY(!w.window()->Timer1->isActive());
        QVERIFY(w.sink.heard == pcm);
        QCOMPARE(w.window()->Slider1->value(), 0);
    }
};

QTEST_MAIN(tst_AudioWindow)
#include "tst_audiowindow.moc"
