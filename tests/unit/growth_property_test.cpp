// Every reader of a growing file, grown the way a solver grows it: its text
// appended in random chunks cut at random bytes (inside numbers, between a
// carriage return and its line feed), refreshed after each chunk. After each
// refresh the reader must hold exactly what a fresh reader finds in the
// whole lines written so far: every complete row once, with its exact
// values, and nothing of a row still being written. Then the file is
// truncated to nothing and grows again with another run's text, and the
// reader must hold only the new run.
#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "console_capture.h"
#include "fileformat/dat_table_reader.h"
#include "marine/component_file.h"
#include "marine/extra_quantities.h"
#include "marine/header_lines.h"
#include "marine/motion_history.h"
#include "marine/project_monitor_marine.h"
#include "marine/res_file_marine.h"
#include "scratch_folder.h"
#include "solver_simulator/marine_case_writer.h"
#include "turbo/project_monitor.h"

namespace {

namespace fs = std::filesystem;

// A reader over the files of one folder, refreshed and described as text.
class Subject {
 public:
  virtual ~Subject() = default;
  virtual void refresh() = 0;
  virtual std::string describe() const = 0;
};

// The values in their shortest exact form.
std::string numbers(const std::vector<double>& values) {
  std::string text;
  char number[32];
  for (const double value : values) {
    text.append(number, std::to_chars(number, number + sizeof number, value).ptr);
    text += ' ';
  }
  return text;
}

class MarineResidualSubject : public Subject {
 public:
  explicit MarineResidualSubject(const fs::path& folder) : file_((folder / "run.res").string()) {}
  // A rewritten file is forgotten; its owner reads it again at once.
  void refresh() override {
    if (file_.update() == fileformat::Update::rewritten) file_.update();
  }
  std::string describe() const override {
    std::ostringstream text;
    text << file_.modeText() << ' ' << file_.residualCount() << '\n';
    for (std::size_t r = 0; r < file_.recordCount(); ++r) {
      const marine::IteResMarine record = file_.record(r);
      std::vector<double> values;
      for (std::size_t v = 0; v < record.valueCount(); ++v)
        values.push_back(record.valueAt(static_cast<long long>(v)));
      text << record.iterationNumber() << ": " << numbers(values) << '\n';
    }
    return text.str();
  }

 private:
  marine::ResFileMarine file_;
};

class TurboResidualSubject : public Subject {
 public:
  explicit TurboResidualSubject(const fs::path& folder)
      : project_((folder / "stage.res").string(), false) {}
  void refresh() override { project_.update(); }
  std::string describe() const override {
    const turbo::ResFile& file = project_.resFile();
    std::ostringstream text;
    text << file.mode() << '\n';
    for (std::size_t r = 0; r < file.recordCount(); ++r) {
      const turbo::IteRes record = file.record(r);
      const std::vector<double> values(record.values().begin(), record.values().end());
      text << record.timeStep() << ' ' << record.iterationNumber() << ' ' << record.physicalTime()
           << ": " << numbers(values) << '\n';
    }
    return text.str();
  }

 private:
  turbo::ProjectMonitor project_;
};

// The force file of two bodies, the first with a sub-body, in an unsteady run.
class ForceFileSubject : public Subject {
 public:
  explicit ForceFileSubject(const fs::path& folder)
      : file_((folder / "eff_Fy.dat").string(), marine::Component::force, 3) {
    startOver();
  }
  // A rewritten file is a new run: its owner starts the bodies over and
  // reads the file again at once.
  void refresh() override {
    if (file_.update(bodies_, true) != fileformat::Update::rewritten) return;
    startOver();
    file_.update(bodies_, true);
  }
  std::string describe() const override {
    std::ostringstream text;
    for (const marine::BodyObject& body : bodies_) {
      text << body.name() << " T " << numbers(body.times()) << " conv "
           << numbers(body.convergedTimes()) << '\n';
      describeHistories(text, body);
      for (std::size_t s = 0; s < body.subBodyCount(); ++s)
        describeHistories(text, body.subBody(s));
    }
    return text.str();
  }

 private:
  static void describeHistories(std::ostringstream& text, const marine::ComponentHistories& owner) {
    for (int q = 0; q < static_cast<int>(marine::kForceNames.size()); ++q) {
      if (const std::vector<double>* values = owner.history(marine::Component::force, q)) {
        text << marine::kForceNames[static_cast<std::size_t>(q)] << ' ' << numbers(*values) << '\n';
      }
    }
  }
  void startOver() {
    bodies_.clear();
    marine::HeaderLines lines({"#QV_BEGIN", "BODY", "NAME hull", "#QV_BEGIN", "SUBBODY",
                               "NAME keel", "#QV_END", "#QV_END", "#QV_BEGIN", "BODY",
                               "NAME rudder", "#QV_END"});
    while (!lines.atEnd()) {
      if (lines.keyword() == "BODY") {
        lines.advance();
        bodies_.emplace_back();
        bodies_.back().readBlock(lines);
        bodies_.back().setRunMode(true);
      }
      lines.advance();
    }
  }

  marine::ComponentFile file_;
  std::vector<marine::BodyObject> bodies_;
};

class MotionSubject : public Subject {
 public:
  explicit MotionSubject(const fs::path& folder) {
    motion_.open((folder / "Mvt_hull.dat").string());
  }
  void refresh() override { motion_.update(); }
  std::string describe() const override {
    std::ostringstream text;
    for (std::size_t c = 0; c < motion_.columnNames().size(); ++c) {
      text << motion_.columnNames()[c] << ' ' << numbers(motion_.values(c)) << '\n';
    }
    text << "T " << numbers(motion_.times());
    return text.str();
  }

 private:
  marine::MotionHistory motion_;
};

class DiskTableSubject : public Subject {
 public:
  explicit DiskTableSubject(const fs::path& folder) {
    reader_.reset((folder / "eff_AD.dat").string());
  }
  void refresh() override { reader_.update(groups_); }
  std::string describe() const override {
    std::ostringstream text;
    for (const fileformat::QuantityGroup& group : groups_) {
      for (std::size_t q = 0; q < group.names.size(); ++q)
        text << group.names[q] << ' ' << numbers(group.values[q]) << '\n';
    }
    return text.str();
  }

 private:
  fileformat::DatTableReader reader_;
  std::vector<fileformat::QuantityGroup> groups_;
};

class UserTableSubject : public Subject {
 public:
  explicit UserTableSubject(const fs::path& folder) { quantities_.reset(folder.string() + "/"); }
  void refresh() override { quantities_.update(); }
  std::string describe() const override {
    std::ostringstream text;
    for (const marine::ExtraQuantity& quantity : quantities_.quantities()) {
      text << quantity.name << " [" << quantity.unit << "] " << numbers(quantity.values) << '\n';
    }
    return text.str();
  }

 private:
  marine::ExtraQuantities quantities_;
};

// A whole marine computation: every curve the model serves.
class MarineProjectSubject : public Subject {
 public:
  explicit MarineProjectSubject(const fs::path& folder)
      : project_((folder / "ship.res").string()) {}
  void refresh() override { project_.refresh(); }
  std::string describe() const override {
    std::ostringstream text;
    marine::ProjectMonitorMarine& project = const_cast<marine::ProjectMonitorMarine&>(project_);
    const marine::ResFileMarine& residuals = project_.resFile();
    for (std::size_t r = 0; r < residuals.recordCount(); ++r) {
      text << residuals.record(r).iterationNumber() << ' ' << residuals.record(r).valueOf("ResU")
           << '\n';
    }
    for (const marine::BodyObject& body : project_.bodies()) {
      text << body.name() << " T " << numbers(body.times()) << '\n';
      for (const marine::Component component :
           {marine::Component::force, marine::Component::moment}) {
        for (int q = 0; q < static_cast<int>(marine::kForceNames.size()); ++q) {
          if (const std::vector<double>* values = body.history(component, q))
            text << q << ' ' << numbers(*values) << '\n';
        }
      }
      if (body.motion().isOpen() && !body.motion().columnNames().empty())
        text << numbers(body.motion().values(0)) << '\n';
    }
    for (int d = 0; d < project_.actuatorDisks().diskCount(); ++d) {
      const marine::ActuatorDisk disk = project_.actuatorDisks().disk(d);
      text << "disk " << d << ' ' << disk.stepCount()
           << (disk.stepCount() > 0 ? " " + std::to_string(disk.value(0, disk.stepCount() - 1))
                                    : "")
           << '\n';
    }
    for (const marine::ExtraQuantity& quantity : project.extraQuantities().quantities()) {
      text << quantity.name << ' ' << numbers(quantity.values) << '\n';
    }
    return text.str();
  }

 private:
  marine::ProjectMonitorMarine project_;
};

// The files of one run: each file's header (written whole, as the solver
// does at the start of a run, or empty when the header may arrive cut too)
// and its rows.
struct RunFile {
  std::string name;
  std::string header;
  std::string rows;
};
using RunFiles = std::vector<RunFile>;

struct GrowingCase {
  const char* what;
  std::function<std::unique_ptr<Subject>(const fs::path&)> open;
  std::vector<RunFiles> runs;  // the first run, then the one that replaces it
  int trials;
};

const std::string kMarineResidualHeader =
    "#CREATED 07/03/2018 13:34:44\n#QV_BEGIN\nCALCUL\nMODE UNSTEADY\n#QV_END\n#COLUMNS itnl cpums "
    "t ResU ResP ResK\n";

// Rows of `count` numbered lines built by `row`; every third line ends in
// CR LF, every fifth is followed by a comment line where the format has them.
std::string rows(int count, const std::function<std::string(int)>& row,
                 const std::string& comment = "") {
  std::string text;
  for (int i = 1; i <= count; ++i) {
    text += row(i) + (i % 3 == 0 ? "\r\n" : "\n");
    if (!comment.empty() && i % 5 == 0) text += comment + "\n";
  }
  return text;
}

std::string value(int i, int k, double scale) {
  std::ostringstream text;
  text.precision(9);
  text << scale * (0.5 + i * 1.125 + k * 0.0625) * (k % 2 == 0 ? 1e-3 : -1.0);
  return text.str();
}

RunFiles marineResidualRun(double scale) {
  return {{"run.res", "",
           kMarineResidualHeader + rows(
                                       40,
                                       [&](int i) {
                                         return std::to_string(i) + " " + value(i, 0, 1.0) + " " +
                                                value(i, 1, 0.1) + " " + value(i, 2, scale) + " " +
                                                value(i, 3, scale) + " " + value(i, 4, scale);
                                       },
                                       "# restart point")}};
}

RunFiles turboResidualRun(double scale) {
  // A long header of version 3.0: 2 blocks of 3D with K-E and one extra
  // equation (8 equations), so 9 + 2 x 2 x 8 = 41 values a record.
  std::string text = "0\n3.0\n2\n3D\nK-E\n1 sp1\n0\n1\nSTEADY\nTURBO\n";
  text += rows(25, [&](int i) {
    std::string record = std::to_string(i);
    for (int k = 0; k < 41; ++k) record += " " + value(i, k, scale);
    return record;
  });
  return {{"stage.res", "", text}};
}

RunFiles forceFileRun(double scale) {
  const std::string header =
      "#QV_BEGIN\nCALCUL\nMODE UNSTEADY\n#QV_END\n#QV_BEGIN\nVARIABLES = T itnl Fy Fy Fy\nNAMES = "
      "hull hull:keel rudder\n"
      "#QV_END\n#COLUMNS T itnl hull hull:keel rudder\n";
  return {{"eff_Fy.dat", "", header + rows(30, [&](int i) {
                               // Every fourth row is the converged row of a time step.
                               const std::string time =
                                   i % 4 == 0 ? "-" + value(i, 0, 1.0) : value(i, 0, 1.0);
                               return time + " " + std::to_string(i) + " " + value(i, 1, scale) +
                                      " " + value(i, 2, scale) + " " + value(i, 3, scale);
                             })}};
}

RunFiles motionRun(double scale) {
  return {{"Mvt_hull.dat", "", "#COLUMNS T = X Z THETA\n" + rows(30, [&](int i) {
                                 return value(i, 0, 1.0) + " " + value(i, 1, scale) + " " +
                                        value(i, 2, scale) + " " + value(i, 3, scale);
                               })}};
}

RunFiles diskTableRun(double scale) {
  return {{"eff_AD.dat", "",
           "VARIABLES = \"T\" \"Load1\" \"Speed1\" \"Load2\" \"Speed2\"\nZONE T=\"disks\"\n" +
               rows(
                   30,
                   [&](int i) {
                     std::string row = value(i, 0, 1.0);
                     for (int k = 1; k <= 4; ++k) row += " " + value(i, k, scale);
                     return row;
                   },
                   "# step")}};
}

RunFiles userTableRun(double scale) {
  return {{"user_data.csv", "", "Time [s]\tHeave force [N]\tFroude number\n" + rows(30, [&](int i) {
                                  return value(i, 0, 1.0) + "\t" + value(i, 1, scale) + "\t" +
                                         value(i, 2, scale);
                                })}};
}

// A marine computation as the solver stand-in writes it: the headers of
// every file at the start of the run, then 30 iterations.
std::vector<RunFiles> marineProjectRuns() {
  const fs::path folder =
      fs::temp_directory_path() / ("growth_property_case_" + std::to_string(::getpid()));
  solver_simulator::MarineCaseWriter writer(
      solver_simulator::defaultCaseSetup(folder, solver_simulator::RunMode::unsteady));
  const auto snapshot = [&] {
    RunFiles run;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
      std::ifstream in(entry.path(), std::ios::binary);
      run.push_back({entry.path().filename().string(),
                     std::string(std::istreambuf_iterator<char>(in), {}), ""});
    }
    std::sort(run.begin(), run.end(),
              [](const RunFile& a, const RunFile& b) { return a.name < b.name; });
    return run;
  };
  const auto grown = [&](RunFiles headers) {
    for (int i = 0; i < 30; ++i) writer.appendIteration();
    RunFiles whole = snapshot();
    for (std::size_t f = 0; f < whole.size(); ++f) {
      whole[f].rows = whole[f].header.substr(headers[f].header.size());
      whole[f].header = headers[f].header;
    }
    return whole;
  };
  writer.writeHeaders();
  const RunFiles first = grown(snapshot());
  writer.restart(writer.setup().stamp.plusSeconds(600));
  const RunFiles second = grown(snapshot());
  fs::remove_all(folder);
  return {first, second};
}

std::vector<GrowingCase> growingCases() {
  const auto runs = [](RunFiles (*make)(double)) {
    return std::vector<RunFiles>{make(1.0), make(-3.5)};
  };
  return {
      {"marine residual file",
       [](const fs::path& f) { return std::make_unique<MarineResidualSubject>(f); },
       runs(marineResidualRun), 100},
      {"turbomachinery residual file",
       [](const fs::path& f) { return std::make_unique<TurboResidualSubject>(f); },
       runs(turboResidualRun), 100},
      {"force file", [](const fs::path& f) { return std::make_unique<ForceFileSubject>(f); },
       runs(forceFileRun), 100},
      {"motion file", [](const fs::path& f) { return std::make_unique<MotionSubject>(f); },
       runs(motionRun), 100},
      {"actuator-disk table",
       [](const fs::path& f) { return std::make_unique<DiskTableSubject>(f); }, runs(diskTableRun),
       100},
      {"user table", [](const fs::path& f) { return std::make_unique<UserTableSubject>(f); },
       runs(userTableRun), 100},
      {"marine computation",
       [](const fs::path& f) { return std::make_unique<MarineProjectSubject>(f); },
       marineProjectRuns(), 10},
  };
}

class GrowthProperty : public ScratchFolder {
 protected:
  void writeFile(const fs::path& folder, const std::string& name, const std::string& text) {
    std::ofstream(folder / name, std::ios::binary | std::ios::trunc) << text;
  }

  // What a fresh reader finds in the whole lines of the growing folder.
  std::string expected(const GrowingCase& c, const std::vector<std::string>& written) {
    const fs::path reference = folder_ / "reference";
    fs::create_directories(reference);
    const RunFiles& names = c.runs.front();
    for (std::size_t f = 0; f < names.size(); ++f) {
      const std::size_t whole = written[f].rfind('\n');
      // Replaced rather than truncated: a truncated file is flushed to the disk on closing.
      fs::remove(reference / names[f].name);
      writeFile(reference, names[f].name,
                whole == std::string::npos ? "" : written[f].substr(0, whole + 1));
    }
    const std::unique_ptr<Subject> fresh = c.open(reference);
    fresh->refresh();
    return fresh->describe();
  }

  // Grows every file of `run` from `written` to its whole text in random
  // chunks, checking the subject after each refresh.
  void grow(const GrowingCase& c, const RunFiles& run, Subject& subject,
            std::vector<std::string>& written, std::mt19937& random, const std::string& where) {
    const fs::path growing = folder_ / "growing";
    std::vector<std::string> whole;
    for (const RunFile& file : run) whole.push_back(file.header + file.rows);
    for (std::size_t step = 0;; ++step) {
      bool complete = true;
      for (std::size_t f = 0; f < run.size(); ++f) {
        // Mostly short chunks, sometimes a long one.
        const std::size_t longest = random() % 4 == 0 ? 400 : 40;
        const std::size_t size =
            std::min<std::size_t>(random() % (longest + 1), whole[f].size() - written[f].size());
        const std::string chunk = whole[f].substr(written[f].size(), size);
        std::ofstream(growing / run[f].name, std::ios::binary | std::ios::app) << chunk;
        written[f] += chunk;
        complete = complete && written[f].size() == whole[f].size();
      }
      subject.refresh();
      ASSERT_EQ(subject.describe(), expected(c, written)) << where << ", step " << step;
      if (complete) return;
    }
  }
};

TEST_F(GrowthProperty, EveryReaderHoldsEachWholeRowOnceAndOnlyTheNewRunAfterATruncation) {
  const ConsoleCapture console;
  std::mt19937 random(20261123);
  for (const GrowingCase& c : growingCases()) {
    for (int trial = 0; trial < c.trials; ++trial) {
      const std::string where = std::string(c.what) + ", trial " + std::to_string(trial);
      const fs::path growing = folder_ / "growing";
      fs::remove_all(growing);
      fs::create_directories(growing);
      std::vector<std::string> written;
      for (const RunFile& file : c.runs[0]) {
        writeFile(growing, file.name, file.header);
        written.push_back(file.header);
      }
      const std::unique_ptr<Subject> subject = c.open(growing);
      grow(c, c.runs[0], *subject, written, random, where);
      if (testing::Test::HasFatalFailure()) return;

      // The solver starts again: every file emptied, then the new run.
      for (std::size_t f = 0; f < written.size(); ++f) {
        writeFile(growing, c.runs[1][f].name, c.runs[1][f].header);
        written[f] = c.runs[1][f].header;
      }
      grow(c, c.runs[1], *subject, written, random, where + ", after the truncation");
      if (testing::Test::HasFatalFailure()) return;
    }
  }
}

}  // namespace
