# A plot panel: one BLT graph with its tool bar, a readout of the point under
# the pointer, and a table of statistics of the shown curves: over their last
# N points (mean, standard deviation, minimum, maximum), and the program's
# verdict on their convergence (`monitor_curve verdict`: where the steady part
# starts, its mean with the half-width of its interval, drift, period, and
# converged or why not, in colour). A dashed line marks where each curve's
# start-up transient ends.
#
#   left button: the first click sets a corner, a dashed outline follows the
#   pointer, the second click zooms into the framed area; each zoom keeps the
#   limits it left on the panel's own stack
#   right button or "Unzoom": back one zoom (everything when there is none)
#   Escape or "Full view": everything, the stack emptied
#   middle button: drag to pan
#   pointer: crosshair and the nearest point of any curve in the readout
#
# Panels can be linked: the -viewcommand of a panel hears of every x range the
# user gives it, and `setXRange` gives another panel that range without
# calling its own -viewcommand, so linked panels do not echo each other.
#
# The graph draws thinned copies of the curves (`monitor_curve thin` keeps the
# first, lowest, highest and last point of each pixel column of the visible
# range), so a curve of a million points draws about as fast as one of a
# thousand. Statistics and exports use the full curves.

namespace eval ::plotpanel {
    # panel($w,field): the state of each panel; panel($w,stack) is its zoom
    # stack, a list of {xmin xmax ymin ymax} as they were configured before
    # each zoom ("" for automatic); panel($w,corner) the first corner of a
    # frame being drawn, in data units.
    variable panel
    # The panel that draws into each curve vector.
    variable vectorOwner
    variable redrawEveryMs 300
    # The convergence criteria of every panel: the interval's confidence and
    # its largest half-width relative to the mean.
    variable confidence 0.95
    variable tolerance 0.01
    # The last verdict of each curve of each panel, with what it was made of.
    variable verdicts
    variable palette {#1f77b4 #d62728 #2ca02c #ff7f0e #9467bd #8c564b #e377c2 #17becf #7f7f7f #bcbd22}
}

# Reads `-option value` pairs into the caller's array `arrayName`, which
# holds the defaults; options not in `known` are refused as Tk refuses them.
proc ::plotpanel::parseOptions {arrayName known arguments} {
    upvar 1 $arrayName options
    for {set i 0} {$i < [llength $arguments]} {incr i 2} {
        set option [lindex $arguments $i]
        if {$option ni $known} {
            if {[llength $known] == 1} {
                set choices [lindex $known 0]
            } else {
                set choices "[join [lrange $known 0 end-1] {, }] or [lindex $known end]"
            }
            return -code error "unknown option \"$option\": must be $choices"
        }
        if {$i + 1 == [llength $arguments]} {
            return -code error "value for \"$option\" missing"
        }
        set options($option) [lindex $arguments $i+1]
    }
}

# create w ?-xtitle text? ?-ytitle text? ?-viewcommand prefix?
#   -viewcommand: called with `w low high` (the x limits now configured, ""
#   for automatic) whenever the user changes the x range of the panel.
proc ::plotpanel::create {w args} {
    variable panel
    array set options {-xtitle "" -ytitle "" -viewcommand ""}
    parseOptions options {-xtitle -ytitle -viewcommand} $args
    ttk::frame $w
    set g $w.graph
    set panel($w,graph) $g
    set panel($w,curves) {}
    set panel($w,legend) 1
    set panel($w,logY) 0
    set panel($w,crosshair) 1
    set panel($w,lastCount) 100
    set panel($w,view) {}
    set panel($w,readout) ""
    set panel($w,lastRedraw) 0
    set panel($w,stack) {}
    set panel($w,viewCommand) $options(-viewcommand)

    set bar [ttk::frame $w.bar]
    ttk::button $bar.unzoom -text "Unzoom" -command [list ::plotpanel::unzoom $w]
    ttk::button $bar.full -text "Full view" -command [list ::plotpanel::fullView $w]
    ttk::checkbutton $bar.legend -text "Legend" -variable ::plotpanel::panel($w,legend) \
        -command [list ::plotpanel::applyOptions $w]
    ttk::checkbutton $bar.log -text "Log scale" -variable ::plotpanel::panel($w,logY) \
        -command [list ::plotpanel::applyOptions $w]
    ttk::checkbutton $bar.cross -text "Crosshair" -variable ::plotpanel::panel($w,crosshair) \
        -command [list ::plotpanel::applyOptions $w]
    ttk::menubutton $bar.export -text "Export" -menu $bar.export.menu
    menu $bar.export.menu -tearoff 0
    $bar.export.menu add command -label "Graph as PNG..." -command [list ::plotpanel::askExport $w png]
    $bar.export.menu add command -label "Graph as PostScript..." -command [list ::plotpanel::askExport $w ps]
    $bar.export.menu add command -label "Curves as CSV..." -command [list ::plotpanel::askExport $w csv]
    ttk::label $bar.lastLabel -text "Statistics: last"
    ttk::entry $bar.last -width 8 -textvariable ::plotpanel::panel($w,lastCount)
    ttk::label $bar.lastUnit -text "points"
    bind $bar.last <Return> [list ::plotpanel::updateStatistics $w]
    bind $bar.last <FocusOut> [list ::plotpanel::updateStatistics $w]
    pack $bar.unzoom $bar.full $bar.legend $bar.log $bar.cross $bar.export -side left -padx 2
    tip $bar.unzoom "Back one zoom (also the right mouse button)"
    tip $bar.full "Show every point: leave all zooms and pans"
    tip $bar.last "Number of last points the statistics cover (empty: all)"
    pack $bar.lastUnit $bar.last $bar.lastLabel -side right -padx 2

    blt::graph $g -title "" -plotbackground white -height 360 -width 640
    $g axis configure x -title $options(-xtitle)
    $g axis configure y -title $options(-ytitle)
    $g legend configure -position right -anchor n
    $g crosshairs configure -color grey50 -dashes 2
    $g grid configure -hide no -dashes {2 4} -color grey80
    # A new size changes the pixel columns the curves are thinned to.
    bindtags $g [concat [bindtags $g] plotpanel-view]
    bind plotpanel-view <Configure> {::plotpanel::viewMaybeChanged [winfo parent %W]}
    bind $g <ButtonPress-1> [list ::plotpanel::zoomClick $w %x %y]
    bind $g <ButtonPress-3> [list ::plotpanel::unzoom $w]
    bind $g <KeyPress-Escape> [list ::plotpanel::fullView $w]
    bind $g <ButtonPress-2> [list ::plotpanel::panStart $w %x %y]
    bind $g <B2-Motion> [list ::plotpanel::panMove $w %x %y]
    bind $g <Motion> [list ::plotpanel::pointerMoved $w %x %y]
    bind $g <Motion> +[list ::plotpanel::frameFollow $w %x %y]
    bind $g <Leave> [list ::plotpanel::pointerLeft $w]
    # Whoever destroys the panel, its entries and vectors go with it.
    bind $w <Destroy> [list ::plotpanel::forget $w]

    ttk::label $w.readout -textvariable ::plotpanel::panel($w,readout) -anchor w
    set columns {points mean deviation minimum maximum steady converged drift period verdict}
    set stats [ttk::treeview $w.stats -height 4 -columns $columns -show {tree headings}]
    $stats heading #0 -text "Curve"
    $stats column #0 -width 220
    foreach {column title width} {points "Points" 60 mean "Mean" 90 deviation "Std. dev." 90 minimum "Minimum" 90
                                  maximum "Maximum" 90 steady "Steady from" 80 converged "Steady mean \u00b1" 150
                                  drift "Drift" 45 period "Period" 70 verdict "Verdict" 80} {
        $stats heading $column -text $title
        $stats column $column -width $width -anchor e -stretch 0
    }
    foreach {state colour} {converged #1a7f37 transient #b35900 drifting #b35900 wide #9a6700 short grey40} {
        $stats tag configure $state -foreground $colour
    }
    pack $bar -side top -fill x
    pack $w.stats -side bottom -fill x
    pack $w.readout -side bottom -fill x
    pack $g -side top -fill both -expand 1
    applyOptions $w
    return $w
}

# A help text that pops up when the pointer rests on a widget (Tix balloon).
proc ::plotpanel::tip {widget text} {
    if {![winfo exists .balloon]} { tixBalloon .balloon -initwait 700 }
    .balloon bind $widget -msg $text
}

proc ::plotpanel::graph {w} {
    variable panel
    return $panel($w,graph)
}

proc ::plotpanel::curves {w} {
    variable panel
    return $panel($w,curves)
}

proc ::plotpanel::setTitles {w xTitle yTitle} {
    set g [graph $w]
    $g axis configure x -title $xTitle
    $g axis configure y -title $yTitle
}

proc ::plotpanel::applyOptions {w} {
    variable panel
    set g [graph $w]
    $g legend configure -hide [expr {!$panel($w,legend)}]
    if {$panel($w,logY)} {
        # A logarithmic axis cannot keep limits at or below zero.
        foreach limit {-min -max} {
            set value [$g axis cget y $limit]
            if {$value ne "" && $value <= 0} { $g axis configure y -min "" -max "" }
        }
    }
    $g axis configure y -logscale $panel($w,logY)
    $g crosshairs configure -hide [expr {!$panel($w,crosshair)}]
}

proc ::plotpanel::setLogScale {w flag} {
    variable panel
    set panel($w,logY) [expr {$flag ? 1 : 0}]
    applyOptions $w
}

proc ::plotpanel::logScale {w} {
    variable panel
    return $panel($w,logY)
}

proc ::plotpanel::addCurve {w id} {
    variable panel
    variable palette
    if {$id in $panel($w,curves)} return
    lappend panel($w,curves) $id
    set g [graph $w]
    lassign [takeVectors $w $id] xs ys
    # The first colour that no shown curve has, so that colours do not drift
    # as curves come and go.
    set used [lmap other [lrange $panel($w,curves) 0 end-1] {$g element cget $other -color}]
    set colour [lindex $palette [expr {([llength $panel($w,curves)] - 1) % [llength $palette]}]]
    foreach candidate $palette {
        if {$candidate ni $used} {
            set colour $candidate
            break
        }
    }
    $g element create $id -xdata $xs -ydata $ys -label [curves::label $id] -symbol none \
        -color $colour -linewidth 1 -pixels 3
    redraw $w
}

proc ::plotpanel::removeCurve {w id} {
    variable panel
    set at [lsearch -exact $panel($w,curves) $id]
    if {$at < 0} return
    set panel($w,curves) [lreplace $panel($w,curves) $at $at]
    [graph $w] element delete $id
    if {[[graph $w] marker exists transient-$id]} { [graph $w] marker delete transient-$id }
    array unset ::plotpanel::verdicts $w,$id
    releaseVectors $w $id
    redraw $w
}

# The x and y vectors that panel `w` draws curve `id` from. The first panel
# that shows a curve draws it from ::plotpanel::dx_ID and ::plotpanel::dy_ID;
# another panel showing the same curve at the same time gets vectors of its
# own, since each thins the curve to its own range and width.
proc ::plotpanel::takeVectors {w id} {
    variable panel
    variable vectorOwner
    set suffix ""
    set serial 1
    while {[info exists vectorOwner(::plotpanel::dx_$id$suffix)]} { set suffix _[incr serial] }
    set xs ::plotpanel::dx_$id$suffix
    set ys ::plotpanel::dy_$id$suffix
    blt::vector create $xs $ys
    set vectorOwner($xs) $w
    set panel($w,vectors,$id) [list $xs $ys]
    return $panel($w,vectors,$id)
}

proc ::plotpanel::vectors {w id} {
    variable panel
    return $panel($w,vectors,$id)
}

proc ::plotpanel::releaseVectors {w id} {
    variable panel
    variable vectorOwner
    lassign $panel($w,vectors,$id) xs ys
    unset panel($w,vectors,$id) vectorOwner($xs)
    blt::vector destroy $xs $ys
}

# The abscissa range the thinning works on: the zoomed range, or everything
# (each curve is then thinned over its own points).
proc ::plotpanel::visibleRange {w} {
    set g [graph $w]
    set min [$g axis cget x -min]
    set max [$g axis cget x -max]
    return [list [expr {$min eq "" ? "-Inf" : $min}] [expr {$max eq "" ? "Inf" : $max}]]
}

proc ::plotpanel::plotWidth {w} {
    set g [graph $w]
    set width [winfo width $g]
    catch { set width [$g extents plotwidth] }
    return [expr {max(100, $width)}]
}

# Draws again what each curve shows in the visible range.
proc ::plotpanel::redraw {w} {
    variable panel
    if {![winfo exists $w] || ![info exists panel($w,graph)]} return
    lassign [visibleRange $w] low high
    set columns [plotWidth $w]
    foreach id [curves $w] {
        monitor_curve thin [curves::store $id] {*}[vectors $w $id] $low $high $columns
    }
    set panel($w,view) [list $low $high $columns [zoomed $w]]
    set panel($w,lastRedraw) [clock milliseconds]
    updateStatistics $w
}

# Whether the user or a script fixed the view: a zoom, a pan, or x limits
# given by a linked panel.
proc ::plotpanel::zoomed {w} {
    variable panel
    if {[llength $panel($w,stack)] > 0} { return 1 }
    foreach limit [limits $w] {
        if {$limit ne ""} { return 1 }
    }
    return 0
}

# Curves received points: the view follows them unless the user zoomed in
# somewhere that the new points do not reach.
proc ::plotpanel::curvesChanged {w ids} {
    variable panel
    foreach id $ids {
        if {$id in $panel($w,curves)} {
            scheduleRedraw $w
            return
        }
    }
}

# Redraws once the events in hand are handled; while a long curve comes in
# slice by slice, at most every `redrawEveryMs` so that fetching keeps the
# processor.
proc ::plotpanel::scheduleRedraw {w} {
    variable panel
    variable redrawEveryMs
    if {[info exists panel($w,pending)]} return
    set wait [expr {$panel($w,lastRedraw) + $redrawEveryMs - [clock milliseconds]}]
    if {$wait > 0} {
        set panel($w,pending) [after $wait [list after idle [list ::plotpanel::redrawNow $w]]]
    } else {
        set panel($w,pending) [after idle [list ::plotpanel::redrawNow $w]]
    }
}

proc ::plotpanel::redrawNow {w} {
    variable panel
    unset -nocomplain panel($w,pending)
    redraw $w
}

proc ::plotpanel::viewMaybeChanged {w} {
    variable panel
    after idle [list ::plotpanel::compareView $w]
}

proc ::plotpanel::compareView {w} {
    variable panel
    if {![winfo exists $w] || ![info exists panel($w,graph)]} return
    lassign [visibleRange $w] low high
    if {[list $low $high [plotWidth $w] [zoomed $w]] ne $panel($w,view)} { redraw $w }
}

# The axis limits as configured: {xmin xmax ymin ymax}, "" for automatic.
proc ::plotpanel::limits {w} {
    set g [graph $w]
    set limits {}
    foreach axis {x y} {
        foreach end {-min -max} { lappend limits [$g axis cget $axis $end] }
    }
    return $limits
}

proc ::plotpanel::setLimits {w limits} {
    variable panel
    lassign $limits xMin xMax yMin yMax
    # A logarithmic axis cannot keep limits at or below zero (a zoom kept from
    # before the scale changed).
    if {$panel($w,logY) && (($yMin ne "" && $yMin <= 0) || ($yMax ne "" && $yMax <= 0))} {
        set yMin ""
        set yMax ""
    }
    set g [graph $w]
    $g axis configure x -min $xMin -max $xMax
    $g axis configure y -min $yMin -max $yMax
}

# The x limits as configured: {low high}, "" for automatic.
proc ::plotpanel::xRange {w} {
    return [lrange [limits $w] 0 1]
}

proc ::plotpanel::sameRange {a b} {
    foreach one $a other $b {
        if {($one eq "") != ($other eq "")} { return 0 }
        if {$one ne "" && $one != $other} { return 0 }
    }
    return 1
}

# Tells the -viewcommand when the x range differs from `before`.
proc ::plotpanel::viewChanged {w before} {
    variable panel
    set now [xRange $w]
    if {[sameRange $before $now] || $panel($w,viewCommand) eq ""} return
    uplevel #0 [list {*}$panel($w,viewCommand) $w {*}$now]
}

# The x range from a linked panel, as a zoom: the limits it leaves go on the
# stack, so that Unzoom comes back to them. Empty limits show everything, the
# y axis too. The -viewcommand is not called.
proc ::plotpanel::setXRange {w low high} {
    variable panel
    foreach value [list $low $high] {
        if {$value ne "" && !([string is double -strict $value]
                              && ![catch {expr {abs($value) < Inf}} finite] && $finite)} {
            return -code error "expected a finite number or an empty string but got \"$value\""
        }
    }
    if {$low ne "" && $high ne "" && $low >= $high} {
        return -code error "bad x range \"$low $high\": the low limit must be below the high limit"
    }
    if {$low eq "" && $high eq ""} {
        clearView $w
    } elseif {![sameRange [xRange $w] [list $low $high]]} {
        set limits [limits $w]
        lappend panel($w,stack) $limits
        setLimits $w [lreplace $limits 0 1 $low $high]
    }
    compareView $w
}

# Left button: the first click sets a corner, the second zooms into the frame.
proc ::plotpanel::zoomClick {w x y} {
    variable panel
    set g [graph $w]
    focus $g
    if {![info exists panel($w,corner)]} {
        if {![$g inside $x $y]} return
        set panel($w,corner) [list [$g axis invtransform x $x] [$g axis invtransform y $y]]
        $g marker create line -name plotpanel-frame -dashes {4 2} -linewidth 1 -outline black \
            -coords [frameCoordinates {*}$panel($w,corner) {*}$panel($w,corner)]
        return
    }
    lassign $panel($w,corner) x0 y0
    lassign [pointInPlot $w $x $y] x1 y1
    dropFrame $w
    # A frame a few pixels thin is a slip or a double click, not a view.
    if {abs([$g axis transform x $x0] - [$g axis transform x $x1]) < 3
        || abs([$g axis transform y $y0] - [$g axis transform y $y1]) < 3} return
    set frame [list [expr {min($x0, $x1)}] [expr {max($x0, $x1)}] [expr {min($y0, $y1)}] [expr {max($y0, $y1)}]]
    lassign $frame xMin xMax yMin yMax
    if {!($xMin < $xMax && $yMin < $yMax)} return
    set before [xRange $w]
    lappend panel($w,stack) [limits $w]
    setLimits $w $frame
    compareView $w
    viewChanged $w $before
}

# The point under the pointer in data units, kept inside the plotting area.
proc ::plotpanel::pointInPlot {w x y} {
    set g [graph $w]
    set point {}
    foreach axis {x y} pixel [list $x $y] {
        lassign [$g axis limits $axis] min max
        set value [$g axis invtransform $axis $pixel]
        lappend point [expr {min(max($value, $min), $max)}]
    }
    return $point
}

proc ::plotpanel::frameCoordinates {x0 y0 x1 y1} {
    return [list $x0 $y0 $x1 $y0 $x1 $y1 $x0 $y1 $x0 $y0]
}

# The outline follows the pointer while a frame is drawn.
proc ::plotpanel::frameFollow {w x y} {
    variable panel
    if {![info exists panel($w,corner)]} return
    [graph $w] marker configure plotpanel-frame \
        -coords [frameCoordinates {*}$panel($w,corner) {*}[pointInPlot $w $x $y]]
}

# Forgets a frame drawn half-way.
proc ::plotpanel::dropFrame {w} {
    variable panel
    unset -nocomplain panel($w,corner)
    set g [graph $w]
    if {[$g marker exists plotpanel-frame]} { $g marker delete plotpanel-frame }
}

proc ::plotpanel::clearView {w} {
    variable panel
    dropFrame $w
    set panel($w,stack) {}
    setLimits $w {"" "" "" ""}
}

# Back one zoom; with none left, everything.
proc ::plotpanel::unzoom {w} {
    variable panel
    set before [xRange $w]
    dropFrame $w
    if {[llength $panel($w,stack)] > 0} {
        setLimits $w [lindex $panel($w,stack) end]
        set panel($w,stack) [lrange $panel($w,stack) 0 end-1]
    } else {
        setLimits $w {"" "" "" ""}
    }
    compareView $w
    viewChanged $w $before
}

proc ::plotpanel::fullView {w} {
    set before [xRange $w]
    clearView $w
    compareView $w
    viewChanged $w $before
}

proc ::plotpanel::panStart {w x y} {
    variable panel
    set panel($w,pan) [list $x $y]
}

proc ::plotpanel::panMove {w x y} {
    variable panel
    if {![info exists panel($w,pan)]} return
    set g [graph $w]
    set before [xRange $w]
    lassign $panel($w,pan) x0 y0
    foreach {axis from to} [list x $x0 $x y $y0 $y] {
        lassign [$g axis limits $axis] min max
        set shift [expr {[$g axis invtransform $axis $from] - [$g axis invtransform $axis $to]}]
        if {$axis eq "y" && $panel($w,logY)} {
            set ratio [expr {[$g axis invtransform y $from] / [$g axis invtransform y $to]}]
            $g axis configure y -min [expr {$min * $ratio}] -max [expr {$max * $ratio}]
        } else {
            $g axis configure $axis -min [expr {$min + $shift}] -max [expr {$max + $shift}]
        }
    }
    set panel($w,pan) [list $x $y]
    scheduleRedraw $w
    viewChanged $w $before
}

proc ::plotpanel::pointerMoved {w x y} {
    variable panel
    set g [graph $w]
    if {$panel($w,crosshair)} { $g crosshairs configure -position @$x,$y }
    if {[$g element closest $x $y found -halo 10000 -interpolate no]} {
        set panel($w,readout) [format "%s:  x = %s   y = %s" \
            [curves::label $found(name)] [formatNumber $found(x)] [formatNumber $found(y)]]
    } else {
        set panel($w,readout) ""
    }
}

proc ::plotpanel::pointerLeft {w} {
    variable panel
    set panel($w,readout) ""
}

proc ::plotpanel::formatNumber {value} {
    return [format %.7g $value]
}

# The count of last points the statistics cover; 0 means all of them.
proc ::plotpanel::lastCount {w} {
    variable panel
    set count [string trim $panel($w,lastCount)]
    if {[string is integer -strict $count] && $count > 0} { return $count }
    return 0
}

proc ::plotpanel::setLastCount {w count} {
    variable panel
    set panel($w,lastCount) $count
    updateStatistics $w
}

# {count mean deviation minimum maximum} of the last points of a shown curve.
proc ::plotpanel::statistics {w id} {
    return [monitor_curve statistics [curves::store $id] [lastCount $w]]
}

proc ::plotpanel::updateStatistics {w} {
    set table $w.stats
    $table delete [$table children {}]
    foreach id [curves $w] {
        lassign [statistics $w $id] count mean deviation minimum maximum
        set values [list $count]
        foreach value [list $mean $deviation $minimum $maximum] {
            lappend values [expr {$count > 0 ? [formatNumber $value] : ""}]
        }
        set verdict [verdict $w $id]
        lappend values {*}[verdictColumns $verdict]
        $table insert {} end -id $id -text [curves::label $id] -values $values -tags [dict get $verdict verdict]
        markTransient $w $id [dict get $verdict transientEnd]
    }
}

# The criteria every panel judges by; a change judges every curve again.
proc ::plotpanel::setCriteria {confidence tolerance} {
    variable panel
    if {!([string is double -strict $confidence] && $confidence > 0 && $confidence < 1)} {
        error "the confidence must lie between 0 and 1, not \"$confidence\""
    }
    if {!([string is double -strict $tolerance] && $tolerance >= 0)} {
        error "the tolerance must be 0 or more, not \"$tolerance\""
    }
    set ::plotpanel::confidence $confidence
    set ::plotpanel::tolerance $tolerance
    foreach key [array names panel *,graph] { updateStatistics [lindex [split $key ,] 0] }
}

proc ::plotpanel::criteria {} { return [list $::plotpanel::confidence $::plotpanel::tolerance] }

# The verdict of a curve. It is judged again when the curve is a new one (a
# new run), when the criteria change, and as it grows: once it has grown by a
# two-thousandth of its length, or ten seconds after the last judgement. One
# more row does not change the verdict of a long history, and judging a
# million points at every refresh would double the refresh's cost.
proc ::plotpanel::verdict {w id} {
    variable verdicts
    variable confidence
    variable tolerance
    set store [curves::store $id]
    set length [monitor_curve length $store]
    set basis [list [curves::generation $id] $confidence $tolerance]
    set now [clock milliseconds]
    if {[info exists verdicts($w,$id)]} {
        lassign $verdicts($w,$id) lastBasis lastLength judgedAt verdict
        if {$lastBasis eq $basis && $length >= $lastLength &&
            ($length == $lastLength || ($length - $lastLength < $lastLength / 2000 && $now - $judgedAt < 10000))} {
            return $verdict
        }
    }
    set verdict [monitor_curve verdict $store -confidence $confidence -tolerance $tolerance \
                     -residual [curves::get $id logScale]]
    set verdicts($w,$id) [list $basis $length $now $verdict]
    return $verdict
}

# Steady from, steady mean ± half-width, drift, period, verdict.
proc ::plotpanel::verdictColumns {verdict} {
    if {[dict get $verdict verdict] eq "short"} { return [list "" "" "" "" short] }
    set columns [list [formatNumber [dict get $verdict transientEnd]] \
                     "[formatNumber [dict get $verdict mean]] \u00b1 [format %.2g [dict get $verdict halfWidth]]" \
                     [expr {[dict get $verdict drift] ? "yes" : "no"}]]
    set period [dict get $verdict period]
    lappend columns [expr {$period eq "" ? "" : [formatNumber $period]}] [dict get $verdict verdict]
    return $columns
}

# A dashed line, in the curve's colour, where its start-up transient ends.
proc ::plotpanel::markTransient {w id at} {
    set g [graph $w]
    set marker transient-$id
    if {[$g marker exists $marker]} { $g marker delete $marker }
    if {$at eq "" || ![$g element exists $id]} return
    $g marker create line -name $marker -coords [list $at -Inf $at Inf] -outline [$g element cget $id -color] \
        -dashes {6 4} -linewidth 1 -under 1
}

proc ::plotpanel::askExport {w kind} {
    array set types {png {{"PNG image" .png}} ps {{"PostScript" .ps}} csv {{"CSV table" .csv}}}
    set file [tk_getSaveFile -parent $w -defaultextension [lindex $types($kind) 0 1] -filetypes $types($kind)]
    if {$file eq ""} return
    if {[catch {export $w $kind $file} message]} {
        tk_messageBox -parent $w -icon error -title "Export" -message "Could not write $file: $message"
    }
}

proc ::plotpanel::export {w kind file} {
    set g [graph $w]
    switch -- $kind {
        png {
            update idletasks
            set image [image create photo]
            $g snap $image
            $image write $file -format png
            image delete $image
        }
        ps { $g postscript output $file -maxpect yes }
        csv { exportCsv $w $file }
        default { return -code error "bad export kind \"$kind\": must be png, ps or csv" }
    }
}

# One row per point of every shown curve, at full resolution, each number in
# the shortest form that reads back to the same double:
#   curve,x,y
#   "Fx Hull",1,-12.5
proc ::plotpanel::exportCsv {w file} {
    set out [open $file w]
    fconfigure $out -translation lf -encoding utf-8
    puts $out "curve,x,y"
    foreach id [curves $w] {
        set label \"[string map {\" \"\"} [curves::label $id]]\"
        set count [curves::length $id]
        for {set from 0} {$from < $count} {incr from 10000} {
            lassign [curves::values $id $from [expr {$from + 9999}]] xs ys
            foreach x $xs y $ys {
                puts $out "$label,$x,$y"
            }
        }
    }
    close $out
}

# Takes the panel away: its widgets, its curve vectors, its pending redraw
# and its entries in `panel`.
proc ::plotpanel::destroy {w} {
    forget $w
    if {[winfo exists $w]} { ::destroy $w }
}

proc ::plotpanel::forget {w} {
    variable panel
    if {![info exists panel($w,graph)]} return
    if {[info exists panel($w,pending)]} { after cancel $panel($w,pending) }
    foreach id $panel($w,curves) { releaseVectors $w $id }
    array unset ::plotpanel::verdicts $w,*
    foreach name [array names panel] {
        if {[string first "$w," $name] == 0} { unset panel($name) }
    }
}
