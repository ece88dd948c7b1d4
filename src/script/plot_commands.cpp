#include "script/plot_commands.h"

#include <tcl.h>
// After tcl.h, which it relies on.
#include <bltVector.h>

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "fileformat/number_text.h"
#include "script/curve_points.h"

namespace {

// The curves of one interpreter, by name.
struct CurveRegistry {
  std::map<std::string, plot::CurvePoints, std::less<>> curves;
  long long created = 0;
};

constexpr const char* kRegistryKey = "monitor_curve";

CurveRegistry& registryOf(ClientData clientData) { return *static_cast<CurveRegistry*>(clientData); }

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

// The numbers of a list. Plain decimal text is read without Tcl's number
// parser, which costs more than the rest of a fetch; anything else goes
// through Tcl and fails as Tcl says.
bool readNumbers(Tcl_Interp* interp, Tcl_Obj* list, std::vector<double>& numbers) {
  int count = 0;
  Tcl_Obj** elements = nullptr;
  if (Tcl_ListObjGetElements(interp, list, &count, &elements) != TCL_OK) return false;
  numbers.resize(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    int length = 0;
    const char* text = Tcl_GetStringFromObj(elements[i], &length);
    double& value = numbers[static_cast<std::size_t>(i)];
    if (length == 0 || fileformat::parseLeadingDouble(std::string_view(text, static_cast<std::size_t>(length)),
                                                      value) != static_cast<std::size_t>(length)) {
      if (Tcl_GetDoubleFromObj(interp, elements[i], &value) != TCL_OK) return false;
    }
  }
  return true;
}

Tcl_Obj* listOf(const double* values, std::size_t count) {
  Tcl_Obj* list = Tcl_NewListObj(0, nullptr);
  for (std::size_t i = 0; i < count; ++i) Tcl_ListObjAppendElement(nullptr, list, Tcl_NewDoubleObj(values[i]));
  return list;
}

int setVector(Tcl_Interp* interp, Tcl_Obj* name, const std::vector<double>& values) {
  Blt_Vector* vector = nullptr;
  std::string text = Tcl_GetString(name);
  if (Blt_GetVector(interp, text.data(), &vector) != TCL_OK) return TCL_ERROR;
  // TCL_VOLATILE: BLT copies the values into storage of its own.
  return Blt_ResetVector(vector, const_cast<double*>(values.data()), static_cast<int>(values.size()),
                         static_cast<int>(values.size()), TCL_VOLATILE);
}

int appendPoints(Tcl_Interp* interp, plot::CurvePoints& curve, Tcl_Obj* xs, Tcl_Obj* ys) {
  std::vector<double> x;
  std::vector<double> y;
  if (!readNumbers(interp, xs, x) || !readNumbers(interp, ys, y)) return TCL_ERROR;
  if (x.size() != y.size()) return fail(interp, "the lists of abscissae and values differ in length");
  curve.append(x, y);
  Tcl_SetObjResult(interp, Tcl_NewWideIntObj(static_cast<Tcl_WideInt>(curve.size())));
  return TCL_OK;
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

int pointValues(Tcl_Interp* interp, const plot::CurvePoints& curve, Tcl_Obj* firstObj, Tcl_Obj* lastObj) {
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
  Tcl_Obj* lists[] = {listOf(curve.x().data() + from, count), listOf(curve.y().data() + from, count)};
  Tcl_SetObjResult(interp, Tcl_NewListObj(2, lists));
  return TCL_OK;
}

int statistics(Tcl_Interp* interp, const plot::CurvePoints& curve, Tcl_Obj* lastCountObj) {
  Tcl_WideInt lastCount = 0;
  if (Tcl_GetWideIntFromObj(interp, lastCountObj, &lastCount) != TCL_OK) return TCL_ERROR;
  const plot::SeriesStatistics found = curve.statisticsOfLast(lastCount > 0 ? static_cast<std::size_t>(lastCount) : 0);
  Tcl_Obj* values[] = {Tcl_NewWideIntObj(static_cast<Tcl_WideInt>(found.count)), Tcl_NewDoubleObj(found.mean),
                       Tcl_NewDoubleObj(found.standardDeviation), Tcl_NewDoubleObj(found.minimum),
                       Tcl_NewDoubleObj(found.maximum)};
  Tcl_SetObjResult(interp, Tcl_NewListObj(5, values));
  return TCL_OK;
}

struct Subcommand {
  std::string_view name;
  int arguments;  // after the curve's name
  const char* usage;
};

constexpr Subcommand kSubcommands[] = {
    {"new", -1, "new"},
    {"delete", 0, "delete curve"},
    {"append", 2, "append curve xs ys"},
    {"length", 0, "length curve"},
    {"truncate", 1, "truncate curve count"},
    {"values", 2, "values curve first last"},
    {"thin", 5, "thin curve xOut yOut xMin xMax columns"},
    {"statistics", 1, "statistics curve lastCount"},
};

int curveCommand(ClientData clientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]) {
  CurveRegistry& registry = registryOf(clientData);
  const std::string_view name = objc > 1 ? Tcl_GetString(objv[1]) : "";
  const Subcommand* subcommand = nullptr;
  for (const Subcommand& candidate : kSubcommands)
    if (candidate.name == name) subcommand = &candidate;
  if (subcommand == nullptr)
    return fail(interp, "usage: monitor_curve new|delete|append|length|truncate|values|thin|statistics ...");
  const int expected = subcommand->arguments < 0 ? 2 : subcommand->arguments + 3;
  if (objc != expected) return fail(interp, std::string("wrong # args: should be \"monitor_curve ") + subcommand->usage + "\"");
  if (name == "new") {
    const std::string created = "curve" + std::to_string(++registry.created);
    registry.curves.emplace(created, plot::CurvePoints{});
    Tcl_SetObjResult(interp, Tcl_NewStringObj(created.c_str(), static_cast<int>(created.size())));
    return TCL_OK;
  }
  plot::CurvePoints* curve = findCurve(interp, registry, objv[2]);
  if (curve == nullptr) return TCL_ERROR;
  if (name == "delete") {
    registry.curves.erase(std::string(Tcl_GetString(objv[2])));
    return TCL_OK;
  }
  if (name == "append") return appendPoints(interp, *curve, objv[3], objv[4]);
  if (name == "length") {
    Tcl_SetObjResult(interp, Tcl_NewWideIntObj(static_cast<Tcl_WideInt>(curve->size())));
    return TCL_OK;
  }
  if (name == "truncate") {
    Tcl_WideInt count = 0;
    if (Tcl_GetWideIntFromObj(interp, objv[3], &count) != TCL_OK) return TCL_ERROR;
    curve->truncate(count > 0 ? static_cast<std::size_t>(count) : 0);
    return TCL_OK;
  }
  if (name == "values") return pointValues(interp, *curve, objv[3], objv[4]);
  if (name == "thin") return thinPoints(interp, *curve, objv);
  return statistics(interp, *curve, objv[3]);
}

void deleteRegistry(ClientData clientData, Tcl_Interp*) { delete static_cast<CurveRegistry*>(clientData); }

}  // namespace

void registerPlotCommands(Tcl_Interp* interp) {
  auto* registry = new CurveRegistry;
  Tcl_SetAssocData(interp, kRegistryKey, deleteRegistry, registry);
  Tcl_CreateObjCommand(interp, "monitor_curve", curveCommand, registry, nullptr);
}
