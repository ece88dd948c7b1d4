# Start-up script of the monitor in turbomachinery mode.
#
# The program sources this file from <installation>/_tcl/_monitorTurbo/ once
# Tk, Tix and BLT are loaded and the turbomachinery commands are registered.
# It opens the turbomachinery window on the residual files named on the
# command line (which the program has loaded) and on the diagram and profile
# files named there.

namespace eval ::monitor {
    variable turboFolder [file dirname [file normalize [info script]]]
    variable library [file join $turboFolder lib]
}
foreach part {curves live_refresh plot_panel dashboard settings layout monitor_window} {
    source [file join $::monitor::library $part.tcl]
}
source [file join $::monitor::turboFolder turbo_window.tcl]

::turbowin::open {} [::turbowin::commandLineBladeFiles $argv]
