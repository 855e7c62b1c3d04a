#pragma once

#include <QDateTime>

// A date and time as floating-point days since 30 December 1899, local time; the fraction is
// the time of day. A difference of two is a duration in the same unit.
struct VbDate {
    double days = 0.0;

    static VbDate fromDateTime(const QDateTime &dateTime);
    QDateTime toDateTime() const;

    friend VbDate operator-(VbDate a, VbDate b) { return VbDate{a.days - b.days}; }
    friend VbDate operator+(VbDate a, VbDate b) { return VbDate{a.days + b.days}; }
    friend bool operator==(VbDate a, VbDate b) = default;
};

VbDate Now();
