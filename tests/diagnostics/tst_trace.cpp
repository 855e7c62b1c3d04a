#include "OutsideTools.h"
#include "Rows.h"
#include "TestEnvironment.h"
#include "diagnostics/ErrorTrap.h"
#include "diagnostics/vbwDump.h"
#include "diagnostics/vbwParameter.h"
#include "diagnostics/vbwTrace.h"

#include <QtTest>

Q_DECLARE_METATYPE(vbwBounds)

struct Shown {
    QString text, shown;
};

class tst_Trace : public QObject {
    Q_OBJECT
private slots:
    void formatString_data() {
        const QString x127(127, u'x'), x200(200, u'x');
        addRows<Shown>({{"plain", {"abc", "\"abc\""}},
                        {"200 characters", {x200, '"' + x127 + "x{...}\""}},
                        {"cut inside CR LF", {x127 + "\r\nyy", '"' + x127 + "<CrLf>{...}\""}},
                        {"line breaks", {"a\r\nb\rc\nd", "\"a<CrLf>b<Cr>c<Lf>d\""}},
                        {"marker", {"{Empty}", "{Empty}"}},
                        {"ends in brace", {x200 + '}', x200 + '}'}}});
    }
    void formatString() {
        QFETCH(Shown, row);
        QCOMPARE(FormatString(row.text, 128), row.shown);
    }

    // The head of an array, then one line an entry; an array not dimensioned or of more than
    // four dimensions has the head alone.
    void arrays_data() {
        columns<vbwBounds, QString, QString>("bounds", "dump", "parameter");
        QTest::newRow("one") << vbwBounds{{{0, 1}}}
                             << "Array a(0 To 1) As Integer\r\n\ta(0) = 0 (Integer)\r\n"
                                "\ta(1) = 1 (Integer)\r\n"
                             << "a(0 To 1)";
        QTest::newRow("two") << vbwBounds{{{1, 2}, {-1, 0}}}
                             << "Array a(1 To 2,-1 To 0) As Integer\r\n\ta(1,-1) = 0 (Integer)\r\n"
                                "\ta(1,0) = 1 (Integer)\r\n\ta(2,-1) = 2 (Integer)\r\n"
                                "\ta(2,0) = 3 (Integer)\r\n"
                             << "a(1 To 2,-1 To 0)";
        QTest::newRow("undimensioned") << vbwBounds{{}, false} << "a (Undimensioned Array)\r\n"
                                       << "a(Undimensioned Array)";
        QTest::newRow("five") << vbwBounds{{{0, 1}, {0, 1}, {0, 1}, {0, 1}, {0, 1}}}
                              << "a() not processed: 5 dimensions\r\n"
                              << "a(0 To 1,0 To 1,0 To 1,0 To 1,0 To 1)";
    }
    void arrays() {
        auto [bounds, dump, parameter] =
            fetch<vbwBounds, QString, QString>("bounds", "dump", "parameter");
        QCOMPARE(vbwReportParameter("a", bounds), parameter);
        QTemporaryDir dir;
        vbwSetDumpFile(dir.filePath("dump.txt"));
        vbwOpenDumpFile();
        int n = 0;
        vbwReportArray("a", bounds, "Integer",
                       [&n](const QList<int> &) { return QString::number(n++); });
        vbwCloseDumpFile();
        vbwSetDumpFile({});
        QCOMPARE(QString::fromUtf8(OutsideTools::fileBytes(dir.filePath("dump.txt"))), dump);
    }

    void traceSwitch_data() {
        rows<bool>("trace", {{"without /trace", false}, {"with /trace", true}});
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
