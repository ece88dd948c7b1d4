// Which curves of a computation the watch judges: those the output shows
// (--curves, in its order; all of them without it) and those an exit waits
// for (--until-converged), judged even when not shown.
#pragma once

#include <string>
#include <vector>

#include "watch/named_curve.h"

namespace watch {

struct CurveChoice {
  std::vector<std::string> shown;    // empty: every curve
  std::vector<std::string> awaited;  // judged, shown or not
};

struct SelectedCurve {
  const NamedCurve* curve = nullptr;
  bool shown = true;
};

// The curves chosen, each once: the shown ones first, in the order asked,
// then the awaited ones not shown. The first curve of a name counts.
std::vector<SelectedCurve> selectCurves(const std::vector<NamedCurve>& curves,
                                        const CurveChoice& choice);

// The names asked for (shown or awaited) that no curve carries.
std::vector<std::string> namesMissing(const std::vector<NamedCurve>& curves,
                                      const CurveChoice& choice);

}  // namespace watch
