// check_current_directory: the folder itself when a file can be written in it,
// else the scratch folder.
#include <gtest/gtest.h>

#include "monitor_process.h"

namespace e2e {
namespace {

namespace fs = std::filesystem;

// Asks about every folder in turn and then without any folder, one answer per
// line between angle brackets.
std::string askingScript(const std::vector<std::string>& folders, const char* quit) {
  std::string script = "after 100 " + std::string(quit) + "\n";
  for (const std::string& folder : folders) {
    script += "puts \"<[check_current_directory {" + folder + "}]>\"\n";
  }
  return script + "puts \"<[check_current_directory]>\"\n";
}

TEST(CheckCurrentDirectory, WritableFolderOrScratchFolder) {
  Installation installation;
  const fs::path writable = installation.base() / "results with blank";
  fs::create_directories(writable);
  const fs::path plainFile = installation.base() / "plain.txt";
  writeFile(plainFile, "x\n");
  const std::string missing = (installation.base() / "missing").string();
  installation.writeTurboScript(
      askingScript({writable.string(), writable.string() + "/", missing, plainFile.string()},
                   "itf_quit_command"));
  const std::string scratch = installation.home().string() + "/.talvik/tmp/";
  const RunResult result = installation.run();
  EXPECT_EQ(result.output,
            bannerThen({"<" + writable.string() + ">", "<" + writable.string() + "/>",
                        "<" + scratch + ">", "<" + scratch + ">", "<" + scratch + ">"}));
  EXPECT_EQ(result.exitStatus, 1);
  // The write test leaves nothing behind.
  EXPECT_TRUE(fs::is_empty(writable));
}

TEST(CheckCurrentDirectory, ScratchFolderFromTheEnvironmentInMarineMode) {
  Installation installation("dune_marine71");
  const std::string scratch = (installation.base() / "scratch").string();
  const std::string missing = (installation.base() / "missing").string();
  installation.writeMarineScript(
      askingScript({missing, installation.work().string()}, "itf_quit_command_KELP"));
  const RunResult result = installation.run(RunOptions().withVariable("TMP_DIR", scratch));
  EXPECT_EQ(result.output,
            bannerThen({"<" + scratch + "/>", "<" + installation.work().string() + ">",
                        "<" + scratch + "/>"}));
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_TRUE(fs::is_empty(installation.work()));
}

}  // namespace
}  // namespace e2e
