#include "watch/stop_signals.h"

#include <algorithm>
#include <csignal>
#include <thread>

namespace watch {
namespace {

volatile std::sig_atomic_t caught = 0;

// How soon a signal that arrives during a sleep is noticed.
constexpr std::chrono::milliseconds kSleepSlice{20};

void noteSignal(int number) { caught = number; }

}  // namespace

void catchStopSignals() {
  std::signal(SIGINT, noteSignal);
  std::signal(SIGTERM, noteSignal);
}

std::optional<int> stopSignal() {
  if (caught == 0) return std::nullopt;
  return static_cast<int>(caught);
}

bool sleepUntil(std::chrono::steady_clock::time_point deadline) {
  while (caught == 0) {
    const auto now = std::chrono::steady_clock::now();
    if (now >= deadline) return true;
    std::this_thread::sleep_for(
        std::min<std::chrono::steady_clock::duration>(deadline - now, kSleepSlice));
  }
  return false;
}

}  // namespace watch
