#include "script/tcl_interp.h"

#include <tcl.h>

#include "platform/console.h"
#include "script/tcl_arg_stream.h"
#include "script/tcl_result_stream.h"

namespace {

std::string errorInfo(Tcl_Interp* interp) {
  Tcl_Obj* info = Tcl_GetVar2Ex(interp, "errorInfo", nullptr, TCL_GLOBAL_ONLY);
  return info == nullptr ? std::string{} : std::string(Tcl_GetString(info));
}

// The bridge between Tcl's string-based command signature and a handler: the
// arguments after the command word become the ArgStream, the collected text
// becomes the command's result, and the handler's status its completion code.
int commandAdapter(ClientData clientData, Tcl_Interp* interp, int argc, const char* argv[]) {
  const auto handler = reinterpret_cast<CommandHandler>(clientData);
  std::string text;
  int status = TCL_OK;
  {
    TclArgStream arguments(argc - 1, argv + 1);
    TclResultStream result(text);
    handler(arguments, result);
    status = result.status();
  }
  Tcl_SetResult(interp, text.data(), TCL_VOLATILE);
  return status;
}

}  // namespace

void reportInterpreterError(Tcl_Interp* interp, std::string_view word) {
  platform::consoleWrite(" " + std::string(word) + " " + Tcl_GetStringResult(interp) + "\n");
  platform::consoleWrite(errorInfo(interp) + "\n");
}

TCLInterp::TCLInterp() : interp_(Tcl_CreateInterp()) {}

TCLInterp::~TCLInterp() { Tcl_DeleteInterp(interp_); }

int TCLInterp::createCommand(std::string_view name, CommandHandler handler) {
  Tcl_CreateCommand(interp_, std::string(name).c_str(), commandAdapter,
                    reinterpret_cast<ClientData>(handler), nullptr);
  return 1;
}

void TCLInterp::createCommands(std::span<const CommandRow> table) {
  for (const CommandRow& row : table) createCommand(row.name, row.handler);
}

int TCLInterp::evalString(const std::string& script) {
  Tcl_Preserve(interp_);
  return reportAndFinish(Tcl_EvalEx(interp_, script.c_str(), -1, 0));
}

int TCLInterp::evalFile(const std::string& path) {
  Tcl_Preserve(interp_);
  return reportAndFinish(Tcl_EvalFile(interp_, path.c_str()));
}

int TCLInterp::reportAndFinish(int code) {
  if (code != TCL_OK) {
    const int line = Tcl_GetErrorLine(interp_);
    platform::consoleWrite(" TCL ERROR " + std::to_string(line) + " " +
                           Tcl_GetStringResult(interp_) + "\n");
    platform::consoleWrite(errorInfo(interp_) + "\n");
    if (code == TCL_ERROR) {
      // Only later readers of errorInfo see this; the report above does not.
      const std::string addition = "\n {\"while\" body line " + std::to_string(line) + "}";
      Tcl_AddErrorInfo(interp_, addition.c_str());
    }
  }
  Tcl_Release(interp_);
  return code;
}
