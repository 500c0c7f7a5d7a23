#!/usr/bin/env bash
# Sets everything up and passes the tests.
#   ./test.sh              all stages: native, windows, live
#   ./test.sh native       the logic on the simulated desktop, under sanitizers, by both compilers; fuzz seeds
#   ./test.sh windows      the 64-bit and 32-bit Windows builds, their exports and imports
#   ./test.sh live         the real library in real programs, under Wine
#   ./test.sh coverage     line and branch coverage, a folder a row
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
source tools/stages.sh

stages=("$@")
[ ${#stages[@]} -eq 0 ] && stages=(native windows live)

for stage in "${stages[@]}"; do
  case "$stage" in
    native) run_stage native stage_native ;;
    windows) run_stage windows stage_windows ;;
    live) run_stage live stage_live ;;
    coverage) run_stage coverage stage_coverage ;;
    *) echo "test.sh: no stage named '$stage'; there are native, windows, live and coverage" >&2; exit 2 ;;
  esac
done
print_summary
