// The file browser: where it opens, its captions, its splitter, the Edit commands and drags;
// and the box that starts a compilation.
#include "Fixtures.h"
#include "FrameFixture.h"
#include "Rows.h"
#include "ScriptedAnswers.h"
#include "TestEnvironment.h"
#include "WidgetSnapshot.h"
#include "app/FormRegistry.h"
#include "app/frmChooseDiscType.h"
#include "app/frmFiles.h"
#include "app/mdiMain.h"
#include "app/modDeclarations.h"
#include "app/modIniFunc.h"
#include "widgets/FileView.h"
#include "widgets/FolderView.h"
#include "widgets/Twips.h"

#include <QtTest>
#include <QtWidgets>

using namespace FrameFixture;

namespace {

frmFiles *browser() {
    return qobject_cast<frmFiles *>(childWindows().first()->widget());
}

} // namespace

class tst_FileBrowser : public QObject {
    Q_OBJECT
private slots:
    void opensWhereTheOptionsSay_data() {
        columns<QString, bool>("useLast", "opensAtStart"); // useLast: empty: the key is absent
        QTest::newRow("last folder by default") << QString() << false;
        QTest::newRow("last folder") << "True" << false;
        QTest::newRow("start folder") << "False" << true;
    }

    void opensWhereTheOptionsSay() {
        auto [useLast, opensAtStart] = fetch<QString, bool>("useLast", "opensAtStart");
        TestEnvironment env;
        QTemporaryDir start, last;
        QByteArray ini = "[General]\r\nFileBrowser Left=0\r\n[Directories]\r\n";
        if (!useLast.isEmpty())
            ini += "Last Used Directory=" + useLast.toLatin1() + "\r\n";
        ini += "FileBrowser Start Dir=" + start.path().toLocal8Bit() + "\r\n";
        ini += "FileBrowser Last Dir=" + last.path().toLocal8Bit() + "\r\n";
        env.writeFile("Dat/tessaly.ini", ini);
        QVERIFY(env.startProgram());
        const QString expected = opensAtStart ? start.path() : last.path();
        QCOMPARE(browser()->FileViewAdd->Path(), expected);
        QCOMPARE(childWindows().first()->x(), 0);
        // The folder is recorded at each close, whichever way the browser opened.
        browser()->FileViewAdd->setPath(QDir::tempPath());
        childWindows().first()->close();
        settle();
        QCOMPARE(sGetINI(env.iniFile(), "Directories", "FileBrowser Last Dir", "none"),
                 QDir::tempPath());
    }

    // A missing last folder is taken as it is; then the caption follows folder and selection, and
    // the browser keeps a minimum width.
    void captionFollowsFolderAndSelection() {
        TestEnvironment env;
        QTemporaryDir dir;
        Fixtures::writeFile(dir.filePath("a.txt"), "x");
        const QString gone = env.appFolder() + "/no such folder";
        env.writeFile("Dat/tessaly.ini",
                      "[Directories]\r\nFileBrowser Last Dir=" + gone.toLocal8Bit() + "\r\n");
        QVERIFY(env.startProgram());
        frmFiles *b = browser();
        QCOMPARE(b->FileViewAdd->Path(), gone);
        QCOMPARE(b->FileViewAdd->ItemCount(), 0);
        QCOMPARE(b->windowTitle(), "File Browser [1]  " + gone);
        QCOMPARE(b->mstrCaptionLoad, QStringLiteral("File Browser [1]"));
        // Select all over an empty list selects nothing and fails nothing.
        frame()->runCommand("SELECTALL");
        QVERIFY(b->FileViewAdd->selectedPaths().isEmpty());
        b->FolderViewAdd->setSelectedPath(QDir::tempPath());
        QCOMPARE(b->windowTitle(), "File Browser [1]  " + QDir::tempPath());
        QCOMPARE(b->FileViewAdd->Path(), QDir::tempPath());
        b->FileViewAdd->setPath(dir.path());
        QTRY_COMPARE(b->FileViewAdd->ItemCount(), 1);
        QCOMPARE(b->windowTitle(), "File Browser [1]  " + dir.path());
        b->FileViewAdd->setItemSelected(0, true);
        QCOMPARE(b->windowTitle(), "File Browser [1]  " + dir.filePath("a.txt"));
        // The subwindow shows the same caption.
        QMdiSubWindow *w = childWindows().first();
        QCOMPARE(w->windowTitle(), b->windowTitle());
        w->resize(Twips::toPixels(2000), w->height());
        QCOMPARE(w->width(), Twips::toPixels(3000));
        w->resize(Twips::toPixels(4000), w->height());
        QCOMPARE(w->width(), Twips::toPixels(4000));
    }

    void moveUpNewFolderAndBrowse() {
        TestEnvironment env;
        ScriptedAnswers answers;
        QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkpath("inner"));
        QVERIFY(env.startProgram());
        frmFiles *b = browser();
        b->FileViewAdd->setPath(dir.filePath("inner"));
        frame()->runCommand("MOVEUP");
        QCOMPARE(b->FileViewAdd->Path(), dir.path());
        frame()->runCommand("CREATENEWFOLDER");
        frame()->runCommand("CREATENEWFOLDER");
        QVERIFY(QFileInfo(dir.filePath("New Folder")).isDir());
        QVERIFY(QFileInfo(dir.filePath("New Folder (2)")).isDir());
        answers.answerFile(dir.filePath("inner"));
        frame()->runCommand("BROWSEFOLDER");
        QCOMPARE(answers.fileBoxes.size(), 1);
        QCOMPARE(answers.fileBoxes[0].mode, FileBoxService::Mode::Folder);
        QCOMPARE(answers.fileBoxes[0].initialDirectory, dir.path());
        QCOMPARE(b->FileViewAdd->Path(), dir.filePath("inner"));
        // A cancelled box leaves the browser where it was.
        answers.answerFile(std::nullopt);
        frame()->runCommand("BROWSEFOLDER");
        QCOMPARE(b->FileViewAdd->Path(), dir.filePath("inner"));
        // A key in the folder tree chooses a folder as a click does: Left from a leaf goes up.
        QTest::keyClick(b->FolderViewAdd, Qt::Key_Left);
        QTRY_COMPARE(b->FileViewAdd->Path(), dir.path());
    }

    void selectAllNoneAndDrag() {
        TestEnvironment env;
        QTemporaryDir dir;
        for (const char *name : {"a song.wav", "b.txt", "c.txt"})
            Fixtures::writeFile(dir.filePath(name), "x");
        QVERIFY(QDir(dir.path()).mkdir("sub"));
        QVERIFY(env.startProgram());
        FileView *list = browser()->FileViewAdd;
        list->setPath(dir.path());
        QTRY_COMPARE(list->ItemCount(), 4);
        frame()->runCommand("SELECTALL");
        QCOMPARE(list->selectedPaths().size(), 4);
        frame()->runCommand("SELECTNONE");
        QVERIFY(list->selectedPaths().isEmpty());
        // A drag carries the full paths of what is selected.
        const QStringList chosen{dir.filePath("a song.wav"), dir.filePath("c.txt")};
        for (int i = 0; i < list->ItemCount(); ++i)
            list->setItemSelected(i, chosen.contains(list->ItemPath(i)));
        std::unique_ptr<QMimeData> data(list->dragData());
        QVERIFY(data->hasFormat("text/uri-list"));
        QStringList paths;
        for (const QUrl &url : data->urls())
            paths.append(url.toLocalFile());
        paths.sort();
        QCOMPARE(paths, chosen);
        QVERIFY(list->dragEnabled());
    }

    void chooserOpensTheCompilation_data() {
        // choice: data, audio, or audio chosen and cancelled
        columns<int, QStringList>("choice", "reached");
        QTest::newRow("data") << 0 << QStringList({"frmData", "ResetImage"});
        QTest::newRow("audio") << 1 << QStringList({"frmAudio"});
        QTest::newRow("cancelled") << 2 << QStringList();
    }

    // The box needs a choice before OK; data clears the labels, audio keeps them.
    void chooserOpensTheCompilation() {
        QFETCH(int, choice);
        TestEnvironment env;
        QVERIFY(env.startProgram());
        QStringList got;
        const char *names[] = {"frmData", "frmAudio", "ResetImage", "frmSessionCheck"};
        for (const char *name : names)
            FormRegistry::add(name, [&got, name](QWidget *) { got.append(name); });
        gstrVolumeIdentifier = "OLD";
        gstrVolumeBiblioFileIdentifier = "OLD";
        frame()->runCommand("NEW");
        auto *box = frame()->findChild<frmChooseDiscType *>();
        QVERIFY(box && box->isVisible() && box->isModal()); // as it opens: frmChooseDiscType
        (choice == 0 ? box->optData : box->optAudio)->click();
        QCOMPARE(WidgetSnapshot::differences(
                     box, QStringLiteral("filebrowser-chose-%1").arg(choice ? "audio" : "data")),
                 QString());
        (choice == 2 ? box->cmdCancel : box->cmdOK)->click();
        QCOMPARE(box->result(), int(choice == 2 ? QDialog::Rejected : QDialog::Accepted));
        settle();
        QVERIFY(!frame()->findChild<frmChooseDiscType *>());
        for (const char *name : names)
            FormRegistry::remove(name);
        QTEST(got, "reached");
        QCOMPARE(gstrVolumeIdentifier.isEmpty(), choice == 0);
        QCOMPARE(gstrVolumeBiblioFileIdentifier.isEmpty(), choice == 0);
    }
};

QTEST_MAIN(tst_FileBrowser)
#include "tst_filebrowser.moc"
