#!/usr/bin/env bash
# Sets up the machine and runs every test:
#   1. build/ (RelWithDebInfo): unit and end-to-end tests;
#   2. build-sanitize/ (AddressSanitizer + UndefinedBehaviorSanitizer, no
#      end-to-end tests): unit tests, with leak detection.
# Exits non-zero on the first failure.
set -euo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$repo"

bash tools/setup.sh

echo "== build (RelWithDebInfo): unit and end-to-end tests"
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo -DMONITOR_SANITIZE=OFF -DMONITOR_E2E_TESTS=ON
cmake --build build -j2
(cd build && ctest --output-on-failure --no-tests=error)

echo "== build-sanitize (ASan + UBSan): unit tests"
# Test discovery runs the unit test program during the build, so the
# sanitizer settings hold for the build as well as for ctest.
export ASAN_OPTIONS=detect_leaks=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
cmake -S . -B build-sanitize -DCMAKE_BUILD_TYPE=RelWithDebInfo -DMONITOR_SANITIZE=ON -DMONITOR_E2E_TESTS=OFF
cmake --build build-sanitize -j2 --target unit_tests
(cd build-sanitize && ctest --output-on-failure --no-tests=error -L unit)

echo "== all tests passed"
