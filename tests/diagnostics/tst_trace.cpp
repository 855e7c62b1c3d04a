#include "TestEnvironment.h"
#include "diagnostics/ErrorTrap.h"
#include "diagnostics/vbwDump.h"
#include "diagnostics/vbwParameter.h"
#include "diagnostics/vbwTrace.h"

#include <QFile>
#include <QTest>

Q_DECLARE_METATYPE(vbwBounds)

class tst_Trace : public QObject {
    Q_OBJECT
private slots:
    void formatString_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shown");
        QTest::newRow("plain") << "abc"
                               << "\"abc\"";
        QTest::newRow("200 characters") << QString(200, 'x') << '"' + QString(128, 'x') + "{...}\"";
        QTest::newRow("cut inside CR LF")
            << QString(127, 'x') + "\r\nyy" << '"' + QString(127, 'x') + "<CrLf>{...}\"";
        QTest::newRow("line breaks") << "a\r\nb\rc\nd"
                                     << "\"a<CrLf>b<Cr>c<Lf>d\"";
        QTest::newRow("marker") << "{Empty}"
                                << "{Empty}";
        QTest::newRow("ends in brace") << QString(200, 'x') + '}' << QString(200, 'x') + '}';
    }
    void formatString() {
        QFETCH(QString, text);
        QFETCH(QString, shown);
        QCOMPARE(FormatString(text, 128), shown);
    }

    void arrayHeads_data() {
        QTest::addColumn<vbwBounds>("bounds");
        QTest::addColumn<QString>("head");
        QTest::addColumn<QString>("parameter");
        QTest::newRow("one") << vbwBounds{{{0, 99}}} << "Array a(0 To 99) As Integer"
                             << "a(0 To 99)";
        QTest::newRow("two") << vbwBounds{{{1, 3}, {-2, 2}}} << "Array a(1 To 3,-2 To 2) As Integer"
                             << "a(1 To 3,-2 To 2)";
        QTest::newRow("undimensioned") << vbwBounds{{}, false} << "a (Undimensioned Array)"
                                       << "a(Undimensioned Array)";
        QTest::newRow("five") << vbwBounds{{{0, 1}, {0, 1}, {0, 1}, {0, 1}, {0, 1}}}
                              << "a() not processed: 5 dimensions"
                              << "a(0 To 1,0 To 1,0 To 1,0 To 1,0 To 1)";
    }
    void arrayHeads() {
        QFETCH(vbwBounds, bounds);
        QFETCH(QString, head);
        QFETCH(QString, parameter);
        QCOMPARE(vbwArrayHead("a", bounds, "Integer"), head);
        QCOMPARE(vbwReportParameter("a", bounds), parameter);
    }

    void traceSwitch_data() {
        QTest::addColumn<bool>("trace");
        QTest::newRow("without /trace") << false;
        QTest::newRow("with /trace") << true;
    }
    void traceSwitch() {
        QFETCH(bool, trace);
        TestEnvironment env;
        vbwSetOptions(trace ? QStringList{"tessaly", "/trace"} : QStringList{"tessaly"});
        QString inner;
        ErrorTrap::run("cmdAdd_Click", "frmData", [&] {
            ErrorTrap::run(
                "LoadFileList", "frmData", [&] { inner = vbwGetStack(); },
                [] {
                    return vbwParametersOf({"strPath", "lngSize"}, QString("a\r\nb"), 5);
                });
        });
        vbwTraceOut("extra exit at depth 0");
        const QString log = vbwCloseLog();
        vbwSetOptions({});
        QCOMPARE(vbwGetStack(), QStringLiteral("{Unavailable}"));
        QCOMPARE(QFile::exists(vbwLogFile()), trace);
        if (!trace) {
            QCOMPARE(inner, QStringLiteral("{Unavailable}"));
            return;
        }
        QCOMPARE(inner,
                 QStringLiteral("\r\nfrmData.cmdAdd_Click()\r\n frmData.LoadFileList(strPath = "
                                "\"a<CrLf>b\", lngSize = 5) \r\n"));
        QFile f(log);
        QVERIFY(f.open(QIODevice::ReadOnly));
        const QList<QByteArray> lines = f.readAll().split('\n');
        QVERIFY(lines.first().startsWith("Tracing Tessaly"));
        QCOMPARE(lines.mid(3),
                 (QList<QByteArray>{"frmData.cmdAdd_Click()",
                                    "\tfrmData.LoadFileList(strPath = \"a<CrLf>b\", lngSize = 5) ",
                                    ""}));
        // Depth back at 0: the next entry starts at the margin again.
        QCOMPARE(vbwTraceIn("m.p", "()"), 0);
        vbwTraceOut("m.p");
    }
};

QTEST_MAIN(tst_Trace)
#include "tst_trace.moc"
