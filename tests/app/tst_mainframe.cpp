// The main frame: its start, the command table, the child windows and the window list.
#include "FrameFixture.h"
#include "Rows.h"
#include "ScriptedAnswers.h"
#include "TestEnvironment.h"
#include "app/FormRegistry.h"
#include "app/frmHelp.h"
#include "app/frmOptions.h"
#include "app/mdiMain.h"
#include "app/modDeclarations.h"
#include "app/modGlobals.h"
#include "base/App.h"
#include "compilation/frmData.h"
#include "diagnostics/vbwErrHandler.h"
#include "engine/writer/CDWriterPro.h"
#include "widgets/DefaultInstance.h"
#include "widgets/KeyedItem.h"
#include "widgets/KeyedMenu.h"
#include "widgets/KeyedStatusBar.h"
#include "widgets/KeyedToolbar.h"
#include "widgets/LineControl.h"
#include "widgets/Twips.h"

#include <QtTest>
#include <QtWidgets>

using namespace FrameFixture;

namespace {
QStringList rowKeys(const QTreeWidget *view) {
    QStringList keys;
    for (int i = 0; i < view->topLevelItemCount(); ++i)
        keys.append(view->topLevelItem(i)->data(0, Qt::UserRole).toString());
    return keys;
}
// Command, whether it is clicked on the toolbar, and the window it opens. Commands that start
// greyed are in the frame snapshot; that their clicks reach nothing is tst_keyedwidgets'.
const QList<std::tuple<const char *, bool, const char *>> commandRows = {
    {"LABEL", false, "frmLabels"},
    {"WRITEDISC", false, "frmBurn"},
    {"WRITEDISC", true, "frmBurn"},
    {"CUESHEET", false, "frmBurnBin"},
    {"CDCOPY", false, "frmCD2CD"},
    {"SAVEASISO", true, "ToolMenuSaveAsIso"},
    {"WRITEISO", false, "ToolMenuWriteIso"},
    {"PRINT", true, "ToolMenuPrint"},
    {"PRINTPREVIEW", false, "frmPreView"},
    {"PRINTERSETTINGS", false, "ToolMenuPrinterSettings"},
    {"PAGESETTINGS", false, "ToolMenuPageSettings"},
    {"CLEARAUDIOTRACKS", false, "ToolMenuClearAudio"},
    {"REMOVEAUDIOTRACK", false, "ToolMenuRemoveTrack"},
    {"RIPCD", false, "frmRipper"},
    {"RIPAUDIO", true, "frmRipper"},
    {"NORMALIZE", true, "frmNormalize"},
    {"DECODEMP3", false, "frmDecode"},
    {"RIPDATA", false, "frmIsoripper"},
    {"CDRECINFO", true, "frmRecorderInfo"},
    {"DISCINFORMATION", false, "frmDiscInfo"},
    {"SESSION", false, "frmSessionCheck"},
    {"ERASEDISC", true, "frmErase"},
    {"IMPPRESES", false, "ToolMenuImportPrevious"},
    {"SUPPORTEDDRIVES", false, "frmSupDrives"},
    {"LICENSE", false, "frmLicense"},
    {"WEB", false, "frmWeb"},
    {"ABOUT", false, "frmAbout"},
    {"INTERNETUPDATE", false, "Update.exe"},
};
// An image command: what is selected and the box it gives (empty: nothing, none), whether the
// list reloads, and the files left in the image.
struct ImageCommand {
    QString key, selectKey, prompt;
    bool updates;
    int filesLeft;
};
} // namespace

class tst_MainFrame : public QObject {
    Q_OBJECT
    std::optional<TestEnvironment> env;
    std::optional<ScriptedAnswers> answers;

private slots:
    // Every test starts from a fresh folder; a box the test did not ask about fails it.
    void init() {
        env.emplace();
        answers.emplace();
    }

    void cleanup() {
        QVERIFY(answers->boxes.isEmpty());
        answers.reset();
        env.reset();
    }

    void startSizeAndTiling() {
        QVERIFY(env->startProgram());
        QCOMPARE(ScreenResolution(), QStringLiteral("1024 X 768"));
        mdiMain *f = frame();
        QCOMPARE(f->pos(), QPoint(0, 0));
        QCOMPARE(f->windowState() & (Qt::WindowMaximized | Qt::WindowMinimized), Qt::WindowNoState);
        QCOMPARE(f->size(), QSize(1027, 740));
        // One browser from the start, at its default place.
        QCOMPARE(childWindows().size(), 1);
        QCOMPARE(childWindows().first()->geometry(),
                 QRect(Twips::toPixels(7650), 0, Twips::toPixels(7650), Twips::toPixels(8500)));
        f->show();
        f->runCommand("ADDFILES");
        settle();
        const QRect area = f->mdiArea()->viewport()->rect();
        f->runCommand("TILEV");
        QCOMPARE(childWindows()[0]->geometry(), QRect(0, 0, area.width() / 2, area.height()));
        QCOMPARE(childWindows()[1]->geometry(),
                 QRect(area.width() / 2, 0, area.width() / 2, area.height()));
        f->runCommand("TILEH");
        QCOMPARE(childWindows()[0]->geometry(), QRect(0, 0, area.width(), area.height() / 2));
        QCOMPARE(childWindows()[1]->geometry(),
                 QRect(0, area.height() / 2, area.width(), area.height() / 2));
        f->runCommand("CASCADE");
        QVERIFY(childWindows()[1]->x() > childWindows()[0]->x());
        QVERIFY(childWindows()[1]->y() > childWindows()[0]->y());
    }

    // option: left out by the program's option, or by the options
    void frameWithoutRecorders_data() {
        rows<bool>("option", {{"options file", false}, {"program option", true}});
    }
    void frameWithoutRecorders() {
        QFETCH(bool, option);
        const QStringList arguments{"tessaly", "--app-folder", env->appFolder()};
        App::initialize(option ? arguments + QStringList{"--no-image-recorder"} : arguments);
        if (!option)
            env->writeFile("Dat/tessaly.ini", "[Recorders]\r\nImage Recorder=False\r\n");
        QVERIFY(env->startProgram());
        App::initialize(arguments);
        mdiMain *f = frame();
        QCOMPARE(f->Tessaly->DriveCount(), 0);
        QCOMPARE(qint32(glngDriveIndex), -1);
        QCOMPARE(answers->boxes.size(), 2);
        QCOMPARE(answers->boxes[0].prompt,
                 QStringLiteral("Drives Cannot be initialized...Contact support!"));
        QCOMPARE(
            answers->boxes[1].prompt,
            QStringLiteral("There are no compatible CDR drives reported.\nSome older CDR drives "
                           "are not currently supported."));
        QCOMPARE(answers->boxes[1].buttons, int(vbInformation));
        QCOMPARE(answers->boxes[1].title, QStringLiteral("Tessaly - Information"));
        answers->boxes.clear();
        QCOMPARE(differences("frame-without-recorders", env->appFolder()), QString());
        QCOMPARE(childWindows().size(), 1);
        QCOMPARE(browserNumber(captions().first()), 1);
    }

    // Browser numbers: the lowest free one is taken again; the window list keeps loading order.
    void browsersReuseTheLowestFreeNumber() {
        QVERIFY(env->startProgram());
        mdiMain *f = frame();
        f->runCommand("ADDFILES");
        f->runCommand("ADDFILES");
        QCOMPARE(captions().size(), 3);
        QCOMPARE(browserNumber(captions()[1]), 2);
        QCOMPARE(browserNumber(captions()[2]), 3);
        childWindows()[1]->close();
        settle();
        QCOMPARE(captions().size(), 2);
        QVERIFY(!gblnFormExist(1));
        f->runCommand("ADDFILES");
        settle();
        QVERIFY2(captions().last().startsWith("File Browser [2]  "), qPrintable(captions().last()));
        f->mdiArea()->setActiveSubWindow(childWindows()[1]);
        emit f->SmartMenu->Menu("WINDOWS")->menu()->aboutToShow();
        QCOMPARE(differences("mainframe-window-list", env->appFolder()), QString());
        QCOMPARE(f->SmartMenu->Item("MDICHILD_3")->ItemType, 202);
        // An entry brings its window to the front.
        f->SmartMenu->click("MDICHILD_3");
        QCOMPARE(f->mdiArea()->activeSubWindow(), childWindows()[2]);
        QCOMPARE(qint16(gintActiveFileBrowser), qint16(2));
        f->runCommand("ADDFILES");
        QCOMPARE(browserNumber(captions().last()), 4);
        // Dropping down again lists anew rather than adding to the old entries.
        for (int closed = 0; closed < 2; ++closed) {
            childWindows()[0]->close();
            settle();
        }
        emit f->SmartMenu->Menu("WINDOWS")->menu()->aboutToShow();
        QVERIFY(!f->SmartMenu->contains("MDICHILD_3"));
        f->runCommand("CLOSEALL");
        settle();
        QVERIFY(childWindows().isEmpty());
        QCOMPARE(qint16(f->NumberForms), qint16(0));
        f->runCommand("ADDFILES");
        QCOMPARE(browserNumber(captions().last()), 1);
    }

    void hundredAndFirstBrowserEndsInTheTrap() {
        QVERIFY(env->startProgram());
        mdiMain *f = frame();
        for (int i = 2; i <= 100; ++i)
            f->SmartMenu->click("ADDFILES");
        QCOMPARE(childWindows().size(), 100);
        QCOMPARE(browserNumber(captions().last()), 100);
        QVERIFY(answers->errors.isEmpty());
        f->SmartMenu->click("ADDFILES");
        QCOMPARE(answers->errors.size(), 1);
        QCOMPARE(vbwState().lastNumber, 9);
        QCOMPARE(vbwState().lastProcedure, QStringLiteral("smartMenu_Click"));
        QVERIFY(answers->errors.first().contains("Subscript out of range"));
        QCOMPARE(childWindows().size(), 100);
        QCOMPARE(differences("frame", env->appFolder()), QString());
    }

    void commandsReachTheirWindows_data() {
        columns<QString, bool, QString>("key", "fromToolbar", "opened");
        for (const auto &[key, toolbar, opened] : commandRows)
            QTest::addRow("%s%s", key, toolbar ? " (toolbar)" : "")
                << QString(key) << toolbar << QString(opened);
    }

    void commandsReachTheirWindows() {
        auto [key, fromToolbar, opened] =
            fetch<QString, bool, QString>("key", "fromToolbar", "opened");
        QVERIFY(env->startProgram());
        mdiMain *f = frame();
        const auto trigger = [&] {
            KeyedItem *item = f->SmartMenu->Item(key);
            item->setEnabled(true);
            item->action()->setVisible(true);
            item->action()->trigger();
        };
        if (!FormRegistry::contains(opened) && !fromToolbar) {
            // A window not built yet: the command says so, in words without an accelerator.
            trigger();
            QCOMPARE(answers->boxes.size(), 1);
            QVERIFY2(
                answers->boxes[0].prompt.endsWith(" is not available in this version of Tessaly "
                                                  "yet.") &&
                    !answers->boxes[0].prompt.contains(u'&'),
                qPrintable(answers->boxes[0].prompt));
            answers->boxes.clear();
        }
        if (key == "INTERNETUPDATE") {
            // An updater that is there but will not start says the same.
            env->writeFile("Update.exe", "not a program");
            trigger();
            QCOMPARE(answers->boxes.size(), 1);
            answers->boxes.clear();
            return;
        }
        QStringList names, reached;
        for (const auto &row : commandRows)
            if (!names.contains(std::get<2>(row)))
                names.append(std::get<2>(row));
        for (const QString &name : names)
            FormRegistry::add(name, [&reached, name, f](QWidget *owner) {
                QCOMPARE(owner, f);
                reached.append(name);
            });
        if (fromToolbar) { // reached through the item itself, so it is made clickable first
            f->SmartToolbar->Item(key)->setEnabled(true);
            f->SmartToolbar->click(key);
        } else {
            trigger();
        }
        for (const QString &name : names)
            FormRegistry::remove(name);
        QCOMPARE(reached, QStringList({opened}));
    }

    // The box runs its own modal loop (the PREFERENCES snapshot); a timer looks at it from inside
    // and closes it. What OK writes is tst_options'.
    void preferencesOpensTheOptionsBoxOverTheFrame() {
        QVERIFY(env->startProgram());
        QWidget *seenOwner = nullptr;
        QTimer::singleShot(0, [&] {
            if (auto *box = qobject_cast<frmOptions *>(QApplication::activeModalWidget())) {
                seenOwner = box->parentWidget();
                box->cmdOK->click();
            }
        });
        frame()->SmartMenu->click("PREFERENCES");
        QCOMPARE(seenOwner, static_cast<QWidget *>(frame()));
        QVERIFY(!DefaultInstance<frmOptions>::exists());
    }

    void datePairSetsTheEngine() {
        QVERIFY(env->startProgram());
        mdiMain *f = frame();
        for (const bool modified : {false, true, false}) {
            f->runCommand(modified ? "DATEMODIFIED" : "DATEADDED");
            QCOMPARE(f->Tessaly->UseFileModifiedDate(), modified);
            QCOMPARE(differences(modified ? "frame" : "mainframe-date-added", env->appFolder()),
                     QString());
        }
    }

    void imageCommandsWorkOnTheSelection_data() {
        const QString none = QStringLiteral("No Item Selected.");
        addRows<ImageCommand>(
            {{"remove file, none selected", {"REMOVEFILE", "", none, false, 1}},
             {"remove directory, none selected", {"REMOVEDIRECTORY", "", none, false, 1}},
             {"rename file, none selected", {"RENAMEFILE", "", none, false, 1}},
             {"remove file", {"REMOVEFILE", "\\song.wav", "", true, 0}},
             {"remove a file the image lacks",
              {"REMOVEFILE", "\\other.wav", "Item could not be removed.", true, 1}},
             {"rename file", {"RENAMEFILE", "\\song.wav", "", false, 1}}});
    }

    void imageCommandsWorkOnTheSelection() {
        QFETCH(ImageCommand, row);
        QVERIFY(env->startProgram());
        mdiMain *f = frame();
        env->writeFile("song.wav", "RIFF");
        QVERIFY(FormRegistry::open("frmData"));
        frmData *data = DefaultInstance<frmData>::peek();
        QVERIFY(data);
        // Opening the window empties the image; the file goes in after it.
        f->Tessaly->AddISOFile("\\song.wav", env->appFolder() + "/song.wav");
        QTreeWidget *view =
            row.key.contains("DIRECTORY") ? data->tvwDirectories : data->lvwImageFiles;
        view->clearSelection();
        view->setCurrentItem(nullptr);
        if (!row.selectKey.isEmpty()) {
            auto *item = new QTreeWidgetItem(view, {row.selectKey.mid(1)});
            item->setData(0, Qt::UserRole, row.selectKey);
            item->setFlags(item->flags() | Qt::ItemIsEditable);
            view->setCurrentItem(item);
        }
        const QStringList before = rowKeys(data->lvwImageFiles);
        f->runCommand(row.key);
        if (!row.prompt.isEmpty()) {
            QCOMPARE(answers->boxes.size(), 1);
            QCOMPARE(answers->boxes[0].prompt, row.prompt);
            QCOMPARE(answers->boxes[0].buttons, int(vbInformation));
            QCOMPARE(answers->boxes[0].title, QStringLiteral("Tessaly - Information"));
            answers->boxes.clear();
        }
        // A removal reloads the list from the image; anything else leaves it as it was.
        const QStringList reloaded = row.filesLeft ? QStringList{"\\song.wav"} : QStringList{};
        QCOMPARE(rowKeys(data->lvwImageFiles), row.updates ? reloaded : before);
        QCOMPARE(f->Tessaly->ISOFileCount(), row.filesLeft);
        // A rename opens the item's editor; the rename itself belongs to the data window.
        QCOMPARE(view->findChild<QLineEdit *>() != nullptr,
                 row.key.startsWith("RENAME") && !row.selectKey.isEmpty());
    }

    void enableFormLocksTheFrame() {
        QVERIFY(env->startProgram());
        mdiMain *f = frame();
        for (const int kind : {0, 1}) {
            gblnDisctypeIsData = Integer(qint16(kind));
            f->txtVolIdentifier->setEnabled(true);
            f->EnableForm(false);
            // The volume identifier follows only for a data compilation.
            QCOMPARE(differences(QStringLiteral("mainframe-locked-%1").arg(kind ? "audio" : "data"),
                                 env->appFolder()),
                     QString());
            QVERIFY(!gblnUnloadOk);
            QCOMPARE(f->cursor().shape(), Qt::WaitCursor);
            f->EnableForm(true);
            QCOMPARE(
                differences(QStringLiteral("mainframe-unlocked-%1").arg(kind ? "audio" : "data"),
                            env->appFolder()),
                QString());
            QVERIFY(gblnUnloadOk);
            QCOMPARE(f->cursor().shape(), Qt::ArrowCursor);
        }
    }
};

int main(int argc, char **argv) {
    FrameFixture::useScreen1024x768();
    QApplication app(argc, argv);
    tst_MainFrame test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_mainframe.moc"
