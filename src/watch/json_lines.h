// The JSON Lines output: one object per refresh, on one line,
//
//   {"time": "2026-11-21T14:05:09.250Z",
//    "computations": [{"path": "...", "mode": "marine", "stamp": "..." | null,
//                      "rows": 60, "curves": [{"name": "Fx_hull", "points": 60,
//                      "last": -1520.5, "transientEnd": 12 | null, "mean": ... | null,
//                      "halfWidth": ... | null, "confidence": 0.95, "drift": false,
//                      "period": ... | null, "verdict": "converged"}, ...]}, ...]}
//
// A value the curve does not have is null: "last" without points,
// "transientEnd" and "period" when the verdict found none, "mean" and
// "halfWidth" for a short curve (as the window leaves them out). Only the
// curves shown are written.
#pragma once

#include <ostream>
#include <span>
#include <string>
#include <string_view>

#include "watch/curve_report.h"

namespace watch {

// `text` as a JSON string, quotes included. Bytes that are not UTF-8 read as
// U+FFFD, so that any path gives valid JSON.
std::string jsonString(std::string_view text);

// Writes the line and flushes it.
void writeJsonLine(std::ostream& out, std::string_view time,
                   std::span<const ComputationReport* const> computations);

}  // namespace watch
