# Curves held by the window: the points of one curve the program serves,
# copied into a curve of the program's `monitor_curve` command, which keeps
# them in contiguous arrays and thins them for drawing. A curve names what it
# shows by a source, a kind and its arguments (`residual $path 0`, see the
# mode's table of curve sources), and `monitor_curve fill` copies a range of
# its positions in one call, as numbers.
#
# A curve is fetched incrementally: it remembers how many positions of the
# model it has read, and each sync reads only the positions that the model has
# gained since. Where the program offers a bookmark for the quantity, the
# number of positions read is stored there too: the program sets its bookmarks
# back to 0 when it drops a run (a restarted or rewritten computation), which
# tells the curve to forget what it holds instead of mixing two runs.
#
# Positions whose value is NaN, infinite or the program's mark for them (the
# largest single-precision float) are points the solver has not given; the
# program leaves them out. A curve created with -recheckMissing reads again
# the missing positions at its end on later syncs, because the program fills
# them in once their inputs arrive (custom plots over motions that lag behind
# the forces); a missing point followed by a given one stays missing.

namespace eval ::curves {
    variable next 0
    variable curve
}

# Creates a curve and answers its id.
#   label   text for legends, statistics and exports
#   source  the served curve: a kind of the mode's curve sources and its
#           arguments
# Options: -project path, -bookmark {getPrefix setPrefix} (get answers the
# stored count, set is called with the new count), -recheckMissing 0|1,
# -logScale 0|1 (the curve prefers a logarithmic value axis).
proc ::curves::create {label source args} {
    variable next
    variable curve
    array set options {-project "" -bookmark {} -recheckMissing 0 -logScale 0}
    foreach {option value} $args {
        if {![info exists options($option)]} {
            error "unknown option \"$option\": must be -project, -bookmark, -recheckMissing or -logScale"
        }
        set options($option) $value
    }
    set id c[incr next]
    set curve($id,label) $label
    set curve($id,source) $source
    set curve($id,project) $options(-project)
    set curve($id,bookmark) $options(-bookmark)
    set curve($id,recheckMissing) $options(-recheckMissing)
    set curve($id,logScale) $options(-logScale)
    set curve($id,store) [monitor_curve new]
    set curve($id,fetched) 0
    set curve($id,firstMissing) -1
    set curve($id,heldAtMissing) 0
    set curve($id,generation) 0
    return $id
}

proc ::curves::exists {id} {
    variable curve
    return [info exists curve($id,label)]
}

proc ::curves::destroy {id} {
    variable curve
    if {![exists $id]} return
    monitor_curve delete $curve($id,store)
    array unset curve $id,*
}

proc ::curves::get {id field} {
    variable curve
    return $curve($id,$field)
}

proc ::curves::label {id} { return [get $id label] }
proc ::curves::project {id} { return [get $id project] }
# The served curve: its kind, then its arguments.
proc ::curves::source {id} { return [get $id source] }
# The name of the curve's points in `monitor_curve`.
proc ::curves::store {id} { return [get $id store] }
proc ::curves::length {id} { return [monitor_curve length [get $id store]] }
# {xs ys} of the points first to last (0-based, both included).
proc ::curves::values {id first last} { return [monitor_curve values [get $id store] $first $last] }

# Raised every time the curve forgets its points, so that views drop what they
# drew from the old ones.
proc ::curves::generation {id} { return [get $id generation] }

# Forgets every point: the next sync reads the model from its first position.
proc ::curves::reset {id} {
    variable curve
    monitor_curve truncate $curve($id,store) 0
    set curve($id,fetched) 0
    set curve($id,firstMissing) -1
    set curve($id,heldAtMissing) 0
    incr curve($id,generation)
    storeBookmark $id
}

proc ::curves::storeBookmark {id} {
    variable curve
    if {[llength $curve($id,bookmark)] == 2} {
        {*}[lindex $curve($id,bookmark) 1] $curve($id,fetched)
    }
}

# Compares the curve with the model and answers how many positions remain to
# be read. A model that holds fewer positions than were read, or a bookmark
# set back below them, means a new run: the curve starts over.
proc ::curves::pending {id} {
    variable curve
    set available [monitor_curve positions {*}$curve($id,source)]
    set reset [expr {$available < $curve($id,fetched)}]
    if {!$reset && [llength $curve($id,bookmark)] == 2 && $curve($id,fetched) > 0} {
        set stored [{*}[lindex $curve($id,bookmark) 0]]
        set reset [expr {[string is integer -strict $stored] && $stored < $curve($id,fetched)}]
    }
    if {$reset} { reset $id }
    return [expr {$available - $curve($id,fetched)}]
}

# Makes the next fetch read again from the first point that was missing,
# for curves created with -recheckMissing; called once per refresh.
proc ::curves::recheckMissing {id} {
    variable curve
    if {!$curve($id,recheckMissing) || $curve($id,firstMissing) < 0} return
    monitor_curve truncate $curve($id,store) $curve($id,heldAtMissing)
    set curve($id,fetched) $curve($id,firstMissing)
    set curve($id,firstMissing) -1
}

# Reads at most `budget` of the pending positions and answers how many it read.
proc ::curves::fetch {id budget} {
    variable curve
    set from $curve($id,fetched)
    set to [expr {$from + max(0, min($budget, [monitor_curve positions {*}$curve($id,source)] - $from))}]
    if {$to == $from} { return 0 }
    lassign [monitor_curve fill $curve($id,store) $from [expr {$to - 1}] {*}$curve($id,source)] appended trailingMissing
    # Points before a given one are final, missing or not.
    if {$appended > 0} { set curve($id,firstMissing) -1 }
    if {$trailingMissing >= 0 && $curve($id,firstMissing) < 0} {
        set curve($id,firstMissing) $trailingMissing
        set curve($id,heldAtMissing) [monitor_curve length $curve($id,store)]
    }
    set curve($id,fetched) $to
    storeBookmark $id
    return [expr {$to - $from}]
}
