#pragma once

#include <QPointer>
#include <utility>

// The single default instance of a window: made on first use, gone when it unloads (the window
// deletes itself on close), made anew on the next use. The guarded pointer here is the one
// place that knows whether the window is open.
template<typename T> class DefaultInstance {
public:
    // The open instance, or a new one made with these arguments.
    template<typename... Args> static T *get(Args &&...args) {
        if (!slot())
            slot() = new T(std::forward<Args>(args)...);
        return slot();
    }
    static bool exists() { return !slot().isNull(); }
    static T *peek() { return slot(); }
    // A window that has closed and waits for its deletion no longer counts as open.
    static void release(const T *window) {
        if (slot() == window)
            slot() = nullptr;
    }
    static void unload() {
        // A window whose close handler refuses (Cancel) stays loaded.
        if (slot() && slot()->close())
            delete slot().data();
    }

private:
    static QPointer<T> &slot() {
        static QPointer<T> instance;
        return instance;
    }
};
