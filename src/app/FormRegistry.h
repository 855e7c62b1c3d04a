#pragma once

#include "FrameServices.h"
#include "widgets/DefaultInstance.h"

#include <QString>
#include <QWidget>
#include <functional>

// The windows and procedures the frame's commands reach in the parts of the program above it,
// by name ("frmBurn", "ToolMenuSaveAsIso"). Each window library registers its own when the
// program starts, so the frame's dispatch is complete while it knows none of them. The frame
// hands in the context every window is made with. UI thread.
class FormRegistry {
public:
    using Opener = std::function<void(const WindowContext &context)>;
    // Where a registered window goes: into the frame's document area, or over the frame.
    enum class Placement { Child, Dialog };

    static void add(const QString &name, Opener opener);
    // An opener that only needs the frame as the owner of what it shows.
    static void add(const QString &name, std::function<void(QWidget *owner)> opener);
    // A window with one open instance: the first command makes it with the context (and runs
    // its Form_Load once placed), a second brings the open one to the front.
    template<typename T> static void addWindow(const QString &name, Placement placement);
    static void remove(const QString &name);
    static bool contains(const QString &name);

    // Runs the opener of a name with the frame's context; false when no part of the program
    // answers to it.
    static bool open(const QString &name);
    static bool open(const QString &name, QWidget *owner) {
        Q_UNUSED(owner);
        return open(name);
    }

    // The open instance of a window registered with addWindow, or null.
    static QWidget *find(const QString &name);

    // Set by the frame once its engine and notifier stand; cleared when it goes.
    static void setContext(const WindowContext &context);
    static const WindowContext &context();

    // Shows a window and makes it the active one, in the document area or as a top window.
    static void bringToFront(QWidget *window);

private:
    static void addWithFinder(const QString &name, Opener opener, std::function<QWidget *()> find);
};

template<typename T> void FormRegistry::addWindow(const QString &name, Placement placement) {
    addWithFinder(
        name,
        [placement](const WindowContext &context) {
            if (T *open = DefaultInstance<T>::peek()) {
                bringToFront(open);
                return;
            }
            T *window = DefaultInstance<T>::get(context);
            if (placement == Placement::Child && context.frame)
                context.frame->addChild(window);
            if constexpr (requires { window->Form_Load(); })
                window->Form_Load();
            bringToFront(window);
        },
        [] { return static_cast<QWidget *>(DefaultInstance<T>::peek()); });
}
