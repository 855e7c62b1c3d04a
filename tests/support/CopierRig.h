#pragma once

#include "EngineRig.h"

#include "engine/copier/BlankDiscHandler.h"
#include "engine/copier/CD2CD.h"

#include <QList>
#include <QString>

// The copier on two Image Recorders: the rig's job is written on the second one (255:1:0), the
// first (255:0:0) takes copies. Records how each copier job ends and every PercentDone.
struct CopierRig : BlankDiscHandler {
    static constexpr qint32 First = 0xff0000;
    static constexpr qint32 Second = 0xff0100;

    explicit CopierRig(EngineRig::Job job = EngineRig::Data, const QStringList &settings = {});

    // Puts `count` files of `size` bytes ("\f0.bin"...), made in `folder`, into the rig's image.
    void addFiles(const QString &folder, int count, int size);
    // Waits for the copier's job to end; whether it ended well (else `failure` says why).
    bool waitForJob();
    // The data file of the disc in a recorder's tray (unit 0 or 1).
    static QString trayData(qint32 unit);
    // Answers a copy on one drive as a user does: the tray closes on a blank disc.
    void blankDiscWanted(qint32 address, const QString &) override { copier.CloseTray(address); }

    EngineRig rig;
    CD2CD copier{&rig.engine};
    QList<double> percents;
    QString failure;
    int endings = 0;
};
