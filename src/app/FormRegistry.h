#pragma once

#include <QString>
#include <QStringList>
#include <functional>

class QWidget;

// The windows and procedures the frame's commands reach in other parts of the program, by
// name ("frmBurn", "ToolMenuSaveAsIso"). Each window's library adds its opener when it is
// linked in, so the frame's dispatch is complete while it knows none of them. UI thread.
class FormRegistry {
public:
    // `owner` is the frame that asked.
    using Opener = std::function<void(QWidget *owner)>;

    static void add(const QString &name, Opener opener);
    static void remove(const QString &name);
    static bool contains(const QString &name);
    // Runs the opener of a name; false when no part of the program answers to it.
    static bool open(const QString &name, QWidget *owner);

    // The open window of a name (its object name), or null.
    static QWidget *find(const QString &name);
};
