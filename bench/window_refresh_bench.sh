#!/usr/bin/env bash
# How the marine window copes with a curve of a million points: the real
# program, under a virtual display, with its real window scripts.
#
# Usage: bench/window_refresh_bench.sh [ROWS]
#   ROWS  residual rows of the case (default 1000000)
#
# Installs the monitor (tools/install.sh) into a temporary folder, writes a
# steady case with the solver stand-in, lengthens its residual file
# to ROWS rows, opens it in the marine window, shows the residual ResU and
# prints:
#   - the first fetch of all its points, and the longest time the event loop
#     waited meanwhile (the window stays responsive between slices);
#   - a redraw of the whole curve (thinning to the plot's pixel columns);
#   - a zoom into 100 iterations;
#   - a refresh after the solver appended one row (the refresh command, the
#     fetch of the new point and the redraw), over 20 refreshes.
set -euo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
rows=${1:-1000000}
# The program as users get it: built in Release and installed, here into a
# temporary folder.
source "$repo/tools/temporary_installation.sh"

source "$repo/bench/long_marine_case.sh"

root=$work/apps/dune_marine71
echo "set res {$case_folder/ship.res}" >> "$root/_tcl/_monitorTurbo/_monitorMarine/itf_init.tcl"
cat >> "$root/_tcl/_monitorTurbo/_monitorMarine/itf_init.tcl" <<'TCL'
proc milliseconds {script} {
  set start [clock microseconds]
  uplevel 1 $script
  return [format %.1f [expr {([clock microseconds] - $start) / 1000.0}]]
}
# The longest slice of fetching, during which the window could not react.
set longestSlice 0
rename ::liverefresh::pump ::liverefresh::timedPump
proc ::liverefresh::pump {} {
  set took [milliseconds ::liverefresh::timedPump]
  if {$took > $::longestSlice} { set ::longestSlice $took }
}
# The window shows the residuals as soon as it opens; the measures start
# from an empty plot.
[::monwin::tree] selection set {}
::monwin::selectionChanged
set ::liverefresh::queue {}
proc median {values} { lindex [lsort -real $values] [expr {[llength $values] / 2}] }
proc run {} {
  global res longestSlice
  ::liverefresh::setPaused 1
  ::liverefresh::waitIdle
  update
  set p [lindex $::marinewin::projects 0]
  set panel [::monwin::panel]
  set first [milliseconds {
    [::monwin::tree] selection set [list [::marinewin::item $p resid 0]]
    ::monwin::selectionChanged
    ::liverefresh::waitIdle
    update
  }]
  set id [lindex [::monwin::shownCurves] 0]
  puts [format "first fetch of %d points: %s ms; longest slice %s ms" [curves::length $id] $first $longestSlice]
  set redraws {}
  for {set i 0} {$i < 10} {incr i} { lappend redraws [milliseconds { plotpanel::redraw $panel; update }] }
  puts "redraw of the whole curve: [median $redraws] ms (median of 10); [llength [::plotpanel::dx_$id range 0 end]] points drawn"
  set g [plotpanel::graph $panel]
  set zoom [milliseconds {
    $g axis configure x -min 500000 -max 500100
    plotpanel::compareView $panel
    update
  }]
  puts "zoom into 100 iterations: $zoom ms"
  plotpanel::fullView $panel
  update
  # Each refresh below is measured with the redraw it causes (no throttling,
  # and no redraw of the first fetch still waiting).
  set ::plotpanel::redrawEveryMs 0
  after 400
  update
  set refreshes {}
  set rows [curves::length $id]
  for {set i 1} {$i <= 20} {incr i} {
    set out [open $res a]
    puts $out [format "%d 1.0 1.0e-7 9e-8 8e-8 8e-8 1e-7 1e-7" [expr {$rows + $i}]]
    close $out
    lappend refreshes [milliseconds { ::liverefresh::refreshNow; ::liverefresh::waitIdle; update }]
  }
  puts "refresh after one appended row: [median $refreshes] ms (median of 20), slowest [lindex [lsort -real $refreshes] end] ms; [curves::length $id] points"
}
after 0 {
  if {[catch run message]} { puts "bench error: $message $::errorInfo" }
  itf_quit_command_KELP
}
TCL

cd "$work"
xvfb-run -a -s "-screen 0 1280x800x24" "$root/bin/monitor" "$case_folder/ship.res" | grep -E "^(first|redraw|zoom|refresh|bench)" || true
