#include "DiscReadBack.h"
#include "Fixtures.h"
#include "OutsideTools.h"
#include "ReadBack.h"
#include "Rows.h"
#include "Waits.h"
#include "WidgetSnapshot.h"
#include "WriteRig.h"
#include "app/FormRegistry.h"
#include "app/mdiMain.h"
#include "app/modDeclarations.h"
#include "base/IniFile.h"
#include "compilation/frmData.h"
#include "disctools/frmBurnIso.h"
#include "disctools/frmSaveAsISO.h"
#include "disctools/frmSessionCheck.h"
#include "engine/writer/CDWriterPro.h"
#include "engine/writer/recorders/image/ImageRecorder.h"
#include "widgets/DefaultInstance.h"
#include "widgets/KeyedStatusBar.h"
#include "writing/frmBurn.h"

#include <QtTest>
#include <QtWidgets>

using DiscReadBack::Tree;
using Fixtures::pseudoRandom;

namespace {
// A data compilation open in the frame, holding `tree` from files made under `dir`.
void compile(mdiMain *f, const Tree &tree, const QTemporaryDir &dir) {
    FormRegistry::open(QStringLiteral("frmData"));
    FormRegistry::open(QStringLiteral("ResetImage"));
    for (auto it = tree.cbegin(); it != tree.cend(); ++it) {
        if (it.value() == "<dir>")
            continue;
        Fixtures::writeFile(dir.filePath("src/" + it.key()), it.value());
        f->Tessaly->AddISOFile('\\' + QString(it.key()).replace(u'/', u'\\'),
                               dir.filePath("src/" + it.key()));
    }
}

bool writeForReal(WriteRig &rig) {
    frmBurn *burn = rig.openDialog();
    if (!burn)
        return false;
    burn->optWrite->setChecked(true);
    return rig.writeAndWait(burn) && rig.ending == QLatin1String("WriteComplete");
}

// Presses Continue on the options box once it is up; counts the boxes seen.
void continueOptions(int &seen, bool joliet = true) {
    QTimer::singleShot(0, [&seen, joliet] {
        if (auto *save = qobject_cast<frmSaveAsISO *>(QApplication::activeModalWidget())) {
            save->chkUseJoliet->setChecked(joliet);
            save->cmdContinue->click();
        } else if (auto *burn = qobject_cast<frmBurnIso *>(QApplication::activeModalWidget())) {
            burn->chkFinalizeDisc->setChecked(true);
            burn->cmdContinue->click();
        } else
            return;
        ++seen;
    });
}
} // namespace

// The session import and ISO files, on the Image Recorder, read back by xorriso and isoinfo.
class tst_IsoFiles : public QObject {
    Q_OBJECT
private slots:

    void importThenSecondSession() {
        WriteRig rig;
        QVERIFY(rig.started());
        mdiMain *f = rig.frame();
        CDWriterPro *cd = f->Tessaly;
        QTemporaryDir dir;
        const Tree first = {{"keep.bin", pseudoRandom(300000, 1)},
                            {"a.txt", pseudoRandom(900, 2)},
                            {"dir", "<dir>"},
                            {"dir/b.txt", pseudoRandom(4000, 3)},
                            {"gone.txt", pseudoRandom(10, 4)}};
        compile(f, first, dir);
        f->txtVolIdentifier->setText("FIRST");
        gstrVolumePublisher = "PUB";
        QVERIFY(writeForReal(rig));
        DefaultInstance<frmData>::unload();
        Waits::settle();
        // The same disc back: its sessions come up in the box.
        f->runCommand("CLOSETRAY");
        QVERIFY(Waits::until([] { return DefaultInstance<frmSessionCheck>::exists(); }, 20000));
        frmSessionCheck *box = DefaultInstance<frmSessionCheck>::peek();
        QCOMPARE(WidgetSnapshot::differences(box, "isofiles-sessions"), QString());
        QCOMPARE(frmSessionCheck::keyOf(box->tvwSession->currentItem()), QStringLiteral("Node5"));
        box->cmdImport->click();
        Waits::settle();
        frmData *data = DefaultInstance<frmData>::peek();
        QCOMPARE(f->smartStatusBar->Item("DATA")->Text(), QStringLiteral(" Current Session: 2"));
        QCOMPARE(f->txtVolIdentifier->text(), QStringLiteral("FIRST"));
        QCOMPARE(gstrVolumePublisher, QStringLiteral("PUB"));
        f->runCommand("IMPPRESES"); // a second import shows every folder once all the same
        QCOMPARE(WidgetSnapshot::differences(data->tvwDirectories, "isofiles-imported-folders"),
                 QString());
        // One file added, one put under an imported name, one imported taken out.
        const Tree added = {{"a.txt", pseudoRandom(700, 5)}, {"added.txt", pseudoRandom(800, 6)}};
        for (auto it = added.cbegin(); it != added.cend(); ++it) {
            Fixtures::writeFile(dir.filePath("new/" + it.key()), it.value());
            cd->AddISOFile(u'\\' + it.key(), dir.filePath("new/" + it.key()));
        }
        QVERIFY(cd->RemoveISOItem("\\gone.txt"));
        QVERIFY(writeForReal(rig));
        // A file holds no table of contents: the disc's descriptor tells where session 2 starts.
        const QString image = rig.ejectedImage();
        const QString disc = QFileInfo(image).path() + u'/' + QFileInfo(image).completeBaseName();
        const qint32 start = IniFile::read(disc + ".tdisc", "Session2", "Start", "-1").toInt();
        QVERIFY(start > 0);
        Tree second = first;
        second.remove("gone.txt");
        second.insert(added);
        QCOMPARE(DiscReadBack::read(DiscReadBack::Tool::Xorriso, image, start), second);
        QCOMPARE(DiscReadBack::read(DiscReadBack::Tool::Isoinfo, image, start), second);
        QCOMPARE(DiscReadBack::read(DiscReadBack::Tool::Xorriso, image, 0), first);
    }

    void saveAsIso_data() {
        // name: as answered in the file box; existing: what lies there before; kept when asked;
        // box: the last box; empty for none
        columns<QString, bool, QByteArray, QString>("name", "joliet", "existing", "box");
        const QString done = "ISO File Created successfully!";
        QTest::newRow("Joliet") << "out.iso" << true << QByteArray() << done;
        QTest::newRow("no Joliet, no extension") << "out" << false << QByteArray() << done;
        QTest::newRow("existing, not replaced")
            << "out.iso" << true << QByteArray("keep")
            << "%1 already exists.\r\nDo you want to replace it?";
        QTest::newRow("cancelled") << "" << true << QByteArray() << "";
        QTest::newRow("unwritable folder")
            << "/proc/tessaly.iso" << true << QByteArray() << "Error creating ISO File.";
    }

    void saveAsIso() {
        auto [name, joliet, existing, box] =
            fetch<QString, bool, QByteArray, QString>("name", "joliet", "existing", "box");
        WriteRig rig;
        QVERIFY(rig.started());
        mdiMain *f = rig.frame();
        QTemporaryDir dir;
        const Tree tree = {{"docs", "<dir>"},
                           {"docs/a_rather_long_name_for_joliet.txt", pseudoRandom(5000, 1)},
                           {"b.bin", pseudoRandom(200000, 2)}};
        compile(f, tree, dir);
        f->txtVolIdentifier->setText("SAVED");
        gstrVolumePublisher = "PUBLISHER";
        const QString path = QDir(dir.path()).filePath(name.startsWith(u'/') ? name : "out.iso");
        if (!existing.isEmpty())
            Fixtures::writeFile(path, existing);
        int shown = 0;
        continueOptions(shown, joliet);
        rig.answers.answerFile(name.isEmpty() ? std::nullopt
                                              : std::optional(QDir(dir.path()).filePath(name)));
        f->runCommand("SAVEASISO");
        QCOMPARE(shown, 1);
        QVERIFY(QRegularExpression("^\\d{12}\\.iso$")
                    .match(rig.answers.fileBoxes[0].fileName)
                    .hasMatch());
        QCOMPARE(rig.boxes.isEmpty() ? QString() : rig.boxes.last().prompt,
                 box.replace("%1", QDir::toNativeSeparators(path)));
        QVERIFY(f->cboDevices->isEnabled() && gblnUnloadOk); // the frame is given back
        if (!box.startsWith("ISO File Created")) {
            // A cancelled save keeps its options box for the next one; a finished one unloads it.
            QCOMPARE(DefaultInstance<frmSaveAsISO>::exists(), !box.startsWith("Error"));
            QCOMPARE(QFileInfo::exists(path), !existing.isEmpty());
            QCOMPARE(OutsideTools::fileBytes(path), existing);
            return;
        }
        const QByteArray info = ReadBack::run("isoinfo", {"-d", "-i", path});
        QVERIFY2(info.contains("Volume id: SAVED") && info.contains("Publisher id: PUBLISHER"),
                 info);
        QVERIFY2(info.contains(joliet ? "Joliet with UCS level" : "NO Joliet present"), info);
        QCOMPARE(DiscReadBack::read(DiscReadBack::Tool::Xorriso, path), tree);
    }

    void commandBoxes_data() {
        // tray: -1: a disc whose last session is Mode 2; iso: WRITEISO: the chosen file is an ISO
        // 9660 image; statusMoved: the panel showed the import when the box came
        columns<QString, int, bool, QString, bool>("command", "tray", "iso", "box", "statusMoved");
        using T = WriteRig::Tray;
        const QString info = "Tessaly - Information|";
        QTest::newRow("import, no disc")
            << "IMPPRESES" << int(T::Empty) << true
            << info + "Please Insert a disc before continuing!" << false;
        QTest::newRow("import, no drive")
            << "IMPPRESES" << int(T::NoRecorder) << true
            << info + "A drive is not selected or does not exist." << false;
        QTest::newRow("import, Mode 2")
            << "IMPPRESES" << -1 << true
            << "Tessaly - Critical|Previous Session could not be imported"
               "\r\nOnly ISO/Joliet tracks (Mode1) can be imported."
            << true;
        QTest::newRow("write, blank disc") << "WRITEISO" << int(T::Blank) << true << "" << false;
        QTest::newRow("write, no disc") << "WRITEISO" << int(T::Empty) << true
                                        << info + "No media is loaded, aborting write!" << false;
        QTest::newRow("write, used disc")
            << "WRITEISO" << int(T::AppendableDisc) << true
            << "Tessaly|Please insert an empty disc for writing ISO." << false;
        QTest::newRow("write, not an image")
            << "WRITEISO" << int(T::Blank) << false
            << info + "%1 is not an ISO 9660 image file; nothing was written." << false;
    }

    void commandBoxes() {
        auto [command, tray, iso, box, statusMoved] = fetch<QString, int, bool, QString, bool>(
            "command", "tray", "iso", "box", "statusMoved");
        WriteRig rig({}, 99, "CD-R 80", tray < 0 ? WriteRig::Tray::Empty : WriteRig::Tray(tray));
        QVERIFY(rig.started());
        mdiMain *f = rig.frame();
        if (tray < 0) {
            const QDir t(ImageRecorder::trayFolder());
            Fixtures::writeFile(t.filePath("xa.iso"), QByteArray(150 * 2048, '\0'));
            Fixtures::writeFile(
                t.filePath("xa.tdisc"),
                "[Tessaly Disc]\nVersion=1\nMedium=CD-R 80\nData=xa.iso\nFinalized=0\n"
                "Sessions=1\n\n[Session1]\nStart=0\nBlocks=150\nMode=2\nClosed=1\n");
            f->runCommand("CLOSETRAY");
            QVERIFY(
                Waits::until([&] { return f->Tessaly->MediaType() != CDWriterPro::MediaNone; }));
            DefaultInstance<frmSessionCheck>::unload();
        }
        QTemporaryDir dir;
        const QString file = dir.filePath("in.iso");
        Fixtures::writeFile(dir.filePath("src/data.bin"), pseudoRandom(600000, 7));
        Fixtures::writeFile(file, pseudoRandom(40 * 2048, 8));
        if (iso)
            ReadBack::run("xorriso", {"-as", "mkisofs", "-quiet", "-o", file, dir.filePath("src")});
        rig.answers.answerFile(file);
        const QString before = f->smartStatusBar->Item("DATA")->Text();
        rig.boxes.clear();
        int shown = 0;
        continueOptions(shown);
        f->runCommand(command);
        if (box.isEmpty()) { // written: the disc starts with the file's bytes
            QVERIFY(Waits::until([&] { return !rig.ending.isEmpty(); }, 120000));
            Waits::settle();
            QCOMPARE(shown, 1);
            QCOMPARE(rig.ending, QStringLiteral("WriteComplete"));
            QVERIFY(!DefaultInstance<frmBurnIso>::exists() && !frmBurn::instance());
            const QByteArray original = OutsideTools::fileBytes(file);
            QVERIFY(original.size() > 600000);
            QVERIFY(OutsideTools::fileBytes(rig.ejectedImage()).startsWith(original));
            return;
        }
        // Refused before any options box: nothing marks the job as an ISO file write.
        QCOMPARE(shown, 0);
        QCOMPARE(int(gblnDisctypeIsData), command == u"IMPPRESES" && tray < 0 ? 0 : 99);
        QCOMPARE(rig.boxes.size(), 1);
        QCOMPARE(rig.boxes[0].title + u'|' + rig.boxes[0].prompt,
                 box.replace("%1", QDir::toNativeSeparators(file)));
        QCOMPARE(rig.boxes[0].dataPanel, statusMoved ? " Importing Previous Session..." : before);
    }
};

QTEST_MAIN(tst_IsoFiles)
#include "tst_isofiles.moc"
