# Curves held by the window: the points of one quantity, fetched from the
# monitor's data commands into a curve of the program's `monitor_curve`
# command, which keeps them in contiguous arrays and thins them for drawing.
#
# A curve is fetched incrementally: it remembers how many positions of the
# model it has read, and each sync reads only the positions that the model has
# gained since. Where the program offers a bookmark for the quantity, the
# number of positions read is stored there too: the program sets its bookmarks
# back to 0 when it drops a run (a restarted or rewritten computation), which
# tells the curve to forget what it holds instead of mixing two runs.
#
# Positions whose value is the program's mark for NaN and infinities (the
# largest single-precision float, 3.40282346638529e+38 as the program prints
# it), or not a number at all, are points the solver has not given; they are
# left out. A curve created with -recheckMissing reads again the missing
# positions at its end on later syncs, because the program fills them in once
# their inputs arrive (custom plots over motions that lag behind the forces);
# a missing point followed by a given one stays missing.

namespace eval ::curves {
    variable next 0
    variable curve
    # Values at least this large are the program's mark for a missing value
    # (just below the largest single-precision float, whatever the digits
    # it is printed with).
    variable missing 3.4028234e38
}

# Creates a curve and answers its id.
#   label   text for legends, statistics and exports
#   fetch   command prefix; called with a position, answers "x y" (or less
#           than two words when the position cannot be read)
#   count   command prefix answering the number of positions in the model
# Options: -project path, -bookmark {getPrefix setPrefix} (get answers the
# stored count, set is called with the new count), -recheckMissing 0|1,
# -logScale 0|1 (the curve prefers a logarithmic value axis).
proc ::curves::create {label fetch count args} {
    variable next
    variable curve
    set id c[incr next]
    array set options {-project "" -bookmark {} -recheckMissing 0 -logScale 0}
    array set options $args
    set curve($id,label) $label
    set curve($id,fetch) $fetch
    set curve($id,count) $count
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
    set available [{*}$curve($id,count)]
    if {![string is integer -strict $available]} { set available 0 }
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
    variable missing
    set from $curve($id,fetched)
    set to [expr {$from + min($budget, [{*}$curve($id,count)] - $from)}]
    set fetch $curve($id,fetch)
    set xs {}
    set ys {}
    set firstMissing -1
    for {set i $from} {$i < $to} {incr i} {
        set point [{*}$fetch $i]
        if {[llength $point] < 2} {
            set to $i
            break
        }
        lassign $point x y
        # Not a number, infinite or the program's mark: a point not given.
        if {[catch {expr {abs($x) < $missing && abs($y) < $missing}} given] || !$given} {
            if {$firstMissing < 0} {
                set firstMissing $i
                set heldAtMissing [expr {[monitor_curve length $curve($id,store)] + [llength $ys]}]
            }
            continue
        }
        set firstMissing -1
        lappend xs $x
        lappend ys $y
    }
    if {[llength $xs] > 0} {
        monitor_curve append $curve($id,store) $xs $ys
        # Points before a given one are final, missing or not.
        set curve($id,firstMissing) -1
    }
    if {$firstMissing >= 0 && $curve($id,firstMissing) < 0} {
        set curve($id,firstMissing) $firstMissing
        set curve($id,heldAtMissing) $heldAtMissing
    }
    set curve($id,fetched) $to
    storeBookmark $id
    return [expr {$to - $from}]
}
