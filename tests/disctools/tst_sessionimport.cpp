#include "DiscReadBack.h"
#include "Fixtures.h"
#include "ReadBack.h"
#include "Waits.h"
#include "WriteRig.h"
#include "app/FormRegistry.h"
#include "app/mdiMain.h"
#include "app/modDeclarations.h"
#include "base/IniFile.h"
#include "compilation/frmData.h"
#include "disctools/frmSessionCheck.h"
#include "engine/writer/CDWriterPro.h"
#include "engine/writer/recorders/image/ImageRecorder.h"
#include "widgets/DefaultInstance.h"
#include "widgets/KeyedPanel.h"
#include "widgets/KeyedStatusBar.h"
#include "writing/frmBurn.h"

#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTreeWidget>

using DiscReadBack::Tree;
using Fixtures::pseudoRandom;

class tst_SessionImport : public QObject {
    Q_OBJECT
private slots:
    void importThenSecondSession();
    void refusals_data();
    void refusals();
};

namespace {
bool writeForReal(WriteRig &rig) {
    frmBurn *burn = rig.openDialog();
    if (!burn)
        return false;
    burn->optWrite->setChecked(true);
    return rig.writeAndWait(burn) && rig.ending == QLatin1String("WriteComplete");
}

// Every node of a tree as "key=text", in tree order.
QStringList nodes(const QTreeWidget *tree) {
    QStringList out;
    std::function<void(QTreeWidgetItem *)> walk = [&](QTreeWidgetItem *item) {
        out << item->data(0, Qt::UserRole).toString() + u'=' + item->text(0);
        for (int i = 0; i < item->childCount(); ++i)
            walk(item->child(i));
    };
    for (int i = 0; i < tree->topLevelItemCount(); ++i)
        walk(tree->topLevelItem(i));
    return out;
}

QString dataPanel(mdiMain *f) {
    return f->smartStatusBar->Item(QStringLiteral("DATA"))->Text();
}
} // namespace

void tst_SessionImport::importThenSecondSession() {
    WriteRig rig;
    QVERIFY(rig.started());
    mdiMain *f = rig.frame();
    CDWriterPro *cd = f->Tessaly;
    QTemporaryDir src;
    const Tree first = {{"keep.bin", pseudoRandom(300000, 1)},
                        {"a.txt", pseudoRandom(900, 2)},
                        {"dir", "<dir>"},
                        {"dir/b.txt", pseudoRandom(4000, 3)},
                        {"gone.txt", pseudoRandom(10, 4)}};
    for (auto it = first.cbegin(); it != first.cend(); ++it)
        if (it.value() != "<dir>")
            Fixtures::writeFile(src.filePath(it.key()), it.value());
    FormRegistry::open(QStringLiteral("frmData"));
    FormRegistry::open(QStringLiteral("ResetImage"));
    for (const char *name : {"keep.bin", "a.txt", "gone.txt"})
        cd->AddISOFile(QStringLiteral("\\") + name, src.filePath(name));
    cd->AddISODirectory("\\dir", src.filePath("dir"));
    f->txtVolIdentifier->setText("FIRST");
    gstrVolumePublisher = "PUB";
    QVERIFY(writeForReal(rig));
    DefaultInstance<frmData>::unload();
    Waits::settle();

    // The same disc back: its sessions come up in the box.
    f->runCommand("CLOSETRAY");
    QVERIFY(Waits::until([] { return DefaultInstance<frmSessionCheck>::exists(); }, 20000));
    frmSessionCheck *box = DefaultInstance<frmSessionCheck>::peek();
    const QStringList shown = nodes(box->tvwSession);
    QCOMPARE(shown.mid(0, 4), QStringList({"CD-ROM=CD-ROM", "Node2=Session 01",
                                           "Node3=Track 01: Closed Track", "Node4=Session 02"}));
    QRegularExpression empty("^Node5=Empty Session: \\[\\d+MB\\] Used space, \\[(\\d+)MB\\] "
                             "Free space$");
    const auto line = empty.match(shown.value(4));
    QVERIFY2(line.hasMatch() && line.captured(1).toInt() > 600, qPrintable(shown.value(4)));
    QCOMPARE(frmSessionCheck::keyOf(box->tvwSession->currentItem()), QStringLiteral("Node5"));
    QCOMPARE(box->cmdImport->text(), QStringLiteral("Import Session 1"));
    QVERIFY(!box->cmdErase->isEnabled()); // a CD-R
    box->cmdImport->click();
    Waits::settle();

    frmData *data = DefaultInstance<frmData>::peek();
    QVERIFY(data);
    QCOMPARE(dataPanel(f), QStringLiteral(" Current Session: 2"));
    QCOMPARE(f->txtVolIdentifier->text(), QStringLiteral("FIRST"));
    QCOMPARE(gstrVolumePublisher, QStringLiteral("PUB"));
    // A second import shows every folder once all the same.
    f->runCommand("IMPPRESES");
    QCOMPARE(nodes(data->tvwDirectories), QStringList({"\\=FIRST", "\\dir=dir"}));

    // One file added, one put under an imported name, one imported taken out.
    const Tree added = {{"a.txt", pseudoRandom(700, 5)}, {"added.txt", pseudoRandom(800, 6)}};
    for (auto it = added.cbegin(); it != added.cend(); ++it) {
        Fixtures::writeFile(src.filePath("new/" + it.key()), it.value());
        cd->AddISOFile(u'\\' + it.key(), src.filePath("new/" + it.key()));
    }
    QVERIFY(cd->RemoveISOItem("\\gone.txt"));
    QVERIFY(writeForReal(rig));

    const QString image = rig.ejectedImage();
    // A file holds no table of contents: the disc's descriptor tells where session 2 starts.
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

void tst_SessionImport::refusals_data() {
    QTest::addColumn<int>("tray");
    QTest::addColumn<QString>("prompt");
    QTest::addColumn<bool>("statusMoved"); // the panel showed the import when the box came
    QTest::newRow("no disc") << int(WriteRig::Tray::Empty)
                             << "Tessaly - Information|Please Insert a disc before continuing!"
                             << false;
    QTest::newRow("no drive") << int(WriteRig::Tray::NoRecorder)
                              << "Tessaly - Information|A drive is not selected or does not exist."
                              << false;
    QTest::newRow("Mode 2") << -1
                            << "Tessaly - Critical|Previous Session could not be imported\r\n"
                               "Only ISO/Joliet tracks (Mode1) can be imported."
                            << true;
}

void tst_SessionImport::refusals() {
    QFETCH(int, tray);
    QFETCH(QString, prompt);
    QFETCH(bool, statusMoved);
    WriteRig rig({}, 0, "CD-R 80", tray < 0 ? WriteRig::Tray::Empty : WriteRig::Tray(tray));
    QVERIFY(rig.started());
    mdiMain *f = rig.frame();
    if (tray < 0) {
        const QDir t(ImageRecorder::trayFolder());
        Fixtures::writeFile(t.filePath("xa.iso"), QByteArray(150 * 2048, '\0'));
        Fixtures::writeFile(t.filePath("xa.tdisc"),
                            "[Tessaly Disc]\nVersion=1\nMedium=CD-R 80\nData=xa.iso\nFinalized=0\n"
                            "Sessions=1\n\n[Session1]\nStart=0\nBlocks=150\nMode=2\nClosed=1\n");
        f->runCommand("CLOSETRAY");
        QVERIFY(Waits::until([&] { return f->Tessaly->MediaType() != CDWriterPro::MediaNone; }));
        DefaultInstance<frmSessionCheck>::unload();
    }
    const QString before = dataPanel(f);
    rig.boxes.clear();
    f->runCommand("IMPPRESES");
    QCOMPARE(rig.boxes.size(), 1);
    QCOMPARE(rig.boxes[0].title + u'|' + rig.boxes[0].prompt, prompt);
    QCOMPARE(rig.boxes[0].dataPanel, statusMoved ? " Importing Previous Session..." : before);
    QCOMPARE(dataPanel(f), rig.boxes[0].dataPanel);
}

QTEST_MAIN(tst_SessionImport)
#include "tst_sessionimport.moc"
