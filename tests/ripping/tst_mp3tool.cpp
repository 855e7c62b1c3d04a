#include "OutsideTools.h"
#include "Rows.h"
#include "ScriptedAnswers.h"
#include "TestEnvironment.h"
#include "WidgetSnapshot.h"

#include "ripping/clsMP3.h"
#include "ripping/frmDecode.h"
#include "ripping/modMP3Support.h"

#include <QtTest>
#include <QtWidgets>

using namespace OutsideTools;

namespace {

struct Failure {
    QString lame, box;
};
struct Encoded {
    QString setup, bitRate, channels;
};
struct Line {
    QString setup;
    bool encode;
    QString file, words;
};

// Records its words one a line beside itself; with a file "fail" there it writes a partial
// output file and fails.
const QByteArray FakeLame = R"(#!/bin/sh
dir=$(dirname "$0")
printf '%s\n' "$@" > "$dir/args.txt"
echo "fake lame was here"
if [ -f "$dir/fail" ]; then
    for last; do :; done
    echo partial > "$last"
    exit 3
fi
exit 0
)";

const QByteArray DefaultRecord = "128,4,0,0,0,0,0,0,128,4,0,0,0,128,0,0,0,0,0,0,0,\"" +
                                 QByteArray(128, ' ') + "\",0,0,0,0,0,0,0,0,0,0\r\n";

// Puts the fake lame into the application folder, where the tool looks first.
void installFakeLame(const TestEnvironment &env, bool failing) {
    env.writeFile(QStringLiteral("lame"), FakeLame);
    if (failing)
        env.writeFile(QStringLiteral("fail"), "");
    QFile(env.appFolder() + QStringLiteral("/lame"))
        .setPermissions(QFileDevice::ExeOwner | QFileDevice::ReadOwner);
}

// The user's changes a row names, made through the window's controls.
void apply(frmDecode *form, const QString &setup) {
    for (const QString &step : setup.split(u',', Qt::SkipEmptyParts)) {
        const QStringList part = step.split(u'=');
        const QString name = part[0];
        const QString value = part.value(1);
        if (name == QLatin1String("rate"))
            form->sldBitrate[0]->setValue(value.toInt());
        else if (name == QLatin1String("maxrate"))
            form->sldBitrate[1]->setValue(value.toInt());
        else if (auto *box = form->findChild<QCheckBox *>(name))
            box->setChecked(true);
        else if (auto *combo = form->findChild<QComboBox *>(name))
            combo->setCurrentIndex(value.toInt());
        else if (auto *edit = form->findChild<QLineEdit *>(name))
            edit->setText(value);
        else
            QFAIL(qPrintable(QStringLiteral("no control ") + name));
    }
}

void runTool(frmDecode *form, ScriptedAnswers &answers, bool encode, const QString &file) {
    answers.answerFile(file);
    QTest::mouseClick(encode ? form->cmdEncode : form->cmdDecode, Qt::LeftButton);
}

} // namespace

class tst_mp3tool : public QObject {
    Q_OBJECT
private slots:
    void commandLines_data() {
        // What lame receives, joined by "|".
        addRows<Line>({
            {"defaults", {"", true, "/a/song.wav", "-S|-b|128|/a/song.wav|/a/song.mp3"}},
            {"decode passes the switches too",
             {"chkCRC", false, "/a/song.mp3", "--decode|-S|-b|128|-p|/a/song.mp3|/a/song.wav"}},
            {"VBR with quality",
             {"chkEnableVBR,txtQuality=2", true, "/a/s.wav",
              "-S|-b|128|-V|2|-B|128|/a/s.wav|/a/s.mp3"}},
            {"maximum and mono",
             {"chkEnableVBR,maxrate=18,cboMode=3", true, "/a/s.wav",
              "-S|-b|128|-m|m|-V|4|-B|320|/a/s.wav|/a/s.mp3"}},
            {"ABR, tag and minimum",
             {"chkEnableVBR,chkUseABR,txtABRBitrate=200,chkDisableVBRTag,chkEnforceMinBitrate,"
              "cboOptimize=2",
              true, "/a/s.wav", "-S|-b|128|-h|-B|128|-t|-F|--abr|200|/a/s.wav|/a/s.mp3"}},
            {"ABR without VBR gives nothing",
             {"chkUseABR,txtABRBitrate=200", true, "/a/s.wav", "-S|-b|128|/a/s.wav|/a/s.mp3"}},
            {"CRC, copy, copyright",
             {"chkCRC,chkCopy,chkCopyright,cboOptimize=1", true, "/a/s.wav",
              "-S|-b|128|-f|-p|-o|-c|/a/s.wav|/a/s.mp3"}},
            {"resample",
             {"cboOutputFreq=2", true, "/a/s.wav", "-S|-b|128|--resample|22.05|/a/s.wav|/a/s.mp3"}},
            {"slider position 16", {"rate=16", true, "/a/s.wav", "-S|-b|0|/a/s.wav|/a/s.mp3"}},
            {"width without its filter",
             {"chkHighPassWidth,txtHighPassWidth=1", true, "/a/s.wav",
              "-S|-b|128|/a/s.wav|/a/s.mp3"}},
            {"filters with widths",
             {"chkHighPassFreq,txtHighPassFreq=0.5,chkHighPassWidth,txtHighPassWidth=0.25,"
              "chkLowPassFreq,txtLowPassFreq=16.5,chkLowPassWidth,txtLowPassWidth=x",
              true, "/a/s.wav",
              "-S|-b|128|--highpass|0.5|--highpass-width|0.25|--lowpass|16.5|--lowpass-width|0|"
              "/a/s.wav|/a/s.mp3"}},
            {"path with blanks",
             {"rate=15", true, "/a/my song.wav", "-S|-b|192|/a/my|song.wav|/a/my|song.mp3"}},
        });
    }

    void commandLines() {
        QFETCH(Line, row);
        const auto &[setup, encode, file, words] = row;
        TestEnvironment env;
        ScriptedAnswers answers;
        installFakeLame(env, false);
        QPointer<frmDecode> form = new frmDecode;
        form->Form_Load();
        apply(form, setup);
        const QStringList expected = words.split(u'|');
        // The status shows the switches as soon as anything changes, before any run.
        const qsizetype firstFile = expected.indexOf(file.section(u' ', 0, 0));
        const QStringList switches = expected.mid(0, firstFile);
        QCOMPARE(form->lblStatus->text(),
                 u' ' + switches.mid(switches.indexOf(QStringLiteral("-S")) + 1).join(u' '));
        runTool(form, answers, encode, file);
        QCOMPARE(QString::fromUtf8(fileBytes(env.appFolder() + QStringLiteral("/args.txt")))
                     .trimmed()
                     .split(u'\n'),
                 expected);
        QCOMPARE(answers.boxes.size(), 1);
        QCOMPARE(answers.fileBoxes[0].title + u'|' + answers.boxes[0].prompt,
                 encode ? "Open a WAV File|Finished Encoding File!"
                        : "Open a MP3 File|Finished Decoding File!");
        QVERIFY(fileBytes(clsMP3::logFile()).contains("fake lame was here"));
        delete form;
    }

    void lameFailures_data() {
        addRows<Failure>(
            {{"non-zero exit", {"failing", "lame ended with exit code 3."}},
             {"no lame anywhere", {"missing", "found neither in"}},
             {"file box cancelled", {"none chosen", "User Canceled File Selection!"}}});
    }

    void lameFailures() {
        QFETCH(Failure, row);
        const QString &lame = row.lame;
        TestEnvironment env;
        ScriptedAnswers answers;
        QTemporaryDir emptyPath;
        const QByteArray path = qgetenv("PATH");
        if (lame == QLatin1String("missing"))
            qputenv("PATH", emptyPath.path().toUtf8());
        else
            installFakeLame(env, true);
        QPointer<frmDecode> form = new frmDecode;
        form->Form_Load();
        form->show(); // laid out as the user sees it
        const QString source = env.appFolder() + QStringLiteral("/song.wav");
        runTool(form, answers, true, lame == QLatin1String("none chosen") ? QString() : source);
        qputenv("PATH", path);
        QCOMPARE(answers.boxes.size(), 1);
        QVERIFY2(answers.boxes[0].prompt.contains(row.box), qPrintable(answers.boxes[0].prompt));
        QVERIFY(answers.errors.isEmpty());
        // Whatever lame left behind is gone, and the buttons work again.
        QVERIFY(!QFile::exists(env.appFolder() + QStringLiteral("/song.mp3")));
        QCOMPARE(WidgetSnapshot::differences(form, "mp3tool-after-failure"), QString());
        delete form;
    }

    void realLame_data() {
        addRows<Encoded>({{"defaults", {"", "128000", "2"}},
                          {"64 kbits mono", {"rate=8,cboMode=3", "64000", "1"}}});
    }

    void realLame() {
        QFETCH(Encoded, row);
        const auto &[setup, bitRate, channels] = row;
        TestEnvironment env;
        ScriptedAnswers answers;
        const QString wave = env.appFolder() + QStringLiteral("/tone.wav");
        QVERIFY(soxMake(wave, {"-r", "44100", "-c", "2", "-b", "16"},
                        {"synth", "2", "sine", "440", "vol", "-6dB"}));
        QPointer<frmDecode> form = new frmDecode;
        form->Form_Load();
        apply(form, setup);
        runTool(form, answers, true, wave);
        const QString mp3 = env.appFolder() + QStringLiteral("/tone.mp3");
        QCOMPARE(ffprobeStream(mp3, QStringLiteral("bit_rate")), bitRate);
        QCOMPARE(ffprobeStream(mp3, QStringLiteral("channels")), channels);
        QFile::remove(wave);
        runTool(form, answers, false, mp3);
        QCOMPARE(answers.boxes.size(), 2);
        QCOMPARE(answers.boxes[1].prompt, QStringLiteral("Finished Decoding File!"));
        QCOMPARE(soxi(wave, 'b'), QStringLiteral("16"));
        QCOMPARE(soxi(wave, 's'), QStringLiteral("88200"));
        delete form;
    }

    void settingsFile() {
        TestEnvironment env;
        ScriptedAnswers answers;
        const QString file = modMP3Support::OptionsFile();
        QVERIFY(!QFile::exists(file));
        QPointer<frmDecode> form = new frmDecode;
        form->Form_Load();
        QCOMPARE(fileBytes(file), DefaultRecord);
        QVERIFY(answers.boxes.isEmpty());
        delete form;
        // Several records: the last one counts; a value that is no number spoils the load.
        const QByteArray last =
            "192,1,2,1,0,1,1,1,256,3,0,1,1,160,0,0,0,0,0,0,0,\"  custom  \",0,5,"
            "1,1,0.5,0.25,0,1,17.5,1.5\r\n";
        env.writeFile(QStringLiteral("Dat/OptMP3.dat"), DefaultRecord + last);
        form = new frmDecode;
        form->Form_Load();
        form->show();
        QVERIFY(answers.boxes.isEmpty());
        // Frames of the tabs not shown are disabled as a whole: each tab is looked at in turn.
        for (const int tab : {1, 2}) {
            form->tbsDecoder->setCurrentIndex(tab);
            QCOMPARE(WidgetSnapshot::differences(form, "mp3tool-loaded-tab" + QString::number(tab)),
                     QString());
        }
        answers.answerBox(vbYes);
        QVERIFY(form->close());
        QCOMPARE(answers.boxes[0].title + u'|' + answers.boxes[0].prompt,
                 "Save Program Options|Do you want to Save Program Options?");
        QCOMPARE(fileBytes(file), last);
        env.writeFile(QStringLiteral("Dat/OptMP3.dat"), last + "192,x\r\n");
        form = new frmDecode;
        form->Form_Load();
        QCOMPARE(answers.boxes.last().prompt, QStringLiteral("Error Loading Program Options!."));
        QCOMPARE(form->lblStatus->text().left(7), QStringLiteral(" -b 192"));
        // The label follows the position, also at 16, whose rate is 0.
        for (const auto &[position, label] : {std::pair{16, "224"}, {15, "192"}, {1, "8"}}) {
            form->sldBitrate[0]->setValue(position);
            QCOMPARE(form->lblBitrate->text(),
                     QStringLiteral("Current Bitrate: %1 kbits").arg(label));
        }
        delete form;
    }
};

QTEST_MAIN(tst_mp3tool)
#include "tst_mp3tool.moc"
