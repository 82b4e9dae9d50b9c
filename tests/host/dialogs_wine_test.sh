#!/usr/bin/env bash
# Runs the dialogs test under Wine on a virtual display of its own, and
# takes the screenshots it asks for: for each NAME.request the program
# writes into the screenshot folder, the whole screen as NAME.png.
#
#   dialogs_wine_test.sh WINE_RUN PREFIX PROGRAM LIBRARY SCREENSHOT_DIR
#
# PREFIX is a Wine prefix for this test alone: Wine's desktop process keeps
# the display it started with, so it must not be shared with tests that run
# without one.
set -uo pipefail

wine_run=$1 prefix=$2 program=$3 library=$4 shots=$5
for tool in Xvfb xwd /usr/bin/convert; do
  command -v "$tool" >/dev/null || { echo "dialogs_wine_test.sh: $tool is missing" >&2; exit 2; }
done
mkdir -p "$shots"
rm -f "$shots"/*.request "$shots"/*.png

xvfb_pid= watcher_pid=
cleanup() {
  [[ -n $watcher_pid ]] && kill "$watcher_pid" 2>/dev/null
  # Wine's processes of this prefix end with its server; wait for them
  # before the display goes, so none is left talking to a dead one.
  local server
  for server in /usr/lib/wine/wineserver64 /usr/lib/wine/wineserver "$(command -v wineserver)"; do
    [[ -n $server && -x $server ]] && break
  done
  [[ -x $server ]] && WINEPREFIX=$prefix timeout 30 "$server" -w 2>/dev/null
  [[ -n $xvfb_pid ]] && kill "$xvfb_pid" 2>/dev/null
  wait 2>/dev/null
}
trap cleanup EXIT

# Xvfb picks a free display number and tells it on the descriptor.
display_file=$(mktemp)
Xvfb -displayfd 1 -screen 0 1024x768x24 -nolisten tcp >"$display_file" 2>/dev/null &
xvfb_pid=$!
for _ in $(seq 100); do
  [[ -s $display_file ]] && break
  sleep 0.1
done
display=$(head -n 1 "$display_file")
rm -f "$display_file"
[[ -n $display ]] || { echo "dialogs_wine_test.sh: Xvfb did not start" >&2; exit 1; }
export DISPLAY=:$display

shoot() {
  local request=$1 name
  name=$(basename "$request" .request)
  xwd -root -silent | /usr/bin/convert xwd:- "png:$shots/$name.png.part" &&
    mv "$shots/$name.png.part" "$shots/$name.png"
  rm -f "$request"
}
(
  while true; do
    for request in "$shots"/*.request; do
      [[ -e $request ]] && shoot "$request"
    done
    sleep 0.1
  done
) &
watcher_pid=$!

# No window manager runs on the virtual display: Wine's own desktop window
# holds the dialogs and draws their frames, as Windows would.
"$wine_run" --prefix "$prefix" reg add 'HKCU\Software\Wine\Explorer' /v Desktop /d Default /f \
  >/dev/null 2>&1
"$wine_run" --prefix "$prefix" reg add 'HKCU\Software\Wine\Explorer\Desktops' /v Default \
  /d 1024x768 /f >/dev/null 2>&1
"$wine_run" --prefix "$prefix" "$program" "$library" "Z:$shots"
