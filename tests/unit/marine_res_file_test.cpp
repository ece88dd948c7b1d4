// The residual file of a marine run: its header forms, rows and creation stamp.
#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#include <string>

#include "console_capture.h"
#include "marine/creation_stamp.h"
#include "marine/res_file_marine.h"
#include "scratch_folder.h"

namespace {

using fileformat::Update;
using marine::ResFileMarine;

// What an update answers and prints, the mode, the reals skipped per row, the
// previous iteration number and one line per record.
std::string updated(ResFileMarine& file) {
  std::ostringstream text;
  text.precision(17);
  const ConsoleCapture console;
  const Update status = file.update();
  text << (status == Update::appended  ? "appended"
           : status == Update::missing ? "missing"
                                       : "")
       << '|' << console.text() << file.modeText() << ' ' << file.skipCount() << " prev "
       << file.previousIterationNumber() << '\n';
  for (std::size_t r = 0; r < file.recordCount(); ++r) {
    text << file.record(r).iterationNumber() << ':';
    for (std::size_t v = 0; v < file.record(r).valueCount(); ++v)
      text << ' ' << file.record(r).valueAt(static_cast<long long>(v));
    text << '\n';
  }
  return text.str();
}

const std::string kBlock = "#QV_BEGIN\nCALCUL\nMODE STEADY\n#QV_END\n";
const std::string kStamp = "#CREATED 07/03/2018 13:34:44\n";
const std::string kSteady = kStamp + kBlock + "#COLUMNS itnl cpums ResU ResV ResW ResP\n";
const std::string kRow = "1 0.52 0.5 0.25 0.125 0.0625\n";
const std::string kBad = "|BAD FILE FORMAT .res\n";
const std::string kOneRow = "1: 0.5 0.25 0.125 0.0625\n";

using MarineResFile = ScratchFolder;

TEST_F(MarineResFile, HeaderFormsAndRows) {
  const std::string binary("\x01\x02\xff\xfe\x00\x7f\x80", 7);
  const struct {
    const char* what;
    std::string text;
    std::string read;
  } cases[] = {
      {"steady rows among comments, blank, short and damaged rows",
       kSteady + kRow + "# restart\n\n   \n2 1.04 0.375 0.1875\nhello world\n" + binary + "\n" +
           std::string(100000, 'x') + "\n1\n=\n\t\t\n2 0.5 +INF\n" + kRow + "3 1.5",
       "appended|STEADY 1 prev 1\n" + kOneRow + kOneRow},
      {"unsteady rows skip two reals",
       "#QV_BEGIN\nMODE UNSTEADY\n#QV_END\n#COLUMNS itnl cpums t ResU ResP\n1 0.41 0.05 0.75 0.5\n",
       "appended|UNSTEADY 2 prev 0\n1: 0.75 0.5\n"},
      {"single precision", kSteady + "1 0.52 0.1 1e-50 3.3 0.5\n",
       "appended|STEADY 1 prev 0\n1: 0.10000000149011612 0 3.2999999523162842 0.5\n"},
      {"columns line among the rows",
       kBlock + "note\n#COLUMNS itnl cpums ResU\n1 0.1 0.5\n#COLUMNS itnl cpums ResU ResP\n" +
           "2 0.2 0.25 0.125\n",
       "appended|STEADY 1 prev 1\n1: 0.5\n2: 0.25\n"},
      {"unknown mode", "#QV_BEGIN\nMODE TRANSIENT\n#QV_END\n#COLUMNS itnl cpums ResU\n1 0.1 0.5\n",
       kBad + "TRANSIENT 1 prev 0\n"},
      {"mode outside the block", "MODE STEADY\n#QV_BEGIN\n#QV_END\n1 0.1 0.5\n",
       kBad + " 1 prev 0\n"},
      {"unknown column", kBlock + "#COLUMNS itnl cpums ResU X ResP\n1 0.1 0.5 0.5 0.5\n",
       "|*** Parameter : X in file: @ is not found\nSTEADY 1 prev 0\n"},
  };
  for (const auto& c : cases) {
    write("case.res", c.text);
    ResFileMarine file(pathOf("case.res"));
    std::string read = c.read;
    if (const std::size_t at = read.find('@'); at != std::string::npos)
      read.replace(at, 1, pathOf("case.res"));
    EXPECT_EQ(updated(file), read) << c.what;
  }
}

// Known residuals the file lacks answer 0; any other name, the first residual column.
TEST_F(MarineResFile, RecordsAnswerByResidualNameInColumnOrder) {
  write("case.res", kBlock + "#COLUMNS itnl cpums ResP Res`w ResVt~ ResU\n7 0.1 4.5 2.5 1.5 0.5\n");
  ResFileMarine file(pathOf("case.res"));
  ASSERT_EQ(file.update(), Update::appended);
  const marine::IteResMarine record = file.record(0);
  std::ostringstream values;
  for (const char* name : {"ResP", "Res`w", "ResVt~", "ResU", "ResV", "ResE", "Bogus", "resp", ""})
    values << name << '=' << record.valueOf(name) << ' ';
  for (const long long at : {3, 4, -1}) values << '#' << at << '=' << record.valueAt(at) << ' ';
  EXPECT_EQ(values.str(),
            "ResP=4.5 Res`w=2.5 ResVt~=1.5 ResU=0.5 ResV=0 ResE=0 Bogus=4.5 resp=4.5 =4.5 "
            "#3=0.5 #4=0 #-1=0 ");
}

TEST_F(MarineResFile, StampStandsAmongTheLeadingCommentLines) {
  const struct {
    const char* what;
    std::string text;
    std::string stamp;
  } cases[] = {
      {"carriage return dropped", "#CREATED 07/03/2018 13:34:44\r\n", "07/03/2018 13:34:44"},
      {"rest of the line as written", "#CREATED  7/3/18 1:2:3 local\n", " 7/3/18 1:2:3 local"},
      {"past a long first block", "# " + std::string(5000, 'x') + "\n" + kStamp,
       "07/03/2018 13:34:44"},
      {"past the first 64 KiB", "# " + std::string(70000, 'x') + "\n" + kStamp, ""},
      {"after the first row", "#QV_BEGIN\n1 0.1 0.5\n" + kStamp, ""},
      {"line not finished yet", "#CREATED 07/03/2018 13:34:44", ""},
  };
  for (const auto& c : cases) {
    write("case.res", c.text);
    ConsoleCapture console;
    const std::string stamp = marine::readResCreationDate(pathOf("case.res"));
    EXPECT_EQ(stamp + "|" + console.text(), c.stamp + "|") << c.what;
  }
  ConsoleCapture console;
  EXPECT_EQ(marine::readResCreationDate(pathOf("absent.res")), "");
  EXPECT_EQ(console.text(),
            "Error in readResCreationDate! Could not read '" + pathOf("absent.res") + "'.\n");
}

// Stamps name local moments, shown back as "YYYY-MM-DD hh:mm:ss".
TEST(MarineStampTime, StampsNameLocalMoments) {
  std::string moments;
  for (const char* stamp : {"1/1/99 0:0:7", "31/02/2020 10:00:00", "07/03/2018"})
    moments += marine::formatStampTime(marine::stampTime(stamp)) + ";";
  EXPECT_EQ(moments, "1999-01-01 00:00:07;unknown;unknown;");
}

TEST(MarineJulianDay, KnownDaysAndLeapYears) {
  const struct {
    int day, month, year;
    std::optional<long> number;
  } cases[] = {
      {1, 1, 2000, 2451545},       {29, 2, 2000, 2451604},      {1, 3, 2000, 2451605},
      {29, 2, 2004, 2453065},      {29, 2, 1900, std::nullopt}, {29, 2, 2001, std::nullopt},
      {31, 4, 2000, std::nullopt}, {32, 1, 2000, std::nullopt}, {0, 1, 2000, std::nullopt},
      {1, 0, 2000, std::nullopt},  {1, 13, 2000, std::nullopt}};
  for (const auto& c : cases)
    EXPECT_EQ(marine::julianDay(c.day, c.month, c.year), c.number)
        << c.day << '/' << c.month << '/' << c.year;
}

}  // namespace
