#pragma once

#include <QString>

// The small calls into the operating system that the windows use. Lives on any thread; keeps
// no state.
class SystemCalls
{
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
};
