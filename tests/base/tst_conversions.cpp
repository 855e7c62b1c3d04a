#include "ErrorOf.h"
#include "Rows.h"
#include "base/Checked.h"
#include "base/Conversions.h"
#include "base/RuntimeError.h"

#include <QtTest>

class tst_Conversions : public QObject {
    Q_OBJECT
private slots:
    void roundHalfEven_data() {
        columns<double, double>("value", "expected");
        QTest::newRow("2.5 to even below") << 2.5 << 2.0;
        QTest::newRow("3.5 to even above") << 3.5 << 4.0;
        QTest::newRow("-2.5") << -2.5 << -2.0;
        QTest::newRow("-3.5") << -3.5 << -4.0;
        QTest::newRow("0.5") << 0.5 << 0.0;
        QTest::newRow("2.4999") << 2.4999 << 2.0;
        QTest::newRow("2.5001") << 2.5001 << 3.0;
    }
    void roundHalfEven() {
        QFETCH(double, value);
        QTEST(RoundHalfEven(value), "expected");
    }

    // CInt and CBool of a text: the value, or the error raised (then the value is not looked at).
    void fromText_data() {
        columns<QString, bool, int, int>("text", "boolean", "expected", "error");
        const int mismatch = RuntimeError::TypeMismatch, overflow = RuntimeError::Overflow;
        QTest::newRow("plain") << "7650" << false << 7650 << 0;
        QTest::newRow("blanks around") << "  12 " << false << 12 << 0;
        QTest::newRow("half to even") << "2.5" << false << 2 << 0;
        QTest::newRow("max") << "32767" << false << 32767 << 0;
        QTest::newRow("min") << "-32768" << false << -32768 << 0;
        QTest::newRow("hex") << "&H10" << false << 16 << 0;
        QTest::newRow("99999 overflows") << "99999" << false << 0 << overflow;
        QTest::newRow("32767.5 overflows") << "32767.5" << false << 0 << overflow;
        QTest::newRow("abc is no number") << "abc" << false << 0 << mismatch;
        QTest::newRow("empty") << "" << false << 0 << mismatch;
        QTest::newRow("trailing text") << "12abc" << false << 0 << mismatch;
        QTest::newRow("bool True") << "True" << true << 1 << 0;
        QTest::newRow("bool false lower") << "false" << true << 0 << 0;
        QTest::newRow("bool 0") << "0" << true << 0 << 0;
        QTest::newRow("bool -1") << "-1" << true << 1 << 0;
        QTest::newRow("bool of a word") << "maybe" << true << 0 << mismatch;
    }
    void fromText() {
        auto [text, boolean] = fetch<QString, bool>("text", "boolean");
        int got = -1;
        QTEST(errorOf([&] { got = boolean ? int(CBool(text)) : int(CInt(text)); }), "error");
        QFETCH(int, error);
        if (!error)
            QTEST(got, "expected");
    }

    void clng_data() {
        columns<double, qint64, int>("value", "expected", "error");
        const int overflow = RuntimeError::Overflow;
        QTest::newRow("half to even") << 1000000.5 << qint64(1000000) << 0;
        QTest::newRow("max") << 2147483647.0 << qint64(2147483647) << 0;
        QTest::newRow("over max") << 2147483647.6 << qint64(0) << overflow;
        QTest::newRow("min") << -2147483648.0 << qint64(-2147483648LL) << 0;
        QTest::newRow("under min") << -2147483649.0 << qint64(0) << overflow;
    }
    void clng() {
        QFETCH(double, value);
        qint64 got = 0;
        QTEST(errorOf([&] { got = CLng(value); }), "error");
        QTEST(got, "expected");
    }

    void val_data() {
        columns<QString, double>("text", "expected");
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
        QTEST(Val(text), "expected");
    }

    void checkedIntegersAndArrays() {
        Integer i = 32766;
        ++i;
        QCOMPARE(qint16(i), qint16(32767));
        QCOMPARE(errorOf([&] { ++i; }), int(RuntimeError::Overflow));
        QCOMPARE(qint16(i), qint16(32767)); // unchanged by the failed step
        Long l = -2147483647;
        QCOMPARE(errorOf([&] { l -= 2; }), int(RuntimeError::Overflow));
        CheckedArray<bool, 100> flags;
        flags(99) = true;
        QVERIFY(flags(99));
        QCOMPARE(errorOf([&] { flags(100) = true; }), int(RuntimeError::SubscriptOutOfRange));
        QCOMPARE(errorOf([&] { flags(-1); }), int(RuntimeError::SubscriptOutOfRange));
    }
};

QTEST_GUILESS_MAIN(tst_Conversions)
#include "tst_conversions.moc"
