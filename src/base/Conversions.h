#pragma once

#include <QString>
#include <QtGlobal>

// Integer conversions with banker's rounding; too large for the target width throws error 6,
// unreadable text throws error 13, as the old runtime did.

// Rounds to the nearest whole number, halves to the even neighbour (2.5 -> 2, 3.5 -> 4).
double RoundHalfEven(double value);

qint16 CInt(double value);
qint16 CInt(const QString &text);
qint32 CLng(double value);
qint32 CLng(const QString &text);
double CDbl(const QString &text);
// "True"/"False" in any case, or a number (0 is False).
bool CBool(const QString &text);
QString CStr(bool value);

// The leading number of a text: blanks are skipped, reading stops at the first character that
// can't continue a number; no number gives 0. Never raises.
double Val(const QString &text);

// True when the text as a whole reads as a number (blanks around it allowed).
bool IsNumeric(const QString &text);
