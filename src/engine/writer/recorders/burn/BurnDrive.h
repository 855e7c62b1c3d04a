#pragma once

#include "BurnLibrary.h"

#include <QString>

#include <memory>

// One drive grabbed through libburn, by its address ("/dev/sr0", "stdio:/path"). Destroying it
// waits until the drive is idle and releases it, whatever happened before. Used by one thread
// at a time.
class BurnDrive {
public:
    // Nullptr when the drive can't be grabbed; *why then says what libburn reported.
    static std::unique_ptr<BurnDrive> grab(const QString &address, bool load, QString *why);
    ~BurnDrive();
    BurnDrive(const BurnDrive &) = delete;
    BurnDrive &operator=(const BurnDrive &) = delete;

    burn::burn_drive *get() const { return m_infos[0].drive; }
    const burn::burn_drive_info &info() const { return m_infos[0]; }
    QString address() const { return m_address; }
    bool isPseudo() const;
    // Ejects the medium when the drive is released.
    void ejectOnRelease() { m_eject = true; }
    // Cancels what the drive does and waits until it is idle.
    void cancelAndWait();

private:
    BurnDrive(burn::burn_drive_info *infos, const QString &address)
        : m_infos(infos)
        , m_address(address) {}
    burn::burn_drive_info *m_infos;
    QString m_address;
    bool m_eject = false;
};
