// A whole marine computation followed while its solver writes it. The parts
// of the input (see fuzzing::splitParts) become, in order, the files of
// kCaseFiles (a file without its part is absent); each further part is
// appended to the next file in turn, with a refresh after each, as the
// solver's rows arrive. Last, the solver starts over: every file is written
// again with its first part only, and the project refreshed once more.
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz_support.h"
#include "marine/project_monitor_marine.h"

namespace {

constexpr std::array<std::string_view, 8> kCaseFiles = {
    "ship.res",   "eff_Fx.dat",    "ship_body_param.dat", "Mvt_hull.dat",
    "eff_AD.dat", "user_data.csv", "eff_FxP.dat",         "eff_My.dat"};

// Enough growth steps to reach every file twice; the last part keeps the
// rest of the input.
constexpr std::size_t kMostParts = 3 * kCaseFiles.size();

// Custom plots over the bodies the seeds describe, so that every refresh
// also evaluates formulas over the histories just read.
constexpr std::array<const char*, 2> kFormulas = {"(Fx_hull + FxP_keel) / t",
                                                  "Z_hull * MyDyn_hull - 1"};

std::string pathOf(std::string_view file) { return fuzzing::scratchFolder() + std::string(file); }

void walkResults(marine::ProjectMonitorMarine& project) {
  const marine::ActuatorDiskTable& disks = project.actuatorDisks();
  for (int d = 0; d < disks.diskCount(); ++d) {
    const marine::ActuatorDisk disk = disks.disk(d);
    for (int q = 0; q < disk.quantityCount(); ++q) {
      for (int step = 0; step < disk.stepCount(); ++step) fuzzing::use(disk.value(q, step));
    }
  }
  for (const marine::BodyObject& body : project.bodies()) {
    for (const double time : body.times()) fuzzing::use(time);
  }
  const marine::CustomPlots& plots = project.customPlots();
  for (std::size_t p = 0; p < plots.size(); ++p) {
    for (const auto& [abscissa, value] : plots.plot(p).points()) fuzzing::use(abscissa + value);
  }
}

void writeFirstParts(const std::vector<std::string_view>& parts) {
  for (std::size_t f = 0; f < kCaseFiles.size(); ++f) {
    if (f < parts.size()) {
      fuzzing::writeFile(pathOf(kCaseFiles[f]), parts[f]);
    } else {
      fuzzing::removeFile(pathOf(kCaseFiles[f]));
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::vector<std::string_view> parts =
      fuzzing::splitParts(fuzzing::asText(data, size), kMostParts);
  writeFirstParts(parts);

  marine::ProjectMonitorMarine project(pathOf(kCaseFiles[0]));
  project.load();
  for (const char* formula : kFormulas) project.customPlots().add(formula);
  project.refresh();
  for (std::size_t p = kCaseFiles.size(); p < parts.size(); ++p) {
    fuzzing::appendFile(pathOf(kCaseFiles[p % kCaseFiles.size()]), parts[p]);
    project.refresh();
  }
  walkResults(project);

  writeFirstParts(parts);
  project.refresh();
  walkResults(project);
  return 0;
}
