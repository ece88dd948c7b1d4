// --csv FOLDER: every shown curve as FOLDER/<computation>/<curve>.csv, a
// line "abscissa,value" and then one line per point, numbers that read back
// to the same values. Each file is written whole beside its place, then
// renamed over the old one: a reader never sees half a file. A curve's file
// is written again whenever its computation's curves were judged again.
#pragma once

#include <filesystem>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "watch/curve_report.h"

namespace watch {

// The folder of each computation: the residual file's name without its
// extension ("ship" for case/ship.res), followed by "-2", "-3", ... for the
// second and later computations of the same name.
std::vector<std::string> computationFolderNames(const std::vector<std::string>& residualPaths);

// The file name of a curve: its name with the characters a file name cannot
// hold ('/', '\\', control characters) made '_', then ".csv".
std::string curveFileName(std::string_view curveName);

class CsvFiles {
 public:
  // `residualPaths` in the order of the computations written.
  CsvFiles(std::filesystem::path folder, const std::vector<std::string>& residualPaths);

  // A file that cannot be written is told on standard error, once, and the
  // watch goes on.
  void write(std::span<const ComputationReport* const> computations);

 private:
  bool writeCurve(const std::filesystem::path& path, const CurveReport& curve);

  std::filesystem::path folder_;
  std::vector<std::string> folderNames_;
  std::set<std::string> toldFailures_;
};

}  // namespace watch
