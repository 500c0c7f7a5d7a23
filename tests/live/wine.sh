#!/bin/bash
# Runs Windows programs under Wine on a display of their own, and leaves nothing running behind.
#
#   tests/live/wine.sh run COMMAND ARGUMENTS...   start everything, run the command, end everything
#   source tests/live/wine.sh                     then: wine_start; wine_run COMMAND...; wine_stop
#
# VANTREL_CACHE         where the prefix is kept           (default: $HOME/.cache/vantrel)
# VANTREL_WINE_PREFIX   the prefix itself                  (default: $VANTREL_CACHE/wine-prefix)
# VANTREL_WINE_TIMEOUT  seconds that one command may take  (default: 300)
# VANTREL_SCREEN        size of the display                (default: 1280x1024x24)
#
# A command's exit code comes through; 124 says that the time was up, 125 that Wine or the display could not be
# started. One prefix serves one user at a time: a second one waits for the first.

wine_log() { echo "wine.sh: $*" >&2; }

# Debian's "wine" is a script that complains about a missing 32-bit half on each start; the loader itself doesn't.
wine_loader() {
  local candidate
  for candidate in wine64 /usr/lib/wine/wine64 wine; do
    if command -v "$candidate" >/dev/null 2>&1; then echo "$candidate"; return 0; fi
  done
  return 1
}

wine_available() { wine_loader >/dev/null && command -v Xvfb >/dev/null 2>&1; }

wine_server() {
  if command -v wineserver >/dev/null 2>&1; then wineserver "$@"; else /usr/lib/wine/wineserver "$@"; fi
}

wine_start() {
  wine_available || { wine_log "wine or Xvfb isn't installed"; return 125; }
  WINE_LOADER=$(wine_loader)
  export WINEPREFIX=${VANTREL_WINE_PREFIX:-${VANTREL_CACHE:-$HOME/.cache/vantrel}/wine-prefix}
  export WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml=' WINEARCH=win64
  mkdir -p "$(dirname "$WINEPREFIX")" || return 125
  WINE_WORK=$(mktemp -d /tmp/vantrel-wine.XXXXXX) || return 125
  WINE_XVFB_PID= WINE_KEEPER_PID= WINE_SERVER_OWNED=

  # Ending one's own Wine server ends every program of the prefix, so nobody else may be in it.
  exec 9>"$WINEPREFIX.lock"
  if ! flock -n 9; then
    wine_log "waiting for the prefix $WINEPREFIX"
    flock -w 900 9 || { wine_log "the prefix stayed in use"; wine_stop; return 125; }
  fi

  Xvfb -displayfd 1 -screen 0 "${VANTREL_SCREEN:-1280x1024x24}" -nolisten tcp -noreset \
    >"$WINE_WORK/display" 2>"$WINE_WORK/xvfb.log" 9>&- &
  WINE_XVFB_PID=$!
  local waited
  for ((waited = 0; waited < 100; waited++)); do
    [ -s "$WINE_WORK/display" ] && break
    kill -0 "$WINE_XVFB_PID" 2>/dev/null || break
    sleep 0.1
  done
  if ! [ -s "$WINE_WORK/display" ]; then
    wine_log "no display: $(tail -n 3 "$WINE_WORK/xvfb.log")"; wine_stop; return 125
  fi
  export DISPLAY=":$(tr -d '[:space:]' <"$WINE_WORK/display")"

  WINE_SERVER_OWNED=1
  if ! [ -e "$WINEPREFIX/.vantrel-ready-2" ]; then
    wine_log "making the prefix $WINEPREFIX"
    rm -rf "$WINEPREFIX"
    # Without a window manager each visible window waits 2 s for one, unless windows are unmanaged.
    timeout -k 5 180 "$WINE_LOADER" wineboot -i >"$WINE_WORK/prefix.log" 2>&1 9>&- &&
      timeout -k 5 60 "$WINE_LOADER" reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >>"$WINE_WORK/prefix.log" 2>&1 9>&- &&
      timeout -k 5 60 "$WINE_LOADER" reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f >>"$WINE_WORK/prefix.log" 2>&1 9>&- ||
      { wine_log "the prefix couldn't be made: $(tail -n 3 "$WINE_WORK/prefix.log")"; wine_stop; return 125; }
    wine_server -k 2>/dev/null; wine_server -w
    touch "$WINEPREFIX/.vantrel-ready-2"
  fi

  # The first program of a server starts helpers that cost seconds and hold the output pipe; a shell that waits
  # for input keeps them for all programs after it.
  mkfifo "$WINE_WORK/keeper"
  "$WINE_LOADER" cmd /q <"$WINE_WORK/keeper" >/dev/null 2>&1 9>&- &
  WINE_KEEPER_PID=$!
  exec 8>"$WINE_WORK/keeper"
  return 0
}

# wine_run COMMAND ARGUMENTS...: a Windows program by path or name, or a script by its path (.sh).
wine_run() {
  local limit=${VANTREL_WINE_TIMEOUT:-300}
  case $1 in
    *.sh) timeout -k 5 "$limit" "$@" 8>&- 9>&- ;;
    *) timeout -k 5 "$limit" "$WINE_LOADER" "$@" 8>&- 9>&- ;;
  esac
}

wine_stop() {
  exec 8>&-
  if [ -n "$WINE_SERVER_OWNED" ]; then
    wine_server -k 2>/dev/null
    timeout 20 wineserver -w 2>/dev/null
    WINE_SERVER_OWNED=
  fi
  if [ -n "$WINE_KEEPER_PID" ]; then kill "$WINE_KEEPER_PID" 2>/dev/null; wait "$WINE_KEEPER_PID" 2>/dev/null; WINE_KEEPER_PID=; fi
  if [ -n "$WINE_XVFB_PID" ]; then kill "$WINE_XVFB_PID" 2>/dev/null; wait "$WINE_XVFB_PID" 2>/dev/null; WINE_XVFB_PID=; fi
  [ -n "$WINE_WORK" ] && rm -rf "$WINE_WORK"
  WINE_WORK=
  exec 9>&-
  return 0
}

if [ "${BASH_SOURCE[0]}" = "$0" ]; then
  if [ "$1" != run ] || [ $# -lt 2 ]; then
    sed -n '2,14s/^# \{0,1\}//p' "$0"
    exit 2
  fi
  shift
  trap wine_stop EXIT
  trap 'exit 130' INT
  trap 'exit 143' TERM
  wine_start || exit 125
  # In the background, so that a signal is served at once and not after the command.
  wine_run "$@" <&0 &
  wine_command=$!
  wait "$wine_command"
  exit $?
fi
