#include "fileformat/settings_line_readers.h"

#include <gtest/gtest.h>

#include "console_capture.h"

namespace {

// Each reader on lines of each shape: what it answers and gives back, the
// diagnosis it leaves and the console line it prints.
TEST(SettingsLine, Readers) {
  enum Reader { strings, stringInteger, stringString };
  const struct {
    Reader reader;
    const char* line;
    const char* first;  // what the reader gives back, "a"/"b" when untouched
    const char* second;
    const char* console;  // empty for a good line
    const char* expected = "";
  } cases[] = {
      {strings, "NAME  a   b  ", "a   b", "b", ""},
      {strings, "\tTITLE\t x\ty \t", "x\ty", "b", ""},
      {strings, "ALONE", "", "b", ""},
      {strings, "", "a", "b", "  wrong format for15: \n", "expected:  <strings> "},
      {stringInteger, "NAME  a   b  ", "a", "b", ""},
      {stringInteger, "BODY\thull\t3\t 4  x", "hull", "3 4 x", ""},
      {stringInteger, "BODY two", "two", "", ""},
      {stringInteger, "ONLYKEY", "a", "b", "  wrong format for27: ONLYKEY\n",
       "expected:  <string> <integer>"},
      {stringInteger, "   ", "a", "b", "  wrong format for27:    \n",
       "expected:  <string> <integer>"},
      {stringString, "Monitor\tRefresh 5 extra words", "Refresh", "5", ""},
      {stringString, "X y z", "y", "z", ""},
      {stringString, "GROUP  name", "a", "b", "  wrong format for29: GROUP  name\n",
       "expected: GROUP <string> <string>"},
      {stringString, "", "a", "b", "  wrong format for29: \n", "expected:  <string> <string>"},
  };
  for (const auto& c : cases) {
    LineStatus status;
    status.lineNumber = 12;
    std::string first = "a", second = "b";
    const ConsoleCapture console;
    const int answer = c.reader == strings ? readStrings(status, first, c.line)
                       : c.reader == stringInteger
                           ? readStringInteger(status, first, second, c.line)
                           : readStringString(status, first, second, c.line);
    const bool good = *c.console == '\0';
    EXPECT_EQ(answer, good ? 1 : 0) << c.line;
    EXPECT_EQ(first + "|" + second, std::string(c.first) + "|" + c.second) << c.line;
    EXPECT_EQ(console.text(), c.console) << c.line;
    EXPECT_EQ(status.ok, good ? 1 : 0) << c.line;
    EXPECT_EQ(status.message, good ? "" : "line12: wrong format") << c.line;
    EXPECT_EQ(status.read, good ? "" : std::string("read:     ") + c.line) << c.line;
    EXPECT_EQ(status.expected, c.expected) << c.line;
  }
}

}  // namespace
