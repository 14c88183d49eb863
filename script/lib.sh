# What the scripts share. To be sourced from the project's folder.

# build PRESET [TARGET...]: configures a build if need be, and builds. Quiet but for its progress;
# where it fails, the compiler's words are printed.
build() {
  local preset=$1 log; shift
  log=build/$preset.log
  mkdir -p build
  echo "building: $preset"
  if ! { [ -f "build/$preset/build.ninja" ] || cmake --preset "$preset"; } >"$log" 2>&1 ||
     ! cmake --build "build/$preset" ${1:+--target "$@"} >"$log" 2>&1; then
    grep -vE '^\[[0-9]+/[0-9]+\] (Building|Generating|Linking|Re-checking)' "$log" | tail -n 60 >&2
    echo "the build \"$preset\" failed; all it printed stands in $log" >&2
    return 1
  fi
}
