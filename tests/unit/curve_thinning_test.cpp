// What a plot keeps of a long curve, and the statistics of a series, through
// the arithmetic and through the two script commands on real BLT vectors.
#include <gtest/gtest.h>
#include <tcl.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "script/curve_thinning.h"
#include "script/plot_commands.h"

extern "C" int Blt_Init(Tcl_Interp* interp);

namespace {

std::vector<double> iota(std::size_t n, double start = 0.0) {
  std::vector<double> values(n);
  for (std::size_t i = 0; i < n; ++i) values[i] = start + static_cast<double>(i);
  return values;
}

TEST(CurveThinning, FewPointsAreKeptAsTheyAreWithOneNeighbourOutsideEachBorder) {
  const std::vector<double> x = iota(10);
  const std::vector<double> y = iota(10, 100.0);
  const plot::ThinnedPoints kept = plot::thinToColumns(x, y, 2.5, 6.0, 100);
  EXPECT_EQ(kept.x, (std::vector<double>{2, 3, 4, 5, 6, 7}));
  EXPECT_EQ(kept.y, (std::vector<double>{102, 103, 104, 105, 106, 107}));
  EXPECT_TRUE(plot::thinToColumns(x, y, 20.0, 30.0, 100).x == std::vector<double>{9});
  EXPECT_TRUE(plot::thinToColumns({}, {}, 0.0, 1.0, 100).x.empty());
  EXPECT_TRUE(plot::thinToColumns(x, y, 5.0, 1.0, 100).x.empty());
}

TEST(CurveThinning, OpenLimitsTakeTheCurvesOwnRangeAndShapesAreKeptWhole) {
  const std::vector<double> x = iota(100'000);
  const std::vector<double> y = iota(100'000);
  const double infinity = std::numeric_limits<double>::infinity();
  const plot::ThinnedPoints all = plot::thinToColumns(x, y, -infinity, infinity, 100);
  EXPECT_EQ(all.x.size(), 200u);
  EXPECT_EQ(all.x.front(), 0.0);
  EXPECT_EQ(all.x.back(), 99'999.0);
  // A blade side listed from its trailing edge to its leading edge.
  const std::vector<double> backwards{0.06, 0.05, 0.03, 0.01, 0.0};
  EXPECT_EQ(plot::thinToColumns(backwards, backwards, -infinity, infinity, 1).x, backwards);
}

TEST(CurveThinning, EveryColumnKeepsItsFirstLowestHighestAndLastPointInOrder) {
  const std::size_t n = 1'000'000;
  std::vector<double> x = iota(n);
  std::vector<double> y(n);
  for (std::size_t i = 0; i < n; ++i) y[i] = std::sin(static_cast<double>(i) * 0.001);
  y[123'457] = 50.0;  // a single spike must survive
  y[987'001] = -50.0;
  const plot::ThinnedPoints kept = plot::thinToColumns(x, y, 0.0, static_cast<double>(n - 1), 500);
  EXPECT_LE(kept.x.size(), 4u * 500u);
  EXPECT_GE(kept.x.size(), 2u * 500u);
  EXPECT_EQ(kept.x.front(), 0.0);
  EXPECT_EQ(kept.x.back(), static_cast<double>(n - 1));
  for (std::size_t i = 1; i < kept.x.size(); ++i) ASSERT_LT(kept.x[i - 1], kept.x[i]);
  EXPECT_DOUBLE_EQ(*std::max_element(kept.y.begin(), kept.y.end()), 50.0);
  EXPECT_DOUBLE_EQ(*std::min_element(kept.y.begin(), kept.y.end()), -50.0);
  for (std::size_t i = 0; i < kept.x.size(); ++i) ASSERT_EQ(kept.y[i], y[static_cast<std::size_t>(kept.x[i])]);
}

TEST(CurveStatistics, LastCountOfAKnownSeries) {
  const std::vector<double> values{100.0, 1.0, 2.0, 3.0, 4.0};
  const plot::SeriesStatistics last4 = plot::statisticsOfLast(values, 4);
  EXPECT_EQ(last4.count, 4u);
  EXPECT_DOUBLE_EQ(last4.mean, 2.5);
  EXPECT_DOUBLE_EQ(last4.standardDeviation, std::sqrt(1.25));
  EXPECT_EQ(last4.minimum, 1.0);
  EXPECT_EQ(last4.maximum, 4.0);
  EXPECT_EQ(plot::statisticsOfLast(values, 0).count, 5u);
  EXPECT_EQ(plot::statisticsOfLast(values, 99).maximum, 100.0);
  EXPECT_EQ(plot::statisticsOfLast({}, 3).count, 0u);
  // A small oscillation on a large mean keeps its digits.
  const std::vector<double> offset{1e9 + 1, 1e9 - 1, 1e9 + 1, 1e9 - 1};
  EXPECT_DOUBLE_EQ(plot::statisticsOfLast(offset, 0).standardDeviation, 1.0);
}

class PlotCommands : public ::testing::Test {
 protected:
  void SetUp() override {
    interp_ = Tcl_CreateInterp();
    ASSERT_EQ(Blt_Init(interp_), TCL_OK) << Tcl_GetStringResult(interp_);
    registerPlotCommands(interp_);
  }
  void TearDown() override { Tcl_DeleteInterp(interp_); }
  std::string eval(const std::string& script) {
    const int code = Tcl_Eval(interp_, script.c_str());
    return (code == TCL_OK ? "" : "ERROR ") + std::string(Tcl_GetStringResult(interp_));
  }
  Tcl_Interp* interp_ = nullptr;
};

TEST_F(PlotCommands, ThinAndStatisticsWorkOnVectors) {
  eval("blt::vector create x y xo yo; x seq 0 9999; y expr {x * 2}");
  // A straight line: each column keeps its first and last point.
  EXPECT_EQ(eval("monitor_thin_curve x y xo yo 0 9999 100"), "200");
  EXPECT_EQ(eval("list [xo index 0] [yo index end] [xo length]"), "0.0 19998.0 200");
  EXPECT_EQ(eval("monitor_thin_curve x y xo yo 10 20 100"), "13");
  EXPECT_EQ(eval("y set {1 2 3 4}; monitor_curve_statistics y 2"), "2 3.5 0.5 3.0 4.0");
  EXPECT_EQ(eval("monitor_curve_statistics y 0"), "4 2.5 1.118033988749895 1.0 4.0");
}

TEST_F(PlotCommands, BadArgumentsAreScriptErrors) {
  eval("blt::vector create y");
  EXPECT_EQ(eval("monitor_curve_statistics y"), "ERROR wrong # args: should be \"monitor_curve_statistics yVector lastCount\"");
  EXPECT_EQ(eval("monitor_curve_statistics nothing 3").rfind("ERROR ", 0), 0u);
  EXPECT_EQ(eval("monitor_thin_curve y y y y a 1 2"), "ERROR expected floating-point number but got \"a\"");
}

}  // namespace
