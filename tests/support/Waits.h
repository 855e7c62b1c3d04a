#pragma once

#include <functional>

// The one way a test waits: running the event loop until something holds.
namespace Waits {

// Runs the event loop until `done` holds or the time is up, then a little longer so that
// anything posted after it shows; whether it held.
bool until(const std::function<bool()> &done, int timeoutMs = 60000);
// Queued events and deferred deletes.
void settle();

} // namespace Waits
