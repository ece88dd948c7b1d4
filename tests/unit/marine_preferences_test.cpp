// The user's preferences file and the marine monitor's start-up options.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "console_capture.h"
#include "marine/monitor_marine.h"
#include "marine/preferences.h"

namespace {

namespace fs = std::filesystem;

class MarinePreferences : public testing::Test {
 protected:
  MarinePreferences() {
    static int serial = 0;
    folder_ = fs::temp_directory_path() /
              ("marine_prefs_" + std::to_string(::getpid()) + "_" + std::to_string(++serial));
    fs::create_directories(folder_);
    path_ = (folder_ / "preferences.dat").string();
  }
  ~MarinePreferences() override { fs::remove_all(folder_); }

  void write(const std::string& text) {
    std::ofstream(path_, std::ios::binary | std::ios::trunc) << text;
  }

  fs::path folder_;
  std::string path_;
};

struct Ask {
  const char* group;
  const char* key;
  const char* fallback;
  const char* answer;
};

TEST_F(MarinePreferences, GroupsAndKeys) {
  const struct {
    const char* what;
    std::string text;
    std::vector<Ask> asks;
  } cases[] = {
      {"the usual group",
       "PRODUCT Monitor\nRefresh 5\nEND_PRODUCT\n",
       {{"Monitor", "REFRESH", "1", "5"},
        {"Monitor", "refresh", "1", "5"},
        {"Monitor", "rEfReSh", "1", "5"},
        {"monitor", "refresh", "1", "1"},
        {"Monitor", "size", "7", "7"},
        {"Other", "refresh", "x", "x"}}},
      {"keywords without regard to case",
       "product Monitor\nrefresh 7\nEND_product\nRefresh 9\n",
       {{"Monitor", "Refresh", "1", "7"}}},
      {"key without value",
       "PRODUCT Monitor\nSize\nTheme   \t\nEND_PRODUCT\n",
       {{"Monitor", "size", "12", ""}, {"Monitor", "theme", "dark", ""}}},
      {"repeated key",
       "PRODUCT Monitor\nSize 1\nSize 2\nSIZE 3\nWidth 4\nwidth 5\nEND_PRODUCT\n",
       {{"Monitor", "size", "0", "3"}, {"Monitor", "WIDTH", "0", "5"}}},
      {"group never closed",
       "PRODUCT Monitor\nRefresh 5\nPRODUCT Other\nTheme dark\n",
       {{"Monitor", "refresh", "1", "5"},
        {"Monitor", "product", "-", "Other"},
        {"Monitor", "theme", "-", "dark"},
        {"Other", "theme", "-", "-"}}},
      {"carriage returns",
       "PRODUCT Monitor\r\nRefresh 5\r\nEND_PRODUCT\r\nPRODUCT Plot\r\nSize 3\r\n",
       {{"Monitor", "refresh", "1", "5"}, {"Plot", "size", "1", "3"}}},
      {"lines outside groups",
       "Refresh 9\nPRODUCT Monitor\nEND_PRODUCT\nRefresh 8\n",
       {{"Monitor", "refresh", "1", "1"}, {"", "refresh", "1", "1"}}},
      {"value is the rest of the line",
       "PRODUCT Monitor\nTitle   My   case \t\nPath\tC:\\cases\\a b\nEND_PRODUCT\n",
       {{"Monitor", "title", "", "My   case"}, {"Monitor", "path", "", "C:\\cases\\a b"}}},
      {"group name is the rest of the line",
       "PRODUCT   Flow  Monitor  \nRefresh 2\nEND_PRODUCT\n",
       {{"Flow  Monitor", "refresh", "1", "2"}, {"Flow", "refresh", "1", "1"}}},
      {"group opened twice",
       "PRODUCT Monitor\nA 1\nEND_PRODUCT\nPRODUCT Plot\nA 9\nEND_PRODUCT\nPRODUCT Monitor\nB "
       "2\nEND_PRODUCT\n",
       {{"Monitor", "a", "-", "1"}, {"Monitor", "b", "-", "2"}, {"Plot", "a", "-", "9"}}},
      {"blank lines and look-alikes",
       "\n   \nPRODUCTS Monitor\nPRODUCT Monitor\n\n  \t \nEND_PRODUCTS yes\nEND_PRODUCT\n",
       {{"Monitor", "end_products", "-", "yes"}, {"Monitor", "", "-", "-"}}},
      {"indented lines",
       "  PRODUCT Monitor\n\tRefresh 4\n  END_PRODUCT\n",
       {{"Monitor", "refresh", "1", "4"}}},
  };
  for (const auto& c : cases) {
    write(c.text);
    marine::Preferences preferences;
    ConsoleCapture console;
    preferences.read(path_);
    for (const Ask& ask : c.asks) {
      EXPECT_EQ(preferences.getPreference(ask.group, ask.key, ask.fallback), ask.answer)
          << c.what << ": " << ask.group << " / " << ask.key;
    }
    EXPECT_EQ(console.text(), "") << c.what;
  }
}

TEST_F(MarinePreferences, ReadingAgainReplacesTheTable) {
  write("PRODUCT Monitor\nRefresh 5\nEND_PRODUCT\n");
  marine::Preferences preferences;
  preferences.read(path_);
  ASSERT_EQ(preferences.getPreference("Monitor", "refresh", "1"), "5");
  write("PRODUCT Monitor\nSize 3\nEND_PRODUCT\n");
  preferences.read(path_);
  EXPECT_EQ(preferences.getPreference("Monitor", "refresh", "1"), "1");
  EXPECT_EQ(preferences.getPreference("Monitor", "size", "1"), "3");
  for (const std::string& unreadable : {(folder_ / "absent.dat").string(), folder_.string()}) {
    ConsoleCapture console;
    preferences.read(unreadable);
    EXPECT_EQ(preferences.getPreference("Monitor", "size", "1"), "1") << unreadable;
    EXPECT_EQ(console.text(), "") << unreadable;
  }
}

// ---------------------------------------------------------------------------
// The marine monitor's construction

// Puts the working folder back whatever a test did to it.
class WorkingFolderGuard {
 public:
  WorkingFolderGuard() : saved_(fs::current_path()) {}
  ~WorkingFolderGuard() { fs::current_path(saved_); }

 private:
  fs::path saved_;
};

using MarineMonitorStart = MarinePreferences;

TEST_F(MarineMonitorStart, PreferencesFileLocation) {
  EXPECT_EQ(marine::MonitorMarine::preferencesPathFor("/home/ana/.talvik/tmp"),
            "/home/ana/.talvik/tmp/../preferences.dat");
  EXPECT_EQ(marine::MonitorMarine::preferencesPathFor("C:\\Users\\ana\\.talvik\\tmp\\"),
            "C:\\Users\\ana\\.talvik\\tmp\\/../preferences.dat");
}

TEST_F(MarineMonitorStart, ReadsThePreferencesAndBecomesTheMonitor) {
  fs::create_directories(folder_ / "tmp");
  write("PRODUCT Monitor\nRefresh 5\nEND_PRODUCT\n");
  {
    ConsoleCapture console;
    marine::MonitorMarine monitor(
        {"monitor"}, marine::MonitorMarine::preferencesPathFor((folder_ / "tmp").string()));
    EXPECT_EQ(console.text(), "");
    EXPECT_EQ(marine::theMonitorMarine(), &monitor);
    EXPECT_EQ(monitor.preferences().getPreference("Monitor", "Refresh", "1"), "5");
    EXPECT_TRUE(monitor.projects().empty());
  }
  EXPECT_EQ(marine::theMonitorMarine(), nullptr);
}

TEST_F(MarineMonitorStart, StartupFolderOption) {
  const std::string target = fs::canonical(folder_).string();
  WorkingFolderGuard guard;
  const fs::path before = fs::current_path();
  const struct {
    const char* what;
    std::vector<std::string> arguments;
    std::string output;
    bool changes;
  } cases[] = {
      {"folder given",
       {"monitor", "-startupdir", target},
       "change directory to " + target + "\n",
       true},
      {"among other arguments",
       {"monitor", "a.res", "-startupdir", target, "b.res"},
       "change directory to " + target + "\n",
       true},
      {"option last", {"monitor", "a.res", "-startupdir"}, "", false},
      {"program named like the option", {"-startupdir", target}, "", false},
      {"option spelled otherwise", {"monitor", "-StartupDir", target}, "", false},
      {"no arguments", {}, "", false},
      {"folder that does not exist",
       {"monitor", "-startupdir", target + "/absent"},
       "change directory to " + target + "/absent\n",
       false},
  };
  for (const auto& c : cases) {
    fs::current_path(before);
    ConsoleCapture console;
    marine::MonitorMarine monitor(c.arguments, path_);
    EXPECT_EQ(console.text(), c.output) << c.what;
    EXPECT_EQ(fs::current_path(), c.changes ? fs::path(target) : before) << c.what;
  }
}

TEST_F(MarineMonitorStart, RelativeProjectPathsResolveInTheStartupFolder) {
  const std::string target = fs::canonical(folder_).string();
  WorkingFolderGuard guard;
  ConsoleCapture console;
  marine::MonitorMarine monitor({"monitor", "-startupdir", target}, path_);
  const marine::ProjectMonitorMarine project("ship.res");
  EXPECT_EQ(project.folder(), target + "/");
}

}  // namespace
