# What the scripts share.

# accept MOST "$@": for a script that takes up to MOST arguments and no option but --help, which prints the
# comment at its top. Called before the script leaves the folder that it was started in.
accept() {
  local most=$1 argument; shift
  for argument in "$@"; do
    case $argument in
      --help) awk 'NR > 1 {if (!sub(/^# ?/, "")) exit; print}' "$0"; exit 0 ;;
      -*) refuse "there is no option \"$argument\"" ;;
      "") refuse "an argument is empty" ;;
    esac
  done
  [ "$#" -le "$most" ] || refuse "\"${*:most + 1:1}\" is an argument too many"
}

# refuse REASON: in one line.
refuse() {
  echo "${0##*/}: $1; script/${0##*/} --help tells what it takes" >&2
  exit 2
}

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
