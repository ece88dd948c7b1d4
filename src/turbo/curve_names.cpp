#include "turbo/curve_names.h"

#include <unordered_map>

namespace turbo {
namespace {

// What a name stands for: a global value, or a residual of one equation,
// possibly counted from the first extra equation.
struct CurveEntry {
  enum class Kind { global, equation, extraEquation };
  Kind kind;
  int number;  // global position, equation, or extra equation
  bool rms;
};

struct Tables {
  std::vector<std::string> globals;
  std::unordered_map<std::string, CurveEntry> entries;
};

Tables& tables() {
  static Tables instance;
  return instance;
}

void add(Tables& t, std::string name, CurveEntry entry) {
  t.entries.emplace(std::move(name), entry);
}

}  // namespace

void buildCurveNameTables() {
  Tables& t = tables();
  if (!t.entries.empty()) return;
  using Kind = CurveEntry::Kind;
  t.globals = {"WorkUnit", "pu", "Lift", "Axial thrust", "Torque", "Qmax", "Tmax", "In", "Out"};
  for (int g = 0; g < kGlobalNameCount; ++g)
    add(t, t.globals[static_cast<std::size_t>(g)], {Kind::global, g, false});

  const char* flow[kFlowEquationCount] = {"d", "wx", "wy", "wz", "E"};
  for (int e = 0; e < kFlowEquationCount; ++e) {
    add(t, std::string("rms_") + flow[e], {Kind::equation, e, true});
    add(t, std::string("max_") + flow[e], {Kind::equation, e, false});
  }
  for (const char* fifth : {"bladeForce", "nu", "k"}) {
    add(t, std::string("rms_") + fifth, {Kind::equation, 5, true});
    add(t, std::string("max_") + fifth, {Kind::equation, 5, false});
  }
  add(t, "rms_eps", {Kind::equation, 6, true});
  add(t, "max_eps", {Kind::equation, 6, false});

  for (int s = 1; s <= kSpeciesCount; ++s) {
    add(t, "rms_sp" + std::to_string(s), {Kind::extraEquation, s - 1, true});
    add(t, "max_sp" + std::to_string(s), {Kind::extraEquation, s - 1, false});
  }
  for (int h = 1; h <= kHarmonicCount; ++h) {
    add(t, "rms_harm" + std::to_string(h), {Kind::extraEquation, h - 1, true});
    add(t, "max_harm" + std::to_string(h), {Kind::extraEquation, h - 1, false});
  }
}

const std::vector<std::string>& globalNames() { return tables().globals; }

int turbulenceEquationCount(std::string_view turbulence) {
  if (turbulence == "K-E" || turbulence == "K-O") return 2;
  if (turbulence == "SPL-ALM") return 1;
  return 0;
}

std::int64_t indexOf(std::string_view name, std::int64_t block, std::int64_t nbVars,
                     int turbulenceCount) {
  const auto& entries = tables().entries;
  const auto found = entries.find(std::string(name));
  if (found == entries.end()) return 0;
  const CurveEntry& entry = found->second;
  if (entry.kind == CurveEntry::Kind::global) return entry.number;
  const std::int64_t equation = entry.kind == CurveEntry::Kind::extraEquation
                                    ? kFlowEquationCount + turbulenceCount + entry.number
                                    : entry.number;
  return 9 + 2 * nbVars * block + 2 * equation + (entry.rms ? 1 : 0);
}

}  // namespace turbo
