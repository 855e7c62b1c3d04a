#include "base/Checked.h"
#include "base/Conversions.h"
#include "base/RuntimeError.h"

#include <QTest>

class tst_Conversions : public QObject {
    Q_OBJECT
private slots:
    void roundHalfEven_data() {
        QTest::addColumn<double>("value");
        QTest::addColumn<double>("expected");
        QTest::newRow("2.5 to even below") << 2.5 << 2.0;
        QTest::newRow("3.5 to even above") << 3.5 << 4.0;
        QTest::newRow("-2.5") << -2.5 << -2.0;
        QTest::newRow("-3.5") << -3.5 << -4.0;
        QTest::newRow("0.5") << 0.5 << 0.0;
        QTest::newRow("1.5") << 1.5 << 2.0;
        QTest::newRow("2.4999") << 2.4999 << 2.0;
        QTest::newRow("2.5001") << 2.5001 << 3.0;
    }
    void roundHalfEven() {
        QFETCH(double, value);
        QFETCH(double, expected);
        QCOMPARE(RoundHalfEven(value), expected);
    }

    void cint_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("expected"); // or the error number when negative
        QTest::newRow("plain") << "7650" << 7650;
        QTest::newRow("blanks around") << "  12 " << 12;
        QTest::newRow("half to even") << "2.5" << 2;
        QTest::newRow("max") << "32767" << 32767;
        QTest::newRow("min") << "-32768" << -32768;
        QTest::newRow("99999 overflows") << "99999" << -RuntimeError::Overflow;
        QTest::newRow("32767.5 overflows") << "32767.5" << -RuntimeError::Overflow;
        QTest::newRow("abc is no number") << "abc" << -RuntimeError::TypeMismatch;
        QTest::newRow("empty") << "" << -RuntimeError::TypeMismatch;
        QTest::newRow("trailing text") << "12abc" << -RuntimeError::TypeMismatch;
        QTest::newRow("hex") << "&H10" << 16;
    }
    void cint() {
        QFETCH(QString, text);
        QFETCH(int, expected);
        if (expected >= 0 || text.startsWith(u'-')) {
            QCOMPARE(int(CInt(text)), expected);
            return;
        }
        try {
            CInt(text);
            QFAIL("no error raised");
        } catch (const RuntimeError &e) {
            QCOMPARE(e.number(), -expected);
        }
    }

    void clng_data() {
        QTest::addColumn<double>("value");
        QTest::addColumn<qint64>("expected");
        QTest::addColumn<bool>("overflows");
        QTest::newRow("half to even") << 1000000.5 << qint64(1000000) << false;
        QTest::newRow("max") << 2147483647.0 << qint64(2147483647) << false;
        QTest::newRow("over max") << 2147483647.6 << qint64(0) << true;
        QTest::newRow("min") << -2147483648.0 << qint64(-2147483648LL) << false;
        QTest::newRow("under min") << -2147483649.0 << qint64(0) << true;
    }
    void clng() {
        QFETCH(double, value);
        QFETCH(qint64, expected);
        QFETCH(bool, overflows);
        if (!overflows) {
            QCOMPARE(qint64(CLng(value)), expected);
            return;
        }
        QVERIFY_THROWS_EXCEPTION(RuntimeError, CLng(value));
    }

    void val_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("expected");
        QTest::newRow("number") << "42" << 42.0;
        QTest::newRow("leading number") << "12 kB/s" << 12.0;
        QTest::newRow("blanks inside") << " 1 2 3" << 123.0;
        QTest::newRow("fraction") << "3.75x" << 3.75;
        QTest::newRow("no number") << "abc" << 0.0;
        QTest::newRow("empty") << "" << 0.0;
        QTest::newRow("negative") << "-8" << -8.0;
        QTest::newRow("exponent") << "1e3" << 1000.0;
        QTest::newRow("hex") << "&HFF" << 255.0;
        QTest::newRow("second point stops") << "1.2.3" << 1.2;
    }
    void val() {
        QFETCH(QString, text);
        QFETCH(double, expected);
        QCOMPARE(Val(text), expected);
    }

    void cbool_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("expected");
        QTest::newRow("True") << "True" << true;
        QTest::newRow("false lower") << "false" << false;
        QTest::newRow("0") << "0" << false;
        QTest::newRow("1") << "1" << true;
        QTest::newRow("-1") << "-1" << true;
    }
    void cbool() {
        QFETCH(QString, text);
        QFETCH(bool, expected);
        QCOMPARE(CBool(text), expected);
    }
    void cboolOfWordIsMismatch() {
        try {
            CBool(QStringLiteral("maybe"));
            QFAIL("no error raised");
        } catch (const RuntimeError &e) {
            QCOMPARE(e.number(), int(RuntimeError::TypeMismatch));
        }
    }

    void checkedIntegerOverflows() {
        Integer i = 32766;
        ++i;
        QCOMPARE(qint16(i), qint16(32767));
        QVERIFY_THROWS_EXCEPTION(RuntimeError, ++i);
        QCOMPARE(qint16(i), qint16(32767)); // unchanged by the failed step
        Long l = -2147483647;
        QVERIFY_THROWS_EXCEPTION(RuntimeError, l -= 2);
    }

    void checkedArrayBounds() {
        CheckedArray<bool, 100> flags;
        flags(99) = true;
        QVERIFY(flags(99));
        try {
            flags(100) = true;
            QFAIL("no error raised");
        } catch (const RuntimeError &e) {
            QCOMPARE(e.number(), int(RuntimeError::SubscriptOutOfRange));
            QCOMPARE(e.description(), QStringLiteral("Subscript out of range"));
        }
        QVERIFY_THROWS_EXCEPTION(RuntimeError, flags(-1));
    }
};

QTEST_GUILESS_MAIN(tst_Conversions)
#include "tst_conversions.moc"
