// Curve names and the position of each curve's value in a residual record.
#include "turbo/curve_names.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "turbo/ite_res.h"

namespace {

using turbo::indexOf;

class CurveNames : public testing::Test {
 protected:
  static void SetUpTestSuite() { turbo::buildCurveNameTables(); }
};

TEST_F(CurveNames, Positions) {
  const struct {
    const char* name;
    std::int64_t block;
    std::int64_t nbVars;
    int turbulence;
    std::int64_t position;
  } cases[] = {
      // Global values ignore the block.
      {"WorkUnit", 0, 5, 0, 0},
      {"pu", 4, 5, 0, 1},
      {"Axial thrust", 0, 5, 0, 3},
      {"Torque", 3, 7, 0, 4},
      {"Torque", 999, 7, 2, 4},
      {"Out", 1, 5, 0, 8},
      // Flow equations: maximum then rms, per block.
      {"max_d", 0, 5, 0, 9},
      {"rms_d", 0, 5, 0, 10},
      {"rms_wz", 1, 5, 0, 9 + 10 + 7},
      {"rms_E", 2, 7, 0, 46},
      {"max_E", 2, 7, 0, 45},
      {"rms_E", 2, 7, 2, 46},
      // The fifth and sixth equations, whatever the turbulence model.
      {"rms_bladeForce", 1, 7, 0, 9 + 14 + 11},
      {"rms_nu", 1, 7, 1, 9 + 14 + 11},
      {"rms_k", 1, 7, 2, 9 + 14 + 11},
      {"rms_eps", 1, 7, 2, 9 + 14 + 13},
      {"max_bladeForce", 1, 7, 0, 9 + 14 + 10},
      {"max_nu", 1, 7, 0, 9 + 14 + 10},
      {"max_k", 1, 7, 2, 9 + 14 + 10},
      {"max_eps", 1, 7, 2, 9 + 14 + 12},
      // The extra equations (rms_sp..., rms_harm...) start after the
      // turbulence equations; "sp" and "harm" of one number share a position.
      {"rms_sp1", 0, 9, 2, 24},
      {"rms_harm1", 0, 9, 2, 24},
      {"max_sp1", 0, 9, 2, 23},
      {"max_harm1", 0, 9, 2, 23},
      {"rms_sp1", 0, 6, 1, 9 + 12 + 1},
      {"rms_sp1", 0, 6, 0, 9 + 10 + 1},
      {"max_sp3", 2, 8, 0, 9 + 32 + 14},
      {"rms_sp12", 0, 19, 2, 9 + 2 * (5 + 2 + 11) + 1},
      {"max_sp12", 1, 19, 2, 9 + 38 + 2 * (5 + 2 + 11)},
      {"rms_harm12", 0, 19, 2, 9 + 2 * (5 + 2 + 11) + 1},
      {"rms_harm500", 0, 505, 0, 9 + 2 * (5 + 499) + 1},
      {"max_harm500", 1, 505, 0, 9 + 1010 + 2 * (5 + 499)},
      // Unknown names read the first value.
      {"nonsense", 5, 7, 0, 0},
      {"", 0, 5, 0, 0},
      {"rms_sp13", 0, 20, 0, 0},
      {"max_sp13", 0, 20, 0, 0},
      {"rms_sp0", 0, 20, 0, 0},
      {"rms_harm501", 0, 600, 0, 0},
      {"max_harm501", 0, 600, 0, 0},
      {"rms_harm0", 0, 600, 0, 0},
      {"rms_harm01", 0, 600, 0, 0},
      {"RMS_E", 0, 5, 0, 0},
      {"rms_E ", 0, 5, 0, 0},
      {"torque", 0, 5, 0, 0},
      {"rms_eps2", 0, 5, 0, 0},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(indexOf(c.name, c.block, c.nbVars, c.turbulence), c.position)
        << '"' << c.name << "\" block " << c.block << " V=" << c.nbVars << " t=" << c.turbulence;
  }
}

TEST_F(CurveNames, TablesAreBuiltOnce) {
  turbo::buildCurveNameTables();
  EXPECT_EQ(turbo::globalNames(),
            (std::vector<std::string>{"WorkUnit", "pu", "Lift", "Axial thrust", "Torque", "Qmax",
                                      "Tmax", "In", "Out"}));
  EXPECT_EQ(indexOf("Lift", 0, 5, 0), 2);
  EXPECT_EQ(indexOf("rms_wx", 0, 5, 0), 12);
}

TEST(TurbulenceModels, EquationCounts) {
  const std::pair<const char*, int> cases[] = {
      {"K-E", 2}, {"K-O", 2},  {"SPL-ALM", 1}, {"NO-K-E", 0},
      {"k-e", 0}, {"K-E ", 0}, {"", 0},        {"SA", 0},
  };
  for (const auto& [model, count] : cases)
    EXPECT_EQ(turbo::turbulenceEquationCount(model), count) << model;
}

TEST_F(CurveNames, RecordValues) {
  // One block of seven equations: 9 + 14 values.
  std::vector<float> values;
  for (int k = 0; k < 23; ++k) values.push_back(static_cast<float>(k) + 0.5f);
  const turbo::IteRes record(values, 12, -1, 0.0, false, 1, 7);
  EXPECT_EQ(record.valueAt(0), 0.5f);
  EXPECT_EQ(record.valueAt(22), 22.5f);
  EXPECT_EQ(record.valueAt(23), 0.0f);
  EXPECT_EQ(record.valueAt(1000000), 0.0f);
  EXPECT_EQ(record.valueAt(-1), 0.0f);

  EXPECT_EQ(record.valueOf("Torque", 0), 4.5f);
  EXPECT_EQ(record.valueOf("rms_E", 0), 18.5f);
  EXPECT_EQ(record.valueOf("max_k", 2), 19.5f);
  EXPECT_EQ(record.valueOf("rms_eps", 2), 22.5f);
  EXPECT_EQ(record.valueOf("nonsense", 2), 0.5f);
  // The first extra equation after two turbulence equations lies past this
  // record's end.
  EXPECT_EQ(record.valueOf("rms_sp1", 2), 0.0f);
  EXPECT_EQ(record.valueOf("rms_sp1", 0), 20.5f);
}

}  // namespace
