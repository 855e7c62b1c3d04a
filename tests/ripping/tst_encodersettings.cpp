// The encoder settings dialogs and their files, offscreen in a fresh application folder; boxes
// are answered by the script.
#include "OutsideTools.h"
#include "Rows.h"
#include "ScriptedAnswers.h"
#include "TestEnvironment.h"
#include "WidgetSnapshot.h"

#include "base/RuntimeError.h"
#include "engine/encoders/MP3EncoderX.h"
#include "engine/encoders/VorbisEncoderX.h"
#include "engine/encoders/WMAEncoderX.h"
#include "engine/ripper/CDRipperX.h"
#include "ripping/EncoderSettingsFiles.h"
#include "ripping/frmMp3Settings.h"
#include "ripping/frmRipper.h"
#include "ripping/frmVorbisSettings.h"
#include "ripping/frmWMASettings.h"
#include "ripping/modEncoderLists.h"

#include <QtTest>
#include <QtWidgets>

using namespace EncoderSettingsFiles;

namespace {
const QByteArray FreshIni =
    "[MP3 Options]\nConstant Bit Rate=True\nBit Rate=8\nVariable Rate=False\n"
    "Min=0\nMax=13\nVBR Quality=0\nStudio=False\nNormal=True\n"
    "Channel Mode=0\n[VORBIS Options]\nNormal Bit Rate=9\n"
    "Use Advanced Settings=0\nMinimum Bit Rate=0\nMaximum Bit Rate=0\n";

QStringList prompts(const ScriptedAnswers &answers) {
    QStringList shown;
    for (const auto &box : answers.boxes)
        shown << box.title.section(" - ", -1) + ": " + box.prompt;
    return shown;
}
} // namespace

class tst_EncoderSettings : public QObject {
    Q_OBJECT
private slots:
    // A file's bytes: the record read back as the line it is written as, or the error its reading
    // raises.
    void records_data() {
        columns<bool, QByteArray, QString>("wma", "bytes", "result");
        QTest::newRow("vorbis") << false << QByteArray("9,0,0,0\r\n") << "9,0,0,0\n";
        QTest::newRow("vorbis last line")
            << false << QByteArray("1,1,2,3\n\n5, 0 ,0,0") << "5,0,0,0\n";
        QTest::newRow("vorbis across lines") << false << QByteArray("4,1\n2,3\n") << "4,1,2,3\n";
        QTest::newRow("vorbis word") << false << QByteArray("nine,0,0,0") << "13";
        QTest::newRow("vorbis too big") << false << QByteArray("40000,0,0,0") << "6";
        QTest::newRow("vorbis short") << false << QByteArray("9,0,0") << "62";
        QTest::newRow("wma") << true << QByteArray("14,0,#TRUE#,#FALSE#,5")
                             << "14,0,#TRUE#,#FALSE#,5\n";
        QTest::newRow("wma last") << true
                                  << QByteArray("1,0,#TRUE#,#FALSE#,0\n10,1,#FALSE#,#TRUE#,3\n")
                                  << "10,1,#FALSE#,#TRUE#,3\n";
        QTest::newRow("wma flag word") << true << QByteArray("10,1,maybe,#TRUE#,3") << "13";
        QTest::newRow("wma empty") << true << QByteArray() << "62";
    }

    void records() {
        auto [wma, bytes, result] = fetch<bool, QByteArray, QString>("wma", "bytes", "result");
        try {
            QCOMPARE(
                QString::fromLatin1(wma ? wmaLine(readWMA(bytes)) : vorbisLine(readVorbis(bytes))),
                result);
        } catch (const RuntimeError &e) {
            QCOMPARE(QString::number(e.number()), result);
        }
    }

    // With no file the dialog shows the defaults; OK gives them to the encoders and writes them.
    void mp3Fresh() {
        TestEnvironment env;
        ScriptedAnswers answers;
        auto mp3 = std::make_shared<MP3EncoderX>();
        auto vorbis = std::make_shared<VorbisEncoderX>();
        mp3->setBitrate(320);
        vorbis->setNominalBitrate(0);
        QString shown; // compared out here: a failure inside would leave the dialog up
        QTimer::singleShot(0, [&] {
            frmMp3Settings *d = frmMp3Settings::instance();
            shown = WidgetSnapshot::differences(d, "encodersettings-mp3-fresh");
            d->cmdOK->click();
        });
        frmMp3Settings::ShowForm(mp3, vorbis, nullptr);
        QCOMPARE(shown, QString());
        QCOMPARE(OutsideTools::fileBytes(env.appFolder() + "/Dat/encoder.ini"), FreshIni);
        QCOMPARE(QList<qint32>({mp3->Bitrate(), mp3->VBRMode(), mp3->QualityMode(),
                                vorbis->NominalBitrate()}),
                 QList<qint32>({128, 0, 1, 128}));
        QVERIFY(answers.boxes.isEmpty());
    }

    void mp3Apply_data() {
        // indices: VBR min, max, quality; Vorbis nominal, min, max
        columns<QList<int>, QString>("indices", "message");
        QTest::newRow("vbr equal limits")
            << QList<int>{8, 8, 0, 9, 0, 0}
            << "Minimum Bit Rate must be less than the Maximum Bit Rate.";
        QTest::newRow("nominal over max")
            << QList<int>{0, 13, 0, 10, 0, 9}
            << "Nominal Bit Rate must be lower than the Maximum Bit Rate";
        QTest::newRow("default under min")
            << QList<int>{0, 13, 0, 0, 5, 0}
            << "Nominal Bit Rate must be higher than the Minimum Bit Rate";
        QTest::newRow("nominal at limits") << QList<int>{6, 12, 3, 9, 9, 9} << "";
        QTest::newRow("refused by libvorbis")
            << QList<int>{0, 13, 0, 1, 0, 0}
            << "The Vorbis encoder refuses a nominal rate of 32kb/s with a minimum of 0kb/s and a "
               "maximum of 0kb/s for 44,100 Hz stereo (0 is the encoder's choice).";
    }

    // Apply's checks, in their order, and what reaches the encoders before a check stops it.
    void mp3Apply() {
        auto [indices, message] = fetch<QList<int>, QString>("indices", "message");
        TestEnvironment env;
        ScriptedAnswers answers;
        auto mp3 = std::make_shared<MP3EncoderX>();
        auto vorbis = std::make_shared<VorbisEncoderX>();
        QString shown; // compared out here: a failure inside would leave the dialog up
        QTimer::singleShot(0, [&] {
            frmMp3Settings *d = frmMp3Settings::instance();
            d->optVBR->setChecked(true);
            d->cboVBRMin->setCurrentIndex(indices[0]);
            d->cboVBRMax->setCurrentIndex(indices[1]);
            d->sldVBRLevel->setValue(indices[2]);
            d->cboNominalBitRate->setCurrentIndex(indices[3]);
            d->cboMinBitRate->setCurrentIndex(indices[4]);
            d->cboMaxBitRate->setCurrentIndex(indices[5]);
            QVERIFY(d->cmdApply->isEnabled());
            d->cmdApply->click();
            const QString tag = QString::fromLatin1(QTest::currentDataTag()).replace(u' ', u'-');
            shown = WidgetSnapshot::differences(d, "encodersettings-mp3-applied-" + tag);
            d->cmdCancel->click();
        });
        frmMp3Settings::ShowForm(mp3, vorbis, nullptr);
        QCOMPARE(shown, QString());
        QCOMPARE(prompts(answers),
                 message.isEmpty() ? QStringList() : QStringList("Information: " + message));
        QCOMPARE(QList<qint32>({mp3->VBRMode(), mp3->VBRMinBitrate(), mp3->VBRQuality()}),
                 QList<qint32>({1, modEncoderLists::Mp3BitRates()[indices[0]], indices[2]}));
        QCOMPARE(vorbis->NominalBitrate(), message.startsWith("The Vorbis") ? 32 : 128);
    }

    // Loading restores the bit rate first, so the stored sample rate index meets its own list.
    void wmaLoadAndApply() {
        TestEnvironment env;
        env.writeFile("Dat/OptWMA.dat", "10,1,#FALSE#,#TRUE#,3\n");
        ScriptedAnswers answers;
        auto wma = std::make_shared<WMAEncoderX>();
        answers.answerBox(vbOK);
        answers.answerBox(vbNo);
        QString shown; // compared out here: a failure inside would leave the dialog up
        QTimer::singleShot(0, [&] {
            frmWMASettings *d = frmWMASettings::instance();
            shown = WidgetSnapshot::differences(d, "encodersettings-wma-open");
            d->cboBitRate->setCurrentIndex(5); // 16kb/s: nothing the encoder takes
            shown += QString::number(d->cboSampleRates->count());
            d->cmdLoad->click();
            shown += WidgetSnapshot::differences(d, "encodersettings-wma-loaded");
            d->cmdApply->click();
        });
        frmWMASettings::ShowForm(wma, nullptr);
        QCOMPARE(shown, QStringLiteral("0"));
        QCOMPARE(
            QList<qint32>({wma->Bitrate(), wma->SampleRate(), wma->Stereo(), wma->EnableDRM()}),
            QList<qint32>({48, 3, 0, 1}));
        QCOMPARE(prompts(answers),
                 QStringList({"Information: Options loaded successfully from file: " +
                                  env.appFolder() + "/Dat/OptWMA.dat",
                              "Save Options?: Do you want to Save WMA Options?"}));
    }

    // No file: Load waits for the first save; the closing question saves what the dialog shows.
    void vorbisSaveAndLoad() {
        TestEnvironment env;
        ScriptedAnswers answers;
        const QString file = env.appFolder() + "/Dat/OptVorbis.dat";
        auto vorbis = std::make_shared<VorbisEncoderX>();
        answers.answerBox(vbOK);
        answers.answerBox(vbYes);
        answers.answerBox(vbOK);
        QTimer::singleShot(0, [&] {
            frmVorbisSettings *d = frmVorbisSettings::instance();
            QVERIFY(!d->cmdLoad->isEnabled());
            d->cmdSave->click();
            QVERIFY(d->cmdLoad->isEnabled());
            QCOMPARE(OutsideTools::fileBytes(file), QByteArray("9,0,0,0\n"));
            d->chkUseAdvanced->setChecked(true);
            d->cboMaxBitRate->setCurrentIndex(12);
            d->cmdCancel->click();
        });
        frmVorbisSettings::ShowForm(vorbis, nullptr);
        QCOMPARE(OutsideTools::fileBytes(file), QByteArray("9,1,0,12\n"));
        QCOMPARE(answers.boxes.size(), 3);
        QCOMPARE(answers.boxes[1].title, QStringLiteral("Tessaly - Save Options?"));
        QCOMPARE(vorbis->MaxBitrate(), 0); // cancelled: nothing applied
    }

    // A ripper window's encoders start from encoder.ini; a garbage file leaves their defaults.
    void savedSettingsAtStart() {
        TestEnvironment env;
        MP3EncoderX mp3;
        VorbisEncoderX vorbis;
        env.writeFile("Dat/encoder.ini", "[MP3 Options]\nBit Rate=x\n\x01\xff");
        frmMp3Settings::ApplySavedSettings(mp3, vorbis);
        QCOMPARE(mp3.Bitrate(), 128);
        env.writeFile("Dat/encoder.ini", QByteArray(FreshIni)
                                             .replace("Bit Rate=8", "Bit Rate=10")
                                             .replace("VBR Quality=0", "VBR Quality=9"));
        frmMp3Settings::ApplySavedSettings(mp3, vorbis);
        QCOMPARE(QList<qint32>({mp3.Bitrate(), mp3.VBRQuality()}), QList<qint32>({192, 9}));
    }

    // The ripper window hands the ripper the encoder of the chosen output, or waves.
    void encoderChoice() {
        TestEnvironment env;
        CDRipperX ripper;
        frmRipper window(&ripper);
        const QList<std::shared_ptr<AudioEncoder>> chosen = {
            window.MP3EncoderXP, nullptr, window.VorbisEncoderXP, window.WMAEncoderXP};
        for (int i : {2, 1, 3, 0}) {
            window.cboEncoders->setCurrentIndex(i);
            QCOMPARE(window.m_objEncoder, chosen[i]);
            QCOMPARE(ripper.UseEncoder(), i != 1);
        }
    }
};

QTEST_MAIN(tst_EncoderSettings)
#include "tst_encodersettings.moc"
