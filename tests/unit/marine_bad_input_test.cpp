// Damaged, empty, oversized and misplaced files: the marine readers carry on
// and keep everything they had already read.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "console_capture.h"
#include "fileformat/dat_table_reader.h"
#include "fileformat/line_helpers.h"
#include "marine/component_file.h"
#include "marine/extra_quantities.h"
#include "marine/header_lines.h"
#include "marine/motion_history.h"
#include "marine/preferences.h"
#include "marine/project_monitor_marine.h"
#include "marine/res_file_marine.h"

namespace {

namespace fs = std::filesystem;
using Doubles = std::vector<double>;

class MarineBadInput : public testing::Test {
 protected:
  MarineBadInput() {
    static int serial = 0;
    folder_ = fs::temp_directory_path() /
              ("marine_bad_" + std::to_string(::getpid()) + "_" + std::to_string(++serial));
    fs::create_directories(folder_);
    dir_ = folder_.string() + "/";
  }
  ~MarineBadInput() override { fs::remove_all(folder_); }

  void write(const std::string& name, const std::string& text) {
    std::ofstream(dir_ + name, std::ios::binary | std::ios::trunc) << text;
  }
  void append(const std::string& name, const std::string& text) {
    std::ofstream(dir_ + name, std::ios::binary | std::ios::app) << text;
  }

  fs::path folder_;
  std::string dir_;
};

const std::string kBinary = std::string("\x01\x02\xff\xfe\x00\x7f\x80", 7);

// Lines that are no row of any of the files.
const std::vector<std::string> kGarbageLines = {
    "hello world", kBinary,      kBinary + " " + kBinary, std::string(100000, 'x'), "1", "=",
    "\t\t",        "2 0.5 +INF",
};

TEST_F(MarineBadInput, GarbageBetweenResidualRows) {
  const std::string header =
      "#QV_BEGIN\nCALCUL\nMODE STEADY\n#QV_END\n#COLUMNS itnl cpums ResU ResV ResW ResP\n";
  write("case.res", header + "1 0.5 0.5 0.25 0.125 0.0625\n");
  marine::ResFileMarine file(dir_ + "case.res");
  ConsoleCapture console;
  ASSERT_EQ(file.update(), fileformat::Update::appended);
  int iteration = 1;
  for (const std::string& garbage : kGarbageLines) {
    append("case.res", garbage + "\n");
    EXPECT_EQ(file.update(), fileformat::Update::unchanged);
    append("case.res", std::to_string(++iteration) + " 0.5 0.5 0.25 0.125 0.0625\n");
    EXPECT_EQ(file.update(), fileformat::Update::appended);
  }
  EXPECT_EQ(console.text(), "");
  ASSERT_EQ(file.recordCount(), kGarbageLines.size() + 1);
  for (std::size_t i = 0; i < file.recordCount(); ++i) {
    EXPECT_EQ(file.record(i).iterationNumber(), static_cast<int>(i) + 1);
    EXPECT_EQ(file.record(i).valueOf("ResP"), 0.0625);
  }
}

TEST_F(MarineBadInput, OversizedResidualColumnsLine) {
  std::string columns = "#COLUMNS itnl cpums";
  std::string row = "1 0.5";
  for (int i = 0; i < 20000; ++i) {
    columns += i % 2 == 0 ? " ResU" : " ResP";
    row += " 0.25";
  }
  write("case.res",
        "#QV_BEGIN\nCALCUL\nMODE STEADY\n#QV_END\n" + columns + "\n" + row + "\n2 0.5 0.25\n");
  marine::ResFileMarine file(dir_ + "case.res");
  ConsoleCapture console;
  EXPECT_TRUE(file.readHeader());
  EXPECT_EQ(file.update(), fileformat::Update::appended);
  EXPECT_EQ(file.recordCount(), 1u);
  EXPECT_EQ(file.record(0).valueOf("ResU"), 0.25);
  EXPECT_EQ(console.text(), "");
}

TEST_F(MarineBadInput, GarbageBetweenForceRows) {
  write("eff_Fx.dat",
        "#QV_BEGIN\nVARIABLES = T itnl Fx Fx\nNAMES = hull rudder\n#QV_END\n#COLUMNS T itnl hull "
        "rudder\n"
        "0.0 1 1.5 4.5\n");
  std::vector<marine::BodyObject> bodies(2);
  {
    marine::HeaderLines lines({"NAME hull", "#QV_END", "NAME rudder", "#QV_END"});
    bodies[0].readBlock(lines);
    bodies[1].readBlock(lines);
  }
  for (auto& body : bodies) body.setRunMode(true);
  marine::ComponentFile file(dir_ + "eff_Fx.dat", marine::Component::force, 0);
  ConsoleCapture console;
  ASSERT_TRUE(file.readHeader(bodies));
  file.update(bodies, false);
  Doubles expected = {1.5};
  for (const std::string& garbage : kGarbageLines) {
    append("eff_Fx.dat", garbage + "\n");
    file.update(bodies, false);
    append("eff_Fx.dat", "0.0 2 1.25 4.25\n");
    EXPECT_EQ(file.update(bodies, false), fileformat::Update::appended);
    expected.push_back(1.25);
  }
  // A value that a damaged row did bring stays with its body; the good rows
  // are all there.
  std::vector<double> hull;
  for (int i = 0; i < bodies[0].realTimesteps(marine::Component::force, "Fx"); ++i)
    hull.push_back(bodies[0].element(marine::Component::force, "Fx", i));
  std::vector<double> rudder;
  for (int i = 0; i < bodies[1].realTimesteps(marine::Component::force, "Fx"); ++i)
    rudder.push_back(bodies[1].element(marine::Component::force, "Fx", i));
  EXPECT_EQ(std::count(hull.begin(), hull.end(), 1.25), static_cast<long>(kGarbageLines.size()));
  EXPECT_EQ(std::count(rudder.begin(), rudder.end(), 4.25),
            static_cast<long>(kGarbageLines.size()));
  EXPECT_EQ(hull.front(), 1.5);
  EXPECT_EQ(rudder.front(), 4.5);
  EXPECT_NE(console.text().find("Wrong eff file format, cannot read force value\n"),
            std::string::npos);
}

TEST_F(MarineBadInput, GarbageBetweenMotionRows) {
  write("Mvt_hull.dat", "#COLUMNS T = X Z\n0.0 1.5 2.5\n");
  marine::MotionHistory motion;
  ConsoleCapture console;
  motion.open(dir_ + "Mvt_hull.dat");
  motion.update();
  for (const std::string& garbage : kGarbageLines) {
    append("Mvt_hull.dat", garbage + "\n0.5 1.25 2.25\n");
    EXPECT_NE(motion.update(), fileformat::Update::missing);
  }
  std::size_t good = 0;
  for (std::size_t i = 0; i < motion.rowCount(); ++i) good += motion.values(1)[i] == 2.25 ? 1 : 0;
  EXPECT_EQ(good, kGarbageLines.size());
  EXPECT_EQ(motion.values(1).front(), 2.5);
}

TEST_F(MarineBadInput, ManyBodiesAndColumns) {
  constexpr int kBodies = 1000;
  std::string description;
  std::string names;
  std::string row = "0.0 1";
  for (int b = 0; b < kBodies; ++b) {
    description += "#QV_BEGIN\nBODY\nNAME b" + std::to_string(b) + "\n#QV_END\n";
    names += " b" + std::to_string(b);
    row += " " + std::to_string(b) + ".5";
  }
  // Unknown names too, many of them.
  for (int u = 0; u < 200; ++u) {
    names += " ghost" + std::to_string(u);
    row += " 0.0";
  }
  std::string variables = "T itnl";
  for (int c = 0; c < kBodies + 200; ++c) variables += " Fx";
  const std::string columns = "#QV_BEGIN\nVARIABLES = " + variables + "\nNAMES =" + names +
                              "\n#QV_END\n#COLUMNS T itnl" + names + "\n";
  write("ship.res",
        "#QV_BEGIN\nCALCUL\nMODE STEADY\n#QV_END\n#COLUMNS itnl cpums ResU\n1 0.5 0.25\n");
  write("ship_body_param.dat", description);
  write("eff_Fx.dat", "#QV_BEGIN\nCALCUL\nMODE STEADY\n#QV_END\n" + columns + row + "\n");
  write("eff_Mz.dat", columns + row + "\n");
  marine::ProjectMonitorMarine project(dir_ + "ship.res");
  ConsoleCapture console;
  ASSERT_TRUE(project.load());
  project.refresh();
  ASSERT_EQ(project.bodies().size(), static_cast<std::size_t>(kBodies));
  EXPECT_EQ(project.bodies().back().name(), "b999");
  EXPECT_EQ(project.bodies().back().element(marine::Component::force, "Fx", 0), 999.5);
  EXPECT_EQ(project.bodies()[17].element(marine::Component::moment, "Mz", 0), 17.5);
  EXPECT_NE(console.text().find("Unknown body: ghost199\n"), std::string::npos);
  EXPECT_NE(console.text().find("Unknow body ghost199\n"), std::string::npos);
}

TEST_F(MarineBadInput, EmptyFiles) {
  for (const char* name : {"ship.res", "ship_body_param.dat", "eff_Fx.dat", "eff_FxP.dat",
                           "eff_Mx.dat", "Mvt_hull.dat", "eff_AD.dat"}) {
    write(name, "");
  }
  marine::ProjectMonitorMarine project(dir_ + "ship.res");
  ConsoleCapture console;
  EXPECT_FALSE(project.load());
  EXPECT_EQ(
      console.text(),
      "No #CREATED tag found in the .res file.\nRe-running the solver may give a wrong picture.\n"
      "Reading eff_Fx.dat for steadiness...\n"
      "Reading ...body_param.dat file for body structure ...\n"
      "Warning! Couldn't find bodies in " +
          dir_ +
          "ship_body_param.dat.\nGoing to fallback mode...\n"
          "BAD FILE FORMAT .res\n");
  EXPECT_TRUE(project.bodies().empty());
  EXPECT_FALSE(project.refresh().succeeded);

  marine::Preferences preferences;
  preferences.read(dir_ + "eff_AD.dat");
  EXPECT_EQ(preferences.getPreference("Monitor", "refresh", "1"), "1");
}

TEST_F(MarineBadInput, FoldersWhereFilesBelong) {
  write("ship.res",
        "#CREATED 07/03/2018 13:34:44\n#QV_BEGIN\nCALCUL\nMODE STEADY\n#QV_END\n#COLUMNS itnl "
        "cpums ResU\n"
        "1 0.5 0.25\n");
  write(
      "eff_Fx.dat",
      "#QV_BEGIN\nCALCUL\nMODE STEADY\n#QV_END\n#QV_BEGIN\nBODY\nNAME hull\n#QV_END\n"
      "#QV_BEGIN\nVARIABLES = T itnl Fx\nNAMES = hull\n#QV_END\n#COLUMNS T itnl hull\n0.0 1 1.5\n");
  for (const char* name : {"ship_body_param.dat", "Mvt_hull.dat", "eff_FxP.dat", "eff_AD.dat"}) {
    fs::create_directories(folder_ / name);
  }
  marine::ProjectMonitorMarine project(dir_ + "ship.res");
  ConsoleCapture console;
  ASSERT_TRUE(project.load());
  const std::string output = console.text();
  EXPECT_NE(output.find("Cannot read file " + dir_ +
                        "ship_body_param.dat. Please check if the file exists \n"),
            std::string::npos);
  EXPECT_NE(output.find("No file " + dir_ + "eff_FxP.dat\n"), std::string::npos);
  EXPECT_EQ(output.find("Found Mvt body"), std::string::npos);
  EXPECT_NE(output.find("Body Motion List is empty\n"), std::string::npos);
  const marine::ProjectMonitorMarine::Refresh refresh = project.refresh();
  EXPECT_TRUE(refresh.succeeded);
  EXPECT_EQ(project.bodies()[0].element(marine::Component::force, "Fx", 0), 1.5);
  EXPECT_EQ(project.actuatorDisks().diskCount(), 0);

  marine::ProjectMonitorMarine folderAsCase(dir_ + "eff_FxP.dat");
  ConsoleCapture second;
  EXPECT_FALSE(folderAsCase.load());
  EXPECT_EQ(second.text(), "Residual file " + dir_ + "eff_FxP.dat is not found\n");
}

// A note line in the body description must not hide the bodies after it.
TEST_F(MarineBadInput, StrayLineInBodyDescriptionKeepsLaterBodies) {
  write("ship.res", "#QV_BEGIN\nCALCUL\nMODE STEADY\n#QV_END\n#COLUMNS itnl cpums ResU\n");
  write("eff_Fx.dat", "#QV_BEGIN\nCALCUL\nMODE STEADY\n#QV_END\n");
  write("ship_body_param.dat",
        "#QV_BEGIN\nBODY\nNAME hull\n#QV_END\n"
        "hull and rudder of the 2018 model\n"
        "#QV_BEGIN\nBODY\nNAME rudder\n#QV_END\n");
  marine::ProjectMonitorMarine project(dir_ + "ship.res");
  ConsoleCapture console;
  ASSERT_TRUE(project.load());
  ASSERT_EQ(project.bodies().size(), 2u);
  EXPECT_EQ(project.bodies()[1].name(), "rudder");
}

TEST_F(MarineBadInput, OutOfRangeNumbers) {
  write("case.res",
        "#QV_BEGIN\nCALCUL\nMODE STEADY\n#QV_END\n#COLUMNS itnl cpums ResU\n"
        "99999999999999999999 1e999 1e999\n-99999999999999999999 0.5 -1e999\n3 0.5 1e-999\n");
  marine::ResFileMarine file(dir_ + "case.res");
  ConsoleCapture console;
  EXPECT_EQ(file.update(), fileformat::Update::appended);
  ASSERT_EQ(file.recordCount(), 3u);
  EXPECT_EQ(file.record(0).iterationNumber(), 2147483647);
  EXPECT_EQ(file.record(1).iterationNumber(), -2147483647 - 1);
  EXPECT_EQ(file.record(2).iterationNumber(), 3);
  EXPECT_EQ(console.text(), "");
}

// A header naming more columns than any computation has: the readers keep
// the first ones, say so once, and stay bounded.
TEST_F(MarineBadInput, HeadersNamingTooManyColumnsAreCut) {
  // Column names q1 ... q7 over and over, one more than the limit and then some.
  const auto names = [](const std::string& separator) {
    std::string text = "q1";
    for (std::size_t c = 1; c < fileformat::kMaxColumns + 10; ++c)
      text += separator + "q" + std::to_string(c % 7 + 1);
    return text;
  };
  const struct {
    const char* file;
    std::string header;
    std::function<std::size_t(const std::string&)> columnsRead;
  } cases[] = {
      {"Mvt_hull.dat", "#COLUMNS T = " + names(" ") + "\n",
       [](const std::string& path) {
         marine::MotionHistory motion;
         motion.open(path);
         return motion.columnNames().size();
       }},
      {"user_data.csv", names("\t") + "\n",
       [this](const std::string&) {
         marine::ExtraQuantities quantities;
         quantities.reset(dir_);
         quantities.update();
         return quantities.quantities().size();
       }},
      {"eff_AD.dat", "VARIABLES = " + names(", ") + "\n",
       [](const std::string& path) {
         fileformat::DatTableReader reader;
         reader.reset(path);
         std::vector<fileformat::QuantityGroup> groups;
         reader.update(groups);
         return reader.columnNames().size();
       }},
  };
  for (const auto& c : cases) {
    write(c.file, c.header);
    const ConsoleCapture console;
    EXPECT_EQ(c.columnsRead(dir_ + c.file), fileformat::kMaxColumns) << c.file;
    EXPECT_EQ(
        console.text().substr(0, console.text().find('\n') + 1),
        "More than 65536 columns in " + dir_ + c.file + "; the columns after them are not read\n")
        << c.file;
  }
}

}  // namespace
