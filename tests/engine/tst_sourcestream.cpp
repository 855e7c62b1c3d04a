// Source files are read in pieces larger than libisofs's blocks: contents read back by isoinfo
// must be whole at every size around a piece's end, and a file that changed since it was added
// must fail the image (shrunk) or be cut at its added size (grown), never padded.
#include "EngineRig.h"
#include "Fixtures.h"
#include "ReadBack.h"
#include "TestEnvironment.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Fixtures;

namespace {
constexpr int Piece = 256 * 1024;

} // namespace

class tst_SourceStream : public QObject {
    Q_OBJECT
private slots:
    void contentsAtPieceBoundaries_data() {
        QTest::addColumn<int>("size");
        QTest::newRow("one block") << 2048;
        QTest::newRow("a piece less one byte") << Piece - 1;
        QTest::newRow("exactly a piece") << Piece;
        QTest::newRow("a piece and one byte") << Piece + 1;
        QTest::newRow("two pieces and a half block") << 2 * Piece + 1024;
    }

    void contentsAtPieceBoundaries() {
        QFETCH(int, size);
        EngineRig e(EngineRig::NoDrive);
        QTemporaryDir dir;
        const QByteArray bytes = pseudoRandom(size, size);
        writeFile(dir.filePath("src/data.bin"), bytes);
        writeFile(dir.filePath("src/after.bin"), pseudoRandom(5000, 7));
        e.engine.AddISOFile("\\data.bin", dir.filePath("src/data.bin"));
        e.engine.AddISOFile("\\after.bin", dir.filePath("src/after.bin"));
        const QString iso = dir.filePath("out.iso");
        QVERIFY(e.engine.CreateISOFile(iso));
        QCOMPARE(ReadBack::isoinfoFile(iso, "/data.bin"), bytes);
        QCOMPARE(ReadBack::isoinfoFile(iso, "/after.bin"), pseudoRandom(5000, 7));
    }

    void changedAfterAdding_data() {
        QTest::addColumn<int>("added");
        QTest::addColumn<int>("now");
        // Shrunk: inside the first piece, at a piece's end, deep in a later piece.
        QTest::newRow("shrunk within the first piece") << 3 * Piece << 1000;
        QTest::newRow("shrunk to exactly one piece") << 3 * Piece << Piece;
        QTest::newRow("shrunk in the third piece") << 3 * Piece << 2 * Piece + 5;
        QTest::newRow("grown by a piece") << Piece + 100 << 2 * Piece + 100;
    }

    void changedAfterAdding() {
        QFETCH(int, added);
        QFETCH(int, now);
        EngineRig e(EngineRig::NoDrive);
        QTemporaryDir dir;
        const QString source = dir.filePath("src/changing.bin");
        const QByteArray grown = pseudoRandom(qMax(added, now), 11);
        writeFile(source, grown.left(added));
        e.engine.AddISOFile("\\changing.bin", source);
        writeFile(source, grown.left(now));
        const QString iso = dir.filePath("out.iso");
        const bool made = e.engine.CreateISOFile(iso);
        if (now < added) {
            QVERIFY(!made);
            QVERIFY(!QFile::exists(iso));
            QCOMPARE(e.probe.fileError, 2);
            QCOMPARE(e.probe.failedFile, source);
        } else {
            QVERIFY(made);
            QCOMPARE(ReadBack::isoinfoFile(iso, "/changing.bin"), grown.left(added));
        }
    }
};

QTEST_MAIN(tst_SourceStream)
#include "tst_sourcestream.moc"
