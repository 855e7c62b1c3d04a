// Media events: kernel media changes of optical drives, and the Image Recorder's tray.
#include "EngineRig.h"
#include "Rows.h"

#include "engine/notify/CDNotify.h"
#include "engine/notify/UdevMediaWatcher.h"
#include "engine/writer/recorders/image/ImageRecorder.h"

#include <QtTest>

class tst_MediaNotify : public QObject {
    Q_OBJECT
private slots:
    void kernelEvents_data() {
        columns<QStringList, bool>("properties", "mediaChange");
        const QStringList disk{"SUBSYSTEM=block", "DEVTYPE=disk", "ACTION=change"};
        // The kernel's own event, as it comes without a udev daemon.
        QTest::newRow("kernel, sr0")
            << disk + QStringList{"DEVNAME=sr0", "DISK_MEDIA_CHANGE=1"} << true;
        // The same after udev has looked at the drive.
        QTest::newRow("udev, medium in")
            << disk + QStringList{"DEVNAME=/dev/sr1", "ID_CDROM=1", "ID_CDROM_MEDIA=1"} << true;
        QTest::newRow("udev, eject button")
            << disk + QStringList{"DEVNAME=/dev/sr0", "ID_CDROM=1", "DISK_EJECT_REQUEST=1"} << true;
        QTest::newRow("a hard disc")
            << disk + QStringList{"DEVNAME=sda", "DISK_MEDIA_CHANGE=1"} << false;
        QTest::newRow("a card reader")
            << disk + QStringList{"DEVNAME=/dev/sdb", "DISK_MEDIA_CHANGE=1"} << false;
        QTest::newRow("drive plugged in")
            << QStringList{"SUBSYSTEM=block", "DEVTYPE=disk", "ACTION=add", "DEVNAME=sr0"} << false;
        QTest::newRow("other change of the drive")
            << disk + QStringList{"DEVNAME=sr0", "ID_CDROM=1"} << false;
        QTest::newRow("partition")
            << QStringList{"SUBSYSTEM=block", "DEVTYPE=partition", "ACTION=change", "DEVNAME=sr0p1",
                           "DISK_MEDIA_CHANGE=1"}
            << false;
    }

    void kernelEvents() {
        auto [properties, mediaChange] = fetch<QStringList, bool>("properties", "mediaChange");
        UdevMediaWatcher::Properties p;
        for (const QString &kv : properties)
            p.insert(kv.section(u'=', 0, 0).toLatin1(), kv.section(u'=', 1).toLatin1());
        QCOMPARE(UdevMediaWatcher::isMediaChange(p), mediaChange);
    }

    void swappedByHand() {
        EngineRig rig;
        CDNotify notify(&rig.engine);
        QSignalSpy arrival(&notify, &CDNotify::Arrival);
        QSignalSpy removal(&notify, &CDNotify::RemoveComplete);
        // One disc out and another in between two looks: a removal, then an arrival.
        const QDir tray(ImageRecorder::trayFolder());
        const QString ejected = ImageRecorder::ejectedFolder();
        for (const QString &f : tray.entryList(QDir::Files))
            QVERIFY(QFile::rename(tray.filePath(f), ejected + "/" + f));
        ImageRecorder().moveTray(true); // a blank disc put in by hand, behind the engine's back
        QTRY_COMPARE_WITH_TIMEOUT(arrival.size(), 1, 5000);
        QCOMPARE(removal.size(), 1);
        QCOMPARE(removal.first().first().toString(), QStringLiteral("IMG"));
        QCOMPARE(rig.engine.DiscStatus(), 0);
    }

    void quietWhileNothingChanges() {
        EngineRig rig;
        CDNotify notify(&rig.engine);
        QSignalSpy arrival(&notify, &CDNotify::Arrival);
        QSignalSpy removal(&notify, &CDNotify::RemoveComplete);
        rig.engine.MoveTray(true); // closing a loaded tray changes nothing
        // Queued: a MoveTray made inside a write event never runs media events nested in it.
        rig.engine.MoveTray(false);
        QCOMPARE(removal.size(), 0);
        QTRY_COMPARE(removal.size(), 1);
        QCOMPARE(arrival.size(), 0); // anything the first call queued has come by now
    }
};

QTEST_GUILESS_MAIN(tst_MediaNotify)
#include "tst_medianotify.moc"
