// The marine commands on the converged values of the time steps: their
// counts, the values themselves with every check in its order, and whether a
// run has any.
#include "marine_command_fixture.h"

namespace marine_commands_test {
namespace {

// 7 time steps of 5 iterations.
constexpr int kIterations = 35;

class MarineConvergenceCommands : public MarineCommandTest {
 protected:
  const std::string path_ = load(caseSetup("case"), kIterations);

  // Appends converged rows (negative times) to eff_Fx.dat and reads them;
  // each row holds the values of hull, keel, bulb and rudder.
  void appendConvergedRows(const std::string& rows) {
    append(folder_ / "case" / "eff_Fx.dat", rows);
    ConsoleCapture quiet;
    project(path_).refresh();
  }
};

const char* const kCountCommands[] = {"itf_get_force_conv_length", "itf_get_moment_conv_length",
                                      "itf_get_current_force_conv_iter",
                                      "itf_get_current_moment_conv_iter"};

TEST_F(MarineConvergenceCommands, DynQuantitiesHoldOneValuePerTimeStepForBodiesAndSubBodies) {
  for (const char* command : kCountCommands) {
    EXPECT_EQ(run(command, {path_, "0", "-1", "1"}), Answer{"7"}) << command;
    EXPECT_EQ(run(command, {path_, "0", "1", "17"}), Answer{"7"}) << command;
    EXPECT_EQ(run(command, {path_, "1", "-1", "9"}), Answer{"7"}) << command;
  }
}

TEST_F(MarineConvergenceCommands,
       QuantitiesWithoutConvergedValuesAnswerZeroWithTheModelsComplaint) {
  // A plain quantity's convergence history is its file's converged rows.
  EXPECT_EQ(run("itf_get_force_conv_length", {path_, "0", "-1", "0"}), Answer{"7"});
  EXPECT_EQ(run("itf_get_moment_conv_length", {path_, "1", "-1", "2"}), Answer{"7"});
  EXPECT_EQ(run("itf_get_current_force_conv_iter", {path_, "0", "1", "4"}), Answer{"7"});
  EXPECT_EQ(run("itf_get_force_conv_length", {path_, "0", "-1", "18"}),
            (Answer{"0", "SubBodyObject::getForceConvLength wrong force index 18\n"}));
  EXPECT_EQ(run("itf_get_moment_conv_length", {path_, "0", "0", "20"}),
            (Answer{"0", "SubBodyObject::getMomentConvLength wrong moment index 20\n"}));
  EXPECT_EQ(run("itf_get_current_moment_conv_iter", {path_, "0", "-1", "-1"}),
            (Answer{"0", "BodyObject::nbIterMomentConv (getter) wrong index -1\n"}));

  const std::string steady = load(caseSetup("steady", RunMode::steady), 4);
  EXPECT_EQ(run("itf_get_force_conv_length", {steady, "0", "-1", "1"}),
            (Answer{"0", "SubBodyObject::getForceConvLength wrong converted force index 1\n"}));
  EXPECT_EQ(run("itf_get_current_force_conv_iter", {steady, "1", "-1", "1"}),
            (Answer{"0", "BodyObject::nbIterForceConv (getter) wrong converted index 1\n"}));
}

TEST_F(MarineConvergenceCommands, CountsReportBadProjectsAndIndexesWithTheCommandsName) {
  for (const char* command : kCountCommands) {
    const std::string name = command;
    EXPECT_EQ(run(command, {"other.res", "0", "-1", "1"}),
              (Answer{"0", missingProject(name, "other.res")}));
    EXPECT_EQ(run(command, {path_, "-1", "-1", "1"}),
              (Answer{"0", "Error in " + name + "! Wrong body index -1 (0..2)\n"}));
    EXPECT_EQ(run(command, {path_, "0", "3", "1"}),
              (Answer{"0", "Error in " + name + "! Wrong sub-body index 3 (0..2)\n"}));
  }
}

TEST_F(MarineConvergenceCommands, ValuesComeFromTheSelectedBodyOrSubBody) {
  appendConvergedRows("-1.75 36 100.5 20.25 10.125 -3.5\n");
  EXPECT_EQ(run("itf_get_force_conv_value", {"1", path_, "0", "-1", "7"}), Answer{"100.5"});
  EXPECT_EQ(run("itf_get_force_conv_value", {"1", path_, "0", "0", "7"}), Answer{"20.25"});
  EXPECT_EQ(run("itf_get_force_conv_value", {"1", path_, "0", "1", "7"}), Answer{"10.125"});
  EXPECT_EQ(run("itf_get_force_conv_value", {"1", path_, "1", "-1", "7"}), Answer{"-3.5"});
  EXPECT_EQ(run("itf_get_force_conv_value", {"1", path_, "0", "-1"}),
            run("itf_get_force_conv_value", {"1", path_, "0", "-1", "0"}));
}

TEST_F(MarineConvergenceCommands, InfiniteValuesAreWrittenAsTheLargestFloat) {
  appendConvergedRows("-1.75 36 1e39 -1e39 1e38 2\n");
  EXPECT_EQ(run("itf_get_force_conv_value", {"1", path_, "0", "-1", "7"}),
            Answer{"3.40282346638529e+38"});
  EXPECT_EQ(run("itf_get_force_conv_value", {"1", path_, "0", "0", "7"}),
            Answer{"3.40282346638529e+38"});
  EXPECT_EQ(run("itf_get_force_conv_value", {"1", path_, "0", "1", "7"}),
            Answer{"9.99999968028569e+37"});
}

TEST_F(MarineConvergenceCommands, MomentValuesComeFromTheMomentFiles) {
  append(folder_ / "case" / "eff_MyV.dat", "-1.75 36 7.5 0.5 0.25 -1\n");
  {
    ConsoleCapture quiet;
    project(path_).refresh();
  }
  EXPECT_EQ(run("itf_get_moment_conv_value", {"11", path_, "0", "-1", "7"}), Answer{"7.5"});
  EXPECT_EQ(run("itf_get_moment_conv_value", {"11", path_, "1", "-1", "7"}), Answer{"-1"});
}

TEST_F(MarineConvergenceCommands, TheIterationIsCheckedAgainstTheLengthOfTheConvergedValues) {
  EXPECT_EQ(run("itf_get_force_conv_value", {"1", path_, "0", "-1", "7"}),
            (Answer{"0", "Error in itf_get_force_conv_value! Wrong iteration index 7 (0..7)\n"}));
  EXPECT_EQ(run("itf_get_moment_conv_value", {"3", path_, "0", "1", "-1"}),
            (Answer{"0", "Error in itf_get_moment_conv_value! Wrong iteration index -1 (0..7)\n"}));
  // A plain quantity reads the converged rows of its file too.
  EXPECT_EQ(run("itf_get_force_conv_value", {"2", path_, "0", "-1", "7"}),
            (Answer{"0", "Error in itf_get_force_conv_value! Wrong iteration index 7 (0..7)\n"}));
}

TEST_F(MarineConvergenceCommands, TheQuantityIsCheckedAgainstEighteenForcesAndTwentyOneMoments) {
  EXPECT_EQ(run("itf_get_force_conv_value", {"18", path_, "0", "-1", "0"}),
            (Answer{"0", "Error in itf_get_force_conv_value! Wrong force index 18 (0..18)\n"}));
  EXPECT_EQ(run("itf_get_force_conv_value", {"-1", path_, "0", "-1", "0"}),
            (Answer{"0", "Error in itf_get_force_conv_value! Wrong force index -1 (0..18)\n"}));
  EXPECT_EQ(run("itf_get_moment_conv_value", {"21", path_, "0", "-1", "0"}),
            (Answer{"0", "Error in itf_get_moment_conv_value! Wrong force index 21 (0..21)\n"}));
  // Slots 18 to 20 pass the check but hold nothing.
  EXPECT_EQ(run("itf_get_moment_conv_value", {"18", path_, "0", "-1", "0"}),
            (Answer{"0",
                    "BodyObject::getMomentConvLength wrong moment index 18\n"
                    "Error in itf_get_moment_conv_value! Wrong iteration index 0 (0..0)\n"}));
}

TEST_F(MarineConvergenceCommands, ValueChecksComeInTheirOrderAndStopAtTheFirstBadOne) {
  const char* const command = "itf_get_force_conv_value";
  EXPECT_EQ(run(command, {"99", "other.res", "9", "9", "99"}),
            (Answer{"0", missingProject(command, "other.res")}));
  EXPECT_EQ(run(command, {"99", path_, "9", "9", "99"}),
            (Answer{"0", "Error in itf_get_force_conv_value! Wrong force index 99 (0..18)\n"}));
  EXPECT_EQ(run(command, {"1", path_, "9", "9", "99"}),
            (Answer{"0", "Error in itf_get_force_conv_value! Wrong body index 9 (0..2)\n"}));
  EXPECT_EQ(run(command, {"1", path_, "0", "9", "99"}),
            (Answer{"0", "Error in itf_get_force_conv_value! Wrong sub-body index 9 (0..2)\n"}));
  EXPECT_EQ(run(command, {"1", path_}),
            (Answer{"0", "Error in itf_get_force_conv_value! Wrong body index -1 (0..2)\n"}));
  EXPECT_EQ(run(command), (Answer{"0", missingProject(command, "")}));
}

TEST_F(MarineConvergenceCommands, ConvergedValuesAreAvailableInUnsteadyRunsOnly) {
  EXPECT_EQ(run("is_unsteady_conv_available", {path_}), Answer{"1"});
  EXPECT_EQ(run("is_unsteady_conv_available", {load(caseSetup("started"), 2)}), Answer{"1"});
  EXPECT_EQ(run("is_unsteady_conv_available", {load(caseSetup("steady", RunMode::steady), 4)}),
            Answer{"0"});
  EXPECT_EQ(run("is_unsteady_conv_available", {"other.res"}),
            (Answer{"0", missingProject("is_unsteady_conv_available", "other.res")}));
}

}  // namespace
}  // namespace marine_commands_test
