#include "Format.h"

#include <QList>
#include <cmath>
#include <cstdio>

namespace {

struct Decimal {
    QString integer;  // without leading zeros; empty for zero
    QString fraction; // exactly the requested number of digits
};

// |value| rounded half away from zero to `decimals` places, as decimal digits. Fifteen
// significant digits first, so that 1.005 rounds as the 1.005 a person typed.
Decimal toDecimal(double value, int decimals) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.14e", std::fabs(value));
    const QString text = QString::fromLatin1(buffer);
    const qsizetype e = text.indexOf(u'e');
    QString digits = text.left(e);
    digits.remove(u'.');
    const int exponent = text.mid(e + 1).toInt();

    // digits * 10^(exponent + 1 - digits.size()): pad so that the point lies inside.
    int pointPos = exponent + 1; // digits before the point
    if (pointPos < 0) {
        digits.prepend(QString(-pointPos, u'0'));
        pointPos = 0;
    }
    const int keep = pointPos + decimals;
    if (digits.size() < keep + 1)
        digits.append(QString(keep + 1 - digits.size(), u'0'));
    bool roundUp = digits.at(keep) >= u'5';
    digits.truncate(keep);
    for (int i = keep - 1; roundUp && i >= 0; --i) {
        if (digits.at(i) == u'9') {
            digits[i] = u'0';
        } else {
            digits[i] = QChar(digits.at(i).unicode() + 1);
            roundUp = false;
        }
    }
    if (roundUp) {
        digits.prepend(u'1');
        ++pointPos;
    }
    Decimal d;
    d.integer = digits.left(pointPos);
    d.fraction = digits.mid(pointPos);
    while (d.integer.startsWith(u'0'))
        d.integer.remove(0, 1);
    return d;
}

bool isDigitPlace(QChar c) {
    return c == u'0' || c == u'#';
}

QString groupThousands(const QString &digits) {
    QString out;
    for (qsizetype i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0)
            out.append(u',');
        out.append(digits.at(i));
    }
    return out;
}

} // namespace

QString Format(double value, const QString &pattern) {
    const qsizetype point = pattern.indexOf(u'.');
    QString intPattern = point < 0 ? pattern : pattern.left(point);
    const QString fracPattern = point < 0 ? QString() : pattern.mid(point + 1);

    // A comma with a digit place on both sides asks for thousands separators.
    bool grouping = false;
    QString cleaned;
    for (qsizetype i = 0; i < intPattern.size(); ++i) {
        const QChar c = intPattern.at(i);
        if (c == u',') {
            const bool digitLeft = i > 0 && isDigitPlace(intPattern.at(i - 1));
            const bool digitRight = i + 1 < intPattern.size() && isDigitPlace(intPattern.at(i + 1));
            if (digitLeft && digitRight) {
                grouping = true;
                continue;
            }
        }
        cleaned.append(c);
    }
    intPattern = cleaned;

    int decimals = 0;
    for (QChar c : fracPattern) {
        if (isDigitPlace(c))
            ++decimals;
    }

    const Decimal d = toDecimal(value, decimals);
    bool nonZero = !d.integer.isEmpty();
    for (QChar c : d.fraction)
        nonZero = nonZero || c != u'0';
    const bool negative = value < 0 && nonZero;

    // Integer part, right to left: each place takes the next digit; the leftmost place takes
    // all digits that remain. Literals stand only where a digit or a 0 place lies to their left.
    QString intDigits = d.integer;
    QList<qsizetype> places;
    for (qsizetype i = 0; i < intPattern.size(); ++i) {
        if (isDigitPlace(intPattern.at(i)))
            places.append(i);
    }
    const qsizetype firstZero = intPattern.indexOf(u'0');
    QString intOut;
    qsizetype remaining = intDigits.size();
    for (qsizetype i = intPattern.size() - 1; i >= 0; --i) {
        const QChar c = intPattern.at(i);
        if (isDigitPlace(c)) {
            const bool leftmost = !places.isEmpty() && i == places.first();
            if (leftmost && remaining > 0) {
                intOut.prepend(intDigits.left(remaining));
                remaining = 0;
            } else if (remaining > 0) {
                intOut.prepend(intDigits.at(remaining - 1));
                --remaining;
            } else if (c == u'0' || (firstZero >= 0 && i > firstZero)) {
                // Places to the right of a 0 place show zeros too: "0#" of 0 is "00".
                intOut.prepend(u'0');
            }
        } else {
            bool zeroLeft = false;
            for (qsizetype j = 0; j < i; ++j) {
                if (intPattern.at(j) == u'0')
                    zeroLeft = true;
            }
            if (remaining > 0 || zeroLeft || places.isEmpty() || i < places.first())
                intOut.prepend(c);
        }
    }
    if (places.isEmpty() && remaining > 0)
        intOut.append(intDigits);
    if (grouping) {
        // Separators go between the digits alone; literals of the pattern are kept apart.
        QString digitsOnly;
        for (QChar c : intOut) {
            if (c.isDigit())
                digitsOnly.append(c);
        }
        if (digitsOnly.size() == intOut.size())
            intOut = groupThousands(digitsOnly);
    }

    QString fracOut;
    if (point >= 0) {
        fracOut.append(u'.');
        // Trailing # places drop trailing zeros.
        int lastSignificant = -1;
        for (int k = 0; k < d.fraction.size(); ++k) {
            if (d.fraction.at(k) != u'0')
                lastSignificant = k;
        }
        int digitIndex = 0;
        for (QChar c : fracPattern) {
            if (isDigitPlace(c)) {
                const QChar digit = d.fraction.at(digitIndex);
                if (c == u'0' || digitIndex <= lastSignificant)
                    fracOut.append(digit);
                ++digitIndex;
            } else {
                fracOut.append(c);
            }
        }
    }
    return (negative ? QStringLiteral("-") : QString()) + intOut + fracOut;
}

QString Format(VbDate date, const QString &pattern) {
    const QDateTime dt = date.toDateTime();
    QString out;
    bool afterHour = false;
    qsizetype i = 0;
    auto run = [&](QChar c) {
        qsizetype n = 0;
        while (i + n < pattern.size() && pattern.at(i + n).toLower() == c)
            ++n;
        return n;
    };
    auto two = [](int v) { return QStringLiteral("%1").arg(v, 2, 10, QLatin1Char('0')); };
    while (i < pattern.size()) {
        const QChar c = pattern.at(i).toLower();
        qsizetype n = 0;
        if (c == u'y' && (n = run(u'y')) >= 4) {
            out += QStringLiteral("%1").arg(dt.date().year(), 4, 10, QLatin1Char('0'));
        } else if (c == u'y' && n >= 2) {
            out += two(dt.date().year() % 100);
        } else if (c == u'm') {
            n = run(u'm');
            const int v = afterHour ? dt.time().minute() : dt.date().month();
            out += n >= 2 ? two(v) : QString::number(v);
            afterHour = false;
        } else if (c == u'd') {
            n = run(u'd');
            out += n >= 2 ? two(dt.date().day()) : QString::number(dt.date().day());
        } else if (c == u'h') {
            n = run(u'h');
            out += n >= 2 ? two(dt.time().hour()) : QString::number(dt.time().hour());
            afterHour = true;
        } else if (c == u'n') {
            n = run(u'n');
            out += n >= 2 ? two(dt.time().minute()) : QString::number(dt.time().minute());
        } else if (c == u's') {
            n = run(u's');
            out += n >= 2 ? two(dt.time().second()) : QString::number(dt.time().second());
        } else {
            n = 1;
            out += pattern.at(i);
        }
        i += qMax<qsizetype>(n, 1);
    }
    return out;
}
