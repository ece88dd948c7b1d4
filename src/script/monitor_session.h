// The session of a monitor: a Tk session whose main loop runs until a quit
// command clears `running`.
#pragma once

#include "script/tk_session.h"

class MonitorSessionH : public TkSession {
 public:
  using TkSession::TkSession;

  // Handles events while `running` is set, testing it after every event. The
  // loop does not stop when the last window is gone: it turns until a quit
  // command is called.
  void runMainLoop();

  int running = 0;
};

// The session of the process's monitor, for the quit commands.
MonitorSessionH* theMonitorSession();
