# What the window remembers between sessions, in one file beside the
# program's preferences (the user's settings folder):
#   window      geometry, refresh period, folder of the last file dialog,
#               recently opened files
#   computations, by the absolute path of their residual file: their panels
#               and the curves shown there, their custom plot formulas
#
# The file holds one Tcl dictionary. It is written whole to a temporary file
# that is then renamed over the old one, so that a crash or a full disk never
# leaves half a file. A missing file means defaults; a damaged one means
# defaults too, and a line that says so, never an error.

namespace eval ::settings {
    variable path ""
    variable data {}
    variable version 1
    # Recently opened files kept in File -> Recent.
    variable recentCount 8
}

# The settings file: under the folder of the program's preferences, which is
# the parent of its scratch folder.
proc ::settings::defaultPath {} {
    global env
    set scratch [expr {[info exists env(TMP_DIR)] ? $env(TMP_DIR) : [file join ~ .talvik tmp]}]
    return [file normalize [file join $scratch .. monitor_settings.tcl]]
}

# Reads the settings of `file`; answers "" or, for a file that could not be
# used, the line to show.
proc ::settings::load {file} {
    variable path $file
    variable data {}
    variable version
    if {![file exists $file]} { return "" }
    if {[catch {
        set in [open $file r]
        fconfigure $in -encoding utf-8
        set text [read $in 4194304]
        close $in
        if {[dict get $text version] != $version} { error "unknown version" }
        foreach key {window computations} {
            if {[dict exists $text $key]} { dict size [dict get $text $key] }
        }
        dict for {computation layout} [dict get $text computations] { dict size $layout }
        set data $text
    }]} {
        set data {}
        return "Settings file $file is damaged; starting from the defaults"
    }
    return ""
}

# Writes every setting; answers "" or what went wrong.
proc ::settings::save {} {
    variable path
    variable data
    variable version
    if {$path eq ""} { return "" }
    dict set data version $version
    set temporary $path.[pid].new
    if {[catch {
        file mkdir [file dirname $path]
        set out [open $temporary w]
        fconfigure $out -encoding utf-8 -translation lf
        puts $out $data
        close $out
        file rename -force $temporary $path
    } message]} {
        catch {file delete $temporary}
        return "Could not save the settings to $path: $message"
    }
    return ""
}

proc ::settings::windowValue {key default} {
    variable data
    if {[dict exists $data window $key]} { return [dict get $data window $key] }
    return $default
}

proc ::settings::setWindowValue {key value} {
    variable data
    dict set data window $key $value
}

# The most recent first, without repeats.
proc ::settings::noteRecent {file} {
    variable recentCount
    set recent [lsearch -all -inline -not -exact [windowValue recent {}] $file]
    setWindowValue recent [lrange [linsert $recent 0 $file] 0 [expr {$recentCount - 1}]]
}

# The layout kept for a computation: a dictionary with "panels" and
# "formulas", or {} for one never seen.
proc ::settings::computation {file} {
    variable data
    if {[dict exists $data computations $file]} { return [dict get $data computations $file] }
    return {}
}

proc ::settings::setComputation {file layout} {
    variable data
    dict set data computations $file $layout
}

proc ::settings::forgetComputation {file} {
    variable data
    if {[dict exists $data computations $file]} { dict unset data computations $file }
}
