#pragma once

#include "EngineRig.h"

#include "engine/copier/BlankDiscHandler.h"
#include "engine/copier/CD2CD.h"

#include <QtCore>

// The copier on two Image Recorders: the rig's job is written on the second one (255:1:0), the
// first (255:0:0) takes copies. Records how each copier job ends and every PercentDone.
struct CopierRig : BlankDiscHandler {
    static constexpr qint32 First = 0xff0000;
    static constexpr qint32 Second = 0xff0100;

    explicit CopierRig(EngineRig::Job job = EngineRig::Data, const QStringList &settings = {});
    // Files "\f0.bin"... made in `folder`.
    void addFiles(const QString &folder, int count, int size);
    // Whether the job ended well (else `failure` says why).
    bool waitForJob();
    static QString trayData(qint32 unit);
    // A user at a copy on one drive closes the tray on a blank disc.
    void blankDiscWanted(qint32 address, const QString &) override { copier.CloseTray(address); }
    EngineRig rig;
    CD2CD copier{&rig.engine};
    QList<double> percents;
    QString failure;
    int endings = 0;
};
