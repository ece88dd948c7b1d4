# The turbomachinery monitor's window. Each residual file (a project) gets a
# branch of the tree:
#   Global quantities               Lift, Axial thrust, Qmax, Tmax, In, Torque, Out
#   Block <n> / rms, max            the flow equations, the turbulence equations,
#                                   the species and harmonics that the file's
#                                   header names
# and blade files get one each: the diagram's four curves, the profile's two.
# The abscissa is the iteration number, or the work unit when chosen.

namespace eval ::turbowin {
    variable projects {}
    variable node
    # Numbers tree branches; never goes down, so that a branch id is never
    # used twice.
    variable opened 0
    variable signature
    variable blades {}
    variable workUnit 0
    # Bookmark cell (row, column) that marks a project as drawn; the program
    # empties a project's bookmarks when it finds its file rewritten.
    variable drawnCell {999 0}
    variable globals {0 Lift 1 "Axial thrust" 2 Qmax 3 Tmax 4 In 5 Torque 6 Out}
    # Codes of the flow equations: {rms max} each.
    variable flowCodes {d {6 7} wx {10 11} wy {12 13} wz {14 15} E {8 9}}
}

proc ::turbowin::open {residualFiles bladeFiles} {
    ::monwin::build "Monitor \u2014 turbomachinery" itf_quit_command
    .menu.file add command -label "Open residual file..." -command ::turbowin::askOpen
    .menu.file add command -label "Open diagram or profile file..." -command ::turbowin::askOpenBlade
    .menu.file add command -label "Close selected residual file" -command ::turbowin::closeSelected
    .menu.file add separator
    .menu.file add checkbutton -label "Abscissa in work units" -variable ::turbowin::workUnit \
        -command ::turbowin::applyWorkUnit
    .menu.file add separator
    ::monwin::addExportEntries
    ::monwin::setXTitleCommand ::turbowin::abscissaTitle
    ::liverefresh::configure -update ::turbowin::update -afterUpdate ::turbowin::afterUpdate
    layout::configure -computations ::turbowin::computations -node ::turbowin::nodeOf \
        -firstview ::turbowin::firstView -open ::turbowin::openAndRead
    set period [layout::start 5]
    itf_work_unit 0
    syncProjects
    foreach path $residualFiles { openResidualFile $path }
    foreach path $bladeFiles { openBlade $path }
    ::monwin::start $period
    ::liverefresh::refreshNow
    layout::reportLoad
}

# Residual files are the program's running projects (named on the command
# line); diagram (.diag) and profile (.prof) files named there are opened here.
proc ::turbowin::commandLineBladeFiles {arguments} {
    set paths {}
    foreach argument $arguments {
        if {[string match -nocase *.diag $argument] || [string match -nocase *.prof $argument]} { lappend paths $argument }
    }
    return $paths
}

proc ::turbowin::askOpen {} {
    set paths [tk_getOpenFile -parent . -multiple 1 -title "Open residual file" -initialdir [layout::dialogFolder] \
                   -filetypes {{"Residual files" .res} {"All files" *}}]
    layout::noteDialogFolder $paths
    foreach path $paths { openResidualFile $path }
    ::liverefresh::refreshNow
}

proc ::turbowin::openAndRead {path} {
    openResidualFile $path
    ::liverefresh::refreshNow
}

proc ::turbowin::computations {} {
    variable projects
    return $projects
}

proc ::turbowin::nodeOf {project} {
    variable node
    return $node($project)
}

# What a residual file shows when it is opened for the first time, one panel
# each: the rms residuals of the flow equations of block 1, the global
# quantities.
proc ::turbowin::firstView {project} {
    variable node
    set tree [::monwin::tree]
    set root $node($project)
    set panels {}
    if {[$tree exists $root/block/0/rms]} { lappend panels [lrange [$tree children $root/block/0/rms] 0 4] }
    lappend panels [$tree children $root/globals]
    return $panels
}

# Adds a residual file to the program's projects and to the tree.
proc ::turbowin::openResidualFile {path} {
    variable projects
    foreach project $projects {
        if {[file normalize $project] eq [file normalize $path]} {
            ::monwin::setStatus "$path is open already"
            return
        }
    }
    itf_add_res_file $path
    syncProjects [list $path]
}

proc ::turbowin::askOpenBlade {} {
    set paths [tk_getOpenFile -parent . -multiple 1 -title "Open diagram or profile" -initialdir [layout::dialogFolder] \
                   -filetypes {{"Diagrams" .diag} {"Profiles" .prof} {"All files" *}}]
    layout::noteDialogFolder $paths
    foreach path $paths { openBlade $path }
    ::liverefresh::refreshNow
}

# The files named on the command line (the program's running projects), in
# the program's order.
proc ::turbowin::runningProjects {} {
    return [lrange [itf_read_running_project] 1 end]
}

# Gives a branch to every running project and to each of `added` that has none.
proc ::turbowin::syncProjects {{added {}}} {
    variable projects
    variable node
    variable opened
    set tree [::monwin::tree]
    foreach project [concat [runningProjects] $added] {
        if {[info exists node($project)]} continue
        lappend projects $project
        set node($project) r[incr opened]
        $tree insert {} end -id $node($project) -text [file tail $project] -open 1
        rebuild $project
        itf_set_current_nbIter {*}$::turbowin::drawnCell $project 1
        layout::opened $project
    }
}

# Closes the files opened from the menu among the selection; the files named
# on the command line stay for the whole session.
proc ::turbowin::closeSelected {} {
    variable projects
    variable node
    set tree [::monwin::tree]
    set running [runningProjects]
    set closing {}
    foreach project $projects {
        foreach item [$tree selection] {
            if {$item eq $node($project) || [string first $node($project)/ $item] == 0} {
                if {$project in $running} {
                    ::monwin::setStatus "[file tail $project] was named on the command line and stays open"
                } else {
                    lappend closing $project
                }
                break
            }
        }
    }
    if {[llength $closing] == 0} return
    itf_remove_res_file [llength $closing] $closing
    foreach project $closing {
        $tree delete $node($project)
        unset node($project)
        set at [lsearch -exact $projects $project]
        set projects [lreplace $projects $at $at]
    }
    ::monwin::finishRebuild [$tree selection]
}

proc ::turbowin::item {project args} {
    variable node
    return [join [list $node($project) {*}$args] /]
}

proc ::turbowin::structureOf {project} {
    itf_set_current_project $project
    return [list [itf_get_nbBlock $project] [itf_get_current_mode]]
}

# The equations of a project, as {label rmsCurve maxCurve} where each curve
# is the start of a curve source, completed by the project and block: a block
# residual by its code for the named equations, a harmonic residual for the
# extra equations (species and harmonics share their positions).
proc ::turbowin::equations {project} {
    variable flowCodes
    itf_set_current_project $project
    lassign [itf_get_current_mode] module turbulence extra1 extra2 names
    set equations {}
    foreach {name codes} $flowCodes {
        lappend equations [list $name [list block [lindex $codes 0]] \
                               [list block [lindex $codes 1]]]
    }
    if {$module eq "TF"} {
        lappend equations [list bladeForce {block 16} {block 18}]
    }
    switch -- $turbulence {
        K-E {
            lappend equations {k {block 17} {block 19}}
            lappend equations {eps {block 20} {block 21}}
        }
        K-O {
            lappend equations {k {block 17} {block 19}}
            lappend equations {omega {block 20} {block 21}}
        }
        SPL-ALM {
            lappend equations {nu {block 38} {block 39}}
        }
    }
    set h 0
    foreach name $names {
        incr h
        set code [expr {39 + 2 * $h}]
        lappend equations [list $name [list harmonic $code rms] \
                               [list harmonic $code max]]
    }
    return $equations
}

proc ::turbowin::rebuild {project} {
    variable node
    variable signature
    variable globals
    set tree [::monwin::tree]
    set root $node($project)
    set selected [::monwin::clearChildren $root]
    set signature($project) [structureOf $project]
    set tail [file tail $project]
    set branch [$tree insert $root end -id $root/globals -text "Global quantities" -open 1]
    foreach {code name} $globals {
        addCurveItem $branch [item $project global $code] $name \
            [list ::turbowin::globalCurve $project $code "$name \u2014 $tail"]
    }
    set equations [equations $project]
    set blocks [itf_get_nbBlock $project]
    for {set b 0} {$b < $blocks} {incr b} {
        set blockItem [$tree insert $root end -id $root/block/$b -text "Block [expr {$b + 1}]" -open [expr {$b == 0}]]
        foreach {kind column} {rms 1 max 2} {
            set kindItem [$tree insert $blockItem end -id $root/block/$b/$kind -text $kind -open [expr {$kind eq "rms"}]]
            set e 0
            foreach equation $equations {
                set name [lindex $equation 0]
                addCurveItem $kindItem [item $project $kind $b $e] $name \
                    [list ::turbowin::residualCurve $project [lindex $equation $column] $b $kind $e \
                         "${kind}_$name block [expr {$b + 1}] \u2014 $tail"]
                incr e
            }
        }
    }
    ::monwin::finishRebuild $selected
}

proc ::turbowin::addCurveItem {parent item text maker} {
    [::monwin::tree] insert $parent end -id $item -text $text
    ::monwin::setCurveMaker $item $maker
}

proc ::turbowin::globalCurve {project code label} {
    return [curves::create $label [list global $project $code] -project $project -bookmark [bookmark $project $code 0]]
}

# Bookmark cells: row = code (globals) or 40 + 2 * equation (+1 for max),
# column = 0 for globals and block + 1 for residuals.
proc ::turbowin::bookmark {project row column} {
    return [list [list itf_get_current_nbIter $row $column $project] [list itf_set_current_nbIter $row $column $project]]
}

# command: {block code} or {harmonic code prefix}, the equation's residual.
# Block residuals are plotted as their change since the first record, so they
# start at 0 and go negative as they fall.
proc ::turbowin::residualCurve {project command block kind equation label} {
    set row [expr {40 + 2 * $equation + ($kind eq "max")}]
    set source [list [lindex $command 0] $project {*}[lrange $command 1 end] $block]
    return [curves::create $label $source -project $project -logScale 0 -bookmark [bookmark $project $row [expr {$block + 1}]]]
}

proc ::turbowin::abscissaTitle {id} {
    variable workUnit
    if {[lindex [curves::source $id] 0] in {diagram profile}} { return "x" }
    return [expr {$workUnit ? "Work units" : "Iterations"}]
}

# The abscissa changes for every point: every curve is read again.
proc ::turbowin::applyWorkUnit {} {
    variable workUnit
    variable projects
    itf_work_unit $workUnit
    foreach project $projects { ::monwin::resetCurvesOf $project }
    ::monwin::updateAllAxes
    ::liverefresh::queueCurves [::monwin::allShownCurves]
}

# --- Blade files -----------------------------------------------------------

proc ::turbowin::openBlade {path} {
    variable blades
    set tree [::monwin::tree]
    if {$path in $blades} return
    lappend blades $path
    set root b[llength $blades]
    if {[string match -nocase *.prof $path]} {
        itf_add_prof_file $path
        $tree insert {} end -id $root -text "[file tail $path] (profile)" -open 1
        foreach side {Extrado Intrado} {
            addCurveItem $root $root/$side $side [list ::turbowin::bladeCurve profile $path $side "$side \u2014 [file tail $path]"]
        }
    } else {
        itf_add_diag_file $path
        $tree insert {} end -id $root -text "[file tail $path] (diagram)" -open 1
        foreach side {Extrado_1 Extrado_2 Intrado_1 Intrado_2} {
            addCurveItem $root $root/$side $side [list ::turbowin::bladeCurve diagram $path $side "$side \u2014 [file tail $path]"]
        }
    }
}

# kind: diagram or profile.
proc ::turbowin::bladeCurve {kind path side label} {
    return [curves::create $label [list $kind $path $side] -project $path]
}

# --- Refresh ---------------------------------------------------------------

proc ::turbowin::update {} {
    variable blades
    if {[llength $blades] > 0} {
        itf_update_diag_file
        itf_update_prof_file
    }
    return [itf_update_now_monitor]
}

# A project whose bookmarks the program emptied holds a new run; blade files
# are read whole at every refresh, so their curves are read again.
proc ::turbowin::afterUpdate {changed} {
    variable projects
    variable signature
    variable blades
    variable drawnCell
    foreach project $projects {
        if {[itf_get_current_nbIter {*}$drawnCell $project] == 0} {
            ::monwin::resetCurvesOf $project
            rebuild $project
            itf_set_current_nbIter {*}$drawnCell $project 1
            ::monwin::setStatus "[file tail $project]: the file was written again; showing the new run"
        } elseif {$changed && [structureOf $project] ne $signature($project)} {
            rebuild $project
        }
    }
    foreach path $blades { ::monwin::resetCurvesOf $path }
    layout::settle
}
