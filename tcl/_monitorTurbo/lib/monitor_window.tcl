# The main window shared by both modes: a tree of computations and their
# curves on the left, plot panels on the right (see dashboard.tcl), the
# live-refresh controls in the status bar. Each mode fills the tree and says
# how a tree item becomes a curve. The curves selected in the tree
# (Ctrl-click adds one) are drawn in the active panel; Panels -> Show
# selection in a new panel (Ctrl-N, or Return in the tree) gives them a panel
# of their own, Panels -> Add selection to puts them on another panel too.

namespace eval ::monwin {
    variable tree .main.pane.left.tree
    variable plots .main.pane.plots
    variable status ""
    variable paused 0
    # item -> command prefix that creates the item's curve (answers its id)
    variable makers
    # item -> curve id, for the items shown at least once
    variable curveOf
    # panel -> ids of the curves it shows
    variable panelCurves
    # panel -> abscissa title and scale its curves asked for last
    variable axisState
    variable quitCommand ""
    # 1: a zoom or pan of the abscissa in one panel applies to every panel.
    variable linkAbscissae 0
}

proc ::monwin::build {title quit} {
    variable tree
    variable plots
    variable quitCommand $quit
    wm title . $title
    wm protocol . WM_DELETE_WINDOW ::monwin::quit
    wm geometry . 1180x720

    menu .menu
    . configure -menu .menu
    foreach {name label} {file File panels Panels refresh Refresh help Help} {
        menu .menu.$name -tearoff 0
        .menu add cascade -label $label -menu .menu.$name
    }
    .menu.refresh add command -label "Refresh now" -accelerator F5 -command ::liverefresh::refreshNow
    .menu.refresh add checkbutton -label "Pause" -variable ::monwin::paused \
        -command {::liverefresh::setPaused $::monwin::paused}
    .menu.refresh add command -label "Period..." -command ::monwin::askPeriod
    .menu.help add command -label "Reading the plot" -command ::monwin::showHelp
    bind . <F5> ::liverefresh::refreshNow
    .menu.panels add command -label "New panel" -command ::monwin::newPanel
    .menu.panels add command -label "Show selection in a new panel" -accelerator Ctrl+N \
        -command ::monwin::sendSelection
    .menu.panels add cascade -label "Add selection to" -menu .menu.panels.to
    menu .menu.panels.to -tearoff 0 -postcommand ::monwin::fillSendMenu
    .menu.panels add command -label "Close panel" -command {::monwin::closePanel [::monwin::panel]}
    .menu.panels add separator
    .menu.panels add checkbutton -label "Link abscissae" -variable ::monwin::linkAbscissae
    .menu.panels add command -label "Convergence criteria..." -command ::monwin::askCriteria
    bind . <Control-n> ::monwin::sendSelection

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
    bind $tree <Return> ::monwin::sendSelection
    dashboard::create $plots -activatecommand ::monwin::panelActivated -closecommand ::monwin::closePanel \
        -viewcommand ::monwin::viewChanged
    dashboard::add
    .main.pane add .main.pane.left -weight 0
    .main.pane add $plots -weight 1

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

    ::liverefresh::configure -shown ::monwin::allShownCurves -fetched ::monwin::curvesFetched \
        -status ::monwin::setStatus
}

proc ::monwin::tree {} { variable tree; return $tree }
# The active panel: the one the tree's selection shows in.
proc ::monwin::panel {} { return [dashboard::active] }

# Keeps the layout, then quits with the mode's command.
proc ::monwin::quit {} {
    variable quitCommand
    layout::save
    {*}$quitCommand
}

proc ::monwin::setStatus {text} {
    variable status
    set status $text
}

proc ::monwin::askPeriod {} {
    set period [::monwin::askString "Refresh period" "Seconds between two refreshes:" [::liverefresh::periodSeconds]]
    if {$period ne ""} {
        ::liverefresh::setPeriod $period
        settings::setWindowValue period [::liverefresh::periodSeconds]
        setStatus "Live refresh every [::liverefresh::periodSeconds] s"
    }
}

# The confidence of the verdicts' intervals and their largest half-width, in
# per cent; kept with the other settings.
proc ::monwin::askCriteria {} {
    lassign [plotpanel::criteria] confidence tolerance
    set confidence [askString "Convergence criteria" "Confidence of the interval of the mean, in %:" \
                        [expr {100.0 * $confidence}]]
    if {$confidence eq ""} return
    set tolerance [askString "Convergence criteria" "Largest half-width of that interval, in % of the mean:" \
                       [expr {100.0 * $tolerance}]]
    if {$tolerance ne ""} { applyCriteria $confidence $tolerance }
}

proc ::monwin::applyCriteria {confidencePercent tolerancePercent} {
    if {[catch {
        plotpanel::setCriteria [expr {$confidencePercent / 100.0}] [expr {$tolerancePercent / 100.0}]
    } message]} {
        setStatus "Criteria not changed: $message"
        return
    }
    settings::setWindowValue criteria [plotpanel::criteria]
    setStatus "Converged: the $confidencePercent % interval of the steady mean within $tolerancePercent % of it, no drift"
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
    tk_messageBox -parent . -title "Reading the plot" -message "Select curves in the tree; Ctrl-click adds a curve to the plot. The selection shows in the active panel (its title says so; a click on a panel makes it active). Ctrl-N or Return in the tree shows the selection in a new panel; Panels > Add selection to puts it on another panel too. Panels > Link abscissae zooms every panel together.\n\nLeft button: click two corners to zoom in. Right button or Unzoom: back one zoom. Full view: the whole history.\nMiddle button: drag to pan.\nThe readout under the plot names the point nearest to the pointer.\n\nStatistics cover the last N points of each shown curve and follow the live refresh."
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
    variable panelCurves
    set id $curveOf($item)
    foreach w [dashboard::panels] {
        if {$id in [shownCurves $w]} {
            plotpanel::removeCurve $w $id
            set panelCurves($w) [lsearch -all -inline -not -exact $panelCurves($w) $id]
        }
    }
    curves::destroy $id
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

# The curves of a panel (by default the active one).
proc ::monwin::shownCurves {{w ""}} {
    variable panelCurves
    if {$w eq ""} { set w [panel] }
    if {[info exists panelCurves($w)]} { return $panelCurves($w) }
    return {}
}

# The curves of every panel, once each: those the live refresh keeps fetching.
proc ::monwin::allShownCurves {} {
    set all {}
    foreach w [dashboard::panels] {
        foreach id [shownCurves $w] {
            if {$id ni $all} { lappend all $id }
        }
    }
    return $all
}

proc ::monwin::selectedCurves {} {
    variable tree
    set ids {}
    foreach item [$tree selection] {
        set id [curveOfItem $item]
        if {$id ne "" && $id ni $ids} { lappend ids $id }
    }
    return $ids
}

proc ::monwin::selectionChanged {} {
    showCurves [panel] [selectedCurves]
}

# Makes panel w show exactly the curves `wanted`.
proc ::monwin::showCurves {w wanted} {
    variable panelCurves
    set shown [shownCurves $w]
    foreach id $shown {
        if {$id ni $wanted} { plotpanel::removeCurve $w $id }
    }
    set added {}
    foreach id $wanted {
        if {$id ni $shown} {
            plotpanel::addCurve $w $id
            lappend added $id
        }
    }
    set panelCurves($w) $wanted
    updateAxes $w
    ::liverefresh::queueCurves $added
}

# The tree items whose curves panel w shows.
proc ::monwin::panelItems {w} {
    variable curveOf
    set items {}
    foreach id [shownCurves $w] {
        foreach {item curve} [array get curveOf] {
            if {$curve eq $id} { lappend items $item }
        }
    }
    return $items
}

# Shows the curves of the items (those still in the tree) in panel w.
proc ::monwin::showItems {w items} {
    variable tree
    set ids {}
    foreach item $items {
        if {![$tree exists $item]} continue
        set id [curveOfItem $item]
        if {$id ne "" && $id ni $ids} { lappend ids $id }
    }
    showCurves $w $ids
}

proc ::monwin::newPanel {} {
    set w [dashboard::add]
    dashboard::activate $w
    return $w
}

# Shows the tree's selection in a panel of its own, or adds it to panel
# `target`; that panel becomes the active one.
proc ::monwin::sendSelection {{target ""}} {
    set ids [selectedCurves]
    if {[llength $ids] == 0} {
        setStatus "Select curves in the tree first"
        return
    }
    if {$target eq ""} {
        set target [dashboard::add]
        showCurves $target $ids
    } else {
        set all [shownCurves $target]
        foreach id $ids {
            if {$id ni $all} { lappend all $id }
        }
        showCurves $target $all
    }
    dashboard::activate $target
}

proc ::monwin::fillSendMenu {} {
    .menu.panels.to delete 0 end
    foreach w [dashboard::panels] {
        .menu.panels.to add command -label [dashboard::title $w] -command [list ::monwin::sendSelection $w]
    }
}

# The tree shows what the newly active panel shows.
proc ::monwin::panelActivated {w} {
    variable tree
    $tree selection set [panelItems $w]
}

# Closes a panel; the window always keeps one.
proc ::monwin::closePanel {w} {
    variable panelCurves
    variable axisState
    array unset panelCurves $w
    array unset axisState $w
    dashboard::remove $w
    if {[llength [dashboard::panels]] == 0} { newPanel }
}

proc ::monwin::closeAllPanels {} {
    foreach w [dashboard::panels] { closePanel $w }
}

# A panel's abscissa changed by the user's hand; with linked abscissae the
# other panels follow.
proc ::monwin::viewChanged {w low high} {
    variable linkAbscissae
    if {!$linkAbscissae} return
    foreach other [dashboard::panels] {
        if {$other ne $w} { plotpanel::setXRange $other $low $high }
    }
}

# Titles and scale follow the shown curves: the mode names the abscissa of the
# first one; the value axis turns logarithmic when every shown curve asks for
# it, and linear when one does not (the user's own choice stands until the
# shown curves ask otherwise). A change of abscissa or of scale leaves the
# zoom, which belonged to other curves.
proc ::monwin::updateAxes {w} {
    variable xTitleCommand
    variable axisState
    set shown [shownCurves $w]
    if {[llength $shown] == 0} return
    set log 1
    foreach id $shown {
        if {![curves::get $id logScale]} { set log 0 }
    }
    set xTitle ""
    if {[info exists xTitleCommand]} { set xTitle [{*}$xTitleCommand [lindex $shown 0]] }
    set state [list $xTitle $log]
    if {![info exists axisState($w)] || $state ne $axisState($w)} {
        plotpanel::fullView $w
        plotpanel::setLogScale $w $log
        set axisState($w) $state
    }
    set yTitle [expr {[llength $shown] == 1 ? [curves::label [lindex $shown 0]] : ""}]
    plotpanel::setTitles $w $xTitle $yTitle
}

# Titles and scales of every panel, after the abscissa changed.
proc ::monwin::updateAllAxes {} {
    foreach w [dashboard::panels] { updateAxes $w }
}

proc ::monwin::setXTitleCommand {command} {
    variable xTitleCommand
    set xTitleCommand $command
}

proc ::monwin::curvesFetched {ids} {
    foreach w [dashboard::panels] {
        set changed {}
        foreach id $ids {
            if {$id in [shownCurves $w]} { lappend changed $id }
        }
        if {[llength $changed] > 0} { plotpanel::curvesChanged $w $changed }
    }
}

proc ::monwin::addExportEntries {} {
    .menu.file add command -label "Export graph as PNG..." -command {::plotpanel::askExport [::monwin::panel] png}
    .menu.file add command -label "Export graph as PostScript..." -command {::plotpanel::askExport [::monwin::panel] ps}
    .menu.file add command -label "Export shown curves as CSV..." -command {::plotpanel::askExport [::monwin::panel] csv}
    .menu.file add separator
    .menu.file add cascade -label "Recent" -menu .menu.file.recent
    menu .menu.file.recent -tearoff 0 -postcommand ::layout::fillRecentMenu
    .menu.file add command -label "Reset layout" -command ::layout::reset
    .menu.file add separator
    .menu.file add command -label "Quit" -command ::monwin::quit
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
            after $delay ::monwin::quit
        } else {
            puts stderr "MONITOR_AUTO_QUIT_MS must be a whole number of milliseconds, not '$delay'; ignored"
        }
    }
}
