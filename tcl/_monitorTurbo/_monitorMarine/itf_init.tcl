# Start-up script of the monitor in marine mode.
#
# The program sources this file from <installation>/_tcl/_monitorTurbo/_monitorMarine/
# once Tk, Tix and BLT are loaded and the marine commands are registered. It
# opens the marine window on the residual files named on the command line, or
# on those of the "-startupdir" folder.

namespace eval ::monitor {
    variable marineFolder [file dirname [file normalize [info script]]]
    variable library [file join [file dirname $marineFolder] lib]
}
foreach part {curves live_refresh plot_panel dashboard settings layout monitor_window} {
    source [file join $::monitor::library $part.tcl]
}
source [file join $::monitor::marineFolder marine_window.tcl]

::marinewin::open {*}[::marinewin::commandLineComputations $argv]
