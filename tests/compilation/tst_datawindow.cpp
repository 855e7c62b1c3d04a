// The data compilation window over the engine's image: drops, the tree and list mirroring the
// image, renames with their messages, removals, the frame's states and the size warning.
#include "DataWindowRig.h"
#include "FrameFixture.h"
#include "Rows.h"
#include "SnapshotScrubs.h"
#include "WidgetSnapshot.h"

#include "app/FormRegistry.h"
#include "app/frmFiles.h"
#include "app/mdiMain.h"
#include "app/modDeclarations.h"
#include "compilation/frmAudio.h"
#include "compilation/frmData.h"
#include "engine/writer/CDWriterPro.h"
#include "widgets/DefaultInstance.h"
#include "widgets/FileView.h"
#include "widgets/KeyedItem.h"
#include "widgets/KeyedMenu.h"
#include "widgets/Twips.h"

#include <QtTest>
#include <QtWidgets>

namespace {
const QString info = QStringLiteral("Tessaly - Information|");
// The item renamed ("\\", "\\docs" or the file in it), the file system, the new name and the
// message (empty: renamed).
struct Rename {
    QString target;
    int fileSystem;
    QString newName, message;
};
} // namespace

class tst_DataWindow : public QObject {
    Q_OBJECT
    std::optional<DataWindowRig> rig;

    QString snapshot(const QString &name, const QWidget *window = nullptr) {
        return WidgetSnapshot::differences(window ? window : rig->data(), "datawindow-" + name,
                                           SnapshotScrubs::fileDates());
    }

private slots:
    void init() { QVERIFY(rig.emplace().started()); }
    void cleanup() { rig.reset(); }

    void dropsGoBelowRootThenToTheSelectedDirectory() {
        const QString photos = rig->source("photos/a.jpg", QByteArray(5000, 'a'));
        rig->source("photos/trip/b.jpg");
        const QString notes = rig->source("notes.txt");
        QVERIFY(rig->data()->selectedNode() == nullptr);
        rig->drop(rig->data()->tvwDirectories, {QFileInfo(photos).path(), notes});
        // Nothing selected: the list shows the root's files, and the root is expanded.
        QCOMPARE(snapshot("dropped-at-root"), QString());
        QVERIFY(rig->data()->node("\\")->isExpanded());
        QCOMPARE(rig->panel("FILES"), QStringLiteral(" Files: 3"));
        // One recalculation for the drop; a blank CD-R has room, so nothing was asked.
        QCOMPARE(rig->takeBoxes(), QStringList());
        rig->data()->tvwDirectories->setCurrentItem(rig->data()->node("\\photos\\trip"));
        QCOMPARE(rig->rowKeys(), QStringList{"\\photos\\trip\\b.jpg"});
        // The item under the pointer does not matter: the selected directory takes the drop.
        const QString late = rig->source("late.txt", QByteArray(3 * 1024, 'l'));
        rig->drop(rig->data()->lvwImageFiles, {late});
        QCOMPARE(snapshot("dropped-in-trip"), QString());
    }

    void otherDropsAreIgnored() {
        QMimeData text;
        text.setText(QStringLiteral("/etc/hostname"));
        rig->data()->OLEDragDrop(&text);
        QMimeData web;
        web.setUrls({QUrl(QStringLiteral("https://example.org/file.txt"))});
        rig->data()->OLEDragDrop(&web);
        QCOMPARE(rig->nodeKeys(), QStringList{"\\"});
        QCOMPARE(rig->frame()->Tessaly->ISOFileCount(), 0);
        QCOMPARE(rig->takeBoxes(), QStringList());
    }

    // What the file browser puts on a drag is taken as a file manager's list.
    void dropFromFileBrowser() {
        const QString one = rig->source("browse/one.txt");
        rig->source("browse/two.txt");
        rig->source("browse/sub/three.txt");
        frmFiles *browser = rig->frame()->frmF(0);
        browser->FileViewAdd->setPath(QFileInfo(one).path());
        QTRY_COMPARE(browser->FileViewAdd->ItemCount(), 3);
        for (int i = 0; i < 3; ++i)
            browser->FileViewAdd->setItemSelected(i, true);
        std::unique_ptr<QMimeData> dragged(browser->FileViewAdd->dragData());
        QVERIFY(dragged && dragged->hasFormat("text/uri-list"));
        QStringList paths;
        for (const QUrl &url : dragged->urls())
            paths.append(url.toLocalFile());
        rig->drop(rig->data()->lvwImageFiles, paths);
        QCOMPARE(snapshot("dropped-from-browser"), QString());
        QCOMPARE(rig->frame()->Tessaly->ISOFileCount(), 3);
    }

    // Events run while a drop is added; a close or a second drop meanwhile must not break it.
    void windowHoldsDuringDrop() {
        QString first;
        for (int i = 0; i < 300; ++i)
            first = rig->source(QStringLiteral("many/f%1.txt").arg(i));
        const QString other = rig->source("other.txt");
        int tries = 0;
        bool closed = false;
        QTimer poke;
        poke.setInterval(0);
        connect(&poke, &QTimer::timeout, [&] {
            if (!rig->data()->isDropping() || tries++ > 0)
                return;
            rig->drop(rig->data()->lvwImageFiles, {other});
            closed = rig->data()->parentWidget()->close();
        });
        poke.start();
        rig->drop(rig->data()->tvwDirectories, {QFileInfo(first).path()});
        poke.stop();
        QCOMPARE(tries > 0, true);
        QVERIFY(!closed);
        QVERIFY(rig->data());
        QCOMPARE(rig->frame()->Tessaly->ISOFileCount(), 300);
        QVERIFY(rig->data()->lvwImageFiles->isEnabled());
        QCOMPARE(rig->panel("FILES"), QStringLiteral(" Files: 300"));
    }

    void removingDirectoryFallsBackToRoot() {
        const QString a = rig->source("music/a.ogg");
        const QString top = rig->source("top.txt");
        rig->drop(rig->data()->tvwDirectories, {QFileInfo(a).path(), top});
        rig->data()->tvwDirectories->setCurrentItem(rig->data()->node("\\music"));
        QCOMPARE(rig->rowKeys(), QStringList{"\\music\\a.ogg"});
        rig->frame()->ToolMenuRemoveDirectory();
        QVERIFY(rig->data()->selectedNode() == nullptr);
        QCOMPARE(snapshot("directory-removed"), QString());
        QCOMPARE(rig->panel("FILES"), QStringLiteral(" Files: 1"));
    }

    void rename_data() {
        const QString file = QStringLiteral("\\docs\\letter.txt");
        // The engine's level is 3: names are held to 31 characters with Joliet chosen. The rules
        // themselves are tst_isonamerules'; here, that the window asks them and shows the answer.
        addRows<Rename>(
            {{"root", {"\\", 1, "OTHER", "Root directory can not be renamed."}},
             {"folder, blank, ISO 9660 only", {"\\docs", 0, "", "Item name cannot be blank."}},
             {"file, 31 characters", {file, 1, QString(31, u'n'), ""}},
             {"file, 32 characters",
              {file, 1, QString(32, u'n'),
               "Item Name violates ISO9660 Level 2 naming rules (31 Char Max)."}},
             {"folder, README.T", {"\\docs", 1, "README.T", ""}},
             {"file, long without Joliet", {file, 0, QString(100, u'z'), ""}}});
    }

    void rename() {
        QFETCH(Rename, row);
        rig->frame()->Tessaly->setISOFileSystem(row.fileSystem);
        rig->drop(rig->data()->tvwDirectories, {QFileInfo(rig->source("docs/letter.txt")).path()});
        rig->data()->tvwDirectories->setCurrentItem(rig->data()->node("\\docs"));
        const bool directory = !row.target.endsWith(".txt");
        QTreeWidgetItem *item =
            directory ? rig->data()->node(row.target) : rig->data()->lvwImageFiles->topLevelItem(0);
        const QString oldText = item->text(0);
        const QString volume = rig->frame()->Tessaly->VolumeIdentifier();
        rig->takeBoxes();
        rig->rename(item, row.newName);
        const bool renamed = row.message.isEmpty();
        QCOMPARE(rig->takeBoxes(), renamed ? QStringList() : QStringList{info + row.message});
        if (directory)
            QCOMPARE(rig->nodeKeys(), (QStringList{"\\", renamed ? "\\" + row.newName : "\\docs"}));
        else
            QCOMPARE(rig->rowKeys(), QStringList{renamed ? "\\docs\\" + row.newName : row.target});
        if (!renamed)
            QCOMPARE(item->text(0), oldText);
        QCOMPARE(rig->frame()->Tessaly->VolumeIdentifier(), volume);
    }

    void renamedDirectoryKeepsItsSubtree() {
        const QString deep = rig->source("a/b/c/deep.txt");
        rig->drop(rig->data()->tvwDirectories,
                  {QDir(QFileInfo(deep).path() + "/../..").absolutePath()});
        rig->rename(rig->data()->node("\\a"), QStringLiteral("z"));
        QCOMPARE(rig->nodeKeys(), (QStringList{"\\", "\\z", "\\z\\b", "\\z\\b\\c"}));
        // The keys below still reach the engine's items.
        rig->data()->tvwDirectories->setCurrentItem(rig->data()->node("\\z\\b\\c"));
        QCOMPARE(rig->rowKeys(), QStringList{"\\z\\b\\c\\deep.txt"});
        QVERIFY(rig->frame()->Tessaly->RemoveISOItem("\\z\\b"));
        QCOMPARE(rig->nodeKeys(), (QStringList{"\\", "\\z"}));
    }

    void overrunWarnsOncePerRecalculation() {
        // A blank CD-R 80 has 703 MB free; with 5 in reserve 698 MB are too many.
        const QString warning =
            QStringLiteral("Tessaly - Warning|You must remove some files from the "
                           "image.\nData image size is bigger than free space on "
                           "media!");
        rig->drop(rig->data()->tvwDirectories, {rig->sparseSource("big/film.raw", 600)});
        QCOMPARE(rig->takeBoxes(), QStringList());
        rig->drop(rig->data()->tvwDirectories, {rig->sparseSource("more.raw", 98)});
        QCOMPARE(rig->takeBoxes(), QStringList{warning});
        // Each change, of however many items, recalculates once and warns once more.
        rig->drop(rig->data()->tvwDirectories,
                  {rig->source("small.txt"), rig->source("tiny/a.txt")});
        QCOMPARE(rig->takeBoxes(), QStringList{warning});
        // The image's size in megabytes of 1024 * 1024 with two decimals; the bar 10 twips each.
        const auto shownAt = [&](int barTwips) {
            const double mb =
                rig->frame()->Tessaly->BlocksToBytes(rig->frame()->Tessaly->ISOImageBlocks(), 1) /
                1048576;
            QCOMPARE(rig->panel("DATA"), QString(" Data Image Size: %1 MB  ").arg(mb, 0, 'f', 2));
            QCOMPARE(rig->frame()->prbSize->width(), Twips::toPixels(barTwips));
        };
        shownAt(6980);
        QCOMPARE(rig->frame()->prbSize->value(), rig->frame()->prbSize->maximum());
        // Removing enough ends it.
        rig->data()->tvwDirectories->setCurrentItem(nullptr);
        QVERIFY(rig->frame()->Tessaly->RemoveISOItem("\\film.raw"));
        rig->data()->UpdateImage();
        QCOMPARE(rig->takeBoxes(), QStringList());
        // Without a disc nothing is compared; the bar stops at ten thousand megabytes.
        rig->frame()->Tessaly->MoveTray(false);
        QTRY_COMPARE(rig->frame()->Tessaly->MediaType(), qint32(CDWriterPro::MediaNone));
        rig->drop(rig->data()->tvwDirectories, {rig->sparseSource("huge.raw", 10300)});
        QCOMPARE(rig->takeBoxes(), QStringList());
        shownAt(100000);
    }

    // A disc with five megabytes free or less is too small even for an empty image.
    void nearlyFullDiscWarnsAtOnce() {
        const qint64 written = 319100;
        rig.reset(); // for another disc than the blank CD-R
        QVERIFY(
            rig.emplace("[Tessaly Disc]\nVersion=1\nMedium=CD-R 74\nData=blank.iso\nFinalized=0\n"
                        "Sessions=1\n\n[Session1]\nStart=0\nBlocks=" +
                            QByteArray::number(written) + "\nMode=1\nClosed=1\n",
                        written)
                .started());
        QVERIFY(rig->frame()->Tessaly->FreeBlocks() > 0);
        QVERIFY(rig->frame()->Tessaly->FreeBlocks() * 2048.0 <= 5.0 * 1024 * 1024);
        rig->data()->UpdateImage();
        const QStringList boxes = rig->takeBoxes();
        QCOMPARE(boxes.size(), 1);
        QVERIFY(boxes.first().startsWith("Tessaly - Warning|You must remove some files"));
    }

    void volumeIdentifierFollowsBox() {
        // The clock's name the image starts with is pinned by the frmData snapshot.
        QCOMPARE(gstrVolumeIdentifier, rig->frame()->txtVolIdentifier->text());
        QCOMPARE(gstrVolumeApplicationIdentifier, QStringLiteral("TESSALY"));
        // The title and the tree's root follow the box; for another kind of compilation the box
        // changes nothing.
        for (const int kind : {0, 1}) {
            gblnDisctypeIsData = kind;
            rig->frame()->txtVolIdentifier->setText(kind ? "AUDIO" : "HOLIDAY");
            gblnDisctypeIsData = 0;
            QCOMPARE(gstrVolumeIdentifier, QStringLiteral("HOLIDAY"));
            QCOMPARE(snapshot("holiday"), QString());
        }
    }

    void unloadRestoresFrame() {
        KeyedMenu *menu = rig->frame()->SmartMenu;
        // With the window open the frame is tst_windows' frame-data.
        QCOMPARE(gblnDisctypeIsData, Integer(0));
        rig->drop(rig->data()->tvwDirectories, {rig->source("f.txt")});
        // A write refuses the close, but the frame falls back all the same.
        gblnUnloadOk = false;
        QVERIFY(!rig->data()->close());
        QCOMPARE(snapshot("close-refused"), QString());
        QVERIFY(menu->Item("NEW")->Enabled());
        gblnUnloadOk = true;
        QVERIFY(rig->data()->parentWidget()->close());
        QTest::qWait(0);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(gblnDisctypeIsData, Integer(99));
        QCOMPARE(FrameFixture::differences("datawindow-closed", rig->appFolder()), QString());
        QVERIFY(rig->frame()->mdiArea()->subWindowList().size() == 1); // the file browser
    }

    void viewAndSortEntries() {
        QFile older(rig->source("files/B.txt"));
        QVERIFY(older.open(QIODevice::ReadWrite));
        QVERIFY(older.setFileTime(QDateTime::currentDateTime().addDays(-1),
                                  QFileDevice::FileModificationTime));
        const QString a = rig->source("files/a.txt");
        rig->drop(rig->data()->tvwDirectories, {QFileInfo(a).path()});
        rig->data()->tvwDirectories->setCurrentItem(rig->data()->node("\\files"));
        frmData *data = rig->data();
        // Names sort whatever their case; each entry leaves the list and the popup's ticks.
        for (const QString entry :
             {"", "mnuByDate", "mnuDoNotSort", "mnuByName", "mnuList", "mnuDetails"}) {
            if (!entry.isEmpty())
                data->popupEntry(entry)->trigger();
            const QString name = "files-" + (entry.isEmpty() ? "dropped" : entry);
            QCOMPARE(snapshot(name), QString());
            QCOMPARE(snapshot(name + "-popup", rig->frame()->mnuPopUpLV), QString());
        }
        data->popupEntry("mnuClearAllItemsLV")->trigger();
        QCOMPARE(rig->nodeKeys(), QStringList{"\\"});
        QCOMPARE(rig->rowKeys(), QStringList());
    }

    void rightButtonShowsItsPopup() {
        QMenu *tv = rig->frame()->mnuPopUpTV;
        QMenu *lv = rig->frame()->mnuPopUpLV;
        QTest::mouseClick(rig->data()->lvwImageFiles->viewport(), Qt::RightButton);
        QTRY_VERIFY(lv->isVisible());
        QVERIFY(!tv->isVisible());
        lv->hide();
        QTest::mouseClick(rig->data()->tvwDirectories->viewport(), Qt::RightButton);
        QTRY_VERIFY(tv->isVisible());
        QVERIFY(!lv->isVisible());
        tv->hide();
        // The entries belong to the window: closed, it leaves the frame's menus empty.
        QVERIFY(rig->data()->popupEntry("mnuRemoveDirectory"));
        rig->data()->parentWidget()->close();
        QVERIFY(tv->actions().isEmpty());
        QVERIFY(lv->actions().isEmpty());
        // The audio compilation's list has a popup of its own.
        QVERIFY(FormRegistry::open("frmAudio"));
        QTest::mouseClick(DefaultInstance<frmAudio>::peek()->lvwAudioTracks->viewport(),
                          Qt::RightButton);
        QTRY_VERIFY(rig->frame()->mnuPopUpAudio->isVisible());
        rig->frame()->mnuPopUpAudio->hide();
    }
};

QTEST_MAIN(tst_DataWindow)
#include "tst_datawindow.moc"
