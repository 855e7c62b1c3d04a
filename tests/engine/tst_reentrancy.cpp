// Engine members called from inside the engine's own events, and imported sessions carried on:
// the image the events describe is the image listed, counted and written.
#include "AudioRig.h"
#include "IsoReadBack.h"

#include "engine/writer/recorders/image/ImageMedium.h"
#include "engine/writer/recorders/image/ImageRecorder.h"

#include <QDir>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>

using namespace EngineFixtures;
using Files = QMap<QString, QPair<QString, qint64>>; // destination path: source and size

namespace {
// A rig for data discs, with what a window keeps of the image from the events alone.
struct DataRig : AudioRig {
    DataRig() {
        engine.setTrackMode(1);
        engine.setFinalizeDisc(false);
        engine.ClearISOImage();
        writeFile(src.filePath("a.bin"), pseudoRandom(5000, 1));
        writeFile(src.filePath("b.bin"), pseudoRandom(7000, 2));
        writeFile(src.filePath("e.bin"), pseudoRandom(9000, 3));
        writeFile(src.filePath("sub/d.bin"), pseudoRandom(3000, 4));
        writeFile(src.filePath("other.bin"), pseudoRandom(777, 5));
        QObject::connect(&engine, &CDWriterPro::ISOItemAdded, &probe,
                         [this](const QString &, const QString &dest, const QString &,
                                const QString &source, bool dir, VbDate, qint64 size) {
                             announced << dest;
                             if (!dir)
                                 mirror.insert(dest, {source, size});
                         });
        QObject::connect(&engine, &CDWriterPro::ISOItemRemoved, &probe,
                         [this](const QString &dest, const QString &, bool) {
                             mirror.removeIf([&](auto it) {
                                 return it.key() == dest || it.key().startsWith(dest + u'\\');
                             });
                         });
        QObject::connect(&engine, &CDWriterPro::ISOImageReset, &probe, [this] { mirror.clear(); });
    }
    // The files as ListISOItems gives them, folder by folder; *folders counts the folders.
    Files listed(const QString &path = QStringLiteral("\\"), int *folders = nullptr) {
        Files out;
        QStringList subs;
        auto c = QObject::connect(&engine, &CDWriterPro::EnumISOItems, &probe,
                                  [&](const QString &, const QString &dest, const QString &,
                                      const QString &source, bool dir, VbDate, qint64 size) {
                                      if (dir)
                                          subs << dest;
                                      else
                                          out.insert(dest, {source, size});
                                  });
        engine.ListISOItems(path);
        QObject::disconnect(c);
        for (const QString &sub : subs)
            out.insert(listed(sub, folders));
        if (folders)
            *folders += int(subs.size());
        return out;
    }
    QTemporaryDir src;
    Files mirror;
    QStringList announced;
};

// The ISO file of the image, read back by every outside tool; each must find exactly `want`.
void verifyIsoFile(CDWriterPro &engine, const QMap<QString, QByteArray> &want) {
    QTemporaryDir out;
    const QString iso = out.filePath("image.iso");
    QVERIFY(engine.CreateISOFile(iso));
    for (auto tool :
         {IsoReadBack::Tool::Xorriso, IsoReadBack::Tool::Isoinfo, IsoReadBack::Tool::Bsdtar})
        QCOMPARE(IsoReadBack::files(tool, iso), want);
}
} // namespace

class tst_Reentrancy : public QObject {
    Q_OBJECT
private slots:
    void changedFromInsideEvents_data();
    void changedFromInsideEvents();
    void destroyedFromInsideEvents_data();
    void destroyedFromInsideEvents();
    void importedSessionStaysOnItsDisc();
    void cutSessionImportLeavesOutMissingFiles();
    void hundredthSessionRefused();
};

void tst_Reentrancy::changedFromInsideEvents_data() {
    QTest::addColumn<QString>("during");
    QTest::addColumn<QString>("act");
    QTest::addColumn<bool>("accepted");
    for (const char *act : {"clear", "remove parent", "remove sibling", "add over"})
        QTest::addRow("folder added, %s", act) << "add" << act << true;
    for (const char *act : {"remove parent", "remove sibling"}) {
        QTest::addRow("listing, %s", act) << "list" << act << true;
        QTest::addRow("import, %s", act) << "import" << act << true;
    }
    QTest::newRow("replace question, remove the file") << "replace"
                                                       << "remove file" << false;
}

void tst_Reentrancy::changedFromInsideEvents() {
    QFETCH(QString, during);
    QFETCH(QString, act);
    QFETCH(bool, accepted);
    DataRig rig;
    CDWriterPro &e = rig.engine;
    if (during != u"add")
        e.AddISODirectory("\\src", rig.src.path());
    if (during == u"import" || during == u"replace") {
        QVERIFY(rig.write());
        e.ClearISOImage();
        if (during == u"replace")
            QVERIFY(e.ImportLastSession(true));
    }
    // The first event about \src\a.bin does it, once, after it was seen.
    bool done = false, result = false;
    qsizetype after = -1;
    auto onItem = [&](const QString &, const QString &dest) {
        if (done || dest != u"\\src\\a.bin")
            return;
        done = true;
        if (act == u"clear") {
            e.ClearISOImage();
            result = e.ISOFileCount() == 0;
        } else if (act == u"add over") {
            e.AddISOFile("\\src\\e.bin", rig.src.filePath("other.bin"));
            result = e.ISOFileCount() > 0;
        } else {
            result = e.RemoveISOItem(act == u"remove sibling" ? "\\src\\b.bin"
                                     : act == u"remove file"  ? "\\src\\a.bin"
                                                              : "\\src");
        }
        after = rig.announced.size();
    };
    QObject::connect(&e, &CDWriterPro::EnumISOItems, &rig.probe,
                     [&](const QString &, const QString &dest) { rig.announced << dest; });
    QObject::connect(&e, &CDWriterPro::ISOItemAdded, &rig.probe, onItem);
    QObject::connect(&e, &CDWriterPro::EnumISOItems, &rig.probe, onItem);
    QObject::connect(&e, &CDWriterPro::ReplaceImportedISOFile, &rig.probe,
                     [&](const QString &dest, const QString &, const QString &, bool &replace) {
                         onItem({}, dest);
                         replace = true;
                     });
    if (during == u"add")
        e.AddISODirectory("\\src", rig.src.path());
    else if (during == u"list")
        e.ListISOItems("\\src");
    else if (during == u"import")
        QVERIFY(e.ImportLastSession(true));
    else
        e.AddISOFile("\\src\\a.bin", rig.src.filePath("other.bin"));
    QVERIFY(done);
    QCOMPARE(result, accepted);

    // Events, listing and counts agree; nothing gone was announced after it went.
    int folders = 0;
    const Files now = rig.listed("\\", &folders);
    QCOMPARE(rig.mirror, now);
    QCOMPARE(e.ISOFileCount(), now.size());
    QCOMPARE(e.ISODirectoryCount(), folders);
    for (const QString &dest : rig.announced.mid(after))
        QVERIFY2(
            std::any_of(now.keyBegin(), now.keyEnd(),
                        [&](const QString &k) { return k == dest || k.startsWith(dest + u'\\'); }),
            qPrintable(dest));
    // And the ISO file holds exactly those files with their bytes, imported ones included.
    QMap<QString, QByteArray> want;
    for (auto it = now.begin(); it != now.end(); ++it) {
        const QString rel = it.key().mid(5).replace(u'\\', u'/'); // after "\src\"
        want.insert(QString(it.key()).replace(u'\\', u'/'),
                    IsoReadBack::sha256(it->first.isEmpty() ? rig.src.filePath(rel) : it->first));
    }
    verifyIsoFile(e, want);
}

void tst_Reentrancy::destroyedFromInsideEvents_data() {
    QTest::addColumn<QString>("call");
    QTest::addColumn<bool>("owner");
    for (const char *call : {"CreateISOFile", "AddISODirectory", "ListISOItems"}) {
        QTest::addRow("%s, the engine", call) << call << false;
        QTest::addRow("%s, its owner", call) << call << true;
    }
}

void tst_Reentrancy::destroyedFromInsideEvents() {
    QFETCH(QString, call);
    QFETCH(bool, owner);
    TestEnvironment env;
    QTemporaryDir src;
    for (int i = 0; i < 5; ++i)
        writeFile(src.filePath(QStringLiteral("f%1.bin").arg(i)), pseudoRandom(300000, i));
    auto *parent = new QObject;
    QPointer<CDWriterPro> e = new CDWriterPro(parent);
    auto destroy = [&] {
        if (owner)
            delete parent;
        else
            delete e.data();
    };
    if (call != u"AddISODirectory")
        e->AddISODirectory("\\", src.path());
    QObject::connect(e.data(), &CDWriterPro::CachingStatus, destroy);
    QObject::connect(e.data(), &CDWriterPro::ISOItemAdded, destroy);
    QObject::connect(e.data(), &CDWriterPro::EnumISOItems, destroy);
    const QString iso = src.filePath("out.iso");
    if (call == u"CreateISOFile")
        QVERIFY(!e->CreateISOFile(iso));
    else if (call == u"AddISODirectory")
        e->AddISODirectory("\\", src.path());
    else
        e->ListISOItems("\\");
    QVERIFY(e.isNull()); // and the call came back
    if (!owner)
        delete parent;
}

void tst_Reentrancy::importedSessionStaysOnItsDisc() {
    DataRig rig;
    rig.engine.AddISODirectory("\\src", rig.src.path());
    QVERIFY(rig.write());
    rig.engine.ClearISOImage();
    QVERIFY(rig.engine.ImportLastSession(true));
    rig.engine.MoveTray(false);
    rig.engine.MoveTray(true); // a blank disc in its place
    rig.engine.AddISOFile("\\new.bin", rig.src.filePath("other.bin"));
    // Its files are nowhere now: no ISO file, and no write onto the other disc.
    QVERIFY(!rig.engine.CreateISOFile(rig.src.filePath("x.iso")));
    QVERIFY(rig.write());
    QCOMPARE(rig.probe.events, QStringList({"PreparingToWrite", "WriteError"}));
    QCOMPARE(rig.probe.writeError, 5);
    QCOMPARE(rig.engine.DiscStatus(), 0);
}

void tst_Reentrancy::cutSessionImportLeavesOutMissingFiles() {
    DataRig rig;
    writeFile(rig.src.filePath("z big.bin"), pseudoRandom(3 << 20, 6));
    rig.engine.AddISOFile("\\a.bin", rig.src.filePath("a.bin"));
    rig.engine.AddISOFile("\\z big.bin", rig.src.filePath("z big.bin"));
    AudioRig::setting("FailAtBlock", "600"); // inside the big file's data
    QVERIFY(rig.write());
    QCOMPARE(rig.probe.driveError, 1005);
    rig.probe.events.clear();
    QVERIFY(rig.engine.FinishDisc(false));
    QVERIFY(rig.probe.waitForEnd());
    QCOMPARE(rig.probe.endingEvent(), QStringLiteral("WriteComplete"));

    rig.engine.ClearISOImage();
    QStringList missing;
    QObject::connect(&rig.engine, &CDWriterPro::importedFilesMissing, &rig.probe,
                     [&](const QStringList &paths) { missing += paths; });
    QVERIFY(rig.engine.ImportLastSession(true));
    QCOMPARE(missing, QStringList({"\\z big.bin"}));
    QCOMPARE(rig.mirror.keys(), QStringList({"\\a.bin"}));
    rig.engine.AddISOFile("\\e.bin", rig.src.filePath("e.bin"));
    const qint32 start = rig.engine.FreeBlocks();
    QVERIFY(rig.write());
    QCOMPARE(rig.probe.endingEvent(), QStringLiteral("WriteComplete"));
    const QString image = rig.eject("iso");
    const QMap<QString, QByteArray> want{
        {"/a.bin", IsoReadBack::sha256(rig.src.filePath("a.bin"))},
        {"/e.bin", IsoReadBack::sha256(rig.src.filePath("e.bin"))}};
    for (auto tool : {IsoReadBack::Tool::Xorriso, IsoReadBack::Tool::Isoinfo})
        QCOMPARE(IsoReadBack::files(tool, image, 360000 - start), want);
}

void tst_Reentrancy::hundredthSessionRefused() {
    DataRig rig;
    rig.engine.MoveTray(false);
    // A DVD+R with 99 small closed data sessions.
    ImageMedium disc = ImageMedium::blank(*ImageMedium::kindByName("DVD+R"), "full.iso");
    for (int i = 0; i < 99; ++i)
        disc.sessions.append({i * 32, 32, 1, true, {}});
    writeFile(QDir(ImageRecorder::trayFolder()).filePath("full.tdisc"), disc.serialize());
    writeFile(QDir(ImageRecorder::trayFolder()).filePath("full.iso"),
              QByteArray(99 * 32 * 2048, 0));
    QCOMPARE(rig.engine.SessionCount(), 99);
    rig.engine.AddISOFile("\\a.bin", rig.src.filePath("a.bin"));
    QVERIFY(rig.write());
    QCOMPARE(rig.probe.events, QStringList({"PreparingToWrite", "WriteError"}));
    QCOMPARE(rig.probe.driveError, 1050);
    QCOMPARE(rig.engine.SessionCount(), 99); // the disc is still there, as it was
}

QTEST_GUILESS_MAIN(tst_Reentrancy)
#include "tst_reentrancy.moc"
