#include "modIniFunc.h"
#include "base/IniFile.h"

QString sGetINI(const QString &sINIFile, const QString &sSection, const QString &sKey,
                const QString &sDefault) {
    // The read fills a buffer of 255 places of which the last holds the terminator.
    constexpr qsizetype bufferSize = 255;
    return IniFile::read(sINIFile, sSection, sKey, sDefault).left(bufferSize - 1);
}

void writeINI(const QString &sINIFile, const QString &sSection, const QString &sKey,
              QString &sValue) {
    const QString local = sValue;
    for (qsizetype i = 0; i < sValue.size(); ++i) {
        if (sValue.at(i) == u'\r' || sValue.at(i) == u'\n')
            sValue[i] = u' ';
    }
    IniFile::write(sINIFile, sSection, sKey, local);
}
