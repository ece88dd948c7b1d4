# The main window shared by both modes: a tree of computations and their
# curves on the left, the plot panel on the right, the live-refresh controls
# in the status bar. Each mode fills the tree and says how a tree item becomes
# a curve; the curves selected in the tree (Ctrl-click adds one) are drawn
# together in the plot.

namespace eval ::monwin {
    variable tree .main.pane.left.tree
    variable panel .main.pane.plot
    variable status ""
    variable paused 0
    # item -> command prefix that creates the item's curve (answers its id)
    variable makers
    # item -> curve id, for the items shown at least once
    variable curveOf
    variable shown {}
    variable quitCommand ""
    variable xTitle ""
}

proc ::monwin::build {title quit} {
    variable tree
    variable panel
    variable quitCommand $quit
    wm title . $title
    wm protocol . WM_DELETE_WINDOW $quit
    wm geometry . 1180x720

    menu .menu
    . configure -menu .menu
    foreach {name label} {file File refresh Refresh help Help} {
        menu .menu.$name -tearoff 0
        .menu add cascade -label $label -menu .menu.$name
    }
    .menu.refresh add command -label "Refresh now" -accelerator F5 -command ::liverefresh::refreshNow
    .menu.refresh add checkbutton -label "Pause" -variable ::monwin::paused \
        -command {::liverefresh::setPaused $::monwin::paused}
    .menu.refresh add command -label "Period..." -command ::monwin::askPeriod
    .menu.help add command -label "Reading the plot" -command ::monwin::showHelp
    bind . <F5> ::liverefresh::refreshNow

    ttk::frame .main
    ttk::panedwindow .main.pane -orient horizontal
    ttk::frame .main.pane.left
    ttk::treeview $tree -selectmode extended -show tree -yscrollcommand {.main.pane.left.scroll set}
    $tree column #0 -width 300
    ttk::scrollbar .main.pane.left.scroll -orient vertical -command [list $tree yview]
    grid $tree .main.pane.left.scroll -sticky news
    grid rowconfigure .main.pane.left 0 -weight 1
    grid columnconfigure .main.pane.left 0 -weight 1
    bind $tree <<TreeviewSelect>> ::monwin::selectionChanged
    plotpanel::create $panel
    .main.pane add .main.pane.left -weight 0
    .main.pane add $panel -weight 1

    ttk::frame .main.status
    ttk::button .main.status.refresh -text "Refresh now" -command ::liverefresh::refreshNow
    ttk::checkbutton .main.status.pause -text "Pause" -variable ::monwin::paused \
        -command {::liverefresh::setPaused $::monwin::paused}
    ttk::label .main.status.text -textvariable ::monwin::status -anchor w
    pack .main.status.refresh .main.status.pause -side left -padx 2
    plotpanel::tip .main.status.refresh "Read what the solver has written since the last refresh (F5)"
    plotpanel::tip .main.status.pause "Stop the timed refresh; Refresh now still works"
    pack .main.status.text -side left -fill x -expand 1 -padx 6
    pack .main.status -side bottom -fill x
    pack .main.pane -side top -fill both -expand 1
    pack .main -fill both -expand 1

    ::liverefresh::configure -shown ::monwin::shownCurves -fetched ::monwin::curvesFetched \
        -status ::monwin::setStatus
}

proc ::monwin::tree {} { variable tree; return $tree }
proc ::monwin::panel {} { variable panel; return $panel }

proc ::monwin::setStatus {text} {
    variable status
    set status $text
}

proc ::monwin::askPeriod {} {
    set period [::monwin::askString "Refresh period" "Seconds between two refreshes:" [::liverefresh::periodSeconds]]
    if {$period ne ""} {
        ::liverefresh::setPeriod $period
        setStatus "Live refresh every [::liverefresh::periodSeconds] s"
    }
}

# A small modal dialog with one entry; answers the text, or "" when cancelled.
proc ::monwin::askString {title prompt value} {
    set d .ask
    catch {destroy $d}
    toplevel $d
    wm title $d $title
    wm transient $d .
    set ::monwin::answer $value
    ttk::label $d.prompt -text $prompt
    ttk::entry $d.entry -textvariable ::monwin::answer -width 30
    ttk::button $d.ok -text "OK" -command {set ::monwin::done 1}
    ttk::button $d.cancel -text "Cancel" -command {set ::monwin::done 0}
    grid $d.prompt - -sticky w -padx 8 -pady 4
    grid $d.entry - -sticky we -padx 8
    grid $d.ok $d.cancel -pady 8
    bind $d.entry <Return> {set ::monwin::done 1}
    wm protocol $d WM_DELETE_WINDOW {set ::monwin::done 0}
    focus $d.entry
    set ::monwin::done 0
    vwait ::monwin::done
    destroy $d
    return [expr {$::monwin::done ? $::monwin::answer : ""}]
}

proc ::monwin::showHelp {} {
    tk_messageBox -parent . -title "Reading the plot" -message "Select curves in the tree; Ctrl-click adds a curve to the plot.\n\nLeft button: click two corners to zoom in. Right button or Unzoom: back one zoom. Full view: the whole history.\nMiddle button: drag to pan.\nThe readout under the plot names the point nearest to the pointer.\n\nStatistics cover the last N points of each shown curve and follow the live refresh."
}

# Registers how an item of the tree becomes a curve. An item built again with
# the same maker keeps its curve and the points it holds.
proc ::monwin::setCurveMaker {item maker} {
    variable makers
    variable curveOf
    if {[info exists makers($item)] && $makers($item) ne $maker && [info exists curveOf($item)]} {
        dropCurve $item
    }
    set makers($item) $maker
}

proc ::monwin::dropCurve {item} {
    variable curveOf
    plotpanel::removeCurve [panel] $curveOf($item)
    curves::destroy $curveOf($item)
    unset curveOf($item)
}

proc ::monwin::curveOfItem {item} {
    variable curveOf
    variable makers
    if {[info exists curveOf($item)] && [curves::exists $curveOf($item)]} { return $curveOf($item) }
    if {![info exists makers($item)]} { return "" }
    set curveOf($item) [{*}$makers($item)]
    return $curveOf($item)
}

# Takes the items under `parent` out of the tree before the mode fills it
# again; answers the items that were selected. Their curves wait for
# finishRebuild, which keeps those whose items came back.
proc ::monwin::clearChildren {parent} {
    variable tree
    set selected [$tree selection]
    $tree delete [$tree children $parent]
    return $selected
}

# Drops the curves whose items are gone and selects again the items that
# still exist.
proc ::monwin::finishRebuild {selected} {
    variable tree
    variable curveOf
    variable makers
    foreach item [array names makers] {
        if {![$tree exists $item]} {
            if {[info exists curveOf($item)]} { dropCurve $item }
            unset makers($item)
        }
    }
    set still {}
    foreach item $selected {
        if {[$tree exists $item]} { lappend still $item }
    }
    $tree selection set $still
    selectionChanged
}

# The curves of a computation forget their points (a new run is on disk).
proc ::monwin::resetCurvesOf {project} {
    variable curveOf
    foreach {item id} [array get curveOf] {
        if {[curves::exists $id] && [curves::project $id] eq $project} { curves::reset $id }
    }
}

proc ::monwin::shownCurves {} {
    variable shown
    return $shown
}

proc ::monwin::selectionChanged {} {
    variable tree
    variable shown
    set wanted {}
    foreach item [$tree selection] {
        set id [curveOfItem $item]
        if {$id ne ""} { lappend wanted $id }
    }
    foreach id $shown {
        if {$id ni $wanted} { plotpanel::removeCurve [panel] $id }
    }
    set added {}
    foreach id $wanted {
        if {$id ni $shown} {
            plotpanel::addCurve [panel] $id
            lappend added $id
        }
    }
    set shown $wanted
    updateAxes
    ::liverefresh::queueCurves $added
}

# Titles and scale follow the shown curves: the mode names the abscissa of the
# first one; the value axis turns logarithmic when every shown curve asks for
# it, and linear when one does not (the user's own choice stands until the
# shown curves ask otherwise). A change of abscissa or of scale leaves the
# zoom, which belonged to other curves.
proc ::monwin::updateAxes {} {
    variable shown
    variable xTitleCommand
    variable axisState
    if {[llength $shown] == 0} return
    set log 1
    foreach id $shown {
        if {![curves::get $id logScale]} { set log 0 }
    }
    set xTitle ""
    if {[info exists xTitleCommand]} { set xTitle [{*}$xTitleCommand [lindex $shown 0]] }
    set state [list $xTitle $log]
    if {![info exists axisState] || $state ne $axisState} {
        plotpanel::fullView [panel]
        plotpanel::setLogScale [panel] $log
        set axisState $state
    }
    set yTitle [expr {[llength $shown] == 1 ? [curves::label [lindex $shown 0]] : ""}]
    plotpanel::setTitles [panel] $xTitle $yTitle
}

proc ::monwin::setXTitleCommand {command} {
    variable xTitleCommand
    set xTitleCommand $command
}

proc ::monwin::curvesFetched {ids} {
    plotpanel::curvesChanged [panel] $ids
}

proc ::monwin::addExportEntries {} {
    .menu.file add command -label "Export graph as PNG..." -command [list ::plotpanel::askExport [panel] png]
    .menu.file add command -label "Export graph as PostScript..." -command [list ::plotpanel::askExport [panel] ps]
    .menu.file add command -label "Export shown curves as CSV..." -command [list ::plotpanel::askExport [panel] csv]
    .menu.file add separator
    .menu.file add command -label "Quit" -command $::monwin::quitCommand
}

# Starts the live refresh and, when MONITOR_AUTO_QUIT_MS is set to a whole
# number, quits after that many milliseconds (runs under a virtual display).
proc ::monwin::start {periodSeconds} {
    global env
    ::liverefresh::setPeriod $periodSeconds
    setStatus "Live refresh every [::liverefresh::periodSeconds] s"
    if {[info exists env(MONITOR_AUTO_QUIT_MS)] && $env(MONITOR_AUTO_QUIT_MS) ne ""} {
        set delay $env(MONITOR_AUTO_QUIT_MS)
        if {[string is integer -strict $delay] && $delay >= 0} {
            after $delay $::monwin::quitCommand
        } else {
            puts stderr "MONITOR_AUTO_QUIT_MS must be a whole number of milliseconds, not '$delay'; ignored"
        }
    }
}
