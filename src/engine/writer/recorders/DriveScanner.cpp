#include "DriveScanner.h"

#include "burn/BurnRecorder.h"
#include "image/ImageRecorder.h"

#include <QLoggingCategory>
#include <QMutex>

#include <atomic>

Q_LOGGING_CATEGORY(lcDrives, "tessaly.drives")

namespace {
QMutex stateMutex;
QStringList pseudoDrives;
QStringList notes;
std::atomic<bool> imageRecorderEnabledFlag{true};
} // namespace

std::vector<std::unique_ptr<Recorder>> DriveScanner::scan() {
    std::vector<std::unique_ptr<Recorder>> drives;
    QStringList noticed;
    for (BurnRecorder::Inquiry &q : BurnRecorder::scanMachine(&noticed)) {
        qCInfo(lcDrives).noquote() << "Drive" << q.address << q.vendor << q.product
                                   << (q.writes ? "records" : "reads only");
        drives.push_back(std::make_unique<BurnRecorder>(std::move(q)));
    }
    for (const QString &line : noticed)
        qCWarning(lcDrives).noquote() << line;
    QStringList pseudo;
    {
        QMutexLocker lock(&stateMutex);
        notes = noticed;
        pseudo = pseudoDrives;
    }
    for (const QString &path : pseudo) {
        BurnRecorder::Inquiry q;
        q.address = QStringLiteral("stdio:") + path;
        q.vendor = QStringLiteral("libburn");
        q.product = QStringLiteral("File drive");
        q.writes = true;
        q.revision = QStringLiteral("FILE"); // no firmware: the line says what it is
        drives.push_back(std::make_unique<BurnRecorder>(std::move(q)));
    }
    // The Image Recorder, which every machine has, is always listed last.
    if (imageRecorderEnabledFlag) {
        drives.push_back(std::make_unique<ImageRecorder>());
        if (ImageRecorder::secondDriveEnabled())
            drives.push_back(std::make_unique<ImageRecorder>(1));
    }
    return drives;
}

void DriveScanner::addPseudoDrive(const QString &path) {
    QMutexLocker lock(&stateMutex);
    pseudoDrives << path;
}

void DriveScanner::clearPseudoDrives() {
    QMutexLocker lock(&stateMutex);
    pseudoDrives.clear();
}

QStringList DriveScanner::lastNotes() {
    QMutexLocker lock(&stateMutex);
    return notes;
}

void DriveScanner::setImageRecorderEnabled(bool enabled) {
    imageRecorderEnabledFlag = enabled;
}

bool DriveScanner::imageRecorderEnabled() {
    return imageRecorderEnabledFlag;
}
