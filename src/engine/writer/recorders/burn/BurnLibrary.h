#pragma once

#include "engine/writer/iso/IsoLibrary.h"

#include <QString>
#include <QStringList>

#include <memory>

// libburn set up once for the process, its message queue, and the owners of its handles. Any
// thread; libburn itself keeps one drive to one thread at a time.
namespace BurnLibrary {
// Starts libburn on first use. Its messages are queued, never printed; the library is shut
// down at exit, after every drive has been released.
bool ensureStarted();

// Takes every queued libburn message of severity NOTE and above, oldest first, as
// "SEVERITY: text".
QStringList takeMessages();

struct WriteOptsDeleter {
    void operator()(burn::burn_write_opts *p) const { burn::burn_write_opts_free(p); }
};
struct DiscDeleter {
    void operator()(burn::burn_disc *p) const { burn::burn_disc_free(p); }
};
struct SessionDeleter {
    void operator()(burn::burn_session *p) const { burn::burn_session_free(p); }
};
struct TrackDeleter {
    void operator()(burn::burn_track *p) const { burn::burn_track_free(p); }
};
struct SourceDeleter {
    void operator()(burn::burn_source *p) const { burn::burn_source_free(p); }
};
using WriteOptsPtr = std::unique_ptr<burn::burn_write_opts, WriteOptsDeleter>;
using DiscPtr = std::unique_ptr<burn::burn_disc, DiscDeleter>;
using SessionPtr = std::unique_ptr<burn::burn_session, SessionDeleter>;
using TrackPtr = std::unique_ptr<burn::burn_track, TrackDeleter>;
using SourcePtr = std::unique_ptr<burn::burn_source, SourceDeleter>;

// While a drive job runs, a signal that would end the program goes through libburn's abort
// handler: it cancels the drive's work, waits until it is idle, releases it and exits. The
// program's fault handlers stay on top and hand it what no trap takes. The program's own
// handlers are put back when the last job ends.
class AbortGuard {
public:
    AbortGuard();
    ~AbortGuard();
    AbortGuard(const AbortGuard &) = delete;
    AbortGuard &operator=(const AbortGuard &) = delete;

private:
    bool m_active = false;
};
} // namespace BurnLibrary
