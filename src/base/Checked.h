#pragma once

#include "RuntimeError.h"

#include <QtGlobal>
#include <array>
#include <limits>

// A signed integer of fixed width whose arithmetic raises Overflow (6) instead of wrapping,
// so that the limits the program rests on are enforced at run time.
template<typename T> class Checked {
public:
    constexpr Checked(T value = 0) noexcept
        : m_value(value) {}

    constexpr operator T() const noexcept { return m_value; }
    constexpr T value() const noexcept { return m_value; }

    Checked &operator+=(qint64 other) { return *this = fit(qint64(m_value) + other); }
    Checked &operator-=(qint64 other) { return *this = fit(qint64(m_value) - other); }
    Checked &operator*=(qint64 other) { return *this = fit(qint64(m_value) * other); }
    Checked &operator++() { return *this += 1; }
    Checked &operator--() { return *this -= 1; }

    static Checked fit(qint64 v) {
        if (v < std::numeric_limits<T>::min() || v > std::numeric_limits<T>::max())
            throw RuntimeError(RuntimeError::Overflow);
        return Checked(static_cast<T>(v));
    }

private:
    T m_value;
};

using Integer = Checked<qint16>;
using Long = Checked<qint32>;

// A fixed array indexed from 0 whose every access is bounds-checked: an index outside raises
// Subscript out of range (9).
template<typename T, qsizetype N> class CheckedArray {
public:
    T &operator()(qint64 index) { return m_items[check(index)]; }
    const T &operator()(qint64 index) const { return m_items[check(index)]; }
    static constexpr qsizetype size() noexcept { return N; }
    void fill(const T &value) { m_items.fill(value); }

private:
    static qsizetype check(qint64 index) {
        if (index < 0 || index >= N)
            throw RuntimeError(RuntimeError::SubscriptOutOfRange);
        return qsizetype(index);
    }

    std::array<T, N> m_items{};
};
