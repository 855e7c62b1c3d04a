#include "OutsideTools.h"
#include "ReadBack.h"
#include "Rows.h"
#include "ScriptedAnswers.h"
#include "TestEnvironment.h"
#include "WidgetSnapshot.h"
#include "app/FormRegistry.h"
#include "app/frmHelp.h"
#include "app/mdiMain.h"
#include "dialogs/DialogWindows.h"
#include "dialogs/frmLicense.h"

#include <QtTest>
#include <QtWidgets>

static const QString AppId = QStringLiteral("org.tessaly.Tessaly");

// Tessaly installed into a temporary prefix and read back by the desktop's own validators, the
// dialogs against the libraries' own version tools, and the help reached by F1.
class tst_Desktop : public QObject {
    Q_OBJECT
    QTemporaryDir m_prefix;
    ScriptedAnswers m_answers;

private slots:
    void initTestCase() {
        registerDialogWindows();
        int status = -1;
        const QByteArray log = ReadBack::run(
            "cmake", {"--install", TESSALY_BUILD_DIR, "--prefix", m_prefix.path()}, &status);
        QVERIFY2(status == 0, log.constData());
    }

    void installsInItsPlaces_data() {
        // iconSize: a PNG of that square size; 0 for other files; checker: a program that must
        // accept the file
        columns<QString, int, QStringList>("path", "iconSize", "checker");
        for (const QString &path :
             {QStringLiteral("bin/tessaly"), QStringLiteral("share/tessaly/help/tessaly.html"),
              "share/icons/hicolor/scalable/apps/" + AppId + ".svg"})
            QTest::newRow(qPrintable(path)) << path << 0 << QStringList();
        QTest::newRow("entry") << "share/applications/" + AppId + ".desktop" << 0
                               << QStringList{"desktop-file-validate"};
        QTest::newRow("metainfo") << "share/metainfo/" + AppId + ".metainfo.xml" << 0
                                  << QStringList{"appstreamcli", "validate", "--no-net"};
        QTest::newRow("licence") << "share/doc/tessaly/COPYING" << 0
                                 << QStringList{"cmp", "/usr/share/common-licenses/GPL-3"};
        for (int size : {16, 22, 24, 32, 48, 64, 96, 128, 256})
            QTest::addRow("icon %d", size)
                << QStringLiteral("share/icons/hicolor/%1x%1/apps/%2.png").arg(size).arg(AppId)
                << size << QStringList();
    }
    void installsInItsPlaces() {
        auto [path, iconSize, checker] =
            fetch<QString, int, QStringList>("path", "iconSize", "checker");
        const QString file = m_prefix.filePath(path);
        QVERIFY2(QFileInfo::exists(file), qPrintable(path));
        if (iconSize)
            QCOMPARE(QImage(file).size(), QSize(iconSize, iconSize));
        // The menu entry starts the installed program by its full path.
        const QString exec = QRegularExpression("\nExec=\"([^\"]+)\"")
                                 .match(QString::fromUtf8(OutsideTools::fileBytes(file)))
                                 .captured(1);
        QVERIFY(!path.endsWith(".desktop") || exec == m_prefix.filePath("bin/tessaly"));
        if (checker.isEmpty())
            return;
        int status = -1;
        const QByteArray said = ReadBack::run(checker[0], checker.mid(1) << file, &status);
        // A warning is a fault too; desktop-file-validate and cmp are silent when all is well.
        QVERIFY2(status == 0 && !said.contains("warning") && !said.contains("error"),
                 said.constData());
    }

    void helpHasATopicForEveryWindowAndItsPictures() {
        const QString page = m_prefix.filePath("share/tessaly/help/tessaly.html");
        frmHelp help(nullptr);
        QVERIFY(help.load(page));
        for (const QString &window :
             QStringLiteral(
                 "mdiMain frmFiles frmChooseDiscType frmData frmLabels frmAudio "
                 "frmSessionCheck frmBurn frmSaveAsISO frmBurnIso frmOptions frmDiscInfo "
                 "frmRecorderInfo frmSupDrives frmErase frmCD2CD frmBurnBin frmIsoripper "
                 "frmRipper frmExtract frmMp3Settings frmVorbisSettings frmWMASettings "
                 "frmDecode frmNormalize frmPreView frmAbout frmCoder frmWeb frmLicense")
                 .split(u' '))
            QVERIFY2(help.hasAnchor(window), qPrintable(window));
        int shots = 0;
        auto it = QRegularExpression("<img src=\"([^\"]+)\"")
                      .globalMatch(QString::fromUtf8(OutsideTools::fileBytes(page)));
        for (; it.hasNext(); ++shots) {
            const QString shot = it.next().captured(1);
            QVERIFY2(!QImage(QFileInfo(page).path() + u'/' + shot).isNull(), qPrintable(shot));
        }
        QCOMPARE(shots, 10);
    }

    // The licence window: the program's name and version, then the whole GPL as Debian has it.
    void licenceHoldsTheWholeGpl() {
        const QString text = frmLicense::licenseText();
        QVERIFY(text.startsWith("Tessaly 0.1.0\n"));
        const QByteArray gpl = OutsideTools::fileBytes("/usr/share/common-licenses/GPL-3");
        QVERIFY(text.endsWith("\n\n" + QString(78, u'-') + "\n\n" + QString::fromUtf8(gpl)));
    }

    void f1OpensTheTopicOfTheFocusWindow_data() {
        QTest::addColumn<QString>("topic"); // the row's tag is the command that opens it
        // With "Transparency Value" 0 the About and Web boxes are faint, never invisible; the
        // licence and the normalizer (a child) stay opaque: snapshots desktop-faint-<topic>.
        QTest::newRow("ABOUT") << "frmAbout";
        QTest::newRow("LICENSE") << "frmLicense";
        QTest::newRow("WEB") << "frmWeb";
        QTest::newRow("NORMALIZE") << "frmNormalize";
    }
    void f1OpensTheTopicOfTheFocusWindow() {
        QFETCH(QString, topic);
        TestEnvironment env;
        env.writeFile("Dat/tessaly.ini", "[General]\r\nTransparency Value=0\r\n");
        QVERIFY(env.startProgram());
        DefaultInstance<mdiMain>::peek()->runCommand(QTest::currentDataTag());
        QWidget *window = FormRegistry::find(topic);
        QVERIFY(window);
        QCOMPARE(WidgetSnapshot::differences(window, "desktop-faint-" + topic), QString());
        // The focus somewhere in the window, where opening it or a click put it.
        window->window()->activateWindow();
        if (!window->isAncestorOf(QApplication::focusWidget()))
            window->findChild<QPushButton *>()->setFocus();
        QTRY_VERIFY(window->isAncestorOf(QApplication::focusWidget()));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_F1);
        QTRY_VERIFY(frmHelp::instance() && frmHelp::instance()->isVisible());
        QCOMPARE(frmHelp::instance()->currentAnchor(), topic);
        env.stopProgram();
    }
};

QTEST_MAIN(tst_Desktop)
#include "tst_desktop.moc"
