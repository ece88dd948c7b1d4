#include "app/monitor_startup.h"

int main(int argc, char** argv) { return app::runMonitor(argc, argv); }
