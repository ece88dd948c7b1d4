// The marine residual history: its header forms, its rows (damaged, hostile,
// narrowed to single precision) and the files it refuses, each with its message.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "console_capture.h"
#include "marine/res_file_marine.h"
#include "scratch_folder.h"

namespace {

using fileformat::Update;
using marine::ResFileMarine;

// What an update answers and prints, then the mode, the reals skipped per
// row, the previous iteration number and one line per record.
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
    const marine::IteResMarine record = file.record(r);
    text << record.iterationNumber() << ':';
    for (std::size_t v = 0; v < record.valueCount(); ++v)
      text << ' ' << record.valueAt(static_cast<long long>(v));
    text << '\n';
  }
  return text.str();
}

const std::string kBlock = "#QV_BEGIN\nCALCUL\nMODE STEADY\n#QV_END\n";
const std::string kSteady =
    "#CREATED 07/03/2018 13:34:44\n" + kBlock + "#COLUMNS itnl cpums ResU ResV ResW ResP\n";
const std::string kRow = "1 0.52 0.5 0.25 0.125 0.0625\n";
const std::string kBad = "|BAD FILE FORMAT .res\n";

using MarineResFile = ScratchFolder;

TEST_F(MarineResFile, HeaderFormsAndRows) {
  const std::string binary("\x01\x02\xff\xfe\x00\x7f\x80", 7);
  const struct {
    const char* what;
    std::string text;
    std::string read;  // '@' stands for the path
  } cases[] = {
      {"steady rows among comments, blank and short rows",
       kSteady + kRow +
           "# restart\n\n   \n2 1.04 0.375 0.1875\n2 1.04 0.5 0.25 0.125 0.0625\n3 1.5",
       "appended|STEADY 1 prev 1\n1: 0.5 0.25 0.125 0.0625\n2: 0.5 0.25 0.125 0.0625\n"},
      {"unsteady rows skip two reals",
       "#QV_BEGIN\nMODE UNSTEADY\n#QV_END\n#COLUMNS itnl cpums t ResU ResP\n1 0.41 0.05 0.75 0.5\n",
       "appended|UNSTEADY 2 prev 0\n1: 0.75 0.5\n"},
      {"single precision", kSteady + "1 0.52 0.1 1e-50 3.3 0.5\n",
       "appended|STEADY 1 prev 0\n1: 0.10000000149011612 0 3.2999999523162842 0.5\n"},
      {"columns line among the rows",
       kBlock + "note\n#COLUMNS itnl cpums ResU\n1 0.1 0.5\n#COLUMNS itnl cpums ResU ResP\n" +
           "2 0.2 0.25 0.125\n",
       "appended|STEADY 1 prev 1\n1: 0.5\n2: 0.25\n"},
      {"garbage lines",
       kSteady + kRow + "hello world\n" + binary + "\n" + std::string(100000, 'x') +
           "\n1\n=\n\t\t\n2 0.5 +INF\n" + kRow,
       "appended|STEADY 1 prev 1\n1: 0.5 0.25 0.125 0.0625\n1: 0.5 0.25 0.125 0.0625\n"},
      {"unknown mode", "#QV_BEGIN\nMODE TRANSIENT\n#QV_END\n#COLUMNS itnl cpums ResU\n1 0.1 0.5\n",
       kBad + "TRANSIENT 1 prev 0\n"},
      {"no mode line", "#QV_BEGIN\nCALCUL\n#QV_END\n#COLUMNS itnl cpums ResU\n1 0.1 0.5\n",
       kBad + " 1 prev 0\n"},
      {"mode outside the block", "MODE STEADY\n#QV_BEGIN\n#QV_END\n1 0.1 0.5\n",
       kBad + " 1 prev 0\n"},
      {"unknown column", kBlock + "#COLUMNS itnl cpums ResU X ResP\n1 0.1 0.5 0.5 0.5\n",
       "|*** Parameter : X in file: @ is not found\nSTEADY 1 prev 0\n"},
      {"column in another case", kBlock + "#COLUMNS itnl cpums resu\n1 0.1 0.5\n",
       "|*** Parameter : resu in file: @ is not found\nSTEADY 1 prev 0\n"},
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

TEST_F(MarineResFile, MissingFileIsToldAndReadWhenItAppears) {
  ResFileMarine file(pathOf("case.res"));
  EXPECT_EQ(updated(file),
            "missing|Residual file " + pathOf("case.res") + " is not found\n 1 prev 0\n");
  write("case.res", kSteady + kRow);
  EXPECT_EQ(updated(file), "appended|STEADY 1 prev 0\n1: 0.5 0.25 0.125 0.0625\n");
  EXPECT_EQ(updated(file), "|STEADY 1 prev 0\n1: 0.5 0.25 0.125 0.0625\n");
}

TEST_F(MarineResFile, RecordsAnswerByResidualNameInColumnOrder) {
  write("case.res", kBlock + "#COLUMNS itnl cpums ResP Res`w ResVt~ ResU\n7 0.1 4.5 2.5 1.5 0.5\n");
  ResFileMarine file(pathOf("case.res"));
  ASSERT_EQ(file.update(), Update::appended);
  const marine::IteResMarine record = file.record(0);
  const struct {
    const char* name;
    double value;
  } cases[] = {
      {"ResP", 4.5},
      {"Res`w", 2.5},
      {"ResVt~", 1.5},
      {"ResU", 0.5},
      // Known residuals the file does not hold; any other name answers for
      // the first residual column.
      {"ResV", 0.0},
      {"ResE", 0.0},
      {"Bogus", 4.5},
      {"resp", 4.5},
      {"", 4.5},
  };
  for (const auto& c : cases) EXPECT_EQ(record.valueOf(c.name), c.value) << c.name;
  EXPECT_EQ(record.valueAt(4), 0.0);
  EXPECT_EQ(record.valueAt(-1), 0.0);
  EXPECT_EQ(record.valueAt(3), 0.5);
}

}  // namespace
