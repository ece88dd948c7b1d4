// The bulk route of marine mode: every kind of served curve gives the points
// that the commands reading one point give, and a wrong request is refused
// with a complaint that names what is wrong.
#include <functional>

#include "bulk_route.h"
#include "marine/commands/curve_sources.h"
#include "marine_command_fixture.h"

namespace marine_commands_test {
namespace {

std::string text(std::size_t value) { return std::to_string(value); }
std::string text(int value) { return std::to_string(value); }

using PointAt = std::function<std::string(std::size_t)>;

class MarineBulkRoute : public MarineCommands {
 protected:
  static std::size_t count(const std::string& command, const std::vector<std::string>& words) {
    return std::stoul(run(command, words).first);
  }
  // The answer of `command` to `words` and the position.
  static PointAt at(const std::string& command, const std::vector<std::string>& words) {
    return [=](std::size_t i) {
      std::vector<std::string> all = words;
      all.push_back(text(i));
      return run(command, all).first;
    };
  }
  // "x y" of a table: x the position from 1 (`along` -1) or quantity `along`.
  static PointAt pairAt(int along, int quantity,
                        const std::function<std::string(int, std::size_t)>& value) {
    return [=](std::size_t i) {
      return (along < 0 ? text(i + 1) : value(along, i)) + " " + value(quantity, i);
    };
  }
  static void same(const std::vector<std::string>& source, std::size_t positions,
                   const PointAt& pointAt) {
    expectServedAsPointByPoint(marine::curveSources(), source, positions, pointAt);
  }

  void expectEveryCurveSame(const std::string& p) {
    const std::string v = "itf_get_curve_value_KELP";
    for (int r = 0; r < 8; ++r)
      same({"residual", p, text(r)}, count("itf_get_nbIter_KELP", {p}),
           at(v, {p, "Resids", "0", "-1", text(r)}));
    for (std::size_t b = 0; b < count("get_number_of_bodies_KELP", {p}); ++b) {
      const std::string body = text(b);
      for (int s = -1; s < static_cast<int>(count("get_sub_object_number_KELP", {p, body})); ++s) {
        for (const auto& [kind, category, converged, quantities] :
             {std::tuple{"force", "Forces", "convergedForce", 18},
              std::tuple{"moment", "Moments", "convergedMoment", 21}}) {
          const std::string k = kind;
          for (int q = 0; q < quantities; ++q) {
            const std::vector<std::string> of = {p, body, text(s), text(q)};
            same({k, p, body, text(s), text(q)}, count("itf_get_nbIter_" + k + "_KELP", of),
                 at(v, {p, category, body, text(s), text(q)}));
            const PointAt value = at("itf_get_" + k + "_conv_value", {text(q), p, body, text(s)});
            same({converged, p, body, text(s), text(q)}, count("itf_get_" + k + "_conv_length", of),
                 [&](std::size_t i) { return text(i + 1) + " " + value(i); });
          }
        }
      }
      const std::size_t rows = count("itf_get_nbIter_motion_KELP", {p, body});
      for (int m = 0; rows > 0 && m < static_cast<int>(count("itf_get_motions_number_KELP", {p}));
           ++m)
        same({"motion", p, body, text(m)}, rows, at(v, {p, "Motions", body, "-1", text(m)}));
    }
    for (std::size_t d = 0; d < count("itf_get_disk_count", {p}); ++d) {
      const auto value = [&](int q, std::size_t i) {
        return run("itf_get_disk_quantity_value", {p, text(d), text(q), text(i)}).first;
      };
      const int quantities = static_cast<int>(count("itf_get_disk_quantity_count", {p, text(d)}));
      for (int q = 0; q < quantities; ++q) {
        for (const int along : {-1, 0, quantities - 1})
          same({"disk", p, text(d), text(q), text(along)},
               count("itf_get_disk_steps", {p, text(d)}), pairAt(along, q, value));
      }
    }
    const auto extra = [&](int q, std::size_t i) {
      return run("itm_get_extra_quantity_value", {p, text(q), text(i)}).first;
    };
    for (int q = 0; q < static_cast<int>(count("itm_get_number_of_extra_quantities", {p})); ++q) {
      for (const int along : {-1, 0})
        same({"extra", p, text(q), text(along)},
             count("itm_get_extra_quantity_capacity", {p, text(q)}), pairAt(along, q, extra));
    }
    for (int k = 0; k < static_cast<int>(count("itm_get_custom_plots_no", {p})); ++k)
      same({"custom", p, text(k)}, count("itm_get_custom_plot_points_no", {p, text(k)}),
           at("itm_get_custom_plot_point", {p, text(k)}));
  }
};

TEST_F(MarineBulkRoute, ServesWhatThePointCommandsGiveInIterationsAndWorkUnits) {
  run("itm_add_custom_plot", {u_, "Fx_hull+Fx_keel"});
  run("itm_add_custom_plot", {s_, "2*t"});
  for (const int unit : {0, 1}) {
    fileformat::workUnit = unit;
    expectEveryCurveSame(u_);
    expectEveryCurveSame(s_);
  }
}

TEST_F(MarineBulkRoute, ACurveEndingInMissingPointsTellsWhereTheyBegin) {
  const Served served =
      serveInBulk(marine::curveSources(), {"convergedForce", u_, "0", "-1", "13"});
  EXPECT_EQ(served.positions, 3u);
  EXPECT_EQ(served.points.size(), 2u);
  EXPECT_EQ(served.trailingMissing, 2);
}

TEST_F(MarineBulkRoute, WrongRequestsAreRefusedWithWhatIsWrong) {
  const std::string in = " in \"" + u_ + "\"";
  const struct {
    std::vector<std::string> words;
    std::string complaint;
  } cases[] = {
      {{"residual", "/no/such.res", "0"}, "no computation \"/no/such.res\" is open"},
      {{"residual", u_, "8"}, "no residual 8 (there are 0 to 7)"},
      {{"force", u_, "3", "-1", "0"}, "no body" + in + " 3 (there are 0 to 2)"},
      {{"force", u_, "0", "2", "0"}, "no sub-body of body 0" + in + " 2 (there are 0 to 1)"},
      {{"force", u_, "1", "0", "0"}, "no sub-body of body 1" + in + " 0 (there are none)"},
      {{"force", u_, "0", "-1", "18"}, "no force 18 (there are 0 to 17)"},
      {{"moment", u_, "0", "-1", "21"}, "no moment 21 (there are 0 to 20)"},
      {{"motion", u_, "1", "0"}, "no motion of body 1" + in + " 0 (there are none)"},
      {{"disk", u_, "2", "0", "-1"}, "no actuator disk" + in + " 2 (there are 0 to 1)"},
      {{"disk", u_, "0", "9", "-1"}, "no quantity of actuator disk 0 9 (there are 0 to 1)"},
      {{"disk", u_, "0", "0", "-2"}, "no abscissa quantity -2 (there are 0 to 1)"},
      {{"extra", u_, "4", "-1"}, "no user quantity" + in + " 4 (there are 0 to 3)"},
      {{"custom", u_, "0"}, "no custom plot" + in + " 0 (there are none)"},
  };
  for (const auto& c : cases) {
    const Served served = serveInBulk(marine::curveSources(), c.words);
    EXPECT_EQ(served.complaint, c.complaint) << testing::PrintToString(c.words);
    EXPECT_TRUE(served.points.empty());
  }
}

}  // namespace
}  // namespace marine_commands_test
