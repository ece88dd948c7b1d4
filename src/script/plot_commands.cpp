#include "script/plot_commands.h"

#include <tcl.h>
// After tcl.h, which it relies on.
#include <bltVector.h>

#include <climits>
#include <span>
#include <string>

#include "script/curve_thinning.h"

namespace {

bool findVector(Tcl_Interp* interp, Tcl_Obj* name, Blt_Vector** vector) {
  std::string text = Tcl_GetString(name);
  return Blt_GetVector(interp, text.data(), vector) == TCL_OK;
}

std::span<const double> valuesOf(const Blt_Vector* vector) {
  return {Blt_VecData(vector), static_cast<std::size_t>(Blt_VecLength(vector))};
}

int setVector(Blt_Vector* vector, const std::vector<double>& values) {
  // TCL_VOLATILE: BLT copies the values into storage of its own.
  return Blt_ResetVector(vector, const_cast<double*>(values.data()), static_cast<int>(values.size()),
                         static_cast<int>(values.size()), TCL_VOLATILE);
}

int thinCurve(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]) {
  if (objc != 8) {
    Tcl_WrongNumArgs(interp, 1, objv, "xVector yVector xOut yOut xMin xMax columns");
    return TCL_ERROR;
  }
  Blt_Vector* vectors[4] = {};
  for (int i = 0; i < 4; ++i)
    if (!findVector(interp, objv[i + 1], &vectors[i])) return TCL_ERROR;
  double xMin = 0.0;
  double xMax = 0.0;
  int columns = 0;
  if (Tcl_GetDoubleFromObj(interp, objv[5], &xMin) != TCL_OK ||
      Tcl_GetDoubleFromObj(interp, objv[6], &xMax) != TCL_OK ||
      Tcl_GetIntFromObj(interp, objv[7], &columns) != TCL_OK)
    return TCL_ERROR;
  const plot::ThinnedPoints kept =
      plot::thinToColumns(valuesOf(vectors[0]), valuesOf(vectors[1]), xMin, xMax, columns);
  if (setVector(vectors[2], kept.x) != TCL_OK || setVector(vectors[3], kept.y) != TCL_OK) return TCL_ERROR;
  Tcl_SetObjResult(interp, Tcl_NewWideIntObj(static_cast<Tcl_WideInt>(kept.x.size())));
  return TCL_OK;
}

int curveStatistics(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]) {
  if (objc != 3) {
    Tcl_WrongNumArgs(interp, 1, objv, "yVector lastCount");
    return TCL_ERROR;
  }
  Blt_Vector* vector = nullptr;
  Tcl_WideInt lastCount = 0;
  if (!findVector(interp, objv[1], &vector) || Tcl_GetWideIntFromObj(interp, objv[2], &lastCount) != TCL_OK)
    return TCL_ERROR;
  const plot::SeriesStatistics statistics =
      plot::statisticsOfLast(valuesOf(vector), lastCount > 0 ? static_cast<std::size_t>(lastCount) : 0);
  Tcl_Obj* values[] = {Tcl_NewWideIntObj(static_cast<Tcl_WideInt>(statistics.count)),
                       Tcl_NewDoubleObj(statistics.mean), Tcl_NewDoubleObj(statistics.standardDeviation),
                       Tcl_NewDoubleObj(statistics.minimum), Tcl_NewDoubleObj(statistics.maximum)};
  Tcl_SetObjResult(interp, Tcl_NewListObj(5, values));
  return TCL_OK;
}

}  // namespace

void registerPlotCommands(Tcl_Interp* interp) {
  Tcl_CreateObjCommand(interp, "monitor_thin_curve", thinCurve, nullptr, nullptr);
  Tcl_CreateObjCommand(interp, "monitor_curve_statistics", curveStatistics, nullptr, nullptr);
}
