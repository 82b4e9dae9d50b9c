#!/usr/bin/env bash
# Runs a Windows program under 64-bit Wine and exits with the program's exit
# code. CTest uses it as the cross-compiling emulator of the x86_64 build.
#
#   wine-run.sh [--prefix DIR] program.exe [args...]
#
# The Wine prefix is DIR, else .wine in the nearest build tree (the directory
# holding CMakeCache.txt above the working directory), never the user's. It
# is created once, without mono, gecko or desktop integration, under a lock so
# that parallel tests do not initialise it twice; later runs reuse it.
set -u

prefix=
if [[ ${1:-} == --prefix ]]; then
  prefix=$2
  shift 2
fi
if [[ $# -lt 1 ]]; then
  echo "usage: wine-run.sh [--prefix DIR] program.exe [args...]" >&2
  exit 2
fi

find_build_tree() {
  local dir=$PWD
  while [[ $dir != / ]]; do
    [[ -f $dir/CMakeCache.txt ]] && { echo "$dir"; return 0; }
    dir=$(dirname "$dir")
  done
  return 1
}

find_wine() {
  # Debian's wine64 package ships the loader outside PATH; the wine package
  # adds a wrapper that prefers 32-bit Wine, which these machines lack.
  local candidate
  for candidate in "${WINE:-}" /usr/lib/wine/wine64 "$(command -v wine64)" "$(command -v wine)"; do
    [[ -n $candidate && -x $candidate ]] && { echo "$candidate"; return 0; }
  done
  return 1
}

if [[ -z $prefix ]]; then
  build_tree=$(find_build_tree) || { echo "wine-run.sh: no build tree above $PWD" >&2; exit 2; }
  prefix=$build_tree/.wine
fi
case $prefix in /*) ;; *) prefix=$PWD/$prefix ;; esac

wine=$(find_wine) || { echo "wine-run.sh: wine64 is not installed" >&2; exit 2; }

export WINEPREFIX=$prefix
export WINEDEBUG=-all
export WINEARCH=win64
# No mono or gecko installer prompts, no menu entries in the user's desktop.
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"

wineserver_of() {
  local dir candidate
  dir=$(dirname "$wine")
  for candidate in "$dir/wineserver64" "$dir/wineserver" "$(command -v wineserver)"; do
    [[ -n $candidate && -x $candidate ]] && { echo "$candidate"; return 0; }
  done
  return 1
}

init_prefix() {
  local ready=$prefix/.initialised
  [[ -f $ready ]] && return 0
  mkdir -p "$(dirname "$prefix")"
  (
    flock 9
    [[ -f $ready ]] && exit 0
    # No window may appear while the prefix is set up.
    if ! DISPLAY= "$wine" wineboot --init >"$prefix.log" 2>&1; then
      echo "wine-run.sh: wineboot failed, see $prefix.log" >&2
      exit 1
    fi
    # wineboot returns before its helper processes finish writing the
    # registry. Bounded, in case a persistent server never goes away.
    server=$(wineserver_of) && timeout 120 "$server" -w
    touch "$ready"
  ) 9>"$prefix.lock"
}

init_prefix || exit 1
exec "$wine" "$@"
