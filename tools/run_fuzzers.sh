#!/usr/bin/env bash
# Builds the libFuzzer harnesses of fuzz/ in build-fuzz/ (clang,
# MONITOR_FUZZ=ON) and runs each for SECONDS_PER_HARNESS seconds (default 20),
# starting from a copy of its corpus fuzz/corpus/<harness>/, so that the
# repository's corpus stays as it is. Prints one line per harness.
#
# A harness stops at its first crash, leak or timeout; its input is kept in
# build-fuzz/fuzz-artifacts/ and its log in build-fuzz/fuzz-logs/, and the
# sanitizer's report is printed. The other harnesses still run, so that one
# finding does not hide the next; the script then exits non-zero.
#
#   tools/run_fuzzers.sh [SECONDS_PER_HARNESS]
set -euo pipefail

seconds=${1:-20}
if [[ ! $seconds =~ ^[1-9][0-9]*$ ]]; then
  echo "usage: $0 [SECONDS_PER_HARNESS]" >&2
  exit 2
fi

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$repo"

# clang with its libFuzzer runtime is among the project's packages.
bash tools/setup.sh

build=$repo/build-fuzz
echo "== build-fuzz (clang, libFuzzer, ASan + UBSan)"
CC=clang CXX=clang++ cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DMONITOR_FUZZ=ON \
  -DMONITOR_BUILD_TESTS=OFF -DMONITOR_BUILD_BENCHMARKS=OFF
cmake --build "$build" -j2 --target monitor_fuzzers

artifacts=$build/fuzz-artifacts
logs=$build/fuzz-logs
mkdir -p "$artifacts" "$logs"
# Working corpora and the harnesses' scratch folders; a harness that crashes
# cannot clean up after itself, so all of it goes when the script ends. The
# harnesses rewrite their files thousands of times a second, and a disk file
# system may flush a truncated and rewritten file at every close (ext4 does),
# which makes them some twenty times slower: memory is used when it can be.
if [[ -d /dev/shm && -w /dev/shm ]]; then
  work_base=/dev/shm
else
  work_base=${TMPDIR:-/tmp}
fi
work=$(mktemp -d "$work_base/monitor_fuzz_run.XXXXXX")
trap 'rm -rf "$work"' EXIT
# UndefinedBehaviorSanitizer prints no stack unless asked.
export UBSAN_OPTIONS=print_stacktrace=1

echo "== fuzzing, ${seconds} s per harness"
failures=0
for corpus in fuzz/corpus/*/; do
  harness=$(basename "$corpus")
  runner=$build/fuzz/fuzz_$harness
  log=$logs/$harness.log
  if [[ ! -x $runner ]]; then
    echo "$harness: FAILED, no executable $runner"
    failures=$((failures + 1))
    continue
  fi
  cp -r "$corpus" "$work/$harness"
  mkdir "$work/$harness.tmp"
  if TMPDIR=$work/$harness.tmp "$runner" "$work/$harness" -max_total_time="$seconds" -timeout=10 \
    -rss_limit_mb=2048 -artifact_prefix="$artifacts/$harness-" >"$log" 2>&1; then
    runs=$(sed -n 's/^Done \([0-9]*\) runs.*/\1/p' "$log")
    echo "$harness: ok, ${runs:-?} runs"
  else
    input=$(sed -n 's/.*Test unit written to \(.*\)$/\1/p' "$log" | head -n 1)
    summary=$(grep -m 1 '^SUMMARY:' "$log" || tail -n 1 "$log")
    echo "$harness: FAILED, ${summary#SUMMARY: }"
    echo "  input: ${input:-none written}"
    echo "  log: $log"
    # The report, from its first error line through its summary.
    sed -n '/ERROR:\|runtime error:/,/^SUMMARY:/p' "$log" | head -n 80 | sed 's/^/  | /'
    failures=$((failures + 1))
  fi
done

if ((failures > 0)); then
  echo "== ${failures} harness(es) failed"
  exit 1
fi
echo "== all harnesses ran clean"
