#!/usr/bin/env bash
# Measures the editor from outside, under Xvfb: time from start to the window on screen,
# peak memory after opening a 3 MiB and a 1 GiB image and showing a frame, and the reads
# of the image that opening makes. Needs xvfb, x11-utils, xdotool, strace and time.
set -euo pipefail
cd "$(dirname "$0")/.."
editor=${EDITOR_BINARY:-build/zelvane-art-editor}
work=$(mktemp -d)
trap 'kill "${xvfb:-0}" 2>/dev/null || true; rm -rf "$work"' EXIT
Xvfb :96 -screen 0 1280x800x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
export DISPLAY=:96
sleep 1
cp build/demo/zelvane-demo.bin "$work/small.bin"
cp build/demo/zelvane-demo.bin "$work/large.bin"
truncate -s 1G "$work/large.bin"

# Start to window: the X server reports the window mapped.
mkfifo "$work/events"
xev -root -event substructure >"$work/events" &
exec 3<"$work/events"
sleep 0.5
for run in 1 2 3 4 5; do
  start=$(date +%s%N)
  "$editor" & pid=$!
  while read -r line <&3; do [[ $line == MapNotify* ]] && break; done
  echo "window on screen after $(( ($(date +%s%N) - start) / 1000000 )) ms"
  sleep 0.3; kill "$pid"; wait "$pid" 2>/dev/null || true
  while read -r -t 0.2 line <&3; do :; done
done

# Peak memory: open the image from the command line, click the second table and its first frame.
for image in small large; do
  /usr/bin/time -f "%M" -o "$work/rss" "$editor" "$work/$image.bin" & pid=$!
  sleep 1.5
  window=$(xdotool search --name "Zelvane Art Editing" | head -1)
  xdotool mousemove --window "$window" 60 70 click 1 mousemove --window "$window" 200 58 click 1
  sleep 0.5
  kill "$(pgrep -f "zelvane-art-editor $work/$image.bin" | tail -1)"; wait "$pid" 2>/dev/null || true
  echo "peak memory with the $(du -h --apparent-size "$work/$image.bin" | cut -f1) image: $(( $(tail -1 "$work/rss") / 1024 )) MiB"
done

# Reads of the image while it opens.
strace -f -y -e trace=pread64,read -o "$work/trace" "$editor" "$work/small.bin" & pid=$!
sleep 1.5; pkill -f "zelvane-art-editor $work/small.bin"; wait "$pid" 2>/dev/null || true
echo "reads of the image at opening: $(grep -c 'small.bin>' "$work/trace")"
