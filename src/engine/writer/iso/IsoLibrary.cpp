#include "IsoLibrary.h"

#include "ConverterCache.h"

#include <cstdlib>
#include <mutex>

bool IsoLibrary::ensureStarted() {
    static std::once_flag once;
    static bool started = false;
    std::call_once(once, [] {
        ConverterCache::install();
        started = iso_init() >= 0;
        if (!started)
            return;
        iso_set_local_charset(const_cast<char *>("UTF-8"), 0);
        // A read error of a source file is a MISHAP: let it end the image.
        iso_set_abort_severity(const_cast<char *>("MISHAP"));
        iso_set_msgs_severities(const_cast<char *>("NEVER"), const_cast<char *>("NEVER"),
                                const_cast<char *>("tessaly : "));
    });
    return started;
}

void IsoLibrary::BurnSourceDeleter::operator()(BurnSource *p) const {
    if (!p)
        return;
    if (p->cancel)
        p->cancel(p);
    if (p->free_data)
        p->free_data(p);
    free(p);
}
