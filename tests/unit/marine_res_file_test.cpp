// The marine residual history read from real files: its header, its rows as
// the solver appends them (in pieces, with CR LF, with comments between),
// and the files it refuses.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "console_capture.h"
#include "marine/res_file_marine.h"

namespace {

using marine::ResFileMarine;

class MarineResFile : public testing::Test {
 protected:
  MarineResFile() {
    static int serial = 0;
    folder_ = std::filesystem::temp_directory_path() /
              ("marine_res_" + std::to_string(::getpid()) + "_" + std::to_string(++serial));
    std::filesystem::create_directories(folder_);
    path_ = (folder_ / "case.res").string();
  }
  ~MarineResFile() override { std::filesystem::remove_all(folder_); }

  void write(const std::string& text) {
    std::ofstream(path_, std::ios::binary | std::ios::trunc) << text;
  }
  void append(const std::string& text) {
    std::ofstream(path_, std::ios::binary | std::ios::app) << text;
  }

  std::filesystem::path folder_;
  std::string path_;
};

const std::string kSteadyHeader =
    "#CREATED 07/03/2018 13:34:44\n"
    "#QV_BEGIN\n"
    "CALCUL\n"
    "MODE STEADY\n"
    "#QV_END\n"
    "#COLUMNS itnl cpums ResU ResV ResW ResP\n";

// Rows whose values survive a trip through single precision unchanged.
const std::string kSteadyRows =
    "1 0.52 0.5 0.25 0.125 0.0625\n"
    "2 1.04 0.375 0.1875 0.09375 0.046875\n"
    "3 1.56 0.25 0.125 0.0625 0.03125\n";

struct Row {
  int iteration;
  std::vector<double> values;
};

const std::vector<Row> kSteadyRecords = {
    {1, {0.5, 0.25, 0.125, 0.0625}},
    {2, {0.375, 0.1875, 0.09375, 0.046875}},
    {3, {0.25, 0.125, 0.0625, 0.03125}},
};

void expectRecords(const ResFileMarine& file, const std::vector<Row>& rows,
                   const std::string& where = "") {
  ASSERT_EQ(file.recordCount(), rows.size()) << where;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const marine::IteResMarine record = file.record(i);
    EXPECT_EQ(record.iterationNumber(), rows[i].iteration) << where << " record " << i;
    ASSERT_EQ(record.valueCount(), rows[i].values.size()) << where << " record " << i;
    for (std::size_t v = 0; v < rows[i].values.size(); ++v) {
      EXPECT_EQ(record.valueAt(static_cast<long long>(v)), rows[i].values[v])
          << where << " record " << i;
    }
  }
}

TEST_F(MarineResFile, SteadyRecordsAnswerByResidualName) {
  write(kSteadyHeader + "1 0.52 0.5 0.25 0.125 0.0625\n");
  ResFileMarine file(path_);
  ConsoleCapture console;
  ASSERT_TRUE(file.readHeader());
  EXPECT_EQ(file.update(), fileformat::Update::appended);
  EXPECT_EQ(console.text(), "");
  EXPECT_EQ(file.runMode(), ResFileMarine::RunMode::steady);
  EXPECT_EQ(file.modeText(), "STEADY");
  EXPECT_EQ(file.skipCount(), 1);
  EXPECT_EQ(file.residualCount(), 4u);
  ASSERT_EQ(file.recordCount(), 1u);
  const marine::IteResMarine record = file.record(0);
  EXPECT_EQ(record.valueCount(), 4u);

  const struct {
    const char* name;
    double value;
  } cases[] = {
      {"ResU", 0.5},
      {"ResV", 0.25},
      {"ResW", 0.125},
      {"ResP", 0.0625},
      // Known residuals that the file does not hold.
      {"ResK", 0.0},
      {"Res`w", 0.0},
      {"ResE", 0.0},
      {"ResVt~", 0.0},
      // Names outside the table answer for the first residual column.
      {"Bogus", 0.5},
      {"resu", 0.5},
      {"", 0.5},
      {"Resw", 0.5},
  };
  for (const auto& c : cases) EXPECT_EQ(record.valueOf(c.name), c.value) << c.name;
  EXPECT_EQ(record.valueAt(4), 0.0);
  EXPECT_EQ(record.valueAt(-1), 0.0);
}

TEST_F(MarineResFile, ColumnOrderDecidesWhichValueAnswersForUnknownNames) {
  write(
      "#QV_BEGIN\nCALCUL\nMODE STEADY\n#QV_END\n"
      "#COLUMNS itnl cpums ResP Res`w ResVt~ ResU\n"
      "7 0.1 4.5 2.5 1.5 0.5\n");
  ResFileMarine file(path_);
  ASSERT_EQ(file.update(), fileformat::Update::appended);
  const marine::IteResMarine record = file.record(0);
  EXPECT_EQ(record.iterationNumber(), 7);
  EXPECT_EQ(record.valueOf("ResP"), 4.5);
  EXPECT_EQ(record.valueOf("Res`w"), 2.5);
  EXPECT_EQ(record.valueOf("ResVt~"), 1.5);
  EXPECT_EQ(record.valueOf("ResU"), 0.5);
  EXPECT_EQ(record.valueOf("ResV"), 0.0);
  EXPECT_EQ(record.valueOf("nothing"), 4.5);
}

TEST_F(MarineResFile, UnsteadyRowsSkipCpuTimeAndPhysicalTime) {
  write(
      "#QV_BEGIN\nCALCUL\nMODE UNSTEADY\n#QV_END\n"
      "#COLUMNS itnl cpums t ResU ResP\n"
      "1 0.41 0.05 0.75 0.5\n"
      "2 0.83 0.10 0.625 0.25\n");
  ResFileMarine file(path_);
  ASSERT_TRUE(file.readHeader());
  EXPECT_EQ(file.runMode(), ResFileMarine::RunMode::unsteady);
  EXPECT_EQ(file.skipCount(), 2);
  EXPECT_EQ(file.update(), fileformat::Update::appended);
  expectRecords(file, {{1, {0.75, 0.5}}, {2, {0.625, 0.25}}});
  EXPECT_EQ(file.record(1).valueOf("ResU"), 0.625);
  EXPECT_EQ(file.record(1).valueOf("ResP"), 0.25);
}

TEST_F(MarineResFile, NonFiniteTokensReadAsFixedNumbers) {
  write(kSteadyHeader + "+INF 0.5 NaN -INF Infinity 0.25\n" + "inf 0.5 nan 0.5 0.5 0.5\n");
  ResFileMarine file(path_);
  ASSERT_EQ(file.update(), fileformat::Update::appended);
  // "+INF" as an iteration number is 5; a lower-case "inf" is no number.
  expectRecords(file, {{5, {1.0, 1.0, 1.0, 0.25}}, {0, {1.0, 0.5, 0.5, 0.5}}});
}

TEST_F(MarineResFile, HeaderFailures) {
  const std::string block = "#QV_BEGIN\nCALCUL\n";
  const struct {
    const char* what;
    std::string text;
  } badModes[] = {
      {"unknown mode", block + "MODE TRANSIENT\n#QV_END\n#COLUMNS itnl cpums ResU\n1 0.1 0.5\n"},
      {"lower-case mode", block + "MODE steady\n#QV_END\n#COLUMNS itnl cpums ResU\n1 0.1 0.5\n"},
      {"no mode line", block + "#QV_END\n#COLUMNS itnl cpums ResU\n1 0.1 0.5\n"},
      {"mode outside the block",
       "MODE STEADY\n#QV_BEGIN\nCALCUL\n#QV_END\n#COLUMNS itnl cpums ResU\n"},
      {"empty file", ""},
      {"rows only", "1 0.1 0.5\n2 0.2 0.25\n"},
  };
  for (const auto& c : badModes) {
    write(c.text);
    ResFileMarine file(path_);
    ConsoleCapture console;
    EXPECT_FALSE(file.readHeader()) << c.what;
    EXPECT_EQ(console.text(), "BAD FILE FORMAT .res\n") << c.what;
    EXPECT_EQ(file.recordCount(), 0u) << c.what;
  }
}

TEST_F(MarineResFile, UnknownColumnIsNamedAndNoRowIsRead) {
  const struct {
    const char* columns;
    const char* unknown;
  } cases[] = {
      {"itnl cpums ResU X ResP", "X"},
      {"itnl cpums resu", "resu"},
      {"itnl cpums T ResU", "T"},
      {"itnl cpums ResU ResK Resw", "Resw"},
  };
  for (const auto& c : cases) {
    write("#QV_BEGIN\nCALCUL\nMODE STEADY\n#QV_END\n#COLUMNS " + std::string(c.columns) +
          "\n1 0.1 0.5 0.5 0.5\n");
    ResFileMarine file(path_);
    ConsoleCapture console;
    EXPECT_FALSE(file.readHeader()) << c.columns;
    EXPECT_EQ(console.text(), "*** Parameter : " + std::string(c.unknown) + " in file: " + path_ +
                                  " is not found\n")
        << c.columns;
    EXPECT_EQ(file.update(), fileformat::Update::unchanged) << c.columns;
    EXPECT_EQ(file.recordCount(), 0u) << c.columns;
  }
}

TEST_F(MarineResFile, MissingFileOrFolder) {
  const std::string missing = (folder_ / "absent.res").string();
  const std::string folder = folder_.string();
  for (const std::string& path : {missing, folder}) {
    ResFileMarine file(path);
    ConsoleCapture console;
    EXPECT_FALSE(file.readHeader());
    EXPECT_EQ(console.text(), "Residual file " + path + " is not found\n");
    EXPECT_EQ(file.recordCount(), 0u);
  }
}

TEST_F(MarineResFile, FileThatAppearsLaterIsRead) {
  ResFileMarine file(path_);
  {
    ConsoleCapture console;
    EXPECT_EQ(file.update(), fileformat::Update::missing);
    EXPECT_EQ(console.text(), "Residual file " + path_ + " is not found\n");
  }
  write(kSteadyHeader + kSteadyRows);
  ConsoleCapture console;
  EXPECT_EQ(file.update(), fileformat::Update::appended);
  EXPECT_EQ(console.text(), "");
  expectRecords(file, kSteadyRecords);
}

TEST_F(MarineResFile, CommentAndEmptyLinesBetweenRowsAreNoRows) {
  write(kSteadyHeader + "1 0.52 0.5 0.25 0.125 0.0625\n# restart from iteration 1\n\n   \n" +
        "2 1.04 0.375 0.1875 0.09375 0.046875\n#\n");
  ResFileMarine file(path_);
  ASSERT_EQ(file.update(), fileformat::Update::appended);
  append("3 1.56 0.25 0.125 0.0625 0.03125\n");
  EXPECT_EQ(file.update(), fileformat::Update::appended);
  expectRecords(file, kSteadyRecords);
}

TEST_F(MarineResFile, ShortRowIsDroppedAndTheNextOneRead) {
  write(kSteadyHeader + "1 0.52 0.5 0.25 0.125 0.0625\n" + "2 1.04 0.375 0.1875\n" +
        "2 1.04 0.375 0.1875 0.09375 0.046875\n" + "3 1.56 0.25 0.125 0.0625 0.03125\n");
  ResFileMarine file(path_);
  ConsoleCapture console;
  EXPECT_EQ(file.update(), fileformat::Update::appended);
  EXPECT_EQ(console.text(), "");
  expectRecords(file, kSteadyRecords);
}

TEST_F(MarineResFile, NothingNewAnswersZero) {
  write(kSteadyHeader + kSteadyRows);
  ResFileMarine file(path_);
  EXPECT_EQ(file.update(), fileformat::Update::appended);
  EXPECT_EQ(file.update(), fileformat::Update::unchanged);
  append("4 2.08 0.125");  // no line feed yet
  EXPECT_EQ(file.update(), fileformat::Update::unchanged);
  append(" 0.0625 0.03125 0.015625\n");
  EXPECT_EQ(file.update(), fileformat::Update::appended);
  ASSERT_EQ(file.recordCount(), 4u);
  EXPECT_EQ(file.record(3).iterationNumber(), 4);
  EXPECT_EQ(file.record(3).valueOf("ResP"), 0.015625);
  EXPECT_EQ(file.previousIterationNumber(), 3);
}

// Residuals are reals of the files' token read, which narrows them to single
// precision before they are kept as doubles.
TEST_F(MarineResFile, ResidualsKeepTheSinglePrecisionOfTheTokenRead) {
  write(kSteadyHeader + "1 0.52 0.1 1e-50 3.3 0.5\n");
  ResFileMarine file(path_);
  ASSERT_EQ(file.update(), fileformat::Update::appended);
  const marine::IteResMarine record = file.record(0);
  EXPECT_EQ(record.valueOf("ResU"), static_cast<double>(0.1f))
      << "0.1 as a single-precision real is 0.100000001490116";
  EXPECT_EQ(record.valueOf("ResV"), 0.0) << "1e-50 is below the smallest single-precision real";
  EXPECT_EQ(record.valueOf("ResW"), static_cast<double>(3.3f))
      << "3.3 as a single-precision real is 3.29999995231628";
}

}  // namespace
