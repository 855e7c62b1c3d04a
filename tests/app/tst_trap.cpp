#include "Rows.h"
#include "ScriptedAnswers.h"
#include "base/RuntimeError.h"
#include "diagnostics/ErrorTrap.h"
#include "diagnostics/vbwErrHandler.h"
#include "diagnostics/vbwFrmErrHandler.h"
#include "diagnostics/vbwTrace.h"

#include <QtTest>
#include <QtWidgets>
#include <stdexcept>

class tst_Trap : public QObject {
    Q_OBJECT
private slots:
    void choices_data() {
        columns<QList<int>, int, bool, bool>("script", "runs", "finished", "aborted");
        QTest::newRow("ignore returns") << QList<int>{5} << 1 << false << false;
        QTest::newRow("retry runs again") << QList<int>{4, 5} << 2 << false << false;
        QTest::newRow("retry until it works") << QList<int>{4, 4} << 3 << true << false;
        QTest::newRow("abort ends") << QList<int>{3} << 1 << false << true;
    }
    void choices() {
        auto [script, runs, finished, aborted] =
            fetch<QList<int>, int, bool, bool>("script", "runs", "finished", "aborted");
        ScriptedAnswers answers;
        for (int code : script)
            answers.answerError(code);
        bool abortCalled = false;
        ErrorTrap::setAbortAction([&] { abortCalled = true; });
        int count = 0;
        bool reachedEnd = false;
        ErrorTrap::run("cmdTest_Click", "frmTest", [&] {
            ++count;
            if (count < 3)
                throw RuntimeError(RuntimeError::Overflow);
            reachedEnd = true;
        });
        ErrorTrap::setAbortAction({});
        QCOMPARE(count, runs);
        QCOMPARE(reachedEnd, finished);
        QCOMPARE(abortCalled, aborted);
        QCOMPARE(answers.errors.size(), qMin(runs, int(script.size())));
        QVERIFY(answers.errors.first().contains("Error 6\r\nDescription: Overflow"));
        QVERIFY(answers.errors.first().contains("Module: frmTest\r\nProcedure: cmdTest_Click"));
    }

    // A foreign exception is trapped too, with its words (the program's own errors: above, and
    // tst_mainframe's hundred and first browser).
    void anyFailureReachesTheTrap() {
        ScriptedAnswers answers;
        ErrorTrap::run("p", "m", [] { throw std::runtime_error("disk on fire"); });
        QCOMPARE(vbwState().lastNumber, 65535);
        QCOMPARE(vbwState().lastDescription, QStringLiteral("disk on fire"));
        QCOMPARE(answers.errors.size(), 1);
    }
};

QTEST_MAIN(tst_Trap)
#include "tst_trap.moc"
