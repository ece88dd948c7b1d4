# The marine monitor's window. Every computation opened (by its residual
# file) gets a branch of the tree:
#   Residuals                       log scale, against nonlinear iterations
#   Forces and moments / <body> [/ <sub-body>]
#   Per time step / <body> ...      converged values of unsteady runs
#   Motions / <body>
#   Actuator disks / <disk>
#   User quantities                 the columns of user_data.csv, with units
#   Custom plots                    formulas over the forces, moments, motions
#
# Item ids are built from what they show (see `item`), so that the tree can
# be rebuilt after a new run and the same curves selected again.

namespace eval ::marinewin {
    variable projects {}
    variable node
    # Numbers tree branches; never goes down, so that a branch id is never
    # used twice.
    variable opened 0
    variable signature
    # Slot of the program's per-computation counters that marks a computation
    # as drawn; the program sets its counters back to 0 when it loads a new
    # run, which tells the window to start that computation's curves afresh.
    variable drawnSlot 46
    variable formula ""
    variable formulaMessage ""
    variable functions {log log10 exp sqrt sin cos tan cotan sinh cosh tanh asin acos atan abs}
}

proc ::marinewin::open {args} {
    ::monwin::build "Monitor \u2014 marine" itf_quit_command_KELP
    .menu.file add command -label "Open computation..." -command ::marinewin::askOpen
    .menu.file add command -label "Close computation" -command ::marinewin::closeSelected
    .menu.file add separator
    ::monwin::addExportEntries
    ::monwin::setXTitleCommand ::marinewin::abscissaTitle
    buildFormulaArea
    ::liverefresh::configure -update itf_update_now_monitor_KELP -afterUpdate ::marinewin::afterUpdate
    layout::configure -computations ::marinewin::computations -node ::marinewin::nodeOf \
        -firstview ::marinewin::firstView -formulas ::marinewin::formulasOf -addformula ::marinewin::restoreFormula \
        -open ::marinewin::openAndRead
    set period [layout::start [get_preference Refresh 5]]
    foreach path $args { openComputation $path }
    ::monwin::start $period
    # The program reads the rows of a computation at its first refresh.
    ::liverefresh::refreshNow
    layout::reportLoad
}

# Residual files named on the command line, and those of the start-up folder
# ("-startupdir", where the program has already moved).
proc ::marinewin::commandLineComputations {arguments} {
    set paths {}
    for {set i 0} {$i < [llength $arguments]} {incr i} {
        set argument [lindex $arguments $i]
        if {$argument eq "-startupdir"} {
            incr i
            foreach path [lsort [glob -nocomplain -types f *.res]] { lappend paths $path }
        } elseif {[string match -nocase *.res $argument]} {
            lappend paths $argument
        }
    }
    return $paths
}

proc ::marinewin::askOpen {} {
    set paths [tk_getOpenFile -parent . -multiple 1 -title "Open computation" -initialdir [layout::dialogFolder] \
        -filetypes {{"Residual files" .res} {"All files" *}}]
    layout::noteDialogFolder $paths
    foreach path $paths { openComputation $path }
    ::liverefresh::refreshNow
}

proc ::marinewin::openAndRead {path} {
    openComputation $path
    ::liverefresh::refreshNow
}

# Opens a computation and answers the path by which the program knows it
# ("" when the program could not take it).
proc ::marinewin::openComputation {path} {
    variable projects
    variable node
    variable opened
    foreach project $projects {
        if {[file normalize $project] eq [file normalize $path]} {
            ::monwin::setStatus "$path is open already"
            return $project
        }
    }
    lassign [itf_add_res_file_KELP $path] created project
    if {$created != 1} {
        ::monwin::setStatus "Could not open $path"
        return ""
    }
    lappend projects $project
    set node($project) p[incr opened]
    [::monwin::tree] insert {} end -id $node($project) -text [file tail $project] -open 1
    rebuild $project
    itf_set_current_nbIter_KELP $::marinewin::drawnSlot $project 1
    layout::opened $project
    ::monwin::setStatus "Opened $project"
    return $project
}

proc ::marinewin::computations {} {
    variable projects
    return $projects
}

proc ::marinewin::nodeOf {project} {
    variable node
    return $node($project)
}

# What a computation shows when it is opened for the first time, one panel
# each: its residuals, the total force Fx of its first body with forces, the
# motions of its first moving body.
proc ::marinewin::firstView {project} {
    variable node
    set tree [::monwin::tree]
    set root $node($project)
    $tree item $root/resids -open 1
    set panels [list [$tree children $root/resids]]
    foreach body [$tree children $root/forces] {
        foreach item [$tree children $body] {
            if {[$tree item $item -text] eq "Fx"} {
                lappend panels [list $item]
                break
            }
        }
        if {[llength $panels] > 1} break
    }
    if {[$tree exists $root/motions]} {
        set moving [lindex [$tree children $root/motions] 0]
        if {$moving ne ""} { lappend panels [$tree children $moving] }
    }
    return [lsearch -all -inline -not -exact $panels {}]
}

proc ::marinewin::formulasOf {project} {
    set formulas {}
    for {set k 0} {$k < [itm_get_custom_plots_no $project]} {incr k} {
        lappend formulas [itm_get_custom_plot_formula $project $k]
    }
    return $formulas
}

# A kept custom plot, added again when its computation opens.
proc ::marinewin::restoreFormula {project formula} {
    if {[itm_add_custom_plot $project $formula] >= 0} { rebuild $project }
}

proc ::marinewin::closeSelected {} {
    variable projects
    variable node
    set tree [::monwin::tree]
    foreach project $projects {
        foreach item [$tree selection] {
            if {$item eq $node($project) || [string match $node($project)/* $item]} {
                closeComputation $project
                break
            }
        }
    }
}

proc ::marinewin::closeComputation {project} {
    variable projects
    variable node
    set tree [::monwin::tree]
    $tree delete $node($project)
    itf_remove_res_file_KELP 1 [list $project]
    set at [lsearch -exact $projects $project]
    set projects [lreplace $projects $at $at]
    unset node($project)
    ::monwin::finishRebuild [$tree selection]
    refreshVariables
}

# The tree item of a curve: item project kind args, for example
#   item $p force 0 -1 2       force 2 (FxP) of body 0
#   item $p resid 1
proc ::marinewin::item {project kind args} {
    variable node
    return [join [list $node($project) $kind {*}$args] /]
}

# Labels name the computation, so that curves of several computations can be
# told apart in one plot.
proc ::marinewin::projectLabel {project} {
    return " \u2014 [file tail $project]"
}

# Counts that decide the shape of a computation's branch; when they change
# (a file appeared, a plot was added) the branch is built again.
proc ::marinewin::structureOf {project} {
    set shape [list [get_number_of_bodies_KELP $project] [itf_get_motions_number_KELP $project] \
        [itf_get_disk_count $project] [itm_get_number_of_extra_quantities $project] \
        [itm_get_custom_plots_no $project] [is_unsteady_conv_available $project]]
    for {set b 0} {$b < [lindex $shape 0]} {incr b} {
        lappend shape [get_sub_object_number_KELP $project $b]
    }
    return $shape
}

# Builds the computation's branch again, one sub-branch after the other.
proc ::marinewin::rebuild {project} {
    variable node
    variable signature
    set selected [::monwin::clearChildren $node($project)]
    set signature($project) [structureOf $project]
    foreach branch {residualBranch forceBranch motionBranch diskBranch userQuantityBranch customPlotBranch} {
        $branch $project $node($project)
    }
    ::monwin::finishRebuild $selected
    refreshVariables
}

proc ::marinewin::residualBranch {p root} {
    set branch [[::monwin::tree] insert $root end -id $root/resids -text "Residuals" -open 0]
    for {set r 0} {$r < [itf_get_resids_number_KELP]} {incr r} {
        lassign [itf_get_KELP_vars_resids $p $r] present name
        if {$present != 1} continue
        addCurveItem $branch [item $p resid $r] $name [list ::marinewin::residCurve $p $r "$name[projectLabel $p]"]
    }
}

# Forces and moments of each body, its sub-bodies under it; in unsteady runs
# the same tree again for the converged values of each time step.
proc ::marinewin::forceBranch {p root} {
    set tree [::monwin::tree]
    set forces [presentComponents $p itf_get_KELP_vars_forces]
    set moments [presentComponents $p itf_get_KELP_vars_moments]
    set unsteady [is_unsteady_conv_available $p]
    set forceBranch [$tree insert $root end -id $root/forces -text "Forces and moments" -open 1]
    if {$unsteady} { set convBranch [$tree insert $root end -id $root/conv -text "Per time step" -open 0] }
    for {set b 0} {$b < [get_number_of_bodies_KELP $p]} {incr b} {
        if {![itf_has_forces $p $b]} continue
        set objects [list -1 [get_body_name_KELP $p $b]]
        for {set s 0} {$s < [get_sub_object_number_KELP $p $b]} {incr s} {
            lappend objects $s [get_subbody_name_KELP $p $b $s]
        }
        foreach {s name} $objects {
            # A sub-body hangs under its body's item.
            set parent [expr {$s < 0 ? $forceBranch : "$root/forces/$b/-1"}]
            set objectItem [$tree insert $parent end -id $root/forces/$b/$s -text $name -open 0]
            componentItems $objectItem $p $b $s $name $forces $moments
            if {!$unsteady} continue
            set parent [expr {$s < 0 ? $convBranch : "$root/conv/$b/-1"}]
            set convObject [$tree insert $parent end -id $root/conv/$b/$s -text $name -open 0]
            convergedItems $convObject $p $b $s $name $forces $moments
        }
    }
}

proc ::marinewin::componentItems {parent p b s name forces moments} {
    foreach {kind components} [list force $forces moment $moments] {
        foreach {index component} $components {
            addCurveItem $parent [item $p $kind $b $s $index] $component \
                [list ::marinewin::componentCurve $p $kind $b $s $index "$component $name[projectLabel $p]"]
        }
    }
}

proc ::marinewin::convergedItems {parent p b s name forces moments} {
    foreach {kind components} [list force $forces moment $moments] {
        foreach {index component} [convergedComponents $components] {
            addCurveItem $parent [item $p conv$kind $b $s $index] $component \
                [list ::marinewin::convergedCurve $p $kind $b $s $index "$component $name per time step[projectLabel $p]"]
        }
    }
}

proc ::marinewin::motionBranch {p root} {
    set motions [itf_get_motions_number_KELP $p]
    if {$motions == 0} return
    set tree [::monwin::tree]
    set branch [$tree insert $root end -id $root/motions -text "Motions" -open 0]
    for {set b 0} {$b < [get_number_of_bodies_KELP $p]} {incr b} {
        if {![itf_is_motion_used $p $b]} continue
        set name [get_body_name_KELP $p $b]
        set bodyItem [$tree insert $branch end -id $root/motions/$b -text $name]
        for {set m 0} {$m < $motions} {incr m} {
            lassign [itf_get_KELP_vars_motions $p $m] present motion
            if {$present == 0} continue
            addCurveItem $bodyItem [item $p motion $b $m] $motion \
                [list ::marinewin::motionCurve $p $b $m "$motion $name[projectLabel $p]"]
        }
    }
}

proc ::marinewin::diskBranch {p root} {
    set disks [itf_get_disk_count $p]
    if {$disks == 0} return
    set tree [::monwin::tree]
    set branch [$tree insert $root end -id $root/disks -text "Actuator disks" -open 0]
    for {set d 0} {$d < $disks} {incr d} {
        set diskItem [$tree insert $branch end -id $root/disks/$d -text "Disk [expr {$d + 1}]"]
        set names {}
        for {set q 0} {$q < [itf_get_disk_quantity_count $p $d]} {incr q} {
            lappend names [itf_get_disk_quantity_name $p $d $q]
        }
        set abscissa [abscissaColumn $names]
        for {set q 0} {$q < [llength $names]} {incr q} {
            if {$q == $abscissa} continue
            set name [lindex $names $q]
            addCurveItem $diskItem [item $p disk $d $q] $name \
                [list ::marinewin::diskCurve $p $d $q $abscissa "$name disk [expr {$d + 1}][projectLabel $p]"]
        }
    }
}

proc ::marinewin::userQuantityBranch {p root} {
    set extras [itm_get_number_of_extra_quantities $p]
    if {$extras == 0} return
    set branch [[::monwin::tree] insert $root end -id $root/extras -text "User quantities" -open 0]
    set names {}
    for {set q 0} {$q < $extras} {incr q} { lappend names [itm_get_extra_quantity_name $p $q] }
    set abscissa [abscissaColumn $names]
    for {set q 0} {$q < $extras} {incr q} {
        if {$q == $abscissa} continue
        set unit [itm_get_extra_quantity_unit $p $q]
        set text [lindex $names $q]
        if {$unit ne ""} { append text " \[$unit\]" }
        addCurveItem $branch [item $p extra $q] $text [list ::marinewin::extraCurve $p $q $abscissa "$text[projectLabel $p]"]
    }
}

proc ::marinewin::customPlotBranch {p root} {
    set branch [[::monwin::tree] insert $root end -id $root/custom -text "Custom plots" -open 1]
    for {set k 0} {$k < [itm_get_custom_plots_no $p]} {incr k} {
        set formula [itm_get_custom_plot_formula $p $k]
        addCurveItem $branch [item $p custom $k] $formula [list ::marinewin::customCurve $p $k "$formula[projectLabel $p]"]
    }
}

proc ::marinewin::addCurveItem {parent item text maker} {
    [::monwin::tree] insert $parent end -id $item -text $text
    ::monwin::setCurveMaker $item $maker
}

# {index name ...} of the force or moment components the computation has.
proc ::marinewin::presentComponents {project command} {
    set components {}
    for {set i 0} {$i < 18} {incr i} {
        lassign [$command $project $i] present name
        if {$present == 1 && $name ne ""} { lappend components $i $name }
    }
    return $components
}

# A quantity and its "Dyn" twin share one series of converged values: one
# entry per pair, named after the plain quantity.
proc ::marinewin::convergedComponents {components} {
    set pairs {}
    set seen {}
    foreach {index name} $components {
        set pair [expr {$index / 2}]
        if {$pair in $seen} continue
        lappend seen $pair
        lappend pairs [expr {2 * $pair}] [regsub {Dyn$} $name ""]
    }
    return $pairs
}

# The column that holds the abscissa of a table (time or iteration), or -1.
proc ::marinewin::abscissaColumn {names} {
    if {[regexp -nocase {^(t|time|iter|iteration|itnl)\M} [lindex $names 0]]} { return 0 }
    return -1
}

proc ::marinewin::residCurve {p r label} {
    return [curves::create $label [list residual $p $r] \
        -project $p -logScale 1 -bookmark [list [list itf_get_current_nbIter_KELP $r $p] [list itf_set_current_nbIter_KELP $r $p]]]
}

# kind: force or moment.
proc ::marinewin::componentCurve {p kind b s index label} {
    return [curves::create $label [list $kind $p $b $s $index] -project $p \
        -bookmark [list [list itf_get_current_nbIter_${kind}_KELP $p $b $s $index] \
                       [list itf_set_current_nbIter_${kind}_KELP $p $b $s $index]]]
}

proc ::marinewin::convergedCurve {p kind b s index label} {
    return [curves::create $label [list converged[string totitle $kind] $p $b $s $index] -project $p]
}

proc ::marinewin::motionCurve {p b m label} {
    return [curves::create $label [list motion $p $b $m] -project $p \
        -bookmark [list [list itf_get_current_nbIter_motion_KELP $p $b $m] [list itf_set_current_nbIter_motion_KELP $p $b $m]]]
}

# abscissa: a quantity of the same disk, or -1 for the step number.
proc ::marinewin::diskCurve {p d q abscissa label} {
    return [curves::create $label [list disk $p $d $q $abscissa] -project $p]
}

# abscissa: another user quantity, or -1 for the row number.
proc ::marinewin::extraCurve {p q abscissa label} {
    return [curves::create $label [list extra $p $q $abscissa] -project $p \
        -bookmark [list [list itm_get_extra_quantity_iter $p $q] [list itm_set_extra_quantity_iter $p $q]]]
}

proc ::marinewin::customCurve {p k label} {
    return [curves::create $label [list custom $p $k] -project $p -recheckMissing 1]
}

proc ::marinewin::abscissaTitle {id} {
    set p [curves::project $id]
    switch -- [lindex [curves::source $id] 0] {
        residual { return "Nonlinear Iterations" }
        convergedForce - convergedMoment { return "Time step" }
        disk - extra { return "" }
    }
    return [get_KELP_stational_mode_KELP $p]
}

# After every refresh: a computation whose counters the program set back to 0
# holds a new run, and one whose files brought new bodies, disks or
# quantities gets its branch built again.
proc ::marinewin::afterUpdate {changed} {
    variable projects
    variable signature
    variable drawnSlot
    foreach project $projects {
        if {[itf_get_current_nbIter_KELP $drawnSlot $project] == 0} {
            ::monwin::resetCurvesOf $project
            rebuild $project
            itf_set_current_nbIter_KELP $drawnSlot $project 1
            ::monwin::setStatus "[file tail $project]: a new run is on the disk; showing it"
        } elseif {$changed && [structureOf $project] ne $signature($project)} {
            rebuild $project
        }
    }
    layout::settle
}

# --- Custom plots ---------------------------------------------------------

proc ::marinewin::buildFormulaArea {} {
    set f .main.pane.left.formula
    ttk::labelframe $f -text "Custom plot"
    ttk::label $f.project -textvariable ::marinewin::formulaProjectLabel -anchor w
    ttk::entry $f.entry -textvariable ::marinewin::formula
    ttk::frame $f.buttons
    ttk::button $f.buttons.add -text "Add" -command ::marinewin::addFormula
    ttk::button $f.buttons.change -text "Change selected" -command ::marinewin::changeFormula
    ttk::button $f.buttons.remove -text "Remove selected" -command ::marinewin::removeFormula
    pack $f.buttons.add $f.buttons.change $f.buttons.remove -side left -padx 2
    ttk::label $f.message -textvariable ::marinewin::formulaMessage -foreground firebrick -wraplength 300 -anchor w
    ttk::label $f.variablesTitle -text "Variables (double-click to insert):" -anchor w
    listbox $f.variables -height 6 -exportselection 0 -yscrollcommand [list $f.scroll set]
    ttk::scrollbar $f.scroll -orient vertical -command [list $f.variables yview]
    grid $f.project - -sticky we -padx 4
    grid $f.entry - -sticky we -padx 4 -pady 2
    grid $f.buttons - -sticky w -padx 4
    grid $f.message - -sticky we -padx 4
    grid $f.variablesTitle - -sticky we -padx 4
    grid $f.variables $f.scroll -sticky news -padx {4 0}
    grid columnconfigure $f 0 -weight 1
    grid $f - -sticky we -pady {4 0}
    bind $f.variables <Double-1> ::marinewin::insertVariable
    bind $f.entry <Return> ::marinewin::addFormula
    bind [::monwin::tree] <<TreeviewSelect>> +::marinewin::refreshVariables
}

# The computation the formula area works on: the one of the first selected
# item, else the first one opened.
proc ::marinewin::formulaTarget {} {
    variable projects
    variable node
    foreach item [[::monwin::tree] selection] {
        foreach project $projects {
            if {$item eq $node($project) || [string match $node($project)/* $item]} { return $project }
        }
    }
    return [lindex $projects 0]
}

# The names a formula may use, as the program offers them: "t", the motions
# (<motion>_<body>), then the forces and moments of each body and sub-body
# (<component>_<object>).
proc ::marinewin::formulaVariables {p} {
    set names {t}
    set bodies [get_number_of_bodies_KELP $p]
    set motions [itf_get_motions_number_KELP $p]
    for {set b 0} {$b < $bodies} {incr b} {
        if {![itf_is_motion_used $p $b]} continue
        for {set m 0} {$m < $motions} {incr m} {
            lappend names "[lindex [itf_get_KELP_vars_motions $p $m] 1]_[get_body_name_KELP $p $b]"
        }
    }
    foreach command {itf_get_KELP_vars_forces itf_get_KELP_vars_moments} {
        set components [presentComponents $p $command]
        for {set b 0} {$b < $bodies} {incr b} {
            if {![itf_has_forces $p $b]} continue
            set objects [list [get_body_name_KELP $p $b]]
            for {set s 0} {$s < [get_sub_object_number_KELP $p $b]} {incr s} {
                lappend objects [get_subbody_name_KELP $p $b $s]
            }
            foreach object $objects {
                foreach {index component} $components { lappend names ${component}_$object }
            }
        }
    }
    return $names
}

proc ::marinewin::refreshVariables {} {
    set list .main.pane.left.formula.variables
    if {![winfo exists $list]} return
    set p [formulaTarget]
    set ::marinewin::formulaProjectLabel [expr {$p eq "" ? "No computation open" : "For [file tail $p]"}]
    $list delete 0 end
    if {$p eq ""} return
    foreach name [formulaVariables $p] { $list insert end $name }
}

proc ::marinewin::insertVariable {} {
    set list .main.pane.left.formula.variables
    set chosen [$list curselection]
    if {$chosen eq ""} return
    .main.pane.left.formula.entry insert insert [$list get $chosen]
}

# Names of a formula that the program would refuse, with the reason, or "".
proc ::marinewin::formulaProblems {text variables} {
    variable functions
    set problems {}
    set at 0
    set length [string length $text]
    while {$at < $length} {
        if {[regexp {\A[0-9]*\.?[0-9]+([eE][-+]?[0-9]+)?} [string range $text $at end] number]} {
            incr at [string length $number]
        } elseif {[regexp {\A[A-Za-z_][A-Za-z0-9_]*} [string range $text $at end] name]} {
            incr at [string length $name]
            set call [regexp {\A\s*\(} [string range $text $at end]]
            if {$call && $name ni $functions} {
                lappend problems "Unknown function \"$name\""
            } elseif {!$call && $name ni $variables} {
                lappend problems "Unknown variable \"$name\""
            }
        } else {
            incr at
        }
    }
    if {[regexp -all {\(} $text] != [regexp -all {\)} $text]} { lappend problems "Unbalanced parentheses" }
    return [join [lsort -unique $problems] "; "]
}

proc ::marinewin::checkedFormula {p} {
    variable formula
    variable formulaMessage
    set text [string trim $formula]
    if {$p eq ""} {
        set formulaMessage "Open a computation first."
        return ""
    }
    if {$text eq ""} {
        set formulaMessage "Type a formula, for example (Fx_Hull + Fx_Rudder) / 2."
        return ""
    }
    set problems [formulaProblems $text [formulaVariables $p]]
    if {$problems ne ""} {
        set formulaMessage $problems
        return ""
    }
    return $text
}

proc ::marinewin::addFormula {} {
    variable formulaMessage
    set p [formulaTarget]
    set text [checkedFormula $p]
    if {$text eq ""} { return -1 }
    set k [itm_add_custom_plot $p $text]
    if {$k < 0} {
        set formulaMessage "The formula cannot be computed: check its operators and parentheses."
        return -1
    }
    set formulaMessage ""
    rebuild $p
    [::monwin::tree] selection set [list [item $p custom $k]]
    ::monwin::selectionChanged
    return $k
}

proc ::marinewin::selectedCustomPlot {} {
    variable projects
    foreach selected [[::monwin::tree] selection] {
        foreach project $projects {
            set prefix [item $project custom]/
            if {[string first $prefix $selected] == 0} {
                return [list $project [string range $selected [string length $prefix] end]]
            }
        }
    }
    return {}
}

proc ::marinewin::changeFormula {} {
    variable formulaMessage
    lassign [selectedCustomPlot] p k
    if {$p eq ""} {
        set formulaMessage "Select the custom plot to change."
        return
    }
    set text [checkedFormula $p]
    if {$text eq ""} return
    if {[itm_edit_custom_plot $p $k $text] != 1} {
        set formulaMessage "The formula cannot be computed: the plot keeps its previous formula."
        return
    }
    set formulaMessage ""
    rebuild $p
}

proc ::marinewin::removeFormula {} {
    variable formulaMessage
    lassign [selectedCustomPlot] p k
    if {$p eq ""} {
        set formulaMessage "Select the custom plot to remove."
        return
    }
    itm_remove_custom_plot $p $k
    set formulaMessage ""
    rebuild $p
}
