// monitor-watch: follows CFD computations without a display and tells, for
// job scripts, whether their curves have converged. See help_text.cpp.
#include <iostream>
#include <string_view>
#include <vector>

#include "platform/console.h"
#include "watch/computation_start.h"
#include "watch/exit_status.h"
#include "watch/help_text.h"
#include "watch/terminal_table.h"
#include "watch/watch_loop.h"
#include "watch/watch_options.h"

int main(int argc, char** argv) {
  // The model's messages and the watch's own go to standard error: standard
  // output holds the table or the JSON lines alone.
  const platform::ConsoleRedirect toStandardError(std::cerr);

  const std::vector<std::string_view> arguments(argv + 1, argv + argc);
  const watch::ParsedArguments parsed = watch::parseWatchArguments(arguments);
  if (!parsed.options) {
    std::cerr << "monitor-watch: " << parsed.error << std::endl;
    return watch::kBadUse;
  }
  const watch::WatchOptions& options = *parsed.options;
  if (options.help) {
    std::cout << watch::helpText() << std::flush;
    return watch::kDone;
  }
  watch::StartedComputations started = watch::startComputations(options);
  if (!started.error.empty()) {
    std::cerr << "monitor-watch: " << started.error << std::endl;
    return watch::kBadUse;
  }
  watch::WatchLoop loop(options, std::move(started.computations), std::cout,
                        watch::standardOutputIsTerminal());
  return loop.run();
}
