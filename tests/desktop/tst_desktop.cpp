#include "FrameFixture.h"
#include "OutsideTools.h"
#include "ReadBack.h"
#include "ScriptedAnswers.h"
#include "TestEnvironment.h"
#include "app/FormRegistry.h"
#include "app/frmHelp.h"
#include "app/mdiMain.h"
#include "dialogs/DialogWindows.h"
#include "dialogs/frmAbout.h"
#include "dialogs/frmLicense.h"
#include "dialogs/frmWeb.h"
#include "widgets/DefaultInstance.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBrowser>
#include <QTreeWidget>

using namespace FrameFixture;

namespace {
const QString AppId = QStringLiteral("org.tessaly.Tessaly");

// The first dotted number in a tool's answer.
QString dottedNumber(const QByteArray &text) {
    static const QRegularExpression number(QStringLiteral("\\d+(\\.\\d+)+"));
    return number.match(QString::fromUtf8(text)).captured(0);
}
} // namespace

// Tessaly installed into a temporary prefix and read back by the desktop's own validators, the
// dialogs against the libraries' own version tools, and the help reached by F1.
class tst_Desktop : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void installsInItsPlaces_data();
    void installsInItsPlaces();
    void validatorsAccept_data();
    void validatorsAccept();
    void helpHasATopicForEveryWindow_data();
    void helpHasATopicForEveryWindow();
    void helpPicturesAreInstalled();
    void aboutShowsTheLoadedVersions_data();
    void aboutShowsTheLoadedVersions();
    void licenseIsTheGpl3();
    void transparencyComesFromTheOptions_data();
    void transparencyComesFromTheOptions();
    void f1OpensTheTopicOfTheFocusWindow_data();
    void f1OpensTheTopicOfTheFocusWindow();

private:
    QTemporaryDir m_prefix;
    ScriptedAnswers m_answers;
};

void tst_Desktop::initTestCase() {
    registerDialogWindows();
    int status = -1;
    const QByteArray log =
        ReadBack::run(QStringLiteral("cmake"),
                      {QStringLiteral("--install"), QStringLiteral(TESSALY_BUILD_DIR),
                       QStringLiteral("--prefix"), m_prefix.path()},
                      &status);
    QVERIFY2(status == 0, log.constData());
}

void tst_Desktop::installsInItsPlaces_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("iconSize"); // a PNG of that square size; 0 for other files
    QTest::newRow("program") << "bin/tessaly" << 0;
    QTest::newRow("entry") << "share/applications/" + AppId + ".desktop" << 0;
    QTest::newRow("metainfo") << "share/metainfo/" + AppId + ".metainfo.xml" << 0;
    QTest::newRow("help") << "share/tessaly/help/tessaly.html" << 0;
    QTest::newRow("licence") << "share/doc/tessaly/COPYING" << 0;
    QTest::newRow("scalable") << "share/icons/hicolor/scalable/apps/" + AppId + ".svg" << 0;
    for (int size : {16, 22, 24, 32, 48, 64, 96, 128, 256})
        QTest::addRow("icon %d", size)
            << QStringLiteral("share/icons/hicolor/%1x%1/apps/%2.png").arg(size).arg(AppId) << size;
}

void tst_Desktop::installsInItsPlaces() {
    QFETCH(QString, path);
    QFETCH(int, iconSize);
    const QString file = m_prefix.filePath(path);
    QVERIFY2(QFileInfo::exists(file), qPrintable(file));
    if (iconSize)
        QCOMPARE(QImage(file).size(), QSize(iconSize, iconSize));
}

void tst_Desktop::validatorsAccept_data() {
    QTest::addColumn<QString>("program");
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("desktop entry")
        << "desktop-file-validate"
        << QStringList{m_prefix.filePath("share/applications/" + AppId + ".desktop")};
    QTest::newRow("metainfo") << "appstreamcli"
                              << QStringList{"validate", "--no-net",
                                             m_prefix.filePath("share/metainfo/" + AppId +
                                                               ".metainfo.xml")};
}

void tst_Desktop::validatorsAccept() {
    QFETCH(QString, program);
    QFETCH(QStringList, arguments);
    int status = -1;
    const QByteArray said = ReadBack::run(program, arguments, &status);
    QVERIFY2(status == 0, said.constData());
    // desktop-file-validate is silent when all is well; a warning is a fault too.
    QVERIFY2(!said.contains("error") && !said.contains("warning"), said.constData());
}

void tst_Desktop::helpHasATopicForEveryWindow_data() {
    QTest::addColumn<QString>("window");
    for (const char *name :
         {"mdiMain",         "frmFiles",          "frmChooseDiscType", "frmData",
          "frmLabels",       "frmAudio",          "frmSessionCheck",   "frmBurn",
          "frmSaveAsISO",    "frmBurnIso",        "frmOptions",        "frmDiscInfo",
          "frmRecorderInfo", "frmSupDrives",      "frmErase",          "frmCD2CD",
          "frmBurnBin",      "frmIsoripper",      "frmRipper",         "frmExtract",
          "frmMp3Settings",  "frmVorbisSettings", "frmWMASettings",    "frmDecode",
          "frmNormalize",    "frmPreView",        "frmAbout",          "frmCoder",
          "frmWeb",          "frmLicense"})
        QTest::newRow(name) << name;
}

void tst_Desktop::helpHasATopicForEveryWindow() {
    QFETCH(QString, window);
    const QString page = m_prefix.filePath("share/tessaly/help/tessaly.html");
    frmHelp help(nullptr);
    QVERIFY(help.load(page));
    QVERIFY2(help.hasAnchor(window), qPrintable(window));
}

void tst_Desktop::helpPicturesAreInstalled() {
    const QString page = m_prefix.filePath("share/tessaly/help/tessaly.html");
    int pictures = 0;
    static const QRegularExpression picture(QStringLiteral("<img src=\"([^\"]+)\""));
    for (auto it = picture.globalMatch(QString::fromUtf8(OutsideTools::fileBytes(page)));
         it.hasNext();) {
        const QString shot = QFileInfo(page).dir().filePath(it.next().captured(1));
        QVERIFY2(!QImage(shot).isNull(), qPrintable(shot));
        ++pictures;
    }
    QVERIFY(pictures >= 5);
}

void tst_Desktop::aboutShowsTheLoadedVersions_data() {
    QTest::addColumn<QString>("library");
    QTest::addColumn<QString>("tool");
    QTest::addColumn<QStringList>("arguments");
    const QString pc = QStringLiteral("pkg-config");
    const auto modversion = [](const char *module) {
        return QStringList{QStringLiteral("--modversion"), QString::fromLatin1(module)};
    };
    QTest::newRow("libburn") << "libburn" << pc << modversion("libburn-1");
    QTest::newRow("libisofs") << "libisofs" << pc << modversion("libisofs-1");
    QTest::newRow("libcdio") << "libcdio" << pc << modversion("libcdio");
    QTest::newRow("libblkid") << "libblkid" << pc << modversion("blkid");
    QTest::newRow("libavcodec") << "libavcodec" << pc << modversion("libavcodec");
    QTest::newRow("libsndfile") << "libsndfile" << pc << modversion("sndfile");
    QTest::newRow("libzip") << "libzip" << pc << modversion("libzip");
    QTest::newRow("Qt") << "Qt" << pc << modversion("Qt6Core");
    QTest::newRow("LAME") << "LAME"
                          << "lame" << QStringList{"--version"};
}

void tst_Desktop::aboutShowsTheLoadedVersions() {
    QFETCH(QString, library);
    QFETCH(QString, tool);
    QFETCH(QStringList, arguments);
    TestEnvironment env;
    frmAbout about;
    about.Form_Load();
    const auto rows = about.lvwEngines->findItems(library, Qt::MatchExactly, 0);
    QCOMPARE(rows.size(), 1);
    QCOMPARE(rows[0]->text(1), dottedNumber(ReadBack::run(tool, arguments)));
}

void tst_Desktop::licenseIsTheGpl3() {
    // The shipped COPYING is the text Debian keeps of the licence, and the box shows all of it
    // under a notice that says "or any later version".
    const QByteArray gpl3 =
        OutsideTools::fileBytes(QStringLiteral("/usr/share/common-licenses/GPL-3"));
    QVERIFY(!gpl3.isEmpty());
    QCOMPARE(OutsideTools::fileBytes(QStringLiteral(TESSALY_SOURCE_DIR "/COPYING")), gpl3);
    frmLicense box;
    box.Form_Load();
    const QString shown = box.txtLicense->toPlainText();
    QVERIFY(shown.simplified().endsWith(QString::fromUtf8(gpl3).simplified()));
    QVERIFY(shown.contains(QStringLiteral("either version 3 of the License, or (at your option)")));
}

void tst_Desktop::transparencyComesFromTheOptions_data() {
    QTest::addColumn<QByteArray>("ini");
    QTest::addColumn<double>("opacity");
    QTest::newRow("no options file") << QByteArray() << 1.0;
    QTest::newRow("half") << QByteArray("[General]\r\nTransparency Value=50\r\n") << 0.5;
    // Also with transparency switched off, as the options dialog's preview is not asked.
    QTest::newRow("switched off")
        << QByteArray("[General]\r\nTransparency Enabled=0\r\nTransparency Value=70\r\n") << 0.7;
    QTest::newRow("never invisible") << QByteArray("[General]\r\nTransparency Value=0\r\n") << 0.2;
}

void tst_Desktop::transparencyComesFromTheOptions() {
    QFETCH(QByteArray, ini);
    QFETCH(double, opacity);
    TestEnvironment env;
    if (!ini.isEmpty())
        env.writeFile(QStringLiteral("Dat/tessaly.ini"), ini);
    frmAbout about;
    about.Form_Load();
    frmWeb web;
    web.Form_Load();
    // The window system keeps the opacity in steps of 1/255.
    QVERIFY(qAbs(about.windowOpacity() - opacity) < 0.01);
    QVERIFY(qAbs(web.windowOpacity() - opacity) < 0.01);
    QVERIFY(web.lblLinks->text().contains(QStringLiteral("https://www.gnu.org/licenses/gpl-3.0")));
}

void tst_Desktop::f1OpensTheTopicOfTheFocusWindow_data() {
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("topic");
    QTest::newRow("about box") << QStringLiteral("ABOUT") << QStringLiteral("frmAbout");
    QTest::newRow("licence") << QStringLiteral("LICENSE") << QStringLiteral("frmLicense");
    QTest::newRow("links") << QStringLiteral("WEB") << QStringLiteral("frmWeb");
    QTest::newRow("normaliser") << QStringLiteral("NORMALIZE") << QStringLiteral("frmNormalize");
}

void tst_Desktop::f1OpensTheTopicOfTheFocusWindow() {
    QFETCH(QString, command);
    QFETCH(QString, topic);
    TestEnvironment env;
    QVERIFY(env.startProgram());
    frame()->runCommand(command);
    QWidget *window = FormRegistry::find(topic);
    QVERIFY(window);
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

QTEST_MAIN(tst_Desktop)
#include "tst_desktop.moc"
