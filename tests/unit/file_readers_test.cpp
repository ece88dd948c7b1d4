#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <optional>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "console_capture.h"
#include "fileformat/dat_table_reader.h"
#include "fileformat/growing_file.h"
#include "fileformat/line_helpers.h"
#include "fileformat/number_text.h"
#include "fileformat/qv_file.h"
#include "fileformat/settings_line_readers.h"
#include "fileformat/token_stream.h"
#include "scratch_folder.h"

namespace {

using fileformat::GrowingFile;
using fileformat::Update;
using Lines = std::vector<std::string>;
using Read = std::pair<Update, Lines>;

class GrowingFileTest : public ScratchFolder {
 protected:
  Read read() {  // the answer and the lines taken
    Lines lines;
    const Update status = file_.readLines([&](std::string_view line) {
      lines.emplace_back(line);
      return true;
    });
    return {status, lines};
  }
  GrowingFile file_{pathOf("run.dat")};
};

TEST_F(GrowingFileTest, OffersWholeLinesOnceWithoutTheirLineEnds) {
  const std::pair<const char*, Read> steps[] = {
      {"1 2\r\n3 4\n5 6", {Update::appended, {"1 2", "3 4"}}},
      {"", {Update::unchanged, {}}},
      {"\r", {Update::unchanged, {}}},
      {"\n\n", {Update::appended, {"5 6", ""}}}};
  for (const auto& [more, expected] : steps) {
    append("run.dat", more);
    EXPECT_EQ(read(), expected) << more;
  }
  EXPECT_EQ(file_.offset(), 15u);
}

TEST_F(GrowingFileTest, AFileThatNoLongerContinuesWhatWasTakenIsRewritten) {
  const std::string header = "#QV_BEGIN\nMODE STEADY\n#QV_END\n";
  const std::string rows = "1 0.5 0.25\n2 0.375 0.1875\n";
  const std::string cases[] = {
      "",
      header + "1 0.5 0.25\n",
      header + "1 0.5 0.25\n2 0.375 0.1876\n",          // the same length, the last row changed
      header + "1 0.5 0.25\n2 0.375 0.1875 \n3 1 1\n",  // longer, the last row changed
      "#QV_BEGIN \nMODE STEADY\n#QV_END\n" + rows + "3 1 1\n",  // longer, the first line changed
      header + rows + "3"};  // shorter than the unfinished line seen
  for (const std::string& now : cases) {
    file_ = GrowingFile(pathOf("run.dat"));
    write("run.dat", header + rows + "3 0.2");
    ASSERT_EQ(read().first, Update::appended) << now;
    write("run.dat", now);
    const ConsoleCapture console;
    EXPECT_EQ(read(), Read(Update::rewritten, {})) << now;
    EXPECT_EQ(file_.offset(), 0u) << now;
    EXPECT_EQ(read().second.size() + console.text().size(), std::ranges::count(now, '\n')) << now;
  }
}

TEST_F(GrowingFileTest, WhatAReaderLeavesIsOfferedAgain) {
  write("run.dat", "header\nrow 1\n1 2 3\n4 5");
  EXPECT_EQ(file_.readLines([](std::string_view line) { return line == "header"; }),
            Update::appended);
  Lines offered;
  const auto takeRecordsEndingInEight = [&](std::string_view text) {
    offered.emplace_back(text);
    return fileformat::Taken{text.ends_with("8\n") ? text.size() : 0, false};
  };
  for (int read = 0; read < 2; ++read)
    EXPECT_EQ(file_.read(takeRecordsEndingInEight), Update::unchanged);
  append("run.dat", " 6 7 8\n");
  EXPECT_EQ(file_.read(takeRecordsEndingInEight), Update::appended);
  EXPECT_EQ(offered, (Lines{"row 1\n1 2 3\n", "row 1\n1 2 3\n4 5 6 7 8\n"}));
}

TEST_F(GrowingFileTest, ALineOverTheLimitIsDroppedOnceAndReadingGoesOnAfterIt) {
  const auto dropped = [&](const char* at, const std::string& name) {
    return "Line of more than 33554432 bytes at byte " + std::string(at) + " of " + pathOf(name) +
           " dropped; reading goes on after its end\n";
  };
  const std::string longLine(GrowingFile::kMaxLineBytes + 10, 'x');
  write("run.dat", "first\n" + longLine.substr(0, GrowingFile::kMaxLineBytes / 2));
  ConsoleCapture console;
  EXPECT_EQ(read(), Read(Update::appended, {"first"}));
  append("run.dat", longLine.substr(GrowingFile::kMaxLineBytes / 2));
  EXPECT_EQ(read(), Read(Update::unchanged, {}));
  append("run.dat", "yy");
  EXPECT_EQ(read(), Read(Update::unchanged, {}));
  append("run.dat", "\nnext\n");
  EXPECT_EQ(read(), Read(Update::appended, {"next"}));
  write("other.dat", "");
  std::filesystem::resize_file(pathOf("other.dat"), 3 * GrowingFile::kMaxLineBytes);
  file_ = GrowingFile(pathOf("other.dat"));
  EXPECT_EQ(read(), Read(Update::unchanged, {}));
  EXPECT_EQ(read(), Read(Update::unchanged, {}));
  EXPECT_EQ(console.text(), dropped("6", "run.dat") + dropped("0", "other.dat"));
  append("other.dat", "\nrow\n");
  EXPECT_EQ(read(), Read(Update::appended, {"row"}));
}

TEST(VariablesHeader, ColumnNamesAndDiagnoses) {
  // clang-format off
  const std::tuple<const char*, Lines, char> cases[] = {
      {R"(VARIABLES = "Time" "Load1" "Speed1")", {"Time", "Load1", "Speed1"}, 0},
      {R"(VARIABLES="Thrust 1","Torque1")", {"Thrust 1", "Torque1"}, 0},
      {"VARIABLES = Load1,Speed1, Load2", {"Load1", "Speed1", "Load2"}, 0},
      {"VARIABLES\t=\tA1", {"A1"}, 0}, {"VARIABLES = Load1 Speed1", {"Load1 Speed1"}, 0},
      {R"(VARIABLES = "Load1" Speed1)", {"Load1", "Speed1"}, 0}, {"VARIABLES = ", {}, 0},
      {"ZONE T=\"a\"", {}, 'w'}, {" VARIABLES = A1", {}, 'w'}, {"variables = A1", {}, 'w'},
      {"VARIABLES Load1", {}, '='}, {"VARIABLES   ", {}, '='}};
  // clang-format on
  for (const auto& [line, names, error] : cases) {
    ConsoleCapture console;
    EXPECT_EQ(fileformat::parseVariablesHeader(line), names) << line;
    const std::string told = error == 'w' ? "wrong .dat file header" : "cannot find '='";
    EXPECT_EQ(console.text(), error ? "Error! parseHeader: " + told + ": '" + line + "'.\n" : "");
  }
}

using TableFile = ScratchFolder;

TEST_F(TableFile, Tables) {
  const std::pair<std::string, const char*> cases[] = {
      {"# actuator disks\nVARIABLES = \"Time\" \"Load1\" \"Speed1\" \"Load2\" \"Speed2\" \"Iter\"\n"
       "0.5 1 2 3 4 10\n\n# restart\n   \t\n  # an indented note\n1.0 -1.5 2.5e3 +3 4.25 11\n",
       "| Load 1 -1.5 Speed 2 2500| Load 3 3 Speed 4 4.25"},
      {"VARIABLES = \"A1\" \"B3\"\n1 2\n", "| A 1"},
      {"VARIABLES = \"A1\" \"A2\" \"B1\"\n1 2 3\n", "| A 1| A 2"},
      {"VARIABLES = Load1 Speed1\n7\n", "| Load1 Speed 7"},
      {"VARIABLES = \"T\" \"X0\" \"Y\"\n1 2 3\n", ""},
      {"VARIABLES = \"Load1\" \"Speed1\" \"Time\"\n1 2 3\n4 5\n6 7 x\n8 9 10 11\n+ 1 2\n",
       "| Load 1 8 Speed 2 9wrong syntax\nwrong syntax\nwrong syntax\n"},
      {"VARIABLES = \"Load1\"\nZONE T=\"disk\"\n1.5\nZONE T=\"second\"\n", "| Load 1.5"},
      {"TITLE = \"disks\"\n1 2\nVARIABLES=\"A1\"\nVARIABLES = \"A1\"\n3\n", "| A 3"},
      {"VARIABLES Load1\n1\n2\n",
       "Error! parseHeader: cannot find '=': 'VARIABLES Load1'.\nwrong syntax\nwrong syntax\n"}};
  for (const auto& [text, expected] : cases) {
    write("eff_AD.dat", text);
    std::vector<fileformat::QuantityGroup> groups;
    fileformat::DatTableReader reader;
    reader.reset(pathOf("eff_AD.dat"));
    ConsoleCapture console;
    reader.update(groups);
    std::ostringstream shown;
    for (const fileformat::QuantityGroup& group : groups) {
      shown << '|';
      for (std::size_t q = 0; q < group.names.size(); ++q) {
        shown << ' ' << group.names[q];
        for (const double value : group.values[q]) shown << ' ' << value;
      }
    }
    EXPECT_EQ(shown.str() + console.text(), expected) << text;
  }
}

using fileformat::leadingDouble;
using fileformat::TokenStream;

TEST(QVfilePath, SplitsAtTheLastSlashThenAtTheLastBackslash) {
  const std::string here = std::filesystem::current_path().string() + "/";
  // clang-format off
  const std::tuple<const char*, std::string, const char*> cases[] = {
      {"/data/run 1/case.res", "/data/run 1/", "case.res"}, {"/case.res", "/", "case.res"},
      {"C:\\runs\\blade\\case.res", "C:\\runs\\blade\\", "case.res"}, {"runs/", "runs/", ""},
      {"C:\\runs/blade\\case.res", "C:\\runs/", "blade\\case.res"}, {"case.res", here, "case.res"}};
  // clang-format on
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
      {"1.5", 1.5},    {" -2e3", -2000.0}, {"+.25", 0.25},  {"7.5kg", 7.5},  {"abc", 0.0},
      {"", 0.0},       {"1e", 1.0},        {"0x1p4", 16.0}, {"-0x.8", -0.5}, {"0x", 0.0},
      {"0x.", 0.0},    {"0xg", 0.0},       {"0XA", 10.0},   {"0xa", 10.0},   {"0xF", 15.0},
      {"1e-400", 0.0}, {"5.", 5.0},        {"--1", 0.0},    {"-+1", 0.0},    {"1e400", inf},
      {"-INF", -inf},  {"-infinity", -inf}};
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
  const char* const integer = "expected:  <string> <integer>";
  // The reader, the line, what it gives back ("a|b" untouched), what it expects.
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
    LineStatus status{.lineNumber = 12};
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
