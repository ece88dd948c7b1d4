#include "turbo/commands/curve_sources.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "script/argument_reading.h"
#include "turbo/commands/residual_curves.h"
#include "turbo/curve_names.h"
#include "turbo/monitor.h"

namespace turbo {
namespace {

using plot::Point;
using Source = std::unique_ptr<plot::CurveSource>;

std::string quoted(const std::string& text) { return "\"" + text + "\""; }

const ResFile* residualHistory(const std::string& path, std::string& complaint) {
  const ProjectMonitor* project = theMonitor()->findProject(path);
  if (project == nullptr) complaint = "no computation " + quoted(path) + " is open";
  return project == nullptr ? nullptr : &project->resFile();
}

bool blockHeld(const ResFile& file, std::int32_t block, std::string& complaint) {
  if (block >= 0 && static_cast<std::uint32_t>(block) < file.nbBlocks()) return true;
  complaint = "no block " + std::to_string(block) + " in " + quoted(file.path()) + " (it has " +
              std::to_string(file.nbBlocks()) + ")";
  return false;
}

// The points of the value at `position` of every record.
Source recordCurve(const ResFile& file, std::int64_t position, bool sinceFirst) {
  return plot::pointsByPosition(file.recordCount(), [&file, position, sinceFirst](std::size_t i) {
    const auto record = static_cast<long long>(i);
    const float value =
        sinceFirst ? residualChange(file, record, position) : recordValue(file, record, position);
    return Point{recordAbscissa(file, record), static_cast<double>(value)};
  });
}

Source global(ArgStream& arguments, std::string& complaint) {
  const std::string path = textArgument(arguments);
  const std::int32_t code = integerArgument(arguments);
  const ResFile* file = residualHistory(path, complaint);
  if (file == nullptr) return nullptr;
  const char* name = globalCurveName(code);
  if (name == nullptr) {
    complaint = "no global curve of code " + std::to_string(code);
    return nullptr;
  }
  return recordCurve(
      *file, indexOf(name, 0, file->nbVars(), theMonitor()->currentTurbulenceCount()), false);
}

Source blockResidual(const std::string& path, const std::string& name, std::int32_t block,
                     std::string& complaint) {
  const ResFile* file = residualHistory(path, complaint);
  if (file == nullptr || !blockHeld(*file, block, complaint)) return nullptr;
  return recordCurve(
      *file, indexOf(name, block, file->nbVars(), theMonitor()->currentTurbulenceCount()), true);
}

Source block(ArgStream& arguments, std::string& complaint) {
  const std::string path = textArgument(arguments);
  const std::int32_t code = integerArgument(arguments);
  const std::int32_t blockIndex = integerArgument(arguments);
  return blockResidual(path, blockResidualName(code), blockIndex, complaint);
}

Source harmonic(ArgStream& arguments, std::string& complaint) {
  const std::string path = textArgument(arguments);
  const std::int32_t code = integerArgument(arguments);
  const std::string prefix = textArgument(arguments);
  const std::int32_t blockIndex = integerArgument(arguments);
  return blockResidual(path, harmonicResidualName(code, prefix), blockIndex, complaint);
}

// Point n of a blade curve is the pair of values 2n and 2n + 1.
template <typename FileMonitor>
Source bladeCurve(BladeFileRegistry<FileMonitor>& registry, std::string_view noun,
                  std::initializer_list<std::string_view> sides, ArgStream& arguments,
                  std::string& complaint) {
  const std::string path = textArgument(arguments);
  const std::string side = textArgument(arguments);
  FileMonitor* monitor = registry.find(path);
  if (monitor == nullptr) {
    complaint = "no " + std::string(noun) + " " + quoted(path) + " is open";
    return nullptr;
  }
  if (std::find(sides.begin(), sides.end(), side) == sides.end()) {
    complaint = "no side " + quoted(side) + " in a " + std::string(noun);
    return nullptr;
  }
  const auto& file = monitor->file();
  const int count = file.nbPts(side);
  return plot::pointsByPosition(static_cast<std::size_t>(std::max(count, 0)),
                                [&file, side](std::size_t i) {
                                  const auto x = 2LL * static_cast<long long>(i);
                                  return Point{static_cast<double>(file.value(side, x)),
                                               static_cast<double>(file.value(side, x + 1))};
                                });
}

Source diagram(ArgStream& arguments, std::string& complaint) {
  return bladeCurve(theMonitor()->diagrams(), "diagram",
                    {"Extrado_1", "Extrado_2", "Intrado_1", "Intrado_2"}, arguments, complaint);
}

Source profile(ArgStream& arguments, std::string& complaint) {
  return bladeCurve(theMonitor()->profiles(), "profile", {"Extrado", "Intrado"}, arguments,
                    complaint);
}

constexpr std::array<CurveSourceRow, 5> kSources{{
    {"global", "path code", global},
    {"block", "path code block", block},
    {"harmonic", "path code prefix block", harmonic},
    {"diagram", "path side", diagram},
    {"profile", "path side", profile},
}};

}  // namespace

std::span<const CurveSourceRow> curveSources() { return kSources; }

}  // namespace turbo
