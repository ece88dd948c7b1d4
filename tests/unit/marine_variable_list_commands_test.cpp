// The marine commands that list the curves: force, moment, motion and
// residual names with the flag that says whether a run writes them, the
// fixed counts, and which bodies move or carry forces.
#include "marine_command_fixture.h"

namespace marine_commands_test {
namespace {

class MarineVariableLists : public MarineCommandTest {
 protected:
  const std::string path_ = load(caseSetup("case"), 10);
};

TEST_F(MarineVariableLists, WithoutAPathNamesComeAloneWithTheFlagMinusOne) {
  EXPECT_EQ(run("itf_get_KELP_vars_forces", {"", "4"}), Answer{resultOf(-1, "FxV")});
  EXPECT_EQ(run("itf_get_KELP_vars_forces", {"", "17"}), Answer{resultOf(-1, "FzVDyn")});
  EXPECT_EQ(run("itf_get_KELP_vars_moments", {"", "0"}), Answer{resultOf(-1, "Mx")});
  EXPECT_EQ(run("itf_get_KELP_vars_moments", {"", "18"}), Answer{resultOf(-1, "")});
  EXPECT_EQ(run("itf_get_KELP_vars_resids", {"", "5"}), Answer{resultOf(-1, "Res`w")});
  EXPECT_EQ(run("itf_get_KELP_vars_resids", {"", "7"}), Answer{resultOf(-1, "ResVt~")});
  EXPECT_EQ(run("itf_get_KELP_vars_resids", {"", "8"}), Answer{resultOf(-1, "")});
}

TEST_F(MarineVariableLists, TheFlagSaysWhetherTheRunWritesTheQuantity) {
  EXPECT_EQ(run("itf_get_KELP_vars_forces", {path_, "0"}), Answer{resultOf(1, "Fx")});
  EXPECT_EQ(run("itf_get_KELP_vars_forces", {path_, "1"}), Answer{resultOf(1, "FxDyn")});
  EXPECT_EQ(run("itf_get_KELP_vars_moments", {path_, "15"}), Answer{resultOf(1, "MzPDyn")});
  EXPECT_EQ(run("itf_get_KELP_vars_moments", {path_, "20"}), Answer{resultOf(0, "")});
  EXPECT_EQ(run("itf_get_KELP_vars_resids", {path_, "0"}), Answer{resultOf(1, "ResU")});
  EXPECT_EQ(run("itf_get_KELP_vars_resids", {path_, "5"}), Answer{resultOf(1, "Res`w")});
  EXPECT_EQ(run("itf_get_KELP_vars_resids", {path_, "6"}), Answer{resultOf(0, "ResE")});
  EXPECT_EQ(run("itf_get_KELP_vars_resids", {path_, "-1"}), Answer{resultOf(0, "")});
}

TEST_F(MarineVariableLists, SteadyRunsWriteNoDynQuantitiesAndAMissingFileNoneOfItsOwn) {
  const CaseSetup setup = caseSetup("steady", RunMode::steady);
  written(setup, 3);
  fs::remove(setup.folder / "eff_FyV.dat");
  fs::remove(setup.folder / "eff_MzP.dat");
  const std::string steady = load(setup.residualPath().string());
  EXPECT_EQ(run("itf_get_KELP_vars_forces", {steady, "1"}), Answer{resultOf(0, "FxDyn")});
  EXPECT_EQ(run("itf_get_KELP_vars_forces", {steady, "8"}), Answer{resultOf(1, "FyP")});
  EXPECT_EQ(run("itf_get_KELP_vars_forces", {steady, "10"}), Answer{resultOf(0, "FyV")});
  EXPECT_EQ(run("itf_get_KELP_vars_moments", {steady, "14"}), Answer{resultOf(0, "MzP")});
  EXPECT_EQ(run("itf_get_KELP_vars_moments", {steady, "16"}), Answer{resultOf(1, "MzV")});
}

TEST_F(MarineVariableLists, ForceAndMomentIndexesAreCheckedAgainstTheirCountsFirst) {
  EXPECT_EQ(
      run("itf_get_KELP_vars_forces", {path_, "18"}),
      (Answer{resultOf(-1, ""), "Error in itf_get_KELP_vars_forces! Wrong force index: 18\n"}));
  EXPECT_EQ(
      run("itf_get_KELP_vars_forces", {"", "-1"}),
      (Answer{resultOf(-1, ""), "Error in itf_get_KELP_vars_forces! Wrong force index: -1\n"}));
  EXPECT_EQ(
      run("itf_get_KELP_vars_moments", {"other.res", "21"}),
      (Answer{resultOf(-1, ""), "Error in itf_get_KELP_vars_moments! Wrong moment index: 21\n"}));
}

TEST_F(MarineVariableLists, AMissingProjectAnswersMinusOneAndNoName) {
  for (const char* command : {"itf_get_KELP_vars_forces", "itf_get_KELP_vars_moments",
                              "itf_get_KELP_vars_resids", "itf_get_KELP_vars_motions"}) {
    EXPECT_EQ(run(command, {"other.res", "2"}),
              (Answer{resultOf(-1, ""), missingProject(command, "other.res")}));
  }
  EXPECT_EQ(run("itf_get_KELP_vars_motions", {"", "2"}),
            (Answer{resultOf(-1, ""), missingProject("itf_get_KELP_vars_motions", "")}));
}

TEST_F(MarineVariableLists, MotionsAreTheColumnsOfTheMovingBodiesAndABadIndexSpeaksOfAForce) {
  const char* const names[] = {"X", "Y", "Z", "PHI", "THETA", "PSI"};
  for (int m = 0; m < 6; ++m) {
    EXPECT_EQ(run("itf_get_KELP_vars_motions", {path_, std::to_string(m)}),
              Answer{resultOf(1, names[m])});
  }
  EXPECT_EQ(
      run("itf_get_KELP_vars_motions", {path_, "6"}),
      (Answer{resultOf(-1, ""), "Error in itf_get_KELP_vars_motions! Wrong force index: 6\n"}));
  EXPECT_EQ(run("itf_get_motions_number_KELP", {path_}), Answer{"6"});
}

TEST_F(MarineVariableLists, BodiesMovingAlikeShareTheirMotionNames) {
  CaseSetup both = caseSetup("both");
  both.bodies[1].moving = true;
  const std::string path = load(both, 5);
  EXPECT_EQ(run("itf_get_motions_number_KELP", {path}), Answer{"6"});
  EXPECT_EQ(run("itf_get_KELP_vars_motions", {path, "5"}), Answer{resultOf(1, "PSI")});
}

TEST_F(MarineVariableLists, ARunWithoutMovingBodiesHasNoMotion) {
  CaseSetup fixed = caseSetup("fixed");
  fixed.bodies[0].moving = false;
  const std::string path = load(fixed, 5);
  EXPECT_EQ(run("itf_get_motions_number_KELP", {path}), Answer{"0"});
  EXPECT_EQ(
      run("itf_get_KELP_vars_motions", {path, "0"}),
      (Answer{resultOf(-1, ""), "Error in itf_get_KELP_vars_motions! Wrong force index: 0\n"}));
  EXPECT_EQ(run("itf_is_motion_used", {path, "0"}), Answer{"0"});
  EXPECT_EQ(run("itf_get_motions_number_KELP", {"other.res"}),
            (Answer{"0", missingProject("itf_get_motions_number_KELP", "other.res")}));
}

TEST_F(MarineVariableLists, TheCountsAreFixedAndReadNoArgument) {
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{}, {path_}, {"other.res"}}) {
    EXPECT_EQ(run("itf_get_forces_number_KELP", arguments), Answer{"18"});
    EXPECT_EQ(run("itf_get_moments_number_KELP", arguments), Answer{"21"});
    EXPECT_EQ(run("itf_get_resids_number_KELP", arguments), Answer{"8"});
  }
}

TEST_F(MarineVariableLists, OnlyMovingBodiesUseMotions) {
  EXPECT_EQ(run("itf_is_motion_used", {path_, "0"}), Answer{"1"});
  EXPECT_EQ(run("itf_is_motion_used", {path_, "1"}), Answer{"0"});
  EXPECT_EQ(run("itf_is_motion_used", {path_, "2"}),
            (Answer{"0", "Error in itf_is_motion_used! Wrong body index 2 (0..2)\n"}));
  EXPECT_EQ(run("itf_is_motion_used", {"other.res", "0"}),
            (Answer{"0", missingProject("itf_is_motion_used", "other.res")}));
}

TEST_F(MarineVariableLists, BodiesThatNoForceFileNamesHaveNoForces) {
  const CaseSetup setup = caseSetup("buoy");
  written(setup, 5);
  append(setup.folder / "ship_body_param.dat", "#QV_BEGIN\nBODY\nNAME buoy\n#QV_END\n");
  const std::string path = load(setup.residualPath().string());
  EXPECT_EQ(run("itf_has_forces", {path, "0"}), Answer{"1"});
  EXPECT_EQ(run("itf_has_forces", {path, "1"}), Answer{"1"});
  EXPECT_EQ(run("itf_has_forces", {path, "2"}), Answer{"0"});
  EXPECT_EQ(run("itf_has_forces", {path, "3"}),
            (Answer{"0", "Error in itf_has_forces! Wrong body index 3 (0..3)\n"}));
  EXPECT_EQ(run("itf_has_forces", {"other.res", "0"}),
            (Answer{"0", missingProject("itf_has_forces", "other.res")}));
  EXPECT_EQ(run("itf_has_forces", {load(caseSetup("empty"), 0), "0"}), Answer{"0"});
}

}  // namespace
}  // namespace marine_commands_test
