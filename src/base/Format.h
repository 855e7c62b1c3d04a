#pragma once

#include "VbDate.h"

#include <QString>

// Number to text by a pattern: 0 a digit always shown, # a digit shown only if significant,
// a point the decimal point, a comma between digit places the thousands separator, any other
// character itself. Rounds half away from zero at the last decimal place of the pattern.
QString Format(double value, const QString &pattern);

// Date to text by a pattern of YYYY, YY, MM, DD, hh, mm (minutes after hh), ss, in any case;
// other characters stand as themselves. A duration formats as a time of day.
QString Format(VbDate date, const QString &pattern);
