// The one reader of growing files: rewritten, vanished and returning files,
// readers that stop or leave text, and lines too long to hold. Growth in
// random chunks is tested over every reader in growth_property_test.cpp.
#include "fileformat/growing_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "console_capture.h"
#include "scratch_folder.h"

namespace {

using fileformat::GrowingFile;
using fileformat::Update;
using Lines = std::vector<std::string>;
using Read = std::pair<Update, Lines>;

class GrowingFileTest : public ScratchFolder {
 protected:
  // Reads the new lines; the answer and the lines taken.
  Read read() {
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
  write("run.dat", "1 2\r\n3 4\n5 6");
  EXPECT_EQ(read(), Read(Update::appended, {"1 2", "3 4"}));
  EXPECT_EQ(read(), Read(Update::unchanged, {}));
  append("run.dat", "\r");
  EXPECT_EQ(read(), Read(Update::unchanged, {}));
  append("run.dat", "\n\n");
  EXPECT_EQ(read(), Read(Update::appended, {"5 6", ""}));
  EXPECT_EQ(file_.offset(), 15u);
}

// The file held "header + rows + 3 0.2" (its last line unfinished) when it
// changed to each of these.
TEST_F(GrowingFileTest, AFileThatNoLongerContinuesWhatWasTakenIsRewritten) {
  const std::string header = "#QV_BEGIN\nMODE STEADY\n#QV_END\n";
  const std::string rows = "1 0.5 0.25\n2 0.375 0.1875\n";
  const std::string cases[] = {
      "",
      header + "1 0.5 0.25\n",
      header + "1 0.5 0.25\n2 0.375 0.1876\n",          // the same length, the last row changed
      header + "1 0.5 0.25\n2 0.375 0.1875 \n3 1 1\n",  // longer, the last row changed
      "#QV_BEGIN \nMODE STEADY\n#QV_END\n" + rows + "3 1 1\n",  // longer, the first line changed
      header + rows + "3",  // shorter than the unfinished line seen
  };
  for (const std::string& now : cases) {
    file_ = GrowingFile(pathOf("run.dat"));
    write("run.dat", header + rows + "3 0.2");
    ASSERT_EQ(read().first, Update::appended) << now;
    write("run.dat", now);
    const ConsoleCapture console;
    EXPECT_EQ(read(), Read(Update::rewritten, {})) << now;
    EXPECT_EQ(file_.offset(), 0u) << now;
    EXPECT_EQ(read().second.size(),
              static_cast<std::size_t>(std::count(now.begin(), now.end(), '\n')));
    EXPECT_EQ(console.text(), "") << now;
  }
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
  EXPECT_EQ(read(), Read(Update::appended, {"a", "b", "c"}));

  std::filesystem::remove(pathOf("run.dat"));
  std::filesystem::create_directories(pathOf("run.dat"));
  EXPECT_EQ(read().first, Update::missing) << "a folder is no file";
}

// A reader that stops is offered the rest next time; a record may span
// lines, and the text a reader leaves is offered again with what follows.
TEST_F(GrowingFileTest, WhatAReaderLeavesIsOfferedAgain) {
  write("run.dat", "header\nrow 1\n1 2 3\n4 5");
  EXPECT_EQ(file_.readLines([](std::string_view line) { return line == "header"; }),
            Update::appended);
  Lines offered;
  const auto takeRecordsEndingInEight = [&](std::string_view text) {
    offered.emplace_back(text);
    return fileformat::Taken{text.ends_with("8\n") ? text.size() : 0, false};
  };
  EXPECT_EQ(file_.read(takeRecordsEndingInEight), Update::unchanged);
  EXPECT_EQ(file_.read(takeRecordsEndingInEight), Update::unchanged);
  append("run.dat", " 6 7 8\n");
  EXPECT_EQ(file_.read(takeRecordsEndingInEight), Update::appended);
  EXPECT_EQ(offered, (Lines{"row 1\n1 2 3\n", "row 1\n1 2 3\n4 5 6 7 8\n"}));
}

TEST_F(GrowingFileTest, ALineOverTheLimitIsDroppedOnceAndReadingGoesOnAfterIt) {
  const std::string dropped = " dropped; reading goes on after its end\n";
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
  EXPECT_EQ(console.text(),
            "Line of more than 33554432 bytes at byte 6 of " + pathOf("run.dat") + dropped);

  // What a crashed node leaves: a file of NUL bytes only, here with a hole.
  write("other.dat", "");
  std::filesystem::resize_file(pathOf("other.dat"), 3 * GrowingFile::kMaxLineBytes);
  file_ = GrowingFile(pathOf("other.dat"));
  ConsoleCapture nul;
  EXPECT_EQ(read(), Read(Update::unchanged, {}));
  EXPECT_EQ(read(), Read(Update::unchanged, {}));
  EXPECT_EQ(nul.text(),
            "Line of more than 33554432 bytes at byte 0 of " + pathOf("other.dat") + dropped);
  append("other.dat", "\nrow\n");
  EXPECT_EQ(read(), Read(Update::appended, {"row"}));
}

}  // namespace
