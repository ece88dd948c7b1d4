#!/usr/bin/env bash
# Sets up the machine, builds and installs the monitor and starts it.
#
# Usage: tools/demo.sh [--marine] [PREFIX] [-- MONITOR-ARGUMENTS...]
#
#   --marine   start the marine monitor (PREFIX/dune_marine71) instead of the
#              turbomachinery monitor (PREFIX/dune71)
#   PREFIX     installation prefix, default ~/talvik
#
# The monitor opens the example cases of examples/ when the repository has
# them: examples/turbo/*.res in turbomachinery mode, the folder
# examples/marine as the working folder in marine mode. Without a display it
# runs under xvfb-run and quits by itself after MONITOR_AUTO_QUIT_MS
# milliseconds (default 10000).
set -euo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
mode=turbomachinery
prefix=$HOME/talvik
monitor_arguments=()

while (($# > 0)); do
  case $1 in
    --marine) mode=marine ;;
    --turbo | --turbomachinery) mode=turbomachinery ;;
    -h | --help) sed -n '2,14p' "${BASH_SOURCE[0]}" | sed 's/^# \{0,1\}//'; exit 0 ;;
    --) shift; monitor_arguments+=("$@"); break ;;
    -*) echo "demo: unknown option $1 (try --help)" >&2; exit 2 ;;
    *) prefix=$1 ;;
  esac
  shift
done

bash "$repo/tools/setup.sh"
bash "$repo/tools/install.sh" "$prefix"
prefix=$(cd "$prefix" && pwd -P)

examples=$repo/examples
if [[ $mode == marine ]]; then
  program=$prefix/dune_marine71/bin/monitor
  [[ -d $examples/marine ]] && monitor_arguments=(-startupdir "$examples/marine" "${monitor_arguments[@]}")
else
  program=$prefix/dune71/bin/monitor
  shopt -s nullglob
  cases=("$examples"/turbo/*.res)
  shopt -u nullglob
  monitor_arguments=("${cases[@]}" "${monitor_arguments[@]}")
fi

launcher=()
if [[ -z ${DISPLAY:-} ]]; then
  export MONITOR_AUTO_QUIT_MS=${MONITOR_AUTO_QUIT_MS:-10000}
  echo "demo: no DISPLAY; running under xvfb-run, quitting after $MONITOR_AUTO_QUIT_MS ms"
  launcher=(xvfb-run -a)
fi

echo "demo: starting $program ${monitor_arguments[*]}"
status=0
"${launcher[@]}" "$program" "${monitor_arguments[@]}" || status=$?
# The monitor ends with status 1 when its window is closed or Quit is pressed.
if ((status == 0 || status == 1)); then
  echo "demo: the monitor has ended"
  exit 0
fi
echo "demo: the monitor ended with status $status" >&2
exit "$status"
