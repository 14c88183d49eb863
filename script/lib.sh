# What the scripts share. To be sourced from the project's folder.

# Shows progress on a terminal, and keeps all of it in a file.
logged() {
  local log=$1; shift
  if [ -t 1 ]; then "$@" 2>&1 | tee "$log"; else "$@" >"$log" 2>&1; fi
}

# build PRESET [TARGET...]: configures a build if it is new or older than the presets, and builds. Where that fails, the compiler's
# words are printed.
build() {
  local preset=$1 log; shift
  log=build/$preset.log
  mkdir -p build
  echo "building: $preset"
  if ! { [ "build/$preset/build.ninja" -nt CMakePresets.json ] || cmake --preset "$preset" >"$log" 2>&1; } ||
     ! logged "$log" cmake --build "build/$preset" ${1:+--target "$@"}; then
    grep -vE '^\[[0-9]+/[0-9]+\] (Building|Generating|Linking|Re-checking)' "$log" | tail -n 60 >&2
    echo "the build \"$preset\" failed; all it printed stands in $log" >&2
    return 1
  fi
}
