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
  const struct {
    const char* path;
    const char* directory;
    const char* bareName;
  } cases[] = {
      {"/data/run 1/case.res", "/data/run 1/", "case.res"},
      {"C:\\runs\\blade\\case.res", "C:\\runs\\blade\\", "case.res"},
      // A slash anywhere wins over any backslash.
      {"C:\\runs/blade\\case.res", "C:\\runs/", "blade\\case.res"},
      {"/case.res", "/", "case.res"},
      {"runs/", "runs/", ""},
      {"a.b/c.d.res", "a.b/", "c.d.res"},
  };
  for (const auto& c : cases) {
    const QVfile file(c.path);
    EXPECT_EQ(file.path(), c.path);
    EXPECT_EQ(file.directory(), c.directory) << c.path;
    EXPECT_EQ(file.bareName(), c.bareName) << c.path;
  }
}

TEST(QVfilePath, BareNameLiesInTheCurrentFolder) {
  const QVfile file("case.res");
  EXPECT_EQ(file.directory(), std::filesystem::current_path().string() + "/");
  EXPECT_EQ(file.bareName(), "case.res");
  EXPECT_EQ(file.path(), "case.res");
}

// The six non-finite words, whole and case-sensitive, read as 5; anything
// else is an ordinary conversion of the leading integer.
TEST(TokenReads, IntegerTokens) {
  const struct {
    const char* token;
    std::int32_t value;
  } cases[] = {
      {"+INF", 5},   {"-INF", 5}, {"nan", 5}, {"NaN", 5},      {"NAN", 5},  {"Infinity", 5},
      {"inf", 0},    {"INF", 0},  {"Nan", 0}, {"infinity", 0}, {"+inf", 0}, {"INFINITY", 0},
      {"12abc", 12}, {"-7", -7},  {"+8", 8},  {"3.9", 3},      {"abc", 0},  {"007", 7},
  };
  for (const auto& c : cases) {
    const std::string text = std::string(" \t") + c.token + "\n";
    TokenStream tokens(text);
    std::int32_t value = -99;
    EXPECT_TRUE(tokens.readInteger(value)) << c.token;
    EXPECT_EQ(value, c.value) << c.token;
  }
}

TEST(TokenReads, RealTokens) {
  const struct {
    const char* token;
    float value;
  } cases[] = {
      {"+INF", 1.0f},     {"-INF", 1.0f},     {"nan", 1.0f},    {"NaN", 1.0f},
      {"NAN", 1.0f},      {"Infinity", 1.0f}, {"12abc", 12.0f}, {"-2.5e-3", -2.5e-3f},
      {"1.5E2x", 150.0f}, {".25", 0.25f},     {"+4", 4.0f},     {"abc", 0.0f},
      {"7", 7.0f},        {"0.1", 0.1f},      {"1e-50", 0.0f},
  };
  for (const auto& c : cases) {
    const std::string text = std::string(c.token) + " ";
    TokenStream tokens(text);
    float value = -99.0f;
    EXPECT_TRUE(tokens.readReal(value)) << c.token;
    EXPECT_EQ(value, c.value) << c.token;
  }
  // Lower-case "inf" is not one of the non-finite words: it converts as the C
  // library converts it.
  for (const char* token : {"inf", "infinity", "-inf"}) {
    TokenStream tokens(token);
    float value = 0.0f;
    EXPECT_TRUE(tokens.readReal(value));
    EXPECT_TRUE(std::isinf(value)) << token;
  }
}

TEST(TokenReads, MixedTokensAcrossLinesKeepTheirOrder) {
  TokenStream tokens("  3\t TF\r\n\n  -1.25e1 K-E  \n");
  std::int32_t blocks = 0;
  std::string module;
  float value = 0.0f;
  std::string turbulence;
  ConsoleCapture console;
  ASSERT_TRUE(tokens.readInteger(blocks));
  ASSERT_TRUE(tokens.readWord(module));
  ASSERT_TRUE(tokens.readReal(value));
  ASSERT_TRUE(tokens.readWord(turbulence));
  EXPECT_EQ(blocks, 3);
  EXPECT_EQ(module, "TF");
  EXPECT_EQ(value, -12.5f);
  EXPECT_EQ(turbulence, "K-E");
  EXPECT_FALSE(tokens.eof());
  EXPECT_EQ(console.text(), "");
}

// What each read does when the text runs out: only the read that looks for a
// token and finds none says so (and only for reals and words); a stream that
// is already at its end answers false silently. The target keeps its value.
TEST(TokenReads, EndOfText) {
  enum Read { integer, real, word };
  const struct {
    const char* text;
    std::vector<Read> reads;
    std::vector<bool> answers;
    const char* console;
  } cases[] = {
      {"", {integer}, {false}, ""},
      {"", {real}, {false}, "read:: float number not read !!!\n"},
      {"   \n\t", {word}, {false}, "read:: string value not read !!!\n"},
      // The token touching the end of the text puts the stream at its end.
      {"5", {integer, real, word}, {true, false, false}, ""},
      {"5", {word, integer}, {true, false}, ""},
      // A blank after the last token: the next read looks and fails.
      {"5 ",
       {integer, real, real, word},
       {true, false, false, false},
       "read:: float number not read !!!\n"},
      {"5 ", {real, word, word}, {true, false, false}, "read:: string value not read !!!\n"},
      {"5 ", {integer, integer, real}, {true, false, false}, ""},
  };
  for (const auto& c : cases) {
    ConsoleCapture console;
    TokenStream tokens(c.text);
    for (std::size_t i = 0; i < c.reads.size(); ++i) {
      std::int32_t integerValue = -1;
      float realValue = -1.0f;
      std::string wordValue = "kept";
      bool answer = false;
      switch (c.reads[i]) {
        case integer:
          answer = tokens.readInteger(integerValue);
          break;
        case real:
          answer = tokens.readReal(realValue);
          break;
        case word:
          answer = tokens.readWord(wordValue);
          break;
      }
      EXPECT_EQ(answer, c.answers[i]) << '"' << c.text << "\" read " << i;
      if (!answer) {
        EXPECT_EQ(integerValue, -1);
        EXPECT_EQ(realValue, -1.0f);
        EXPECT_EQ(wordValue, "kept");
      }
    }
    EXPECT_EQ(console.text(), c.console) << '"' << c.text << '"';
  }
}

TEST(TokenReads, QuietStreamDoesNotReportAMissingReal) {
  ConsoleCapture console;
  TokenStream tokens("1 \n", TokenStream::MissingReal::quiet);
  float value = 0.0f;
  EXPECT_TRUE(tokens.readReal(value));
  EXPECT_FALSE(tokens.readReal(value));
  EXPECT_EQ(value, 1.0f);
  EXPECT_EQ(console.text(), "");
}

TEST(LineHelpers, Trim) {
  const std::pair<const char*, const char*> cases[] = {
      {" \t\r\n\v\fab  c \r\n", "ab  c"}, {"", ""}, {" \t\r\n", ""}, {"x", "x"}, {"#a b", "#a b"},
  };
  for (const auto& [text, trimmed] : cases)
    EXPECT_EQ(fileformat::trim(text), trimmed) << '"' << text << '"';
}

TEST(LineHelpers, SplitTrailingNumber) {
  using Split = std::optional<std::pair<std::string, long>>;
  const std::pair<const char*, Split> cases[] = {
      {"Load12", Split({"Load", 12})},
      {"Thrust1", Split({"Thrust", 1})},
      {"A007", Split({"A", 7})},
      {"x1y2", Split({"x1y", 2})},
      {"Load1 Speed1", Split({"Load1 Speed", 1})},
      {"Q_0", Split({"Q_", 0})},
      {"12", std::nullopt},
      {"Load", std::nullopt},
      {"", std::nullopt},
      {"Load1 ", std::nullopt},
  };
  for (const auto& [name, split] : cases)
    EXPECT_EQ(fileformat::splitTrailingNumber(name), split) << name;
}

TEST(LineHelpers, CommentLinesAndCarriageReturns) {
  EXPECT_TRUE(fileformat::isCommentLine(""));
  EXPECT_TRUE(fileformat::isCommentLine("#QV_BEGIN"));
  EXPECT_TRUE(fileformat::isCommentLine("#"));
  EXPECT_FALSE(fileformat::isCommentLine(" # indented"));
  EXPECT_FALSE(fileformat::isCommentLine("1 2 3"));

  const std::pair<const char*, const char*> lines[] = {
      {"1 2\r", "1 2"}, {"1 2", "1 2"}, {"\r", ""}, {"", ""}, {"a\r\r", "a\r"}, {"\ra", "\ra"},
  };
  for (const auto& [line, kept] : lines) EXPECT_EQ(fileformat::withoutCarriageReturn(line), kept);
}

}  // namespace
