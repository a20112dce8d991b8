#!/usr/bin/env bash
# Builds the libFuzzer targets with clang in build-fuzz and runs each for a while.
#   bash tools/run-fuzz.sh [SECONDS_PER_TARGET] [JOBS]
# The corpus of each target grows in build-fuzz/corpus/TARGET from one run to the next;
# a finding is kept in build-fuzz/findings and makes the script fail.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-10}

# A big-endian number of width bytes, as raw bytes.
bytes() { local hex; hex=$(printf "%0$(($2 * 2))x" "$1"); printf "$(sed 's/../\\x&/g' <<<"$hex")"; }
# A piece for fuzz_open_image: where it goes, how long, and the demo image's bytes there.
piece() { bytes "$2" 4; bytes "$3" 1; dd if="$1" bs=1 skip="$2" count="$3" status=none; }

# Small seeds from the real programs: pieces of the demo image around each table, its
# palette and its first frame; a 16-colour bitmap; typed answers; a real journal; a
# patch of each format.
make_seeds() {
  local seeds=$1 demo=$2 n=0 table frame palettes=(0x22921A 0x22923E 0x22927E 0x22925C 0x2292A0 0x2292BE 0x2292DC)
  rm -rf "$seeds" && mkdir -p "$seeds"/{open_image,encoder,bitmap,answers,journal,patch}
  for table in 0xA0504 0xB18BC 0xCB3B4 0xD4E44 0xF1130 0xF6A18 0x101304; do
    frame=$(( 0x$(od -An -tx1 -j $((table)) -N4 "$demo" | tr -d ' \n') - 0x2000000 ))
    { bytes $((0x300000)) 4; piece "$demo" $((table)) 64; piece "$demo" $((palettes[n])) 30
      piece "$demo" "$frame" 255; piece "$demo" $((frame + 255)) 255; } >"$seeds/open_image/table$n"
    n=$((n + 1))
  done
  printf '\x10\x08\x04\x00\x01\x02\x13\x03\x04\x05\x00\x10\x11' >"$seeds/encoder/grid"
  convert -size 16x8 gradient:red-blue -colors 16 -type Palette BMP3:"$seeds/bitmap/gradient.bmp"
  printf '1F0000' >"$seeds/answers/position"; printf ' ff 00 ff' >"$seeds/answers/colour"
  cp "$demo" "$seeds/image.bin"
  build-fuzz/zelvane-art palette export "$seeds/image.bin" 3 "$seeds/palette.gpl"
  build-fuzz/zelvane-art palette import "$seeds/image.bin" 5 "$seeds/palette.gpl"
  for format in bps ips; do # a first byte of 0 makes all the rest the patch
    build-fuzz/zelvane-art patch create "$seeds/image.bin" "$seeds/patch.$format"
    { printf '\x00'; cat "$seeds/patch.$format"; } >"$seeds/patch/palette-import.$format"
  done
  mv "$seeds/image.bin.zelvane-journal" "$seeds/journal/palette-import"
  rm -f "$seeds/image.bin" "$seeds/palette.gpl" "$seeds"/patch.*
}
jobs=${2:-1}
bash tools/install-deps.sh fuzz

cmake -S . -B build-fuzz -DZELVANE_FUZZ=ON -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
targets=(open_image encoder bitmap answers journal patch)
cmake --build build-fuzz -j2 --target demo_rom zelvane-art "${targets[@]/#/fuzz_}"

export ASAN_OPTIONS=detect_leaks=0:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
make_seeds "build-fuzz/seeds" "build-fuzz/demo/zelvane-demo.bin"
mkdir -p build-fuzz/findings
total=0
root=$PWD
for target in "${targets[@]}"; do
  # libFuzzer writes its workers' logs (fuzz-N.log, even for one job) and, without a
  # prefix, its findings into the folder it runs in: here a folder of build-fuzz.
  workers="build-fuzz/workers/$target"
  rm -rf "$workers" && mkdir -p "$workers" "build-fuzz/corpus/$target"
  # Every earlier finding first: each must now pass.
  if [ -d "fuzz/regressions/$target" ]; then
    log="build-fuzz/regressions-$target.log"
    (cd "$workers" && "$root/build-fuzz/fuzz/fuzz_$target" -artifact_prefix="$root/build-fuzz/findings/$target-" \
      "$root/fuzz/regressions/$target"/*) >"$log" 2>&1 || { tail -40 "$log"; exit 1; }
  fi
  log="build-fuzz/fuzz-$target.log"
  # The main process copies each worker's log into its own output when the worker ends.
  (cd "$workers" && "$root/build-fuzz/fuzz/fuzz_$target" "$root/build-fuzz/corpus/$target" "$root/build-fuzz/seeds/$target" \
    -max_total_time="$seconds" -jobs="$jobs" -workers="$jobs" -max_len=4096 -print_final_stats=1 \
    -artifact_prefix="$root/build-fuzz/findings/$target-") >"$log" 2>&1 || { tail -40 "$log"; exit 1; }
  runs=$(grep -h 'stat::number_of_executed_units' "$log" | awk '{s += $2} END {print s + 0}')
  cover=$(grep -ho 'cov: [0-9]*' "$log" | tail -1)
  echo "fuzz_$target: $runs executions in ${seconds}s, $cover"
  total=$((total + runs))
done
echo "all targets: $total executions"
