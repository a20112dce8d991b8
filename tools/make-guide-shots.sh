#!/usr/bin/env bash
# Makes the screenshots of docs/guide.md again: the real editor under Xvfb goes through
# the guide's session on the demo image, and the command line's step runs the real
# zelvane-art and ImageMagick.
set -euo pipefail
cd "$(dirname "$0")/.."
bash tools/install-deps.sh guide
cmake -S . -B build >/dev/null
cmake --build build -j2 --target guide_shots zelvane-art demo_rom
out=docs/guide
work=$(mktemp -d)
trap 'kill "${xvfb:-0}" 2>/dev/null || true; rm -rf "$work"' EXIT
mkdir -p "$out"
cp build/demo/zelvane-demo.bin "$work/demo.bin"

# A 16-colour bitmap to import: the demo's own slime, flattened onto the editor's grey.
build/zelvane-art rip "$work/demo.bin" "$work/slime" --tables 0 --quiet
convert "$work/slime/table00/slot000.png" -background '#F0F0F0' -flatten -colors 16 -type Palette BMP3:"$work/slime.bmp"

Xvfb :97 -screen 0 1280x800x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
sleep 1
export DISPLAY=:97 QT_QPA_PLATFORM=xcb
build/tools/guide_shots session "$out" "$work/demo.bin" "$work/slime.bmp" "$work"

# The command line: rip, mirror one frame with ImageMagick, insert it, look at it.
build/zelvane-art rip "$work/demo.bin" "$work/art" --quiet
convert "$work/art/table01/slot002.png" -flop PNG32:"$work/art/table01/slot002.png"
build/zelvane-art insert "$work/demo.bin" 1 2 "$work/art/table01/slot002.png" --append
build/tools/guide_shots show "$out" "$work/demo.bin" 1 2 13-command-line
