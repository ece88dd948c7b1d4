#!/usr/bin/env bash
# How long the marine window takes to open a finished long run, against
# gnuplot plotting the same columns of the same file: the real program, under
# a virtual display, with its real window scripts.
#
# Usage: bench/window_open_bench.sh [ROWS]
#   ROWS  residual rows of the case (default 1000000)
#
# Needs gnuplot (Debian package gnuplot-nox), GNU time (/usr/bin/time, Debian
# package time) and Xvfb (Debian package xvfb); tools/setup.sh installs them.
#
# Installs the monitor (tools/install.sh) into a temporary folder, writes a
# steady case with the solver stand-in, lengthens its residual file to ROWS
# rows and prints its size. Then, three times each, timed by GNU time (wall
# clock from start to exit, and peak resident memory):
#   - the monitor opens the case in the marine window, waits until every
#     curve shown at opening (the residuals of the run) is fetched and drawn,
#     prints how many curves it shows and their points, and quits; it runs on
#     a virtual display started once beforehand, so that the display's
#     start-up is not timed;
#   - gnuplot draws the six residual columns against the iteration column,
#     logarithmic value axis, into a PNG of 1280x800.
# Last, the best time and the peak memory of that run for each, the ratio
# monitor / gnuplot, and whether the monitor takes under a third of gnuplot's
# time.
set -euo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
rows=${1:-1000000}
runs=3

need() {
  if ! command -v "$1" >/dev/null 2>&1; then
    echo "window_open_bench: $1 is missing; install the Debian package $2 (or run tools/setup.sh)" >&2
    exit 1
  fi
}
need gnuplot gnuplot-nox
need /usr/bin/time time
need Xvfb xvfb

# The program as users get it: built in Release and installed, here into a
# temporary folder.
source "$repo/tools/temporary_installation.sh"

source "$repo/bench/long_marine_case.sh"
echo "residual file: $rows rows, $(awk -v bytes="$(stat -c %s "$res")" 'BEGIN { printf "%.1f", bytes / 1e6 }') MB"

# The virtual display, started once and left out of the timings. Xvfb picks a
# free display number itself and writes it to the descriptor once it accepts
# clients. It stops when the script exits, before the temporary folder goes.
Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$work/display" 2>"$work/xvfb.log" &
xvfb_pid=$!
eval "previous_exit_trap=( $(trap -p EXIT) )"
trap 'kill "$xvfb_pid" 2>/dev/null || true; wait "$xvfb_pid" 2>/dev/null || true; '"${previous_exit_trap[2]:-}" EXIT
for _ in $(seq 100); do
  [[ -s $work/display ]] && break
  kill -0 "$xvfb_pid" 2>/dev/null || { cat "$work/xvfb.log" >&2; echo "window_open_bench: Xvfb did not start" >&2; exit 1; }
  sleep 0.1
done
[[ -s $work/display ]] || { echo "window_open_bench: Xvfb gave no display number" >&2; exit 1; }
export DISPLAY=:$(tr -d '[:space:]' < "$work/display")

root=$work/apps/dune_marine71
cat >> "$root/_tcl/_monitorTurbo/_monitorMarine/itf_init.tcl" <<'TCL'
# The window is built and the run read; what follows is fetching and drawing.
set ::benchScriptEnd [clock milliseconds]
# A window that never settles ends the run instead of hanging the bench.
after 900000 {
  puts "bench error: the window did not settle within 15 minutes"
  itf_quit_command_KELP
}
proc benchOpening {} {
  update
  # Every curve shown at opening fetched...
  ::liverefresh::waitIdle
  # ...and drawn: the last slice fetched asked for a redraw, which may wait
  # in an `after` for up to ::plotpanel::redrawEveryMs, then for idle time.
  # redrawNow unsets the pending mark before it redraws, and vwait also
  # returns on an unset.
  set panel [::monwin::panel]
  while {[info exists ::plotpanel::panel($panel,pending)]} {
    vwait ::plotpanel::panel($panel,pending)
  }
  # BLT draws the graph when idle.
  update
  set shown [::monwin::shownCurves]
  set counts [lmap id $shown { format "%s %d" [curves::label $id] [curves::length $id] }]
  puts "shown at opening: [llength $shown] curves; points: [join $counts {, }]"
  puts [format "fetched and drawn %.2f s after the start-up script" \
    [expr {([clock milliseconds] - $::benchScriptEnd) / 1000.0}]]
}
after 0 {
  if {[catch benchOpening message]} { puts "bench error: $message $::errorInfo" }
  itf_quit_command_KELP
}
TCL

# Runs a command under GNU time; prints "SECONDS PEAK_MB STATUS" of it (its
# exit status last). Its output goes to $work/out. GNU time writes a line of
# its own before its figures when the status is not 0.
timed() {
  local status=0
  /usr/bin/time -f "%e %M" -o "$work/time" "$@" >"$work/out" 2>&1 || status=$?
  tail -n 1 "$work/time" | awk -v status="$status" '{ printf "%.2f %.1f %d\n", $1, $2 / 1024, status }'
}

# Best of the runs: "SECONDS PEAK_MB" of the fastest, from lines of timed.
best() { LC_ALL=C sort -n -k1,1 | head -n 1 | cut -d ' ' -f 1,2; }

cd "$work"
monitor_results=()
for i in $(seq "$runs"); do
  # The program ends with status 1 when its window quits; whether it did
  # its work shows in what it printed.
  result=$(timed "$root/bin/monitor" "$res")
  if ! grep -q '^shown at opening' "$work/out" || grep -q '^bench error' "$work/out"; then
    echo "window_open_bench: the monitor did not report its opening:" >&2
    cat "$work/out" >&2
    exit 1
  fi
  grep -E '^(shown at opening|fetched and drawn)' "$work/out" | sed "s/^/monitor run $i: /"
  read -r seconds peak _ <<< "$result"
  echo "monitor run $i: $seconds s, peak $peak MB"
  monitor_results+=("$result")
done
read -r monitor_s monitor_mb < <(printf '%s\n' "${monitor_results[@]}" | best)
echo "monitor best: $monitor_s s, peak $monitor_mb MB"

# The PNG terminal this gnuplot has: cairo's when built with it, else libgd's.
if gnuplot -e 'set terminal' 2>&1 | grep -qw pngcairo; then terminal=pngcairo; else terminal=png; fi
cat > "$work/plot.gp" <<GP
set terminal $terminal size 1280,800
set output '$work/gnuplot.png'
set logscale y
set xlabel 'itnl'
plot for [c=3:8] '$res' using 1:c with lines title sprintf('column %d', c)
GP
gnuplot_results=()
for i in $(seq "$runs"); do
  rm -f "$work/gnuplot.png"
  result=$(timed gnuplot "$work/plot.gp")
  read -r seconds peak status <<< "$result"
  if [[ $status != 0 || ! -s $work/gnuplot.png ]]; then
    echo "window_open_bench: gnuplot failed (status $status) or wrote no image:" >&2
    cat "$work/out" >&2
    exit 1
  fi
  echo "gnuplot run $i ($terminal): $seconds s, peak $peak MB"
  gnuplot_results+=("$result")
done
read -r gnuplot_s gnuplot_mb < <(printf '%s\n' "${gnuplot_results[@]}" | best)
echo "gnuplot best: $gnuplot_s s, peak $gnuplot_mb MB"

awk -v m="$monitor_s" -v mm="$monitor_mb" -v g="$gnuplot_s" -v gm="$gnuplot_mb" -v rows="$rows" 'BEGIN {
  ratio = g > 0 ? m / g : 0
  printf "summary, %d rows: monitor %.2f s, %.1f MB; gnuplot %.2f s, %.1f MB; monitor / gnuplot %.2f\n",
    rows, m, mm, g, gm, ratio
  printf "goal, monitor under a third of gnuplot'"'"'s time: %s\n", (g > 0 && m * 3 < g) ? "met" : "not met"
}'
