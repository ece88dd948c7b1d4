// How the scripts name the curves that the model serves in bulk: a word for
// the kind of curve, then the arguments that pick one (the computation's
// path, a body, a quantity), as `monitor_curve fill` and `positions` take
// them. Each mode lists its kinds in a table of rows.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "plot/curve_source.h"

class ArgStream;

// The source that the arguments name; null, with `complaint` saying why,
// when they name no curve (no such computation, body or quantity).
using CurveSourceMaker = std::unique_ptr<plot::CurveSource> (*)(ArgStream& arguments,
                                                                std::string& complaint);

struct CurveSourceRow {
  std::string_view name;
  // The names of the arguments, separated by blanks, for usage messages;
  // their count is the number of arguments the kind takes.
  std::string_view arguments;
  CurveSourceMaker make;
};
