// What the window scenarios share: Tcl helpers that drive the real window
// from its start-up script, and reading back what they said.
#pragma once

#include <sstream>
#include <string>
#include <vector>

namespace e2e {

// Helpers shared by the scenarios: `say` prints a line for the test (the
// program's own lines come in between); `refresh` is one tick of the live
// refresh, waited for; `counts` prints the points held by the curves of the
// listed tree items; `exact` says whether every shown curve holds exactly the
// points that the program answers when asked for all of them afresh (none
// twice, none lost, none from another run).
inline const std::string kHelpers = R"tcl(
proc say {text} { puts "> $text" }
# Runs the scenario's `run` once the window is up, reports a script error,
# then quits with the mode's quit command.
proc runThenQuit {quit} { after 0 [list scenarioThenQuit $quit] }
proc scenarioThenQuit {quit} {
  if {[catch run message]} { puts "script error: $message $::errorInfo" }
  $quit
}
# The panels in order, separated by "|": the points of each shown curve, or
# the tree texts of the items shown.
proc panels {} {
  return [join [lmap w [dashboard::panels] {lmap id [::monwin::shownCurves $w] {curves::length $id}}] " | "]
}
proc panelNames {} {
  set tree [::monwin::tree]
  return [join [lmap w [dashboard::panels] {join [lmap item [::monwin::panelItems $w] {$tree item $item -text}] ,}] " | "]
}
# Waits for the fetching and the redraw it causes; the scenarios turn off the
# throttling of redraws right after the window comes up.
proc settle {} {
  ::liverefresh::waitIdle
  update
}
proc refresh {} { ::liverefresh::refreshNow; settle }
proc counts {label items} {
  set line "$label:"
  foreach item $items { append line " [curves::length [::monwin::curveOfItem $item]]" }
  say $line
}
# The point commands that read position i of a curve source one at a time,
# and that count its positions: what the window must hold, as they print it.
proc pointOf {source i} {
  set rest [lassign $source kind path]
  switch -- $kind {
    residual { return [itf_get_curve_value_KELP $path Resids 0 -1 {*}$rest $i] }
    force - moment - motion {
      lassign $rest b s q
      if {$kind eq "motion"} { return [itf_get_curve_value_KELP $path Motions $b -1 $s $i] }
      return [itf_get_curve_value_KELP $path [string totitle $kind]s $b $s $q $i]
    }
    convergedForce - convergedMoment {
      lassign $rest b s q
      return [list [expr {$i + 1}] [itf_get_[string tolower [string range $kind 9 end]]_conv_value $q $path $b $s $i]]
    }
    disk {
      lassign $rest d q a
      set x [expr {$a >= 0 ? [itf_get_disk_quantity_value $path $d $a $i] : $i + 1}]
      return [list $x [itf_get_disk_quantity_value $path $d $q $i]]
    }
    extra {
      lassign $rest q a
      set x [expr {$a >= 0 ? [itm_get_extra_quantity_value $path $a $i] : $i + 1}]
      return [list $x [itm_get_extra_quantity_value $path $q $i]]
    }
    custom { return [itm_get_custom_plot_point $path {*}$rest $i] }
    global { return [itf_get_curve_value {*}$rest $path $i] }
    block { lassign $rest code b; return [itf_get_curve_block_value $code $path $b $i] }
    harmonic { lassign $rest code prefix b; return [itf_get_harmonic_curve_block_value $code $prefix $path $b $i] }
    diagram {
      lassign [split $rest _] side number
      return [itf_get_[string tolower $side]_value $path [expr {$number - 1}] $i]
    }
    profile { return [itf_get_prof_[string tolower $rest]_value $path $i] }
  }
}
proc countOf {source} {
  set rest [lassign $source kind path]
  switch -- $kind {
    residual { return [itf_get_nbIter_KELP $path] }
    force - moment { return [itf_get_nbIter_${kind}_KELP $path {*}$rest] }
    motion { return [itf_get_nbIter_motion_KELP $path [lindex $rest 0]] }
    convergedForce - convergedMoment {
      return [itf_get_[string tolower [string range $kind 9 end]]_conv_length $path {*}$rest]
    }
    disk { return [itf_get_disk_steps $path [lindex $rest 0]] }
    extra { return [itm_get_extra_quantity_capacity $path [lindex $rest 0]] }
    custom { return [itm_get_custom_plot_points_no $path {*}$rest] }
    global - block - harmonic { return [itf_get_nbIter $path] }
    diagram { return [itf_get_nbPts $path $rest] }
    profile { return [itf_get_prof_nbPts $path $rest] }
  }
}
# Every shown curve holds what the point commands give, point for point, to
# the digits they print, and counts as many positions.
proc exact {} {
  foreach id [::monwin::shownCurves] {
    set source [curves::source $id]
    set count [countOf $source]
    if {[monitor_curve positions {*}$source] != $count} { return "no: [curves::label $id] counts $count positions" }
    set xs {}
    set ys {}
    for {set i 0} {$i < $count} {incr i} {
      lassign [pointOf $source $i] x y
      if {abs($y) < 3.4e38} { lappend xs $x; lappend ys $y }
    }
    lassign [curves::values $id 0 [curves::length $id]] heldX heldY
    if {[llength $heldX] != [llength $xs]} { return "no: [curves::label $id] holds [llength $heldX] of [llength $xs]" }
    foreach x $xs y $ys hx $heldX hy $heldY {
      if {[format %.15g $x] ne [format %.15g $hx] || [format %.15g $y] ne [format %.15g $hy]} {
        return "no: [curves::label $id] ($hx, $hy) for ($x, $y)"
      }
    }
  }
  return yes
}
proc show {items} {
  [::monwin::tree] selection set $items
  ::monwin::selectionChanged
  settle
}
proc magic {file count} {
  set in [open $file rb]
  set bytes [read $in $count]
  close $in
  return [string map {\n {} \r {}} $bytes]
}
)tcl";

// What the scenario said, without its "> " marks.
inline std::vector<std::string> said(const std::string& output) {
  std::vector<std::string> lines;
  std::istringstream in(output);
  std::string line;
  while (std::getline(in, line)) {
    if (line.rfind("> ", 0) == 0) lines.push_back(line.substr(2));
  }
  return lines;
}

}  // namespace e2e
