#pragma once

#include <QString>
#include <QtGlobal>

// The conversions the program's numeric rules rest on: a float becomes an integer by rounding
// half to even, and a result outside 16 or 32 bits raises Overflow (6). A text that is no
// number raises Type mismatch (13).

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
