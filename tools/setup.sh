#!/usr/bin/env bash
# Installs the Debian packages that building, testing and running the monitor
# need. Does nothing when they are all installed already; otherwise runs
# apt-get update and installs the missing ones (through sudo when not root).
set -euo pipefail

packages=(
  g++ cmake make           # compiler and build
  tcl-dev tk-dev           # Tcl 8.6 and Tk 8.6
  tix-dev blt-dev          # Tix 8.4.3 and BLT 2.5
  libgtest-dev             # unit and end-to-end tests
  nlohmann-json3-dev       # reading back the JSON lines in the tests
  libbenchmark-dev         # benchmarks in bench/
  gnuplot-nox time         # the comparison and the timing of bench/window_open_bench.sh
  clang libclang-rt-14-dev # the libFuzzer harnesses in fuzz/
  clang-format             # tools/check_format.sh, run by CI
  xvfb xauth               # virtual display for the end-to-end tests and the demo
  x11-apps netpbm          # screenshots of the windows (xwd, then xwdtopnm and pnmtopng)
  locales                  # a decimal-comma locale for the locale-independence tests
)

# The tests check that numbers read and print the same under a locale that
# writes a decimal comma.
test_locale=de_DE.UTF-8

ensure_test_locale() {
  if locale -a 2>/dev/null | grep -qi '^de_DE\.utf-\?8$'; then return 0; fi
  echo "setup: generating the ${test_locale} locale"
  "${as_root[@]}" sed -i "s/^# *\(${test_locale} UTF-8\)/\1/" /etc/locale.gen
  grep -q "^${test_locale} UTF-8" /etc/locale.gen || echo "${test_locale} UTF-8" | "${as_root[@]}" tee -a /etc/locale.gen >/dev/null
  "${as_root[@]}" locale-gen
}

installed() {
  dpkg -s "$1" 2>/dev/null | grep -q '^Status: install ok installed$'
}

missing=()
for package in "${packages[@]}"; do
  installed "$package" || missing+=("$package")
done

if ((EUID == 0)); then
  as_root=(env)
elif command -v sudo >/dev/null 2>&1; then
  as_root=(sudo env)
else
  as_root=(false)  # neither root nor sudo: any step that needs root fails
fi

if ((${#missing[@]} == 0)); then
  echo "setup: all ${#packages[@]} packages are installed"
else
  echo "setup: installing ${missing[*]}"
  "${as_root[@]}" DEBIAN_FRONTEND=noninteractive apt-get update
  "${as_root[@]}" DEBIAN_FRONTEND=noninteractive apt-get install -y "${missing[@]}"
fi
ensure_test_locale
echo "setup: done"
