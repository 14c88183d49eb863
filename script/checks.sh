# What the check scripts under tests/ share. To be sourced with $work naming a folder for its files.
passed=0
failed=0

# check NAME COMMAND...: one check. What a failing command printed is shown.
check() {
  local name=$1; shift
  if "$@" >"$work/output" 2>&1; then
    passed=$((passed + 1)); echo "ok    $name"
  else
    failed=$((failed + 1)); echo "FAIL  $name"; sed 's/^/      /' "$work/output"
  fi
}

# The closing line, and the exit code that goes with it.
summary() {
  echo "$passed passed, $failed failed"
  [ "$failed" -eq 0 ]
}
