// The one reader of growing files: what it tells a reader when the file is
// rewritten, disappears or comes back, and what it does with lines too long
// to hold. Growth in random chunks is tested over every reader of the
// program in growth_property_test.cpp.
#include "fileformat/growing_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "console_capture.h"
#include "scratch_folder.h"

namespace {

using fileformat::GrowingFile;
using fileformat::Update;
using Lines = std::vector<std::string>;

class GrowingFileTest : public ScratchFolder {
 protected:
  GrowingFileTest() : file_(pathOf("run.dat")) {}

  // Reads the new lines; the answer and the lines taken.
  std::pair<Update, Lines> read() {
    Lines lines;
    const Update status = file_.readLines([&](std::string_view line) {
      lines.emplace_back(line);
      return true;
    });
    return {status, lines};
  }

  GrowingFile file_;
};

TEST_F(GrowingFileTest, OffersWholeLinesOnceWithoutTheirLineEnds) {
  write("run.dat", "1 2\r\n3 4\n5 6");
  EXPECT_EQ(read(), std::make_pair(Update::appended, Lines{"1 2", "3 4"}));
  EXPECT_EQ(read(), std::make_pair(Update::unchanged, Lines{}));
  append("run.dat", "\r");
  EXPECT_EQ(read(), std::make_pair(Update::unchanged, Lines{}));
  append("run.dat", "\n\n");
  EXPECT_EQ(read(), std::make_pair(Update::appended, Lines{"5 6", ""}));
  EXPECT_EQ(file_.offset(), 15u);
}

TEST_F(GrowingFileTest, ARewrittenFileIsToldAndThenReadFromItsTop) {
  const std::string header = "#QV_BEGIN\nMODE STEADY\n#QV_END\n";
  const std::string rows = "1 0.5 0.25\n2 0.375 0.1875\n";
  const struct {
    const char* what;
    std::string rewritten;
  } cases[] = {
      {"empty", ""},
      {"shorter", header + "1 0.5 0.25\n"},
      {"same length, last row changed", header + "1 0.5 0.25\n2 0.375 0.1876\n"},
      {"longer, last row changed", header + "1 0.5 0.25\n2 0.375 0.1875 \n3 1 1\n"},
      {"longer, first line changed", "#QV_BEGIN \nMODE STEADY\n#QV_END\n" + rows + "3 1 1\n"},
      {"shorter, with an unfinished line seen before", header + "1 0.5 0.25\n2"},
  };
  for (const auto& c : cases) {
    file_ = GrowingFile(pathOf("run.dat"));
    write("run.dat", header + rows + "3 0.2");
    ASSERT_EQ(read().first, Update::appended) << c.what;
    write("run.dat", c.rewritten);
    const ConsoleCapture console;
    EXPECT_EQ(read(), std::make_pair(Update::rewritten, Lines{})) << c.what;
    EXPECT_EQ(file_.offset(), 0u) << c.what;
    const Lines whole = read().second;
    EXPECT_EQ(whole.size(),
              static_cast<std::size_t>(std::count(c.rewritten.begin(), c.rewritten.end(), '\n')))
        << c.what;
    EXPECT_EQ(console.text(), "") << c.what;
  }
}

TEST_F(GrowingFileTest, AFileThatGrewOnTopOfWhatWasTakenIsNotRewritten) {
  write("run.dat", "a\nb\n");
  read();
  append("run.dat", "c\n");
  EXPECT_EQ(read(), std::make_pair(Update::appended, Lines{"c"}));
}

TEST_F(GrowingFileTest, ADisappearanceIsToldOnceAndTheFileIsReadAgainWhenItComesBack) {
  ConsoleCapture console;
  EXPECT_EQ(read().first, Update::missing);
  EXPECT_FALSE(file_.lost());
  EXPECT_EQ(console.text(), "") << "a file never seen is not reported";

  write("run.dat", "a\nb\n");
  read();
  std::filesystem::remove(pathOf("run.dat"));
  EXPECT_EQ(read().first, Update::missing);
  EXPECT_EQ(read().first, Update::missing);
  EXPECT_TRUE(file_.lost());
  EXPECT_EQ(console.text(),
            "File " + pathOf("run.dat") + " has disappeared; what was read from it stays shown\n");

  write("run.dat", "a\nb\nc\n");
  EXPECT_EQ(read().first, Update::rewritten);
  EXPECT_FALSE(file_.lost());
  EXPECT_EQ(read(), std::make_pair(Update::appended, Lines{"a", "b", "c"}));
}

TEST_F(GrowingFileTest, AFolderIsAMissingFile) {
  std::filesystem::create_directories(pathOf("run.dat"));
  EXPECT_EQ(read().first, Update::missing);
  EXPECT_FALSE(file_.present());
}

TEST_F(GrowingFileTest, AReaderThatStopsIsOfferedTheRestNextTime) {
  write("run.dat", "header\nrow 1\nrow 2\n");
  Lines header;
  file_.readLines([&](std::string_view line) {
    if (line.starts_with("row")) return false;
    header.emplace_back(line);
    return true;
  });
  EXPECT_EQ(header, Lines{"header"});
  EXPECT_EQ(read(), std::make_pair(Update::appended, Lines{"row 1", "row 2"}));
}

// A record may span lines: the text a reader leaves is offered again with
// the lines that follow it.
TEST_F(GrowingFileTest, TextLeftIsOfferedAgainWithWhatFollows) {
  write("run.dat", "1 2 3\n4 5");
  std::vector<std::string> offered;
  const auto takeWholeRecordsOfFourNumbers = [&](std::string_view text) {
    offered.emplace_back(text);
    const std::size_t fourth = text.find("4 5 6 7 8\n");
    return fileformat::Taken{fourth == std::string_view::npos ? 0 : text.size(), false};
  };
  EXPECT_EQ(file_.read(takeWholeRecordsOfFourNumbers), Update::unchanged);
  EXPECT_EQ(file_.read(takeWholeRecordsOfFourNumbers), Update::unchanged);
  append("run.dat", " 6 7 8\n");
  EXPECT_EQ(file_.read(takeWholeRecordsOfFourNumbers), Update::appended);
  EXPECT_EQ(offered, (std::vector<std::string>{"1 2 3\n", "1 2 3\n4 5 6 7 8\n"}));
}

TEST_F(GrowingFileTest, ALineOverTheLimitIsDroppedOnceAndReadingGoesOnAfterIt) {
  const std::string longLine(GrowingFile::kMaxLineBytes + 10, 'x');
  write("run.dat", "first\n" + longLine.substr(0, GrowingFile::kMaxLineBytes / 2));
  ConsoleCapture console;
  EXPECT_EQ(read(), std::make_pair(Update::appended, Lines{"first"}));
  append("run.dat", longLine.substr(GrowingFile::kMaxLineBytes / 2));
  EXPECT_EQ(read(), std::make_pair(Update::unchanged, Lines{}));
  append("run.dat", "yy");
  EXPECT_EQ(read(), std::make_pair(Update::unchanged, Lines{}));
  append("run.dat", "\nnext\n");
  EXPECT_EQ(read(), std::make_pair(Update::appended, Lines{"next"}));
  EXPECT_EQ(console.text(), "Line of more than 33554432 bytes at byte 6 of " + pathOf("run.dat") +
                                " dropped; reading goes on after its end\n");
}

// What a crashed node leaves: a file of NUL bytes only, here with a hole.
TEST_F(GrowingFileTest, AFileOfNulBytesIsDroppedAsOneLongLine) {
  write("run.dat", "");
  std::filesystem::resize_file(pathOf("run.dat"), 3 * GrowingFile::kMaxLineBytes);
  ConsoleCapture console;
  EXPECT_EQ(read(), std::make_pair(Update::unchanged, Lines{}));
  EXPECT_EQ(read(), std::make_pair(Update::unchanged, Lines{}));
  EXPECT_EQ(console.text(), "Line of more than 33554432 bytes at byte 0 of " + pathOf("run.dat") +
                                " dropped; reading goes on after its end\n");
  append("run.dat", "\nrow\n");
  EXPECT_EQ(read(), std::make_pair(Update::appended, Lines{"row"}));
}

}  // namespace
