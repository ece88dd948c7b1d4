#include "fileformat/number_text.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>

namespace {

using fileformat::leadingDouble;

TEST(NumberText, LeadingIntegerAsTheCLibraryReadsIt) {
  constexpr std::int64_t kLow = std::numeric_limits<std::int32_t>::min();
  constexpr std::int64_t kHigh = std::numeric_limits<std::int32_t>::max();
  const std::pair<const char*, std::int64_t> cases[] = {
      {"42", 42},
      {"  \t-17", -17},
      {"+8", 8},
      {"12abc", 12},
      {"abc", 0},
      {"", 0},
      {"- 5", 0},
      {"3.9", 3},
      {"0x10", 0},
      {"007", 7},
      {"2147483646", 2147483646},
      {"2147483648", 2147483647},
      {"-2147483649", -2147483648},
      {"-2147483648", -2147483648},
      {"-2147483647", -2147483647},
  };
  for (const auto& [text, value] : cases)
    EXPECT_EQ(fileformat::leadingInteger(text, kLow, kHigh), value) << text;
  EXPECT_EQ(
      fileformat::leadingInteger("-9223372036854775808", std::numeric_limits<std::int64_t>::min(),
                                 std::numeric_limits<std::int64_t>::max()),
      std::numeric_limits<std::int64_t>::min());
}

TEST(NumberText, LeadingDoubleAsAtofReadsIt) {
  const double inf = std::numeric_limits<double>::infinity();
  const std::pair<const char*, double> cases[] = {
      {"1.5", 1.5}, {" -2e3", -2000.0}, {"+.25", 0.25},  {"7.5kg", 7.5},  {"abc", 0.0},
      {"", 0.0},    {"1e", 1.0},        {"0x1p4", 16.0}, {"-0x.8", -0.5}, {"0x", 0.0},
      {"0x.", 0.0}, {"0xg", 0.0},       {"0XA", 10.0},   {"1e-400", 0.0}, {"5.", 5.0},
      {"--1", 0.0}, {"-+1", 0.0},       {"1e400", inf},  {"-INF", -inf},  {"-infinity", -inf}};
  for (const auto& [text, value] : cases) EXPECT_EQ(leadingDouble(text), value) << text;
  EXPECT_TRUE(std::isnan(leadingDouble("NaN")));
  double value = 9;
  EXPECT_EQ(fileformat::parseLeadingDouble("  -1.5e2x", value), 8u);
  EXPECT_EQ(value, -150.0);
  EXPECT_EQ(fileformat::parseLeadingDouble(" x", value), 0u);
  EXPECT_EQ(value, 0.0);
}

TEST(NumberText, TextOfNumbersIgnoresTheUserLocale) {
  const char* previous = std::setlocale(LC_ALL, nullptr);
  const std::string saved = previous == nullptr ? "C" : previous;
  // A locale with a decimal comma, where the machine has one, must change nothing.
  if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr) std::setlocale(LC_ALL, "fr_FR.UTF-8");
  EXPECT_EQ(leadingDouble("2.5"), 2.5);
  EXPECT_EQ(fileformat::formatGeneral(2.5e-7, 15), "2.5e-07");
  EXPECT_EQ(fileformat::doubleToString(0.1), "0.1");
  EXPECT_EQ(fileformat::doubleToString(1.0 / 3.0), "0.333333333333333");
  EXPECT_EQ(fileformat::doubleToString(-1.5e-10), "-1.5E-10");
  EXPECT_EQ(fileformat::doubleToString(std::numeric_limits<double>::infinity()), "INF");
  EXPECT_EQ(fileformat::longToString(-123456789L), "-123456789");
  std::setlocale(LC_ALL, saved.c_str());
}

}  // namespace
