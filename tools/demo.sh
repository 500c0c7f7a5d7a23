#!/usr/bin/env bash
# The main job, shown: tools/demo.sh "CONTROLLER COMMAND" live|native. run.sh sets the stage.
set -uo pipefail
controller=$1 stage=$2
mkdir -p out

# pick EXPRESSION: a value out of the JSON on standard input, as `d`.
pick() { python3 -c "import json,sys; d=json.load(sys.stdin); print($1)"; }
step() { printf '\n== %s\n' "$*"; }
run() {
  echo "\$ vantrel-ctl $*"
  # shellcheck disable=SC2086
  $controller "${target[@]}" "$@"
}
quietly() {
  # shellcheck disable=SC2086
  $controller "${target[@]}" "$@" 2>/dev/null
}

target=()
if [ "$stage" = live ]; then
  step "a real program: winecfg"
  "$WINE_LOADER" winecfg >/dev/null 2>&1 8>&- 9>&- &
  for ((i = 0; i < 60; i++)); do
    handle=$(quietly --json windows | pick "next(w['handle'] for w in d['windows'] if w['title'].startswith('Wine conf'))" 2>/dev/null) && break
    sleep 0.5
  done
  [ -n "${handle:-}" ] || { echo "its window did not open" >&2; exit 1; }
  target=(--handle "$handle")
  sleep 1
fi

step "which element lies under a point"
# The right one of the buttons at the bottom of the window.
if [ "$stage" = live ]; then
  read -r x y < <(quietly --json windows | pick "next('%d %d' % (w['rectangle']['right'] - 50, w['rectangle']['bottom'] - 25) for w in d['windows'] if w['handle'] == $handle)")
else
  read -r x y < <(quietly --json find 'ctrl[role="push button"]' | pick "'%d %d' % (d['results'][0]['rectangle']['left'] + 5, d['results'][0]['rectangle']['top'] + 5)")
fi
run at "$x" "$y" || exit 1
json=$(quietly --json at "$x" "$y")
name=$(pick "d['attributes'].get('name', '')" <<<"$json")
role=$(pick "d['attributes'].get('role', '')" <<<"$json")

step "its attributes"
run attrs at "$x,$y" || exit 1

step "found again by a selector"
selector="ctrl[role=\"$role\" name=\"$name\"]"
run find "$selector" || exit 1
json=$(quietly --json find "$selector")

step "the picture"
if [ "$stage" = live ]; then
  read -r left top right bottom < <(pick "'%(left)d %(top)d %(right)d %(bottom)d' % d['results'][0]['rectangle']" <<<"$json")
  read -r wl wt ww wh < <(quietly --json windows | pick "next('%d %d %d %d' % (r['left'], r['top'], r['right'] - r['left'], r['bottom'] - r['top']) for w in d['windows'] if w['handle'] == $handle for r in [w['rectangle']])")
  import -window root out/screen.png &&
    /usr/bin/convert out/screen.png -fill none -stroke red -strokewidth 3 -draw "rectangle $((left - 3)),$((top - 3)) $((right + 2)),$((bottom + 2))" \
      -crop "$((ww + 40))x$((wh + 40))+$((wl > 20 ? wl - 20 : 0))+$((wt > 20 ? wt - 20 : 0))" +repage out/demo.png
  rm -f out/screen.png
  "$WINE_LOADER" taskkill /f /im winecfg.exe >/dev/null 2>&1
else
  quietly picture out/demo.svg --outline "$selector" && rsvg-convert out/demo.svg -o out/demo.png
fi
[ -s out/demo.png ] && echo "out/demo.png shows the window with the element outlined"
