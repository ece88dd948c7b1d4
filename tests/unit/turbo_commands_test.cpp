// The turbomachinery commands and the bulk route, which must give the points
// the point commands give; the positions of named curves.
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "bulk_route.h"
#include "command_call.h"
#include "console_capture.h"
#include "fileformat/work_unit.h"
#include "scratch_folder.h"
#include "turbo/commands/curve_sources.h"
#include "turbo/commands/turbo_command_set.h"
#include "turbo/curve_names.h"
#include "turbo/ite_res.h"
#include "turbo/monitor.h"

namespace {

// Records numbered first, 2 first, ...; value p of record s is s (p + 1) + 0.5,
// value `beyondFloat` of the last record too large for a float.
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

// A command, its calls' arguments and answers, each separated by " | ", and
// what the calls print.
struct Row {
  const char* command;
  std::string calls, answers, console = "";
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
  // ke: k-epsilon, species sp1, harmonic h1, 2 blocks of 9 equations, iterations
  // 10, 20, 30. plain: short header, 1 block of 9 equations, 100, 200, 300.
  void loadCase() {
    ke_ = written("ke.res", "0 3.0 2 3D K-E 1 sp1 1 h1 4 STEADY TURBO\n" + records(3, 45, 10, 12));
    plain_ = written("plain.res", "1 9\n" + records(3, 27, 100));
    dia_ = written("row.dia", "2\n0.5 1.5 0.25 1.25\n0.75 1.75 0.1 2\n1\n5 6 7 8\n");
    pro_ = written("row.pro", "2\n0.5 0.25\n0.75 0.1\n0\n");
    start({ke_, plain_});
    call("itf_add_diag_file", {dia_});
    call("itf_add_prof_file", {pro_});
  }
  // $name stands for the path of file name, name.res without an extension.
  std::vector<std::string> words(const std::string& text) const {
    std::vector<std::string> all;
    std::istringstream in(text);
    for (std::string w; in >> w;)
      all.push_back(w[0] != '$' ? w : pathOf(w.substr(1) + (w.find('.') == w.npos ? ".res" : "")));
    return all;
  }
  void expectRows(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
      ConsoleCapture console;
      std::string answers, separator;
      std::istringstream calls(row.calls + "|");
      for (std::string one; std::getline(calls, one, '|'); separator = " | ")
        answers += separator + call(row.command, words(one));
      EXPECT_EQ(answers, row.answers) << row.command << " " << row.calls;
      EXPECT_EQ(console.text(), row.console) << row.command << " " << row.calls;
    }
  }

  std::unique_ptr<turbo::Monitor> monitor_;
  std::string ke_, plain_, dia_, pro_;
};

TEST_F(TurboCommands, AnswersOverTheWrittenCase) {
  loadCase();
  const std::string none = pathOf("none.res");
  const std::string keMode = "3D {K-E}  1 1 { {sp1}  {h1}  }  {TURBO} ";
  // At record 2 value p reads 2 (p + 1) + 0.5, its residual 2 (p + 1).
  expectRows({
      {"itf_read_running_project", "", "2 {" + ke_ + "}  {" + plain_ + "} "},
      {"itf_get_nbIter", "$ke | $none", "3 | "},
      {"itf_get_real_nbIter", "$plain", "300"},
      {"itf_get_nbBlock", "$ke", "2"},
      {"itf_get_current_nb_blocks", "", "2"},
      {"itf_get_current_mode", "", keMode},
      {"itf_get_mode", "abc | 2", keMode + " | " + kNoMode},
      {"itf_get_residuals_per_row_choice", "$ke | $plain | $none", "4 | 0 | 0",
       "itf_get_residuals_per_row_choice, ERROR: residual file: " + none + " not found!\n"},
      {"itf_update_now_monitor", "", "1"},
      {"itf_get_work_unit", "", "0"},
      {"itf_get_curve_value",
       "0 $ke 2 | 6 $ke 2 | 0 $ke 0 | 7 $ke 2 | 0 $ke 3 | 0 $ke -1 | 7 $none 1",
       "30 6.5 | 30 18.5 | 10 0.5 | 0 0 | 0 0 | 0 0 | "},
      // Residuals by code: 6 rms_d, 7 max_d, 10 rms_wx, 22 rms_sp1 (after the
      // current project's 2 turbulence equations), 39 max_nu, 43 rms_harm1.
      {"itf_get_curve_block_value",
       "6 $ke 1 2 | 7 $ke 1 2 | 10 $ke 0 2 | 22 $ke 1 2 | 39 $ke 1 2 | 43 $ke 1 2 | 44 $ke 1 2 | "
       "22 $plain 0 2 | 6 $ke 1 3 | 6 $none 1 2",
       "30 58 | 30 56 | 30 inf | 30 86 | 30 76 | 30 86 | 30 90 | 300 50 | 0 0 | "},
      {"itf_get_harmonic_curve_block_value",
       "41 rms $ke 1 2 | 44 max $ke 1 2 | 41 avg $ke 1 2 | 41 rms $none 1 2",
       "30 86 | 30 88 | 30 2 | "},
      {"itf_get_nbPts", "$row.dia Extrado_1 | $row.dia Intrado_2 | $row.pro Extrado_1", "2 | 1 | "},
      {"itf_get_extrado_value", "$row.dia 0 1 | $row.dia 1 1 | $row.dia 2 0 | $row.pro 0 0",
       "0.75 0.100000001490116 | 1.75 2 | 0 0 | "},
      {"itf_get_intrado_value", "$row.dia 1 0", "6 8"},
      {"itf_get_prof_nbPts", "$row.pro Intrado | $row.dia Extrado", "0 | "},
      {"itf_get_prof_extrado_value", "$row.pro 1", "0.75 0.100000001490116"},
      {"itf_get_prof_intrado_value", "$row.pro 0 | $row.dia 0", "0 0 | "},
      {"itf_set_current_nbIter", "2 3 $ke 15 | 2 3 $none 9", " | "},
      {"itf_get_current_nbIter", "2 3 $ke | 2 3 $plain | 2 3 $none", "15 | 0 | "},
      {"itf_work_unit", "1", ""},
      {"itf_get_work_unit", "", "1"},
      {"itf_get_curve_value", "0 $ke 2", "2.5 6.5"},
      {"itf_get_curve_block_value", "6 $ke 1 1", "1.5 29"},
      {"itf_work_unit", "0", ""},
      // Without turbulence equations in the current project: species from equation 5.
      {"itf_set_current_project", "$plain", ""},
      {"itf_get_current_nb_blocks", "", "1"},
      {"itf_get_curve_block_value", "22 $plain 0 2", "300 42"},
      {"itf_get_harmonic_curve_block_value", "41 rms $ke 1 2", "30 78"},
  });
  EXPECT_EQ(monitor_->settingsChanged, 1);
  // Blade files are reread only when asked.
  write("row.dia", "1\n9 8 7 6\n0\n");
  write("row.pro", "3\n1 2\n3 4\n5 6\n0\n");
  expectRows({
      {"itf_get_extrado_value", "$row.dia 1 1", "1.75 2"},
      {"itf_update_diag_file", "", ""},
      {"itf_get_nbPts", "$row.dia Extrado_1", "1"},
      {"itf_get_extrado_value", "$row.dia 1 0", "8 6"},
      {"itf_update_prof_file", "", ""},
      {"itf_get_prof_extrado_value", "$row.pro 2", "5 6"},
  });
}

TEST_F(TurboCommands, CommandLineOpensItsResArgumentsAndRetriesTheMissingOnes) {
  start();
  expectRows({
      {"itf_read_running_project", "", "0"},
      {"itf_update_now_monitor", "", "0"},
      {"itf_get_current_nb_blocks", "", "0"},
      {"itf_get_mode", "", kNoMode},
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
      {"itf_read_running_project", "", "1 {" + missing + "} "},
      {"itf_get_nbIter", "$missing", "0"},
      {"itf_update_now_monitor", "", "0", cannotOpen(missing) + cannotOpen(added)},
  });
  write("added.res", "1 5\n" + records(2, 19, 10));
  expectRows({
      {"itf_update_now_monitor", "", "1", cannotOpen(missing)},
      {"itf_get_nbIter", "$added", "2"},
  });
}

TEST_F(TurboCommands, ProjectsAddedAndRemoved) {
  const std::string a = written("a.res", "0 2.0 1 3D K-O 0 0 STEADY A\n" + records(1, 23, 1));
  const std::string p = written("p.res", "0 2.0 1 3D NO-K-E 0 1 h1 STEADY P\n" + records(1, 21, 1));
  const std::string unknown = pathOf("unknown.res");
  start({a});
  const std::string aMode = "3D {K-O}  0 0 { }  {A} ";
  const std::string pMode = "3D {NO-K-E}  0 1 { {h1}  }  {P} ";
  expectRows({
      {"itf_add_res_file", "$a", "", "Project already loaded\n"},
      {"itf_add_res_file", "$p | $p", " | "},
      {"itf_read_running_project", "", "1 {" + a + "} "},
      // The current project is the last of its path; lookups find the first.
      {"itf_set_current_project", "$p", ""},
      {"itf_get_current_mode", "", pMode},
      {"itf_set_current_block", "4", ""},
      {"itf_set_current_nbIter", "1 2 $a 9", ""},
      {"itf_remove_res_file", "1 $a", ""},
      {"itf_get_current_nbIter", "1 2 $a", "9"},
      {"itf_remove_res_file", "1 $a", "", "can't remove it!\n"},
      {"itf_remove_res_file", "0 $p", ""},
      {"itf_get_mode", "0 | 1 | 2 | 3", aMode + " | " + pMode + " | " + pMode + " | " + kNoMode},
  });
  std::string seen = std::to_string(monitor_->currentBlock);
  for (const std::string& path : {p, unknown, a}) {
    seen += " " + std::to_string(monitor_->currentProject);
    call("itf_set_current_project", {path});
  }
  call("itf_set_current_block", {});
  EXPECT_EQ(seen + " " + std::to_string(monitor_->currentProject) + " " +
                std::to_string(monitor_->currentBlock),
            "0 0 2 2 0 -1");
  // A count, then that many paths of a list; missing ones read as empty.
  ConsoleCapture console;
  call("itf_remove_res_file", {"2", "{" + p + "} {" + unknown + "}"});
  EXPECT_EQ(console.text(), "can't remove it!\n");
  expectRows({
      {"itf_remove_res_file", "2 $p", "", "can't remove it!\n"},
      {"itf_get_mode", "0 | 1 | 2 | 3",
       aMode + " | " + kNoMode + " | " + kNoMode + " | " + kNoMode},
  });
}

TEST_F(TurboCommands, BulkRouteServesWhatThePointCommandsGiveAndTellsWhatIsWrong) {
  loadCase();
  const auto text = [](long long value) { return " " + std::to_string(value); };
  const auto same = [&](const std::string& source, std::size_t count, const char* command,
                        const std::string& arguments) {
    expectServedAsPointByPoint(turbo::curveSources(), words(source), count, [&](std::size_t i) {
      return call(command, words(arguments + text(i)));
    });
  };
  for (const int unit : {0, 1}) {
    fileformat::workUnit = unit;
    for (const std::string path : {" $ke", " $plain"}) {
      for (int code = 0; code <= 6; ++code)
        same("global" + path + text(code), 3, "itf_get_curve_value", text(code) + path);
      for (int b = 0; b < (path == " $ke" ? 2 : 1); ++b) {
        for (int code = 5; code <= 46; ++code) {
          same("block" + path + text(code) + text(b), 3, "itf_get_curve_block_value",
               text(code) + path + text(b));
          for (const std::string prefix : {" rms", " max"}) {
            same("harmonic" + path + text(code) + prefix + text(b), 3,
                 "itf_get_harmonic_curve_block_value", text(code) + prefix + path + text(b));
          }
        }
      }
    }
  }
  same("diagram $row.dia Extrado_1", 2, "itf_get_extrado_value", "$row.dia 0");
  same("diagram $row.dia Extrado_2", 2, "itf_get_extrado_value", "$row.dia 1");
  same("diagram $row.dia Intrado_1", 1, "itf_get_intrado_value", "$row.dia 0");
  same("diagram $row.dia Intrado_2", 1, "itf_get_intrado_value", "$row.dia 1");
  same("profile $row.pro Extrado", 2, "itf_get_prof_extrado_value", "$row.pro");
  same("profile $row.pro Intrado", 0, "itf_get_prof_intrado_value", "$row.pro");
  const std::pair<std::string, std::string> refused[] = {
      {"global /no/such.res 0", "no computation \"/no/such.res\" is open"},
      {"global $ke 7", "no global curve of code 7"},
      {"global $ke -1", "no global curve of code -1"},
      {"block $ke 6 2", "no block 2 in \"" + ke_ + "\" (it has 2)"},
      {"harmonic $plain 41 rms -1", "no block -1 in \"" + plain_ + "\" (it has 1)"},
      {"diagram $row.pro Extrado_1", "no diagram \"" + pro_ + "\" is open"},
      {"diagram $row.dia Extrado", "no side \"Extrado\" in a diagram"},
      {"profile $row.pro Extrado_1", "no side \"Extrado_1\" in a profile"},
      {"profile $row.dia Extrado", "no profile \"" + dia_ + "\" is open"},
  };
  for (const auto& [source, complaint] : refused) {
    ConsoleCapture quiet;
    const Served served = serveInBulk(turbo::curveSources(), words(source));
    EXPECT_EQ(served.complaint + ", " + std::to_string(served.positions), complaint + ", 0")
        << source;
  }
}

// 9 global values, then per block b and equation e the maximum at 9 + 2Vb + 2e
// and the rms one further; species and harmonics after the turbulence ones.
TEST_F(TurboCommands, CurveNamePositions) {
  const std::tuple<const char*, std::int64_t, std::int64_t, int, std::int64_t> cases[] = {
      {"Torque", 999, 7, 2, 4},
      {"max_E", 2, 7, 0, 45},
      {"rms_E", 2, 7, 2, 46},
      {"rms_nu", 1, 7, 1, 34},
      {"rms_eps", 1, 7, 2, 36},
      {"rms_sp1", 0, 9, 1, 22},
      {"max_sp12", 1, 19, 2, 9 + 38 + 36},
      {"rms_harm500", 0, 505, 0, 9 + 2 * 504 + 1},
      // Names of no curve read the first value.
      {"rms_sp0", 0, 20, 0, 0},
      {"max_harm0", 0, 20, 0, 0},
  };
  for (const auto& [name, block, nbVars, turbulence, position] : cases)
    EXPECT_EQ(turbo::indexOf(name, block, nbVars, turbulence), position) << name;
}

TEST(TurbulenceModels, EquationCounts) {
  const std::pair<const char*, int> cases[] = {
      {"K-E", 2}, {"K-O", 2}, {"SPL-ALM", 1}, {"NO-K-E", 0}, {"k-e", 0}};
  for (const auto& [model, count] : cases)
    EXPECT_EQ(turbo::turbulenceEquationCount(model), count) << model;
}

TEST_F(TurboCommands, ValuesOfARecordOfOneBlockOfSevenEquations) {
  std::vector<float> values;
  for (int k = 0; k < 23; ++k) values.push_back(static_cast<float>(k) + 0.5f);
  const turbo::IteRes record(values, 12, -1, 0.0, false, 1, 7);
  EXPECT_EQ((std::vector<float>{record.valueAt(22), record.valueAt(23), record.valueAt(-1),
                                record.valueOf("rms_E", 0), record.valueOf("rms_sp1", 0),
                                record.valueOf("rms_sp1", 2)}),
            (std::vector<float>{22.5f, 0, 0, 18.5f, 20.5f, 0}));
}

}  // namespace
