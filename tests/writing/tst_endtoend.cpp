// A data disc from the window to the disc, as a person makes it: NEW, a data disc, a folder tree
// and two files dropped in, a file and a folder renamed, the labels set, the write; then the
// ejected disc is read by xorriso and isoinfo.
#include "Fixtures.h"
#include "ReadBack.h"
#include "SnapshotScrubs.h"
#include "ViewGestures.h"
#include "Waits.h"
#include "WidgetSnapshot.h"
#include "WriteRig.h"

#include "app/frmChooseDiscType.h"
#include "app/mdiMain.h"
#include "app/modDeclarations.h"
#include "compilation/frmData.h"
#include "compilation/frmLabels.h"
#include "engine/writer/CDWriterPro.h"
#include "widgets/DefaultInstance.h"
#include "writing/frmBurn.h"

#include <QtTest>
#include <QtWidgets>

using namespace Fixtures;

namespace {
using ViewGestures::drop;
using ViewGestures::rename;
using Waits::settle;
} // namespace

class tst_EndToEnd : public QObject {
    Q_OBJECT
private slots:
    void dataDiscFromTheWindow() {
        WriteRig rig({}, 99);
        QVERIFY(rig.started());
        mdiMain *f = rig.frame();
        // The sources, each with its place on the disc after the renames: a folder tree and two
        // loose files.
        QTemporaryDir src;
        const QList<std::pair<QString, QString>> places = {
            {"Project/docs/readme.txt", "/Project/Manuals/readme.txt"},
            {"Project/src/main.c", "/Project/src/main.c"},
            {"Project/src/util/helpers.h", "/Project/src/util/helpers.h"},
            {"notes.txt", "/minutes.txt"},
            {"photo.jpg", "/photo.jpg"},
        };
        QStringList onDisc;
        for (const auto &[source, place] : places) {
            writeFile(src.filePath(source), pseudoRandom(90 * 1024 + place.size(), onDisc.size()));
            onDisc << place;
        }
        // NEW, a data disc.
        f->runCommand("NEW");
        settle();
        auto *chooser = f->findChild<frmChooseDiscType *>();
        chooser->optData->click();
        chooser->cmdOK->click();
        settle();
        frmData *data = DefaultInstance<frmData>::peek();
        QCOMPARE(int(gblnDisctypeIsData), 0);
        drop(data->tvwDirectories,
             {src.filePath("Project"), src.filePath("photo.jpg"), src.filePath("notes.txt")});
        QCOMPARE(f->Tessaly->ISOFileCount(), 5);
        // A folder and a file renamed through their labels.
        rename(data->node("\\Project\\docs"), "Manuals");
        data->tvwDirectories->setCurrentItem(data->node("\\"));
        settle();
        rename(data->lvwImageFiles->findItems("notes.txt", Qt::MatchExactly).value(0),
               "minutes.txt");
        QCOMPARE(WidgetSnapshot::differences(data, "endtoend-renamed", SnapshotScrubs::fileDates()),
                 QString());
        // The labels, through their dialog.
        QTimer::singleShot(0, [] {
            auto *labels = qobject_cast<frmLabels *>(QApplication::activeModalWidget());
            if (!labels)
                return;
            labels->txtVolumeLabel->setText("HOLIDAY_2026");
            labels->txtVolumeApplication->setText("TESSALY");
            labels->txtVolumePublisher->setText("ACME_PUBLISHING");
            labels->txtDataPreparer->setText("QA_DESK");
            labels->cmdOK->click();
        });
        f->runCommand("LABEL");
        QCOMPARE(gstrVolumeIdentifier, QStringLiteral("HOLIDAY_2026"));
        // The test write and the disc put back are the write dialog's own tests.
        frmBurn *burn = rig.openDialog();
        burn->optWrite->click();
        // The real write; the compilation can't be touched meanwhile.
        QList<bool> listEnabled;
        QObject::connect(f->Tessaly, &CDWriterPro::TrackWriteStatus, data,
                         [&] { listEnabled.append(data->lvwImageFiles->isEnabled()); });
        QVERIFY(rig.writeAndWait(burn));
        QVERIFY(!listEnabled.isEmpty() && !listEnabled.contains(true));
        QVERIFY(data->lvwImageFiles->isEnabled());
        QCOMPARE(rig.ending, QStringLiteral("WriteComplete"));
        const QString image = rig.ejectedImage();
        // Read by tools nobody here wrote: exactly the compiled tree with the new names.
        QCOMPARE(ReadBack::xorrisoFiles(image, -1, "f"), onDisc);
        QCOMPARE(ReadBack::xorrisoFiles(image, -1, "d"),
                 (QStringList{"/", "/Project", "/Project/Manuals", "/Project/src",
                              "/Project/src/util"}));
        QTemporaryDir back;
        for (const auto &[source, place] : places)
            QCOMPARE(ReadBack::xorrisoExtract(image, place, back),
                     ReadBack::sha256(src.filePath(source)));
        const QString info = QString::fromUtf8(ReadBack::run("isoinfo", {"-d", "-i", image}));
        for (const char *line :
             {"Volume id: HOLIDAY_2026", "Application id: TESSALY", "Publisher id: ACME_PUBLISHING",
              "Data preparer id: QA_DESK", "Joliet"})
            QVERIFY2(info.contains(line), qPrintable(info));
        // The Joliet names a Windows reader sees carry the renames too.
        const QString joliet =
            QString::fromUtf8(ReadBack::run("isoinfo", {"-J", "-f", "-i", image}));
        QVERIFY2(joliet.contains("/minutes.txt") && joliet.contains("/Project/Manuals/readme.txt"),
                 qPrintable(joliet));
        // The frame is at rest and the compilation still open for another disc.
        QCOMPARE(DefaultInstance<frmData>::peek(), data);
        QVERIFY(gblnUnloadOk);
    }
};

QTEST_MAIN(tst_EndToEnd)
#include "tst_endtoend.moc"
