# The stages of test.sh. A stage reports through add_result; a failure of one never hides the others.
total_passed=0 total_failed=0 total_skipped=0
declare -a summary=()

say() { printf '\n== %s\n' "$*"; }

# add_result NAME PASSED FAILED SKIPPED [WHY]
add_result() {
  total_passed=$((total_passed + $2)) total_failed=$((total_failed + $3)) total_skipped=$((total_skipped + $4))
  summary+=("$(printf '%-34s %5d passed %3d failed %3d skipped  %s' "$1" "$2" "$3" "$4" "${5:-}")")
}

run_stage() {
  local start=$SECONDS
  say "stage $1"
  "$2"
  echo "-- stage $1 took $((SECONDS - start)) s"
}

print_summary() {
  say summary
  printf '%s\n' "${summary[@]}"
  echo "$total_passed passed, $total_failed failed, $total_skipped skipped"
  [ "$total_failed" -eq 0 ] && [ "$total_passed" -gt 0 ]
}

# build PRESET [TARGETS...]: configures and builds; a failure is one failed result with the log's end.
build() {
  local preset=$1; shift
  echo "-- building $preset"
  mkdir -p build
  local log=build/$preset.log
  if ! { cmake --preset "$preset" && cmake --build --preset "$preset" -- "$@"; } >"$log" 2>&1; then
    grep -E 'error|Error|FAILED' "$log" | head -n 20
    tail -n 15 "$log"
    add_result "$preset build" 0 1 0 "see $log"
    return 1
  fi
  add_result "$preset build" 1 0 0
}

# run_ctest NAME FOLDER ARGS...: runs ctest and adds its counts.
run_ctest() {
  local name=$1 folder=$2; shift 2
  local log=build/$name.ctest.log
  ctest --test-dir "$folder" --output-on-failure -j 2 "$@" >"$log" 2>&1
  local failed skipped passed total
  total=$(sed -nE 's/^.*tests? failed out of ([0-9]+).*$/\1/p' "$log" | tail -n 1)
  failed=$(sed -nE 's/^.*, ([0-9]+) tests? failed out of .*$/\1/p' "$log" | tail -n 1)
  skipped=$(grep -cE '\*\*\*Skipped|Not Run \(Disabled\)' "$log")
  if [ -z "$total" ]; then
    tail -n 20 "$log"
    add_result "$name" 0 1 0 "ctest gave no result, see $log"
    return
  fi
  passed=$((total - failed - skipped))
  [ "$failed" -eq 0 ] || grep -E '\*\*\*(Failed|Timeout|Exception)|Failure' "$log" | head -n 40
  add_result "$name" "$passed" "$failed" "$skipped" "$(grep -E '\*\*\*Skipped' "$log" | sed -E 's/.*: ([^ ]+) .*/\1/' | head -n 3 | tr '\n' ' ')"
}

stage_native() {
  tools/packages.sh native || { add_result native 0 1 0 "packages"; return; }
  if build native; then
    run_ctest native build/native
  fi
  if build clang; then
    run_ctest clang build/clang
  fi
}

stage_windows() {
  tools/packages.sh windows || { add_result windows 0 0 1 "the cross compilers can't be installed"; return; }
  build windows-x64 && collect_windows windows-x64 && check_binaries build/windows-x64 vantrel_x64.dll
  build windows-x86 && collect_windows windows-x86 && check_binaries build/windows-x86 vantrel.dll
}

# Puts what a user takes along into dist/.
collect_windows() {
  mkdir -p dist
  find "build/$1" -maxdepth 4 \( -name 'vantrel*.dll' -o -name 'vantrel-ctl*.exe' \) -exec cp -f {} dist/ \;
}

# Exports, machine and imports of a library, whatever can run it.
check_binaries() {
  if python3 tools/check_binary.py "dist/$2"; then
    add_result "$2 exports and imports" 1 0 0
  else
    add_result "$2 exports and imports" 0 1 0
  fi
}

stage_live() {
  if ! tools/packages.sh live; then
    add_result live 0 0 1 "Wine can't be installed on this machine"
    return
  fi
  tools/packages.sh windows || { add_result live 0 0 1 "the cross compilers can't be installed"; return; }
  build windows-x64 || return
  collect_windows windows-x64
  local log=build/live.log
  tests/live/run.sh build/windows-x64 2>&1 | tee "$log" | grep -E '^(--|==|\[ *FAILED|.*FAILED)' | head -n 80
  local passed failed skipped
  passed=$(sed -nE 's/^live: ([0-9]+) passed, ([0-9]+) failed, ([0-9]+) skipped.*/\1/p' "$log" | tail -n 1)
  failed=$(sed -nE 's/^live: ([0-9]+) passed, ([0-9]+) failed, ([0-9]+) skipped.*/\2/p' "$log" | tail -n 1)
  skipped=$(sed -nE 's/^live: ([0-9]+) passed, ([0-9]+) failed, ([0-9]+) skipped.*/\3/p' "$log" | tail -n 1)
  if [ -z "$passed" ]; then
    tail -n 20 "$log"
    add_result live 0 1 0 "no result, see $log"
    return
  fi
  add_result live "$passed" "$failed" "$skipped"
}

stage_coverage() {
  tools/packages.sh native coverage || { add_result coverage 0 1 0 "packages"; return; }
  build coverage || return
  run_ctest coverage build/coverage
  local folder
  # gcov's text for some files is more than gcovr can read; the rest of the folder counts all the same.
  for folder in Platform Common RuntimeCore InProc Controller; do
    printf '%-14s ' "$folder"
    gcovr -r . --object-directory build/coverage --filter "$folder/" --exclude '.*\.test\.cpp' --gcov-ignore-parse-errors \
      --print-summary 2>/dev/null |
      sed -nE 's/^(lines|branches): ([0-9.]+%) .*/\1 \2/p' | tr '\n' ' '
    echo
  done
}
