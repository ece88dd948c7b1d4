# Finds Tcl 8.6, Tk 8.6, Tix 8.4.3 and BLT 2.5 and defines the imported target
# Monitor::TclTk that carries all four. A missing piece stops the configuration
# with the Debian package that provides it.

function(monitor_require_path var header package)
  find_path(${var} ${header} PATHS /usr/include/tcl8.6 /usr/include/tcl /usr/include)
  if(NOT ${var})
    message(FATAL_ERROR "Cannot find ${header}. Install the Debian package ${package} "
                        "(sudo apt-get install ${package}).")
  endif()
endfunction()

function(monitor_require_library var package)
  find_library(${var} NAMES ${ARGN} PATHS /usr/lib /usr/lib/x86_64-linux-gnu /usr/lib/aarch64-linux-gnu)
  if(NOT ${var})
    message(FATAL_ERROR "Cannot find the library ${ARGN}. Install the Debian package ${package} "
                        "(sudo apt-get install ${package}).")
  endif()
endfunction()

monitor_require_path(MONITOR_TCL_INCLUDE tcl.h tcl-dev)
monitor_require_path(MONITOR_TK_INCLUDE tk.h tk-dev)
monitor_require_path(MONITOR_TIX_INCLUDE tix.h tix-dev)
monitor_require_path(MONITOR_BLT_INCLUDE blt.h blt-dev)

monitor_require_library(MONITOR_TCL_LIBRARY tcl-dev tcl8.6)
monitor_require_library(MONITOR_TK_LIBRARY tk-dev tk8.6)
monitor_require_library(MONITOR_TIX_LIBRARY tix-dev Tix8.4.3 libTix8.4.3.so.1)
monitor_require_library(MONITOR_BLT_LIBRARY blt-dev BLT.2.5 BLT)

add_library(Monitor::TclTk INTERFACE IMPORTED)
set_target_properties(Monitor::TclTk PROPERTIES
  INTERFACE_INCLUDE_DIRECTORIES "${MONITOR_TCL_INCLUDE};${MONITOR_TK_INCLUDE};${MONITOR_TIX_INCLUDE};${MONITOR_BLT_INCLUDE}"
  INTERFACE_LINK_LIBRARIES "${MONITOR_BLT_LIBRARY};${MONITOR_TIX_LIBRARY};${MONITOR_TK_LIBRARY};${MONITOR_TCL_LIBRARY}")
