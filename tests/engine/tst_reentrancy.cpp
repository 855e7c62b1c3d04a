// Engine members called from inside the engine's own events, and imported sessions carried on:
// the image the events describe is the image listed, counted and written.
#include "EngineRig.h"
#include "Fixtures.h"
#include "ReadBack.h"
#include "Rows.h"

#include "engine/writer/recorders/image/ImageMedium.h"
#include "engine/writer/recorders/image/ImageRecorder.h"

#include <QtTest>

using namespace Fixtures;
using Files = QMap<QString, QPair<QString, qint64>>; // destination path: source and size
using Hashes = QMap<QString, QByteArray>;

namespace {
// A data disc rig, with what a window keeps of the image from the events alone.
struct DataRig : EngineRig {
    DataRig()
        : EngineRig(QStringLiteral("CD-R 80"), Data) {
        for (const char *name : {"a.bin", "b.bin", "e.bin", "sub/d.bin", "other.bin"})
            writeFile(src.filePath(name), pseudoRandom(3000 + 700 * int(qstrlen(name)), *name));
        QObject::connect(&engine, &CDWriterPro::ISOItemAdded, &probe,
                         [this](const QString &, const QString &dest, const QString &,
                                const QString &source, bool dir, VbDate, qint64 size) {
                             announced << dest;
                             if (!dir)
                                 mirror.insert(dest, {source, size});
                         });
        QObject::connect(&engine, &CDWriterPro::ISOItemRemoved, &probe, [this](const QString &d) {
            mirror.removeIf([&](auto it) { return (it.key() + u'\\').startsWith(d + u'\\'); });
        });
        QObject::connect(&engine, &CDWriterPro::ISOImageReset, &probe, [this] { mirror.clear(); });
    }
    // The files as ListISOItems gives them, folder by folder, counting the folders.
    Files listed(const QString &path, int &folders) {
        Files out;
        QStringList subs;
        auto c =
            QObject::connect(&engine, &CDWriterPro::EnumISOItems, &probe,
                             [&](const QString &, const QString &dest, const QString &,
                                 const QString &source, bool dir, VbDate, qint64 size) {
                                 dir ? void(subs << dest) : void(out.insert(dest, {source, size}));
                             });
        engine.ListISOItems(path);
        QObject::disconnect(c);
        folders += int(subs.size());
        for (const QString &sub : subs)
            out.insert(listed(sub, folders));
        return out;
    }
    QTemporaryDir src;
    Files mirror;
    QStringList announced;
};
} // namespace

class tst_Reentrancy : public QObject {
    Q_OBJECT
private slots:
    void changedFromInsideEvents_data() {
        columns<QString, QString>("during", "act");
        for (const char *act : {"clear", "remove parent", "remove sibling", "add over"})
            QTest::addRow("folder added, %s", act) << "add" << act;
        for (const char *during : {"list", "import"}) {
            for (const char *act : {"remove parent", "remove sibling"})
                QTest::addRow("%s, %s", during, act) << during << act;
        }
        QTest::newRow("replace question, remove the file (refused)") << "replace"
                                                                     << "remove file";
    }

    void changedFromInsideEvents() {
        auto [during, act] = fetch<QString, QString>("during", "act");
        DataRig rig;
        CDWriterPro &e = rig.engine;
        if (during != u"add")
            e.AddISODirectory("\\src", rig.src.path());
        if (during == u"import" || during == u"replace") {
            QVERIFY(rig.write());
            e.ClearISOImage();
            QVERIFY(during == u"import" || e.ImportLastSession(true));
        }
        // The first event about \src\a.bin does it, once, after it was seen.
        const QMap<QString, std::function<bool()>> acts{
            {"clear", [&] { return e.ClearISOImage(), e.ISOFileCount() == 0; }},
            {"remove parent", [&] { return e.RemoveISOItem("\\src"); }},
            {"remove sibling", [&] { return e.RemoveISOItem("\\src\\b.bin"); }},
            {"remove file", [&] { return !e.RemoveISOItem("\\src\\a.bin"); }},
            {"add over", [&] {
                 e.AddISOFile("\\src\\e.bin", rig.src.filePath("other.bin"));
                 return rig.mirror.value("\\src\\e.bin").second == 3000 + 700 * 9;
             }}};
        qsizetype after = -1;
        auto onItem = [&](const QString &, const QString &dest) {
            if (after < 0 && dest == u"\\src\\a.bin") {
                QVERIFY(acts[act]());
                after = rig.announced.size();
            }
        };
        QObject::connect(&e, &CDWriterPro::EnumISOItems, &rig.probe,
                         [&](const QString &, const QString &dest) { rig.announced << dest; });
        QObject::connect(&e, &CDWriterPro::ISOItemAdded, &rig.probe, onItem);
        QObject::connect(&e, &CDWriterPro::EnumISOItems, &rig.probe, onItem);
        QObject::connect(&e, &CDWriterPro::ReplaceImportedISOFile, &rig.probe,
                         [&](const QString &dest, const QString &, const QString &, bool &yes) {
                             onItem({}, dest);
                             yes = true;
                         });
        if (during == u"add")
            e.AddISODirectory("\\src", rig.src.path());
        else if (during == u"list")
            e.ListISOItems("\\src");
        else if (during == u"import")
            QVERIFY(e.ImportLastSession(true));
        else
            e.AddISOFile("\\src\\a.bin", rig.src.filePath("other.bin"));
        QVERIFY(after >= 0);

        // Events, listing and counts agree; nothing gone was announced after it went.
        int folders = 0;
        const Files now = rig.listed("\\", folders);
        QCOMPARE(rig.mirror, now);
        QCOMPARE(e.ISOFileCount(), now.size());
        QCOMPARE(e.ISODirectoryCount(), folders);
        for (const QString &dest : rig.announced.mid(after))
            QVERIFY2(
                std::any_of(now.keyBegin(), now.keyEnd(),
                            [&](const QString &k) { return (k + u'\\').startsWith(dest + u'\\'); }),
                qPrintable(dest));
        // The ISO file holds exactly those files with their bytes, imported ones read from the
        // disc.
        Hashes want;
        for (auto it = now.begin(); it != now.end(); ++it) {
            const QString rel = it.key().mid(5).replace(u'\\', u'/'); // after "\src\"
            want.insert("/src/" + rel,
                        ReadBack::sha256(it->first.isEmpty() ? rig.src.filePath(rel) : it->first));
        }
        const QString iso = rig.src.filePath("image.iso");
        QVERIFY(e.CreateISOFile(iso));
        for (auto tool : {ReadBack::Tool::Xorriso, ReadBack::Tool::Isoinfo, ReadBack::Tool::Bsdtar})
            QCOMPARE(ReadBack::fileHashes(tool, iso), want);
    }

    void destroyedFromInsideEvents_data() {
        columns<QString, bool>("call", "owner");
        for (const char *call : {"CreateISOFile", "AddISODirectory", "ListISOItems"}) {
            QTest::addRow("%s, the engine", call) << call << false;
            QTest::addRow("%s, its owner", call) << call << true;
        }
    }

    void destroyedFromInsideEvents() {
        auto [call, owner] = fetch<QString, bool>("call", "owner");
        TestEnvironment env;
        QTemporaryDir src;
        for (int i = 0; i < 5; ++i)
            writeFile(src.filePath(QStringLiteral("f%1.bin").arg(i)), pseudoRandom(300000, i));
        std::unique_ptr<QObject> parent = std::make_unique<QObject>();
        QPointer<CDWriterPro> e = new CDWriterPro(parent.get());
        if (call != u"AddISODirectory")
            e->AddISODirectory("\\", src.path());
        auto destroy = [&] { owner ? parent.reset() : delete e.data(); };
        QObject::connect(e.data(), &CDWriterPro::CachingStatus, destroy);
        QObject::connect(e.data(), &CDWriterPro::ISOItemAdded, destroy);
        QObject::connect(e.data(), &CDWriterPro::EnumISOItems, destroy);
        if (call == u"CreateISOFile")
            QVERIFY(!e->CreateISOFile(src.filePath("out.iso")));
        else if (call == u"AddISODirectory")
            e->AddISODirectory("\\", src.path());
        else
            e->ListISOItems("\\");
        QVERIFY(e.isNull()); // and the call came back
    }

    void importedSessions() {
        // A session cut by a failure, then closed: its directory names a file never written.
        DataRig rig;
        writeFile(rig.src.filePath("z big.bin"), pseudoRandom(3 << 20, 6));
        rig.engine.AddISOFile("\\a.bin", rig.src.filePath("a.bin"));
        rig.engine.AddISOFile("\\z big.bin", rig.src.filePath("z big.bin"));
        EngineRig::setting("FailAtBlock", "600");
        QVERIFY(rig.write());
        QCOMPARE(rig.probe.driveError, 1005);
        rig.probe.events.clear();
        QVERIFY(rig.engine.FinishDisc(false));
        QVERIFY(rig.probe.waitForEnd());
        rig.engine.ClearISOImage();
        QStringList missing;
        QObject::connect(&rig.engine, &CDWriterPro::importedFilesMissing, &rig.probe,
                         [&](const QStringList &paths) { missing += paths; });
        QVERIFY(rig.engine.ImportLastSession(true));
        QCOMPARE(missing, QStringList({"\\z big.bin"}));
        QCOMPARE(rig.mirror.keys(), QStringList({"\\a.bin"}));
        rig.engine.AddISOFile("\\e.bin", rig.src.filePath("e.bin"));
        const qint32 start = 360000 - rig.engine.FreeBlocks();
        QVERIFY(rig.write());
        QCOMPARE(rig.probe.endingEvent(), QStringLiteral("WriteComplete"));

        // Carried on elsewhere: on a blank disc its files lie nowhere, so nothing is written.
        rig.engine.ClearISOImage();
        QVERIFY(rig.engine.ImportLastSession(true));
        const QString image = rig.eject("iso");
        const Hashes both{{"/a.bin", ReadBack::sha256(rig.src.filePath("a.bin"))},
                          {"/e.bin", ReadBack::sha256(rig.src.filePath("e.bin"))}};
        for (auto tool : {ReadBack::Tool::Xorriso, ReadBack::Tool::Isoinfo})
            QCOMPARE(ReadBack::fileHashes(tool, image, start), both);
        rig.engine.MoveTray(true);
        QVERIFY(!rig.engine.CreateISOFile(rig.src.filePath("x.iso")));
        QVERIFY(rig.write());
        QCOMPARE(rig.probe.events, QStringList({"PreparingToWrite", "WriteError"}));
        QCOMPARE(rig.probe.writeError, 5);
        QCOMPARE(rig.engine.DiscStatus(), 0);

        // A disc of 99 sessions takes no 100th, and stays a disc.
        rig.engine.MoveTray(false);
        ImageMedium full = ImageMedium::blank(*ImageMedium::kindByName("DVD+R"), "full.iso");
        for (int i = 0; i < 99; ++i)
            full.sessions.append({i * 32, 32, 1, true, {}});
        writeFile(QDir(ImageRecorder::trayFolder()).filePath("full.tdisc"), full.serialize());
        writeFile(QDir(ImageRecorder::trayFolder()).filePath("full.iso"), QByteArray(99 << 16, 0));
        QCOMPARE(rig.engine.SessionCount(), 99);
        rig.engine.ClearISOImage();
        rig.engine.AddISOFile("\\a.bin", rig.src.filePath("a.bin"));
        QVERIFY(rig.write());
        QCOMPARE(rig.probe.events, QStringList({"PreparingToWrite", "WriteError"}));
        QCOMPARE(rig.probe.driveError, 1050);
        QCOMPARE(rig.engine.SessionCount(), 99);
    }
};

QTEST_GUILESS_MAIN(tst_Reentrancy)
#include "tst_reentrancy.moc"
