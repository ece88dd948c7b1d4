// The Tcl session of the program: one interpreter, filled with the program's
// arguments and installation locations, with Tk, Tix and BLT loaded, and one
// pass of the event loop at a time.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "script/command.h"
#include "script/pending_callbacks.h"
#include "script/tcl_interp.h"

// An element of the scripts' "env" array, in the order the session sets them.
using ScriptEnvironment = std::vector<std::pair<std::string, std::string>>;

class TkSession {
 public:
  // Creates the interpreter and brings the session up: "argv", "argc",
  // "argv0", the "env" elements, Tcl, the "file readable" patch, Tk, Tix, BLT,
  // "tcl_rcFileName" and the "app" array. A Tk, Tix or BLT failure is
  // reported and ends the process with status 0.
  TkSession(int argc, char** argv, const ScriptEnvironment& environment);
  virtual ~TkSession();
  TkSession(const TkSession&) = delete;
  TkSession& operator=(const TkSession&) = delete;

  TCLInterp& interp() { return *interp_; }

  // Handles one event, waiting for it; 0 at once when no main window is left
  // (and `finished` is set).
  int doOneEvent();
  // Handles events until no main window is left; returns 1.
  virtual int mainLoop();

  virtual void post(std::shared_ptr<Callback> callback) { pending_.post(std::move(callback)); }
  virtual int flushPending() { return pending_.flush(); }

  int finished() const { return finished_; }

 private:
  void setArguments(int argc, char** argv);
  void setEnvironment(const ScriptEnvironment& environment);
  void loadExtensions();
  void setApplicationFlags();

  PendingCallbacks pending_;
  int finished_ = 0;
  std::unique_ptr<TCLInterp> interp_;
};

// The one session of the process; set by its constructor, never cleared.
extern TkSession* theSession;

// Switches that take the graphical part and the scripts out of the session.
// Nothing sets them; they stay off.
extern int noGui;
extern int noScripts;

// Registers a command with the session's interpreter.
int registerCommand(std::string_view name, CommandHandler handler);
// Evaluates script text in the session; 1 when scripts are switched off, 0
// when there is no session, else the Tcl completion code.
int evalScript(const std::string& script);
// Evaluates a script file in the session; 1 when scripts are switched off.
int evalScriptFile(const std::string& path);
