#include "script/tk_session.h"

#include <tcl.h>
#include <tix.h>
#include <tk.h>

#include <cstdlib>

#include "platform/console.h"

// BLT exports its entry point without declaring it in blt.h.
extern "C" int Blt_Init(Tcl_Interp* interp);

TkSession* theSession = nullptr;
int noGui = 0;
int noScripts = 0;

namespace {

// "file readable" answers whether the file can really be opened for reading;
// every other subcommand goes to the built-in command, in the caller's frame.
constexpr const char* kFileCommandPatch = R"(rename ::file ::original_file_18112015

proc ::file { cmd args } {
    set retval 0

    if { [string eq $cmd "readable"] } {
        set name [lindex $args 0]
        set rc [catch {open $name} fp]
        if { $rc == 0 } { close $fp }
        set retval [expr { $rc == 0 }]
    } else {
        set retval [uplevel 1 ::original_file_18112015 $cmd $args]
    }

    return $retval
}
)";

void setGlobal(Tcl_Interp* interp, const char* name, const std::string& value) {
  Tcl_SetVar(interp, name, value.c_str(), TCL_GLOBAL_ONLY);
}

void setArrayElement(Tcl_Interp* interp, const char* array, const std::string& element,
                     const std::string& value) {
  Tcl_SetVar2(interp, array, element.c_str(), value.c_str(), TCL_GLOBAL_ONLY);
}

}  // namespace

TkSession::TkSession(int argc, char** argv, const ScriptEnvironment& environment)
    : interp_(std::make_unique<TCLInterp>()) {
  theSession = this;
  setArguments(argc, argv);
  setEnvironment(environment);
  Tcl_FindExecutable(argv[0]);

  Tcl_Interp* interp = interp_->interp();
  if (Tcl_Init(interp) == TCL_ERROR) reportInterpreterError(interp, "TCL ERROR");
  // The scripts' output shares the console with the program's own lines:
  // flush it line by line so that both keep the order in which they were written.
  if (Tcl_Channel out = Tcl_GetStdChannel(TCL_STDOUT)) {
    Tcl_SetChannelOption(nullptr, out, "-buffering", "line");
  }
  if (noGui) return;

  interp_->evalString(kFileCommandPatch);
  loadExtensions();
  setGlobal(interp, "tcl_rcFileName", "~/.talrc");
  setApplicationFlags();
}

TkSession::~TkSession() {
  interp_.reset();
  Tcl_Finalize();
}

void TkSession::setArguments(int argc, char** argv) {
  Tcl_Interp* interp = interp_->interp();
  char* merged = Tcl_Merge(argc - 1, argv + 1);
  setGlobal(interp, "argv", merged);
  setGlobal(interp, "argc", std::to_string(argc - 1));
  setGlobal(interp, "argv0", argv[0]);
  Tcl_Free(merged);
}

void TkSession::setEnvironment(const ScriptEnvironment& environment) {
  for (const auto& [name, value] : environment) {
    setArrayElement(interp_->interp(), "env", name, value);
  }
}

void TkSession::loadExtensions() {
  Tcl_Interp* interp = interp_->interp();
  const struct {
    int (*init)(Tcl_Interp*);
    const char* report;
  } extensions[] = {{Tk_Init, "TK ERROR"}, {Tix_Init, "TIX ERROR"}, {Blt_Init, "BLT ERROR"}};
  for (const auto& extension : extensions) {
    if (extension.init(interp) == TCL_ERROR) {
      reportInterpreterError(interp, extension.report);
      std::exit(0);
    }
  }
}

void TkSession::setApplicationFlags() {
  const std::pair<const char*, const char*> flags[] = {
      {"versionChecking", "1"},     {"gridlark_only", "0"},
      {"gridlark_multiblock", "0"}, {"is_vexo", "0"},
      {"parasolid_is_used", "0"},   {"catiav5_is_used", "1"},
      {"multithread", "0"},         {"debug", "0"},
      {"is_a_library", "0"},
  };
  for (const auto& [element, value] : flags)
    setArrayElement(interp_->interp(), "app", element, value);
}

int TkSession::doOneEvent() {
  if (Tk_GetNumMainWindows() < 1) {
    finished_ = 1;
    return 0;
  }
  return Tcl_DoOneEvent(0);
}

int TkSession::mainLoop() {
  while (finished_ == 0) doOneEvent();
  return 1;
}

int registerCommand(std::string_view name, CommandHandler handler) {
  return theSession->interp().createCommand(name, handler);
}

int evalScript(const std::string& script) {
  if (noGui || noScripts) return 1;
  if (theSession == nullptr) return 0;
  return theSession->interp().evalString(script);
}

int evalScriptFile(const std::string& path) {
  if (noScripts) return 1;
  return theSession->interp().evalFile(path);
}
