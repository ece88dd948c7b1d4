// The creation stamp of a solver run: where it is found in the residual file,
// how its text becomes a moment, and the calendar behind that.
#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "console_capture.h"
#include "marine/creation_stamp.h"
#include "scratch_folder.h"

namespace {

const std::string kBlock = "#QV_BEGIN\nCALCUL\nMODE STEADY\n#QV_END\n#COLUMNS itnl cpums ResU\n";
const std::string kStamp = "#CREATED 07/03/2018 13:34:44\n";

using MarineStampFile = ScratchFolder;

TEST_F(MarineStampFile, StampStandsAmongTheLeadingCommentLines) {
  const struct {
    const char* what;
    std::string text;
    std::string stamp;
  } cases[] = {
      {"first line", kStamp + kBlock + "1 0.1 0.5\n", "07/03/2018 13:34:44"},
      {"after other comments", "# solver 3.2\n#\n#CREATED 21/11/2026 14:05:09\n" + kBlock,
       "21/11/2026 14:05:09"},
      {"carriage return dropped", "#CREATED 07/03/2018 13:34:44\r\n" + kBlock,
       "07/03/2018 13:34:44"},
      {"first of two", kStamp + "#CREATED 08/03/2018 00:00:00\n", "07/03/2018 13:34:44"},
      {"rest of the line as written", "#CREATED  7/3/18 1:2:3 local\n", " 7/3/18 1:2:3 local"},
      {"past a long first block", "# " + std::string(5000, 'x') + "\n" + kStamp,
       "07/03/2018 13:34:44"},
      {"past the first 64 KiB", "# " + std::string(70000, 'x') + "\n" + kStamp, ""},
      {"after the first row", "#QV_BEGIN\n1 0.1 0.5\n" + kStamp, ""},

      {"keyword without its blank", "#CREATED\n" + kBlock, ""},

      {"indented", " #CREATED 07/03/2018 13:34:44\n", ""},
      {"line not finished yet", "#CREATED 07/03/2018 13:34:44", ""},

  };
  for (const auto& c : cases) {
    write("case.res", c.text);
    ConsoleCapture console;
    EXPECT_EQ(marine::readResCreationDate(pathOf("case.res")), c.stamp) << c.what;
    EXPECT_EQ(console.text(), "") << c.what;
  }
  for (const std::string& path : {pathOf("absent.res"), folder_.string()}) {
    ConsoleCapture console;
    EXPECT_EQ(marine::readResCreationDate(path), "");
    EXPECT_EQ(console.text(), "Error in readResCreationDate! Could not read '" + path + "'.\n");
  }
}

// Stamps name local moments, shown back as "YYYY-MM-DD hh:mm:ss".
TEST(MarineStampTime, StampsNameLocalMoments) {
  const struct {
    const char* stamp;
    const char* moment;
  } cases[] = {
      {"07/03/2018 13:34:44", "2018-03-07 13:34:44"},
      {"7/3/2018 9:05:00", "2018-03-07 09:05:00"},
      {"07 03 2018 13:34:44", "2018-03-07 13:34:44"},
      {"07/03/99 13:34:44", "1999-03-07 13:34:44"},
      {"1/1/99 0:0:7", "1999-01-01 00:00:07"},
      {"29/02/2000 12:00:00", "2000-02-29 12:00:00"},
      {"31/12/2025 23:59:59", "2025-12-31 23:59:59"},
      {"31/02/2020 10:00:00", "unknown"},
      {"29/02/2019 10:00:00", "unknown"},
      {"00/01/2020 10:00:00", "unknown"},
      {"01/13/2020 10:00:00", "unknown"},
      {"01/00/2020 10:00:00", "unknown"},
      {"not_found", "unknown"},
      {"", "unknown"},
      {"07/03/2018", "unknown"},
      {"07/03/2018T13:34:44", "unknown"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(marine::formatStampTime(marine::stampTime(c.stamp)), c.moment) << c.stamp;
  EXPECT_EQ(*marine::stampTime("08/03/2018 13:34:45") - *marine::stampTime("07/03/2018 13:34:44"),
            86401);
}

TEST(MarineJulianDay, KnownDaysAndLeapYears) {
  const struct {
    int day, month, year;
    std::optional<long> number;
  } cases[] = {
      {1, 1, 2000, 2451545},       {1, 1, 1970, 2440588},       {29, 2, 2000, 2451604},
      {1, 3, 2000, 2451605},       {30, 4, 2000, 2451665},      {29, 2, 2004, 2453065},
      {15, 10, 1582, 2299161},     {24, 11, -4713, 0},          {29, 2, 1900, std::nullopt},
      {29, 2, 2001, std::nullopt}, {30, 2, 2000, std::nullopt}, {31, 4, 2000, std::nullopt},
      {32, 1, 2000, std::nullopt}, {0, 1, 2000, std::nullopt},  {1, 0, 2000, std::nullopt},
      {1, 13, 2000, std::nullopt},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(marine::julianDay(c.day, c.month, c.year), c.number)
        << c.day << '/' << c.month << '/' << c.year;
  }
}

}  // namespace
