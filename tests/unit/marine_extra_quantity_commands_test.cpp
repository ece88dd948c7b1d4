// The marine commands on the user quantities of user_data.csv: their count,
// names, units, values and the position the scripts keep on each, with the
// messages for a bad project, quantity or iteration.
#include "marine_command_fixture.h"

namespace marine_commands_test {
namespace {

// The columns Time [s], Heave force [N], Pitch moment [N.m] and Froude
// number; two lines written by the simulator, a third here.
class MarineExtraQuantityCommands : public MarineCommandTest {
 protected:
  MarineExtraQuantityCommands() {
    const CaseSetup setup = caseSetup("case");
    written(setup, 10);
    append(setup.folder / "user_data.csv", "0.15\t98000.5\t-4300.25\t0.28\n");
    path_ = load(setup.residualPath().string());
  }

  // "wrong quantity number" as the commands other than the iteration getter
  // word it.
  std::string wrongQuantity(const std::string& command, int number, int count,
                            const std::string& path) const {
    return "Error in " + command + ": wrong quantity number " + std::to_string(number) + ". " +
           std::to_string(count) + " quantities available in the project '" + path + "'.\n";
  }

  std::string path_;
};

TEST_F(MarineExtraQuantityCommands, EachColumnIsAQuantityWithItsNameAndUnit) {
  EXPECT_EQ(run("itm_get_number_of_extra_quantities", {path_}), Answer{"4"});
  EXPECT_EQ(run("itm_get_extra_quantity_name", {path_, "0"}), Answer{"Time"});
  EXPECT_EQ(run("itm_get_extra_quantity_unit", {path_, "0"}), Answer{"s"});
  EXPECT_EQ(run("itm_get_extra_quantity_name", {path_, "2"}), Answer{"Pitch moment"});
  EXPECT_EQ(run("itm_get_extra_quantity_unit", {path_, "2"}), Answer{"N.m"});
  EXPECT_EQ(run("itm_get_extra_quantity_name", {path_, "3"}), Answer{"Froude number"});
  EXPECT_EQ(run("itm_get_extra_quantity_unit", {path_, "3"}), Answer{""});
}

TEST_F(MarineExtraQuantityCommands, EachLineGivesEveryQuantityOneValue) {
  EXPECT_EQ(run("itm_get_extra_quantity_capacity", {path_, "1"}), Answer{"3"});
  EXPECT_EQ(run("itm_get_extra_quantity_value", {path_, "1", "2"}), Answer{"98000.5"});
  EXPECT_EQ(run("itm_get_extra_quantity_value", {path_, "2", "2"}), Answer{"-4300.25"});
  EXPECT_EQ(run("itm_get_extra_quantity_value", {path_, "3", "2"}), Answer{"0.28"});
  EXPECT_EQ(
      run("itm_get_extra_quantity_value", {path_, "1", "3"}),
      (Answer{
          "0",
          "Error in itm_get_extra_quantity_value: wrong iteration number 3. The plot for quantity "
          "'Heave force' in project '" +
              path_ + "' has 3 points overall.\n"}));
  EXPECT_EQ(
      run("itm_get_extra_quantity_value", {path_, "1", "-1"}),
      (Answer{
          "0",
          "Error in itm_get_extra_quantity_value: wrong iteration number -1. The plot for quantity "
          "'Heave force' in project '" +
              path_ + "' has 3 points overall.\n"}));
}

TEST_F(MarineExtraQuantityCommands, TheCurrentIterationMayGoUpToTheCapacityItself) {
  EXPECT_EQ(run("itm_get_extra_quantity_iter", {path_, "1"}), Answer{"0"});
  EXPECT_EQ(run("itm_set_extra_quantity_iter", {path_, "1", "3"}), Answer{""});
  EXPECT_EQ(run("itm_get_extra_quantity_iter", {path_, "1"}), Answer{"3"});
  EXPECT_EQ(run("itm_get_extra_quantity_iter", {path_, "2"}), Answer{"0"});

  const std::string refused =
      "Error in itm_set_extra_quantity_iter: cannot set current iteration number for "
      "quantity 'Heave force' in project '" +
      path_ + "', maximum 3\n";
  EXPECT_EQ(run("itm_set_extra_quantity_iter", {path_, "1", "4"}), (Answer{"", refused}));
  EXPECT_EQ(run("itm_set_extra_quantity_iter", {path_, "1", "-1"}), (Answer{"", refused}));
  EXPECT_EQ(run("itm_get_extra_quantity_iter", {path_, "1"}), Answer{"3"});
}

TEST_F(MarineExtraQuantityCommands, AWrongQuantityNumberIsReportedWithTheCountAvailable) {
  EXPECT_EQ(
      run("itm_get_extra_quantity_iter", {path_, "4"}),
      (Answer{"0", "Error in itm_get_extra_quantity_iter: wrong quantity number 4 in project '" +
                       path_ + "'. 4 quantities available.\n"}));
  EXPECT_EQ(run("itm_set_extra_quantity_iter", {path_, "-1", "0"}),
            (Answer{"", wrongQuantity("itm_set_extra_quantity_iter", -1, 4, path_)}));
  EXPECT_EQ(run("itm_get_extra_quantity_capacity", {path_, "4"}),
            (Answer{"0", wrongQuantity("itm_get_extra_quantity_capacity", 4, 4, path_)}));
  EXPECT_EQ(run("itm_get_extra_quantity_value", {path_, "9", "0"}),
            (Answer{"0", wrongQuantity("itm_get_extra_quantity_value", 9, 4, path_)}));
  EXPECT_EQ(run("itm_get_extra_quantity_name", {path_, "4"}),
            (Answer{"", wrongQuantity("itm_get_extra_quantity_name", 4, 4, path_)}));
  EXPECT_EQ(run("itm_get_extra_quantity_unit", {path_, "4"}),
            (Answer{"", wrongQuantity("itm_get_extra_quantity_unit", 4, 4, path_)}));
}

TEST_F(MarineExtraQuantityCommands, ARunWithoutUserDataHasNoQuantity) {
  CaseSetup bare = caseSetup("bare");
  bare.userQuantities.clear();
  const std::string path = load(bare, 5);
  EXPECT_EQ(run("itm_get_number_of_extra_quantities", {path}), Answer{"0"});
  EXPECT_EQ(run("itm_get_extra_quantity_name", {path, "0"}),
            (Answer{"", wrongQuantity("itm_get_extra_quantity_name", 0, 0, path)}));
  EXPECT_EQ(
      run("itm_get_extra_quantity_iter", {path, "0"}),
      (Answer{"0", "Error in itm_get_extra_quantity_iter: wrong quantity number 0 in project '" +
                       path + "'. 0 quantities available.\n"}));
}

TEST_F(MarineExtraQuantityCommands, AMissingProjectIsReportedByEveryCommand) {
  const struct {
    const char* command;
    std::vector<std::string> arguments;
    const char* answer;
  } cases[] = {
      {"itm_get_number_of_extra_quantities", {"other.res"}, "0"},
      {"itm_get_extra_quantity_iter", {"other.res", "0"}, "0"},
      {"itm_set_extra_quantity_iter", {"other.res", "0", "0"}, ""},
      {"itm_get_extra_quantity_capacity", {"other.res", "0"}, "0"},
      {"itm_get_extra_quantity_value", {"other.res", "0", "0"}, "0"},
      {"itm_get_extra_quantity_name", {"other.res", "0"}, ""},
      {"itm_get_extra_quantity_unit", {"other.res", "0"}, ""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(run(c.command, c.arguments),
              (Answer{c.answer, "Error in " + std::string(c.command) +
                                    ": wrong project path 'other.res'.\n"}));
  }
}

}  // namespace
}  // namespace marine_commands_test
