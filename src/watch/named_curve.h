// A curve the watch follows: its name as the user asks for it, and its
// points as the model holds them right now.
#pragma once

#include <cstddef>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "plot/curve_source.h"

namespace watch {

struct NamedCurve {
  std::string name;
  // Judged as a residual: the verdict also counts the orders of magnitude
  // it dropped.
  bool residual = false;
  // Reads the model in place: valid until the model's next refresh.
  std::unique_ptr<plot::CurveSource> source;
};

// Element `i` of a history that may be shorter than the curve it takes part
// in; NaN (a missing point) past its end.
template <typename Value>
double elementOr(const std::vector<Value>& values, std::size_t i) {
  return i < values.size() ? static_cast<double>(values[i])
                           : std::numeric_limits<double>::quiet_NaN();
}

}  // namespace watch
