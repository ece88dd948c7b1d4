// The turbomachinery commands that answer curve points: global values by
// code, residuals by code or by harmonic, relative to the first record, with
// the iteration number or the work unit as abscissa.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
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

// Records of steps 0 .. records-1, numbered firstIteration, 2 x firstIteration,
// ...; value p of the record of step s is s * (p + 1) + 0.5, so that a
// residual relative to the first record reads s * (p + 1) and tells its
// position p. In an unsteady history every record starts with its time step
// and carries its physical time (1000 + time step) as its third float.
std::string records(int count, int values, int firstIteration, bool unsteady = false) {
  std::ostringstream text;
  for (int s = 0; s < count; ++s) {
    if (unsteady) text << s + 1 << ' ';
    text << firstIteration * (s + 1);
    for (int p = 0; p < values; ++p) {
      if (unsteady && p == 2) text << ' ' << 1000 + s + 1;
      text << ' ' << s * (p + 1) + 0.5;
    }
    text << '\n';
  }
  return text.str();
}

class TurboCurves : public TurboMonitorTest {
 protected:
  TurboCurves() {
    // Two blocks of 15 equations: five flow equations, two of k-epsilon and
    // eight species; 9 + 60 = 69 values a record.
    kE_ = write("ke.res",
                "0 3.0 2 3D K-E 8 s1 s2 s3 s4 s5 s6 s7 s8 0 1 STEADY TURBO\n" + records(3, 69, 10));
    // One block of 9 equations, no turbulence model: 27 values a record.
    plain_ = write("plain.res", "1 9\n" + records(3, 27, 100));
  }

  std::string kE_;
  std::string plain_;
};

TEST_F(TurboCurves, GlobalValueOfEachCode) {
  start({kE_});
  // Record of step 2 (iteration 30): global position g holds 2 (g + 1) + 0.5.
  const struct {
    const char* code;
    const char* answer;
  } cases[] = {
      {"0", "30 6.5"},   // Lift, position 2
      {"1", "30 8.5"},   // Axial thrust, 3
      {"2", "30 12.5"},  // Qmax, 5
      {"3", "30 14.5"},  // Tmax, 6
      {"4", "30 16.5"},  // In, 7
      {"5", "30 10.5"},  // Torque, 4
      {"6", "30 18.5"},  // Out, 8
      // Codes without a curve answer two integers.
      {"7", "0 0"},
      {"-1", "0 0"},
      {"100", "0 0"},
      {"2abc", "30 12.5"},
      {"abc", "30 6.5"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(call("itf_get_curve_value", {c.code, kE_, "2"}), c.answer) << c.code;
}

TEST_F(TurboCurves, GlobalValueIsTheRecordsOwnValue) {
  start({kE_});
  const struct {
    std::vector<std::string> arguments;
    const char* answer;
  } cases[] = {
      {{"0", kE_, "0"}, "10 0.5"},
      {{"0", kE_, "1"}, "20 3.5"},
      {{"0", kE_, "1st"}, "20 3.5"},
      {{"0", kE_}, "10 0.5"},
      // Past the history, before it, far beyond it.
      {{"0", kE_, "3"}, "0 0"},
      {{"0", kE_, "-1"}, "0 0"},
      {{"5", kE_, "99999999999"}, "0 0"},
      {{"7", kE_, "3"}, "0 0"},
      // Unknown or missing path: no answer at all.
      {{"0", path("other.res"), "1"}, ""},
      {{"7", path("other.res"), "1"}, ""},
      {{"0"}, ""},
      {{}, ""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(call("itf_get_curve_value", c.arguments), c.answer)
        << testing::PrintToString(c.arguments);
  }
}

TEST_F(TurboCurves, ResidualOfEachCodeRelativeToTheFirstRecord) {
  start({kE_});
  // Block 1 starts at 9 + 30 = 39; equation e has its maximum at 39 + 2e and
  // its rms at 40 + 2e. At step 2 position p reads 2 (p + 1).
  const struct {
    const char* code;
    const char* answer;
  } cases[] = {
      {"6", "30 82"},
      {"7", "30 80"},  // rms_d 40, max_d 39
      {"8", "30 98"},
      {"9", "30 96"},  // rms_E 48, max_E 47
      {"10", "30 86"},
      {"11", "30 84"},  // wx 42, 41
      {"12", "30 90"},
      {"13", "30 88"},  // wy 44, 43
      {"14", "30 94"},
      {"15", "30 92"},  // wz 46, 45
      {"16", "30 102"},
      {"17", "30 102"},  // rms_bladeForce, rms_k 50
      {"18", "30 100"},
      {"19", "30 100"},  // max_bladeForce, max_k 49
      {"20", "30 106"},
      {"21", "30 104"},  // eps 52, 51
      {"22", "30 110"},
      {"23", "30 108"},  // sp1: equation 5 + 2 + 0, 54, 53
      {"24", "30 114"},
      {"25", "30 112"},  // sp2 56, 55
      {"26", "30 118"},
      {"27", "30 116"},  // sp3
      {"28", "30 122"},
      {"29", "30 120"},  // sp4
      {"30", "30 126"},
      {"31", "30 124"},  // sp5
      {"32", "30 130"},
      {"33", "30 128"},  // sp6
      {"34", "30 134"},
      {"35", "30 132"},  // sp7
      {"36", "30 138"},
      {"37", "30 136"},  // sp8 68, 67
      {"38", "30 102"},
      {"39", "30 100"},  // rms_nu 50, max_nu 49
      // Beyond the table: "rms_harm" and code / 2 - 20.
      {"42", "30 110"},
      {"43", "30 110"},  // rms_harm1, where sp1 is
      {"44", "30 114"},
      {"45", "30 114"},  // rms_harm2
      {"1039", "30 0"},
      {"1041", "30 0"},  // rms_harm499, rms_harm500: past the record's end
      // Names outside the tables read position 0.
      {"40", "30 2"},
      {"41", "30 2"},  // rms_harm0
      {"5", "30 2"},
      {"0", "30 2"},  // rms_harm-18, rms_harm-20
      {"-3", "30 2"},
      {"1043", "30 2"},  // rms_harm-21, rms_harm501
  };
  for (const auto& c : cases) {
    EXPECT_EQ(call("itf_get_curve_block_value", {c.code, kE_, "1", "2"}), c.answer) << c.code;
  }
}

TEST_F(TurboCurves, ResidualBlockAndRecordSelection) {
  start({kE_});
  const struct {
    std::vector<std::string> arguments;
    const char* answer;
  } cases[] = {
      {{"6", kE_, "0", "2"}, "30 22"},  // rms_d of block 0, position 10
      {{"6", kE_, "1", "1"}, "20 41"},
      {{"6", kE_, "1", "0"}, "10 0"},  // the first record plots as 0
      {{"22", kE_, "0", "0"}, "10 0"},
      {{"6", kE_, "1x", "2y"}, "30 82"},
      {{"6", kE_, "abc", "2"}, "30 22"},
      {{"6", kE_, "2", "2"}, "30 0"},  // a block beyond the record
      {{"6", kE_, "-1", "2"}, "30 0"},
      {{"6", kE_, "2147483647", "2"}, "30 0"},
      {{"6", kE_, "-2147483648", "2"}, "30 0"},
      {{"6", kE_, "1"}, "10 0"},
      {{"6", path("other.res"), "1", "2"}, ""},
      {{"6"}, ""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(call("itf_get_curve_block_value", c.arguments), c.answer)
        << testing::PrintToString(c.arguments);
  }
}

TEST_F(TurboCurves, HarmonicNumberIsCodeLess39Halved) {
  start({kE_});
  const struct {
    const char* code;
    const char* prefix;
    const char* block;
    const char* answer;
  } cases[] = {
      {"41", "rms", "1", "30 110"},  // rms_harm1, position 54
      {"42", "rms", "1", "30 110"},  // 3 / 2 = 1
      {"43", "rms", "1", "30 114"},  // rms_harm2
      {"41", "max", "1", "30 108"},
      {"43", "max", "0", "30 52"},   // max_harm2 of block 0, position 25
      {"57", "rms", "0", "30 82"},   // rms_harm9: equation 15 of block 0 is where block 1 starts
      {"57", "rms", "1", "30 0"},    // ... and past the end of block 1
      {"1039", "rms", "0", "30 0"},  // rms_harm500
      // No such curve: position 0.
      {"1041", "rms", "0", "30 2"},  // rms_harm501
      {"39", "rms", "1", "30 2"},    // rms_harm0
      {"38", "rms", "1", "30 2"},    // -1 / 2 = 0
      {"37", "rms", "1", "30 2"},    // rms_harm-1
      {"41", "avg", "1", "30 2"},
      {"41", "", "1", "30 2"},
      {"41", "RMS", "1", "30 2"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(call("itf_get_harmonic_curve_block_value", {c.code, c.prefix, kE_, c.block, "2"}),
              c.answer)
        << c.code << " " << c.prefix << " " << c.block;
  }
  EXPECT_EQ(call("itf_get_harmonic_curve_block_value", {"41", "rms", kE_, "1", "0"}), "10 0");
  EXPECT_EQ(call("itf_get_harmonic_curve_block_value", {"41", "rms", path("other.res"), "1", "2"}),
            "");
  EXPECT_EQ(call("itf_get_harmonic_curve_block_value", {"41", "rms"}), "");
  EXPECT_EQ(call("itf_get_harmonic_curve_block_value"), "");
}

TEST_F(TurboCurves, TurbulenceModelOfTheCurrentProjectPlacesSpeciesAndHarmonics) {
  const std::string spalart =
      write("sa.res", "0 1.0 1 3D SPL-ALM 1 s1 STEADY TURBO\n" + records(1, 23, 1));
  start({kE_, plain_, spalart});
  // rms_sp1 and rms_harm1 of the run without turbulence model, block 0, step 2:
  // equation 5 + t, position 9 + 2 (5 + t) + 1.
  const auto species = [&] {
    return call("itf_get_curve_block_value", {"22", plain_, "0", "2"}) + " | " +
           call("itf_get_harmonic_curve_block_value", {"41", "rms", plain_, "0", "2"}) + " | " +
           call("itf_get_curve_block_value", {"16", plain_, "0", "2"});
  };
  EXPECT_EQ(monitor_->currentProject, 0);
  EXPECT_EQ(species(), "300 50 | 300 50 | 300 42");  // t = 2: position 24
  call("itf_set_current_project", {plain_});
  EXPECT_EQ(species(), "300 42 | 300 42 | 300 42");  // t = 0: position 20
  call("itf_set_current_project", {spalart});
  EXPECT_EQ(species(), "300 46 | 300 46 | 300 42");  // t = 1: position 22
  call("itf_set_current_project", {kE_});
  EXPECT_EQ(species(), "300 50 | 300 50 | 300 42");
  // Global values do not depend on it.
  EXPECT_EQ(call("itf_get_curve_value", {"5", plain_, "2"}), "300 10.5");
}

TEST_F(TurboCurves, WorkUnitAbscissaIsTheRecordsFirstValue) {
  start({kE_});
  call("itf_work_unit", {"1"});
  const struct {
    const char* command;
    std::vector<std::string> arguments;
    const char* answer;
  } cases[] = {
      {"itf_get_curve_value", {"0", kE_, "2"}, "2.5 6.5"},
      {"itf_get_curve_value", {"0", kE_, "0"}, "0.5 0.5"},
      {"itf_get_curve_value", {"0", kE_, "3"}, "0 0"},
      {"itf_get_curve_block_value", {"6", kE_, "1", "1"}, "1.5 41"},
      {"itf_get_harmonic_curve_block_value", {"41", "rms", kE_, "1", "2"}, "2.5 110"},
  };
  for (const auto& c : cases) EXPECT_EQ(call(c.command, c.arguments), c.answer) << c.command;
  call("itf_work_unit", {"0"});
  EXPECT_EQ(call("itf_get_curve_value", {"0", kE_, "2"}), "30 6.5");
}

TEST_F(TurboCurves, UnsteadyRecordsKeepTheirPhysicalTimeApart) {
  // 3D without turbulence, one block: 19 values and the time.
  const std::string file =
      write("u.res", "0 3.0 1 3D NO-K-E 0 0 0 UNSTEADY TURBO\n" + records(3, 19, 10, true));
  start({file});
  EXPECT_EQ(call("itf_get_nbIter", {file}), "3");
  EXPECT_EQ(call("itf_get_real_nbIter", {file}), "30");
  EXPECT_EQ(call("itf_get_curve_value", {"0", file, "1"}), "20 3.5");            // Lift, position 2
  EXPECT_EQ(call("itf_get_curve_value", {"1", file, "2"}), "30 8.5");            // Axial thrust, 3
  EXPECT_EQ(call("itf_get_curve_block_value", {"8", file, "0", "2"}), "30 38");  // rms_E, 18
  call("itf_work_unit", {"1"});
  EXPECT_EQ(call("itf_get_curve_value", {"0", file, "2"}), "2.5 6.5");
}

TEST_F(TurboCurves, ProjectWithoutHistoryAnswersZeros) {
  const std::string missing = path("missing.res");
  ConsoleCapture console;
  start({missing});
  EXPECT_EQ(call("itf_get_curve_value", {"0", missing, "0"}), "0 0");
  EXPECT_EQ(call("itf_get_curve_value", {"7", missing, "0"}), "0 0");
  EXPECT_EQ(call("itf_get_curve_block_value", {"6", missing, "0", "0"}), "0 0");
  EXPECT_EQ(call("itf_get_harmonic_curve_block_value", {"41", "rms", missing, "0", "0"}), "0 0");
}

// Past the end of the history a residual point is 0, 0 like a global one;
// the first record is not subtracted from a value that does not exist.
TEST_F(TurboCurves, ResidualPastTheHistoryIsZeroNotMinusTheFirstRecord) {
  start({kE_});
  EXPECT_EQ(call("itf_get_curve_block_value", {"6", kE_, "1", "3"}), "0 0");
  EXPECT_EQ(call("itf_get_curve_block_value", {"6", kE_, "1", "-1"}), "0 0");
  EXPECT_EQ(call("itf_get_harmonic_curve_block_value", {"41", "rms", kE_, "1", "3"}), "0 0");
}

}  // namespace
