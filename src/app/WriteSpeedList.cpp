#include "WriteSpeedList.h"
#include "base/Checked.h"
#include "base/Conversions.h"
#include "base/Format.h"

bool WriteSpeedList::usesDvdSpeeds(qint32 mediaType) {
    return !(mediaType == 253 || mediaType == 254 || mediaType == 255);
}

QList<WriteSpeedList::Entry> WriteSpeedList::entries(qint32 mediaType, qint32 maxWriteSpeedKBS) {
    QList<Entry> list;
    const Long lngMaxWriteSpeedKBS = maxWriteSpeedKBS;
    if (lngMaxWriteSpeedKBS < 1) {
        list.append({QStringLiteral("Default"), QVariant()});
        return list;
    }
    Long lngSpeedKBS = lngMaxWriteSpeedKBS;
    if (usesDvdSpeeds(mediaType)) {
        // Half a DVD speed (1380 kB/s) per step down.
        do {
            const double dblDisplaySpeed = double(lngSpeedKBS) / 1380;
            list.append({Format(dblDisplaySpeed, QStringLiteral("#.0")) + QStringLiteral("x"),
                         QVariant(qint32(lngSpeedKBS))});
            lngSpeedKBS -= 690;
        } while (!(lngSpeedKBS < 1380));
    } else {
        // The text counts 150 kB/s to the speed while the item data keeps the 176 it was
        // derived from; the two are kept apart on purpose.
        do {
            double dblDisplaySpeed = double(lngSpeedKBS) / 176;
            if (dblDisplaySpeed > 0 && dblDisplaySpeed < 2)
                dblDisplaySpeed = 1;
            const qint64 shownKBS = qint64(RoundHalfEven(dblDisplaySpeed)) * 150;
            list.append({Format(dblDisplaySpeed, QStringLiteral("#")) + QStringLiteral("x ") +
                             QString::number(shownKBS) + QStringLiteral(" kB/s"),
                         QVariant(qint32(lngSpeedKBS))});
            lngSpeedKBS -= lngSpeedKBS >= 1200 ? 704 : 352;
        } while (!(lngSpeedKBS <= 0));
    }
    return list;
}
