// The turbomachinery commands over one written computation: a two-block
// history with a turbulence model, a single-block one without, a diagram and
// a profile; then the changes of state (projects added and removed, current
// project, files reread) and the bulk route, which must give the points the
// point commands give.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "bulk_route.h"
#include "command_call.h"
#include "console_capture.h"
#include "fileformat/work_unit.h"
#include "scratch_folder.h"
#include "turbo/commands/curve_sources.h"
#include "turbo/commands/turbo_command_set.h"
#include "turbo/curve_names.h"
#include "turbo/monitor.h"

namespace {

// Records numbered first, 2 first, ...; value p of record s is s (p + 1) + 0.5,
// so that a residual less its first record reads s (p + 1) and tells its
// position p. Value `beyondFloat` of the last record is too large for a float.
std::string records(int count, int values, int first, int beyondFloat = -1) {
  std::ostringstream text;
  for (int s = 0; s < count; ++s) {
    text << first * (s + 1);
    for (int p = 0; p < values; ++p)
      text << ' ' << (s + 1 == count && p == beyondFloat ? 1e39 : s * (p + 1) + 0.5);
    text << '\n';
  }
  return text.str();
}

std::string cannotOpen(const std::string& path) {
  return "*** ResFile  :: read() Cannot open the file :\n\t\t\t      " + path + "\n";
}

std::string call(std::string_view name, const std::vector<std::string>& arguments = {}) {
  return callCommand(turbo::kTurboCommands, name, arguments);
}

const std::string kNoMode = "3D {NO-K-E}  0 0 { }  {TURBO} ";

struct Row {
  const char* command;
  std::vector<std::string> arguments;
  std::string result;
  std::string console;
};

class TurboCommands : public ScratchFolder {
 protected:
  static void SetUpTestSuite() { turbo::buildCurveNameTables(); }
  ~TurboCommands() override {
    monitor_.reset();
    fileformat::workUnit = 0;
  }

  void start(std::vector<std::string> arguments = {}) {
    arguments.insert(arguments.begin(), "monitor");
    monitor_.reset();
    monitor_ = std::make_unique<turbo::Monitor>(arguments);
  }
  std::string written(const std::string& name, const std::string& text) {
    write(name, text);
    return pathOf(name);
  }
  // The written computation. ke: 3D, k-epsilon, one species and one harmonic
  // name, 2 blocks of 5 + 2 + 2 equations (45 values), iterations 10, 20, 30.
  // plain: short header, 1 block of 9 equations (27 values), 100, 200, 300.
  void loadCase() {
    ke_ = written("ke.res", "0 3.0 2 3D K-E 1 sp1 1 h1 4 STEADY TURBO\n" + records(3, 45, 10, 12));
    plain_ = written("plain.res", "1 9\n" + records(3, 27, 100));
    dia_ = written("row.dia", "2\n0.5 1.5 0.25 1.25\n0.75 1.75 0.1 2\n1\n5 6 7 8\n");
    pro_ = written("row.pro", "2\n0.5 0.25\n0.75 0.1\n0\n");
    start({ke_, plain_});
    call("itf_add_diag_file", {dia_});
    call("itf_add_prof_file", {pro_});
  }
  static void expectRows(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
      ConsoleCapture console;
      const std::string what = row.command + (" " + testing::PrintToString(row.arguments));
      EXPECT_EQ(call(row.command, row.arguments), row.result) << what;
      EXPECT_EQ(console.text(), row.console) << what;
    }
  }

  std::unique_ptr<turbo::Monitor> monitor_;
  std::string ke_, plain_, dia_, pro_;
};

TEST_F(TurboCommands, AnswersOverTheWrittenCase) {
  loadCase();
  const std::string& ke = ke_;
  const std::string& plain = plain_;
  const std::string& dia = dia_;
  const std::string& pro = pro_;
  const std::string none = pathOf("none.res");
  // At record 2 of ke, value p reads 2 (p + 1) + 0.5 and its residual
  // 2 (p + 1); block b, equation e has its maximum at 9 + 18 b + 2 e, its
  // rms one further; the species and harmonics start at equation 5 + 2
  // while the current project (ke) has two turbulence equations.
  expectRows({
      {"itf_read_running_project", {}, "2 {" + ke + "}  {" + plain + "} ", ""},
      {"itf_get_nbIter", {ke}, "3", ""},
      {"itf_get_nbIter", {none}, "", ""},
      {"itf_get_real_nbIter", {plain}, "300", ""},
      {"itf_get_nbBlock", {ke}, "2", ""},
      {"itf_get_current_nb_blocks", {}, "2", ""},
      {"itf_get_current_mode", {}, "3D {K-E}  1 1 { {sp1}  {h1}  }  {TURBO} ", ""},
      {"itf_get_mode", {"abc"}, "3D {K-E}  1 1 { {sp1}  {h1}  }  {TURBO} ", ""},
      {"itf_get_mode", {"2"}, kNoMode, ""},
      {"itf_get_residuals_per_row_choice", {ke}, "4", ""},
      {"itf_get_residuals_per_row_choice", {plain}, "0", ""},
      {"itf_get_residuals_per_row_choice",
       {none},
       "0",
       "itf_get_residuals_per_row_choice, ERROR: residual file: " + none + " not found!\n"},
      {"itf_update_now_monitor", {}, "1", ""},
      {"itf_get_work_unit", {}, "0", ""},
      // Global values by code: Lift (position 2), Torque (4), Out (8).
      {"itf_get_curve_value", {"0", ke, "2"}, "30 6.5", ""},
      {"itf_get_curve_value", {"5", ke, "2"}, "30 10.5", ""},
      {"itf_get_curve_value", {"6", ke, "2"}, "30 18.5", ""},
      {"itf_get_curve_value", {"0", ke, "0"}, "10 0.5", ""},
      {"itf_get_curve_value", {"7", ke, "2"}, "0 0", ""},
      {"itf_get_curve_value", {"0", ke, "3"}, "0 0", ""},
      {"itf_get_curve_value", {"0", ke, "-1"}, "0 0", ""},
      {"itf_get_curve_value", {"7", none, "1"}, "", ""},
      // Residuals by code: 6 rms_d, 7 max_d, 10 rms_wx, 22 rms_sp1, 39 max_nu,
      // above 39 rms_harm of code / 2 - 20.
      {"itf_get_curve_block_value", {"6", ke, "1", "2"}, "30 58", ""},
      {"itf_get_curve_block_value", {"7", ke, "1", "2"}, "30 56", ""},
      {"itf_get_curve_block_value", {"6", ke, "0", "2"}, "30 22", ""},
      {"itf_get_curve_block_value", {"10", ke, "0", "2"}, "30 inf", ""},
      {"itf_get_curve_block_value", {"22", ke, "1", "2"}, "30 86", ""},
      {"itf_get_curve_block_value", {"39", ke, "1", "2"}, "30 76", ""},
      {"itf_get_curve_block_value", {"43", ke, "1", "2"}, "30 86", ""},
      {"itf_get_curve_block_value", {"44", ke, "1", "2"}, "30 90", ""},
      {"itf_get_curve_block_value", {"22", plain, "0", "2"}, "300 50", ""},
      {"itf_get_curve_block_value", {"6", ke, "2", "2"}, "30 0", ""},
      {"itf_get_curve_block_value", {"6", ke, "1", "0"}, "10 0", ""},
      {"itf_get_curve_block_value", {"6", ke, "1", "3"}, "0 0", ""},
      {"itf_get_curve_block_value", {"6", ke, "1", "-1"}, "0 0", ""},
      {"itf_get_curve_block_value", {"6", none, "1", "2"}, "", ""},
      // Harmonics: prefix and (code - 39) / 2; names of no curve read position 0.
      {"itf_get_harmonic_curve_block_value", {"41", "rms", ke, "1", "2"}, "30 86", ""},
      {"itf_get_harmonic_curve_block_value", {"44", "max", ke, "1", "2"}, "30 88", ""},
      {"itf_get_harmonic_curve_block_value", {"41", "avg", ke, "1", "2"}, "30 2", ""},
      {"itf_get_harmonic_curve_block_value", {"41", "rms", ke, "1", "3"}, "0 0", ""},
      {"itf_get_harmonic_curve_block_value", {"41", "rms", none, "1", "2"}, "", ""},
      // Blades: point n is the pair of values 2n, 2n + 1 of the side.
      {"itf_get_nbPts", {dia, "Extrado_1"}, "2", ""},
      {"itf_get_nbPts", {dia, "Intrado_2"}, "1", ""},
      {"itf_get_nbPts", {pro, "Extrado_1"}, "", ""},
      {"itf_get_extrado_value", {dia, "0", "1"}, "0.75 0.100000001490116", ""},
      {"itf_get_extrado_value", {dia, "1", "1"}, "1.75 2", ""},
      {"itf_get_extrado_value", {dia, "2", "0"}, "0 0", ""},
      {"itf_get_extrado_value", {pro, "0", "0"}, "", ""},
      {"itf_get_intrado_value", {dia, "1", "0"}, "6 8", ""},
      {"itf_get_prof_nbPts", {pro, "Intrado"}, "0", ""},
      {"itf_get_prof_nbPts", {dia, "Extrado"}, "", ""},
      {"itf_get_prof_extrado_value", {pro, "1"}, "0.75 0.100000001490116", ""},
      {"itf_get_prof_intrado_value", {pro, "0"}, "0 0", ""},
      {"itf_get_prof_intrado_value", {dia, "0"}, "", ""},
      // The script's bookmarks, per project; unknown projects keep none.
      {"itf_set_current_nbIter", {"2", "3", ke, "15"}, "", ""},
      {"itf_get_current_nbIter", {"2", "3", ke}, "15", ""},
      {"itf_get_current_nbIter", {"2", "3", plain}, "0", ""},
      {"itf_set_current_nbIter", {"2", "3", none, "9"}, "", ""},
      {"itf_get_current_nbIter", {"2", "3", none}, "", ""},
      // The work unit as abscissa: the record's first value.
      {"itf_work_unit", {"1"}, "", ""},
      {"itf_get_work_unit", {}, "1", ""},
      {"itf_get_curve_value", {"0", ke, "2"}, "2.5 6.5", ""},
      {"itf_get_curve_block_value", {"6", ke, "1", "1"}, "1.5 29", ""},
      {"itf_get_harmonic_curve_block_value", {"41", "rms", ke, "1", "2"}, "2.5 86", ""},
      {"itf_work_unit", {"0"}, "", ""},
      // Without turbulence equations in the current project the species
      // start at equation 5.
      {"itf_set_current_project", {plain}, "", ""},
      {"itf_get_current_nb_blocks", {}, "1", ""},
      {"itf_get_curve_block_value", {"22", plain, "0", "2"}, "300 42", ""},
      {"itf_get_harmonic_curve_block_value", {"41", "rms", ke, "1", "2"}, "30 78", ""},
  });
  EXPECT_EQ(monitor_->settingsChanged, 1);
}

TEST_F(TurboCommands, CommandLineOpensItsResArgumentsAndRetriesTheMissingOnes) {
  start();
  expectRows({
      {"itf_read_running_project", {}, "0", ""},
      {"itf_update_now_monitor", {}, "0", ""},
      {"itf_get_current_nb_blocks", {}, "0", ""},
      {"itf_get_mode", {}, kNoMode, ""},
  });
  const std::string missing = pathOf("missing.res");
  const std::string added = pathOf("added.res");
  ConsoleCapture console;
  // Only the extension "res" opens a project; start-up reads each twice.
  start({missing, pathOf("b.txt"), pathOf("x.RES"), pathOf("run.res.bak"), pathOf("d.res/file"),
         pathOf("noext"), pathOf("trail.")});
  EXPECT_EQ(console.text(), cannotOpen(missing) + cannotOpen(missing));
  // An added project is read, then every project in order.
  call("itf_add_res_file", {added});
  EXPECT_EQ(console.text(), cannotOpen(missing) + cannotOpen(missing) + cannotOpen(added) +
                                cannotOpen(missing) + cannotOpen(added));
  expectRows({
      {"itf_read_running_project", {}, "1 {" + missing + "} ", ""},
      {"itf_get_nbIter", {missing}, "0", ""},
      {"itf_update_now_monitor", {}, "0", cannotOpen(missing) + cannotOpen(added)},
  });
  write("added.res", "1 5\n" + records(2, 19, 10));
  expectRows({
      {"itf_update_now_monitor", {}, "1", cannotOpen(missing)},
      {"itf_get_nbIter", {added}, "2", ""},
  });
}

TEST_F(TurboCommands, ProjectsAddedAndRemoved) {
  const std::string a = written("a.res", "0 2.0 1 3D K-O 0 0 STEADY A\n" + records(1, 23, 1));
  const std::string p = written("p.res", "0 2.0 1 3D NO-K-E 0 1 h1 STEADY P\n" + records(1, 21, 1));
  const std::string unknown = pathOf("unknown.res");
  start({a});
  const auto modes = [&] {
    std::string all;
    for (const char* index : {"0", "1", "2", "3"}) all += "[" + call("itf_get_mode", {index}) + "]";
    return all;
  };
  const std::string aMode = "[3D {K-O}  0 0 { }  {A} ]";
  const std::string pMode = "[3D {NO-K-E}  0 1 { {h1}  }  {P} ]";
  const std::string noMode = "[" + kNoMode + "]";
  expectRows({
      // The path of a running project warns and is added all the same.
      {"itf_add_res_file", {a}, "", "Project already loaded\n"},
      {"itf_add_res_file", {p}, "", ""},
      {"itf_add_res_file", {p}, "", ""},
      {"itf_read_running_project", {}, "1 {" + a + "} ", ""},
      // The current project is the last of its path; lookups find the first.
      {"itf_set_current_project", {p}, "", ""},
      {"itf_get_current_mode", {}, pMode.substr(1, pMode.size() - 2), ""},
      {"itf_set_current_block", {"4"}, "", ""},
      {"itf_set_current_nbIter", {"1", "2", a, "9"}, "", ""},
      // Only added projects are removed, the first of a path first.
      {"itf_remove_res_file", {"1", a}, "", ""},
      {"itf_get_current_nbIter", {"1", "2", a}, "9", ""},
      {"itf_remove_res_file", {"1", a}, "", "can't remove it!\n"},
      {"itf_remove_res_file", {"0", p}, "", ""},
  });
  EXPECT_EQ(monitor_->currentProject, 0);
  EXPECT_EQ(monitor_->currentBlock, 0);
  EXPECT_EQ(modes(), aMode + pMode + pMode + noMode);
  call("itf_set_current_project", {p});
  EXPECT_EQ(monitor_->currentProject, 2);
  call("itf_set_current_project", {unknown});
  EXPECT_EQ(monitor_->currentProject, 2);
  call("itf_set_current_project", {a});
  EXPECT_EQ(monitor_->currentProject, 0);
  call("itf_set_current_block", {});
  EXPECT_EQ(monitor_->currentBlock, -1);
  // A count, then that many paths of a list; missing ones read as empty.
  expectRows({
      {"itf_remove_res_file", {"2", "{" + p + "} {" + unknown + "}"}, "", "can't remove it!\n"},
      {"itf_remove_res_file", {"2", p}, "", "can't remove it!\n"},
  });
  EXPECT_EQ(modes(), aMode + noMode + noMode + noMode);
}

TEST_F(TurboCommands, BladeFilesAreRereadWhenAsked) {
  loadCase();
  write("row.dia", "1\n9 8 7 6\n0\n");
  write("row.pro", "3\n1 2\n3 4\n5 6\n0\n");
  expectRows({
      {"itf_get_extrado_value", {dia_, "1", "1"}, "1.75 2", ""},
      {"itf_update_diag_file", {}, "", ""},
      {"itf_get_nbPts", {dia_, "Extrado_1"}, "1", ""},
      {"itf_get_extrado_value", {dia_, "1", "0"}, "8 6", ""},
      {"itf_get_prof_nbPts", {pro_, "Extrado"}, "2", ""},
      {"itf_update_prof_file", {}, "", ""},
      {"itf_get_prof_extrado_value", {pro_, "2"}, "5 6", ""},
  });
}

TEST_F(TurboCommands, BulkRouteServesWhatThePointCommandsGive) {
  loadCase();
  const auto text = [](long long value) { return std::to_string(value); };
  const auto same = [&](const std::vector<std::string>& source, std::size_t count,
                        const std::function<std::string(std::size_t)>& pointAt) {
    expectServedAsPointByPoint(turbo::curveSources(), source, count, pointAt);
  };
  for (const int unit : {0, 1}) {
    fileformat::workUnit = unit;
    for (const auto& [path, blocks] : {std::pair{ke_, 2}, std::pair{plain_, 1}}) {
      for (int code = 0; code <= 6; ++code) {
        same({"global", path, text(code)}, 3, [&](std::size_t i) {
          return call("itf_get_curve_value", {text(code), path, text(i)});
        });
      }
      for (int b = 0; b < blocks; ++b) {
        for (int code = 5; code <= 46; ++code) {
          same({"block", path, text(code), text(b)}, 3, [&](std::size_t i) {
            return call("itf_get_curve_block_value", {text(code), path, text(b), text(i)});
          });
          for (const char* prefix : {"rms", "max"}) {
            same({"harmonic", path, text(code), prefix, text(b)}, 3, [&](std::size_t i) {
              return call("itf_get_harmonic_curve_block_value",
                          {text(code), prefix, path, text(b), text(i)});
            });
          }
        }
      }
    }
  }
  for (int n = 0; n < 4; ++n) {
    const std::string side = (n < 2 ? "Extrado_" : "Intrado_") + text(n % 2 + 1);
    const char* command = n < 2 ? "itf_get_extrado_value" : "itf_get_intrado_value";
    same({"diagram", dia_, side}, std::stoul(call("itf_get_nbPts", {dia_, side})),
         [&](std::size_t i) {
           return call(command, {dia_, text(n % 2), text(i)});
         });
  }
  for (const auto& [side, command] : {std::pair{"Extrado", "itf_get_prof_extrado_value"},
                                      std::pair{"Intrado", "itf_get_prof_intrado_value"}}) {
    same({"profile", pro_, side}, std::stoul(call("itf_get_prof_nbPts", {pro_, side})),
         [&](std::size_t i) {
           return call(command, {pro_, text(i)});
         });
  }
}

TEST_F(TurboCommands, BulkRouteRefusesWrongRequestsWithWhatIsWrong) {
  loadCase();
  const struct {
    std::vector<std::string> words;
    std::string complaint;
  } cases[] = {
      {{"global", "/no/such.res", "0"}, "no computation \"/no/such.res\" is open"},
      {{"global", ke_, "7"}, "no global curve of code 7"},
      {{"global", ke_, "-1"}, "no global curve of code -1"},
      {{"block", ke_, "6", "2"}, "no block 2 in \"" + ke_ + "\" (it has 2)"},
      {{"harmonic", plain_, "41", "rms", "-1"}, "no block -1 in \"" + plain_ + "\" (it has 1)"},
      {{"diagram", pro_, "Extrado_1"}, "no diagram \"" + pro_ + "\" is open"},
      {{"diagram", dia_, "Extrado"}, "no side \"Extrado\" in a diagram"},
      {{"profile", pro_, "Extrado_1"}, "no side \"Extrado_1\" in a profile"},
      {{"profile", dia_, "Extrado"}, "no profile \"" + dia_ + "\" is open"},
  };
  for (const auto& c : cases) {
    ConsoleCapture quiet;
    EXPECT_EQ(serveInBulk(turbo::curveSources(), c.words).complaint, c.complaint)
        << testing::PrintToString(c.words);
  }
}

}  // namespace
