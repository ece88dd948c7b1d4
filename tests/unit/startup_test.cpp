#include "app/startup.h"

#include <gtest/gtest.h>

#include "console_capture.h"

namespace {

using app::chooseMode;
using app::MonitorMode;

TEST(Startup, BatchIsRefusedOncePerExactArgument) {
  ConsoleCapture console;
  EXPECT_TRUE(app::refuseBatchArguments({"monitor", "-batch", "a.res", "-batch"}));
  EXPECT_FALSE(app::refuseBatchArguments({"monitor", "-BATCH", "-batchx", " -batch", "batch"}));
  EXPECT_TRUE(app::refuseBatchArguments({"-batch"}));
  EXPECT_EQ(console.text(),
            " -batch mode not supported \n"
            " -batch mode not supported \n"
            " -batch mode not supported \n");
}

TEST(Startup, ModeFromTheVersionTag) {
  EXPECT_EQ(chooseMode("71"), MonitorMode::turbo);
  EXPECT_EQ(chooseMode("_marine71"), MonitorMode::marine);
  EXPECT_EQ(chooseMode("71_Marine"), MonitorMode::turbo);
  EXPECT_EQ(chooseMode("_open71"), MonitorMode::open);
  EXPECT_EQ(chooseMode("open_marine"), MonitorMode::marine);
  EXPECT_EQ(chooseMode("OPEN"), MonitorMode::turbo);
  EXPECT_EQ(chooseMode(""), MonitorMode::turbo);
}

TEST(Startup, BannerByteForByte) {
  const std::string expected = "\n\n\n      <***>   Monitor 7.1  -  Mar  7 2018\n\n";
  EXPECT_EQ(app::banner(MonitorMode::turbo), expected);
  EXPECT_EQ(app::banner(MonitorMode::open), expected);
  EXPECT_EQ(app::banner(MonitorMode::marine), expected);
}

}  // namespace
