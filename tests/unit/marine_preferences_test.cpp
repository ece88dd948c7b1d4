// The user's preferences file and the marine monitor's start-up options.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "console_capture.h"
#include "marine/monitor_marine.h"
#include "marine/preferences.h"
#include "scratch_folder.h"

namespace {

namespace fs = std::filesystem;

using MarinePreferences = ScratchFolder;

// One file whose groups each show one way of writing them.
const std::string kPreferences =
    "Outside 9\n"
    "PRODUCT Monitor\nRefresh 5\nSize\nTheme   \t\nTitle   My   case \t\nPath\tC:\\cases\\a b\n"
    "Width 4\nwidth 5\nEND_PRODUCTS yes\n\n   \nEND_PRODUCT\nOutside 8\n"
    "  product   Flow  Monitor  \r\n\tRefresh 2\r\nEND_product\r\n"
    "PRODUCTS Plot\nPRODUCT Plot\nA 9\nEND_PRODUCT\n"
    "PRODUCT Monitor\nB 2\nEND_PRODUCT\n"
    "PRODUCT Open\nRefresh 3\nPRODUCT Other\n";

TEST_F(MarinePreferences, GroupsAndKeys) {
  write("preferences.dat", kPreferences);
  marine::Preferences preferences;
  ConsoleCapture console;
  preferences.read(pathOf("preferences.dat"));
  const struct {
    const char* group;
    const char* key;
    const char* answer;  // "-" is the fallback
  } cases[] = {
      {"Monitor", "REFRESH", "5"},
      {"Monitor", "rEfReSh", "5"},
      {"monitor", "refresh", "-"},
      {"Monitor", "size", ""},
      {"Monitor", "theme", ""},
      {"Monitor", "title", "My   case"},
      {"Monitor", "path", "C:\\cases\\a b"},
      {"Monitor", "WIDTH", "5"},
      {"Monitor", "end_products", "yes"},
      {"Monitor", "b", "2"},
      {"Monitor", "outside", "-"},
      {"", "outside", "-"},
      {"Monitor", "", "-"},
      {"Flow  Monitor", "refresh", "2"},
      {"Flow", "refresh", "-"},
      {"Plot", "a", "9"},
      {"Open", "refresh", "3"},
      {"Open", "product", "Other"},
      {"Other", "refresh", "-"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(preferences.getPreference(c.group, c.key, "-"), c.answer)
        << c.group << " / " << c.key;
  }
  EXPECT_EQ(console.text(), "");
  // Reading again replaces the table; an unreadable file empties it.
  write("preferences.dat", "PRODUCT Monitor\nSize 3\nEND_PRODUCT\n");
  preferences.read(pathOf("preferences.dat"));
  EXPECT_EQ(preferences.getPreference("Monitor", "refresh", "1"), "1");
  EXPECT_EQ(preferences.getPreference("Monitor", "size", "1"), "3");
  for (const std::string& unreadable : {pathOf("absent.dat"), folder_.string()}) {
    preferences.read(unreadable);
    EXPECT_EQ(preferences.getPreference("Monitor", "size", "1"), "1") << unreadable;
  }
  EXPECT_EQ(console.text(), "");
}

TEST_F(MarinePreferences, MonitorReadsThePreferencesNextToItsScratchFolder) {
  fs::create_directories(folder_ / "tmp");
  write("preferences.dat", "PRODUCT Monitor\nRefresh 5\nEND_PRODUCT\n");
  {
    ConsoleCapture console;
    marine::MonitorMarine monitor(
        {"monitor"}, marine::MonitorMarine::preferencesPathFor((folder_ / "tmp").string()));
    EXPECT_EQ(console.text(), "");
    EXPECT_EQ(marine::theMonitorMarine(), &monitor);
    EXPECT_EQ(monitor.preferences().getPreference("Monitor", "Refresh", "1"), "5");
  }
  EXPECT_EQ(marine::theMonitorMarine(), nullptr);
}

TEST_F(MarinePreferences, StartupFolderOption) {
  const std::string target = fs::canonical(folder_).string();
  const fs::path before = fs::current_path();
  const std::string change = "change directory to " + target + "\n";
  const struct {
    std::vector<std::string> arguments;
    std::string output;
    bool changes;
  } cases[] = {
      {{"monitor", "-startupdir", target}, change, true},
      {{"monitor", "a.res", "-startupdir", target, "b.res"}, change, true},
      {{"monitor", "a.res", "-startupdir"}, "", false},
      {{"-startupdir", target}, "", false},
      {{"monitor", "-StartupDir", target}, "", false},
      {{}, "", false},
      {{"monitor", "-startupdir", target + "/absent"},
       "change directory to " + target + "/absent\n",
       false},
  };
  for (const auto& c : cases) {
    fs::current_path(before);
    ConsoleCapture console;
    marine::MonitorMarine monitor(c.arguments, pathOf("none.dat"));
    EXPECT_EQ(console.text(), c.output) << c.arguments.size();
    EXPECT_EQ(fs::current_path(), c.changes ? fs::path(target) : before) << c.output;
  }
  fs::current_path(before);
}

}  // namespace
