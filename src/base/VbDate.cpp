#include "VbDate.h"

#include <cmath>

namespace {
const QDate epoch(1899, 12, 30);
constexpr qint64 msPerDay = 24LL * 60 * 60 * 1000;
} // namespace

VbDate VbDate::fromDateTime(const QDateTime &dateTime) {
    const QDateTime local = dateTime.toLocalTime();
    const qint64 wholeDays = epoch.daysTo(local.date());
    const qint64 ms = local.time().msecsSinceStartOfDay();
    return VbDate{double(wholeDays) + double(ms) / double(msPerDay)};
}

QDateTime VbDate::toDateTime() const {
    // Negative serials count days back but the time forward, as the classic date type does.
    const double whole = std::trunc(days);
    const double fraction = std::fabs(days - whole);
    qint64 ms = qint64(std::llround(fraction * double(msPerDay)));
    qint64 dayCount = qint64(whole);
    if (ms >= msPerDay) {
        ms -= msPerDay;
        dayCount += days < 0 ? -1 : 1;
    }
    return QDateTime(epoch.addDays(dayCount), QTime::fromMSecsSinceStartOfDay(int(ms)));
}

VbDate Now() {
    return VbDate::fromDateTime(QDateTime::currentDateTime());
}
