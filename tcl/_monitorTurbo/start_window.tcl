# The placeholder window shared by both modes' start-up scripts: it tells
# which mode runs, where the installation is and which version tag the program
# derived, and has a Quit button.
#
# MONITOR_AUTO_QUIT_MS, when set to a whole number, quits after that many
# milliseconds (smoke runs under a virtual display).

namespace eval ::monitor_start {}

proc ::monitor_start::env_or {name fallback} {
    global env
    if {[info exists env($name)] && $env($name) ne ""} {
        return $env($name)
    }
    return $fallback
}

proc ::monitor_start::build_window {mode_name quit_command} {
    set title "Monitor \u2014 $mode_name mode"
    wm title . $title
    wm protocol . WM_DELETE_WINDOW $quit_command
    wm minsize . 360 140

    frame .main -padx 16 -pady 12
    label .main.heading -text "The monitor is running in $mode_name mode." \
        -font {Helvetica 12 bold} -anchor w
    label .main.folder_name -text "Installation folder:" -anchor w
    label .main.folder -text [env_or TALVIK_DIR "(not set)"] -anchor w
    label .main.tag_name -text "Version tag:" -anchor w
    label .main.tag -text [env_or QV_VERSION "(none)"] -anchor w
    button .main.quit -text "Quit" -width 8 -command $quit_command

    grid .main.heading -row 0 -column 0 -columnspan 2 -sticky w -pady {0 10}
    grid .main.folder_name -row 1 -column 0 -sticky w -padx {0 8}
    grid .main.folder -row 1 -column 1 -sticky w
    grid .main.tag_name -row 2 -column 0 -sticky w -padx {0 8}
    grid .main.tag -row 2 -column 1 -sticky w
    grid .main.quit -row 3 -column 0 -columnspan 2 -sticky e -pady {12 0}
    grid columnconfigure .main 1 -weight 1
    pack .main -fill both -expand 1
}

proc ::monitor_start::schedule_auto_quit {quit_command} {
    set delay [env_or MONITOR_AUTO_QUIT_MS ""]
    if {$delay eq ""} {
        return
    }
    if {![string is integer -strict $delay] || $delay < 0} {
        puts stderr "MONITOR_AUTO_QUIT_MS must be a whole number of milliseconds, not '$delay'; ignored"
        return
    }
    after $delay $quit_command
}

proc ::monitor_start::show {mode_name quit_command} {
    build_window $mode_name $quit_command
    schedule_auto_quit $quit_command
}
