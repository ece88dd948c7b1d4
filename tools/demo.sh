#!/usr/bin/env bash
# Sets up the machine, builds and installs the monitor and shows it at work.
#
# Usage: tools/demo.sh [--turbo] [PREFIX]
#
#   (default)  the solver stand-in writes a marine computation live, an
#              iteration every 0.7 s, into a temporary folder, and the marine
#              monitor (PREFIX/dune_marine71) follows it
#   --turbo    the turbomachinery monitor (PREFIX/dune71) on the example of
#              examples/turbo: residual history, blade diagram and profile
#   PREFIX     installation prefix, default ~/talvik
#
# Without a display the monitor runs under xvfb-run and quits by itself after
# MONITOR_AUTO_QUIT_MS milliseconds (default 10000).
set -euo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
mode=marine
prefix=$HOME/talvik

while (($# > 0)); do
  case $1 in
    --turbo | --turbomachinery) mode=turbomachinery ;;
    --marine) mode=marine ;;
    -h | --help) sed -n '2,14p' "${BASH_SOURCE[0]}" | sed 's/^# \{0,1\}//'; exit 0 ;;
    -*) echo "demo: unknown option $1 (try --help)" >&2; exit 2 ;;
    *) prefix=$1 ;;
  esac
  shift
done

bash "$repo/tools/setup.sh"
bash "$repo/tools/install.sh" "$prefix"
prefix=$(cd "$prefix" && pwd -P)

launcher=()
if [[ -z ${DISPLAY:-} ]]; then
  export MONITOR_AUTO_QUIT_MS=${MONITOR_AUTO_QUIT_MS:-10000}
  echo "demo: no DISPLAY; running under xvfb-run, quitting after $MONITOR_AUTO_QUIT_MS ms"
  launcher=(xvfb-run -a)
fi

solver_pid=""
work=""
cleanup() {
  [[ -n $solver_pid ]] && kill "$solver_pid" 2>/dev/null || true
  [[ -n $work ]] && rm -rf "$work"
}
trap cleanup EXIT

if [[ $mode == marine ]]; then
  build_dir=${MONITOR_INSTALL_BUILD_DIR:-$repo/build-install}
  cmake --build "$build_dir" -j2 --target marine_solver >/dev/null
  work=$(mktemp -d "${TMPDIR:-/tmp}/monitor-demo.XXXXXX")
  # 40 iterations at once, then one every 0.7 s for an hour.
  "$build_dir/bin/marine_solver" --out "$work/ship" --iterations 40 --live 3600 --interval 700 >/dev/null &
  solver_pid=$!
  for _ in $(seq 50); do
    [[ -s $work/ship/ship.res ]] && break
    sleep 0.1
  done
  program=$prefix/dune_marine71/bin/monitor
  arguments=("$work/ship/ship.res")
  echo "demo: the solver stand-in writes $work/ship live"
else
  program=$prefix/dune71/bin/monitor
  arguments=("$repo/examples/turbo/stage.res" "$repo/examples/turbo/blade.diag" "$repo/examples/turbo/blade.prof")
fi

echo "demo: starting $program ${arguments[*]}"
status=0
"${launcher[@]}" "$program" "${arguments[@]}" || status=$?
# The monitor ends with status 1 when its window is closed or Quit is chosen.
if ((status == 0 || status == 1)); then
  echo "demo: the monitor has ended"
  exit 0
fi
echo "demo: the monitor ended with status $status" >&2
exit "$status"
