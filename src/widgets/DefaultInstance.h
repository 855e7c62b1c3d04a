#pragma once

#include <QPointer>

// The single default instance of a window: made on first use, gone when it unloads (the window
// deletes itself on close), made anew on the next use.
template<typename T> class DefaultInstance {
public:
    static T *get() {
        if (!slot())
            slot() = new T();
        return slot();
    }
    static bool exists() { return !slot().isNull(); }
    static T *peek() { return slot(); }
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
