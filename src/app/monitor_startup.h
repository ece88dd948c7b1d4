// The program's start-up, from the command line to the main loop.
#pragma once

#include "app/qv_environment_variables.h"
#include "app/startup.h"
#include "script/tk_session.h"

namespace app {

// Runs the program; returns the exit status (1 after a quit command). Start-up
// failures end the process with status 0 before this returns.
int runMonitor(int argc, char** argv);

// The scripts' "env" elements from the installation environment, in order.
ScriptEnvironment scriptEnvironment(const QVEnvironmentVariables& environment);

// Evaluates the mode's start-up script from the installation; a failing
// script is reported and start-up goes on.
void sourceStartupScript(MonitorMode mode, const QVEnvironmentVariables& environment);

}  // namespace app
