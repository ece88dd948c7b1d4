// The turbomachinery residual history read from real files, as the solver
// writes, grows, rewrites and sometimes damages them; and the project that
// wraps it with the script's bookmarks.
#include "turbo/res_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "console_capture.h"
#include "scratch_folder.h"
#include "turbo/project_monitor.h"

namespace {

using turbo::ResFile;
using Floats = std::vector<float>;
using Strings = std::vector<std::string>;

// One record as the test writes it and expects it back.
struct Record {
  int timeStep;  // -1: steady
  int iteration;
  double physicalTime;
  Floats values;
};

// The text of a record: numbers separated by blanks, one line unless
// `perLine` asks for a line break after that many numbers.
std::string recordText(const Record& r, const std::string& eol = "\n", std::size_t perLine = 0) {
  std::vector<std::string> numbers;
  if (r.timeStep >= 0) numbers.push_back(std::to_string(r.timeStep));
  numbers.push_back(std::to_string(r.iteration));
  char buffer[32];
  for (std::size_t k = 0; k < r.values.size(); ++k) {
    if (r.timeStep >= 0 && k == 2) {
      std::snprintf(buffer, sizeof buffer, "%.9g", r.physicalTime);
      numbers.push_back(buffer);
    }
    std::snprintf(buffer, sizeof buffer, "%.9g", static_cast<double>(r.values[k]));
    numbers.push_back(buffer);
  }
  std::string text;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    text += numbers[i];
    const bool last = i + 1 == numbers.size();
    text += last || (perLine != 0 && (i + 1) % perLine == 0) ? eol : " ";
  }
  return text;
}

// A steady record of `count` distinct values derived from its iteration.
Record steady(int iteration, std::size_t count, float scale = 1.0f) {
  Record r{-1, iteration, 0.0, {}};
  for (std::size_t k = 0; k < count; ++k) {
    r.values.push_back(
        scale * (static_cast<float>(iteration) * 0.5f + static_cast<float>(k) * 0.125f - 3.0f));
  }
  return r;
}

Floats valuesOf(const ResFile& file, std::size_t index) {
  const auto values = file.record(index).values();
  return Floats(values.begin(), values.end());
}

void expectHistory(const ResFile& file, const std::vector<Record>& records,
                   const std::string& where = "") {
  ASSERT_EQ(file.recordCount(), records.size()) << where;
  for (std::size_t i = 0; i < records.size(); ++i) {
    const turbo::IteRes record = file.record(i);
    EXPECT_EQ(record.iterationNumber(), records[i].iteration) << where << " record " << i;
    EXPECT_EQ(record.timeStep(), records[i].timeStep) << where << " record " << i;
    if (records[i].timeStep >= 0) {
      EXPECT_EQ(record.physicalTime(),
                static_cast<double>(static_cast<float>(records[i].physicalTime)));
    }
    EXPECT_EQ(valuesOf(file, i), records[i].values) << where << " record " << i;
  }
  if (records.empty()) return;
  EXPECT_EQ(file.lastIndex(), static_cast<int>(records.size()) - 1) << where;
  EXPECT_EQ(file.lastIterationNumber(), static_cast<unsigned>(records.back().iteration)) << where;
}

long peakMemoryKilobytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

class ResidualFile : public ScratchFolder {
 protected:
  void write(const std::string& text) { ScratchFolder::write(kFile, text); }
  void append(const std::string& text) { ScratchFolder::append(kFile, text); }

  static constexpr const char* kFile = "stage.res";
  std::string path_ = pathOf(kFile);
};

// What a header set, in one line.
std::string headerOf(const ResFile& file) {
  const auto list = [](const Strings& names) {
    std::string text = "[";
    for (const std::string& name : names) text += (text.size() > 1 ? " " : "") + name;
    return text + "]";
  };
  return "version=" + file.version() + " module=" + file.module() +
         " turbulence=" + file.turbulence() + " extra1=" + list(file.extraNames1()) +
         " extra2=" + list(file.extraNames2()) + " headerInt=" + std::to_string(file.headerInt()) +
         " mode=" + file.mode() + " application=" + file.application();
}

const std::string kDefaultHeader =
    "version= module=3D turbulence=NO-K-E extra1=[] extra2=[] headerInt=0 mode= application=TURBO";

// Header forms: what each one sets, and how many values each record then
// holds (two records follow every header, so a header read one token too far
// or too short would misplace every value).
TEST_F(ResidualFile, HeaderForms) {
  const struct {
    const char* header;
    unsigned blocks;
    unsigned vars;
    const char* fields;
  } cases[] = {
      // A first integer in 1..100000 is the block count of the short form.
      {"1 2\n", 1, 2, kDefaultHeader.c_str()},
      {"100000 0\n", 100000, 0, kDefaultHeader.c_str()},
      // 0 or above 100000 only announces the long form.
      {"100001 3.0 1 TF K-E 0 0 4 STEADY TURBO\n", 1, 8,
       "version=3.0 module=TF turbulence=K-E extra1=[] extra2=[] headerInt=4 mode=STEADY "
       "application=TURBO"},
      {"0 3.0 2 B2B SPL-ALM 0 0 0 STEADY TURBO\n", 2, 6,
       "version=3.0 module=B2B turbulence=SPL-ALM extra1=[] extra2=[] headerInt=0 mode=STEADY "
       "application=TURBO"},
      {"0 3.0 1 3D NO-K-E 0 0 1 STEADY TURBO\n", 1, 5,
       "version=3.0 module=3D turbulence=NO-K-E extra1=[] extra2=[] headerInt=1 mode=STEADY "
       "application=TURBO"},
      {"0 3.0 1 3D K-O 0 0 2 STEADY TURBO\n", 1, 7,
       "version=3.0 module=3D turbulence=K-O extra1=[] extra2=[] headerInt=2 mode=STEADY "
       "application=TURBO"},
      // Turbulence names are compared whole and case-sensitive.
      {"0 3.0 1 3D k-e 0 0 0 STEADY TURBO\n", 1, 5,
       "version=3.0 module=3D turbulence=k-e extra1=[] extra2=[] headerInt=0 mode=STEADY "
       "application=TURBO"},
      // "1.0": no second list, no extra integer.
      {"0 1.0 1 3D NO-K-E 2 H1 H2\nSTEADY TURBO\n", 1, 7,
       "version=1.0 module=3D turbulence=NO-K-E extra1=[H1 H2] extra2=[] headerInt=0 mode=STEADY "
       "application=TURBO"},
      // "2.0": the second list, no extra integer.
      {"0 2.0 2 TF SPL-ALM 1 A 2 B C STEADY NOZZLE\n", 2, 10,
       "version=2.0 module=TF turbulence=SPL-ALM extra1=[A] extra2=[B C] headerInt=0 mode=STEADY "
       "application=NOZZLE"},
      // Any other version: both lists and the extra integer.
      {"0 3.0 1 B2B K-E 1 sp1 1 h1 3 STEADY TURBO\n", 1, 9,
       "version=3.0 module=B2B turbulence=K-E extra1=[sp1] extra2=[h1] headerInt=3 mode=STEADY "
       "application=TURBO"},
      {"0 2.5 1 3D NO-K-E 0 1 Z 9 STEADY TURBO\n", 1, 6,
       "version=2.5 module=3D turbulence=NO-K-E extra1=[] extra2=[Z] headerInt=9 mode=STEADY "
       "application=TURBO"},
  };
  for (const auto& c : cases) {
    const std::size_t count = 9 + 2 * static_cast<std::size_t>(c.blocks) * c.vars;
    const std::vector<Record> records = {steady(1, count), steady(2, count)};
    write(std::string(c.header) + recordText(records[0]) + recordText(records[1]));
    ResFile file(path_);
    ConsoleCapture console;
    ASSERT_EQ(file.read(), 1) << c.header;
    EXPECT_EQ(console.text(), "");
    EXPECT_EQ(headerOf(file), c.fields) << c.header;
    EXPECT_EQ(file.nbBlocks(), c.blocks) << c.header;
    EXPECT_EQ(file.nbVars(), c.vars) << c.header;
    expectHistory(file, records, c.header);
  }
}

// Files that give no history. The object is left at its defaults and holds
// no record.
TEST_F(ResidualFile, UnreadableFiles) {
  const struct {
    const char* what;
    std::string text;
    int result;
    std::string console;
  } cases[] = {
      {"empty", "", 0, ""},
      {"header only", "0 3.0 1 TF K-E 0 0 4 STEADY TURBO\n", 2, ""},
      {"short header only", "1 5\n", 2, ""},
      {"header cut short", "0 3.0 1 TF K-E 0\n", 0, ""},
      {"header without its application", "0 3.0 1 TF K-E 0 0 4 STEADY\n", 0,
       "read:: string value not read !!!\n"},
      {"unknown module", "0 3.0 1 XYZ K-E 0 0 0 STEADY TURBO\n1 2 3\n", 0, "unkown module XYZ\n"},
      {"module in lower case", "0 3.0 1 tf K-E 0 0 0 STEADY TURBO\n", 0, "unkown module tf\n"},
      {"words", "hello residual world wide\n", 0, "unkown module wide\n"},
      {"words cut short", "hello world\n", 0, ""},
      {"header ends before the module", "0 3.0 1\n", 0, "read:: string value not read !!!\n"},
      {"binary", std::string("\x7f\x45\x4c\x46 \x02\x01 \x00\x00 \xff\xfe\n\x01\x02", 16), 0,
       "unkown module \xff\xfe\n"},
      {"negative name count", "0 3.0 1 3D NO-K-E -1 0 0 STEADY TURBO\n1 2\n", 0, ""},
      {"negative second count", "0 2.0 1 3D NO-K-E 0 -2 STEADY TURBO\n1 2\n", 0, ""},
      {"negative equation count", "3 -2\n1 2 3\n", 0,
       "*** ResFile  :: read() 3 blocks of -2 equations are not a residual history :\n"},
      {"negative block count", "0 3.0 -1 3D NO-K-E 0 0 0 STEADY TURBO\n1 2\n", 0,
       "*** ResFile  :: read() -1 blocks of 5 equations are not a residual history :\n"},
      // Counts that no residual history could have: refused at once, before
      // any record is made room for.
      {"two billion blocks", "0 3.0 2000000000 3D K-E 0 0 1 STEADY TURBO\n1 0.5 0.5 0.5\n", 0,
       "*** ResFile  :: read() 2000000000 blocks of 7 equations are not a residual history :\n"},
      {"two billion equations", "7 2000000000\n1 0.5 0.5\n", 0,
       "*** ResFile  :: read() 7 blocks of 2000000000 equations are not a residual history :\n"},
  };
  for (const auto& c : cases) {
    write(c.text);
    ResFile file(path_);
    ConsoleCapture console;
    const auto start = std::chrono::steady_clock::now();
    const long memoryBefore = peakMemoryKilobytes();
    EXPECT_EQ(file.read(), c.result) << c.what;
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500)) << c.what;
    EXPECT_LT(peakMemoryKilobytes() - memoryBefore, 100 * 1024) << c.what;
    const std::string pathLine = c.console.starts_with("***") ? "\t\t\t      " + path_ + "\n" : "";
    EXPECT_EQ(console.text(), c.console + pathLine) << c.what;
    EXPECT_EQ(file.recordCount(), 0u) << c.what;
    EXPECT_EQ(headerOf(file), kDefaultHeader) << c.what;
    EXPECT_EQ(file.lastIndex(), 0) << c.what;
    EXPECT_EQ(file.lastIterationNumber(), 0u) << c.what;
  }
}

TEST_F(ResidualFile, MissingFileIsReportedOnEveryRead) {
  ResFile file(path_);
  ConsoleCapture console;
  EXPECT_EQ(file.read(), 0);
  EXPECT_EQ(file.read(), 0);
  const std::string lines =
      "*** ResFile  :: read() Cannot open the file :\n\t\t\t      " + path_ + "\n";
  EXPECT_EQ(console.text(), lines + lines);
  EXPECT_EQ(file.recordCount(), 0u);

  // Once the solver creates it, the next read takes it.
  const std::vector<Record> records = {steady(1, 11)};
  write("1 1\n" + recordText(records[0]));
  EXPECT_EQ(file.read(), 1);
  expectHistory(file, records);
}

TEST_F(ResidualFile, FolderGivenAsTheFile) {
  const std::string folder = folder_.string();
  ResFile file(folder);
  ConsoleCapture console;
  EXPECT_EQ(file.read(), 0);
  EXPECT_EQ(console.text(),
            "*** ResFile  :: read() Cannot open the file :\n\t\t\t      " + folder + "\n");
  EXPECT_EQ(file.recordCount(), 0u);
}

TEST_F(ResidualFile, UnsteadyRecordsKeepThePhysicalTimeApart) {
  // One block of five equations: 19 values and the physical time.
  const std::vector<Record> records = {
      {3, 40, 0.125, steady(40, 19).values},
      {3, 41, 0.125, steady(41, 19).values},
      {4, 1, 0.25, steady(1, 19, -2.0f).values},
  };
  std::string text = "0 3.0 1 3D NO-K-E 0 0 0 UNSTEADY TURBO\n";
  for (const Record& r : records) text += recordText(r);
  write(text);
  ResFile file(path_);
  ASSERT_EQ(file.read(), 1);
  EXPECT_EQ(file.valuesPerRecord(), 19u);
  expectHistory(file, records);
  for (std::size_t i = 0; i < records.size(); ++i) EXPECT_TRUE(file.record(i).unsteady());

  // Only the exact word makes a run unsteady.
  const std::vector<Record> steadyRecords = {steady(7, 19)};
  write("0 3.0 1 3D NO-K-E 0 0 0 Unsteady TURBO\n" + recordText(steadyRecords[0]));
  ResFile other(path_);
  ASSERT_EQ(other.read(), 1);
  expectHistory(other, steadyRecords);
  EXPECT_FALSE(other.record(0).unsteady());
}

TEST_F(ResidualFile, RecordsSpanLinesAndEndInCarriageReturns) {
  const std::vector<Record> records = {steady(1, 19), steady(2, 19), steady(3, 19)};
  write("0 2.0 1 3D NO-K-E 0 0\r\nSTEADY TURBO\r\n" + recordText(records[0], "\r\n", 4) +
        recordText(records[1], "\n", 1) + recordText(records[2], "\r\n"));
  ResFile file(path_);
  ConsoleCapture console;
  ASSERT_EQ(file.read(), 1);
  expectHistory(file, records);
  EXPECT_EQ(console.text(), "");
}

// A history longer than the reader takes in one piece: records that straddle
// the pieces are read whole, and appending afterwards still resumes.
TEST_F(ResidualFile, LongHistory) {
  std::string text = "1 1\n";
  text.reserve(10u << 20);
  int iterations = 0;
  while (text.size() < (9u << 20)) {
    ++iterations;
    char line[160];
    std::snprintf(line, sizeof line, "%d %d 0.5 1 1.5 2 2.5 3 3.5 4 %d.25 -%d\n", iterations,
                  iterations, iterations % 1000, iterations);
    text += line;
  }
  write(text);
  ResFile file(path_);
  ASSERT_EQ(file.read(), 1);
  ASSERT_EQ(file.recordCount(), static_cast<std::size_t>(iterations));
  for (int i = 1; i <= iterations; ++i) {
    const Floats expected = {static_cast<float>(i),
                             0.5f,
                             1,
                             1.5f,
                             2,
                             2.5f,
                             3,
                             3.5f,
                             4,
                             static_cast<float>(i % 1000) + 0.25f,
                             static_cast<float>(-i)};
    const auto index = static_cast<std::size_t>(i - 1);
    if (file.record(index).iterationNumber() != i || valuesOf(file, index) != expected) {
      FAIL() << "record " << index << " differs";
    }
  }
  append("99999 1 2 3 4 5 6 7 8 9 10 11\n");
  EXPECT_EQ(file.read(), 1);
  EXPECT_EQ(file.recordCount(), static_cast<std::size_t>(iterations) + 1);
  EXPECT_EQ(file.lastIterationNumber(), 99999u);
  EXPECT_EQ(file.lastIndex(), iterations);
}

// A record of one-digit values, so that records of other seeds have the same
// length in the file.
Record digits(int iteration, int seed) {
  Record r{-1, iteration, 0.0, {}};
  for (int k = 0; k < 11; ++k)
    r.values.push_back(static_cast<float>((iteration + k * seed + seed) % 10));
  return r;
}

// The solver restarted and wrote the file again. A read that finds the held
// history no longer continued answers 2 and forgets the header; the next read
// takes the new history from its top.
TEST_F(ResidualFile, RewrittenFile) {
  const std::string header = "1 1\n";
  const std::vector<Record> old = {digits(1, 1), digits(2, 1), digits(3, 1)};
  const std::string oldText = header + recordText(old[0]) + recordText(old[1]) + recordText(old[2]);
  const struct {
    const char* what;
    std::string header;
    std::vector<Record> records;
  } cases[] = {
      // The same length, the same iterations, other values.
      {"same length", header, {digits(1, 7), digits(2, 7), digits(3, 7)}},
      // Longer, with another header.
      {"longer",
       "0 3.0 1 TF K-E 0 0 5 STEADY TURBO\n",
       {steady(5, 25), steady(6, 25), steady(7, 25), steady(8, 25)}},
      // Shorter than what was read.
      {"truncated", header, {digits(1, 3)}},
  };
  for (const auto& c : cases) {
    write(oldText);
    ResFile file(path_);
    ASSERT_EQ(file.read(), 1);
    expectHistory(file, old, c.what);

    std::string text = c.header;
    for (const Record& r : c.records) text += recordText(r);
    if (std::string(c.what) == "same length") {
      ASSERT_EQ(text.size(), oldText.size());
    }
    write(text);
    ConsoleCapture console;
    EXPECT_EQ(file.read(), 2) << c.what;
    EXPECT_EQ(headerOf(file), kDefaultHeader) << c.what;
    EXPECT_EQ(file.read(), 1) << c.what;
    expectHistory(file, c.records, c.what);
    EXPECT_EQ(console.text(), "") << c.what;
  }

  // Cut down to its header: nothing can be read any more.
  write(oldText);
  ResFile file(path_);
  ASSERT_EQ(file.read(), 1);
  write(header);
  EXPECT_EQ(file.read(), 2);
  EXPECT_EQ(file.read(), 2);
  EXPECT_EQ(file.recordCount(), 0u);
}

TEST(Bookmarks, CellsAreIndependentAndStartAtZero) {
  turbo::BookmarkGrid grid;
  const std::pair<int, int> cells[] = {{0, 0}, {0, 9999}, {1, 0}, {999, 0}, {999, 9999}, {500, 1}};
  for (const auto& [i, j] : cells) EXPECT_EQ(grid.get(i, j), 0);
  int value = 0;
  // Values around the 0 that a cell holds when it was never set.
  for (const auto& [i, j] : cells) grid.set(i, j, ++value * 11 - 43);
  value = 0;
  for (const auto& [i, j] : cells) EXPECT_EQ(grid.get(i, j), ++value * 11 - 43) << i << "," << j;
  EXPECT_EQ(grid.get(0, 1), 0);
  EXPECT_EQ(grid.get(998, 9999), 0);

  grid.set(1, 0, 0);
  EXPECT_EQ(grid.get(1, 0), 0);
  EXPECT_EQ(grid.get(0, 9999), -21);
  grid.clear();
  for (const auto& [i, j] : cells) EXPECT_EQ(grid.get(i, j), 0);
}

TEST_F(ResidualFile, ProjectStartsOverWhenTheFileIsRewritten) {
  const std::vector<Record> old = {steady(1, 11), steady(2, 11)};
  write("1 1\n" + recordText(old[0]) + recordText(old[1]));
  turbo::ProjectMonitor project(path_, false);
  EXPECT_EQ(project.name(), path_);
  EXPECT_FALSE(project.fromCommandLine());
  ASSERT_EQ(project.update(), 1);
  expectHistory(project.resFile(), old);
  project.currentIter().set(0, 0, 2);
  project.currentIter().set(999, 9999, 7);

  // Growth keeps the bookmarks.
  const std::vector<Record> grown = {old[0], old[1], steady(3, 11)};
  append(recordText(grown[2]));
  EXPECT_EQ(project.update(), 1);
  expectHistory(project.resFile(), grown);
  EXPECT_EQ(project.currentIter().get(0, 0), 2);
  EXPECT_EQ(project.currentIter().get(999, 9999), 7);

  // A rewrite clears them and yields the new history in the same update.
  const std::vector<Record> restarted = {steady(1, 11, 3.0f)};
  write("1 1\n" + recordText(restarted[0]));
  EXPECT_EQ(project.update(), 1);
  expectHistory(project.resFile(), restarted);
  EXPECT_EQ(project.currentIter().get(0, 0), 0);
  EXPECT_EQ(project.currentIter().get(999, 9999), 0);

  // A file gone: 0, the open failure reported at every read and the
  // disappearance once, the history kept.
  std::filesystem::remove(path_);
  ConsoleCapture console;
  EXPECT_EQ(project.update(), 0);
  EXPECT_EQ(project.update(), 0);
  const std::string cannotOpen =
      "*** ResFile  :: read() Cannot open the file :\n\t\t\t      " + path_ + "\n";
  EXPECT_EQ(console.text(), "File " + path_ +
                                " has disappeared; what was read from it stays shown\n" +
                                cannotOpen + cannotOpen);
  EXPECT_EQ(project.resFile().recordCount(), restarted.size());
}

}  // namespace
