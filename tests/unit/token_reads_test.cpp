// Path splitting, whitespace-token reads and the small line helpers shared by
// the file readers.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "console_capture.h"
#include "fileformat/line_helpers.h"
#include "fileformat/qv_file.h"
#include "fileformat/token_stream.h"

namespace {

using fileformat::TokenStream;

TEST(QVfilePath, SplitsAtTheLastSlashThenAtTheLastBackslash) {
  const std::string here = std::filesystem::current_path().string() + "/";
  const struct {
    const char* path;
    std::string directory;
    const char* bareName;
  } cases[] = {
      {"/data/run 1/case.res", "/data/run 1/", "case.res"},
      {"C:\\runs\\blade\\case.res", "C:\\runs\\blade\\", "case.res"},
      {"C:\\runs/blade\\case.res", "C:\\runs/", "blade\\case.res"},
      {"/case.res", "/", "case.res"},
      {"runs/", "runs/", ""},
      {"case.res", here, "case.res"},
  };
  for (const auto& c : cases) {
    const QVfile file(c.path);
    EXPECT_EQ(file.path(), c.path);
    EXPECT_EQ(file.directory(), c.directory) << c.path;
    EXPECT_EQ(file.bareName(), c.bareName) << c.path;
  }
}

// The six non-finite words, whole and case-sensitive, read as 5 and 1.0;
// anything else is an ordinary conversion of the leading number.
TEST(TokenReads, IntegerAndRealTokens) {
  const float inf = std::numeric_limits<float>::infinity();
  const struct {
    const char* token;
    std::int32_t integer;
    float real;
  } cases[] = {
      {"+INF", 5, 1},    {"-INF", 5, 1},     {"nan", 5, 1},     {"NaN", 5, 1},
      {"NAN", 5, 1},     {"Infinity", 5, 1}, {"inf", 0, inf},   {"INFINITY", 0, inf},
      {"-inf", 0, -inf}, {"12abc", 12, 12},  {"-7", -7, -7},    {"3.9", 3, 3.9f},
      {"abc", 0, 0},     {"1.5E2x", 1, 150}, {".25", 0, 0.25f},
  };
  for (const auto& c : cases) {
    const std::string text = std::string(" \t") + c.token + "\r\n" + c.token;
    TokenStream tokens(text);
    std::int32_t integer = -99;
    float real = -99;
    EXPECT_TRUE(tokens.readInteger(integer)) << c.token;
    EXPECT_TRUE(tokens.readReal(real)) << c.token;
    EXPECT_EQ(integer, c.integer) << c.token;
    EXPECT_EQ(real, c.real) << c.token;
  }
}

// What each read does when the text runs out: only the read that looks for a
// token and finds none says so (and only for reals and words, and reals only
// when not quiet); a stream already at its end answers false silently. The
// target keeps its value.
TEST(TokenReads, EndOfText) {
  const struct {
    const char* text;
    const char* reads;    // integer, real or word, one after the other
    const char* answers;  // + for true
    const char* console;
    TokenStream::MissingReal missing = TokenStream::MissingReal::report;
  } cases[] = {
      {"", "i", "-", ""},
      {"", "r", "-", "read:: float number not read !!!\n"},
      {"", "r", "-", "", TokenStream::MissingReal::quiet},
      {"   \n\t", "w", "-", "read:: string value not read !!!\n"},
      // The token touching the end of the text puts the stream at its end.
      {"5", "irw", "+--", ""},
      {"5", "wi", "+-", ""},
      // A blank after the last token: the next read looks and fails.
      {"5 ", "irrw", "+---", "read:: float number not read !!!\n"},
      {"5 ", "rww", "+--", "read:: string value not read !!!\n"},
      {"5 ", "iir", "+--", ""},
      {"1 \n", "rr", "+-", "", TokenStream::MissingReal::quiet},
  };
  for (const auto& c : cases) {
    ConsoleCapture console;
    TokenStream tokens(c.text, c.missing);
    std::string answers;
    for (const char* read = c.reads; *read != '\0'; ++read) {
      std::int32_t integer = -1;
      float real = -1.0f;
      std::string word = "kept";
      const bool answer = *read == 'i'   ? tokens.readInteger(integer)
                          : *read == 'r' ? tokens.readReal(real)
                                         : tokens.readWord(word);
      answers += answer ? '+' : '-';
      if (!answer)
        EXPECT_EQ(std::to_string(integer) + word + std::to_string(real), "-1kept-1.000000");
    }
    EXPECT_EQ(answers, c.answers) << '"' << c.text << "\" " << c.reads;
    EXPECT_EQ(console.text(), c.console) << '"' << c.text << "\" " << c.reads;
  }
}

TEST(LineHelpers, TrimCommentsAndCarriageReturns) {
  const std::pair<const char*, const char*> trims[] = {
      {" \t\r\n\v\fab  c \r\n", "ab  c"}, {"", ""}, {" \t\r\n", ""}, {"x", "x"}, {"#a b", "#a b"},
  };
  for (const auto& [text, trimmed] : trims) EXPECT_EQ(fileformat::trim(text), trimmed) << text;
  for (const char* comment : {"", "#QV_BEGIN", "#"})
    EXPECT_TRUE(fileformat::isCommentLine(comment));
  for (const char* line : {" # indented", "1 2 3"}) EXPECT_FALSE(fileformat::isCommentLine(line));
  const std::pair<const char*, const char*> lines[] = {
      {"1 2\r", "1 2"}, {"1 2", "1 2"}, {"\r", ""}, {"", ""}, {"a\r\r", "a\r"}, {"\ra", "\ra"},
  };
  for (const auto& [line, kept] : lines) EXPECT_EQ(fileformat::withoutCarriageReturn(line), kept);
}

TEST(LineHelpers, SplitTrailingNumber) {
  using Split = std::optional<std::pair<std::string, long>>;
  const std::pair<const char*, Split> cases[] = {
      {"Load12", Split({"Load", 12})}, {"A007", Split({"A", 7})},
      {"x1y2", Split({"x1y", 2})},     {"Load1 Speed1", Split({"Load1 Speed", 1})},
      {"Q_0", Split({"Q_", 0})},       {"12", std::nullopt},
      {"Load", std::nullopt},          {"", std::nullopt},
      {"Load1 ", std::nullopt},        {"A/9", Split({"A/", 9})},
  };
  for (const auto& [name, split] : cases)
    EXPECT_EQ(fileformat::splitTrailingNumber(name), split) << name;
}

}  // namespace
