#!/usr/bin/env bash
# Fails, naming the files, when a C++ file of the project differs from what
# clang-format makes of it with the project's .clang-format.
#
# Usage: tools/check_format.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
mapfile -t files < <(git ls-files 'src/*.cpp' 'src/*.h' 'tests/*.cpp' 'tests/*.h' 'bench/*.cpp' 'bench/*.h' \
                                  'tools/*.cpp' 'tools/*.h' 'fuzz/*.cpp' 'fuzz/*.h')
clang-format --dry-run -Werror "${files[@]}"
echo "check_format: ${#files[@]} files as clang-format writes them"
