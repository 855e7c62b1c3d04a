#include "Rows.h"
#include "app/modGlobals.h"

#include <QtTest>
#include <QtWidgets>

class tst_Globals : public QObject {
    Q_OBJECT
private slots:
    // Texts the windows and boxes show, made by the helpers from a number.
    void texts_data() {
        columns<QString, QString>("got", "expected");
        QTest::newRow("two digits of 7") << TwoDigits(7) << "07";
        QTest::newRow("two digits of 123") << TwoDigits(123) << "23";
        QTest::newRow("two digits of -5") << TwoDigits(-5) << "-5";
        QTest::newRow("drive 1000")
            << GetDriveErrorMessage(1000) << "No additional error data was reported (1000).";
        QTest::newRow("drive 1055") << GetDriveErrorMessage(1055)
                                    << "A format is in progress causing operation failure (1055).";
        QTest::newRow("drive 999 below") << GetDriveErrorMessage(999) << " (999).";
        QTest::newRow("drive 1056 above") << GetDriveErrorMessage(1056) << " (1056).";
        const QString wav = QStringLiteral("a.wav");
        QTest::newRow("file opening")
            << GetTrackFileErrorMessage(0, wav) << "Error Opening File: a.wav";
        QTest::newRow("file closing")
            << GetTrackFileErrorMessage(1, wav) << "Error Closing File: a.wav";
        QTest::newRow("file reading, small f")
            << GetTrackFileErrorMessage(2, wav) << "Error Reading file: a.wav";
        QTest::newRow("file unknown, no blank")
            << GetTrackFileErrorMessage(3, wav) << "Unknown file error!:a.wav";
        QTest::newRow("help strings of 0") << SetHelpStrings(0) << "";
        QTest::newRow("help strings of 2") << SetHelpStrings(2) << "";
    }
    void texts() {
        QFETCH(QString, got);
        QTEST(got, "expected");
    }

    void selectText() {
        QLineEdit edit;
        SelectText(&edit); // empty: nothing to select, no failure
        QVERIFY(!edit.hasSelectedText());
        edit.setText(QStringLiteral("VOLUME_1"));
        SelectText(&edit);
        QCOMPARE(edit.selectedText(), QStringLiteral("VOLUME_1"));
        SelectText(nullptr);
    }
};

QTEST_MAIN(tst_Globals)
#include "tst_globals.moc"
