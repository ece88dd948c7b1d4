#include "script/monitor_session.h"

void MonitorSessionH::runMainLoop() {
  running = 1;
  while (running != 0) doOneEvent();
}

MonitorSessionH* theMonitorSession() { return dynamic_cast<MonitorSessionH*>(theSession); }
