# How script/test runs a test program and shows what failed. To be sourced from the project's folder.

# run_tests PROGRAM FILTER: runs the tests of a program. One that crashes or hangs is named and ends itself alone:
# those that follow it run in a new process.
run_tests() {
  local program=$1 filter=$2 printed ran='' failed=0 status names place
  local dll=dist/bin/TAVKIT.DLL
  [[ $program != */host64/* ]] || dll=dist/x64/bin/TAVKIT.DLL
  printed=$(mktemp)
  while :; do
    status=0
    timeout 300 script/run32 "$program" --gtest_filter="$filter$ran" >"$printed" 2>&1 || status=$?
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
  grep -q '^\[ RUN' "$1" || { grep -v '^ok ' "$1" | head -n 20; return; }
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
