#include "watch/watch_loop.h"

#include "watch/awaited_curves.h"
#include "watch/exit_status.h"
#include "watch/json_lines.h"
#include "watch/stop_signals.h"
#include "watch/utc_time.h"

namespace watch {
namespace {

using Seconds = std::chrono::duration<double>;

std::chrono::steady_clock::duration durationOf(double seconds) {
  return std::chrono::duration_cast<std::chrono::steady_clock::duration>(Seconds(seconds));
}

std::vector<std::string> pathsOf(const std::vector<std::unique_ptr<FollowedComputation>>& all) {
  std::vector<std::string> paths;
  for (const auto& computation : all) paths.push_back(computation->path());
  return paths;
}

}  // namespace

WatchLoop::WatchLoop(const WatchOptions& options,
                     std::vector<std::unique_ptr<FollowedComputation>> computations,
                     std::ostream& out, bool outIsTerminal)
    : options_(options),
      choice_{options.curves, options.untilConverged},
      out_(out),
      table_(out, outIsTerminal) {
  if (options.csvFolder) csv_.emplace(*options.csvFolder, pathsOf(computations));
  for (auto& computation : computations) watches_.emplace_back(std::move(computation));
}

void WatchLoop::refreshAll() {
  const Clock::time_point now = Clock::now();
  std::vector<const ComputationReport*> reports;
  for (ComputationWatch& watch : watches_) {
    if (watch.refresh(choice_, options_.criteria).grew) lastGrowth_ = now;
    reports.push_back(&watch.report());
  }
  lastRefresh_ = now;
  awaitedConverged_ =
      !options_.untilConverged.empty() && allAwaitedConverged(reports, options_.untilConverged);

  const std::string time = isoTime(std::chrono::system_clock::now());
  if (options_.format == OutputFormat::json) {
    writeJsonLine(out_, time, reports);
  } else {
    table_.write(time, reports);
  }
  if (csv_) csv_->write(reports);
}

std::optional<int> WatchLoop::exitNow() const {
  if (const std::optional<int> signal = stopSignal()) return kSignalOffset + *signal;
  if (awaitedConverged_) return kDone;
  if (options_.once) return options_.untilConverged.empty() ? kDone : kNotConverged;
  const Clock::time_point now = Clock::now();
  if (options_.timeoutSeconds && now - started_ >= durationOf(*options_.timeoutSeconds)) {
    return kNotConverged;
  }
  if (options_.stallSeconds && now - lastGrowth_ >= durationOf(*options_.stallSeconds)) {
    return kStalled;
  }
  return std::nullopt;
}

std::chrono::steady_clock::time_point WatchLoop::nextRefresh() const {
  Clock::time_point next = lastRefresh_ + durationOf(options_.everySeconds);
  // At a deadline the files are read once more: the curves may have
  // converged, or a file grown, since the last refresh.
  if (options_.timeoutSeconds) {
    next = std::min(next, started_ + durationOf(*options_.timeoutSeconds));
  }
  if (options_.stallSeconds) {
    next = std::min(next, lastGrowth_ + durationOf(*options_.stallSeconds));
  }
  return next;
}

int WatchLoop::run() {
  catchStopSignals();
  started_ = Clock::now();
  lastGrowth_ = started_;
  refreshAll();
  while (true) {
    if (const std::optional<int> status = exitNow()) return *status;
    sleepUntil(nextRefresh());
    // A stop signal ends the watch on the state last written.
    if (const std::optional<int> signal = stopSignal()) return kSignalOffset + *signal;
    refreshAll();
  }
}

}  // namespace watch
