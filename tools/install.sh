#!/usr/bin/env bash
# Builds the monitor in Release and installs it under PREFIX (default ~/talvik):
#
#   PREFIX/dune71/bin/monitor          turbomachinery mode (version tag "71")
#   PREFIX/dune_marine71/bin/monitor   marine mode (version tag "_marine71")
#
# each with the start-up scripts of tcl/ in its _tcl folder, and beside it
# bin/monitor-watch, the same model and verdicts without a display (it reads
# either mode and needs no registry). Then it registers
# both installations in the user's registry file ($TALVIK_REGISTRY when set,
# else ~/.talvik/registry): the sections [Software\TALVIK\dune71] and
# [Software\TALVIK\dune_marine71] are written or replaced, every other line of
# the file stays as it was. Running it again gives the same result.
#
# Usage: tools/install.sh [PREFIX]
# MONITOR_INSTALL_BUILD_DIR chooses the build folder (default build-install).
set -euo pipefail

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
prefix=${1:-$HOME/talvik}
build_dir=${MONITOR_INSTALL_BUILD_DIR:-$repo/build-install}
registry=${TALVIK_REGISTRY:-$HOME/.talvik/registry}

# The installation folders, their registry sections and the start-up script
# each one runs (relative to tcl/).
installations=(dune71 dune_marine71)
declare -A startup_script=(
  [dune71]=_monitorTurbo/itf_init.tcl
  [dune_marine71]=_monitorTurbo/_monitorMarine/itf_init.tcl
)

say() { printf 'install: %s\n' "$*"; }
die() { printf 'install: error: %s\n' "$*" >&2; exit 1; }

mkdir -p "$prefix"
prefix=$(cd "$prefix" && pwd -P)
# The program finds its version tag by cutting its own lower-cased path at the
# first "/bin/" folder; a prefix that already holds one would give a wrong tag.
case "${prefix,,}/" in
  */bin/* | */bin64/*) die "the prefix $prefix must not lie inside a folder named bin or bin64" ;;
esac

say "building the monitor and monitor-watch (Release) in $build_dir"
cmake -S "$repo" -B "$build_dir" -DCMAKE_BUILD_TYPE=Release -DMONITOR_BUILD_TESTS=OFF >/dev/null
cmake --build "$build_dir" -j2 --target monitor monitor-watch
binary=$build_dir/bin/monitor
watch_binary=$build_dir/bin/monitor-watch
[[ -x $binary ]] || die "the build did not produce $binary"
[[ -x $watch_binary ]] || die "the build did not produce $watch_binary"

for name in "${installations[@]}"; do
  root=$prefix/$name
  script=${startup_script[$name]}
  [[ -f $repo/tcl/$script ]] || die "missing start-up script tcl/$script"
  mkdir -p "$root/bin" "$root/_tcl"
  # A copy, not a link: the program reads its installation from its own path.
  # Removing first lets a running copy keep its file.
  rm -f "$root/bin/monitor" "$root/bin/monitor-watch"
  cp "$binary" "$root/bin/monitor"
  cp "$watch_binary" "$root/bin/monitor-watch"
  chmod 0755 "$root/bin/monitor" "$root/bin/monitor-watch"
  cp -R "$repo/tcl/." "$root/_tcl/"
  say "installed $root/bin/monitor (start-up script $root/_tcl/$script) and $root/bin/monitor-watch"
done

# Writes the registry file anew: the sections named in SECTIONS (one
# "name<TAB>folder" a line) are replaced where they stand, or appended when
# absent. Section names compare without case and without a leading
# HKEY_LOCAL_MACHINE\. Inside a replaced section its value lines go; its
# comments and blank lines stay, as does every line outside those sections.
# REPORT receives one "replaced NAME" or "added NAME" line per section.
rewrite_registry() {
  awk '
    function trim(s) { sub(/^[ \t\r]+/, "", s); sub(/[ \t\r]+$/, "", s); return s }
    function key_of(s) {
      s = tolower(trim(s))
      if (index(s, "hkey_local_machine\\") == 1) s = substr(s, length("hkey_local_machine\\") + 1)
      return s
    }
    function emit(k) {
      print "[" name[k] "]"
      print "TALVIK_DIR=" dir[k]
      done[k] = 1
      last_blank = 0
      lines++
    }
    BEGIN {
      n = split(ENVIRON["SECTIONS"], rows, "\n")
      for (i = 1; i <= n; i++) {
        if (rows[i] == "") continue
        split(rows[i], parts, "\t")
        k = key_of(parts[1])
        order[++count] = k
        name[k] = parts[1]
        dir[k] = parts[2]
      }
      report = ENVIRON["REPORT"]
      skipping = 0
      last_blank = 1
      lines = 0
    }
    {
      line = trim($0)
      first = substr(line, 1, 1)
      if (first == "[") {
        close_at = index(line, "]")
        k = close_at > 0 ? key_of(substr(line, 2, close_at - 2)) : ""
        skipping = close_at > 0 && (k in dir)
        if (skipping) {
          if (!(k in done)) {
            emit(k)
            print "replaced " name[k] > report
          }
          next
        }
      } else if (skipping && line != "" && first != ";" && first != "#") {
        next
      }
      print $0
      lines++
      last_blank = (line == "")
    }
    END {
      for (i = 1; i <= count; i++) {
        k = order[i]
        if (k in done) continue
        if (lines > 0 && !last_blank) print ""
        emit(k)
        print "added " name[k] > report
      }
    }
  ' "$@"
}

sections=""
for name in "${installations[@]}"; do
  sections+="Software\\TALVIK\\$name"$'\t'"$prefix/$name"$'\n'
done

mkdir -p "$(dirname "$registry")"
new=$(mktemp "$registry.new.XXXXXX")
report=$(mktemp)
trap 'rm -f "$new" "$report"' EXIT
if [[ -e $registry ]]; then
  SECTIONS=$sections REPORT=$report rewrite_registry "$registry" >"$new"
else
  SECTIONS=$sections REPORT=$report rewrite_registry /dev/null >"$new"
fi

if [[ -e $registry ]] && cmp -s "$new" "$registry"; then
  say "registry $registry already holds both installations; left unchanged"
else
  [[ -e $registry ]] && chmod --reference="$registry" "$new" 2>/dev/null || chmod 0644 "$new"
  mv -f "$new" "$registry"
  while read -r action section; do
    say "registry $registry: $action section [$section]"
  done <"$report"
fi
for name in "${installations[@]}"; do
  say "  [Software\\TALVIK\\$name] TALVIK_DIR=$prefix/$name"
done
say "done; start with $prefix/dune71/bin/monitor or $prefix/dune_marine71/bin/monitor"
