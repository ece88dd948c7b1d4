// The watch itself: refresh every computation, judge, write the output,
// then wait for the next refresh, until an exit condition or a stop signal
// ends it.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <ostream>
#include <vector>

#include "watch/computation_watch.h"
#include "watch/csv_files.h"
#include "watch/terminal_table.h"
#include "watch/watch_options.h"

namespace watch {

class WatchLoop {
 public:
  WatchLoop(const WatchOptions& options,
            std::vector<std::unique_ptr<FollowedComputation>> computations, std::ostream& out,
            bool outIsTerminal);

  // Runs until an exit condition; answers the exit status (exit_status.h).
  int run();

 private:
  using Clock = std::chrono::steady_clock;

  // Refreshes and judges every computation and writes the outputs.
  void refreshAll();
  // The exit status when an exit condition holds now.
  std::optional<int> exitNow() const;
  // When to refresh next: at the period, or earlier for a deadline.
  Clock::time_point nextRefresh() const;

  const WatchOptions& options_;
  std::vector<ComputationWatch> watches_;
  CurveChoice choice_;
  std::ostream& out_;
  TerminalTable table_;
  std::optional<CsvFiles> csv_;
  Clock::time_point started_;
  Clock::time_point lastRefresh_;
  Clock::time_point lastGrowth_;
  bool awaitedConverged_ = false;
};

}  // namespace watch
