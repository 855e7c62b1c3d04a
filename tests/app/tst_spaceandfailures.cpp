// The space functions over the engine and the failure texts of the engine's codes.
#include "Rows.h"
#include "TestEnvironment.h"

#include "app/modDeclarations.h"
#include "app/modGlobals.h"
#include "base/IniFile.h"
#include "engine/system/SystemCalls.h"
#include "engine/writer/CDWriterPro.h"
#include "engine/writer/recorders/image/ImageRecorder.h"

#include <QtTest>

class tst_SpaceAndFailures : public QObject {
    Q_OBJECT
private slots:
    void space_data() {
        // chosen: whether a recorder is chosen
        columns<int, bool, double>("sizeFormat", "chosen", "free");
        // A blank CD-R 80: 360,000 blocks of 2048 bytes, not mounted, so nothing used.
        QTest::newRow("bytes") << 1 << true << 737280000.0;
        QTest::newRow("kilobytes") << 2 << true << 720000.0;
        QTest::newRow("megabytes, rounded") << 3 << true << 703.0; // 703.125
        QTest::newRow("unknown format") << 4 << true << 0.0;
        QTest::newRow("no recorder chosen, bytes") << 1 << false << 0.0;
        QTest::newRow("no recorder chosen, megabytes") << 3 << false << 0.0;
    }

    void space() {
        auto [sizeFormat, chosen, free] = fetch<int, bool, double>("sizeFormat", "chosen", "free");
        TestEnvironment env;
        CDWriterPro engine;
        engine.InitializeDrives(false);
        engine.SelectDrive(engine.DriveCount() - 1);
        engine.MoveTray(true);
        glngDriveIndex = chosen ? engine.DriveCount() - 1 : -1;
        QCOMPARE(GetFreeSpace(&engine, sizeFormat), free);
        QCOMPARE(GetUsedSpace(&engine, sizeFormat), 0.0);
        QCOMPARE(GetTotalSpace(&engine, sizeFormat), free);
    }
};

QTEST_GUILESS_MAIN(tst_SpaceAndFailures)
#include "tst_spaceandfailures.moc"
