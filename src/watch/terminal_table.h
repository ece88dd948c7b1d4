// The default output: for each computation a compact table of its shown
// curves (curve, points, last value, mean ± half-width, verdict). On a
// terminal each refresh rewrites the screen; otherwise the tables follow one
// another, a blank line apart.
#pragma once

#include <ostream>
#include <span>
#include <string_view>

#include "watch/curve_report.h"

namespace watch {

class TerminalTable {
 public:
  TerminalTable(std::ostream& out, bool rewriteScreen) : out_(out), rewriteScreen_(rewriteScreen) {}

  void write(std::string_view time, std::span<const ComputationReport* const> computations);

 private:
  std::ostream& out_;
  bool rewriteScreen_;
  bool written_ = false;
};

// Whether standard output is a terminal.
bool standardOutputIsTerminal();

}  // namespace watch
