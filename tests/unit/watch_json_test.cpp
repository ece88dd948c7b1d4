// The JSON Lines output of monitor-watch: one valid JSON object per line,
// null for what a curve does not have, numbers that read back exactly, and
// paths and names escaped whatever bytes they hold.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "json_reader.h"
#include "watch/json_lines.h"
#include "watch/number_text.h"

namespace {

using convergence::State;
using watch::ComputationReport;
using watch::CurveReport;

CurveReport curveWith(std::string name, std::vector<double> y) {
  CurveReport curve;
  curve.name = std::move(name);
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

testjson::Value curveNamed(const testjson::Value& computation, const std::string& name) {
  for (const testjson::Value& curve : computation["curves"].items) {
    if (curve["name"].text == name) return curve;
  }
  throw std::out_of_range("no curve " + name);
}

TEST(WatchJson, OneLineOfTheDocumentedShape) {
  ComputationReport marine;
  marine.path = "/runs/a/ship.res";
  marine.mode = watch::Mode::marine;
  marine.stamp = "21/11/2026 14:05:09";
  marine.rows = 250;
  CurveReport judged = curveWith("Fx_hull", {3.0, 2.0, 1.5});
  judged.verdict.state = State::converged;
  judged.verdict.transientEnd = 12.5;
  judged.verdict.mean = -1520.25;
  judged.verdict.halfWidth = 0.75;
  judged.verdict.confidence = 0.99;
  judged.verdict.drift = true;
  judged.verdict.period = 0.4;
  marine.curves.push_back(std::move(judged));
  marine.curves.push_back(curveWith("ResU", {}));
  ComputationReport turbo;
  turbo.path = "stage.res";
  turbo.mode = watch::Mode::turbomachinery;

  const std::string line = lineOf({&marine, &turbo});
  ASSERT_EQ(line.find('\n'), line.size() - 1) << "one object, one line";
  const testjson::Value document = testjson::parse(line);
  EXPECT_EQ(document.keys(), (std::vector<std::string>{"time", "computations"}));
  EXPECT_EQ(document["time"].text, "2026-11-21T14:05:09.250Z");
  ASSERT_EQ(document["computations"].items.size(), 2u);

  const testjson::Value& first = document["computations"][0];
  EXPECT_EQ(first.keys(), (std::vector<std::string>{"path", "mode", "stamp", "rows", "curves"}));
  EXPECT_EQ(first["path"].text, "/runs/a/ship.res");
  EXPECT_EQ(first["mode"].text, "marine");
  EXPECT_EQ(first["stamp"].text, "21/11/2026 14:05:09");
  EXPECT_EQ(first["rows"].number, 250);
  const testjson::Value fx = curveNamed(first, "Fx_hull");
  EXPECT_EQ(fx.keys(),
            (std::vector<std::string>{"name", "points", "last", "transientEnd", "mean", "halfWidth",
                                      "confidence", "drift", "period", "verdict"}));
  EXPECT_EQ(fx["points"].number, 3);
  EXPECT_EQ(fx["last"].number, 1.5);
  EXPECT_EQ(fx["transientEnd"].number, 12.5);
  EXPECT_EQ(fx["mean"].number, -1520.25);
  EXPECT_EQ(fx["halfWidth"].number, 0.75);
  EXPECT_EQ(fx["confidence"].number, 0.99);
  EXPECT_TRUE(fx["drift"].boolean);
  EXPECT_EQ(fx["period"].number, 0.4);
  EXPECT_EQ(fx["verdict"].text, "converged");

  const testjson::Value& second = document["computations"][1];
  EXPECT_EQ(second["mode"].text, "turbomachinery");
  EXPECT_TRUE(second["stamp"].isNull());
  EXPECT_EQ(second["rows"].number, 0);
  EXPECT_TRUE(second["curves"].items.empty());
}

TEST(WatchJson, WhatACurveDoesNotHaveIsNull) {
  ComputationReport computation;
  computation.path = "ship.res";
  // No points at all; points but too few to judge (the verdict leaves its
  // mean at 0, which must not pass for a mean); judged but without a period.
  computation.curves.push_back(curveWith("empty", {}));
  CurveReport shortCurve = curveWith("short", {1.0, 2.0});
  shortCurve.verdict.transientEnd = 1.0;
  computation.curves.push_back(std::move(shortCurve));
  CurveReport wide = curveWith("wide", {1.0, 2.0});
  wide.verdict.state = State::wide;
  computation.curves.push_back(std::move(wide));

  const testjson::Value document = testjson::parse(lineOf({&computation}));
  const testjson::Value& read = document["computations"][0];
  const struct {
    const char* curve;
    const char* field;
    bool null;
  } cases[] = {
      {"empty", "last", true},        {"empty", "transientEnd", true},
      {"empty", "mean", true},        {"empty", "halfWidth", true},
      {"empty", "period", true},      {"empty", "confidence", false},
      {"short", "last", false},       {"short", "transientEnd", false},
      {"short", "mean", true},        {"short", "halfWidth", true},
      {"wide", "mean", false},        {"wide", "halfWidth", false},
      {"wide", "transientEnd", true}, {"wide", "period", true},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(curveNamed(read, c.curve)[c.field].isNull(), c.null) << c.curve << " " << c.field;
  }
  EXPECT_EQ(curveNamed(read, "empty")["verdict"].text, "short");
  EXPECT_EQ(curveNamed(read, "empty")["points"].number, 0);
  EXPECT_FALSE(curveNamed(read, "empty")["drift"].boolean);
}

TEST(WatchJson, OnlyShownCurvesAreWritten) {
  ComputationReport computation;
  computation.curves.push_back(curveWith("shown", {1.0}));
  computation.curves.push_back(curveWith("awaited", {1.0}));
  computation.curves.back().shown = false;
  const testjson::Value document = testjson::parse(lineOf({&computation}));
  ASSERT_EQ(document["computations"][0]["curves"].items.size(), 1u);
  EXPECT_EQ(document["computations"][0]["curves"][0]["name"].text, "shown");
}

TEST(WatchJson, PathsAndNamesAreEscaped) {
  const struct {
    std::string text;
    std::string readBack;
  } cases[] = {
      {"/runs/plain/ship.res", "/runs/plain/ship.res"},
      {"/runs/\"quoted\"/ship.res", "/runs/\"quoted\"/ship.res"},
      {"C:\\runs\\ship.res", "C:\\runs\\ship.res"},
      {"line\nfeed\ttab\rreturn", "line\nfeed\ttab\rreturn"},
      {std::string("nul\0byte\x01\x1f", 11), std::string("nul\0byte\x01\x1f", 11)},
      {"Res`w", "Res`w"},
      {"/runs/caf\xc3\xa9/\xe2\x82\xac/\xf0\x9f\x9a\xa2.res",
       "/runs/caf\xc3\xa9/\xe2\x82\xac/\xf0\x9f\x9a\xa2.res"},
      // Bytes that are not UTF-8: a stray continuation byte, a lead byte cut
      // short, an overlong form, an encoded surrogate, a byte never used.
      {"a\x80z", "a\xef\xbf\xbdz"},
      {"cut\xc3", "cut\xef\xbf\xbd"},
      {"over\xc0\xafz", "over\xef\xbf\xbd\xef\xbf\xbdz"},
      {"sur\xed\xa0\x80z", "sur\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbdz"},
      {"\xff", "\xef\xbf\xbd"},
  };
  for (const auto& c : cases) {
    ComputationReport computation;
    computation.path = c.text;
    computation.stamp = c.text;
    computation.curves.push_back(curveWith(c.text, {1.0}));
    const std::string line = lineOf({&computation});
    EXPECT_EQ(line.find('\n'), line.size() - 1);
    const testjson::Value document = testjson::parse(line);
    const testjson::Value& read = document["computations"][0];
    EXPECT_EQ(read["path"].text, c.readBack);
    EXPECT_EQ(read["stamp"].text, c.readBack);
    EXPECT_EQ(read["curves"][0]["name"].text, c.readBack);
  }
}

TEST(WatchJson, NumbersReadBackToTheSameValues) {
  const double values[] = {0.1,
                           -1520.5,
                           1e20,
                           1.0 / 3.0,
                           2.2250738585072014e-308,
                           4.9406564584124654e-324,
                           std::numeric_limits<double>::max(),
                           -0.0,
                           123456789012345678.0,
                           static_cast<double>(3.4028235e38f)};
  for (const double value : values) {
    ComputationReport computation;
    computation.curves.push_back(curveWith("c", {value}));
    const testjson::Value document = testjson::parse(lineOf({&computation}));
    const double read = document["computations"][0]["curves"][0]["last"].number;
    EXPECT_EQ(read, value) << watch::exactNumber(value);
    EXPECT_EQ(std::signbit(read), std::signbit(value));
  }
  EXPECT_EQ(watch::exactNumber(0.1), "0.1");
  EXPECT_EQ(watch::exactNumber(-3.25), "-3.25");
  EXPECT_EQ(watch::exactNumber(60.0), "60");
}

}  // namespace
