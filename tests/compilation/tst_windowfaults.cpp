// What a new user runs into in the data window and the frame: cells, clicks, drags and keys,
// the paths in the status bar and the ruler with a DVD.
#include "DataWindowRig.h"
#include "ViewGestures.h"
#include "Waits.h"

#include "app/frmFiles.h"
#include "app/mdiMain.h"
#include "compilation/frmData.h"
#include "engine/writer/CDWriterPro.h"
#include "widgets/FileView.h"
#include "widgets/KeyedPanel.h"
#include "widgets/KeyedStatusBar.h"
#include "widgets/LineControl.h"
#include "widgets/Twips.h"

#include <QtTest>
#include <QtWidgets>

namespace {
QPoint centreOf(QTreeWidgetItem *item) {
    return item->treeWidget()->visualItemRect(item).center();
}

} // namespace

class tst_WindowFaults : public QObject {
    Q_OBJECT
    std::optional<DataWindowRig> rig;

    // Two folders, each with one file, dropped into the root.
    void twoFolders() {
        rig->source("A/a.txt");
        rig->source("B/b.txt");
        const QString base = QFileInfo(rig->source("A/a.txt")).dir().path() + "/..";
        rig->drop(rig->data()->lvwImageFiles,
                  {QDir::cleanPath(base + "/A"), QDir::cleanPath(base + "/B")});
        rig->data()->node("\\")->setExpanded(true);
    }

private slots:
    void init() { QVERIFY(rig.emplace().started()); }
    void cleanup() { rig.reset(); }

    void onlyTheNameCellEdits() {
        rig->drop(rig->data()->lvwImageFiles, {rig->source("song.txt")});
        QTreeWidgetItem *row = rig->data()->lvwImageFiles->topLevelItem(0);
        for (const int column : {1, 2, 0}) {
            rig->data()->lvwImageFiles->editItem(row, column);
            QCOMPARE(rig->data()->lvwImageFiles->viewport()->findChild<QLineEdit *>() != nullptr,
                     column == 0);
        }
    }

    // A right click, and a drag passing over the tree, select the node they are over.
    void rightClickAndDragSelectTheNode() {
        twoFolders();
        rig->frame()->show();
        QTreeWidget *tree = rig->data()->tvwDirectories;
        tree->setCurrentItem(rig->data()->node("\\A"));
        rig->data()->UpdateImage();
        QCOMPARE(rig->rowKeys(), QStringList{"\\A\\a.txt"});
        QTest::mouseClick(tree->viewport(), Qt::RightButton, {},
                          centreOf(rig->data()->node("\\B")));
        Waits::settle();
        QCOMPARE(rig->data()->selectedNode(), rig->data()->node("\\B"));
        QCOMPARE(rig->rowKeys(), QStringList{"\\B\\b.txt"});
        tree->setCurrentItem(rig->data()->node("\\A"));
        QCOMPARE(rig->rowKeys(), QStringList{"\\A\\a.txt"});
        QMimeData mime;
        mime.setUrls({QUrl::fromLocalFile(rig->source("new.txt"))});
        const QPoint overB = centreOf(rig->data()->node("\\B"));
        QDragEnterEvent enter(QPoint(1, 1), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(tree->viewport(), &enter);
        QDragMoveEvent move(overB, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(tree->viewport(), &move);
        // What the user sees is where it will land.
        QCOMPARE(rig->data()->selectedNode(), rig->data()->node("\\B"));
        QCOMPARE(rig->rowKeys(), QStringList{"\\B\\b.txt"});
        QDropEvent drop(overB, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(tree->viewport(), &drop);
        Waits::settle();
        QCOMPARE(rig->rowKeys(), (QStringList{"\\B\\b.txt", "\\B\\new.txt"}));
    }

    void deleteKeyRemovesTheSelection() {
        twoFolders();
        frmData *data = rig->data();
        data->tvwDirectories->setCurrentItem(data->node("\\A"));
        data->UpdateImage();
        data->lvwImageFiles->setCurrentItem(data->lvwImageFiles->topLevelItem(0));
        QTest::keyClick(data->lvwImageFiles, Qt::Key_Delete);
        QVERIFY(rig->rowKeys().isEmpty());
        QTest::keyClick(data->tvwDirectories, Qt::Key_Delete);
        Waits::settle();
        QCOMPARE(rig->nodeKeys(), (QStringList{"\\", "\\B"}));
        QCOMPARE(rig->frame()->Tessaly->ISOFileCount(), 1);
    }

    void dropSurvivesItsSourceClosing() {
        for (int i = 0; i < 20; ++i)
            rig->source(QString("tree/d%1/f.txt").arg(i));
        const QString tree = QFileInfo(rig->source("tree/top.txt")).path();
        mdiMain *f = rig->frame();
        QMimeData mime;
        mime.setUrls({QUrl::fromLocalFile(tree)});
        QWidget *list = rig->data()->lvwImageFiles->viewport();
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(list, &enter);
        QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(list, &drop);
        QVERIFY(drop.isAccepted());
        // The drop hands back to its source at once; the add comes after the drag has ended.
        QCOMPARE(f->Tessaly->ISOFileCount(), 0);
        // The browser the drag came from goes while the tree is being added.
        QStringList panels;
        QObject::connect(f->Tessaly, &CDWriterPro::ISOItemAdded, f, [&] {
            panels << rig->panel("DATA");
            for (QMdiSubWindow *child : f->openForms())
                if (qobject_cast<frmFiles *>(child->widget()))
                    child->close();
        });
        Waits::settle();
        QCOMPARE(f->Tessaly->ISOFileCount(), 21);
        QVERIFY(!f->openForms().isEmpty());
        // The folder being added is named as this machine writes it.
        QVERIFY2(panels.contains(" Adding...." + tree), qPrintable(panels.join('|')));
    }

    // The splitter between tree and list follows a drag, and leaves both panes 1500 wide at least.
    void splitterFollowsADrag() {
        frmData *d = rig->data();
        const int inner = Twips::fromPixels(d->width());
        QVERIFY(inner > 4000);
        for (const int to : {inner / 2, 600, inner - 100}) {
            d->imgSplitter_MouseDown(0, 0);
            d->imgSplitter_MouseMove(to - Twips::fromPixels(d->imgSplitter->x()), 0);
            d->imgSplitter_MouseUp(0, 0);
            QCOMPARE(d->tvwDirectories->width(), Twips::toPixels(qBound(1500, to, inner - 1500)));
        }
    }
};

QTEST_MAIN(tst_WindowFaults)
#include "tst_windowfaults.moc"
