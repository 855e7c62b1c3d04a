#include "BurnDrive.h"

#include <QThread>

std::unique_ptr<BurnDrive> BurnDrive::grab(const QString &address, bool load, QString *why) {
    if (!BurnLibrary::ensureStarted()) {
        if (why)
            *why = QStringLiteral("libburn could not be started");
        return nullptr;
    }
    BurnLibrary::takeMessages(); // what is queued now belongs to earlier work
    burn::burn_drive_info *infos = nullptr;
    QByteArray adr = address.toLocal8Bit();
    const int r = burn::burn_drive_scan_and_grab(&infos, adr.data(), load ? 1 : 0);
    if (r <= 0 || !infos || !infos[0].drive) {
        if (infos)
            burn::burn_drive_info_free(infos);
        if (why) {
            const QStringList said = BurnLibrary::takeMessages();
            *why = said.isEmpty() ? (r == 0 ? QStringLiteral("no drive at this address")
                                            : QStringLiteral("the drive can't be opened"))
                                  : said.join(QStringLiteral("; "));
        }
        return nullptr;
    }
    return std::unique_ptr<BurnDrive>(new BurnDrive(infos, address));
}

bool BurnDrive::isPseudo() const {
    return burn::burn_drive_get_drive_role(get()) != 1;
}

void BurnDrive::cancelAndWait() {
    burn::burn_drive *d = get();
    if (burn::burn_drive_get_status(d, nullptr) == burn::BURN_DRIVE_IDLE)
        return;
    burn::burn_drive_cancel(d);
    // Blanking and formatting can't be interrupted: those are waited for to their end.
    while (burn::burn_drive_get_status(d, nullptr) != burn::BURN_DRIVE_IDLE)
        QThread::msleep(50);
}

BurnDrive::~BurnDrive() {
    cancelAndWait();
    burn::burn_drive_release(get(), m_eject ? 1 : 0);
    burn::burn_drive_info_forget(&m_infos[0], 0);
    burn::burn_drive_info_free(m_infos);
}
