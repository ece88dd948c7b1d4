# Start-up script of the monitor in marine mode.
#
# The program sources this file from <installation>/_tcl/_monitorTurbo/_monitorMarine/
# once Tk, Tix and BLT are loaded and the marine commands are registered.
# Until the monitor's real windows take its place, it shows a placeholder
# window.

source [file join [file dirname [file dirname [info script]]] start_window.tcl]
::monitor_start::show marine itf_quit_command_KELP
