#!/usr/bin/env bash
# Installs what is missing, builds everything and runs the whole test suite headless.
#   --sanitize   build in build-sanitize with AddressSanitizer and UBSan instead
set -euo pipefail
cd "$(dirname "$0")/.."
bash tools/install-deps.sh test

build_dir=build
options=()
if [ "${1:-}" = --sanitize ]; then
  build_dir=build-sanitize
  options=(-DZELVANE_SANITIZE=ON -DZELVANE_BENCHMARKS=OFF -DCMAKE_BUILD_TYPE=Debug)
  export ASAN_OPTIONS=detect_leaks=0:abort_on_error=1
  export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
fi
cmake -S . -B "$build_dir" "${options[@]}"
cmake --build "$build_dir" -j2
export QT_QPA_PLATFORM=offscreen
ctest --test-dir "$build_dir" --output-on-failure
