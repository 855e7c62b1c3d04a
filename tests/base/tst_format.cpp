#include "Rows.h"
#include "base/Format.h"
#include "base/VbDate.h"

#include <QtTest>

class tst_Format : public QObject {
    Q_OBJECT
private slots:
    void numbers_data() {
        columns<double, QString, QString>("value", "pattern", "expected");
        // Track numbers, speeds, image and file sizes, byte counts as the windows show them.
        const struct {
            double value;
            const char *pattern, *expected;
        } rows[] = {
            {7.0, "0#", "07"},
            {100.0, "0#", "100"},
            {0.0, "0#", "00"},
            {0.0, "#0", "0"},
            {1234.5, "#0", "1235"},
            {0.0, "#", ""},
            {1411.0 / 176.0, "#", "8"},
            {2.5, "#", "3"},
            {22160.0 / 1380.0, "#.0", "16.1"},
            {0.5, "#.0", ".5"},
            {4.0, "#.0", "4.0"},
            {702.84, "#0.0", "702.8"},
            {0.0, "#0.0", "0.0"},
            {0.3, "##0.00", "0.30"},
            {1.005, "##0.00", "1.01"},
            {4482.123, "##0.00", "4482.12"},
            {12.4, "###,###,##0", "12"},
            {1205.6, "###,###,##0", "1,206"},
            {1234567.0, "###,###,##0", "1,234,567"},
            {12345678901.0, "###,###,##0", "12,345,678,901"},
            {0.0, "###,###,##0", "0"},
            {737280000.0, "# ### ### ##0", "737 280 000"},
            {4700000000.0, "# ### ### ##0", "4 700 000 000"},
            {1234.0, "# ### ### ##0", "1 234"},
            {0.0, "# ### ### ##0", "0"},
            {-3.25, "#0.0", "-3.3"},
            {-0.01, "#0.0", "0.0"},
        };
        for (const auto &r : rows)
            QTest::addRow("%s of %g", r.pattern, r.value) << r.value << r.pattern << r.expected;
    }
    void numbers() {
        auto [value, pattern] = fetch<double, QString>("value", "pattern");
        QTEST(Format(value, pattern), "expected");
    }

    void dates_data() {
        columns<QString, QString>("pattern", "expected");
        const char *rows[][2] = {{"YYYY/MM/DD hh:mm:ss", "2026/03/07 09:05:04"},
                                 {"YYYYMMDD", "20260307"},
                                 {"hhmm", "0905"},
                                 {"yyyy-mm-dd", "2026-03-07"},
                                 {"at hh", "at 09"}};
        for (const auto &r : rows)
            QTest::newRow(r[0]) << r[0] << r[1];
    }

    void dates() {
        QFETCH(QString, pattern);
        const QDateTime t(QDate(2026, 3, 7), QTime(9, 5, 4));
        QTEST(Format(VbDate::fromDateTime(t), pattern), "expected");
    }

    void durations_data() {
        columns<double, QString>("seconds", "expected");
        QTest::newRow("zero") << 0.0 << "00:00:00";
        QTest::newRow("seconds") << 42.0 << "00:00:42";
        QTest::newRow("minutes") << 754.0 << "00:12:34";
        QTest::newRow("hours") << 3.0 * 3600 + 61 << "03:01:01";
    }
    void durations() {
        QFETCH(double, seconds);
        const VbDate start = VbDate::fromDateTime(QDateTime(QDate(2026, 1, 1), QTime(23, 59, 0)));
        const VbDate end{start.days + seconds / 86400.0};
        QTEST(Format(end - start, QStringLiteral("hh:mm:ss")), "expected");
    }

    void dateSerials() {
        // Day 0 is 30 December 1899; the fraction is the time of day.
        QCOMPARE(VbDate::fromDateTime(QDateTime(QDate(1899, 12, 30), QTime(0, 0))).days, 0.0);
        QCOMPARE(VbDate::fromDateTime(QDateTime(QDate(1900, 1, 1), QTime(12, 0))).days, 2.5);
        const QDateTime t(QDate(2026, 11, 22), QTime(8, 30, 15));
        QCOMPARE(VbDate::fromDateTime(t).toDateTime(), t);
        const QDateTime now = QDateTime::currentDateTime();
        QVERIFY(qAbs(Now().toDateTime().secsTo(now)) < 60);
    }
};

QTEST_GUILESS_MAIN(tst_Format)
#include "tst_format.moc"
