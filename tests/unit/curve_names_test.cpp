// The position of each named curve's value in a residual record: 9 global
// values, then per block b and equation e the maximum at 9 + 2Vb + 2e and the
// rms one further; species and harmonics after the turbulence equations.
#include "turbo/curve_names.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "turbo/ite_res.h"

namespace {

class CurveNames : public testing::Test {
 protected:
  static void SetUpTestSuite() { turbo::buildCurveNameTables(); }
};

TEST_F(CurveNames, Positions) {
  const struct {
    const char* name;
    std::int64_t block, nbVars;
    int turbulence;
    std::int64_t position;
  } cases[] = {
      {"Torque", 999, 7, 2, 4},
      {"max_E", 2, 7, 0, 45},
      {"rms_E", 2, 7, 2, 46},
      {"rms_nu", 1, 7, 1, 34},
      {"max_k", 1, 7, 2, 33},
      {"rms_eps", 1, 7, 2, 36},
      {"rms_sp1", 0, 9, 1, 22},
      {"max_sp12", 1, 19, 2, 9 + 38 + 36},
      {"rms_harm500", 0, 505, 0, 9 + 2 * 504 + 1},
      // Names of no curve read the first value.
      {"rms_sp13", 0, 20, 0, 0},
      {"rms_sp0", 0, 20, 0, 0},
      {"max_harm501", 0, 600, 0, 0},
      {"RMS_E", 0, 5, 0, 0},
      {"torque", 0, 5, 0, 0},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(turbo::indexOf(c.name, c.block, c.nbVars, c.turbulence), c.position)
        << c.name << " block " << c.block << " V " << c.nbVars << " t " << c.turbulence;
  }
}

TEST(TurbulenceModels, EquationCounts) {
  const std::pair<const char*, int> cases[] = {{"K-E", 2},    {"K-O", 2}, {"SPL-ALM", 1},
                                               {"NO-K-E", 0}, {"k-e", 0}, {"", 0}};
  for (const auto& [model, count] : cases)
    EXPECT_EQ(turbo::turbulenceEquationCount(model), count) << model;
}

TEST_F(CurveNames, ValuesOfARecordOfOneBlockOfSevenEquations) {
  std::vector<float> values;
  for (int k = 0; k < 23; ++k) values.push_back(static_cast<float>(k) + 0.5f);
  const turbo::IteRes record(values, 12, -1, 0.0, false, 1, 7);
  EXPECT_EQ(record.valueAt(22), 22.5f);
  EXPECT_EQ(record.valueAt(23), 0.0f);
  EXPECT_EQ(record.valueAt(-1), 0.0f);
  EXPECT_EQ(record.valueOf("rms_E", 0), 18.5f);
  EXPECT_EQ(record.valueOf("rms_sp1", 0), 20.5f);
  EXPECT_EQ(record.valueOf("rms_sp1", 2), 0.0f);  // past the record's end
}

}  // namespace
