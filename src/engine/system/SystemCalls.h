#pragma once

#include <QString>
#include <functional>

// The small calls into the operating system that the windows use. Lives on any thread; keeps
// no state.
class SystemCalls {
public:
    static bool FileExists(const QString &path);
    // Kilobytes in use on the volume whose root is given. A drive's root is its letter, a colon
    // and a backslash; a disc that is not mounted as a volume (the Image Recorder's, or a
    // blank one) counts 0. A folder path counts the volume that holds it.
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
};
