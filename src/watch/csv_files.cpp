#include "watch/csv_files.h"

#include <fstream>
#include <map>
#include <system_error>

#ifdef _WIN32
#include <process.h>
#else
#include <unistd.h>
#endif

#include "watch/messages.h"
#include "watch/number_text.h"

namespace watch {
namespace {

int processId() {
#ifdef _WIN32
  return _getpid();
#else
  return static_cast<int>(::getpid());
#endif
}

}  // namespace

std::vector<std::string> computationFolderNames(const std::vector<std::string>& residualPaths) {
  std::vector<std::string> names;
  std::map<std::string, int> uses;
  for (const std::string& path : residualPaths) {
    std::string name = std::filesystem::path(path).stem().string();
    if (name.empty()) name = "computation";
    const int use = ++uses[name];
    names.push_back(use == 1 ? name : name + "-" + std::to_string(use));
  }
  return names;
}

std::string curveFileName(std::string_view curveName) {
  std::string name(curveName.empty() ? "_" : curveName);
  for (char& c : name) {
    if (c == '/' || c == '\\' || static_cast<unsigned char>(c) < 0x20) c = '_';
  }
  return name + ".csv";
}

CsvFiles::CsvFiles(std::filesystem::path folder, const std::vector<std::string>& residualPaths)
    : folder_(std::move(folder)), folderNames_(computationFolderNames(residualPaths)) {}

void CsvFiles::write(std::span<const ComputationReport* const> computations) {
  for (std::size_t c = 0; c < computations.size() && c < folderNames_.size(); ++c) {
    const ComputationReport& computation = *computations[c];
    if (!computation.fresh) continue;
    const std::filesystem::path folder = folder_ / folderNames_[c];
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    for (const CurveReport& curve : computation.curves) {
      if (!curve.shown) continue;
      const std::filesystem::path path = folder / curveFileName(curve.name);
      if (writeCurve(path, curve)) {
        toldFailures_.erase(path.string());
      } else if (toldFailures_.insert(path.string()).second) {
        tell("cannot write " + path.string() + "; the watch goes on without it");
      }
    }
  }
}

bool CsvFiles::writeCurve(const std::filesystem::path& path, const CurveReport& curve) {
  std::filesystem::path written = path;
  written += "." + std::to_string(processId()) + ".new";
  {
    std::ofstream out(written, std::ios::binary | std::ios::trunc);
    out << "abscissa,value\n";
    const std::vector<double>& x = curve.points.x();
    const std::vector<double>& y = curve.points.y();
    for (std::size_t i = 0; i < x.size(); ++i) {
      out << exactNumber(x[i]) << ',' << exactNumber(y[i]) << '\n';
    }
    out.flush();
    if (!out) {
      std::error_code ignored;
      std::filesystem::remove(written, ignored);
      return false;
    }
  }
  std::error_code error;
  std::filesystem::rename(written, path, error);
  if (!error) return true;
  std::filesystem::remove(written, error);
  return false;
}

}  // namespace watch
