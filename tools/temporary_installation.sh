# Sourced by the scripts that run the installed program on their own: installs
# the monitor (tools/install.sh, Release) into a temporary folder with a
# registry file and a home folder of its own, and builds the solver stand-in
# beside it. The caller has set `repo`; afterwards
#   $work        the temporary folder, removed when the caller's shell exits
#   $work/apps   the installation prefix (dune71, dune_marine71)
#   $solver      the solver stand-in's program
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export TALVIK_REGISTRY=$work/registry
export HOME=$work/home
mkdir -p "$HOME"

bash "$repo/tools/install.sh" "$work/apps" >/dev/null
build_dir=${MONITOR_INSTALL_BUILD_DIR:-$repo/build-install}
cmake --build "$build_dir" -j2 --target marine_solver >/dev/null
solver=$build_dir/bin/marine_solver
