#pragma once

#include "base/RuntimeError.h"

#include <functional>

// The number of the error `step` raises; 0 when it raises none.
inline int errorOf(const std::function<void()> &step) {
    try {
        step();
    } catch (const RuntimeError &e) {
        return e.number();
    }
    return 0;
}
