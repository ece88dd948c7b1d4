# The live refresh: a timer asks the program to read what the solver has
# appended, then the shown curves fetch their new points.
#
# Fetching runs in slices of about `sliceMs` milliseconds between which the
# event loop turns, so that a curve of a million points coming in for the
# first time does not freeze the window; a refresh of a running computation
# fits in one slice.

namespace eval ::liverefresh {
    variable periodMs 5000
    variable paused 0
    variable timer ""
    variable pumping ""
    variable queue {}
    variable sliceMs 40
    # Positions copied by one call between two looks at the clock: a few
    # milliseconds of work.
    variable chunk 250000
    # Set to 1 whenever every queued curve has been fetched (tests wait on it).
    variable idle 1
    # Command prefixes: update (answers 1 when the program read something new),
    # shown (answers the ids of the shown curves), afterUpdate (called with the
    # update's answer before fetching), fetched (called with the ids of the
    # curves that received points), status (called with a text).
    variable hooks
    array set hooks {update {} shown {} afterUpdate {} fetched {} status {}}
}

proc ::liverefresh::configure {args} {
    variable hooks
    foreach {option value} $args {
        set name [string range $option 1 end]
        if {![string match -* $option] || ![info exists hooks($name)]} {
            error "unknown option \"$option\": must be -update, -shown, -afterUpdate, -fetched or -status"
        }
        set hooks($name) $value
    }
}

proc ::liverefresh::callHook {name args} {
    variable hooks
    if {$hooks($name) ne ""} { return [{*}$hooks($name) {*}$args] }
    return ""
}

proc ::liverefresh::setPeriod {seconds} {
    variable periodMs
    if {[string is double -strict $seconds] && $seconds > 0 && $seconds < 86400} {
        set periodMs [expr {max(100, int($seconds * 1000))}]
    }
    schedule
}

proc ::liverefresh::periodSeconds {} {
    variable periodMs
    return [expr {$periodMs / 1000.0}]
}

proc ::liverefresh::schedule {} {
    variable timer
    variable periodMs
    variable paused
    after cancel $timer
    set timer ""
    if {!$paused} { set timer [after $periodMs ::liverefresh::tick] }
}

proc ::liverefresh::tick {} {
    schedule
    if {[catch refreshNow message]} {
        # The next tick tries again; the user sees why this one failed.
        callHook status "Refresh failed: $message"
    }
}

proc ::liverefresh::setPaused {flag} {
    variable paused
    set paused [expr {$flag ? 1 : 0}]
    callHook status [expr {$paused ? "Live refresh paused" : "Live refresh every [periodSeconds] s"}]
    schedule
}

proc ::liverefresh::refreshNow {} {
    set changed [callHook update]
    callHook afterUpdate $changed
    queueCurves [callHook shown]
}

# Queues curves for fetching (a newly shown curve comes through here too).
proc ::liverefresh::queueCurves {ids} {
    variable queue
    variable idle
    variable pumping
    foreach id $ids {
        if {$id ni $queue && [curves::exists $id]} {
            curves::recheckMissing $id
            lappend queue $id
        }
    }
    if {[llength $queue] == 0} return
    set idle 0
    if {$pumping eq ""} { set pumping [after 0 ::liverefresh::pump] }
}

proc ::liverefresh::pump {} {
    variable queue
    variable sliceMs
    variable chunk
    variable idle
    variable pumping
    set pumping ""
    set end [expr {[clock milliseconds] + $sliceMs}]
    set touched {}
    while {[clock milliseconds] < $end && [llength $queue] > 0} {
        set id [lindex $queue 0]
        if {![curves::exists $id]} {
            set queue [lrange $queue 1 end]
            continue
        }
        set generation [curves::generation $id]
        set asked 0
        set got 0
        if {[catch {
            set pending [curves::pending $id]
            set asked [expr {min($chunk, $pending)}]
            if {$asked > 0} { set got [curves::fetch $id $asked] }
        } message]} {
            # A curve that cannot be read must not stop the others.
            callHook status "Could not read [curves::label $id]: $message"
            set queue [lrange $queue 1 end]
            continue
        }
        if {($got > 0 || $generation != [curves::generation $id]) && $id ni $touched} { lappend touched $id }
        # Done, or stopped at a position that cannot be read yet.
        if {$got == $pending || $got < $asked} { set queue [lrange $queue 1 end] }
    }
    if {[llength $touched] > 0} { callHook fetched $touched }
    if {[llength $queue] > 0} {
        callHook status "Reading [curves::label [lindex $queue 0]]: [curves::length [lindex $queue 0]] points"
        set pumping [after 1 ::liverefresh::pump]
    } else {
        set idle 1
    }
}

# Waits, turning the event loop, until every queued curve has been fetched.
proc ::liverefresh::waitIdle {} {
    variable idle
    while {!$idle} { vwait ::liverefresh::idle }
}
