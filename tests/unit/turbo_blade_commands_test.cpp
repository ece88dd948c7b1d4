// The turbomachinery commands on diagram and profile files: loading, rereading
// on request, point counts and points.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "console_capture.h"
#include "script/tcl_arg_stream.h"
#include "script/tcl_result_stream.h"
#include "turbo/commands/turbo_command_set.h"
#include "turbo/curve_names.h"
#include "turbo/monitor.h"
#include "turbo_command_runner.h"

namespace {

// Two extrado points and one intrado point; per point the x of both sections,
// then their y.
const char* const kDiagram =
    "2\n"
    "0.5 1.5 0.25 1.25\n"
    "0.75 1.75 0.1 2\n"
    "1\n"
    "5 6 7 8\n";

const char* const kProfile =
    "2\n"
    "0.5 0.25\n"
    "0.75 0.1\n"
    "1\n"
    "3 4\n";

std::string cannotOpen(const char* kind, const std::string& path) {
  return std::string("*** ") + kind + " file  :: read() Cannot open the file :\n\t\t\t      " +
         path + "\n";
}

class TurboBladeCommands : public TurboMonitorTest {
 protected:
  TurboBladeCommands() { start(); }
};

TEST_F(TurboBladeCommands, DiagramCountsAndPoints) {
  const std::string diagram = write("row.dia", kDiagram);
  ConsoleCapture console;
  EXPECT_EQ(call("itf_add_diag_file", {diagram}), "");
  EXPECT_EQ(console.text(), "");

  expectAnswers({
      {"itf_get_nbPts", {diagram, "Extrado_1"}, "2"},
      {"itf_get_nbPts", {diagram, "Extrado_2"}, "2"},
      {"itf_get_nbPts", {diagram, "Intrado_1"}, "1"},
      {"itf_get_nbPts", {diagram, "Intrado_2"}, "1"},
      {"itf_get_nbPts", {diagram, "Extrado"}, "0"},
      {"itf_get_nbPts", {diagram, "extrado_1"}, "0"},
      {"itf_get_nbPts", {diagram}, "0"},
      {"itf_get_extrado_value", {diagram, "0", "0"}, "0.5 0.25"},
      {"itf_get_extrado_value", {diagram, "0", "1"}, "0.75 0.100000001490116"},
      {"itf_get_extrado_value", {diagram, "1", "0"}, "1.5 1.25"},
      {"itf_get_extrado_value", {diagram, "1", "1"}, "1.75 2"},
      {"itf_get_extrado_value", {diagram, "1x", "1y"}, "1.75 2"},
      {"itf_get_extrado_value", {diagram}, "0.5 0.25"},
      {"itf_get_intrado_value", {diagram, "0", "0"}, "5 7"},
      {"itf_get_intrado_value", {diagram, "1", "0"}, "6 8"},
      // Sides other than 0 and 1 name no curve; points outside the curve hold nothing.
      {"itf_get_extrado_value", {diagram, "2", "0"}, "0 0"},
      {"itf_get_extrado_value", {diagram, "-1", "0"}, "0 0"},
      {"itf_get_intrado_value", {diagram, "0", "1"}, "0 0"},
      {"itf_get_extrado_value", {diagram, "0", "-1"}, "0 0"},
      {"itf_get_extrado_value", {diagram, "0", "2147483647"}, "0 0"},
      {"itf_get_intrado_value", {diagram, "1", "-2147483648"}, "0 0"},
      // The profile commands do not see diagrams, nor the reverse.
      {"itf_get_prof_nbPts", {diagram, "Extrado"}, ""},
      {"itf_get_prof_extrado_value", {diagram, "0"}, ""},
      {"itf_get_nbPts", {path("other.dia"), "Extrado_1"}, ""},
      {"itf_get_extrado_value", {path("other.dia"), "0", "0"}, ""},
      {"itf_get_intrado_value", {path("other.dia"), "0", "0"}, ""},
      {"itf_get_nbPts", {}, ""},
      {"itf_get_intrado_value", {}, ""},
  });
}

TEST_F(TurboBladeCommands, ProfileCountsAndPoints) {
  const std::string profile = write("row.pro", kProfile);
  ConsoleCapture console;
  EXPECT_EQ(call("itf_add_prof_file", {profile}), "");
  EXPECT_EQ(console.text(), "");

  expectAnswers({
      {"itf_get_prof_nbPts", {profile, "Extrado"}, "2"},
      {"itf_get_prof_nbPts", {profile, "Intrado"}, "1"},
      {"itf_get_prof_nbPts", {profile, "Extrado_1"}, "0"},
      {"itf_get_prof_nbPts", {profile, "intrado"}, "0"},
      {"itf_get_prof_extrado_value", {profile, "0"}, "0.5 0.25"},
      {"itf_get_prof_extrado_value", {profile, "1"}, "0.75 0.100000001490116"},
      {"itf_get_prof_extrado_value", {profile, "1abc"}, "0.75 0.100000001490116"},
      {"itf_get_prof_extrado_value", {profile}, "0.5 0.25"},
      {"itf_get_prof_intrado_value", {profile, "0"}, "3 4"},
      {"itf_get_prof_intrado_value", {profile, "1"}, "0 0"},
      {"itf_get_prof_intrado_value", {profile, "-1"}, "0 0"},
      {"itf_get_prof_extrado_value", {profile, "2147483647"}, "0 0"},
      {"itf_get_nbPts", {profile, "Extrado_1"}, ""},
      {"itf_get_extrado_value", {profile, "0", "0"}, ""},
      {"itf_get_prof_nbPts", {path("other.pro"), "Extrado"}, ""},
      {"itf_get_prof_extrado_value", {path("other.pro"), "0"}, ""},
      {"itf_get_prof_intrado_value", {path("other.pro"), "0"}, ""},
      {"itf_get_prof_intrado_value", {}, ""},
  });
}

TEST_F(TurboBladeCommands, FilesAreRereadOnlyWhenAsked) {
  const std::string diagram = write("row.dia", kDiagram);
  const std::string profile = write("row.pro", kProfile);
  call("itf_add_diag_file", {diagram});
  call("itf_add_prof_file", {profile});

  // Same counts, new values; then more points.
  write("row.dia", "2\n9 8 7 6\n5 4 3 2\n1\n1 2 3 4\n");
  write("row.pro", "3\n1 2\n3 4\n5 6\n0\n");
  EXPECT_EQ(call("itf_get_extrado_value", {diagram, "1", "1"}), "1.75 2");
  EXPECT_EQ(call("itf_get_prof_nbPts", {profile, "Extrado"}), "2");

  EXPECT_EQ(call("itf_update_diag_file"), "");
  EXPECT_EQ(call("itf_get_extrado_value", {diagram, "0", "0"}), "9 7");
  EXPECT_EQ(call("itf_get_extrado_value", {diagram, "1", "1"}), "4 2");
  EXPECT_EQ(call("itf_get_intrado_value", {diagram, "1", "0"}), "2 4");
  // Only the diagrams were asked for.
  EXPECT_EQ(call("itf_get_prof_nbPts", {profile, "Extrado"}), "2");

  EXPECT_EQ(call("itf_update_prof_file"), "");
  EXPECT_EQ(call("itf_get_prof_nbPts", {profile, "Extrado"}), "3");
  EXPECT_EQ(call("itf_get_prof_nbPts", {profile, "Intrado"}), "0");
  EXPECT_EQ(call("itf_get_prof_extrado_value", {profile, "2"}), "5 6");

  write("row.dia", "3\n1 2 3 4\n5 6 7 8\n9 10 11 12\n0\n");
  call("itf_update_diag_file");
  EXPECT_EQ(call("itf_get_nbPts", {diagram, "Extrado_2"}), "3");
  EXPECT_EQ(call("itf_get_nbPts", {diagram, "Intrado_1"}), "0");
  EXPECT_EQ(call("itf_get_extrado_value", {diagram, "1", "2"}), "10 12");

  // Adding another file rereads those already loaded.
  write("row.dia", "1\n0 0 0 0\n0\n");
  call("itf_add_diag_file", {write("other.dia", kDiagram)});
  EXPECT_EQ(call("itf_get_nbPts", {diagram, "Extrado_1"}), "1");
}

TEST_F(TurboBladeCommands, MissingFilesAreReportedAtEveryReadOfEachMonitor) {
  const std::string diagram = path("missing.dia");
  const std::string profile = path("missing.pro");
  const std::string diagramLines = cannotOpen("Diagram", diagram) + "can not read diagram file!\n";
  const std::string profileLines = cannotOpen("Profile", profile);
  ConsoleCapture console;
  std::string expected;
  const auto printed = [&](const std::string& more) {
    expected += more;
    return expected;
  };

  call("itf_add_diag_file", {diagram});
  EXPECT_EQ(console.text(), printed(diagramLines));
  // The same path again is another monitor, with no warning; both reread.
  call("itf_add_diag_file", {diagram});
  EXPECT_EQ(console.text(), printed(diagramLines + diagramLines));
  call("itf_update_diag_file");
  EXPECT_EQ(console.text(), printed(diagramLines + diagramLines));
  EXPECT_EQ(call("itf_get_nbPts", {diagram, "Extrado_1"}), "0");
  EXPECT_EQ(call("itf_get_extrado_value", {diagram, "0", "0"}), "0 0");

  call("itf_add_prof_file", {profile});
  call("itf_add_prof_file", {profile});
  call("itf_update_prof_file");
  EXPECT_EQ(console.text(),
            printed(profileLines + profileLines + profileLines + profileLines + profileLines));
  EXPECT_EQ(call("itf_get_prof_nbPts", {profile, "Intrado"}), "0");

  // The file appears: read at the next request.
  write("missing.dia", kDiagram);
  call("itf_update_diag_file");
  EXPECT_EQ(console.text(), expected);
  EXPECT_EQ(call("itf_get_nbPts", {diagram, "Extrado_1"}), "2");

  // An add with no path looks for a file without a name.
  call("itf_add_prof_file");
  EXPECT_EQ(console.text(), printed(profileLines + profileLines + cannotOpen("Profile", "")));
}

TEST_F(TurboBladeCommands, NothingLoadedNothingRead) {
  ConsoleCapture console;
  EXPECT_EQ(call("itf_update_diag_file"), "");
  EXPECT_EQ(call("itf_update_prof_file"), "");
  EXPECT_EQ(call("itf_get_nbPts", {"", "Extrado_1"}), "");
  EXPECT_EQ(call("itf_get_prof_intrado_value", {"", "0"}), "");
  EXPECT_EQ(console.text(), "");
}

TEST_F(TurboBladeCommands, DamagedFilesGiveNoPoints) {
  const struct {
    const char* text;
    const char* extrado;
    const char* intrado;
  } cases[] = {
      {"", "0", "0"},
      {"abc\n", "0", "0"},
      {"-3\n1 2 3 4\n", "0", "0"},
      {"999999999\n1 2 3 4\n", "0", "0"},
      {"0\n2\n1 2 3 4\n5 6 7 8\n", "0", "2"},
  };
  int n = 0;
  for (const auto& c : cases) {
    const std::string diagram = write("d" + std::to_string(++n) + ".dia", c.text);
    call("itf_add_diag_file", {diagram});
    EXPECT_EQ(call("itf_get_nbPts", {diagram, "Extrado_1"}), c.extrado) << c.text;
    EXPECT_EQ(call("itf_get_nbPts", {diagram, "Intrado_2"}), c.intrado) << c.text;
  }
  EXPECT_EQ(call("itf_get_intrado_value", {path("d5.dia"), "1", "1"}), "6 8");
}

}  // namespace
