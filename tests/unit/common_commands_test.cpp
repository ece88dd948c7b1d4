#include "app/common_commands.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "app/qv_environment_variables.h"
#include "script/tcl_arg_stream.h"
#include "script/tcl_result_stream.h"

namespace {

std::string runCheck(std::vector<const char*> arguments) {
  TclArgStream args(static_cast<int>(arguments.size()), arguments.data());
  std::string text;
  TclResultStream result(text);
  checkCurrentDirectory(args, result);
  EXPECT_EQ(result.status(), 0);
  return text;
}

class CheckCurrentDirectory : public testing::Test {
 protected:
  CheckCurrentDirectory() {
    folder_ = std::filesystem::temp_directory_path() / ("ccd_test_" + std::to_string(::getpid()));
    std::filesystem::create_directories(folder_ / "with blank");
  }
  ~CheckCurrentDirectory() override { std::filesystem::remove_all(folder_); }

  std::filesystem::path folder_;
  const std::string& scratch() const { return app::QVEnvironmentVariables::current().TMP_DIR; }
};

TEST_F(CheckCurrentDirectory, WritableFolderAnswersItselfAndLeavesNothingBehind) {
  const std::string path = (folder_ / "with blank").string();
  EXPECT_EQ(runCheck({path.c_str()}), path);
  EXPECT_TRUE(std::filesystem::is_empty(folder_ / "with blank"));
}

TEST_F(CheckCurrentDirectory, UnwritableOrMissingFolderAnswersTheScratchFolder) {
  const std::string missing = (folder_ / "missing").string();
  const std::string file = (folder_ / "plain").string();
  std::ofstream(file) << "x";
  EXPECT_EQ(runCheck({missing.c_str()}), scratch());
  EXPECT_EQ(runCheck({file.c_str()}), scratch());
  EXPECT_EQ(runCheck({}), scratch());
  const std::string tooLong(10000, 'a');
  EXPECT_EQ(runCheck({tooLong.c_str()}), scratch());
}

}  // namespace
