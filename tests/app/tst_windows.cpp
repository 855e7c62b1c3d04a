// Every window as it first opens, on the Image Recorder with a blank CD-R in the tray, against
// its reviewed snapshot under tests/snapshots/ (captions, sizes, states, entries).
#include "EngineRig.h"
#include "FrameFixture.h"
#include "Rows.h"
#include "ScriptedAnswers.h"
#include "TestEnvironment.h"
#include "Waits.h"
#include "WidgetSnapshot.h"
#include "app/FormRegistry.h"
#include "app/mdiMain.h"
#include "dialogs/DialogWindows.h"
#include "disctools/DiscInfoWindows.h"
#include "ripping/RippingWindows.h"
#include "widgets/DefaultInstance.h"

#include <QtTest>
#include <QtWidgets>

class tst_Windows : public QObject {
    Q_OBJECT
    std::optional<TestEnvironment> env;
    std::optional<ScriptedAnswers> answers;

private slots:
    void initTestCase() {
        registerDiscInfoWindows();
        registerDialogWindows();
        registerRippingWindows();
    }

    void init() {
        env.emplace();
        answers.emplace();
        EngineRig::prepareImageRecorder(QStringLiteral("CD-R 80"), {});
    }

    // The windows are closed first: some ask about their settings as they go.
    void cleanup() {
        env.reset();
        answers.reset();
    }

    // The frame's menus, toolbar and boxes follow the active compilation.
    void frame_data() {
        columns<QByteArray, QString>("ini", "open");
        QTest::newRow("frame") << QByteArray() << QString();
        QTest::newRow("frame-without-recorders")
            << QByteArray("[Recorders]\r\nImage Recorder=False\r\n") << QString();
        QTest::newRow("frame-data") << QByteArray() << QStringLiteral("frmData");
        QTest::newRow("frame-audio") << QByteArray() << QStringLiteral("frmAudio");
    }
    void frame() {
        auto [ini, open] = fetch<QByteArray, QString>("ini", "open");
        if (!ini.isEmpty())
            env->writeFile(QStringLiteral("Dat/tessaly.ini"), ini);
        QVERIFY(env->startProgram());
        if (!open.isEmpty())
            QVERIFY(FormRegistry::open(open));
        Waits::settle();
        QCOMPARE(FrameFixture::differences(QTest::currentDataTag(), env->appFolder()), QString());
    }

    void opens_data() {
        QTest::addColumn<QString>("name");
        // Window names open through the registry, command keys through the frame.
        const char *names =
            "frmData frmAudio frmLabels frmBurn frmCD2CD frmBurnBin frmIsoripper "
            "frmAbout frmCoder frmLicense frmWeb frmDiscInfo frmErase "
            "frmRecorderInfo frmSupDrives frmSessionCheck frmBurnIso frmPreView "
            "frmRipper frmDecode frmNormalize PREFERENCES NEW:frmChooseDiscType HELP:frmHelp";
        for (const QByteArray &name : QByteArray(names).split(' '))
            QTest::newRow(name.constData()) << QString::fromLatin1(name);
    }
    // A dialog runs its own loop: it is read from inside that loop, then closed.
    void opens() {
        QFETCH(QString, name);
        QVERIFY(env->startProgram());
        FormRegistry::context().engine->MoveTray(true);
        QString diff = QStringLiteral("never shown");
        QTimer poll;
        connect(&poll, &QTimer::timeout, this, [&] {
            if (QWidget *modal = QApplication::activeModalWidget()) {
                poll.stop();
                Waits::settle();
                diff = WidgetSnapshot::differences(modal, name.section(u':', -1));
                modal->close();
            }
        });
        poll.start(10);
        if (FormRegistry::contains(name))
            QVERIFY(FormRegistry::open(name));
        else
            DefaultInstance<mdiMain>::peek()->runCommand(name.section(u':', 0, 0));
        if (poll.isActive()) {
            poll.stop();
            Waits::settle();
            // Windows the registry does not keep are found by their name ("HELP:frmHelp").
            QWidget *window = FormRegistry::find(name);
            for (QWidget *w : QApplication::allWidgets())
                if (!window && w->objectName() == name.section(u':', -1) && w->isVisible())
                    window = w;
            if (window)
                diff = WidgetSnapshot::differences(window, name.section(u':', -1));
        }
        QCOMPARE(diff, QString());
    }
};

QTEST_MAIN(tst_Windows)
#include "tst_windows.moc"
