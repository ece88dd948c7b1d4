// The JSON Lines output of monitor-watch: one object per line, null for what
// a curve does not have, and paths and names escaped whatever bytes they hold.
#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "watch/json_lines.h"

namespace {

using convergence::State;
using watch::ComputationReport;
using watch::CurveReport;

CurveReport curveWith(std::string name, std::vector<double> y, bool shown = true) {
  CurveReport curve;
  curve.name = std::move(name);
  curve.shown = shown;
  std::vector<double> x(y.size());
  for (std::size_t i = 0; i < x.size(); ++i) x[i] = static_cast<double>(i + 1);
  curve.points.append(x, y);
  return curve;
}

std::string lineOf(const std::vector<const ComputationReport*>& computations) {
  std::ostringstream out;
  watch::writeJsonLine(out, "2026-11-21T14:05:09.250Z", computations);
  return out.str();
}

TEST(WatchJson, OneLineOfTheDocumentedShape) {
  ComputationReport marine;
  marine.path = "/runs/a/ship.res";
  marine.stamp = "21/11/2026 14:05:09";
  marine.rows = 250;
  CurveReport judged = curveWith("Fx_hull", {3.0, 2.0, 1.5});
  judged.verdict = {.state = State::converged,
                    .transientEnd = 12.5,
                    .mean = -1520.25,
                    .halfWidth = 0.75,
                    .confidence = 0.99,
                    .drift = true,
                    .period = 0.4};
  marine.curves.push_back(std::move(judged));
  // Too few points to judge: the verdict's mean of 0 must not pass for a mean.
  CurveReport unjudged = curveWith("short", {1.0, std::numeric_limits<double>::infinity()});
  unjudged.verdict.transientEnd = 1.0;
  marine.curves.push_back(std::move(unjudged));
  CurveReport wide = curveWith("wide", {});
  wide.verdict.state = State::wide;
  marine.curves.push_back(std::move(wide));
  marine.curves.push_back(curveWith("awaited only", {1.0}, false));
  ComputationReport turbo;
  turbo.path = "stage.res";
  turbo.mode = watch::Mode::turbomachinery;
  EXPECT_EQ(lineOf({&marine, &turbo}),
            "{\"time\":\"2026-11-21T14:05:09.250Z\",\"computations\":["
            "{\"path\":\"/runs/a/ship.res\",\"mode\":\"marine\",\"stamp\":\"21/11/2026 "
            "14:05:09\",\"rows\":250,\"curves\":["
            "{\"name\":\"Fx_hull\",\"points\":3,\"last\":1.5,\"transientEnd\":12.5,\"mean\":-1520."
            "25,\"halfWidth\":0.75,\"confidence\":0.99,\"drift\":true,\"period\":0.4,\"verdict\":"
            "\"converged\"},"
            "{\"name\":\"short\",\"points\":2,\"last\":null,\"transientEnd\":1,\"mean\":null,"
            "\"halfWidth\":null,\"confidence\":0.95,\"drift\":false,\"period\":null,\"verdict\":"
            "\"short\"},"
            "{\"name\":\"wide\",\"points\":0,\"last\":null,\"transientEnd\":null,\"mean\":0,"
            "\"halfWidth\":0,\"confidence\":0.95,\"drift\":false,\"period\":null,\"verdict\":"
            "\"wide\"}]},"
            "{\"path\":\"stage.res\",\"mode\":\"turbomachinery\",\"stamp\":null,\"rows\":0,"
            "\"curves\":[]}]}\n");
}

TEST(WatchJson, PathsAndNamesAreEscaped) {
  const char* const kBad = "\xef\xbf\xbd";  // U+FFFD
  const struct {
    std::string text;
    std::string readBack;
  } cases[] = {
      {"/runs/\"quoted\"/C:\\ship.res", "/runs/\"quoted\"/C:\\ship.res"},
      {"line\nfeed\ttab\rreturn", "line\nfeed\ttab\rreturn"},
      {std::string("nul\0byte\x01\x1f\x7f", 12), std::string("nul\0byte\x01\x1f\x7f", 12)},
      {"caf\xc3\xa9 \xc2\x80\xdf\xbf \xe2\x82\xac \xf0\x9f\x9a\xa2",
       "caf\xc3\xa9 \xc2\x80\xdf\xbf \xe2\x82\xac \xf0\x9f\x9a\xa2"},
      {"\xe0\xa0\x80\xed\x9f\xbf\xf0\x90\x80\x80\xf4\x8f\xbf\xbf",
       "\xe0\xa0\x80\xed\x9f\xbf\xf0\x90\x80\x80\xf4\x8f\xbf\xbf"},
      // Not UTF-8: a stray continuation byte, a cut lead byte, overlong forms,
      // a surrogate, a code point beyond U+10FFFF, bytes never used.
      {"a\x80z", std::string("a") + kBad + "z"},
      {"cut\xc3", std::string("cut") + kBad},
      {"\xc1\xbf", std::string(kBad) + kBad},
      {"\xe0\x9f\xbf", std::string(kBad) + kBad + kBad},
      {"\xed\xa0\x80", std::string(kBad) + kBad + kBad},
      {"\xf0\x8f\xbf\xbf", std::string(kBad) + kBad + kBad + kBad},
      {"\xf4\x90\x80\x80", std::string(kBad) + kBad + kBad + kBad},
      {"\xe2\x82z", std::string(kBad) + kBad + "z"},
      {"\xf5\xff", std::string(kBad) + kBad},
  };
  for (const auto& c : cases) {
    ComputationReport computation;
    computation.path = c.text;
    computation.stamp = c.text;
    computation.curves.push_back(curveWith(c.text, {1.0}));
    const std::string line = lineOf({&computation});
    EXPECT_EQ(line.find('\n'), line.size() - 1) << c.readBack;
    const nlohmann::json read = nlohmann::json::parse(line)["computations"][0];
    EXPECT_EQ(read["path"], c.readBack);
    EXPECT_EQ(read["stamp"], c.readBack);
    EXPECT_EQ(read["curves"][0]["name"], c.readBack);
  }
}

}  // namespace
