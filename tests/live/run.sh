#!/usr/bin/env bash
# Everything that needs a Windows: the portable unit tests, the loader's tests, and the command line against served
# and foreign programs, under Wine.
#   tests/live/run.sh BUILD_FOLDER
# Closes with "live: N passed, N failed, N skipped".
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
build=$(realpath "${1:-build/windows-x64}")
source tests/live/wine.sh

passed=0 failed=0 skipped=0
trap wine_stop EXIT
trap 'exit 130' INT TERM
wine_start || { echo "live: Wine could not be started"; exit 1; }

# One GoogleTest program; its own closing lines are counted.
run_gtest() {
  local name=$1 program=$2 log=$build/$1.live.log
  [ -e "$program" ] || { echo "-- $name: not built"; failed=$((failed + 1)); return; }
  echo "-- $name"
  VANTREL_WINE_TIMEOUT=${3:-240} wine_run "$program" --gtest_brief=1 >"$log" 2>&1
  local status=$? good bad left
  good=$(tr -d '\r' <"$log" | sed -nE 's/^\[  PASSED  \] ([0-9]+) tests?.*/\1/p' | tail -n 1)
  bad=$(tr -d '\r' <"$log" | grep -cE '^\[  FAILED  \] [A-Za-z]+[^ ]*\.[^ ]* \(')
  left=$(tr -d '\r' <"$log" | sed -nE 's/^\[  SKIPPED \] ([0-9]+) tests?.*/\1/p' | tail -n 1)
  if [ -z "$good" ]; then
    echo "$name FAILED to finish (exit code $status); the end of $log:"
    tail -n 5 "$log"
    bad=1
  fi
  tr -d '\r' <"$log" | grep -E '^\[  FAILED  \]|: Failure' | head -n 20
  passed=$((passed + ${good:-0})) failed=$((failed + bad)) skipped=$((skipped + ${left:-0}))
}

for program in tests_platform tests_common tests_runtimecore tests_inproc tests_controller tests_requests; do
  [ -e "$build/tests/$program.exe" ] && run_gtest "$program" "$build/tests/$program.exe"
done
run_gtest live_loader_tests "$build/live/live_loader_tests.exe" 300
run_gtest live_request_tests "$build/live/live_request_tests.exe" 300

# One list of cases of the command line, with what it says itself.
run_cases() {
  local log=$build/$1.live.log good bad left
  timeout "$2" python3 "tests/live/$1.py" "$build" "$WINE_LOADER" 8>&- 9>&- 2>&1 | tee "$log" | grep -E 'FAILED|SKIPPED|^--'
  if ! grep -qE '^cases: ' "$log"; then
    echo "$1 FAILED to finish; the end of $log:"
    tail -n 10 "$log"
    failed=$((failed + 1))
    return
  fi
  read -r good bad left < <(sed -nE 's/^cases: ([0-9]+) passed, ([0-9]+) failed, ([0-9]+) skipped$/\1 \2 \3/p' "$log")
  passed=$((passed + good)) failed=$((failed + bad)) skipped=$((skipped + left))
}

run_cases command_line_cases 600
run_cases reading_cases 300
run_cases acting_cases 300
run_cases tutorial_cases 300

echo "live: $passed passed, $failed failed, $skipped skipped"
[ "$failed" -eq 0 ]
