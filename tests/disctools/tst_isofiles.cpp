#include "DiscReadBack.h"
#include "Fixtures.h"
#include "OutsideTools.h"
#include "ReadBack.h"
#include "Waits.h"
#include "WriteRig.h"
#include "app/FormRegistry.h"
#include "app/mdiMain.h"
#include "app/modDeclarations.h"
#include "disctools/frmBurnIso.h"
#include "disctools/frmSaveAsISO.h"
#include "engine/writer/CDWriterPro.h"
#include "widgets/DefaultInstance.h"
#include "writing/frmBurn.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using DiscReadBack::Tree;
using Fixtures::pseudoRandom;

class tst_IsoFiles : public QObject {
    Q_OBJECT
private slots:
    void saveAsIso_data();
    void saveAsIso();
    void writeIso_data();
    void writeIso();
};

namespace {
// Continues the options box of type T once it is up, after `choose` has set it; counts it.
template<typename T> void continueBox(int &seen, std::function<void(T *)> choose = {}) {
    QTimer::singleShot(0, [&seen, choose] {
        if (auto *box = qobject_cast<T *>(QApplication::activeModalWidget())) {
            ++seen;
            if (choose)
                choose(box);
            box->cmdContinue->click();
        }
    });
}
} // namespace

void tst_IsoFiles::saveAsIso_data() {
    QTest::addColumn<QString>("name"); // as answered in the file box
    QTest::addColumn<bool>("joliet");
    QTest::addColumn<QByteArray>("existing"); // what lies there before; kept when asked
    QTest::addColumn<QString>("box");         // the last box; empty for none
    QTest::addColumn<bool>("saved");
    const QString done = "ISO File Created successfully!";
    QTest::newRow("Joliet") << "out.iso" << true << QByteArray() << done << true;
    QTest::newRow("no Joliet, no extension") << "out" << false << QByteArray() << done << true;
    QTest::newRow("existing, not replaced")
        << "out.iso" << true << QByteArray("keep")
        << "%1 already exists.\r\nDo you want to replace it?" << false;
    QTest::newRow("cancelled") << "" << true << QByteArray() << "" << false;
    QTest::newRow("unwritable folder")
        << "/proc/tessaly.iso" << true << QByteArray() << "Error creating ISO File." << false;
}

void tst_IsoFiles::saveAsIso() {
    QFETCH(QString, name);
    QFETCH(bool, joliet);
    QFETCH(QByteArray, existing);
    QFETCH(QString, box);
    QFETCH(bool, saved);
    WriteRig rig;
    QVERIFY(rig.started());
    mdiMain *f = rig.frame();
    QTemporaryDir dir;
    const Tree tree = {{"docs", "<dir>"},
                       {"docs/a_rather_long_name_for_joliet.txt", pseudoRandom(5000, 1)},
                       {"b.bin", pseudoRandom(200000, 2)}};
    FormRegistry::open(QStringLiteral("frmData"));
    FormRegistry::open(QStringLiteral("ResetImage"));
    for (auto it = tree.cbegin(); it != tree.cend(); ++it) {
        if (it.value() == "<dir>")
            continue;
        Fixtures::writeFile(dir.filePath("src/" + it.key()), it.value());
        f->Tessaly->AddISOFile("\\" + QString(it.key()).replace(u'/', u'\\'),
                               dir.filePath("src/" + it.key()));
    }
    f->txtVolIdentifier->setText("SAVED");
    gstrVolumePublisher = "PUBLISHER";
    const QString path = name.startsWith(u'/') ? name : dir.filePath("out.iso");
    if (!existing.isEmpty())
        Fixtures::writeFile(path, existing);
    int shown = 0;
    continueBox<frmSaveAsISO>(shown,
                              [joliet](frmSaveAsISO *b) { b->chkUseJoliet->setChecked(joliet); });
    rig.answers.answerFile(
        name.isEmpty() ? std::nullopt
                       : std::optional<QString>(name.startsWith(u'/') ? name : dir.filePath(name)));
    f->runCommand("SAVEASISO");
    QCOMPARE(shown, 1);
    QCOMPARE(rig.answers.fileBoxes.size(), 1);
    QVERIFY(
        QRegularExpression("^\\d{12}\\.iso$").match(rig.answers.fileBoxes[0].fileName).hasMatch());
    QCOMPARE(rig.boxes.isEmpty() ? QString() : rig.boxes.last().prompt,
             box.replace("%1", QDir::toNativeSeparators(path)));
    QVERIFY(f->cboDevices->isEnabled() && gblnUnloadOk); // the frame is given back
    // A cancelled save keeps its options box for the next one; a finished one unloads it.
    QCOMPARE(DefaultInstance<frmSaveAsISO>::exists(), !saved && !box.startsWith("Error"));
    if (!saved) {
        QCOMPARE(QFileInfo::exists(path), !existing.isEmpty());
        QCOMPARE(OutsideTools::fileBytes(path), existing);
        return;
    }
    const QByteArray info = ReadBack::run("isoinfo", {"-d", "-i", path});
    QVERIFY2(info.contains("Volume id: SAVED") && info.contains("Publisher id: PUBLISHER"), info);
    QVERIFY2(info.contains(joliet ? "Joliet with UCS level" : "NO Joliet present"), info);
    QCOMPARE(DiscReadBack::read(DiscReadBack::Tool::Xorriso, path), tree);
}

void tst_IsoFiles::writeIso_data() {
    QTest::addColumn<int>("tray");
    QTest::addColumn<bool>("iso"); // the chosen file is an ISO 9660 image
    QTest::addColumn<QString>("refusal");
    QTest::newRow("blank disc") << int(WriteRig::Tray::Blank) << true << "";
    QTest::newRow("no disc") << int(WriteRig::Tray::Empty) << true
                             << "Tessaly - Information|No media is loaded, aborting write!";
    QTest::newRow("used disc") << int(WriteRig::Tray::AppendableDisc) << true
                               << "Tessaly|Please insert an empty disc for writing ISO.";
    QTest::newRow("not an image") << int(WriteRig::Tray::Blank) << false
                                  << "Tessaly - Information|%1 is not an ISO 9660 image file; "
                                     "nothing was written.";
}

void tst_IsoFiles::writeIso() {
    QFETCH(int, tray);
    QFETCH(bool, iso);
    QFETCH(QString, refusal);
    WriteRig rig({}, 99, "CD-R 80", WriteRig::Tray(tray));
    QVERIFY(rig.started());
    QTemporaryDir dir;
    const QString file = dir.filePath("in.iso");
    Fixtures::writeFile(dir.filePath("src/data.bin"), pseudoRandom(600000, 7));
    if (iso)
        ReadBack::run("xorriso", {"-as", "mkisofs", "-quiet", "-V", "OUTSIDE", "-o", file,
                                  dir.filePath("src")});
    else
        Fixtures::writeFile(file, pseudoRandom(40 * 2048, 8));
    int shown = 0;
    continueBox<frmBurnIso>(shown, [](frmBurnIso *b) { b->chkFinalizeDisc->setChecked(true); });
    rig.answers.answerFile(file);
    rig.frame()->runCommand("WRITEISO");
    if (!refusal.isEmpty()) {
        // Refused before the options box: nothing marks the job as an ISO file write.
        QCOMPARE(shown, 0);
        QCOMPARE(int(gblnDisctypeIsData), 99);
        QCOMPARE(rig.boxes.size(), 1);
        QCOMPARE(rig.boxes[0].title + u'|' + rig.boxes[0].prompt,
                 refusal.replace("%1", QDir::toNativeSeparators(file)));
        return;
    }
    QVERIFY(Waits::until([&] { return !rig.ending.isEmpty(); }, 120000));
    Waits::settle();
    QCOMPARE(shown, 1);
    QCOMPARE(rig.ending, QStringLiteral("WriteComplete"));
    QVERIFY(!DefaultInstance<frmBurnIso>::exists() && !frmBurn::instance());
    const QByteArray written = OutsideTools::fileBytes(rig.ejectedImage());
    const QByteArray original = OutsideTools::fileBytes(file);
    QVERIFY(original.size() > 600000);
    QVERIFY(written.startsWith(original));
}

QTEST_MAIN(tst_IsoFiles)
#include "tst_isofiles.moc"
