#include "OutsideTools.h"
#include "ReadBack.h"
#include "Rows.h"
#include "ScriptedAnswers.h"
#include "TestEnvironment.h"
#include "app/modDeclarations.h"
#include "base/App.h"
#include "base/RuntimeError.h"
#include "diagnostics/ErrorTrap.h"
#include "diagnostics/VbwExtension.h"
#include "diagnostics/vbwDump.h"
#include "diagnostics/vbwErrHandler.h"
#include "diagnostics/vbwErrorReport.h"
#include "diagnostics/vbwExceptions.h"
#include "diagnostics/vbwTrace.h"
#include "engine/writer/recorders/burn/BurnLibrary.h"

#include <QtGui>
#include <QtTest>
#include <fcntl.h>
#include <optional>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {
volatile int zero = 0;
int *volatile nowhere = nullptr;

[[gnu::noinline]] int recurse(int n) {
    volatile char pad[512];
    pad[0] = char(n);
    return n < 0 ? 0 : recurse(n + 1) + pad[0];
}

void fault(const QString &kind) {
    if (kind == "divide")
        zero = 7 / zero;
    else if (kind == "null write")
        *nowhere = 1;
    else if (kind == "illegal")
        __builtin_trap();
    else
        recurse(0);
}

QString fileText(const QString &path) {
    return QString::fromUtf8(OutsideTools::fileBytes(path));
}

QStringList unzipList(const QString &zip) {
    QStringList names =
        QString::fromUtf8(ReadBack::run("unzip", {"-Z1", zip})).split(u'\n', Qt::SkipEmptyParts);
    names.sort();
    return names;
}
} // namespace

class tst_Report : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { vbwHandleException(); }
    void init() { vbwState() = vbwErrorState(); }

    void faultsReachTheTrap_data() {
        columns<QString, QString>("kind", "text");
        QTest::addColumn<bool>("writing"); // libburn's abort handlers are in place
        const char *rows[][2] = {{"divide", "Integer Divide By Zero"},
                                 {"null write", "Access Violation"},
                                 {"illegal", "Illegal Instruction"},
                                 {"overflow", "Stack Overflow"}};
        for (const auto &r : rows)
            QTest::newRow(r[0]) << r[0] << r[1] << false;
        QTest::newRow("during a write") << "null write"
                                        << "Access Violation" << true;
    }
    void faultsReachTheTrap() {
        auto [kind, text, writing] = fetch<QString, QString, bool>("kind", "text", "writing");
        std::optional<BurnLibrary::AbortGuard> write;
        if (writing)
            write.emplace();
        ScriptedAnswers answers;
        answers.answerError(vbwRetry);
        answers.answerError(vbwIgnore);
        int runs = 0;
        bool after = false;
        ErrorTrap::run("cmdFault_Click", "frmTest", [&] {
            ++runs;
            fault(kind);
            after = true;
        });
        // Retry ran the body again, Ignore went on past the handler, the next statement runs.
        QCOMPARE(runs, 2);
        QVERIFY(!after);
        QCOMPARE(answers.errors.size(), 2);
        QVERIFY(answers.errors.first().contains("Error 65535\r\nDescription: Exception: " + text +
                                                "\r\n"));
        QVERIFY(answers.errors.first().contains("Procedure: cmdFault_Click"));
    }

    void workerFaultLeavesAReport() {
        TestEnvironment env;
        const QString err = env.appFolder() + "/stderr.txt";
        const pid_t child = fork();
        if (child == 0) {
            const int fd = ::open(qPrintable(err), O_WRONLY | O_CREAT, 0644);
            dup2(fd, 2);
            std::thread([] { *nowhere = 1; }).join();
            _exit(0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        QVERIFY(WIFSIGNALED(status));
        QCOMPARE(WTERMSIG(status), SIGSEGV);
        QVERIFY(fileText(err).contains("Exception: Access Violation on a thread outside"));
        const QString zip = vbwErrorReport::folder() + vbwErrorReport::subject() + ".zip";
        QVERIFY(unzipList(zip).contains("Error.txt"));
        QVERIFY(fileText(vbwErrorReport::folder() + "Error.txt").contains("(a worker thread)"));
    }

    void scriptedReport_data() {
        rows<bool>("trace", {{"without trace", false}, {"with trace", true}});
    }
    void scriptedReport() {
        QFETCH(bool, trace);
        TestEnvironment env;
        RegisterDeclarationsDump();
        vbwSetOptions(trace ? QStringList{"/trace"} : QStringList{});
        env.writeFile("Error Report Files/old.txt", "earlier report");
        env.writeFile("Error Report Files/kept/inside.txt", "a folder of the user");
        QStringList mailArgs;
        VbwExtension::setProgramRunner([&](const QString &, const QStringList &args) {
            mailArgs = args;
            return 0;
        });
        vbwModuleDump fields("frmBurn", [] { vbwReportVariable("mstrName", QString("a\r\nb")); });
        ScriptedAnswers answers;
        answers.answerError(vbwReport);
        answers.answerError(vbwIgnore);
        vbwState().vbwCircumstancesString = QStringLiteral("I pressed Write");
        ErrorTrap::run("cmdWrite_Click", "frmBurn", [] { throw RuntimeError(6); });
        VbwExtension::setProgramRunner({});
        vbwSetOptions({});

        const QString dir = vbwErrorReport::folder();
        const QString zip = dir + "Error report for Tessaly 0.1.0.zip";
        QStringList files{"Error.txt", "Stack.txt", "System.txt", "Variables.txt", "Version.txt"};
        if (trace)
            files.insert(3, "Trace.txt");
        QCOMPARE(unzipList(zip), files);
        QVERIFY(!QFile::exists(dir + "old.txt"));
        QVERIFY(QFile::exists(dir + "kept/inside.txt"));
        QCOMPARE(fileText(dir + "Error.txt"),
                 QStringLiteral("An unexpected error has occured in this application: \r\n\r\n"
                                "Error 6\r\nDescription: Overflow\r\nProject: Tessaly\r\n"
                                "Module: frmBurn\r\nProcedure: cmdWrite_Click\r\nLine: 0\r\n"
                                "Version: 0.1.0\r\n\r\n\r\nCircumstances:\r\nI pressed Write"));
        const QString dump = fileText(dir + "Variables.txt");
        QVERIFY(dump.contains("* MODULE LEVEL VARIABLES *\r\n**************************\r\n\r\n"
                              "mstrName = \"a<CrLf>b\" (String)\r\n"));
        QVERIFY(dump.contains("modDeclarations.gstrINIFile = \""));
        QVERIFY(dump.contains("Array modDeclarations.gblnFormExist(0 To 99) As Boolean\r\n"
                              "\tmodDeclarations.gblnFormExist(0) = False (Boolean)\r\n"));
        QCOMPARE(fileText(dir + "Stack.txt"),
                 trace ? "\r\nfrmBurn.cmdWrite_Click()\r\n" : "{Unavailable}");
        QCOMPARE(mailArgs.value(mailArgs.indexOf("--attach") + 1), zip);
        // The dialog came back in its second state and Ignore went on.
        QCOMPARE(answers.errors.size(), 2);
        QVERIFY(vbwState().vbwfHasReported);
    }

    void mailFallbacks_data() {
        columns<bool, QList<int>>("linkOpens", "boxAnswers");
        QTest::addColumn<bool>("copied"); // every answer is taken by a box of its own
        QTest::newRow("link, sent") << true << QList<int>{vbYes} << false;
        QTest::newRow("link, not sent") << true << QList<int>{vbNo, vbYes} << true;
        QTest::newRow("no link, copy") << false << QList<int>{vbYes} << true;
        QTest::newRow("no link, no copy") << false << QList<int>{vbNo} << false;
    }
    void mailFallbacks() {
        auto [linkOpens, boxAnswers, copied] =
            fetch<bool, QList<int>, bool>("linkOpens", "boxAnswers", "copied");
        VbwExtension::setProgramRunner([](const QString &, const QStringList &) { return 1; });
        QUrl link;
        VbwExtension::setUrlOpener([&](const QUrl &url) {
            link = url;
            return linkOpens;
        });
        ScriptedAnswers answers;
        for (int a : boxAnswers)
            answers.answerBox(a);
        QGuiApplication::clipboard()->clear();
        vbwErrorReport::mail("/tmp/r/Error report for Tessaly 0.1.0.zip");
        VbwExtension::setProgramRunner({});
        VbwExtension::setUrlOpener({});
        QCOMPARE(answers.boxes.size(), boxAnswers.size());
        QCOMPARE(link.scheme(), QStringLiteral("mailto"));
        QVERIFY(link.query(QUrl::FullyDecoded).contains("subject=Error report for Tessaly 0.1.0"));
        QCOMPARE(QGuiApplication::clipboard()->text().startsWith(
                     "Impossible to send the error report automatically !"),
                 copied);
    }

    void emptyApplicationFolderDeletesNothing() {
        App::setPath(QString());
        QVERIFY(!vbwErrorReport::prepareFolder());
    }
};

QTEST_MAIN(tst_Report)
#include "tst_report.moc"
