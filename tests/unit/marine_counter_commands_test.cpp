// The marine commands on iteration counts and on the positions the scripts
// keep: per force and moment quantity of a body or sub-body, per motion of a
// moving body, and in the project's table.
#include "marine_command_fixture.h"

namespace marine_commands_test {
namespace {

// Unsteady runs here: 5 iterations per time step.
constexpr int kIterations = 60;
constexpr int kTimeSteps = 12;

class MarineCounterCommands : public MarineCommandTest {
 protected:
  const std::string path_ = load(caseSetup("case"), kIterations);
};

TEST_F(MarineCounterCommands,
       TheIterationCountIsTheNumberOfResidualRecordsAndAnUnknownPathAnswersNothing) {
  EXPECT_EQ(run("itf_get_nbIter_KELP", {path_}), Answer{std::to_string(kIterations)});
  EXPECT_EQ(run("itf_get_nbIter_KELP", {"other.res"}), Answer{""});
  EXPECT_EQ(run("itf_get_nbIter_KELP"), Answer{""});
}

TEST_F(MarineCounterCommands,
       RecordedIterationsArePerIterationForPlainQuantitiesAndPerTimeStepForDynOnes) {
  const std::string iterations = std::to_string(kIterations);
  const std::string steps = std::to_string(kTimeSteps);
  EXPECT_EQ(run("itf_get_nbIter_force_KELP", {path_, "0", "-1", "0"}), Answer{iterations});
  EXPECT_EQ(run("itf_get_nbIter_force_KELP", {path_, "0", "1", "17"}), Answer{steps});
  EXPECT_EQ(run("itf_get_nbIter_force_KELP", {path_, "1", "-1", "13"}), Answer{steps});
  EXPECT_EQ(run("itf_get_nbIter_moment_KELP", {path_, "0", "0", "14"}), Answer{iterations});
  EXPECT_EQ(run("itf_get_nbIter_moment_KELP", {path_, "1", "-1", "5"}), Answer{steps});
  // Indexes beyond the named quantities hold nothing.
  EXPECT_EQ(run("itf_get_nbIter_moment_KELP", {path_, "0", "-1", "18"}), Answer{"0"});
  EXPECT_EQ(run("itf_get_nbIter_force_KELP", {path_, "0", "-1", "40"}), Answer{"0"});
  EXPECT_EQ(run("itf_get_nbIter_force_KELP", {path_, "0", "-1", "-1"}), Answer{"0"});
}

TEST_F(MarineCounterCommands, ASteadyRunRecordsNoDynValues) {
  const std::string steady = load(caseSetup("steady", RunMode::steady), 7);
  EXPECT_EQ(run("itf_get_nbIter_force_KELP", {steady, "0", "-1", "0"}), Answer{"7"});
  EXPECT_EQ(run("itf_get_nbIter_force_KELP", {steady, "0", "-1", "1"}), Answer{"0"});
  EXPECT_EQ(run("itf_get_nbIter_moment_KELP", {steady, "1", "-1", "3"}), Answer{"0"});
}

TEST_F(MarineCounterCommands, MinusOneNamesTheBodyAndOtherSubIndexesItsSubBodies) {
  // A converged row cut after the body's own value: only the body gains one.
  append(folder_ / "case" / "eff_FxP.dat", "-9.5 61 100.5\n");
  {
    ConsoleCapture quiet;
    project(path_).refresh();
  }
  EXPECT_EQ(run("itf_get_nbIter_force_KELP", {path_, "0", "-1", "3"}),
            Answer{std::to_string(kTimeSteps + 1)});
  EXPECT_EQ(run("itf_get_nbIter_force_KELP", {path_, "0", "0", "3"}),
            Answer{std::to_string(kTimeSteps)});
  EXPECT_EQ(run("itf_get_nbIter_force_KELP", {path_, "0", "1", "3"}),
            Answer{std::to_string(kTimeSteps)});
}

TEST_F(MarineCounterCommands, BadProjectsAndIndexesAreReportedWithTheCommandsNameAndAnswerZero) {
  for (const char* command :
       {"itf_get_nbIter_force_KELP", "itf_get_nbIter_moment_KELP",
        "itf_get_current_nbIter_force_KELP", "itf_get_current_nbIter_moment_KELP"}) {
    const std::string name = command;
    EXPECT_EQ(run(command, {"other.res", "0", "-1", "0"}),
              (Answer{"0", missingProject(name, "other.res")}));
    EXPECT_EQ(run(command, {path_, "2", "-1", "0"}),
              (Answer{"0", "Error in " + name + "! Wrong body index 2 (0..2)\n"}));
    EXPECT_EQ(run(command, {path_, "0", "2", "0"}),
              (Answer{"0", "Error in " + name + "! Wrong sub-body index 2 (0..2)\n"}));
    EXPECT_EQ(run(command, {path_, "1", "0", "0"}),
              (Answer{"0", "Error in " + name + "! Wrong sub-body index 0 (0..0)\n"}));
    EXPECT_EQ(run(command, {path_, "0", "-2", "0"}),
              (Answer{"0", "Error in " + name + "! Wrong sub-body index -2 (0..2)\n"}));
    EXPECT_EQ(run(command, {path_}),
              (Answer{"0", "Error in " + name + "! Wrong body index -1 (0..2)\n"}));
    EXPECT_EQ(run(command), (Answer{"0", missingProject(name, "")}));
  }
}

TEST_F(MarineCounterCommands, NumbersAreReadAsFarAsTheirLeadingDigits) {
  EXPECT_EQ(run("itf_get_nbIter_force_KELP", {path_, "body", "-1", "0"}),
            Answer{std::to_string(kIterations)});
  EXPECT_EQ(run("itf_get_nbIter_force_KELP", {path_, "1st", "0", "0"}),
            (Answer{"0", "Error in itf_get_nbIter_force_KELP! Wrong sub-body index 0 (0..0)\n"}));
  EXPECT_EQ(run("itf_get_nbIter_force_KELP", {path_, "0", "-1", "1Dyn"}),
            Answer{std::to_string(kTimeSteps)});
}

TEST_F(MarineCounterCommands, MotionRecordsBelongToMovingBodies) {
  EXPECT_EQ(run("itf_get_nbIter_motion_KELP", {path_, "0"}), Answer{std::to_string(kTimeSteps)});
  EXPECT_EQ(run("itf_get_nbIter_motion_KELP", {path_, "1"}), Answer{"0"});
  EXPECT_EQ(run("itf_get_nbIter_motion_KELP", {path_, "2"}),
            (Answer{"0", "Error in itf_get_nbIter_motion_KELP! Wrong body index 2 (0..2)\n"}));
  EXPECT_EQ(run("itf_get_nbIter_motion_KELP", {path_}),
            (Answer{"0", "Error in itf_get_nbIter_motion_KELP! Wrong body index -1 (0..2)\n"}));
  EXPECT_EQ(run("itf_get_nbIter_motion_KELP", {"other.res", "0"}),
            (Answer{"0", missingProject("itf_get_nbIter_motion_KELP", "other.res")}));
}

TEST_F(MarineCounterCommands, EachBodySubBodyAndQuantityKeepsItsOwnCurrentIteration) {
  EXPECT_EQ(run("itf_get_current_nbIter_force_KELP", {path_, "0", "-1", "4"}), Answer{"0"});
  EXPECT_EQ(run("itf_set_current_nbIter_force_KELP", {path_, "0", "-1", "4", "25"}), Answer{""});
  EXPECT_EQ(run("itf_set_current_nbIter_force_KELP", {path_, "0", "1", "4", "7"}), Answer{""});
  EXPECT_EQ(run("itf_set_current_nbIter_moment_KELP", {path_, "0", "-1", "4", "31"}), Answer{""});
  EXPECT_EQ(run("itf_set_current_nbIter_moment_KELP", {path_, "1", "-1", "20", "3"}), Answer{""});

  EXPECT_EQ(run("itf_get_current_nbIter_force_KELP", {path_, "0", "-1", "4"}), Answer{"25"});
  EXPECT_EQ(run("itf_get_current_nbIter_force_KELP", {path_, "0", "1", "4"}), Answer{"7"});
  EXPECT_EQ(run("itf_get_current_nbIter_force_KELP", {path_, "0", "0", "4"}), Answer{"0"});
  EXPECT_EQ(run("itf_get_current_nbIter_force_KELP", {path_, "0", "-1", "5"}), Answer{"0"});
  EXPECT_EQ(run("itf_get_current_nbIter_moment_KELP", {path_, "0", "-1", "4"}), Answer{"31"});
  EXPECT_EQ(run("itf_get_current_nbIter_moment_KELP", {path_, "1", "-1", "20"}), Answer{"3"});

  // A value the script leaves out reads as 0.
  EXPECT_EQ(run("itf_set_current_nbIter_force_KELP", {path_, "0", "-1", "4"}), Answer{""});
  EXPECT_EQ(run("itf_get_current_nbIter_force_KELP", {path_, "0", "-1", "4"}), Answer{"0"});
}

TEST_F(MarineCounterCommands, SettingACurrentIterationWithABadTargetReportsItAndStoresNothing) {
  EXPECT_EQ(
      run("itf_set_current_nbIter_force_KELP", {path_, "0", "2", "4", "25"}),
      (Answer{"", "Error in itf_set_current_nbIter_force_KELP! Wrong sub-body index 2 (0..2)\n"}));
  EXPECT_EQ(
      run("itf_set_current_nbIter_moment_KELP", {path_, "5", "-1", "4", "25"}),
      (Answer{"", "Error in itf_set_current_nbIter_moment_KELP! Wrong body index 5 (0..2)\n"}));
  EXPECT_EQ(run("itf_set_current_nbIter_moment_KELP", {"other.res", "0", "-1", "4", "25"}),
            (Answer{"", missingProject("itf_set_current_nbIter_moment_KELP", "other.res")}));
  EXPECT_EQ(run("itf_get_current_nbIter_force_KELP", {path_, "0", "-1", "4"}), Answer{"0"});
  EXPECT_EQ(run("itf_get_current_nbIter_moment_KELP", {path_, "0", "-1", "4"}), Answer{"0"});
}

TEST_F(MarineCounterCommands, MovingBodiesKeepACurrentIterationPerMotionAndFixedOnesNone) {
  EXPECT_EQ(run("itf_set_current_nbIter_motion_KELP", {path_, "0", "2", "9"}), Answer{""});
  EXPECT_EQ(run("itf_set_current_nbIter_motion_KELP", {path_, "0", "99", "4"}), Answer{""});
  EXPECT_EQ(run("itf_set_current_nbIter_motion_KELP", {path_, "1", "2", "9"}), Answer{""});

  EXPECT_EQ(run("itf_get_current_nbIter_motion_KELP", {path_, "0", "2"}), Answer{"9"});
  EXPECT_EQ(run("itf_get_current_nbIter_motion_KELP", {path_, "0", "99"}), Answer{"4"});
  EXPECT_EQ(run("itf_get_current_nbIter_motion_KELP", {path_, "0", "3"}), Answer{"0"});
  EXPECT_EQ(run("itf_get_current_nbIter_motion_KELP", {path_, "1", "2"}), Answer{"0"});
}

TEST_F(MarineCounterCommands, MotionCurrentIterationsReportBadProjectsAndBodies) {
  for (const char* command :
       {"itf_get_current_nbIter_motion_KELP", "itf_set_current_nbIter_motion_KELP"}) {
    const std::string name = command;
    const std::string answer = name.starts_with("itf_get") ? "0" : "";
    EXPECT_EQ(run(command, {"other.res", "0", "0", "1"}),
              (Answer{answer, missingProject(name, "other.res")}));
    EXPECT_EQ(run(command, {path_, "3", "0", "1"}),
              (Answer{answer, "Error in " + name + "! Wrong body index 3 (0..2)\n"}));
  }
}

TEST_F(MarineCounterCommands, TheProjectsTableIsReadAndWrittenBySlotAndReportedInTheGettersWords) {
  EXPECT_EQ(run("itf_set_current_nbIter_KELP", {"3", path_, "11"}), Answer{""});
  EXPECT_EQ(run("itf_set_current_nbIter_KELP", {"46", path_, "12"}), Answer{""});
  EXPECT_EQ(run("itf_set_current_nbIter_KELP", {"47", path_, "13"}), Answer{""});
  EXPECT_EQ(run("itf_get_current_nbIter_KELP", {"3", path_}), Answer{"11"});
  EXPECT_EQ(run("itf_get_current_nbIter_KELP", {"46", path_}), Answer{"12"});
  EXPECT_EQ(run("itf_get_current_nbIter_KELP", {"47", path_}), Answer{"0"});
  EXPECT_EQ(run("itf_get_current_nbIter_KELP", {"-1", path_}), Answer{"0"});
  EXPECT_EQ(run("itf_get_current_nbIter_KELP", {"4", path_}), Answer{"0"});

  EXPECT_EQ(run("itf_get_current_nbIter_KELP", {"3", "other.res"}),
            (Answer{"0", missingProject("itf_get_current_nbIter_KELP", "other.res")}));
  EXPECT_EQ(run("itf_set_current_nbIter_KELP", {"3", "other.res", "5"}),
            (Answer{"", missingProject("itf_get_current_nbIter_KELP", "other.res")}));
  EXPECT_EQ(run("itf_get_current_nbIter_KELP", {path_}),
            (Answer{"0", missingProject("itf_get_current_nbIter_KELP", "")}));
}

TEST_F(MarineCounterCommands, ANewRunOnDiskStartsEveryCurrentIterationAgain) {
  MarineCaseWriter writer = written(caseSetup("rerun"), 10);
  const std::string path = load(writer.setup().residualPath().string());
  run("itf_set_current_nbIter_force_KELP", {path, "0", "0", "2", "8"});
  run("itf_set_current_nbIter_motion_KELP", {path, "0", "1", "6"});
  run("itf_set_current_nbIter_KELP", {"5", path, "4"});

  writer.restart(writer.setup().stamp.plusSeconds(3600));
  writer.appendIteration();
  EXPECT_EQ(run("itf_update_now_monitor_KELP").result, "1");
  EXPECT_EQ(run("itf_get_current_nbIter_force_KELP", {path, "0", "0", "2"}), Answer{"0"});
  EXPECT_EQ(run("itf_get_current_nbIter_motion_KELP", {path, "0", "1"}), Answer{"0"});
  EXPECT_EQ(run("itf_get_current_nbIter_KELP", {"5", path}), Answer{"0"});
}

}  // namespace
}  // namespace marine_commands_test
