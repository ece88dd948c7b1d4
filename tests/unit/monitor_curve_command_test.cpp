// monitor_curve, with real BLT vectors and served curves of its own: what it
// answers, and every wrong request refused with the curve left as it was.
#include <gtest/gtest.h>
#include <tcl.h>

#include <array>
#include <limits>
#include <string>

#include "plot/curve_fill.h"
#include "script/arg_stream.h"
#include "script/plot_commands.h"

extern "C" int Blt_Init(Tcl_Interp* interp);

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// "ramp count": points (i, i). "table fixed": points missing in every way (the
// solvers' largest float, NaN, at least the mark, in x or y), 3.4e38 below it.
std::unique_ptr<plot::CurveSource> ramp(ArgStream& arguments, std::string&) {
  std::int64_t count = 0;
  arguments >> count;
  return plot::pointsByPosition(static_cast<std::size_t>(count), [](std::size_t i) {
    return plot::Point{static_cast<double>(i), static_cast<double>(i)};
  });
}

std::unique_ptr<plot::CurveSource> table(ArgStream& arguments, std::string& complaint) {
  static const double kXY[] = {1, 0.5, 2,      3.4028234663852886e38, 3, 1e-7, kNaN,
                               4, 5,   3.4e38, plot::kMissingMark,    6, 7,    -plot::kMissingMark};
  std::string name;
  arguments.extractText(name, 100);
  if (name == "fixed")
    return plot::pointsByPosition(7, [](std::size_t i) {
      return plot::Point{kXY[2 * i], kXY[2 * i + 1]};
    });
  complaint = "no table \"" + name + "\"";
  return nullptr;
}

constexpr std::array<CurveSourceRow, 2> kSources{
    {{"ramp", "count", ramp}, {"table", "name", table}}};

class MonitorCurveCommand : public ::testing::Test {
 protected:
  void SetUp() override {
    interp_ = Tcl_CreateInterp();
    ASSERT_EQ(Blt_Init(interp_), TCL_OK) << Tcl_GetStringResult(interp_);
    registerPlotCommands(interp_, kSources);
  }
  void TearDown() override { Tcl_DeleteInterp(interp_); }
  std::string eval(const std::string& script) {
    const int code = Tcl_Eval(interp_, script.c_str());
    return (code == TCL_OK ? "" : "ERROR ") + std::string(Tcl_GetStringResult(interp_));
  }
  Tcl_Interp* interp_ = nullptr;
};

TEST_F(MonitorCurveCommand, HoldsThinsAndDescribesACurve) {
  EXPECT_EQ(eval("set c [monitor_curve new]"), "curve1");
  EXPECT_EQ(eval("monitor_curve positions ramp 3"), "3");
  EXPECT_EQ(eval("monitor_curve fill $c 0 2 ramp 3"), "3 -1");
  EXPECT_EQ(eval("monitor_curve values $c 1 99"), "{1.0 2.0} {1.0 2.0}");
  EXPECT_EQ(eval("monitor_curve truncate $c 1; monitor_curve length $c"), "1");
  EXPECT_EQ(eval("monitor_curve truncate $c 0; monitor_curve fill $c 0 9999 ramp 10000"),
            "10000 -1");
  EXPECT_EQ(eval("blt::vector create xo yo; monitor_curve thin $c xo yo -Inf Inf 100"), "200");
  EXPECT_EQ(eval("list [xo index 0] [yo index end] [xo length]"), "0.0 9999.0 200");
  EXPECT_EQ(eval("monitor_curve thin $c xo yo 10 20 100"), "13");
  EXPECT_EQ(eval("monitor_curve statistics $c 2"), "2 9998.5 0.5 9998.0 9999.0");
  EXPECT_EQ(eval("monitor_curve delete $c; monitor_curve length $c"),
            "ERROR no curve named \"curve1\"");
}

TEST_F(MonitorCurveCommand, FillLeavesOutMissingPointsAndTellsWhereTheLastOnesBegin) {
  const std::array<const char*, 3> cases[] = {
      {"0 6", "3 5", "{1.0 3.0 5.0} {0.5 1e-7 3.4e+38}"},
      {"0 2", "2 -1", "{1.0 3.0} {0.5 1e-7}"},
      {"1 1", "0 1", "{} {}"},
      {"3 4", "1 -1", "5.0 3.4e+38"},
      {"5 6", "0 5", "{} {}"},
      {"4 3", "0 -1", "{} {}"},
  };
  for (const auto& [range, answer, values] : cases) {
    eval("set c [monitor_curve new]");
    EXPECT_EQ(eval(std::string("monitor_curve fill $c ") + range + " table fixed"), answer)
        << range;
    EXPECT_EQ(eval("monitor_curve values $c 0 99"), values) << range;
  }
}

TEST_F(MonitorCurveCommand, WrongRequestsAreScriptErrorsAndLeaveTheCurveAsItWas) {
  eval("set c [monitor_curve new]; monitor_curve fill $c 0 1 ramp 5");
  const std::string usage = "wrong # args: should be \"monitor_curve ";
  const std::string outside = " are outside the curve, which has 5 positions";
  const std::pair<const char*, std::string> cases[] = {
      {"monitor_curve statistics $c 2 3", usage + "statistics curve lastCount\""},
      {"monitor_curve positions", usage + "positions source ?argument ...?\""},
      {"monitor_curve fill nothing 0 1 ramp 5", "no curve named \"nothing\""},
      {"monitor_curve fill $c 0 1 spiral 5",
       "unknown curve source \"spiral\": must be one of ramp, table"},
      {"monitor_curve fill $c 0 1 ramp", usage + "fill curve first last ramp count\""},
      {"monitor_curve fill $c 0 1 ramp 5 6", usage + "fill curve first last ramp count\""},
      {"monitor_curve positions table", usage + "positions table name\""},
      {"monitor_curve fill $c 0 1 table loose", "no table \"loose\""},
      {"monitor_curve fill $c 3 5 ramp 5", "positions 3..5" + outside},
      {"monitor_curve fill $c -1 2 ramp 5", "positions -1..2" + outside},
      {"monitor_curve fill $c 3 1 ramp 5", "positions 3..1" + outside},
      {"monitor_curve verdict $c -confidence", "value for \"-confidence\" missing"},
      {"monitor_curve verdict $c -level 0.9",
       "unknown option \"-level\": must be -confidence, -tolerance or -residual"},
      {"monitor_curve verdict $c -confidence 1", "the confidence must lie between 0 and 1, not 1"},
      {"monitor_curve verdict $c -confidence 0", "the confidence must lie between 0 and 1, not 0"},
      {"monitor_curve verdict $c -confidence x", "expected floating-point number but got \"x\""},
      {"monitor_curve verdict $c -tolerance -0.1", "the tolerance must be 0 or more, not -0.1"},
      {"monitor_curve verdict $c -tolerance Inf", "the tolerance must be 0 or more, not Inf"},
      {"monitor_curve spin $c",
       "usage: monitor_curve "
       "new|positions|fill|delete|length|truncate|values|thin|statistics|verdict ..."},
      {"monitor_curve thin $c nothing nothing 0 1 2", "can't find vector \"nothing\""},
  };
  for (const auto& [script, error] : cases) {
    EXPECT_EQ(eval(script), "ERROR " + error) << script;
    EXPECT_EQ(eval("monitor_curve values $c 0 99"), "{0.0 1.0} {0.0 1.0}") << script;
  }
}

TEST_F(MonitorCurveCommand, VerdictAnswersADictWithEveryKey) {
  eval("set c [monitor_curve new]; monitor_curve fill $c 0 9 ramp 10");
  EXPECT_EQ(eval("monitor_curve verdict $c"),
            "verdict short transientEnd {} samples 10 mean 0.0 halfWidth 0.0 confidence 0.95 "
            "drift 0 period {} amplitude {} ordersDropped {} stillFalling 0");
  // A ramp: its steady part keeps going up.
  eval("monitor_curve truncate $c 0; monitor_curve fill $c 0 999 ramp 1000");
  EXPECT_EQ(eval("dict get [monitor_curve verdict $c -confidence 0.9 -tolerance 0.5] verdict"),
            "transient");
  EXPECT_EQ(eval("dict get [monitor_curve verdict $c -confidence 0.9 -tolerance 0] confidence"),
            "0.9");
  EXPECT_EQ(eval("dict get [monitor_curve verdict $c -tolerance 0.001] drift"), "1");
}

}  // namespace
