#!/usr/bin/env bash
# Takes the README's pictures of both windows, under a virtual display:
#   docs/images/marine-window.png   a marine run written by the solver stand-in:
#                                   its first view (residuals, the hull's Fx, its
#                                   motions) and a panel with forces and a
#                                   custom plot
#   docs/images/turbo-window.png    the turbomachinery example: its first view
#                                   and a panel with residuals of block 1
#
# Usage: tools/screenshots.sh [OUTPUT-FOLDER]
# The monitor is installed into a temporary folder
# (tools/temporary_installation.sh); each start-up script gets a few lines that choose
# the curves, photograph the screen (xwd, netpbm) and quit.
set -euo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
out=${1:-$repo/docs/images}
mkdir -p "$out"
out=$(cd "$out" && pwd)
source "$repo/tools/temporary_installation.sh"
"$solver" --out "$work/ship" --iterations 400 --stamp "21/11/2026 14:05:09" >/dev/null

# Lines added to a start-up script: `photograph` waits for the window to
# settle, then writes the part of the screen that the window covers.
common='
proc photograph {file} {
  ::liverefresh::waitIdle
  update
  after 500
  update
  set width [expr {[winfo rootx .] + [winfo width .]}]
  set height [expr {[winfo rooty .] + [winfo height .]}]
  exec sh -c "xwd -root -silent | xwdtopnm 2>/dev/null | pnmcut -left 0 -top 0 -width $width -height $height | pnmtopng > [list $file]"
  puts "screenshots: wrote $file"
}
proc show {items} {
  foreach item $items { [::monwin::tree] see $item }
  [::monwin::tree] selection set $items
  ::monwin::selectionChanged
}
proc pointAt {fractionX fractionY} {
  set g [plotpanel::graph [::monwin::panel]]
  update
  event generate $g <Motion> -x [expr {int([winfo width $g] * $fractionX)}] -y [expr {int([winfo height $g] * $fractionY)}]
}
'

marine_script=$work/apps/dune_marine71/_tcl/_monitorTurbo/_monitorMarine/itf_init.tcl
cat >> "$marine_script" <<TCL
$common
after 0 {
  wm geometry . 1560x960+0+0
  ::liverefresh::setPaused 1
  ::liverefresh::waitIdle
  set p [lindex \$::marinewin::projects 0]
  ::monwin::newPanel
  set ::marinewin::formula {(Fx_hull + Fx_rudder) / 2}
  ::marinewin::addFormula
  show [list [::marinewin::item \$p force 0 -1 0] [::marinewin::item \$p force 0 -1 2] [::marinewin::item \$p custom 0]]
  plotpanel::setLastCount [::monwin::panel] 50
  pointAt 0.6 0.4
  photograph {$out/marine-window.png}
  itf_quit_command_KELP
}
TCL

turbo_script=$work/apps/dune71/_tcl/_monitorTurbo/itf_init.tcl
cat >> "$turbo_script" <<TCL
$common
after 0 {
  ::liverefresh::setPaused 1
  ::liverefresh::waitIdle
  wm geometry . 1560x960+0+0
  set p [lindex \$::turbowin::projects 0]
  ::monwin::newPanel
  show [list [::turbowin::item \$p rms 0 0] [::turbowin::item \$p rms 0 4] [::turbowin::item \$p rms 0 5] [::turbowin::item \$p rms 0 7]]
  pointAt 0.3 0.5
  photograph {$out/turbo-window.png}
  itf_quit_command
}
TCL

cd "$work"
run() { xvfb-run -a -s "-screen 0 1600x1024x24" "$@" | grep '^screenshots:' || true; }
run "$work/apps/dune_marine71/bin/monitor" "$work/ship/ship.res"
run "$work/apps/dune71/bin/monitor" "$repo/examples/turbo/stage.res"
