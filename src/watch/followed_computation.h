// One computation the watch follows, whatever its mode: it reads what the
// solver appended, and offers its curves under their names.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "watch/computation_mode.h"
#include "watch/named_curve.h"
#include "watch/watch_options.h"

namespace watch {

struct RefreshOutcome {
  bool grew = false;     // something new was read from the files
  bool changed = false;  // the curves may differ from the last refresh's
  bool newRun = false;   // the run held was replaced by a new one: its curves start over
};

class FollowedComputation {
 public:
  explicit FollowedComputation(std::string residualPath) : path_(std::move(residualPath)) {}
  virtual ~FollowedComputation() = default;
  FollowedComputation(const FollowedComputation&) = delete;
  FollowedComputation& operator=(const FollowedComputation&) = delete;

  const std::string& path() const { return path_; }
  virtual Mode mode() const = 0;

  // Reads what was appended since the last refresh; a file that cannot be
  // read leaves what was read from it.
  virtual RefreshOutcome refresh() = 0;

  // The creation stamp of the run held; nothing when the run has none.
  virtual std::optional<std::string> stamp() const = 0;
  // Rows of the residual history held.
  virtual std::size_t rows() const = 0;
  // The curves as the last refresh left them; they read the model in place
  // and must not be kept past the next refresh.
  virtual std::vector<NamedCurve> curves() = 0;

 private:
  std::string path_;
};

// Follows the computation of a residual file in `mode`; the formulas add
// custom curves to a marine computation.
std::unique_ptr<FollowedComputation> followComputation(const std::string& residualPath, Mode mode,
                                                       const std::vector<CustomFormula>& formulas);

}  // namespace watch
