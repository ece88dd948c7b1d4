// The marine command that reads one point of a curve: forces and moments of
// bodies and sub-bodies, motions of moving bodies and residuals, in steady
// and unsteady runs, with missing points and every complaint.
#include <cmath>
#include <limits>

#include "fileformat/work_unit.h"
#include "marine/commands/command_support.h"
#include "marine_command_fixture.h"

namespace marine_commands_test {
namespace {

constexpr const char* kCommand = "itf_get_curve_value_KELP";

TEST(MarineMissingPoints, NotANumberAndValuesBeyondTheFloatsReadAsTheLargestFloat) {
  const std::string largest = "3.40282346638529e+38";
  EXPECT_EQ(resultOf(marine::sanitised(std::numeric_limits<double>::quiet_NaN())), largest);
  EXPECT_EQ(resultOf(marine::sanitised(std::numeric_limits<double>::infinity())), largest);
  EXPECT_EQ(resultOf(marine::sanitised(-std::numeric_limits<double>::infinity())), largest);
  EXPECT_EQ(resultOf(marine::sanitised(-1e39)), largest);
  EXPECT_EQ(resultOf(marine::sanitised(-2.5)), "-2.5");
  EXPECT_EQ(resultOf(marine::sanitised(0.1)), "0.100000001490116");
}

// A steady run of three iterations followed by a fourth one whose rows are
// written here with round values: iteration 7 at pseudo-time 0.2.
class MarineSteadyCurves : public MarineCommandTest {
 protected:
  MarineSteadyCurves() {
    const fs::path folder = folder_ / "steady";
    written(caseSetup("steady", RunMode::steady), 3);
    append(folder / "ship.res", "7 1.5 0.5 0.25 0.125 0.0625 0.03125 1e39\n");
    append(folder / "eff_Fx.dat", "0.2 7 1520.5 210.25 95 12.125\n");
    append(folder / "eff_Mz.dat", "0.2 7 -8.5 1 2 3\n");
    append(folder / "Mvt_hull.dat", "0.2 1.5 2.5 -0.5 0.25 0.125 1e39\n");
    path_ = load((folder / "ship.res").string());
  }

  Answer point(const std::string& category, const std::string& body, const std::string& sub,
               const std::string& variable, const std::string& position = "3") {
    return run(kCommand, {path_, category, body, sub, variable, position});
  }

  std::string path_;
};

TEST_F(MarineSteadyCurves, ForcesAndMomentsStandAtTheIterationNumber) {
  EXPECT_EQ(point("Forces", "0", "-1", "0"), Answer{"7 1520.5"});
  EXPECT_EQ(point("Forces", "0", "0", "0"), Answer{"7 210.25"});
  EXPECT_EQ(point("Forces", "0", "1", "0"), Answer{"7 95"});
  EXPECT_EQ(point("Forces", "1", "-1", "0"), Answer{"7 12.125"});
  EXPECT_EQ(point("Moments", "0", "-1", "12"), Answer{"7 -8.5"});
  EXPECT_EQ(point("Moments", "1", "-1", "12"), Answer{"7 3"});
}

TEST_F(MarineSteadyCurves, MotionsStandAtTheIterationNumberAndIgnoreTheSubBody) {
  EXPECT_EQ(point("Motions", "0", "-1", "0"), Answer{"7 1.5"});
  EXPECT_EQ(point("Motions", "0", "9", "2"), Answer{"7 -0.5"});
  EXPECT_EQ(point("Motions", "0", "-1", "5"), Answer{"7 3.40282346638529e+38"});
  // Motions the body does not have read as 0.
  EXPECT_EQ(point("Motions", "0", "-1", "6"), Answer{"7 0"});
  EXPECT_EQ(point("Motions", "1", "-1", "0"), Answer{"7 0"});
}

TEST_F(MarineSteadyCurves, ResidualsStandAtTheirIterationNumberWhateverTheBody) {
  EXPECT_EQ(point("Resids", "9", "9", "2"), Answer{"7 0.125"});
  EXPECT_EQ(point("Resids", "-1", "-1", "4"), Answer{"7 0.03125"});
  EXPECT_EQ(point("Resids", "0", "-1", "3"), Answer{"7 0.0625"});
  EXPECT_EQ(point("Resids", "0", "-1", "5"), Answer{"7 3.40282346638529e+38"});
  // A residual the file does not hold reads 0; a name outside the table
  // answers for the first residual column.
  EXPECT_EQ(point("Resids", "0", "-1", "6"), Answer{"7 0"});
  EXPECT_EQ(point("Resids", "0", "-1", "8"), Answer{"7 0.5"});
  EXPECT_EQ(point("Resids", "0", "-1", "0", "4"), Answer{"0 0"});
}

TEST_F(MarineSteadyCurves, InPhysicalTimeResidualsStandAtTheTimeOfTheFirstBodysRow) {
  fileformat::workUnit = 1;
  EXPECT_EQ(point("Resids", "0", "-1", "1"), Answer{"0.200000002980232 0.25"});
  EXPECT_EQ(point("Resids", "0", "-1", "1", "4"), Answer{"0 0"});
}

TEST_F(MarineSteadyCurves, PointsPastTheEndGoThroughTheModelsLookup) {
  EXPECT_EQ(point("Forces", "0", "-1", "0", "4"),
            (Answer{"0 0",
                    "Error in BodyObject::getForce! Curve 'Fx' has only 4 elements while element "
                    "#4 was requested.\n"}));
  EXPECT_EQ(point("Moments", "0", "1", "2", "-1"),
            (Answer{"0 0",
                    "Error in SubBodyObject::getMoment! Curve 'MxP' has only 3 elements while "
                    "element #-1 was "
                    "requested.\n"}));
  EXPECT_EQ(point("Forces", "0", "-1", "1"),
            (Answer{"7 0",
                    "Error in BodyObject::getForce! Curve 'FxDyn' has only 0 elements while "
                    "element #3 was requested.\n"}));
  EXPECT_EQ(point("Forces", "0", "-1", "18"),
            (Answer{"7 0", "Error in BodyObject::getForce! Curve '' is not found.\n"}));
  EXPECT_EQ(point("Moments", "0", "-1", "20"),
            (Answer{"7 0", "Error in BodyObject::getMoment! Curve '' is not found.\n"}));
  EXPECT_EQ(point("Motions", "0", "-1", "0", "4"), Answer{"0 0"});
}

TEST_F(MarineSteadyCurves, BadProjectsBodiesSubBodiesAndCategoriesWriteNothing) {
  EXPECT_EQ(run(kCommand, {"other.res", "Forces", "0", "-1", "0", "0"}),
            (Answer{"",
                    "Error in itf_get_curve_value_KELP! Cannot find project 'other.res'! category "
                    "= Forces\n"}));
  EXPECT_EQ(
      point("Forces", "2", "-1", "0"),
      (Answer{"",
              "Error in itf_get_curve_value_KELP! Wrong body index 2 (0..2) category Forces\n"}));
  EXPECT_EQ(
      point("Motions", "-1", "-1", "0"),
      (Answer{"",
              "Error in itf_get_curve_value_KELP! Wrong body index -1 (0..2) category Motions\n"}));
  EXPECT_EQ(
      point("Moments", "0", "2", "0"),
      (Answer{
          "",
          "Error in itf_get_curve_value_KELP! Wrong sub-body index 2 (0..2) category Moments\n"}));
  EXPECT_EQ(
      point("Forces", "1", "0", "0"),
      (Answer{
          "",
          "Error in itf_get_curve_value_KELP! Wrong sub-body index 0 (0..0) category Forces\n"}));
  EXPECT_EQ(point("forces", "0", "-1", "0"),
            (Answer{"", "Error in itf_get_curve_value_KELP! Unknown category name forces\n"}));
  EXPECT_EQ(run(kCommand, {path_}),
            (Answer{"", "Error in itf_get_curve_value_KELP! Unknown category name \n"}));
  EXPECT_EQ(
      run(kCommand, {path_, "Forces"}),
      (Answer{"",
              "Error in itf_get_curve_value_KELP! Wrong body index -1 (0..2) category Forces\n"}));
  EXPECT_EQ(
      run(kCommand),
      (Answer{"", "Error in itf_get_curve_value_KELP! Cannot find project ''! category = \n"}));
}

// An unsteady run of two time steps (10 iterations), followed by rows written
// here: a plain row at 0.75 and a converged row and motion row at 0.15.
class MarineUnsteadyCurves : public MarineCommandTest {
 protected:
  MarineUnsteadyCurves() {
    const fs::path folder = folder_ / "unsteady";
    written(caseSetup("unsteady"), 10);
    append(folder / "eff_Fx.dat", "0.75 11 1520.5 210.25 95 12.125\n-0.15 11 7.25 1 2 3\n");
    append(folder / "Mvt_hull.dat", "0.15 1.5 2.5 -0.5 0.25 0.125 1e39\n");
    path_ = load((folder / "ship.res").string());
  }

  Answer point(const std::string& category, const std::string& body, const std::string& sub,
               const std::string& variable, const std::string& position) {
    return run(kCommand, {path_, category, body, sub, variable, position});
  }

  std::string path_;
};

TEST_F(MarineUnsteadyCurves, ForcesStandAtThePhysicalTime) {
  EXPECT_EQ(point("Forces", "0", "-1", "0", "10"), Answer{"0.75 1520.5"});
  EXPECT_EQ(point("Forces", "0", "0", "0", "10"), Answer{"0.75 210.25"});
  const marine::BodyObject& hull = project(path_).bodies()[0];
  EXPECT_EQ(point("Forces", "0", "-1", "6", "4"),
            Answer{resultOf(static_cast<float>(hull.times()[4]),
                            static_cast<float>(hull.element(marine::Component::force, "Fy", 4)))});
}

TEST_F(MarineUnsteadyCurves, DynQuantitiesReadTheConvergedValues) {
  const marine::BodyObject& hull = project(path_).bodies()[0];
  EXPECT_EQ(point("Forces", "0", "-1", "1", "2"),
            Answer{resultOf(static_cast<float>(hull.times()[2]), 7.25f)});
  EXPECT_EQ(point("Forces", "1", "-1", "1", "2"),
            Answer{resultOf(static_cast<float>(hull.times()[2]), 3.0f)});
  EXPECT_EQ(point("Forces", "0", "-1", "1", "3"),
            (Answer{resultOf(static_cast<float>(hull.times()[3]), 0.0f),
                    "Error in BodyObject::getForce! Curve 'FxDyn' has only 3 elements while "
                    "element #3 was requested.\n"}));
}

TEST_F(MarineUnsteadyCurves, MotionsStandAtTheTimesOfTheMotionFile) {
  EXPECT_EQ(point("Motions", "0", "-1", "2", "2"), Answer{"0.150000005960464 -0.5"});
  EXPECT_EQ(point("Motions", "0", "-1", "5", "2"),
            Answer{"0.150000005960464 3.40282346638529e+38"});
  EXPECT_EQ(point("Motions", "0", "-1", "0", "3"), Answer{"0 0"});
}

TEST_F(MarineUnsteadyCurves, PositionsPastTheEndOfTheTimesHaveTheAbscissaZero) {
  EXPECT_EQ(point("Forces", "1", "-1", "0", "11"),
            (Answer{"0 0",
                    "Error in BodyObject::getForce! Curve 'Fx' has only 11 elements while element "
                    "#11 was requested.\n"}));
}

}  // namespace
}  // namespace marine_commands_test
