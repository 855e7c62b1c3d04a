#pragma once

#include <QString>

// The options files, read and written key by key. Reads never fail: a missing or unreadable
// file or key gives the default. A value comes back cut at 254 characters.
QString sGetINI(const QString &sINIFile, const QString &sSection, const QString &sKey,
                const QString &sDefault);

// Writes the value as it is passed, line breaks included, and then replaces every carriage
// return and line feed in the caller's variable with a blank. A failed write is silent.
void writeINI(const QString &sINIFile, const QString &sSection, const QString &sKey,
              QString &sValue);
