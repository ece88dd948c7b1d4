#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <optional>
#include <string>
#include <tuple>
#include <utility>

#include "console_capture.h"
#include "fileformat/line_helpers.h"
#include "fileformat/number_text.h"
#include "fileformat/qv_file.h"
#include "fileformat/settings_line_readers.h"
#include "fileformat/token_stream.h"

namespace {

using fileformat::leadingDouble;
using fileformat::TokenStream;

TEST(QVfilePath, SplitsAtTheLastSlashThenAtTheLastBackslash) {
  const std::string here = std::filesystem::current_path().string() + "/";
  const std::tuple<const char*, std::string, const char*> cases[] = {
      {"/data/run 1/case.res", "/data/run 1/", "case.res"},
      {"C:\\runs\\blade\\case.res", "C:\\runs\\blade\\", "case.res"},
      {"C:\\runs/blade\\case.res", "C:\\runs/", "blade\\case.res"},
      {"/case.res", "/", "case.res"},
      {"runs/", "runs/", ""},
      {"case.res", here, "case.res"}};
  for (const auto& [path, directory, bareName] : cases) {
    const QVfile file(path);
    EXPECT_EQ(file.path() + '|' + file.directory() + '|' + file.bareName(),
              std::string(path) + '|' + directory + '|' + bareName);
  }
}

// Only the six non-finite words, whole and case-sensitive, read as 5 and 1.0.
TEST(TokenReads, IntegerAndRealTokens) {
  const float inf = std::numeric_limits<float>::infinity();
  // clang-format off
  const std::tuple<const char*, std::int32_t, float> cases[] = {
      {"+INF", 5, 1}, {"-INF", 5, 1}, {"nan", 5, 1}, {"NaN", 5, 1}, {"NAN", 5, 1},
      {"Infinity", 5, 1}, {"inf", 0, inf}, {"INFINITY", 0, inf}, {"-inf", 0, -inf},
      {"12abc", 12, 12}, {"-7", -7, -7}, {"3.9", 3, 3.9f}, {"abc", 0, 0}, {"1.5E2x", 1, 150},
      {".25", 0, 0.25f}};
  // clang-format on
  for (const auto& [token, integer, real] : cases) {
    const std::string text = std::string(" \t") + token + "\r\n" + token;
    TokenStream tokens(text);
    std::int32_t readInteger = -99;
    float readReal = -99;
    EXPECT_TRUE(tokens.readInteger(readInteger) && tokens.readReal(readReal)) << token;
    EXPECT_EQ(std::make_pair(readInteger, readReal), std::make_pair(integer, real)) << token;
  }
}

// Per row the text, the reads (q: quiet), the answers and the console.
TEST(TokenReads, EndOfText) {
  const std::string noReal = "read:: float number not read !!!\n";
  const std::string noWord = "read:: string value not read !!!\n";
  // clang-format off
  const std::tuple<const char*, const char*, std::string> cases[] = {
      {"", "i", "-"}, {"", "r", "-" + noReal}, {"", "qr", "-"}, {"   \n\t", "w", "-" + noWord},
      {"5", "irw", "+--"}, {"5", "wi", "+-"}, {"5 ", "irrw", "+---" + noReal},
      {"5 ", "rww", "+--" + noWord}, {"5 ", "iir", "+--"}, {"1 \n", "qrr", "+-"}};
  // clang-format on
  for (const auto& [text, reads, expected] : cases) {
    ConsoleCapture console;
    TokenStream tokens(
        text, *reads == 'q' ? TokenStream::MissingReal::quiet : TokenStream::MissingReal::report);
    std::string answered;
    for (const char* read = reads + (*reads == 'q'); *read != '\0'; ++read) {
      std::int32_t integer = -1;
      float real = -1.0f;
      std::string word = "kept";
      const bool answer = *read == 'i'   ? tokens.readInteger(integer)
                          : *read == 'r' ? tokens.readReal(real)
                                         : tokens.readWord(word);
      answered += answer ? '+' : '-';
      EXPECT_TRUE(answer ||
                  std::to_string(integer) + word + std::to_string(real) == "-1kept-1.000000");
    }
    EXPECT_EQ(answered + console.text(), expected) << '"' << text << "\" " << reads;
  }
}

TEST(LineHelpers, TrimCommentsCarriageReturnsAndTrailingNumbers) {
  const std::pair<const char*, const char*> trims[] = {
      {" \t\r\n\v\fab  c \r\n", "ab  c"}, {"", ""}, {" \t\r\n", ""}, {"x", "x"}, {"#a b", "#a b"}};
  for (const auto& [text, trimmed] : trims) EXPECT_EQ(fileformat::trim(text), trimmed) << text;
  const std::pair<const char*, bool> comments[] = {
      {"", true}, {"#QV_BEGIN", true}, {"#", true}, {" # indented", false}, {"1 2 3", false}};
  for (const auto& [line, comment] : comments) EXPECT_EQ(fileformat::isCommentLine(line), comment);
  const std::pair<const char*, const char*> lines[] = {
      {"1 2\r", "1 2"}, {"1 2", "1 2"}, {"\r", ""}, {"", ""}, {"a\r\r", "a\r"}, {"\ra", "\ra"}};
  for (const auto& [line, kept] : lines) EXPECT_EQ(fileformat::withoutCarriageReturn(line), kept);
  using Split = std::optional<std::pair<std::string, long>>;
  // clang-format off
  const std::pair<const char*, Split> splits[] = {
      {"Load12", Split({"Load", 12})}, {"A007", Split({"A", 7})}, {"x1y2", Split({"x1y", 2})},
      {"Load1 Speed1", Split({"Load1 Speed", 1})}, {"Q_0", Split({"Q_", 0})}, {"12", std::nullopt},
      {"A/9", Split({"A/", 9})}, {"Load", std::nullopt}, {"Load1 ", std::nullopt}};
  // clang-format on
  for (const auto& [name, split] : splits)
    EXPECT_EQ(fileformat::splitTrailingNumber(name), split) << name;
}

TEST(NumberText, LeadingIntegerAsTheCLibraryReadsIt) {
  using Int32 = std::numeric_limits<std::int32_t>;
  using Int64 = std::numeric_limits<std::int64_t>;
  // clang-format off
  const std::pair<const char*, std::int64_t> cases[] = {
      {"42", 42}, {"  \t-17", -17}, {"+8", 8}, {"12abc", 12}, {"abc", 0}, {"", 0}, {"- 5", 0},
      {"3.9", 3}, {"0x10", 0}, {"007", 7}, {"2147483646", 2147483646}, {"2147483648", 2147483647},
      {"-2147483649", -2147483648}, {"-2147483648", -2147483648}, {"-2147483647", -2147483647}};
  // clang-format on
  for (const auto& [text, value] : cases)
    EXPECT_EQ(fileformat::leadingInteger(text, Int32::min(), Int32::max()), value) << text;
  EXPECT_EQ(fileformat::leadingInteger("-9223372036854775808", Int64::min(), Int64::max()),
            Int64::min());
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

// A locale with a decimal comma, where the machine has one, changes nothing.
TEST(NumberText, TextOfNumbersIgnoresTheUserLocale) {
  const char* previous = std::setlocale(LC_ALL, nullptr);
  const std::string saved = previous == nullptr ? "C" : previous;
  if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr) std::setlocale(LC_ALL, "fr_FR.UTF-8");
  EXPECT_EQ(leadingDouble("2.5"), 2.5);
  EXPECT_EQ(fileformat::formatGeneral(2.5e-7, 15) + ' ' + fileformat::doubleToString(0.1) + ' ' +
                fileformat::doubleToString(1.0 / 3.0) + ' ' + fileformat::doubleToString(-1.5e-10) +
                ' ' + fileformat::doubleToString(std::numeric_limits<double>::infinity()) + ' ' +
                fileformat::longToString(-123456789L),
            "2.5e-07 0.1 0.333333333333333 -1.5E-10 INF -123456789");
  std::setlocale(LC_ALL, saved.c_str());
}

TEST(SettingsLine, Readers) {
  enum Reader { strings, stringInteger, stringString };
  const char* const number[] = {"15", "27", "29"};
  // The reader, the line, what it gives back ("a|b" untouched), what it expects.
  const char* const integer = "expected:  <string> <integer>";
  // clang-format off
  const std::tuple<Reader, const char*, const char*, const char*> cases[] = {
      {strings, "NAME  a   b  ", "a   b|b", ""}, {strings, "\tTITLE\t x\ty \t", "x\ty|b", ""},
      {strings, "ALONE", "|b", ""}, {strings, "", "a|b", "expected:  <strings> "},
      {stringInteger, "NAME  a   b  ", "a|b", ""}, {stringInteger, "BODY two", "two|", ""},
      {stringInteger, "BODY\thull\t3\t 4  x", "hull|3 4 x", ""},
      {stringInteger, "ONLYKEY", "a|b", integer}, {stringInteger, "   ", "a|b", integer},
      {stringString, "Monitor\tRefresh 5 extra words", "Refresh|5", ""},
      {stringString, "X y z", "y|z", ""}, {stringString, "", "a|b", "expected:  <string> <string>"},
      {stringString, "GROUP  name", "a|b", "expected: GROUP <string> <string>"}};
  // clang-format on
  for (const auto& [reader, line, given, expected] : cases) {
    LineStatus status;
    status.lineNumber = 12;
    std::string first = "a", second = "b";
    const ConsoleCapture console;
    const int answer = reader == strings         ? readStrings(status, first, line)
                       : reader == stringInteger ? readStringInteger(status, first, second, line)
                                                 : readStringString(status, first, second, line);
    const bool good = *expected == '\0';
    EXPECT_EQ(
        std::to_string(answer) + std::to_string(status.ok) + ' ' + first + '|' + second + '/' +
            console.text() + '/' + status.message + '/' + status.read + '/' + status.expected,
        std::string(good ? "11 " : "00 ") + given + '/' +
            (good ? "" : "  wrong format for" + std::string(number[reader]) + ": " + line + "\n") +
            (good ? "//" : "/line12: wrong format/read:     " + std::string(line)) + '/' + expected)
        << line;
  }
}

}  // namespace
