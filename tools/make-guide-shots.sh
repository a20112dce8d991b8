#!/usr/bin/env bash
# Makes the screenshots of docs/guide.md again: the real editor under Xvfb goes through
# the guide's session on the demo image, and the command line's step runs the real
# zelvane-art and ImageMagick.
set -euo pipefail
cd "$(dirname "$0")/.."
bash tools/install-deps.sh guide
cmake -S . -B build >/dev/null
cmake --build build -j2 --target guide_shots zelvane-art demo_rom
out=$PWD/docs/guide
# The session's folder holds only the demo image, so its file dialogs show nothing of this
# machine. The editor's home (the dialogs' side bar shows its name), Qt's settings and
# caches are in the scratch folder, so neither the side bar nor remembered folders bring
# anything in.
session=$(mktemp -d)
scratch=$(mktemp -d)
trap 'kill "${xvfb:-0}" 2>/dev/null || true; rm -rf "$session" "$scratch"' EXIT
mkdir -p "$out" "$scratch/user"
mkdir -m 700 "$scratch/runtime"
cp build/demo/zelvane-demo.bin "$session/zelvane-demo.bin"
demo=$session/zelvane-demo.bin

# A 16-colour bitmap to import: the demo's own slime, flattened onto the editor's grey.
build/zelvane-art rip "$demo" "$scratch/slime" --tables 0 --quiet
convert "$scratch/slime/table00/slot000.png" -background '#F0F0F0' -flatten -colors 16 -type Palette BMP3:"$scratch/slime.bmp"

Xvfb :97 -screen 0 1280x800x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
sleep 1
export DISPLAY=:97 QT_QPA_PLATFORM=xcb HOME=$scratch/user XDG_CONFIG_HOME=$scratch/config \
  XDG_CACHE_HOME=$scratch/cache XDG_DATA_HOME=$scratch/data XDG_STATE_HOME=$scratch/state XDG_RUNTIME_DIR=$scratch/runtime
build/tools/guide_shots session "$out" "$demo" "$scratch/slime.bmp"

# The command line: rip, mirror one frame with ImageMagick, insert it, look at it.
build/zelvane-art rip "$demo" "$scratch/art" --quiet
convert "$scratch/art/table01/slot002.png" -flop PNG32:"$scratch/art/table01/slot002.png"
build/zelvane-art insert "$demo" 1 2 "$scratch/art/table01/slot002.png" --append
build/tools/guide_shots show "$out" "$demo" 1 2 13-command-line
