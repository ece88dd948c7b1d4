#include "fileformat/number_text.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>

namespace {

using fileformat::doubleToString;
using fileformat::formatGeneral;
using fileformat::leadingDouble;
using fileformat::leadingInteger;
using fileformat::longToString;

constexpr std::int64_t kLow = std::numeric_limits<std::int32_t>::min();
constexpr std::int64_t kHigh = std::numeric_limits<std::int32_t>::max();

TEST(NumberText, LeadingIntegerAsTheCLibraryReadsIt) {
  const struct {
    const char* text;
    std::int64_t value;
  } cases[] = {
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
      {"2147483648", kHigh},
      {"-2147483649", kLow},
      {"-2147483648", kLow},
  };
  for (const auto& c : cases) EXPECT_EQ(leadingInteger(c.text, kLow, kHigh), c.value) << c.text;
  EXPECT_EQ(leadingInteger("-9223372036854775808", std::numeric_limits<std::int64_t>::min(),
                           std::numeric_limits<std::int64_t>::max()),
            std::numeric_limits<std::int64_t>::min());
}

TEST(NumberText, LeadingDoubleAsAtofReadsIt) {
  const struct {
    const char* text;
    double value;
  } cases[] = {
      {"1.5", 1.5},    {" -2e3", -2000.0}, {"+.25", 0.25}, {"7.5kg", 7.5},
      {"abc", 0.0},    {"", 0.0},          {"1e", 1.0},    {"0x1p4", 16.0},
      {"-0x.8", -0.5}, {"1e-400", 0.0},    {"5.", 5.0},    {"--1", 0.0},
  };
  for (const auto& c : cases) EXPECT_EQ(leadingDouble(c.text), c.value) << c.text;
  EXPECT_TRUE(std::isinf(leadingDouble("1e400")));
  EXPECT_TRUE(std::isinf(leadingDouble("-INF")));
  EXPECT_LT(leadingDouble("-infinity"), 0.0);
  EXPECT_TRUE(std::isnan(leadingDouble("nan")));
  EXPECT_TRUE(std::isnan(leadingDouble("NaN")));
}

TEST(NumberText, ConversionsIgnoreTheUserLocale) {
  // A locale with a decimal comma must change nothing; skipped where the
  // machine has no such locale.
  const char* previous = std::setlocale(LC_ALL, nullptr);
  const std::string saved = previous == nullptr ? "C" : previous;
  if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr &&
      std::setlocale(LC_ALL, "fr_FR.UTF-8") == nullptr) {
    GTEST_SKIP() << "no locale with a decimal comma";
  }
  EXPECT_EQ(leadingDouble("2.5"), 2.5);
  EXPECT_EQ(formatGeneral(2.5, 15), "2.5");
  EXPECT_EQ(doubleToString(0.125), "0.125");
  std::setlocale(LC_ALL, saved.c_str());
}

TEST(NumberText, DoubleToStringIsUpperCaseG) {
  EXPECT_EQ(doubleToString(0.1), "0.1");
  EXPECT_EQ(doubleToString(1.0 / 3.0), "0.333333333333333");
  EXPECT_EQ(doubleToString(1e20), "1E+20");
  EXPECT_EQ(doubleToString(-1.5e-10), "-1.5E-10");
  EXPECT_EQ(doubleToString(std::numeric_limits<double>::infinity()), "INF");
  EXPECT_EQ(longToString(-123456789L), "-123456789");
  EXPECT_EQ(longToString(0), "0");
}

}  // namespace
