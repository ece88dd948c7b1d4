# The window's layout, kept between sessions in the settings file: for each
# computation, the panels that show its curves (their tree items, relative to
# the computation's branch, and the panel's statistics count and scale) and
# its custom plot formulas; for the window, its geometry, the refresh period,
# the folder of the last file dialog and the recently opened files.
#
# A computation opened for the first time gets the mode's first view: a few
# panels that tell at a glance whether the run goes well. File -> Reset
# layout goes back to it.

namespace eval ::layout {
    # Command prefixes of the mode:
    #   computations        answers the open computations
    #   node project        answers the tree item of the computation's branch
    #   firstview project   answers the first view: one list of items a panel
    #   formulas project    answers its custom plot formulas
    #   addformula project formula
    #   open path           opens a computation (File -> Recent)
    variable hooks
    array set hooks {computations {} node {} firstview {} formulas {} addformula {} open {}}
    # What loading the settings had to say, shown once the window is up.
    variable loadMessage ""
    # Computations opened whose panels wait for their first read: their
    # bodies and motions are known only then.
    variable pending {}
}

proc ::layout::configure {args} {
    variable hooks
    foreach {option value} $args {
        set name [string range $option 1 end]
        if {![string match -* $option] || ![info exists hooks($name)]} {
            error "unknown option \"$option\": must be -computations, -node, -firstview, -formulas, -addformula or -open"
        }
        set hooks($name) $value
    }
}

# Reads the settings file and applies the window's own settings (geometry,
# convergence criteria); answers the
# refresh period to use: the one last chosen in Refresh -> Period, else
# `period`.
proc ::layout::start {period} {
    variable loadMessage
    set loadMessage [settings::load [settings::defaultPath]]
    set geometry [settings::windowValue geometry ""]
    if {[regexp {^\d+x\d+([+-]\d+[+-]\d+)?$} $geometry]} { wm geometry . $geometry }
    catch {plotpanel::setCriteria {*}[settings::windowValue criteria [plotpanel::criteria]]}
    set kept [settings::windowValue period $period]
    return [expr {[string is double -strict $kept] && $kept > 0 ? $kept : $period}]
}

# Says, once, that the settings file could not be used.
proc ::layout::reportLoad {} {
    variable loadMessage
    if {$loadMessage ne ""} { ::monwin::setStatus $loadMessage }
}

proc ::layout::key {project} { return [file normalize $project] }

# A computation has just been opened: its kept custom plots come back now,
# its panels after its first read (see settle).
proc ::layout::opened {project} {
    variable hooks
    variable pending
    settings::noteRecent [key $project]
    set kept [settings::computation [key $project]]
    if {[dict exists $kept formulas] && $hooks(addformula) ne ""} {
        foreach formula [dict get $kept formulas] { {*}$hooks(addformula) $project $formula }
    }
    lappend pending $project
}

# After a refresh: the computations opened since the last one get their kept
# panels, or, when nothing is shown yet, their first view.
proc ::layout::settle {} {
    variable hooks
    variable pending
    set opened $pending
    set pending {}
    foreach project $opened {
        if {$project ni [{*}$hooks(computations)]} continue
        set kept [settings::computation [key $project]]
        if {[dict exists $kept panels] && [llength [dict get $kept panels]] > 0} {
            restorePanels $project [dict get $kept panels]
        } elseif {[llength [::monwin::allShownCurves]] == 0} {
            firstView $project
        }
    }
}

# A panel that shows nothing, else a new one.
proc ::layout::emptyPanel {} {
    foreach w [dashboard::panels] {
        if {[llength [::monwin::shownCurves $w]] == 0} { return $w }
    }
    return [dashboard::add]
}

proc ::layout::restorePanels {project panels} {
    variable hooks
    set node [{*}$hooks(node) $project]
    set first ""
    foreach panel $panels {
        if {[catch {
            set items [lmap item [dict get $panel items] {string cat $node / $item}]
            set w [emptyPanel]
            ::monwin::showItems $w $items
            if {[dict exists $panel statistics]} { plotpanel::setLastCount $w [dict get $panel statistics] }
            if {[dict exists $panel logScale]} { plotpanel::setLogScale $w [dict get $panel logScale] }
        }]} continue
        if {$first eq ""} { set first $w }
    }
    if {$first ne ""} { showActive $first }
}

proc ::layout::firstView {project} {
    variable hooks
    set first ""
    foreach items [{*}$hooks(firstview) $project] {
        set w [emptyPanel]
        ::monwin::showItems $w $items
        if {$first eq ""} { set first $w }
    }
    if {$first ne ""} { showActive $first }
}

# Makes w the active panel, its items the tree's selection.
proc ::layout::showActive {w} {
    dashboard::activate $w
    ::monwin::panelActivated $w
}

# Back to the first view of the first computation.
proc ::layout::reset {} {
    variable hooks
    ::monwin::closeAllPanels
    set computations [{*}$hooks(computations)]
    if {[llength $computations] > 0} { firstView [lindex $computations 0] }
    ::monwin::setStatus "Layout reset to the first view"
}

# Keeps the layout of every open computation and the window's settings.
proc ::layout::save {} {
    variable hooks
    foreach project [{*}$hooks(computations)] {
        set prefix [{*}$hooks(node) $project]/
        set panels {}
        foreach w [dashboard::panels] {
            set items {}
            foreach item [::monwin::panelItems $w] {
                if {[string match $prefix* $item]} { lappend items [string range $item [string length $prefix] end] }
            }
            if {[llength $items] == 0} continue
            lappend panels [dict create items $items statistics [plotpanel::lastCount $w] \
                                logScale [plotpanel::logScale $w]]
        }
        set formulas [expr {$hooks(formulas) eq "" ? {} : [{*}$hooks(formulas) $project]}]
        settings::setComputation [key $project] [dict create panels $panels formulas $formulas]
    }
    settings::setWindowValue geometry [wm geometry .]
    set message [settings::save]
    if {$message ne ""} { ::monwin::setStatus $message }
}

# The folder a file dialog starts in, and noting the one it ended in.
proc ::layout::dialogFolder {} { return [settings::windowValue lastFolder [pwd]] }
proc ::layout::noteDialogFolder {paths} {
    if {[llength $paths] > 0} { settings::setWindowValue lastFolder [file dirname [lindex $paths 0]] }
}

proc ::layout::fillRecentMenu {} {
    variable hooks
    .menu.file.recent delete 0 end
    foreach path [settings::windowValue recent {}] {
        .menu.file.recent add command -label $path -command [list {*}$hooks(open) $path]
    }
}
