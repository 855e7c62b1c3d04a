#include "app/clsNetUserName.h"
#include "app/modGlobals.h"

#include <QLineEdit>
#include <QTest>

class tst_Globals : public QObject {
    Q_OBJECT
private slots:
    void twoDigits_data() {
        QTest::addColumn<qint64>("n");
        QTest::addColumn<QString>("expected");
        QTest::newRow("7") << qint64(7) << "07";
        QTest::newRow("123") << qint64(123) << "23";
        QTest::newRow("0") << qint64(0) << "00";
        QTest::newRow("42") << qint64(42) << "42";
        QTest::newRow("-5") << qint64(-5) << "-5";
    }
    void twoDigits() {
        QFETCH(qint64, n);
        QFETCH(QString, expected);
        QCOMPARE(TwoDigits(n), expected);
    }

    void driveErrorMessage_data() {
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("expected");
        QTest::newRow("1000") << 1000 << "No additional error data was reported (1000).";
        QTest::newRow("1055") << 1055
                              << "A format is in progress causing operation failure (1055).";
        QTest::newRow("999 below") << 999 << " (999).";
        QTest::newRow("1056 above") << 1056 << " (1056).";
        QTest::newRow("negative") << -1 << " (-1).";
    }
    void driveErrorMessage() {
        QFETCH(int, code);
        QFETCH(QString, expected);
        QCOMPARE(GetDriveErrorMessage(code), expected);
    }

    void everyDriveCodeHasItsOwnText() {
        QSet<QString> texts;
        for (int code = 1000; code <= 1055; ++code) {
            const QString msg = GetDriveErrorMessage(code);
            QVERIFY2(!msg.startsWith(u' '), qPrintable(msg));
            QVERIFY(msg.endsWith(QStringLiteral(" (%1).").arg(code)));
            texts.insert(msg);
        }
        QCOMPARE(texts.size(), 56);
    }

    void trackFileErrorMessage_data() {
        QTest::addColumn<int>("cls");
        QTest::addColumn<QString>("expected");
        QTest::newRow("opening") << 0 << "Error Opening File: a.wav";
        QTest::newRow("closing") << 1 << "Error Closing File: a.wav";
        QTest::newRow("reading, small f") << 2 << "Error Reading file: a.wav";
        QTest::newRow("unknown, no blank") << 3 << "Unknown file error!:a.wav";
        QTest::newRow("negative") << -7 << "Unknown file error!:a.wav";
    }
    void trackFileErrorMessage() {
        QFETCH(int, cls);
        QFETCH(QString, expected);
        QCOMPARE(GetTrackFileErrorMessage(cls, QStringLiteral("a.wav")), expected);
    }

    void helpStrings() {
        QVERIFY(SetHelpStrings(1).endsWith(QStringLiteral("/tessaly.hlp")));
        QCOMPARE(SetHelpStrings(0), QString());
        QCOMPARE(SetHelpStrings(2), QString());
    }

    void screenResolutionIsWidthXHeight() {
        const QStringList parts = ScreenResolution().split(QStringLiteral(" X "));
        QCOMPARE(parts.size(), 2);
        QVERIFY(parts.at(0).toInt() > 0);
        QVERIFY(parts.at(1).toInt() > 0);
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

    void namesAreNeverEmpty() {
        const clsNetUserName names;
        QVERIFY(!names.NetworkUserName().isEmpty());
        QVERIFY(!names.ComputerName().isEmpty());
    }
};

QTEST_MAIN(tst_Globals)
#include "tst_globals.moc"
