// Reads a served curve the way the window does, through the bulk route, and
// the way the commands that read one point give it, both as the texts those
// commands print ("x y", 15 significant digits), missing points left out: the
// two must agree point for point.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "console_capture.h"
#include "fileformat/number_text.h"
#include "plot/curve_fill.h"
#include "script/curve_source_row.h"
#include "script/tcl_arg_stream.h"

struct Served {
  std::size_t positions = 0;
  std::vector<std::string> points;
  std::int64_t trailingMissing = -1;
  std::string complaint;
};

inline std::string pointText(double x, double y) {
  return fileformat::formatGeneral(x, 15) + " " + fileformat::formatGeneral(y, 15);
}

// The whole curve that `words` (a kind, then its arguments) name in `table`.
inline Served serveInBulk(std::span<const CurveSourceRow> table,
                          const std::vector<std::string>& words) {
  Served served;
  const auto row = std::find_if(table.begin(), table.end(),
                                [&](const CurveSourceRow& r) { return r.name == words[0]; });
  if (row == table.end()) {
    ADD_FAILURE() << "no curve source " << words[0];
    return served;
  }
  std::vector<const char*> items;
  for (std::size_t i = 1; i < words.size(); ++i) items.push_back(words[i].c_str());
  TclArgStream arguments(static_cast<int>(items.size()), items.data());
  const std::unique_ptr<plot::CurveSource> source = row->make(arguments, served.complaint);
  if (source == nullptr) return served;
  served.positions = source->size();
  plot::CurvePoints points;
  served.trailingMissing = plot::fill(*source, 0, served.positions, points).trailingMissingFrom;
  for (std::size_t i = 0; i < points.size(); ++i)
    served.points.push_back(pointText(points.x()[i], points.y()[i]));
  return served;
}

// The answers "x y" of positions 0 .. count - 1 of a point command, without
// the missing points, as the window left them out when it read point by
// point: NaN, infinite or at least the program's mark.
template <typename PointAt>
std::vector<std::string> givenPoints(std::size_t count, PointAt pointAt) {
  std::vector<std::string> given;
  for (std::size_t i = 0; i < count; ++i) {
    const std::string text = pointAt(i);
    char* end = nullptr;
    const double x = std::strtod(text.c_str(), &end);
    const double y = std::strtod(end, nullptr);
    if (std::fabs(x) < plot::kMissingMark && std::fabs(y) < plot::kMissingMark)
      given.push_back(text);
  }
  return given;
}

// The curve that `source` names in `table` holds `count` positions and the
// points that `pointAt` gives for them.
inline void expectServedAsPointByPoint(std::span<const CurveSourceRow> table,
                                       const std::vector<std::string>& source, std::size_t count,
                                       const std::function<std::string(std::size_t)>& pointAt) {
  ConsoleCapture quiet;
  const Served served = serveInBulk(table, source);
  const std::string what = testing::PrintToString(source);
  EXPECT_EQ(served.complaint, "") << what;
  EXPECT_EQ(served.positions, count) << what;
  EXPECT_EQ(served.points, givenPoints(count, pointAt)) << what;
}
