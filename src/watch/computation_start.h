// Which of the residual files given the watch follows, and in which mode:
// the mode of --marine or --turbo, else the one the file shows. A file whose
// mode cannot be told is left out; a file of a known mode that cannot be
// read yet is followed (the solver may not have written it yet). At least
// one file must be readable now.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "watch/followed_computation.h"
#include "watch/watch_options.h"

namespace watch {

struct StartedComputations {
  std::vector<std::unique_ptr<FollowedComputation>> computations;
  // Why nothing can be followed: one line; empty when something can.
  std::string error;
};

// Tells standard error about the files left out or not readable yet, unless
// nothing can be followed (then `error` says it all).
StartedComputations startComputations(const WatchOptions& options);

}  // namespace watch
