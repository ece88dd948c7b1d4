// The creation stamp of a solver run: where it is found in the residual file,
// how its text becomes a moment, and the calendar arithmetic behind that.
#include <gtest/gtest.h>
#include <unistd.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include "console_capture.h"
#include "marine/creation_stamp.h"

namespace {

class MarineStampFile : public testing::Test {
 protected:
  MarineStampFile() {
    static int serial = 0;
    folder_ = std::filesystem::temp_directory_path() /
              ("marine_stamp_" + std::to_string(::getpid()) + "_" + std::to_string(++serial));
    std::filesystem::create_directories(folder_);
    path_ = (folder_ / "case.res").string();
  }
  ~MarineStampFile() override { std::filesystem::remove_all(folder_); }

  void write(const std::string& text) {
    std::ofstream(path_, std::ios::binary | std::ios::trunc) << text;
  }

  std::filesystem::path folder_;
  std::string path_;
};

const std::string kBlock = "#QV_BEGIN\nCALCUL\nMODE STEADY\n#QV_END\n#COLUMNS itnl cpums ResU\n";

TEST_F(MarineStampFile, StampStandsAmongTheLeadingCommentLines) {
  const struct {
    const char* what;
    std::string text;
    std::string stamp;
  } cases[] = {
      {"first line", "#CREATED 07/03/2018 13:34:44\n" + kBlock + "1 0.1 0.5\n",
       "07/03/2018 13:34:44"},
      {"after other comments", "# solver 3.2\n#\n#CREATED 21/11/2026 14:05:09\n" + kBlock,
       "21/11/2026 14:05:09"},
      {"carriage return dropped", "#CREATED 07/03/2018 13:34:44\r\n" + kBlock,
       "07/03/2018 13:34:44"},
      {"first of two", "#CREATED 07/03/2018 13:34:44\n#CREATED 08/03/2018 00:00:00\n" + kBlock,
       "07/03/2018 13:34:44"},
      {"rest of the line as written", "#CREATED  7/3/18 1:2:3 local\n" + kBlock,
       " 7/3/18 1:2:3 local"},
      {"inside the block",
       "#QV_BEGIN\nCALCUL\n#CREATED 07/03/2018 13:34:44\nMODE STEADY\n#QV_END\n", ""},
      {"after the columns line", kBlock + "#CREATED 07/03/2018 13:34:44\n1 0.1 0.5\n", ""},
      {"after the first row",
       "#QV_BEGIN\n" + std::string("1 0.1 0.5\n#CREATED 07/03/2018 13:34:44\n"), ""},
      {"keyword without its blank", "#CREATED\n" + kBlock, ""},
      {"lower case", "#created 07/03/2018 13:34:44\n" + kBlock, ""},
      {"indented", " #CREATED 07/03/2018 13:34:44\n" + kBlock, ""},
      {"line not finished yet", "#CREATED 07/03/2018 13:34:44", ""},
      {"empty file", "", ""},
  };
  for (const auto& c : cases) {
    write(c.text);
    ConsoleCapture console;
    EXPECT_EQ(marine::readResCreationDate(path_), c.stamp) << c.what;
    EXPECT_EQ(console.text(), "") << c.what;
  }
}

TEST_F(MarineStampFile, UnreadableFile) {
  for (const std::string& path : {(folder_ / "absent.res").string(), folder_.string()}) {
    ConsoleCapture console;
    EXPECT_EQ(marine::readResCreationDate(path), "");
    EXPECT_EQ(console.text(), "Error in readResCreationDate! Could not read '" + path + "'.\n");
  }
}

std::time_t localTime(int year, int month, int day, int hours, int minutes, int seconds) {
  std::tm fields{};
  fields.tm_year = year - 1900;
  fields.tm_mon = month - 1;
  fields.tm_mday = day;
  fields.tm_hour = hours;
  fields.tm_min = minutes;
  fields.tm_sec = seconds;
  fields.tm_isdst = -1;
  return std::mktime(&fields);
}

TEST(MarineStampTime, StampsNameLocalMoments) {
  const struct {
    const char* stamp;
    std::optional<std::time_t> time;
  } cases[] = {
      {"07/03/2018 13:34:44", localTime(2018, 3, 7, 13, 34, 44)},
      {"7/3/2018 9:05:00", localTime(2018, 3, 7, 9, 5, 0)},
      {"07 03 2018 13:34:44", localTime(2018, 3, 7, 13, 34, 44)},
      {"21/11/2026 14:05:09", localTime(2026, 11, 21, 14, 5, 9)},
      {"07/03/99 13:34:44", localTime(1999, 3, 7, 13, 34, 44)},
      {"01/01/70 00:00:00", localTime(1970, 1, 1, 0, 0, 0)},
      {"29/02/2000 12:00:00", localTime(2000, 2, 29, 12, 0, 0)},
      {"31/12/2025 23:59:59", localTime(2025, 12, 31, 23, 59, 59)},
      {"31/02/2020 10:00:00", std::nullopt},
      {"29/02/1900 10:00:00", std::nullopt},
      {"29/02/2019 10:00:00", std::nullopt},
      {"31/04/2020 10:00:00", std::nullopt},
      {"00/01/2020 10:00:00", std::nullopt},
      {"01/13/2020 10:00:00", std::nullopt},
      {"01/00/2020 10:00:00", std::nullopt},
      {"not_found", std::nullopt},
      {"", std::nullopt},
      {"07/03/2018", std::nullopt},
      {"07/03/2018T13:34:44", std::nullopt},
  };
  for (const auto& c : cases)
    EXPECT_EQ(marine::stampTime(c.stamp), c.time) << '"' << c.stamp << '"';
}

TEST(MarineStampTime, NeighbouringStampsDiffer) {
  const auto earlier = marine::stampTime("07/03/2018 13:34:44");
  const auto later = marine::stampTime("07/03/2018 13:34:45");
  const auto nextDay = marine::stampTime("08/03/2018 13:34:44");
  ASSERT_TRUE(earlier && later && nextDay);
  EXPECT_EQ(*later - *earlier, 1);
  EXPECT_EQ(*nextDay - *earlier, 86400);
  // Leading zeros or none: the same moment.
  EXPECT_EQ(marine::stampTime("7/3/2018 13:34:44"), earlier);
}

TEST(MarineStampTime, FormattedBackAsLocalDateAndTime) {
  EXPECT_EQ(marine::formatStampTime(marine::stampTime("07/03/2018 13:34:44")),
            "2018-03-07 13:34:44");
  EXPECT_EQ(marine::formatStampTime(marine::stampTime("1/1/99 0:0:7")), "1999-01-01 00:00:07");
  EXPECT_EQ(marine::formatStampTime(std::nullopt), "unknown");
}

TEST(MarineJulianDay, KnownDaysAndLeapYears) {
  const struct {
    int day, month, year;
    std::optional<long> number;
  } cases[] = {
      {1, 1, 2000, 2451545},       {31, 12, 1999, 2451544},     {1, 1, 1970, 2440588},
      {29, 2, 2000, 2451604},      {1, 3, 2000, 2451605},       {30, 4, 2000, 2451665},
      {29, 2, 2004, 2453065},      {15, 10, 1582, 2299161},     {24, 11, -4713, 0},
      {29, 2, 1900, std::nullopt}, {29, 2, 2100, std::nullopt}, {29, 2, 2001, std::nullopt},
      {30, 2, 2000, std::nullopt}, {31, 4, 2000, std::nullopt}, {32, 1, 2000, std::nullopt},
      {0, 1, 2000, std::nullopt},  {-1, 1, 2000, std::nullopt}, {1, 0, 2000, std::nullopt},
      {1, 13, 2000, std::nullopt},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(marine::julianDay(c.day, c.month, c.year), c.number)
        << c.day << '/' << c.month << '/' << c.year;
  }
}

}  // namespace
