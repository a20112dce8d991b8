#!/usr/bin/env bash
# Builds the libFuzzer targets with clang in build-fuzz and runs each for a while.
#   bash tools/run-fuzz.sh [SECONDS_PER_TARGET] [JOBS]
# The corpus of each target grows in build-fuzz/corpus/TARGET from one run to the next;
# a finding is kept in build-fuzz/findings and makes the script fail.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-10}
jobs=${2:-1}
bash tools/install-deps.sh fuzz

cmake -S . -B build-fuzz -DZELVANE_FUZZ=ON -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
targets=(open_image encoder bitmap answers journal)
cmake --build build-fuzz -j2 --target make_fuzz_seeds "${targets[@]/#/fuzz_}"

export ASAN_OPTIONS=detect_leaks=0:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
build-fuzz/fuzz/make_fuzz_seeds build-fuzz/seeds
mkdir -p build-fuzz/findings
total=0
for target in "${targets[@]}"; do
  # Every earlier finding first: each must now pass.
  if [ -d "fuzz/regressions/$target" ]; then
    build-fuzz/fuzz/fuzz_"$target" fuzz/regressions/"$target"/* >"build-fuzz/regressions-$target.log" 2>&1 \
      || { tail -40 "build-fuzz/regressions-$target.log"; exit 1; }
  fi
  mkdir -p "build-fuzz/corpus/$target"
  log="build-fuzz/fuzz-$target.log"
  build-fuzz/fuzz/fuzz_"$target" "build-fuzz/corpus/$target" "build-fuzz/seeds/$target" \
    -max_total_time="$seconds" -jobs="$jobs" -workers="$jobs" -max_len=4096 -print_final_stats=1 \
    -artifact_prefix="build-fuzz/findings/$target-" >"$log" 2>&1 || { tail -40 "$log"; exit 1; }
  [ "$jobs" -gt 1 ] && cat fuzz-*.log >>"$log" 2>/dev/null && rm -f fuzz-*.log
  runs=$(grep -h 'stat::number_of_executed_units' "$log" | awk '{s += $2} END {print s + 0}')
  cover=$(grep -ho 'cov: [0-9]*' "$log" | tail -1)
  echo "fuzz_$target: $runs executions in ${seconds}s, $cover"
  total=$((total + runs))
done
echo "all targets: $total executions"
