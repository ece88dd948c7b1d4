// SIGINT and SIGTERM end the watch cleanly: the handler only notes the
// signal; the watch finishes what it is writing, then ends.
#pragma once

#include <chrono>
#include <optional>

namespace watch {

// Installs the handlers.
void catchStopSignals();

// The signal that asked the watch to end; nothing while none did.
std::optional<int> stopSignal();

// Sleeps until `deadline`, or less when a stop signal comes; false when one
// came.
bool sleepUntil(std::chrono::steady_clock::time_point deadline);

}  // namespace watch
