// The user's preferences file and the marine monitor's start-up options.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "console_capture.h"
#include "marine/monitor_marine.h"
#include "marine/preferences.h"
#include "scratch_folder.h"

namespace {

namespace fs = std::filesystem;

using MarinePreferences = ScratchFolder;

TEST_F(MarinePreferences, GroupsAndKeys) {
  write("preferences.dat",
        "Outside 9\n"
        "PRODUCT Monitor\nRefresh 5\nSize\nTheme   \t\nTitle   My   case \t\nPath\tC:\\cases\\a b\n"
        "Width 4\nwidth 5\nEND_PRODUCTS yes\n\n   \nEND_PRODUCT\nOutside 8\n"
        "  product   Flow  Monitor  \r\n\tRefresh 2\r\nEND_product\r\n"
        "PRODUCTS Plot\nPRODUCT Plot\nA 9\nEND_PRODUCT\n"
        "PRODUCT Monitor\nB 2\nEND_PRODUCT\n"
        "PRODUCT Open\nRefresh 3\nPRODUCT Other\n");
  marine::Preferences preferences;
  preferences.read(pathOf("preferences.dat"));
  const std::pair<const char*, const char*> keys[] = {
      {"Monitor", "REFRESH"}, {"Monitor", "rEfReSh"},       {"monitor", "refresh"},
      {"Monitor", "size"},    {"Monitor", "theme"},         {"Monitor", "title"},
      {"Monitor", "path"},    {"Monitor", "WIDTH"},         {"Monitor", "end_products"},
      {"Monitor", "b"},       {"Monitor", "outside"},       {"", "outside"},
      {"Monitor", ""},        {"Flow  Monitor", "refresh"}, {"Flow", "refresh"},
      {"Plot", "a"},          {"Open", "refresh"},          {"Open", "product"},
      {"Other", "refresh"}};
  std::string answers;
  for (const auto& [group, key] : keys) answers += preferences.getPreference(group, key, "-") + ";";
  EXPECT_EQ(answers, "5;5;-;;;My   case;C:\\cases\\a b;5;yes;2;-;-;-;2;-;9;3;Other;-;");
  // An unreadable file empties the table.
  preferences.read(folder_.string());
  EXPECT_EQ(preferences.getPreference("Monitor", "refresh", "1"), "1");
}

// Every "-startupdir" after the program's name is followed, in turn; the
// preferences stand next to the scratch folder.
TEST_F(MarinePreferences, MonitorFollowsTheStartupFolderOptionAndReadsThePreferences) {
  fs::create_directories(folder_ / "tmp");
  write("preferences.dat", "PRODUCT Monitor\nRefresh 5\nEND_PRODUCT\n");
  const std::string preferences =
      marine::MonitorMarine::preferencesPathFor((folder_ / "tmp").string());
  const std::string target = fs::canonical(folder_).string(), absent = target + "/absent";
  const fs::path before = fs::current_path();
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{"monitor", "a.res", "-startupdir", absent, "-startupdir", target, "b.res"},
       "change directory to " + absent + "\nchange directory to " + target + "\n"},
      {{"monitor", "a.res", "-startupdir"}, ""},
      {{"-startupdir", target}, ""},
  };
  for (const auto& [arguments, output] : cases) {
    fs::current_path(before);
    ConsoleCapture console;
    marine::MonitorMarine monitor(arguments, preferences);
    EXPECT_EQ(console.text(), output) << arguments.size();
    EXPECT_EQ(monitor.preferences().getPreference("Monitor", "Refresh", "1"), "5");
    EXPECT_EQ(fs::current_path(), output.empty() ? before : fs::path(target)) << output;
  }
  EXPECT_EQ(marine::theMonitorMarine(), nullptr);
  fs::current_path(before);
}

}  // namespace
