#pragma once

#include <QString>
#include <functional>
#include <optional>

// The small calls into the operating system that the windows use. Lives on any thread; keeps
// no state.
class SystemCalls {
public:
    static bool FileExists(const QString &path);
    // Kilobytes in use on the volume whose root is given. A drive's root is its letter, a colon
    // and a backslash; a disc the system has not mounted counts what its drive says is taken
    // (0 for a blank one, nothing for a drive no engine knows). A folder path counts the volume
    // that holds it.
    static double DiskSizeKB(const QString &rootPath);
    // The login name of the user running the program; empty when it can't be found.
    static QString UserName();
    // The machine's host name; empty when it can't be found.
    static QString ComputerName();

    // Ends the session and switches the computer off: a power-off request to logind over the
    // system bus, which asks the user's polkit agent where a right is missing. Returns whether
    // the request was accepted. Tests install a replacement so that nothing is ever powered off.
    static bool WindowsExit();
    using PowerOffHandler = std::function<bool()>;
    static void setPowerOffHandler(PowerOffHandler handler);

    // The label, file system and serial number of the disc in a drive, given its root ("sr0:\\",
    // "IMG:\\"): read from the newest session's volume descriptors through the drive itself, or
    // through libblkid when the system has the disc mounted. Empty, empty and 0 for a drive
    // without a readable volume (no disc, a blank one); an audio disc reads "Audio CD".
    static QString GetVolumeName(const QString &rootPath);
    static QString GetFileSystem(const QString &rootPath);
    static qint32 VolumeSerialNumber(const QString &rootPath);

    // How the engine lets the calls above read the disc of one of its drives, unmounted or
    // virtual: where its newest session starts, its mode (0 audio) and a block reader.
    struct DiscAccess {
        qint32 lastSessionStart = -1;
        qint32 lastSessionMode = -1;
        qint32 usedBlocks = 0; // 2048-byte blocks the sessions take, gaps between them included
        std::function<bool(qint32 lba, qint32 count, char *buffer)> read;
    };
    // Answers nothing while the drive can't be read (a job holds it, no disc).
    using DiscAccessor = std::function<std::optional<DiscAccess>()>;
    // Registered per drive letter by its owner; a later owner of the same letter replaces an
    // earlier one, and an owner takes back only its own.
    static void setDiscAccessor(const QString &letter, const void *owner, DiscAccessor accessor);
    static void forgetDiscAccessors(const void *owner);
};
