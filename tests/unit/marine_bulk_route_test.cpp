// The bulk route of marine mode: every kind of served curve gives the points
// that the commands reading one point give, in steady and unsteady runs, in
// work units, with missing values; and wrong requests are refused with a
// complaint that names what is wrong.
#include <functional>

#include "bulk_route.h"
#include "fileformat/work_unit.h"
#include "marine/commands/curve_sources.h"
#include "marine_command_fixture.h"

namespace marine_commands_test {
namespace {

std::size_t countOf(const std::string& command, const std::vector<std::string>& arguments) {
  return static_cast<std::size_t>(std::stoul(run(command, arguments).result));
}

std::string text(int value) { return std::to_string(value); }
std::string text(std::size_t value) { return std::to_string(value); }

class MarineBulkRoute : public MarineCommandTest {
 protected:
  // Compares the curve `source` names with the point command `pointAt`
  // over `count` positions.
  static void expectSame(const std::vector<std::string>& source, std::size_t count,
                         const std::function<std::string(std::size_t)>& pointAt) {
    expectServedAsPointByPoint(marine::curveSources(), source, count, pointAt);
  }

  // Every curve of every kind that the computation at `path` holds.
  void expectEveryCurveSame(const std::string& path) {
    const std::size_t rows = countOf("itf_get_nbIter_KELP", {path});
    for (int r = 0; r < 8; ++r) {
      expectSame({"residual", path, text(r)}, rows, [&](std::size_t i) {
        return run("itf_get_curve_value_KELP", {path, "Resids", "0", "-1", text(r), text(i)})
            .result;
      });
    }
    const std::size_t bodies = countOf("get_number_of_bodies_KELP", {path});
    for (std::size_t b = 0; b < bodies; ++b) {
      const int subs = static_cast<int>(countOf("get_sub_object_number_KELP", {path, text(b)}));
      for (int s = -1; s < subs; ++s) expectComponentsSame(path, text(b), text(s));
      const std::size_t count = countOf("itf_get_nbIter_motion_KELP", {path, text(b)});
      const int motions =
          count == 0 ? 0 : static_cast<int>(countOf("itf_get_motions_number_KELP", {path}));
      for (int m = 0; m < motions; ++m) {
        expectSame({"motion", path, text(b), text(m)}, count, [&](std::size_t i) {
          return run("itf_get_curve_value_KELP", {path, "Motions", text(b), "-1", text(m), text(i)})
              .result;
        });
      }
    }
    const std::size_t disks = countOf("itf_get_disk_count", {path});
    for (std::size_t d = 0; d < disks; ++d) {
      const std::size_t steps = countOf("itf_get_disk_steps", {path, text(d)});
      const int quantities =
          static_cast<int>(countOf("itf_get_disk_quantity_count", {path, text(d)}));
      for (int q = 0; q < quantities; ++q) {
        for (const int a : {-1, 0, quantities - 1}) {
          expectSame({"disk", path, text(d), text(q), text(a)}, steps, [&](std::size_t i) {
            const std::string x =
                a < 0
                    ? text(i + 1)
                    : run("itf_get_disk_quantity_value", {path, text(d), text(a), text(i)}).result;
            return x + " " +
                   run("itf_get_disk_quantity_value", {path, text(d), text(q), text(i)}).result;
          });
        }
      }
    }
    const int extras = static_cast<int>(countOf("itm_get_number_of_extra_quantities", {path}));
    for (int q = 0; q < extras; ++q) {
      for (const int a : {-1, 0}) {
        expectSame(
            {"extra", path, text(q), text(a)},
            countOf("itm_get_extra_quantity_capacity", {path, text(q)}), [&](std::size_t i) {
              const std::string x =
                  a < 0 ? text(i + 1)
                        : run("itm_get_extra_quantity_value", {path, text(a), text(i)}).result;
              return x + " " + run("itm_get_extra_quantity_value", {path, text(q), text(i)}).result;
            });
      }
    }
    const int plots = static_cast<int>(countOf("itm_get_custom_plots_no", {path}));
    for (int k = 0; k < plots; ++k) {
      expectSame({"custom", path, text(k)},
                 countOf("itm_get_custom_plot_points_no", {path, text(k)}), [&](std::size_t i) {
                   return run("itm_get_custom_plot_point", {path, text(k), text(i)}).result;
                 });
    }
  }

  void expectComponentsSame(const std::string& path, const std::string& b, const std::string& s) {
    for (const auto& [kind, category, quantities] :
         {std::tuple{"force", "Forces", 18}, std::tuple{"moment", "Moments", 21}}) {
      const std::string kindName = kind;
      for (int q = 0; q < quantities; ++q) {
        expectSame({kindName, path, b, s, text(q)},
                   countOf("itf_get_nbIter_" + kindName + "_KELP", {path, b, s, text(q)}),
                   [&](std::size_t i) {
                     return run("itf_get_curve_value_KELP",
                                {path, category, b, s, text(q), text(i)})
                         .result;
                   });
        const std::string converged = kindName == "force" ? "convergedForce" : "convergedMoment";
        expectSame({converged, path, b, s, text(q)},
                   countOf("itf_get_" + kindName + "_conv_length", {path, b, s, text(q)}),
                   [&](std::size_t i) {
                     return text(i + 1) + " " +
                            run("itf_get_" + kindName + "_conv_value",
                                {text(q), path, b, s, text(i)})
                                .result;
                   });
      }
    }
  }
};

TEST_F(MarineBulkRoute, UnsteadyRunInIterationsAndWorkUnits) {
  const std::string path = load(caseSetup("unsteady", RunMode::unsteady), 23);
  run("itm_add_custom_plot", {path, "Fx_hull+Fx_keel"});
  run("itm_add_custom_plot", {path, "2*t"});
  expectEveryCurveSame(path);
  fileformat::workUnit = 1;
  expectEveryCurveSame(path);
}

// Hand-written rows with values the solver did not give: NaN, infinite and
// beyond the floats, in residuals, forces, motions and user quantities.
TEST_F(MarineBulkRoute, SteadyRunWithMissingValues) {
  const fs::path folder = folder_ / "steady";
  written(caseSetup("steady", RunMode::steady), 4);
  append(folder / "ship.res",
         "7 1.5 nan 0.25 inf 0.0625 0.03125 1e39\n8 1.5 0.5 -inf 0.125 0.0625 0.03125 2\n");
  append(folder / "eff_Fx.dat", "0.2 7 nan 210.25 1e39 12.125\n0.3 8 -1e39 1 2 3\n");
  append(folder / "Mvt_hull.dat", "0.2 1.5 nan -0.5 0.25 0.125 1e39\n");
  append(folder / "user_data.csv", "5,nan,1e39\n");
  const std::string path = load((folder / "ship.res").string());
  run("itm_add_custom_plot", {path, "Fx_hull*2"});
  expectEveryCurveSame(path);
}

TEST_F(MarineBulkRoute, ARangeEndingInMissingPointsTellsWhereTheyBegin) {
  const fs::path folder = folder_ / "steady";
  written(caseSetup("steady", RunMode::steady), 4);
  append(folder / "eff_Fx.dat", "0.2 7 1e39 1 2 3\n0.3 8 -1e39 1 2 3\n");
  const std::string path = load((folder / "ship.res").string());
  const Served served = serveInBulk(marine::curveSources(), {"force", path, "0", "-1", "0"});
  EXPECT_EQ(served.positions, 6u);
  EXPECT_EQ(served.points.size(), 4u);
  EXPECT_EQ(served.trailingMissing, 4);
}

TEST_F(MarineBulkRoute, WrongRequestsAreRefusedWithWhatIsWrong) {
  const std::string path = load(caseSetup("unsteady", RunMode::unsteady), 3);
  const std::string quotedPath = "\"" + path + "\"";
  const struct {
    std::vector<std::string> words;
    std::string complaint;
  } cases[] = {
      {{"residual", "/no/such.res", "0"}, "no computation \"/no/such.res\" is open"},
      {{"residual", path, "8"}, "no residual 8 (there are 0 to 7)"},
      {{"residual", path, "-1"}, "no residual -1 (there are 0 to 7)"},
      {{"force", path, "2", "-1", "0"}, "no body in " + quotedPath + " 2 (there are 0 to 1)"},
      {{"force", path, "0", "2", "0"},
       "no sub-body of body 0 in " + quotedPath + " 2 (there are 0 to 1)"},
      {{"force", path, "1", "0", "0"},
       "no sub-body of body 1 in " + quotedPath + " 0 (there are none)"},
      {{"force", path, "0", "-1", "18"}, "no force 18 (there are 0 to 17)"},
      {{"moment", path, "0", "-1", "21"}, "no moment 21 (there are 0 to 20)"},
      {{"convergedMoment", path, "0", "-1", "21"}, "no moment 21 (there are 0 to 20)"},
      {{"motion", path, "1", "0"}, "no motion of body 1 in " + quotedPath + " 0 (there are none)"},
      {{"disk", path, "2", "0", "-1"},
       "no actuator disk in " + quotedPath + " 2 (there are 0 to 1)"},
      {{"disk", path, "0", "9", "-1"}, "no quantity of actuator disk 0 9 (there are 0 to 1)"},
      {{"disk", path, "0", "0", "-2"}, "no abscissa quantity -2 (there are 0 to 1)"},
      {{"extra", path, "4", "-1"}, "no user quantity in " + quotedPath + " 4 (there are 0 to 3)"},
      {{"custom", path, "0"}, "no custom plot in " + quotedPath + " 0 (there are none)"},
  };
  for (const auto& c : cases) {
    const Served served = serveInBulk(marine::curveSources(), c.words);
    EXPECT_EQ(served.complaint, c.complaint) << testing::PrintToString(c.words);
    EXPECT_TRUE(served.points.empty());
  }
}

}  // namespace
}  // namespace marine_commands_test
