#include "app/version_tag.h"

#include <gtest/gtest.h>

namespace {

using app::registryKeysFor;
using app::ToolWords;
using app::versionTagFromProgramPath;

const ToolWords kTools{"alphatool", "betatool", "gammatool", "deltatool", "epsilontool"};

TEST(VersionTag, FromInstalledProgramPaths) {
  const struct {
    const char* path;
    const char* tag;
    int tool;
  } cases[] = {
      {"/opt/talvik/dune71/bin/monitor", "71", 0},
      {"/opt/talvik/dune_marine71/bin/monitor", "_marine71", 0},
      {"/opt/Talvik/Dune_Marine71/bin/monitor", "_marine71", 0},
      {"/opt/talvik/dune71/bin64/monitor", "71", 0},
      {"/home/u/dune/dune80/bin/x/monitor", "80", 0},
      {"/opt/dune71/binaries/monitor", "71/binaries/monitor", 0},
      {"/opt/talvik/dune71/bin/", "71", 0},
      {"/opt/talvik/alphatool12/bin/monitor", "12", 1},
      {"/opt/betatool9/bin/monitor", "9", 2},
      {"/opt/epsilontool_x/bin/monitor", "_x", 5},
      {"/usr/local/monitor", "/usr/local/monitor", 0},
      {"/opt/x/bin/dune71/bin/monitor", "/opt/x", 0},
      {"", "", 0},
  };
  for (const auto& c : cases) {
    const app::VersionTag version = versionTagFromProgramPath(c.path, kTools);
    EXPECT_EQ(version.tag, c.tag) << c.path;
    EXPECT_EQ(version.tool, c.tool) << c.path;
  }
}

TEST(VersionTag, ProductWordIsTriedBeforeTheTools) {
  const app::VersionTag version = versionTagFromProgramPath("/opt/alphatool1/dune2/bin/m", kTools);
  EXPECT_EQ(version.tag, "2");
  EXPECT_EQ(version.tool, 0);
}

TEST(VersionTag, OddCharactersStayInTheTag) {
  const app::VersionTag version =
      versionTagFromProgramPath("/opt/dune7 1{x}$[y]/bin/monitor", kTools);
  EXPECT_EQ(version.tag, "7 1{x}$[y]");
  EXPECT_EQ(registryKeysFor(version, kTools),
            std::vector<std::string>{"Software\\TALVIK\\dune7 1{x}$[y]"});
}

TEST(VersionTag, RegistryKeys) {
  EXPECT_EQ(registryKeysFor({"71", 0}, kTools),
            std::vector<std::string>{"Software\\TALVIK\\dune71"});
  EXPECT_EQ(
      registryKeysFor({"12", 1}, kTools),
      (std::vector<std::string>{"Software\\TALVIK\\alphatool12", "Software\\TALVIK\\dune12"}));
  EXPECT_EQ(registryKeysFor({"3", 4}, kTools),
            std::vector<std::string>{"Software\\TALVIK\\deltatool3"});
}

TEST(VersionTag, QvversionArgument) {
  using app::qvversionArgument;
  EXPECT_EQ(qvversionArgument({"monitor", "-qvversion", "71_Marine", "a.res"}), "71_Marine");
  EXPECT_EQ(qvversionArgument({"monitor", "-qvversion", "a", "-qvversion", "b"}), "a");
  EXPECT_EQ(qvversionArgument({"monitor", "x.res", "-qvversion"}), "");
  EXPECT_EQ(qvversionArgument({"-qvversion", "notme"}), "");
  EXPECT_EQ(qvversionArgument({"monitor", "-QVVERSION", "71"}), "");
}

TEST(VersionTag, BuildTableHasFiveLowerCaseWords) {
  for (const std::string& word : app::configuredToolWords()) {
    EXPECT_FALSE(word.empty());
    for (char c : word) EXPECT_FALSE(c >= 'A' && c <= 'Z') << word;
  }
}

}  // namespace
