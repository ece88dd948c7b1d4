// The marine commands on bodies and sub-bodies: counts, names and centres of
// gravity, with the words each command uses for a bad project or index.
#include "marine_command_fixture.h"

namespace marine_commands_test {
namespace {

class MarineBodyCommands : public MarineCommandTest {
 protected:
  const std::string path_ = load(caseSetup("case"), 5);
};

TEST_F(MarineBodyCommands, BodiesAreCountedAndAMissingProjectIsNamedAfterAnotherCommand) {
  EXPECT_EQ(run("get_number_of_bodies_KELP", {path_}), Answer{"2"});
  EXPECT_EQ(run("get_number_of_bodies_KELP", {"other.res"}),
            (Answer{"0", missingProject("is_unsteady_conv_available", "other.res")}));
}

TEST_F(MarineBodyCommands, BodyNamesAreReadByIndexWithTheRangeOpenedByABracket) {
  EXPECT_EQ(run("get_body_name_KELP", {path_, "0"}), Answer{"hull"});
  EXPECT_EQ(run("get_body_name_KELP", {path_, "1"}), Answer{"rudder"});
  EXPECT_EQ(
      run("get_body_name_KELP", {path_, "5"}),
      (Answer{"", "Error in get_body_name_KELP! Wrong body index 5, the valid range is [0..2)\n"}));
  EXPECT_EQ(
      run("get_body_name_KELP", {path_}),
      (Answer{"",
              "Error in get_body_name_KELP! Wrong body index -1, the valid range is [0..2)\n"}));
  EXPECT_EQ(run("get_body_name_KELP", {"other.res", "0"}),
            (Answer{"", missingProject("get_body_name_KELP", "other.res")}));
}

TEST_F(MarineBodyCommands, SubBodiesAreCountedPerBody) {
  EXPECT_EQ(run("get_sub_object_number_KELP", {path_, "0"}), Answer{"2"});
  EXPECT_EQ(run("get_sub_object_number_KELP", {path_, "1"}), Answer{"0"});
  EXPECT_EQ(run("get_sub_object_number_KELP", {path_, "2"}),
            (Answer{"0", "Error in get_sub_object_number_KELP! Wrong body index 2 (0..2)\n"}));
  EXPECT_EQ(run("get_sub_object_number_KELP", {"other.res", "0"}),
            (Answer{"0", missingProject("get_sub_object_number_KELP", "other.res")}));
}

TEST_F(MarineBodyCommands, SubBodyNamesAreReadByIndexAndMinusOneNamesTheBody) {
  EXPECT_EQ(run("get_subbody_name_KELP", {path_, "0", "0"}), Answer{"keel"});
  EXPECT_EQ(run("get_subbody_name_KELP", {path_, "0", "1"}), Answer{"bulb"});
  EXPECT_EQ(run("get_subbody_name_KELP", {path_, "0", "-1"}), Answer{"hull"});
  EXPECT_EQ(run("get_subbody_name_KELP", {path_, "1"}), Answer{"rudder"});
}

TEST_F(MarineBodyCommands, SubBodyNamesReportAMissingProjectInTheBodyCommandsWords) {
  EXPECT_EQ(run("get_subbody_name_KELP", {path_, "1", "0"}),
            (Answer{"", "Error in get_subbody_name_KELP! Wrong sub-body index 0 (0..0)\n"}));
  EXPECT_EQ(run("get_subbody_name_KELP", {path_, "0", "2"}),
            (Answer{"", "Error in get_subbody_name_KELP! Wrong sub-body index 2 (0..2)\n"}));
  EXPECT_EQ(run("get_subbody_name_KELP", {path_, "2", "0"}),
            (Answer{"", "Error in get_subbody_name_KELP! Wrong body index 2 (0..2)\n"}));
  EXPECT_EQ(run("get_subbody_name_KELP", {"other.res", "0", "0"}),
            (Answer{"", missingProject("get_body_name_KELP", "other.res")}));
}

TEST_F(MarineBodyCommands, CentresOfGravityAreThoseOfTheBodyDescription) {
  EXPECT_EQ(run("itm_get_body_gravity_center", {path_, "0"}), Answer{"61.2 0 -1.5"});
  EXPECT_EQ(run("itm_is_body_gravity_center_available", {path_, "0"}), Answer{"1"});
  EXPECT_EQ(run("itm_get_body_gravity_center", {path_, "1"}), Answer{"0 0 0"});
  EXPECT_EQ(run("itm_is_body_gravity_center_available", {path_, "1"}), Answer{"0"});
}

TEST_F(MarineBodyCommands, CentresOfGravityReportBadProjectsAndBodiesWithoutTheirPrefix) {
  EXPECT_EQ(
      run("itm_get_body_gravity_center", {path_, "2"}),
      (Answer{
          "0 0 0",
          "Error in get_body_gravity_center! Wrong body index 2, the valid range is [0..2)\n"}));
  EXPECT_EQ(run("itm_get_body_gravity_center", {"other.res", "0"}),
            (Answer{"0 0 0", missingProject("get_body_gravity_center", "other.res")}));
  EXPECT_EQ(run("itm_is_body_gravity_center_available", {path_, "-3"}),
            (Answer{"0",
                    "Error in is_body_gravity_center_available! Wrong body index -3, the valid "
                    "range is [0..2)\n"}));
  EXPECT_EQ(run("itm_is_body_gravity_center_available", {"other.res", "0"}),
            (Answer{"0", missingProject("is_body_gravity_center_available", "other.res")}));
}

}  // namespace
}  // namespace marine_commands_test
