#!/usr/bin/env bash
# Installs what a stage needs from Debian's packages, and nothing when it is all there already.
#   tools/packages.sh native     compilers, GoogleTest, the header-only helpers
#   tools/packages.sh windows    the cross compilers
#   tools/packages.sh live       Wine and a virtual display
# Exits with 1 and says which packages are missing when they can't be installed.
set -euo pipefail

declare -A stage_packages=(
  [native]="g++ clang cmake ninja-build ccache python3 libgtest-dev libgmock-dev libbenchmark-dev nlohmann-json3-dev libcli11-dev libstb-dev"
  [windows]="cmake ninja-build ccache python3 g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix googletest nlohmann-json3-dev libcli11-dev libstb-dev"
  [live]="wine wine64 xvfb xauth x11-utils x11-apps imagemagick"
  [picture]="librsvg2-bin"
  [coverage]="gcovr"
)

missing=()
for stage in "$@"; do
  for package in ${stage_packages[$stage]}; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
  done
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "-- installing ${missing[*]}"
sudo=""
[ "$(id -u)" = 0 ] || sudo="sudo -n"
log=$(mktemp)
if ! { $sudo apt-get update -qq && DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
  echo "Could not install: ${missing[*]}" >&2
  tail -n 5 "$log" >&2
  rm -f "$log"
  exit 1
fi
rm -f "$log"
