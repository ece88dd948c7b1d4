// check_current_directory answers the folder it is given when a file can be
// written there, the scratch folder otherwise.
#include "app/common_commands.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "app/qv_environment_variables.h"
#include "command_call.h"
#include "scratch_folder.h"

namespace {

using CheckCurrentDirectory = ScratchFolder;

TEST_F(CheckCurrentDirectory, AnswersTheFolderOnlyWhenItCanWriteThere) {
  std::filesystem::create_directories(folder_ / "with blank");
  write("plain", "x");
  const std::string scratch = app::QVEnvironmentVariables::current().TMP_DIR;
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{pathOf("with blank")}, pathOf("with blank")},
      {{pathOf("missing")}, scratch},
      {{pathOf("plain")}, scratch},
      {{}, scratch},
      {{std::string(10000, 'a')}, scratch},
  };
  for (const auto& [arguments, answer] : cases) {
    EXPECT_EQ(callCommand(kCommonCommands, "check_current_directory", arguments), answer)
        << testing::PrintToString(arguments);
  }
  // The file written to find out is removed.
  EXPECT_TRUE(std::filesystem::is_empty(folder_ / "with blank"));
}

}  // namespace
