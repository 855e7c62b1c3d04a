#include "ScriptedAnswers.h"
#include "TestEnvironment.h"
#include "app/frmSplash.h"
#include "app/mdiMain.h"
#include "app/modDeclarations.h"
#include "app/modMain.h"
#include "diagnostics/vbwErrHandler.h"
#include "widgets/DefaultInstance.h"

#include <QtTest>
#include <QtWidgets>

#include <pwd.h>
#include <unistd.h>

class tst_Startup : public QObject {
    Q_OBJECT
private slots:
    void mainSetsTheGlobalsAndShowsTheSplash() {
        TestEnvironment env;
        modMain::Main();
        QVERIFY(modMain::Started());
        QCOMPARE(qint16(gblnDisctypeIsData), qint16(99));
        QVERIFY(!gblnCloseWindows);
        QVERIFY(!gblnIsTestWrite);
        QCOMPARE(gstrINIFile, env.appFolder() + "/Dat/tessaly.ini");
        for (int i = 0; i < 100; ++i)
            QVERIFY(gblnFormExist(i));
        QVERIFY(modMain::HelpFile().endsWith("/tessaly.hlp>hWindow"));
        // Main reads no option and makes no frame: the splash alone stands.
        QVERIFY(DefaultInstance<frmSplash>::exists());
        QVERIFY(!DefaultInstance<mdiMain>::exists());
        frmSplash *splash = DefaultInstance<frmSplash>::peek();
        QCOMPARE(splash->lblUser->text(),
                 "User:  " + QString::fromLocal8Bit(getpwuid(geteuid())->pw_name));
        QCOMPARE(splash->lblComputer->text(), "Computer Name:  " + QSysInfo::machineHostName());
        QCOMPARE(splash->lblVersion->text(), QStringLiteral("Version  0.1.0"));
        QCOMPARE(splash->tmrWait->interval(), 55);
        QVERIFY(splash->tmrWait->isActive());
        // It gives way to the frame at the fiftieth tick.
        splash->tmrWait->stop(); // the ticks are the test's own, whatever the machine's load
        for (int i = 0; i < 49; ++i)
            splash->tmrWait_Timer();
        QCOMPARE(splash->prbWait->value(), 98);
        QVERIFY(!DefaultInstance<mdiMain>::exists());
        splash->tmrWait_Timer();
        QVERIFY(DefaultInstance<mdiMain>::exists());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!DefaultInstance<frmSplash>::exists()); // the frame's caption: frame snapshot
    }

    void maximizedValueFromTheOptions() {
        TestEnvironment env;
        env.writeFile("Dat/tessaly.ini", "[General]\r\nMaximized Value=2\r\n");
        QVERIFY(env.startProgram());
        QVERIFY(DefaultInstance<mdiMain>::peek()->windowState() & Qt::WindowMaximized);
    }

    void unreadableNumberRaisesTypeMismatchIntoTheTrap() {
        TestEnvironment env;
        ScriptedAnswers answers;
        env.writeFile("Dat/tessaly.ini", "[General]\r\nMaximized Value=abc\r\n");
        QVERIFY(env.startProgram());
        QCOMPARE(answers.errors.size(), 1);
        QCOMPARE(vbwState().lastNumber, 13);
        QCOMPARE(vbwState().lastProcedure, QStringLiteral("MDIForm_Load"));
        QCOMPARE(vbwState().lastModule, QStringLiteral("mdiMain"));
        QVERIFY(answers.errors.first().contains("Description: Type mismatch"));
        // Ignored: the frame stands all the same.
        QVERIFY(DefaultInstance<mdiMain>::exists());
    }

    // Quitting asks, and No keeps the frame; with "close windows" set it leaves without asking.
    void quitAsksUnlessWindowsCloseByThemselves() {
        TestEnvironment env;
        ScriptedAnswers answers;
        QVERIFY(env.startProgram());
        answers.answerBox(7); // No
        DefaultInstance<mdiMain>::peek()->ToolMenuExit();
        QCOMPARE(answers.boxes.size(), 1);
        QCOMPARE(answers.boxes[0].prompt,
                 QStringLiteral("Tessaly Pro will shut down, really want to quit?"));
        QCOMPARE(answers.boxes[0].buttons, 36);
        QCOMPARE(answers.boxes[0].title, QStringLiteral("Tessaly - Message"));
        QVERIFY(DefaultInstance<mdiMain>::peek()->isVisible());
        gblnCloseWindows = true;
        DefaultInstance<mdiMain>::peek()->ToolMenuExit();
        QCOMPARE(answers.boxes.size(), 1);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!DefaultInstance<mdiMain>::exists());
    }

    void secondStartWarnsAndLeaves() {
        TestEnvironment env;
        const QByteArray options = "[General]\r\nManual=True\r\n";
        env.writeFile("Dat/tessaly.ini", options);
        const QDateTime stamp = QFileInfo(env.iniFile()).lastModified();

        const auto launch = [&](QProcess &p) {
            p.start(TestEnvironment::programPath(),
                    {"--app-folder", env.appFolder(), "--unattended"});
        };
        const auto lockOwner = [&] {
            QFile lock(env.appFolder() + "/tessaly.lock");
            return lock.open(QIODevice::ReadOnly) ? lock.readLine().trimmed() : QByteArray();
        };
        QProcess first, second, third;
        launch(first);
        QVERIFY(first.waitForStarted());
        QTRY_COMPARE_WITH_TIMEOUT(lockOwner(), QByteArray::number(first.processId()), 10000);

        launch(second);
        QVERIFY(second.waitForFinished(10000));
        QCOMPARE(second.exitStatus(), QProcess::NormalExit);
        QCOMPARE(second.exitCode(), 0);
        const QString said = QString::fromLocal8Bit(second.readAllStandardError());
        QVERIFY2(said.contains("MsgBox [Tessaly - Warning] Tessaly is already running"),
                 qPrintable(said));
        QCOMPARE(said.count("MsgBox"), 1);

        first.kill();
        first.waitForFinished();
        QFile f(env.iniFile());
        QVERIFY(f.open(QIODevice::ReadOnly));
        QCOMPARE(f.readAll(), options);
        QCOMPARE(QFileInfo(env.iniFile()).lastModified(), stamp);

        // The killed run left its lock behind, as a crash does; the next start takes it over.
        launch(third);
        QVERIFY(third.waitForStarted());
        QTRY_COMPARE_WITH_TIMEOUT(lockOwner(), QByteArray::number(third.processId()), 10000);
        QCOMPARE(third.state(), QProcess::Running);
        third.kill();
        third.waitForFinished();
    }
};

QTEST_MAIN(tst_Startup)
#include "tst_startup.moc"
