#include "base/Format.h"
#include "base/VbDate.h"

#include <QTest>

class tst_Format : public QObject {
    Q_OBJECT
private slots:
    void numbers_data() {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QString>("expected");
        // Track and percent numbers.
        QTest::newRow("0# one digit") << 7.0 << "0#"
                                      << "07";
        QTest::newRow("0# two digits") << 42.0 << "0#"
                                       << "42";
        QTest::newRow("0# three digits") << 100.0 << "0#"
                                         << "100";
        QTest::newRow("0# zero") << 0.0 << "0#"
                                 << "00";
        // Whole numbers.
        QTest::newRow("#0 zero") << 0.0 << "#0"
                                 << "0";
        QTest::newRow("#0 rounds") << 1234.5 << "#0"
                                   << "1235";
        QTest::newRow("# zero is empty") << 0.0 << "#"
                                         << "";
        QTest::newRow("# CD speed 8x") << 1411.0 / 176.0 << "#"
                                       << "8";
        QTest::newRow("# half away from zero") << 2.5 << "#"
                                               << "3";
        // DVD speeds.
        QTest::newRow("#.0 16x") << 22160.0 / 1380.0 << "#.0"
                                 << "16.1";
        QTest::newRow("#.0 below one") << 0.5 << "#.0"
                                       << ".5";
        QTest::newRow("#.0 whole") << 4.0 << "#.0"
                                   << "4.0";
        QTest::newRow("#0.0 MB") << 702.84 << "#0.0"
                                 << "702.8";
        QTest::newRow("#0.0 zero") << 0.0 << "#0.0"
                                   << "0.0";
        // Image size.
        QTest::newRow("##0.00") << 0.3 << "##0.00"
                                << "0.30";
        QTest::newRow("##0.00 decimal rounding") << 1.005 << "##0.00"
                                                 << "1.01";
        QTest::newRow("##0.00 large") << 4482.123 << "##0.00"
                                      << "4482.12";
        // File sizes in KB.
        QTest::newRow("###,###,##0 small") << 12.4 << "###,###,##0"
                                           << "12";
        QTest::newRow("###,###,##0 thousands") << 1205.6 << "###,###,##0"
                                               << "1,206";
        QTest::newRow("###,###,##0 millions") << 1234567.0 << "###,###,##0"
                                              << "1,234,567";
        QTest::newRow("###,###,##0 beyond places") << 12345678901.0 << "###,###,##0"
                                                   << "12,345,678,901";
        QTest::newRow("###,###,##0 zero") << 0.0 << "###,###,##0"
                                          << "0";
        // Byte counts with blank separators.
        QTest::newRow("blanks full") << 737280000.0 << "# ### ### ##0"
                                     << "737 280 000";
        QTest::newRow("blanks ten digits") << 4700000000.0 << "# ### ### ##0"
                                           << "4 700 000 000";
        QTest::newRow("blanks short") << 1234.0 << "# ### ### ##0"
                                      << "1 234";
        QTest::newRow("blanks zero") << 0.0 << "# ### ### ##0"
                                     << "0";
        QTest::newRow("negative") << -3.25 << "#0.0"
                                  << "-3.3";
        QTest::newRow("negative rounds to zero") << -0.01 << "#0.0"
                                                 << "0.0";
    }
    void numbers() {
        QFETCH(double, value);
        QFETCH(QString, pattern);
        QFETCH(QString, expected);
        QCOMPARE(Format(value, pattern), expected);
    }

    void dates_data() {
        QTest::addColumn<QDateTime>("when");
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QString>("expected");
        const QDateTime t(QDate(2026, 3, 7), QTime(9, 5, 4));
        QTest::newRow("file date") << t << "YYYY/MM/DD hh:mm:ss"
                                   << "2026/03/07 09:05:04";
        QTest::newRow("ISO name date") << t << "YYYYMMDD"
                                       << "20260307";
        QTest::newRow("ISO name time") << t << "hhmm"
                                       << "0905";
        QTest::newRow("lower case") << t << "yyyy-mm-dd"
                                    << "2026-03-07";
        QTest::newRow("literal text") << t << "at hh"
                                      << "at 09";
    }
    void dates() {
        QFETCH(QDateTime, when);
        QFETCH(QString, pattern);
        QFETCH(QString, expected);
        QCOMPARE(Format(VbDate::fromDateTime(when), pattern), expected);
    }

    void durations_data() {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<QString>("expected");
        QTest::newRow("zero") << 0.0 << "00:00:00";
        QTest::newRow("seconds") << 42.0 << "00:00:42";
        QTest::newRow("minutes") << 754.0 << "00:12:34";
        QTest::newRow("hours") << 3.0 * 3600 + 61 << "03:01:01";
    }
    void durations() {
        QFETCH(double, seconds);
        QFETCH(QString, expected);
        const VbDate start = VbDate::fromDateTime(QDateTime(QDate(2026, 1, 1), QTime(23, 59, 0)));
        const VbDate end{start.days + seconds / 86400.0};
        QCOMPARE(Format(end - start, QStringLiteral("hh:mm:ss")), expected);
    }

    void dateSerials() {
        // Day 0 is 30 December 1899; the fraction is the time of day.
        QCOMPARE(VbDate::fromDateTime(QDateTime(QDate(1899, 12, 30), QTime(0, 0))).days, 0.0);
        QCOMPARE(VbDate::fromDateTime(QDateTime(QDate(1900, 1, 1), QTime(12, 0))).days, 2.5);
        const QDateTime t(QDate(2026, 11, 22), QTime(8, 30, 15));
        QCOMPARE(VbDate::fromDateTime(t).toDateTime(), t);
        const double now = Now().days;
        QVERIFY(now > 46000.0 && now < 60000.0);
    }
};

QTEST_GUILESS_MAIN(tst_Format)
#include "tst_format.moc"
