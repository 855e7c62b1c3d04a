#include "Fixtures.h"
#include "OutsideTools.h"
#include "Rows.h"
#include "ScriptedAnswers.h"
#include "TestEnvironment.h"
#include "WidgetSnapshot.h"

#include "engine/normalizer/DGPNorm.h"
#include "ripping/frmNormalize.h"

#include <QtTest>
#include <QtWidgets>

#include <cmath>

using namespace OutsideTools;

static const QStringList Tone = QStringLiteral("synth 3 sine 1000 vol -12dB").split(u' ');
struct Level {
    QString format; // sox's words, one space apart
    int percent;
    double peakDb, tolerance;
};
struct Outcome {
    QString source, percent;
    bool readOnlyDest;
    QString told; // the finish box's start, or "trap:" and the trap's text
};

class tst_normalizer : public QObject {
    Q_OBJECT
private slots:
    void levelsAndFormats_data() {
        const QString stereo16 = "-r 44100 -c 2 -b 16";
        addRows<Level>({
            {"16-bit stereo at 95%", {stereo16, 95, -0.45, 0.02}},
            {"16-bit stereo at 50%", {stereo16, 50, -6.02, 0.02}},
            {"24-bit mono", {"-r 48000 -c 1 -b 24", 95, -0.45, 0.02}},
            {"32-bit float", {"-r 44100 -c 2 -e floating-point -b 32", 95, -0.45, 0.02}},
            {"8-bit unsigned", {"-r 8000 -c 1 -b 8 -e unsigned-integer", 50, -6.02, 0.1}},
            // Far above full scale the tops are cut flat; a wrapped sample would fall to the
            // other end.
            {"clipping at 400%", {stereo16, 400, 0.0, 0.01}},
        });
    }

    void levelsAndFormats() {
        QFETCH(Level, row);
        const auto &[soxFormat, percent, peakDb, tolerance] = row;
        const QStringList format = soxFormat.split(u' ');
        QTemporaryDir dir;
        const QString source = dir.filePath(QStringLiteral("tone.wav"));
        const QString dest = dir.filePath(QStringLiteral("tone out.wav"));
        QVERIFY(soxMake(source, format, Tone));
        const QByteArray before = fileBytes(source);
        DGPNorm norm;
        QList<double> progress;
        QString lengthAtEnd; // read when the end is told: the file must be whole by then
        connect(&norm, &DGPNorm::PercentDone, this, [&](double percentDone) {
            progress.append(percentDone);
            if (percentDone == 100.0)
                lengthAtEnd = soxi(dest, 's');
        });
        QVERIFY(norm.Normalize(source, dest, percent));
        QTRY_VERIFY(!norm.busy());
        QCOMPARE(lengthAtEnd, soxi(source, 's'));
        QCOMPARE(progress.count(100.0), 1);
        QCOMPARE(progress.last(), 100.0);
        QVERIFY(std::is_sorted(progress.begin(), progress.end()));
        QVERIFY2(std::abs(soxStat(dest, QStringLiteral("Pk lev dB")) - peakDb) <= tolerance,
                 qPrintable(QString::number(soxStat(dest, QStringLiteral("Pk lev dB")))));
        for (const char letter : {'r', 'c', 'b', 'e', 's', 't'})
            QCOMPARE(soxi(dest, letter), soxi(source, letter));
        if (percent > 100) {
            // sox's lowest sample of a cut sine is full scale; a wrapped one would be near zero.
            QCOMPARE(soxStat(dest, QStringLiteral("Min level")), -1.0);
            QVERIFY(soxStat(dest, QStringLiteral("Flat factor")) > 0);
        }
        QCOMPARE(fileBytes(source), before);
    }

    void inPlaceAndRefusal() {
        QTemporaryDir dir;
        const QString song = dir.filePath(QStringLiteral("song.wav"));
        QVERIFY(soxMake(song, {"-b", "16", "-c", "2"}, Tone));
        DGPNorm norm;
        QSignalSpy done(&norm, &DGPNorm::PercentDone);
        QVERIFY(norm.Normalize(song, song, 50));
        // A second run while one is going is refused and changes nothing.
        QVERIFY(!norm.Normalize(song, dir.filePath(QStringLiteral("other.wav")), 95));
        QTRY_VERIFY(!done.isEmpty() && done.last().at(0).toDouble() == 100.0);
        QVERIFY(std::abs(soxStat(song, QStringLiteral("Pk lev dB")) + 6.02) <= 0.02);
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{QStringLiteral("song.wav")});
        QVERIFY(!norm.busy());
        // Going away mid-run cancels the run: nothing is left of its output.
        const QString longer = dir.filePath(QStringLiteral("long.wav"));
        QVERIFY(soxMake(longer, {"-b", "16", "-c", "2"}, {"synth", "120", "sine", "440"}));
        {
            DGPNorm leaving;
            QVERIFY(leaving.Normalize(longer, dir.filePath(QStringLiteral("gone.wav")), 95));
        }
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), (QStringList{"long.wav", "song.wav"}));
    }

    void windowStates() {
        TestEnvironment env;
        ScriptedAnswers answers;
        frmNormalize form;
        form.show(); // laid out as the user sees it
        const auto shows = [&](const char *state) {
            return WidgetSnapshot::differences(&form, QStringLiteral("normalizer-") + state);
        };
        form.Slider1->setValue(40);
        QCOMPARE(form.txtNorm->text(), QStringLiteral("40"));
        QCOMPARE(form.DigitalDisplay1->intValue(), 40);
        form.txtNorm->setText(QStringLiteral("70")); // typing leaves the slider where it is
        answers.answerFile(std::nullopt);
        QTest::mouseClick(form.cmdOpen, Qt::LeftButton);
        QVERIFY(answers.boxes.isEmpty()); // a cancel is no error
        QCOMPARE(shows("nothing-chosen"), QString());
        answers.answerFile(QStringLiteral("/music/song.wav"));
        QTest::mouseClick(form.cmdOpen, Qt::LeftButton);
        answers.answerFile(QStringLiteral("/music/loud.wav"));
        QTest::mouseClick(form.cmdSave, Qt::LeftButton);
        QCOMPARE(answers.fileBoxes[1].title + u'|' + answers.fileBoxes[1].filter,
                 QStringLiteral("Open WAV File|Wave Audio File|*.wav"));
        QCOMPARE(answers.fileBoxes[2].title + u'|' + answers.fileBoxes[2].fileName,
                 QStringLiteral("Save Normalized WAV|/music/songnrm.wav"));
        QCOMPARE(shows("both-chosen"), QString());
        // A new source empties the destination but leaves Start as it was.
        answers.answerFile(QStringLiteral("/music/other.wav"));
        QTest::mouseClick(form.cmdOpen, Qt::LeftButton);
        form.norm_PercentDone(99.9);
        QVERIFY(answers.boxes.isEmpty());
        QCOMPARE(shows("new-source-at-99"), QString());
        form.norm_PercentDone(100.0);
        QCOMPARE(answers.boxes.size(), 1);
        QCOMPARE(answers.boxes[0].title + u'|' + answers.boxes[0].prompt,
                 QStringLiteral("Finished|Finished Normalizing The Wave Audio File"));
        QCOMPARE(shows("finished"), QString());
    }

    void windowOutcomes_data() {
        addRows<Outcome>({
            {"tone", {"tone", "95", false, "Finished Normalizing"}},
            {"silence",
             {"silence", "95", false,
              "Finished Normalizing The Wave Audio File\n\nThe file is silent"}},
            {"not a number", {"tone", "abc", false, "trap:Type mismatch"}},
            {"read-only destination", {"tone", "95", true, "trap:is read-only"}},
        });
    }

    void windowOutcomes() {
        QFETCH(Outcome, row);
        const auto &[source, percent, readOnlyDest, told] = row;
        TestEnvironment env;
        ScriptedAnswers answers;
        QTemporaryDir dir;
        const QString in = dir.filePath(QStringLiteral("in.wav"));
        const QString out = dir.filePath(QStringLiteral("out.wav"));
        QVERIFY(soxMake(in, {"-b", "16", "-c", "2", "-r", "44100"},
                        source == QLatin1String("tone") ? Tone : QStringList{"trim", "0", "1"}));
        const QByteArray inBytes = fileBytes(in);
        const QByteArray oldOut("an older file of the user's");
        if (readOnlyDest) {
            Fixtures::writeFile(out, oldOut);
            QVERIFY(QFile(out).setPermissions(QFileDevice::ReadOwner | QFileDevice::ReadGroup));
        }
        frmNormalize form;
        form.show(); // laid out as the user sees it
        answers.answerFile(in);
        QTest::mouseClick(form.cmdOpen, Qt::LeftButton);
        answers.answerFile(out);
        QTest::mouseClick(form.cmdSave, Qt::LeftButton);
        form.txtNorm->setText(percent);
        QTest::mouseClick(form.cmdStart, Qt::LeftButton);
        QTRY_VERIFY(!form.norm->busy());
        const bool trapped = told.startsWith(QLatin1String("trap:"));
        QCOMPARE(answers.boxes.size(), trapped ? 0 : 1);
        QCOMPARE(answers.errors.size(), trapped ? 1 : 0);
        const QString text = trapped ? answers.errors[0] : answers.boxes[0].prompt;
        QVERIFY2(trapped ? text.contains(told.mid(5)) : text.startsWith(told), qPrintable(text));
        QCOMPARE(fileBytes(in), inBytes);
        const QString state = QString::fromLatin1(QTest::currentDataTag()).replace(u' ', u'-');
        QCOMPARE(WidgetSnapshot::differences(
                     &form, "normalizer-after-" + state,
                     {{QRegularExpression(QRegularExpression::escape(dir.path())), "DIR"}}),
                 QString());
        if (readOnlyDest)
            QCOMPARE(fileBytes(out), oldOut);
        else if (source == QLatin1String("silence"))
            QCOMPARE(fileBytes(out), inBytes);
        else if (!trapped)
            QVERIFY(std::abs(soxStat(out, QStringLiteral("Pk lev dB")) + 0.45) <= 0.02);
        else
            QVERIFY(!QFile::exists(out));
        // No temporary file is left behind, whatever the outcome.
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files).size(), readOnlyDest || !trapped ? 2 : 1);
    }
};

QTEST_MAIN(tst_normalizer)
#include "tst_normalizer.moc"
