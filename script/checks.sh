# What the check scripts under tests/ share. To be sourced with $work naming a folder for its files.
passed=0
failed=0

# needs FILE...: ends the script where one of them is missing.
needs() {
  local file
  for file in "$@"; do
    [ -e "$file" ] || { echo "$0: there is no $file; script/test builds it" >&2; exit 1; }
  done
}

# check NAME COMMAND...: one check. What a failing command printed is shown.
check() {
  local name=$1; shift
  if "$@" >"$work/output" 2>&1; then
    passed=$((passed + 1)); echo "ok    $name"
  else
    failed=$((failed + 1)); echo "FAIL  $name"; sed 's/^/      /' "$work/output"
  fi
}

# check_with TOOL NAME COMMAND...: the same where that tool is there. script/test installs no toolchain but its own;
# script/wine brings MinGW.
check_with() {
  local tool=$1; shift
  if command -v "$tool" >/dev/null; then check "$@"; else echo "skip  $1: there is no $tool"; fi
}

# The closing line, and the exit code that goes with it.
summary() {
  echo "$passed passed, $failed failed"
  [ "$failed" -eq 0 ]
}
