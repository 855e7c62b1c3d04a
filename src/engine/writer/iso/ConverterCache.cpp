#include "ConverterCache.h"

#include <atomic>
#include <cerrno>
#include <cstring>
#include <dlfcn.h>
#include <iconv.h>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

using OpenFn = iconv_t (*)(const char *, const char *);
using CloseFn = int (*)(iconv_t);

// A few idle converters per pair are enough: libisofs holds at most two at a time per thread.
constexpr size_t IdlePerPair = 8;

struct Cache {
    std::mutex mutex;
    // Every converter handed out by the cache, with the pair it converts; and the idle ones.
    std::unordered_map<iconv_t, std::string> pairOf;
    std::unordered_map<std::string, std::vector<iconv_t>> idle;
};

Cache &cache() {
    // Never destroyed: libraries may still close converters while the program exits.
    static Cache *c = new Cache;
    return *c;
}

std::atomic<bool> g_enabled{true};
std::atomic<quint64> g_real{0};
std::atomic<quint64> g_reused{0};

OpenFn realOpen() {
    static const auto fn = reinterpret_cast<OpenFn>(dlsym(RTLD_NEXT, "iconv_open"));
    return fn;
}

CloseFn realClose() {
    static const auto fn = reinterpret_cast<CloseFn>(dlsym(RTLD_NEXT, "iconv_close"));
    return fn;
}

std::string pairKey(const char *to, const char *from) {
    std::string key(to ? to : "");
    key.push_back('\0');
    key.append(from ? from : "");
    return key;
}

} // namespace

extern "C" {

// Visible to every shared library of the process, in place of the C library's own.
__attribute__((visibility("default"))) iconv_t iconv_open(const char *to, const char *from) {
    OpenFn open = realOpen();
    if (!open) {
        errno = EINVAL;
        return iconv_t(-1);
    }
    if (!g_enabled.load(std::memory_order_relaxed)) {
        ++g_real;
        return open(to, from);
    }
    std::string key = pairKey(to, from);
    Cache &c = cache();
    {
        std::lock_guard lock(c.mutex);
        auto it = c.idle.find(key);
        if (it != c.idle.end() && !it->second.empty()) {
            iconv_t cd = it->second.back();
            it->second.pop_back();
            ++g_reused;
            return cd;
        }
    }
    iconv_t cd = open(to, from);
    ++g_real;
    if (cd != iconv_t(-1)) {
        std::lock_guard lock(c.mutex);
        c.pairOf.emplace(cd, std::move(key));
    }
    return cd;
}

__attribute__((visibility("default"))) int iconv_close(iconv_t cd) {
    CloseFn close = realClose();
    if (!close) {
        errno = EBADF;
        return -1;
    }
    Cache &c = cache();
    {
        std::lock_guard lock(c.mutex);
        auto it = c.pairOf.find(cd);
        if (it != c.pairOf.end()) {
            std::vector<iconv_t> &free = c.idle[it->second];
            if (g_enabled.load(std::memory_order_relaxed) && free.size() < IdlePerPair) {
                // Back to the initial shift state, as a fresh open would give it.
                iconv(cd, nullptr, nullptr, nullptr, nullptr);
                free.push_back(cd);
                return 0;
            }
            c.pairOf.erase(it);
        }
    }
    return close(cd);
}

} // extern "C"

void ConverterCache::install(bool enabled) {
    g_enabled = enabled;
}

quint64 ConverterCache::realOpens() {
    return g_real.load();
}

quint64 ConverterCache::reusedOpens() {
    return g_reused.load();
}
