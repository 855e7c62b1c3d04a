// Source files are read in pieces larger than libisofs's blocks: contents read back by isoinfo
// must be whole at every size around a piece's end. Files that change after adding: tst_sources.
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
};

QTEST_MAIN(tst_SourceStream)
#include "tst_sourcestream.moc"
