// The bulk route of turbomachinery mode: global quantities, block and
// harmonic residuals (as their change since the first record), against
// iterations and work units, and the sides of diagrams and profiles, give the
// points that the commands reading one point give; wrong requests are refused
// with what is wrong.
#include <sstream>

#include "bulk_route.h"
#include "console_capture.h"
#include "fileformat/work_unit.h"
#include "turbo/commands/curve_sources.h"
#include "turbo_command_runner.h"

namespace {

std::string text(long long value) { return std::to_string(value); }

// Values that vary from record to record and from position to position, with
// values beyond the floats in the last record (a global quantity and a
// residual).
std::string records(int count, int values, bool unsteady) {
  std::ostringstream out;
  for (int s = 0; s < count; ++s) {
    if (unsteady) out << s + 1 << ' ';
    out << 10 * (s + 1);
    for (int p = 0; p < values; ++p) {
      if (s + 1 == count && (p == 5 || p == 12)) {
        out << " 1e39";
      } else {
        out << ' ' << (s + 1) * 0.37 + p * 1.1 / (s + 2);
      }
    }
    out << '\n';
  }
  return out.str();
}

class TurboBulkRoute : public TurboMonitorTest {
 protected:
  static void expectSame(const std::vector<std::string>& source, std::size_t count,
                         const std::function<std::string(std::size_t)>& pointAt) {
    expectServedAsPointByPoint(turbo::curveSources(), source, count, pointAt);
  }

  void expectResidualCurvesSame(const std::string& path, int blocks) {
    const auto records = static_cast<std::size_t>(std::stoul(call("itf_get_nbIter", {path})));
    for (int code = 0; code <= 6; ++code) {
      expectSame({"global", path, text(code)}, records, [&](std::size_t i) {
        return call("itf_get_curve_value", {text(code), path, text(i)});
      });
    }
    for (int b = 0; b < blocks; ++b) {
      for (int code = 6; code <= 45; ++code) {
        expectSame({"block", path, text(code), text(b)}, records, [&](std::size_t i) {
          return call("itf_get_curve_block_value", {text(code), path, text(b), text(i)});
        });
      }
      for (const char* prefix : {"rms", "max"}) {
        for (int code = 41; code <= 45; code += 2) {
          expectSame({"harmonic", path, text(code), prefix, text(b)}, records, [&](std::size_t i) {
            return call("itf_get_harmonic_curve_block_value",
                        {text(code), prefix, path, text(b), text(i)});
          });
        }
      }
    }
  }
};

TEST_F(TurboBulkRoute, ResidualHistoriesInIterationsAndWorkUnits) {
  const std::string kE = write(
      "ke.res", "0 3.0 2 3D K-E 2 s1 s2 0 1 STEADY TURBO\n" + records(4, 9 + 2 * 2 * 9, false));
  const std::string plain = write("plain.res", "1 9\n" + records(3, 27, false));
  start({kE, plain});
  for (const int unit : {0, 1}) {
    fileformat::workUnit = unit;
    expectResidualCurvesSame(kE, 2);
    expectResidualCurvesSame(plain, 1);
  }
}

TEST_F(TurboBulkRoute, SidesOfDiagramsAndProfiles) {
  start();
  const std::string diagram =
      write("row.dia", "2\n0.5 1.5 0.25 1.25\n0.75 1.75 0.1 2\n1\n5 6 7 8\n");
  const std::string profile = write("row.pro", "2\n0.5 0.25\n0.75 0.1\n1\n3 1e39\n");
  call("itf_add_diag_file", {diagram});
  call("itf_add_prof_file", {profile});
  for (const auto& [side, command, number] :
       {std::tuple{"Extrado_1", "itf_get_extrado_value", "0"},
        std::tuple{"Extrado_2", "itf_get_extrado_value", "1"},
        std::tuple{"Intrado_1", "itf_get_intrado_value", "0"},
        std::tuple{"Intrado_2", "itf_get_intrado_value", "1"}}) {
    expectSame({"diagram", diagram, side}, std::stoul(call("itf_get_nbPts", {diagram, side})),
               [&](std::size_t i) {
                 return call(command, {diagram, number, text(i)});
               });
  }
  for (const auto& [side, command] : {std::pair{"Extrado", "itf_get_prof_extrado_value"},
                                      std::pair{"Intrado", "itf_get_prof_intrado_value"}}) {
    expectSame({"profile", profile, side}, std::stoul(call("itf_get_prof_nbPts", {profile, side})),
               [&](std::size_t i) {
                 return call(command, {profile, text(i)});
               });
  }
}

TEST_F(TurboBulkRoute, WrongRequestsAreRefusedWithWhatIsWrong) {
  const std::string res = write("plain.res", "1 9\n" + records(3, 27, false));
  start({res});
  const std::string diagram = write("row.dia", "1\n0 0 0 0\n0\n");
  call("itf_add_diag_file", {diagram});
  const struct {
    std::vector<std::string> words;
    std::string complaint;
  } cases[] = {
      {{"global", "/no/such.res", "0"}, "no computation \"/no/such.res\" is open"},
      {{"global", res, "7"}, "no global curve of code 7"},
      {{"global", res, "-1"}, "no global curve of code -1"},
      {{"block", res, "6", "1"}, "no block 1 in \"" + res + "\" (it has 1)"},
      {{"harmonic", res, "41", "rms", "-1"}, "no block -1 in \"" + res + "\" (it has 1)"},
      {{"diagram", res, "Extrado_1"}, "no diagram \"" + res + "\" is open"},
      {{"diagram", diagram, "Extrado"}, "no side \"Extrado\" in a diagram"},
      {{"profile", diagram, "Extrado"}, "no profile \"" + diagram + "\" is open"},
  };
  for (const auto& c : cases) {
    ConsoleCapture quiet;
    EXPECT_EQ(serveInBulk(turbo::curveSources(), c.words).complaint, c.complaint)
        << testing::PrintToString(c.words);
  }
}

}  // namespace
