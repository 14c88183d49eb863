# How test programs are run, added up and shown where they fail. To be sourced from the project's folder.

passed=0
failed=0

# run_tests PROGRAM FILTER [LAUNCHER...]: runs the tests of a program. One that crashes or hangs is named and ends
# itself alone: those that follow it run in a new process.
run_tests() {
  local program=$1 filter=$2 printed ran='' failed=0 status names place launcher
  launcher=("${@:3}")
  [ "$#" -gt 2 ] || launcher=(script/run32)
  local dll=dist/bin/TAVKIT.DLL
  [[ $program != *64/* ]] || dll=dist/x64/bin/TAVKIT.DLL
  printed=$(mktemp)
  while :; do
    status=0
    timeout 300 "${launcher[@]}" "$program" --gtest_filter="$filter$ran" >"$printed" 2>&1 </dev/null || status=$?
    sed -i 's/\r$//' "$printed"
    cat "$printed"
    [ "$status" -eq 0 ] || failed=1
    ! grep -q '^\[==========\] .* ran\.' "$printed" || break
    mapfile -t names < <(sed -n 's/^\[ RUN      \] //p' "$printed")
    [ "${#names[@]}" -ne 0 ] || break
    place=$(sed -n 's/^signal .* at TAVKIT\.DLL+//p' "$printed")
    [ -z "$place" ] ||
      llvm-symbolizer-19 --obj="${TAVKIT_DLL:-$dll}" --relative-address "$place" | sed -n '1s/^/in /p'
    echo "[  CRASHED ] ${names[-1]} (exit code $status; 124: it took more than 300 seconds)"
    [[ "$filter$ran" = *-* ]] || ran=-
    ran+=$(printf ':%s' "${names[@]}")
  done
  rm -f "$printed"
  return "$failed"
}

# show LOG: what leads to the place of a failure: the first one, and the names of some others.
show() {
  grep -q '^\[ RUN' "$1" || { grep -v '^ok ' "$1" | head -n 20 || true; return; }
  awk '
    /^\[ RUN/ { lines = text = "" }
    lines++ < 12 { text = text "  " $0 "\n" }
    /^\[  (FAILED|CRASHED) .*\)$/ {
      if (failures++ == 0) printf "%s", text (lines > 12 ? "  " $0 "\n" : "")
      else if (failures < 5) { sub(/,$/, "", $4); others = others " " $4 }
    }
    END { if (failures > 1) print "  and " failures - 1 " more:" others (failures > 5 ? " ..." : "") }
  ' "$1"
}

# add_up NAME: adds up the results of a program that has ended, and shows what failed. One that fails without
# a failed test counts as one; a check that ends before its last line counts with what it printed.
add_up() {
  local log=build/$1.log status good bad
  status=$(<"build/$1.status")
  read -r good bad < <(awk '
    /^\[       OK \]/ { good++ }
    /^\[  (FAILED|CRASHED) .*\)$/ { bad++ }
    /^ok    / { ok++ }
    /^FAIL  / { fail++ }
    /^[0-9]+ passed, [0-9]+ failed$/ { good += $1; bad += $3; isWhole = 1 }
    END { if (!isWhole) { good += ok; bad += fail }; print good + 0, bad + 0 }' "$log")
  if [ "$status" -ne 0 ]; then
    echo "failed: $1 (exit code $status; all it printed stands in $log)"
    show "$log"
    [ "$bad" -ne 0 ] || bad=1
  fi
  passed=$((passed + good))
  failed=$((failed + bad))
}
