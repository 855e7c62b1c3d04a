#include "ImageFaults.h"

#include "base/IniFile.h"

namespace {
const QString Section = QStringLiteral("Image Recorder");

qint64 blockSetting(const QString &file, const char *key) {
    bool ok = false;
    const qint64 v =
        IniFile::read(file, Section, QString::fromLatin1(key), QString()).trimmed().toLongLong(&ok);
    return ok && v >= 0 ? v : -1;
}

// A drive code of the failure table; anything else is no failure asked for.
qint32 codeSetting(const QString &file, const char *key) {
    bool ok = false;
    const qint32 v =
        IniFile::read(file, Section, QString::fromLatin1(key), QString()).trimmed().toInt(&ok);
    return ok && v >= 1000 && v <= 1055 ? v : 0;
}
} // namespace

ImageFaults ImageFaults::fromSettings(const QString &settingsFile) {
    ImageFaults f;
    f.m_file = settingsFile;
    f.writeErrorAt = blockSetting(settingsFile, WriteErrorKey);
    f.unreadableSourceAt = blockSetting(settingsFile, UnreadableKey);
    f.mediumRemovedAt = blockSetting(settingsFile, RemovedKey);
    if (const qint32 code = codeSetting(settingsFile, "FailDriveCode"))
        f.writeErrorCode = code;
    f.writeErrorSense =
        IniFile::read(settingsFile, Section, QStringLiteral("FailSense"), QString()).trimmed();
    if (f.writeErrorSense.isEmpty())
        f.writeErrorSense = QStringLiteral("3/0C/00 WRITE ERROR");
    f.eraseErrorCode = codeSetting(settingsFile, EraseKey);
    f.closeErrorCode = codeSetting(settingsFile, CloseKey);
    return f;
}

qint64 ImageFaults::nextWriteFault(qint64 sent) const {
    qint64 next = -1;
    for (qint64 at : {writeErrorAt, unreadableSourceAt, mediumRemovedAt}) {
        if (at >= sent && (next < 0 || at < next))
            next = at;
    }
    return next;
}

void ImageFaults::consume(const char *key) const {
    IniFile::write(m_file, Section, QString::fromLatin1(key), QString());
}
