#include "script/plot_commands.h"

#include <tcl.h>
// After tcl.h, which it relies on.
#include <bltVector.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "convergence/verdict.h"
#include "plot/curve_fill.h"
#include "plot/curve_points.h"
#include "script/tcl_arg_stream.h"

namespace {

// The curves of one interpreter, by name.
struct CurveRegistry {
  std::map<std::string, plot::CurvePoints, std::less<>> curves;
  long long created = 0;
  std::span<const CurveSourceRow> sources;
};

constexpr const char* kRegistryKey = "monitor_curve";

CurveRegistry& registryOf(ClientData clientData) {
  return *static_cast<CurveRegistry*>(clientData);
}

int fail(Tcl_Interp* interp, const std::string& message) {
  Tcl_SetObjResult(interp, Tcl_NewStringObj(message.c_str(), static_cast<int>(message.size())));
  return TCL_ERROR;
}

plot::CurvePoints* findCurve(Tcl_Interp* interp, CurveRegistry& registry, Tcl_Obj* name) {
  const auto found = registry.curves.find(std::string_view(Tcl_GetString(name)));
  if (found == registry.curves.end()) {
    fail(interp, std::string("no curve named \"") + Tcl_GetString(name) + "\"");
    return nullptr;
  }
  return &found->second;
}

Tcl_Obj* listOf(const double* values, std::size_t count) {
  Tcl_Obj* list = Tcl_NewListObj(0, nullptr);
  for (std::size_t i = 0; i < count; ++i)
    Tcl_ListObjAppendElement(nullptr, list, Tcl_NewDoubleObj(values[i]));
  return list;
}

int setVector(Tcl_Interp* interp, Tcl_Obj* name, const std::vector<double>& values) {
  Blt_Vector* vector = nullptr;
  std::string text = Tcl_GetString(name);
  if (Blt_GetVector(interp, text.data(), &vector) != TCL_OK) return TCL_ERROR;
  // TCL_VOLATILE: BLT copies the values into storage of its own.
  return Blt_ResetVector(vector, const_cast<double*>(values.data()),
                         static_cast<int>(values.size()), static_cast<int>(values.size()),
                         TCL_VOLATILE);
}

int thinPoints(Tcl_Interp* interp, const plot::CurvePoints& curve, Tcl_Obj* const objv[]) {
  double xMin = 0.0;
  double xMax = 0.0;
  int columns = 0;
  if (Tcl_GetDoubleFromObj(interp, objv[5], &xMin) != TCL_OK ||
      Tcl_GetDoubleFromObj(interp, objv[6], &xMax) != TCL_OK ||
      Tcl_GetIntFromObj(interp, objv[7], &columns) != TCL_OK)
    return TCL_ERROR;
  const plot::ThinnedPoints kept = curve.thin(xMin, xMax, columns);
  if (setVector(interp, objv[3], kept.x) != TCL_OK || setVector(interp, objv[4], kept.y) != TCL_OK)
    return TCL_ERROR;
  Tcl_SetObjResult(interp, Tcl_NewWideIntObj(static_cast<Tcl_WideInt>(kept.x.size())));
  return TCL_OK;
}

int pointValues(Tcl_Interp* interp, const plot::CurvePoints& curve, Tcl_Obj* firstObj,
                Tcl_Obj* lastObj) {
  Tcl_WideInt first = 0;
  Tcl_WideInt last = 0;
  if (Tcl_GetWideIntFromObj(interp, firstObj, &first) != TCL_OK ||
      Tcl_GetWideIntFromObj(interp, lastObj, &last) != TCL_OK)
    return TCL_ERROR;
  const auto size = static_cast<Tcl_WideInt>(curve.size());
  first = std::max<Tcl_WideInt>(first, 0);
  last = std::min<Tcl_WideInt>(last, size - 1);
  const std::size_t count = last >= first ? static_cast<std::size_t>(last - first + 1) : 0;
  const auto from = static_cast<std::size_t>(first);
  Tcl_Obj* lists[] = {listOf(curve.x().data() + from, count),
                      listOf(curve.y().data() + from, count)};
  Tcl_SetObjResult(interp, Tcl_NewListObj(2, lists));
  return TCL_OK;
}

std::size_t wordCount(std::string_view text) {
  std::size_t words = 0;
  bool inWord = false;
  for (const char c : text) {
    if (c != ' ' && !inWord) ++words;
    inWord = c != ' ';
  }
  return words;
}

// The served curve that objv[0] (its kind) and the words after it name;
// null after setting the script error.
std::unique_ptr<plot::CurveSource> sourceNamed(Tcl_Interp* interp, const CurveRegistry& registry,
                                               std::string_view usagePrefix, int objc,
                                               Tcl_Obj* const objv[]) {
  const std::string_view kind = Tcl_GetString(objv[0]);
  const CurveSourceRow* row = nullptr;
  std::string kinds;
  for (const CurveSourceRow& candidate : registry.sources) {
    if (candidate.name == kind) row = &candidate;
    kinds += (kinds.empty() ? "" : ", ") + std::string(candidate.name);
  }
  if (row == nullptr) {
    fail(interp, "unknown curve source \"" + std::string(kind) + "\": must be one of " + kinds);
    return nullptr;
  }
  if (static_cast<std::size_t>(objc - 1) != wordCount(row->arguments)) {
    fail(interp, "wrong # args: should be \"monitor_curve " + std::string(usagePrefix) +
                     std::string(row->name) + " " + std::string(row->arguments) + "\"");
    return nullptr;
  }
  std::vector<const char*> words;
  for (int i = 1; i < objc; ++i) words.push_back(Tcl_GetString(objv[i]));
  TclArgStream arguments(static_cast<int>(words.size()), words.data());
  std::string complaint;
  std::unique_ptr<plot::CurveSource> source = row->make(arguments, complaint);
  if (source == nullptr) fail(interp, complaint);
  return source;
}

int sourcePositions(Tcl_Interp* interp, const CurveRegistry& registry, int objc,
                    Tcl_Obj* const objv[]) {
  const std::unique_ptr<plot::CurveSource> source =
      sourceNamed(interp, registry, "positions ", objc - 2, objv + 2);
  if (source == nullptr) return TCL_ERROR;
  Tcl_SetObjResult(interp, Tcl_NewWideIntObj(static_cast<Tcl_WideInt>(source->size())));
  return TCL_OK;
}

// Checks everything before the first point is appended: a wrong request
// leaves the curve as it was.
int fillFromSource(Tcl_Interp* interp, const CurveRegistry& registry, plot::CurvePoints& curve,
                   int objc, Tcl_Obj* const objv[]) {
  Tcl_WideInt first = 0;
  Tcl_WideInt last = 0;
  if (Tcl_GetWideIntFromObj(interp, objv[3], &first) != TCL_OK ||
      Tcl_GetWideIntFromObj(interp, objv[4], &last) != TCL_OK)
    return TCL_ERROR;
  const std::unique_ptr<plot::CurveSource> source =
      sourceNamed(interp, registry, "fill curve first last ", objc - 5, objv + 5);
  if (source == nullptr) return TCL_ERROR;
  const auto size = static_cast<Tcl_WideInt>(source->size());
  if (first < 0 || last < first - 1 || last >= size) {
    return fail(interp, "positions " + std::to_string(first) + ".." + std::to_string(last) +
                            " are outside the curve, which has " + std::to_string(size) +
                            " positions");
  }
  const plot::FillOutcome outcome = plot::fill(*source, static_cast<std::size_t>(first),
                                               static_cast<std::size_t>(last + 1), curve);
  Tcl_Obj* answer[] = {Tcl_NewWideIntObj(static_cast<Tcl_WideInt>(outcome.appended)),
                       Tcl_NewWideIntObj(static_cast<Tcl_WideInt>(outcome.trailingMissingFrom))};
  Tcl_SetObjResult(interp, Tcl_NewListObj(2, answer));
  return TCL_OK;
}

int statistics(Tcl_Interp* interp, const plot::CurvePoints& curve, Tcl_Obj* lastCountObj) {
  Tcl_WideInt lastCount = 0;
  if (Tcl_GetWideIntFromObj(interp, lastCountObj, &lastCount) != TCL_OK) return TCL_ERROR;
  const plot::SeriesStatistics found =
      curve.statisticsOfLast(lastCount > 0 ? static_cast<std::size_t>(lastCount) : 0);
  Tcl_Obj* values[] = {Tcl_NewWideIntObj(static_cast<Tcl_WideInt>(found.count)),
                       Tcl_NewDoubleObj(found.mean), Tcl_NewDoubleObj(found.standardDeviation),
                       Tcl_NewDoubleObj(found.minimum), Tcl_NewDoubleObj(found.maximum)};
  Tcl_SetObjResult(interp, Tcl_NewListObj(5, values));
  return TCL_OK;
}

Tcl_Obj* numberOrEmpty(const std::optional<double>& value) {
  return value ? Tcl_NewDoubleObj(*value) : Tcl_NewObj();
}

// Sets the script error; answers false, for the readers of arguments.
bool refuse(Tcl_Interp* interp, const std::string& message) {
  fail(interp, message);
  return false;
}

// The options of `verdict`, each a number; false after the script error.
bool readVerdictOptions(Tcl_Interp* interp, int objc, Tcl_Obj* const objv[],
                        convergence::Settings& settings, bool& residual) {
  if (objc % 2 != 0)
    return refuse(interp,
                  "value for \"" + std::string(Tcl_GetString(objv[objc - 1])) + "\" missing");
  for (int i = 0; i < objc; i += 2) {
    const std::string_view option = Tcl_GetString(objv[i]);
    double value = 0.0;
    if (option != "-confidence" && option != "-tolerance" && option != "-residual")
      return refuse(interp, "unknown option \"" + std::string(option) +
                                "\": must be -confidence, -tolerance or -residual");
    if (Tcl_GetDoubleFromObj(interp, objv[i + 1], &value) != TCL_OK) return false;
    if (option == "-confidence") {
      if (!(value > 0.0 && value < 1.0))
        return refuse(interp, "the confidence must lie between 0 and 1, not " +
                                  std::string(Tcl_GetString(objv[i + 1])));
      settings.confidence = value;
    } else if (option == "-tolerance") {
      if (!(value >= 0.0) || !std::isfinite(value))
        return refuse(interp, "the tolerance must be 0 or more, not " +
                                  std::string(Tcl_GetString(objv[i + 1])));
      settings.tolerance = value;
    } else {
      residual = value != 0.0;
    }
  }
  return true;
}

int verdictOf(Tcl_Interp* interp, const plot::CurvePoints& curve, int objc, Tcl_Obj* const objv[]) {
  convergence::Settings settings;
  bool residual = false;
  if (!readVerdictOptions(interp, objc - 3, objv + 3, settings, residual)) return TCL_ERROR;
  const convergence::Verdict verdict = convergence::judge(curve.x(), curve.y(), settings, residual);
  const std::string_view state = convergence::stateName(verdict.state);
  const std::pair<const char*, Tcl_Obj*> entries[] = {
      {"verdict", Tcl_NewStringObj(state.data(), static_cast<int>(state.size()))},
      {"transientEnd", numberOrEmpty(verdict.transientEnd)},
      {"samples", Tcl_NewWideIntObj(static_cast<Tcl_WideInt>(verdict.samples))},
      {"mean", Tcl_NewDoubleObj(verdict.mean)},
      {"halfWidth", Tcl_NewDoubleObj(verdict.halfWidth)},
      {"confidence", Tcl_NewDoubleObj(verdict.confidence)},
      {"drift", Tcl_NewIntObj(verdict.drift ? 1 : 0)},
      {"period", numberOrEmpty(verdict.period)},
      {"amplitude", numberOrEmpty(verdict.amplitude)},
      {"ordersDropped", numberOrEmpty(verdict.ordersDropped)},
      {"stillFalling", Tcl_NewIntObj(verdict.stillFalling ? 1 : 0)},
  };
  Tcl_Obj* dict = Tcl_NewDictObj();
  for (const auto& [key, value] : entries)
    Tcl_DictObjPut(nullptr, dict, Tcl_NewStringObj(key, -1), value);
  Tcl_SetObjResult(interp, dict);
  return TCL_OK;
}

// One call of the command: the subcommand's arguments are objv[2] on, the
// curve they name (for the subcommands that take one) already found.
struct Call {
  Tcl_Interp* interp;
  CurveRegistry& registry;
  plot::CurvePoints* curve;
  int objc;
  Tcl_Obj* const* objv;
};

int newCurve(const Call& call) {
  const std::string created = "curve" + std::to_string(++call.registry.created);
  call.registry.curves.emplace(created, plot::CurvePoints{});
  Tcl_SetObjResult(call.interp,
                   Tcl_NewStringObj(created.c_str(), static_cast<int>(created.size())));
  return TCL_OK;
}

int deleteCurve(const Call& call) {
  call.registry.curves.erase(std::string(Tcl_GetString(call.objv[2])));
  return TCL_OK;
}

int curveLength(const Call& call) {
  Tcl_SetObjResult(call.interp, Tcl_NewWideIntObj(static_cast<Tcl_WideInt>(call.curve->size())));
  return TCL_OK;
}

int truncateCurve(const Call& call) {
  Tcl_WideInt count = 0;
  if (Tcl_GetWideIntFromObj(call.interp, call.objv[3], &count) != TCL_OK) return TCL_ERROR;
  call.curve->truncate(count > 0 ? static_cast<std::size_t>(count) : 0);
  return TCL_OK;
}

struct Subcommand {
  std::string_view name;
  int fewestWords;  // of the whole command, its name included
  int mostWords;
  const char* usage;
  bool takesCurve;
  int (*run)(const Call& call);
};

constexpr int kAnyNumber = std::numeric_limits<int>::max();

constexpr Subcommand kSubcommands[] = {
    {"new", 2, 2, "new", false, newCurve},
    {"positions", 3, kAnyNumber, "positions source ?argument ...?", false,
     [](const Call& c) { return sourcePositions(c.interp, c.registry, c.objc, c.objv); }},
    {"fill", 6, kAnyNumber, "fill curve first last source ?argument ...?", true,
     [](const Call& c) { return fillFromSource(c.interp, c.registry, *c.curve, c.objc, c.objv); }},
    {"delete", 3, 3, "delete curve", true, deleteCurve},
    {"length", 3, 3, "length curve", true, curveLength},
    {"truncate", 4, 4, "truncate curve count", true, truncateCurve},
    {"values", 5, 5, "values curve first last", true,
     [](const Call& c) { return pointValues(c.interp, *c.curve, c.objv[3], c.objv[4]); }},
    {"thin", 8, 8, "thin curve xOut yOut xMin xMax columns", true,
     [](const Call& c) { return thinPoints(c.interp, *c.curve, c.objv); }},
    {"statistics", 4, 4, "statistics curve lastCount", true,
     [](const Call& c) { return statistics(c.interp, *c.curve, c.objv[3]); }},
    {"verdict", 3, 9, "verdict curve ?-confidence level? ?-tolerance fraction? ?-residual 0|1?",
     true, [](const Call& c) { return verdictOf(c.interp, *c.curve, c.objc, c.objv); }},
};

int curveCommand(ClientData clientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]) {
  CurveRegistry& registry = registryOf(clientData);
  const std::string_view name = objc > 1 ? Tcl_GetString(objv[1]) : "";
  const Subcommand* subcommand = nullptr;
  std::string names;
  for (const Subcommand& candidate : kSubcommands) {
    if (candidate.name == name) subcommand = &candidate;
    names += (names.empty() ? "" : "|") + std::string(candidate.name);
  }
  if (subcommand == nullptr) return fail(interp, "usage: monitor_curve " + names + " ...");
  if (objc < subcommand->fewestWords || objc > subcommand->mostWords)
    return fail(interp,
                std::string("wrong # args: should be \"monitor_curve ") + subcommand->usage + "\"");
  plot::CurvePoints* curve = nullptr;
  if (subcommand->takesCurve) {
    curve = findCurve(interp, registry, objv[2]);
    if (curve == nullptr) return TCL_ERROR;
  }
  return subcommand->run({interp, registry, curve, objc, objv});
}

void deleteRegistry(ClientData clientData, Tcl_Interp*) {
  delete static_cast<CurveRegistry*>(clientData);
}

}  // namespace

void registerPlotCommands(Tcl_Interp* interp, std::span<const CurveSourceRow> sources) {
  auto* registry = new CurveRegistry;
  registry->sources = sources;
  Tcl_SetAssocData(interp, kRegistryKey, deleteRegistry, registry);
  Tcl_CreateObjCommand(interp, "monitor_curve", curveCommand, registry, nullptr);
}
