// Tracks of the Image Recorder's audio disc ripped through each encoder, and the files read
// back by ffprobe, ffmpeg and ogginfo.
#include "EncodedReadBack.h"
#include "OutsideTools.h"
#include "RipperRig.h"
#include "Rows.h"

#include "engine/encoders/MP3EncoderX.h"
#include "engine/encoders/VorbisEncoderX.h"
#include "engine/encoders/WMAEncoderX.h"

#include <QtTest>

#include <functional>

using namespace EncodedReadBack;
using Setup = std::function<std::shared_ptr<AudioEncoder>()>;
Q_DECLARE_METATYPE(Setup)

namespace {
std::shared_ptr<AudioEncoder> mp3(qint32 mode, qint32 rate, qint32 channels, qint32 min = 32,
                                  qint32 max = 320) {
    auto e = std::make_shared<MP3EncoderX>();
    e->setVBRMode(mode);
    e->setBitrate(rate);
    e->setVBRQuality(rate);
    e->setChannelMode(channels);
    e->setVBRMinBitrate(min);
    e->setVBRMaxBitrate(max);
    return e;
}

std::shared_ptr<AudioEncoder> vorbis(qint32 nominal, qint32 min, qint32 max) {
    auto e = std::make_shared<VorbisEncoderX>();
    e->setNominalBitrate(nominal);
    e->setMinBitrate(min);
    e->setMaxBitrate(max);
    return e;
}

std::shared_ptr<AudioEncoder> wma(qint32 rate, qint32 sampleRate, bool stereo) {
    auto e = std::make_shared<WMAEncoderX>();
    e->setBitrate(rate);
    e->setSampleRate(sampleRate);
    e->setStereo(stereo);
    return e;
}

// Rips the tracks into the application folder through the encoder; the files' paths.
QStringList rip(RipperRig &rig, std::shared_ptr<AudioEncoder> encoder, const QList<int> &tracks,
                const QString &extension) {
    if (!rig.ripper->ReadTOC())
        return {};
    rig.ripper->SetEncoder(std::move(encoder));
    rig.ripper->setUseEncoder(true);
    QStringList files;
    for (int t : tracks) {
        files << rig.writer.env.appFolder() + QStringLiteral("/Track%1%2").arg(t).arg(extension);
        rig.ripper->AddExtractionTrack(t, files.last(), t);
    }
    if (!rig.ripper->StartExtraction() || !rig.waitForEnd())
        return {};
    return files;
}
} // namespace

class tst_Encoders : public QObject {
    Q_OBJECT
private slots:
    void encodes_data() {
        columns<Setup, QString>("setup", "extension");
        QTest::addColumn<QString>(
            "probe");                   // codec, channels, sample rate, bit rate as ffprobe says
        QTest::addColumn<int>("frame"); // samples of a coded frame at 44,100 Hz
        QTest::newRow("mp3 cbr 192 mono") << Setup([] { return mp3(0, 192, 2); }) << ".mp3"
                                          << "mp3 1 44100 192000" << 1152;
        QTest::newRow("mp3 vbr 96-256") << Setup([] { return mp3(1, 2, 1, 96, 256); }) << ".mp3"
                                        << "mp3 2 44100 " << 1152;
        QTest::newRow("vorbis 192/160/256") << Setup([] { return vorbis(192, 160, 256); }) << ".ogg"
                                            << "vorbis 2 44100 192000" << 2048;
        QTest::newRow("wma 48 mono 22050") << Setup([] { return wma(48, 3, false); }) << ".wma"
                                           << "wmav2 1 22050 48000" << 4096;
    }

    void encodes() {
        auto [setup, extension, probe, frame] =
            fetch<Setup, QString, QString, int>("setup", "extension", "probe", "frame");
        RipperRig rig;
        const QStringList files = rip(rig, setup(), {1, 3}, extension);
        QCOMPARE(files.size(), 2);
        // Encoded side by side, told file after file.
        QCOMPARE(rig.events.join(", "), QStringLiteral("Start, FileStart 1 Track1%1, FileEnd, "
                                                       "FileStart 3 Track3%1, FileEnd, End")
                                            .arg(extension));
        for (int i = 0; i < 2; ++i) {
            const int track = i == 0 ? 1 : 3;
            const QString file = files[i];
            QStringList got;
            for (const char *entry : {"codec_name", "channels", "sample_rate", "bit_rate"})
                got << OutsideTools::ffprobeStream(file, entry);
            if (extension == ".mp3" && probe.endsWith(' '))
                got.last().clear(); // a variable rate has no one figure: its frames are checked
            QCOMPARE(got.join(' '), probe);
            const QByteArray decoded = decodedCd(file);
            const qint64 samples = qint64(rig.ripper->TrackLengthFrames(track)) * 588;
            QVERIFY2(
                qAbs(decoded.size() / 4 - samples) <= frame,
                qPrintable(QStringLiteral("%1 against %2").arg(decoded.size() / 4).arg(samples)));
            const double r = correlation(rig.pcm[track - 1], decoded, 4 * frame);
            QVERIFY2(r > 0.99, qPrintable(QString::number(r)));
        }
        if (extension == ".mp3" && probe.endsWith(' ')) {
            const QList<int> kbps = mp3FrameKbps(files[0]);
            QVERIFY(kbps.size() > 100);
            for (int k : kbps)
                QVERIFY2(k >= 96 && k <= 256, qPrintable(QString::number(k)));
            QVERIFY(std::adjacent_find(kbps.begin(), kbps.end(), std::not_equal_to<>()) !=
                    kbps.end());
        }
        if (extension == ".ogg") {
            const QString info = ogginfo(files[0]);
            for (const char *line :
                 {"Nominal bitrate: 192.000000 kb/s", "Upper bitrate: 256.000000 kb/s",
                  "Lower bitrate: 160.000000 kb/s"})
                QVERIFY2(info.contains(QLatin1String(line)), qPrintable(info));
        }
        if (extension == ".wma")
            QCOMPARE(ffprobeFormat(files[0], "format_name"), QStringLiteral("asf"));
    }

    // What a library refuses fails each file with its reason, leaves no file, and ends the job.
    void refusedSettings() {
        RipperRig rig;
        QStringList reasons;
        QObject::connect(rig.ripper.get(), &CDRipperX::EncoderFailed,
                         [&reasons](const QString &why) { reasons << why; });
        const QStringList files = rip(rig, wma(16, 5, true), {1, 2}, ".wma");
        QCOMPARE(rig.statuses, QList<qint32>({10, 10}));
        QCOMPARE(reasons.size(), 2);
        QVERIFY2(
            reasons[0].startsWith("The Windows Media encoder refuses 16kb/s stereo at 44100 Hz"),
            qPrintable(reasons[0]));
        for (const QString &file : files)
            QVERIFY(!QFile::exists(file));
        QVERIFY(!vorbis(32, 0, 0)->open(rig.writer.env.appFolder() + "/x.ogg"));
        QVERIFY(!QFile::exists(rig.writer.env.appFolder() + "/x.ogg"));
    }

    // A cancel drops every file in work, not only the one the window shows.
    void cancelSideBySide() {
        RipperRig rig;
        QObject::connect(rig.ripper.get(), &CDRipperX::ExtractingFileStart, rig.ripper.get(),
                         [&rig] { rig.ripper->CancelExtraction(); });
        const QStringList files = rip(rig, mp3(0, 128, 1), {1, 2, 3}, ".mp3");
        // Files are encoded side by side, so the next ones may have begun and reported before
        // the cancel is seen; none of them may end.
        QCOMPARE(rig.events.mid(0, 2), QStringList({"Start", "FileStart 1 Track1.mp3"}));
        QCOMPARE(rig.events.last(), QStringLiteral("End"));
        for (const QString &event : rig.events.mid(2, rig.events.size() - 3))
            QVERIFY2(event.startsWith(QLatin1String("Status ")) ||
                         event.startsWith(QLatin1String("FileStart ")),
                     qPrintable(event));
        for (const QString &file : files)
            QVERIFY(!QFile::exists(file));
    }

    // What libavcodec's wmav2 takes: below 24kb/s nothing, from there every sample rate from
    // 8,000 to 48,000 Hz, stereo and mono.
    void wmaTable() {
        for (qint32 rate : {5, 6, 8, 10, 12, 16, 20, 22, 32, 40, 48, 64, 80, 96, 128, 160})
            for (bool stereo : {true, false})
                for (qint32 i = 0; i < WMAEncoderX::SampleRateCount; ++i)
                    QCOMPARE(WMAEncoderX::SampleRateSupported(i, rate, stereo), rate > 22);
        QCOMPARE(WMAEncoderX::SampleRateCount, 7);
    }
};

QTEST_GUILESS_MAIN(tst_Encoders)
#include "tst_encoders.moc"
