#pragma once

#include "VbDate.h"

#include <QString>

// Formats a number with a picture such as "###,##0.00": 0 forces a digit, # drops a leading
// zero, ',' groups thousands, '.' marks decimals, other characters are copied. Halves round
// away from zero.
QString Format(double value, const QString &pattern);

// Date to text by a pattern of YYYY, YY, MM, DD, hh, mm (minutes after hh), ss, in any case;
// other characters stand as themselves. A duration formats as a time of day.
QString Format(VbDate date, const QString &pattern);
