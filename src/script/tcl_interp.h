// One Tcl interpreter, with the program's way of evaluating scripts in it and
// of registering its commands.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "script/command.h"

struct Tcl_Interp;

class TCLInterp {
 public:
  TCLInterp();
  virtual ~TCLInterp();
  TCLInterp(const TCLInterp&) = delete;
  TCLInterp& operator=(const TCLInterp&) = delete;

  Tcl_Interp* interp() const { return interp_; }

  // Registers `handler` as the script command `name`; returns 1.
  int createCommand(std::string_view name, CommandHandler handler);
  // Registers every row of a command table, in order.
  void createCommands(std::span<const CommandRow> table);

  // Evaluate a script text or file and return the Tcl completion code. Any
  // code other than TCL_OK is reported on the console as
  //   " TCL ERROR <line> <result>" and then the "errorInfo" text.
  int evalString(const std::string& script);
  int evalFile(const std::string& path);

 private:
  int reportAndFinish(int code);

  Tcl_Interp* interp_;
};

// Writes " <word> <result>" and the "errorInfo" text on the console, each
// followed by a newline: the report of a failed initialisation.
void reportInterpreterError(Tcl_Interp* interp, std::string_view word);
