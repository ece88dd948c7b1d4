# The plot panels of the main window, side by side: each one a plot panel
# with a header that names it and closes it. One panel is the active one,
# the panel the tree's selection goes to; a click on a panel's header or plot
# makes it active. The panels fill a grid, one column up to two panels, two
# columns beyond.

namespace eval ::dashboard {
    variable container ""
    variable panels {}
    variable active ""
    variable next 0
    variable titles
    # Command prefixes: activate (called with the panel made active), close
    # (called with the panel whose Close button was pressed), view (handed to
    # every panel as its -viewcommand).
    variable hooks
    array set hooks {activate {} close {} view {}}
}

proc ::dashboard::create {container args} {
    variable hooks
    foreach {option value} $args {
        switch -- $option {
            -activatecommand { set hooks(activate) $value }
            -closecommand { set hooks(close) $value }
            -viewcommand { set hooks(view) $value }
            default { error "unknown option \"$option\": must be -activatecommand, -closecommand or -viewcommand" }
        }
    }
    set ::dashboard::container $container
    ttk::frame $container
    ttk::style configure Active.TLabel -foreground #1f4f9f -font TkHeadingFont
    bind dashboard-activate <ButtonPress> {::dashboard::activateAt %W}
    return $container
}

proc ::dashboard::panels {} { variable panels; return $panels }
proc ::dashboard::active {} { variable active; return $active }
proc ::dashboard::title {w} { variable titles; return $titles($w) }

# Adds an empty panel after the others and answers it; the first panel is
# made active.
proc ::dashboard::add {} {
    variable container
    variable panels
    variable next
    variable titles
    variable hooks
    set frame $container.f[incr next]
    set w $frame.plot
    ttk::frame $frame -borderwidth 1 -relief groove
    set header [ttk::frame $frame.header]
    set titles($w) "Panel $next"
    ttk::label $header.title -text $titles($w)
    ttk::button $header.close -text "Close" -width 6 -command [list ::dashboard::askClose $w]
    pack $header.title -side left -padx 4
    pack $header.close -side right
    plotpanel::create $w -viewcommand $hooks(view)
    pack $header -side top -fill x
    pack $w -side top -fill both -expand 1
    foreach widget [list $header $header.title [plotpanel::graph $w]] {
        bindtags $widget [linsert [bindtags $widget] 0 dashboard-activate]
    }
    lappend panels $w
    arrange
    if {[llength $panels] == 1} { activate $w }
    return $w
}

proc ::dashboard::askClose {w} {
    variable hooks
    if {$hooks(close) ne ""} { {*}$hooks(close) $w } else { remove $w }
}

# Takes a panel away; the next one, or the one before, becomes active.
proc ::dashboard::remove {w} {
    variable panels
    variable active
    variable titles
    set at [lsearch -exact $panels $w]
    if {$at < 0} return
    set panels [lreplace $panels $at $at]
    set frame [winfo parent $w]
    plotpanel::destroy $w
    destroy $frame
    unset titles($w)
    arrange
    if {$active eq $w} {
        set active ""
        if {[llength $panels] > 0} { activate [lindex $panels [expr {min($at, [llength $panels] - 1)}]] }
    }
}

proc ::dashboard::activateAt {widget} {
    variable panels
    foreach w $panels {
        if {$widget eq $w || [string match [winfo parent $w].* $widget]} {
            activate $w
            return
        }
    }
}

proc ::dashboard::activate {w} {
    variable active
    variable panels
    variable hooks
    if {$w ni $panels || $w eq $active} return
    set active $w
    foreach panel $panels {
        [winfo parent $panel].header.title configure -style [expr {$panel eq $w ? "Active.TLabel" : "TLabel"}] \
            -text "[title $panel][expr {$panel eq $w ? {  (the tree's selection shows here)} : {}}]"
    }
    if {$hooks(activate) ne ""} { {*}$hooks(activate) $w }
}

proc ::dashboard::arrange {} {
    variable container
    variable panels
    foreach slave [grid slaves $container] { grid forget $slave }
    set count [llength $panels]
    set columns [expr {$count > 2 ? 2 : 1}]
    set rows [expr {max(1, ($count + $columns - 1) / $columns)}]
    for {set i 0} {$i <= max(max($rows, $columns), 4)} {incr i} {
        grid rowconfigure $container $i -weight [expr {$i < $rows}] -uniform [expr {$i < $rows ? "rows" : ""}]
        grid columnconfigure $container $i -weight [expr {$i < $columns}] -uniform [expr {$i < $columns ? "columns" : ""}]
    }
    set i 0
    foreach w $panels {
        grid [winfo parent $w] -row [expr {$i / $columns}] -column [expr {$i % $columns}] -sticky news -padx 1 -pady 1
        incr i
    }
}
