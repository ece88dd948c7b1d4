# Start-up script of the monitor in turbomachinery mode.
#
# The program sources this file from <installation>/_tcl/_monitorTurbo/ once
# Tk, Tix and BLT are loaded and the turbomachinery commands are registered.
# Until the monitor's real windows take its place, it shows a placeholder
# window.

source [file join [file dirname [info script]] start_window.tcl]
::monitor_start::show turbomachinery itf_quit_command
