#!/usr/bin/env bash
# Installs what is missing, builds the editor, its command line and the demo ROM image,
# and starts the editor in the demo image's folder, so the open dialog shows it first.
set -euo pipefail
cd "$(dirname "$0")/.."
bash tools/install-deps.sh
cmake -S . -B build
cmake --build build -j2 --target zelvane-art-editor zelvane-art demo_rom
cd build/demo
exec ../zelvane-art-editor
