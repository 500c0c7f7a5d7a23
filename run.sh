#!/usr/bin/env bash
# Builds and shows the main job.
#   ./run.sh               takes an element of a real program by a point, shows its attributes, finds it again by a
#                          selector, and draws it into out/demo.png
#   ./run.sh build         only builds; what is built lies in dist/
#   ./run.sh shell         opens a shell on a display of its own, with vantrel-ctl and served_desktop at hand
#   ./run.sh ctl ARGS...   runs the controller: under Wine with a display set up, natively where ARGS have --desktop
# Works without the network once everything has been installed.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

step() { printf '\n== %s\n' "$*"; }

# build_preset PRESET TARGETS...
build_preset() {
  local preset=$1 log=build/$1.log; shift
  mkdir -p build dist
  echo "-- building $preset (log: $log)"
  if ! { cmake --preset "$preset" && cmake --build --preset "$preset" -- "$@"; } >"$log" 2>&1; then
    grep -E 'error|FAILED' "$log" | head -n 10
    echo "The build failed; see $log" >&2
    return 1
  fi
}

build_native() {
  tools/packages.sh native || return 1
  build_preset release vantrel-ctl || return 1
  cp -f "$(find build/release -name vantrel-ctl -type f | head -n 1)" dist/vantrel-ctl
}

# collect FOLDER: what a user takes along, into dist/.
collect() {
  find "build/$1" -path '*/CMakeFiles' -prune -o \( -name 'vantrel*.dll' -o -name 'vantrel-ctl*.exe' -o -name 'standard_objects.dll' -o -name 'served_desktop.exe' \) \
    -type f -exec cp -f {} dist/ \;
}

build_windows() {
  tools/packages.sh windows || return 1
  build_preset windows-x64 vantrel vantrel_host vantrel-ctl standard_objects served_desktop || return 1
  collect windows-x64
  [ "${1:-}" = all ] || return 0
  build_preset windows-x86 vantrel vantrel_host vantrel-ctl || return 1
  collect windows-x86
}

# The demonstration on a shipped desktop file, where there is no Wine.
demo_native() {
  build_native && tools/packages.sh picture || return 1
  local ctl="dist/vantrel-ctl --desktop tests/desktops/settings.json"
  tools/demo.sh "$ctl" native
}

demo_live() {
  build_windows || return 1
  source tests/live/wine.sh
  trap wine_stop EXIT
  wine_start || return 1
  export WINE_LOADER
  tools/demo.sh "$WINE_LOADER dist/vantrel-ctl.exe --beside standard_objects.dll" live
}

# A shell for docs/tutorial.md; with its input from a pipe it runs the lines of it.
shell_live() {
  tools/packages.sh live || return 1
  [ -e dist/vantrel-ctl.exe ] && [ -e dist/served_desktop.exe ] || build_windows || return 1
  source tests/live/wine.sh
  trap wine_stop EXIT
  wine_start || return 1
  export WINE_LOADER
  bash --rcfile tools/shell.sh -i 8>&- 9>&-
}

case "${1:-demo}" in
  demo)
    step "setting up"
    if tools/packages.sh live; then demo_live; else
      echo "Wine can't be installed here: the same on a shipped desktop file"
      demo_native
    fi
    ;;
  build)
    build_native && build_windows all || exit 1
    ls -l dist
    ;;
  ctl)
    shift
    case " $* " in
      *" --desktop "* | *" --desktop="*)
        [ -x dist/vantrel-ctl ] || build_native >&2 || exit 1
        exec dist/vantrel-ctl "$@"
        ;;
    esac
    [ -e dist/vantrel-ctl.exe ] || build_windows >&2 || exit 1
    exec tests/live/wine.sh run dist/vantrel-ctl.exe "$@"
    ;;
  shell)
    shell_live
    ;;
  *)
    sed -n '2,9s/^# \{0,1\}//p' "$0"
    exit 2
    ;;
esac
