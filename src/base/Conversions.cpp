#include "Conversions.h"
#include "RuntimeError.h"

#include <cmath>
#include <limits>
#include <optional>

double RoundHalfEven(double value) {
    if (!std::isfinite(value))
        return value;
    const double floor = std::floor(value);
    const double diff = value - floor;
    if (diff < 0.5)
        return floor;
    if (diff > 0.5)
        return floor + 1.0;
    return std::fmod(floor, 2.0) == 0.0 ? floor : floor + 1.0;
}

namespace {

template<typename T> T toChecked(double value) {
    if (!std::isfinite(value))
        throw RuntimeError(RuntimeError::Overflow);
    const double rounded = RoundHalfEven(value);
    if (rounded < double(std::numeric_limits<T>::min()) ||
        rounded > double(std::numeric_limits<T>::max()))
        throw RuntimeError(RuntimeError::Overflow);
    return static_cast<T>(rounded);
}

// A whole text as a number: decimal with optional sign, fraction and exponent, or &H / &O.
std::optional<double> parseNumber(const QString &text) {
    const QString t = text.trimmed();
    if (t.isEmpty())
        return std::nullopt;
    if (t.startsWith(QLatin1String("&H"), Qt::CaseInsensitive) ||
        t.startsWith(QLatin1String("&O"), Qt::CaseInsensitive)) {
        bool ok = false;
        const int base = t.at(1).toUpper() == QLatin1Char('H') ? 16 : 8;
        const qlonglong v = t.mid(2).toLongLong(&ok, base);
        if (!ok)
            return std::nullopt;
        return double(v);
    }
    for (QChar c : t) {
        if (!(c.isDigit() || c == u'.' || c == u'+' || c == u'-' || c == u'e' || c == u'E'))
            return std::nullopt;
    }
    bool ok = false;
    const double v = t.toDouble(&ok);
    if (!ok)
        return std::nullopt;
    return v;
}

double numberOrMismatch(const QString &text) {
    const auto n = parseNumber(text);
    if (!n)
        throw RuntimeError(RuntimeError::TypeMismatch);
    return *n;
}

} // namespace

qint16 CInt(double value) {
    return toChecked<qint16>(value);
}
qint16 CInt(const QString &text) {
    return toChecked<qint16>(numberOrMismatch(text));
}
qint32 CLng(double value) {
    return toChecked<qint32>(value);
}
qint32 CLng(const QString &text) {
    return toChecked<qint32>(numberOrMismatch(text));
}
double CDbl(const QString &text) {
    return numberOrMismatch(text);
}

bool CBool(const QString &text) {
    const QString t = text.trimmed();
    if (t.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0)
        return true;
    if (t.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0)
        return false;
    return numberOrMismatch(t) != 0.0;
}

QString CStr(bool value) {
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

bool IsNumeric(const QString &text) {
    return parseNumber(text).has_value();
}

double Val(const QString &text) {
    // Blanks, tabs and line feeds are skipped anywhere, as the classic Val does.
    QString s;
    s.reserve(text.size());
    for (QChar c : text) {
        if (c != u' ' && c != u'\t' && c != u'\n' && c != u'\r')
            s.append(c);
    }
    if (s.startsWith(QLatin1String("&H"), Qt::CaseInsensitive) ||
        s.startsWith(QLatin1String("&O"), Qt::CaseInsensitive)) {
        const int base = s.at(1).toUpper() == QLatin1Char('H') ? 16 : 8;
        const QLatin1String digits(base == 16 ? "0123456789abcdefABCDEF" : "01234567");
        qsizetype end = 2;
        while (end < s.size() && QString(digits).contains(s.at(end)))
            ++end;
        bool ok = false;
        const qlonglong v = s.mid(2, end - 2).toLongLong(&ok, base);
        return ok ? double(v) : 0.0;
    }
    qsizetype i = 0;
    if (i < s.size() && (s.at(i) == u'+' || s.at(i) == u'-'))
        ++i;
    const qsizetype digitsStart = i;
    while (i < s.size() && s.at(i).isDigit())
        ++i;
    if (i < s.size() && s.at(i) == u'.') {
        ++i;
        while (i < s.size() && s.at(i).isDigit())
            ++i;
    }
    if (i == digitsStart || (i == digitsStart + 1 && s.at(digitsStart) == u'.'))
        return 0.0;
    qsizetype end = i;
    if (i < s.size() &&
        (s.at(i) == u'e' || s.at(i) == u'E' || s.at(i) == u'd' || s.at(i) == u'D')) {
        qsizetype j = i + 1;
        if (j < s.size() && (s.at(j) == u'+' || s.at(j) == u'-'))
            ++j;
        const qsizetype expDigits = j;
        while (j < s.size() && s.at(j).isDigit())
            ++j;
        if (j > expDigits)
            end = j;
    }
    QString number = s.left(end);
    number.replace(QLatin1Char('d'), QLatin1Char('e'));
    number.replace(QLatin1Char('D'), QLatin1Char('e'));
    return number.toDouble();
}
