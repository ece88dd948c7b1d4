#include "fileformat/settings_line_readers.h"

#include <gtest/gtest.h>

#include "console_capture.h"

namespace {

class SettingsLine : public testing::Test {
 protected:
  SettingsLine() { status.lineNumber = 12; }
  LineStatus status;
  ConsoleCapture console;
};

TEST_F(SettingsLine, StringsKeepInnerBlanksAndTrimTheEnds) {
  std::string text = "old";
  EXPECT_EQ(readStrings(status, text, "NAME  a   b  "), 1);
  EXPECT_EQ(text, "a   b");
  EXPECT_EQ(readStrings(status, text, "\tTITLE\t x\ty \t"), 1);
  EXPECT_EQ(text, "x\ty");
  EXPECT_EQ(readStrings(status, text, "ALONE"), 1);
  EXPECT_EQ(text, "");
  EXPECT_EQ(status.ok, 1);
  EXPECT_EQ(console.text(), "");
}

TEST_F(SettingsLine, StringIntegerJoinsTheRestWithSingleBlanks) {
  std::string word = "w", rest = "r";
  EXPECT_EQ(readStringInteger(status, word, rest, "NAME  a   b  "), 1);
  EXPECT_EQ(word, "a");
  EXPECT_EQ(rest, "b");
  EXPECT_EQ(readStringInteger(status, word, rest, "BODY\thull\t3\t 4  x"), 1);
  EXPECT_EQ(word, "hull");
  EXPECT_EQ(rest, "3 4 x");
  EXPECT_EQ(readStringInteger(status, word, rest, "BODY two"), 1);
  EXPECT_EQ(word, "two");
  EXPECT_EQ(rest, "");
}

TEST_F(SettingsLine, StringStringTakesTwoWordsAndIgnoresMore) {
  std::string second, third;
  EXPECT_EQ(readStringString(status, second, third, "Monitor\tRefresh 5 extra words"), 1);
  EXPECT_EQ(second, "Refresh");
  EXPECT_EQ(third, "5");
}

TEST_F(SettingsLine, MalformedLinesAreDiagnosed) {
  std::string a = "a", b = "b";
  EXPECT_EQ(readStringInteger(status, a, b, "ONLYKEY"), 0);
  EXPECT_EQ(a, "a");
  EXPECT_EQ(b, "b");
  EXPECT_EQ(status.ok, 0);
  EXPECT_EQ(status.message, "line12: wrong format");
  EXPECT_EQ(status.read, "read:     ONLYKEY");
  EXPECT_EQ(status.expected, "expected:  <string> <integer>");
  EXPECT_EQ(console.text(), "  wrong format for27: ONLYKEY\n");
}

TEST_F(SettingsLine, StringStringNamesTheKeywordInItsDiagnosis) {
  std::string a, b;
  status.lineNumber = 7;
  EXPECT_EQ(readStringString(status, a, b, "GROUP  name"), 0);
  EXPECT_EQ(status.message, "line7: wrong format");
  EXPECT_EQ(status.read, "read:     GROUP  name");
  EXPECT_EQ(status.expected, "expected: GROUP <string> <string>");
  EXPECT_EQ(console.text(), "  wrong format for29: GROUP  name\n");
}

TEST_F(SettingsLine, BlankLinesFailEveryReader) {
  std::string a, b;
  EXPECT_EQ(readStrings(status, a, ""), 0);
  EXPECT_EQ(status.expected, "expected:  <strings> ");
  EXPECT_EQ(readStrings(status, a, " \t "), 0);
  EXPECT_EQ(readStringInteger(status, a, b, "   "), 0);
  EXPECT_EQ(readStringString(status, a, b, ""), 0);
  EXPECT_EQ(status.expected, "expected:  <string> <string>");
  EXPECT_EQ(console.text(),
            "  wrong format for15: \n"
            "  wrong format for15:  \t \n"
            "  wrong format for27:    \n"
            "  wrong format for29: \n");
}

TEST_F(SettingsLine, OkIsNeverSetBackByAGoodLine) {
  std::string a, b;
  readStringString(status, a, b, "X");
  EXPECT_EQ(readStringString(status, a, b, "X y z"), 1);
  EXPECT_EQ(status.ok, 0);
  EXPECT_EQ(status.message, "line12: wrong format");
}

}  // namespace
