#include "watch/turbo_catalogue.h"

#include "turbo/curve_names.h"

namespace watch {
namespace {

using plot::Point;

constexpr const char* kFlowEquations[] = {"d", "wx", "wy", "wz", "E"};

// The curve of the value at `position` of every record.
NamedCurve recordCurve(const turbo::ResFile& file, std::string name, bool residual,
                       std::int64_t position) {
  return {std::move(name), residual,
          plot::pointsByPosition(file.recordCount(), [&file, position](std::size_t i) {
            const turbo::IteRes record = file.record(i);
            return Point{static_cast<double>(record.iterationNumber()),
                         static_cast<double>(record.valueAt(position))};
          })};
}

}  // namespace

std::vector<TurboEquation> turboEquations(const turbo::ResFile& file) {
  std::vector<TurboEquation> equations;
  for (const char* name : kFlowEquations) equations.push_back({name, name});
  if (file.module() == "TF") equations.push_back({"bladeForce", "bladeForce"});
  const std::string& turbulence = file.turbulence();
  if (turbulence == "K-E") {
    equations.push_back({"k", "k"});
    equations.push_back({"eps", "eps"});
  } else if (turbulence == "K-O") {
    equations.push_back({"k", "k"});
    equations.push_back({"omega", "eps"});
  } else if (turbulence == "SPL-ALM") {
    equations.push_back({"nu", "nu"});
  }
  // A short header gives the equation count alone: names past it would
  // read the next block's values.
  if (equations.size() > file.nbVars()) equations.resize(file.nbVars());
  int extra = 0;
  for (const auto* names : {&file.extraNames1(), &file.extraNames2()}) {
    for (const std::string& name : *names) {
      if (++extra > turbo::kHarmonicCount || equations.size() >= file.nbVars()) return equations;
      equations.push_back({name, "harm" + std::to_string(extra)});
    }
  }
  return equations;
}

std::string blockCurveName(std::string_view kind, std::string_view equation, std::uint32_t block) {
  return std::string(kind) + "_" + std::string(equation) + "_block" + std::to_string(block + 1);
}

std::vector<NamedCurve> turboCurves(const turbo::ResFile& file) {
  turbo::buildCurveNameTables();
  std::vector<NamedCurve> curves;
  const int turbulenceCount = turbo::turbulenceEquationCount(file.turbulence());
  const auto positionOf = [&](const std::string& tableName, std::uint32_t block) {
    return turbo::indexOf(tableName, block, file.nbVars(), turbulenceCount);
  };
  for (const std::string& name : turbo::globalNames()) {
    curves.push_back(recordCurve(file, name, false, positionOf(name, 0)));
  }
  const std::vector<TurboEquation> equations = turboEquations(file);
  for (std::uint32_t block = 0; block < file.nbBlocks(); ++block) {
    for (const char* kind : {"rms", "max"}) {
      for (const TurboEquation& equation : equations) {
        curves.push_back(
            recordCurve(file, blockCurveName(kind, equation.name, block), true,
                        positionOf(std::string(kind) + "_" + equation.tableName, block)));
      }
    }
  }
  return curves;
}

}  // namespace watch
