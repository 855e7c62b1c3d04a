#pragma once

#include <QString>

// The small calls into the operating system that the windows use. Lives on any thread; keeps
// no state.
class SystemCalls
{
public:
    static bool FileExists(const QString &path);
    // The login name of the user running the program; empty when it can't be found.
    static QString UserName();
    // The machine's host name; empty when it can't be found.
    static QString ComputerName();
};
