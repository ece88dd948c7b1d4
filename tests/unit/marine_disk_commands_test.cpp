// The marine commands on actuator disks: counts, quantity names, steps and
// values, and the one message shape they share for what they cannot find.
#include "marine_command_fixture.h"

namespace marine_commands_test {
namespace {

// Two disks with the quantities Thrust and Torque; two time steps written by
// the simulator, a third here.
class MarineDiskCommands : public MarineCommandTest {
 protected:
  MarineDiskCommands() {
    const CaseSetup setup = caseSetup("case");
    written(setup, 10);
    append(setup.folder / "eff_AD.dat", "0.15 100.5 20.25 -3.5 7\n");
    path_ = load(setup.residualPath().string());
  }

  std::string path_;
};

TEST_F(MarineDiskCommands, DisksAreCountedAndARunWithoutDisksHasNone) {
  EXPECT_EQ(run("itf_get_disk_count", {path_}), Answer{"2"});
  CaseSetup bare = caseSetup("bare");
  bare.actuatorDisks = 0;
  EXPECT_EQ(run("itf_get_disk_count", {load(bare, 5)}), Answer{"0"});
  EXPECT_EQ(run("itf_get_disk_count", {"other.res"}),
            (Answer{"0", "Error in itf_get_disk_count! No project other.res present.\n"}));
}

TEST_F(MarineDiskCommands, EachDiskHasItsQuantitiesAndSteps) {
  EXPECT_EQ(run("itf_get_disk_quantity_count", {path_, "1"}), Answer{"2"});
  EXPECT_EQ(run("itf_get_disk_quantity_name", {path_, "0", "0"}), Answer{"Thrust"});
  EXPECT_EQ(run("itf_get_disk_quantity_name", {path_, "1", "1"}), Answer{"Torque"});
  EXPECT_EQ(run("itf_get_disk_steps", {path_, "1"}), Answer{"3"});
  // A disk the script leaves out is disk 0.
  EXPECT_EQ(run("itf_get_disk_quantity_count", {path_}), Answer{"2"});
}

TEST_F(MarineDiskCommands, ValuesAreReadByDiskQuantityAndStep) {
  EXPECT_EQ(run("itf_get_disk_quantity_value", {path_, "0", "0", "2"}), Answer{"100.5"});
  EXPECT_EQ(run("itf_get_disk_quantity_value", {path_, "0", "1", "2"}), Answer{"20.25"});
  EXPECT_EQ(run("itf_get_disk_quantity_value", {path_, "1", "0", "2"}), Answer{"-3.5"});
  EXPECT_EQ(run("itf_get_disk_quantity_value", {path_, "1", "1", "2"}), Answer{"7"});
  EXPECT_EQ(run("itf_get_disk_quantity_value", {path_, "0", "0", "0"}).console, "")
      << "the first step is a step";
}

TEST_F(MarineDiskCommands, WhatCannotBeFoundIsReportedWithTheCommandsNameAndTheDefaultAnswer) {
  EXPECT_EQ(
      run("itf_get_disk_quantity_count", {path_, "2"}),
      (Answer{"0",
              "Error in itf_get_disk_quantity_count! No actuator disk object with index 2.\n"}));
  EXPECT_EQ(run("itf_get_disk_steps", {path_, "-1"}),
            (Answer{"0", "Error in itf_get_disk_steps! No actuator disk object with index -1.\n"}));
  EXPECT_EQ(run("itf_get_disk_quantity_name", {path_, "1", "2"}),
            (Answer{"", "Error in itf_get_disk_quantity_name! No quantity #2 for body #1.\n"}));
  EXPECT_EQ(
      run("itf_get_disk_quantity_name", {path_, "3", "0"}),
      (Answer{"", "Error in itf_get_disk_quantity_name! No actuator disk object with index 3.\n"}));
  EXPECT_EQ(
      run("itf_get_disk_quantity_value", {path_, "0", "0", "3"}),
      (Answer{"0", "Error in itf_get_disk_quantity_value! Wrong step number 3 for disk 0.\n"}));
  EXPECT_EQ(run("itf_get_disk_quantity_value", {path_, "1", "-1", "0"}),
            (Answer{"0", "Error in itf_get_disk_quantity_value! No quantity #-1 for body #1.\n"}));
  EXPECT_EQ(
      run("itf_get_disk_quantity_value", {path_, "1", "0", "-1"}),
      (Answer{"0", "Error in itf_get_disk_quantity_value! Wrong step number -1 for disk 1.\n"}));
}

TEST_F(MarineDiskCommands, AMissingProjectIsReportedByEveryDiskCommand) {
  const struct {
    const char* command;
    std::vector<std::string> arguments;
    const char* answer;
  } cases[] = {
      {"itf_get_disk_quantity_count", {"other.res", "0"}, "0"},
      {"itf_get_disk_quantity_name", {"other.res", "0", "0"}, ""},
      {"itf_get_disk_steps", {"other.res", "0"}, "0"},
      {"itf_get_disk_quantity_value", {"other.res", "0", "0", "0"}, "0"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(run(c.command, c.arguments),
              (Answer{c.answer,
                      "Error in " + std::string(c.command) + "! No project other.res present.\n"}));
  }
}

}  // namespace
}  // namespace marine_commands_test
