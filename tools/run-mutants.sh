#!/usr/bin/env bash
# Checks that the tests catch real faults: applies each mutant of tools/mutants.txt to a
# copy of the tree in build-mutants, builds, runs the suite, and names every mutant that
# the suite lets through (or that does not build). Exits non-zero if any survives.
#   bash tools/run-mutants.sh [REGEX]   only the mutants whose file or description match
set -euo pipefail
cd "$(dirname "$0")/.."
pattern=${1:-}
tree=build-mutants/tree build=build-mutants/build
rm -rf "$tree"
mkdir -p "$tree"
git ls-files -z | xargs -0 cp --parents -t "$tree"
cmake -S "$tree" -B "$build" -DZELVANE_BENCHMARKS=OFF >/dev/null
cmake --build "$build" -j2 >/dev/null
export QT_QPA_PLATFORM=offscreen
# A suite that fails as it stands would "catch" every mutant.
ctest --test-dir "$build" --timeout 300 >"$build/unmutated.log" 2>&1 \
  || { echo "the suite fails without any mutant: see $build/unmutated.log"; exit 1; }

survivors=0 count=0
while IFS= read -r line; do
  [[ -z $line || $line == \#* ]] && continue
  # Four fields between tabs; the replacement may be empty.
  file=${line%%$'\t'*} line=${line#*$'\t'}
  from=${line%%$'\t'*} line=${line#*$'\t'}
  to=${line%%$'\t'*} why=${line#*$'\t'}
  [[ -n $pattern && ! "$file $why" =~ $pattern ]] && continue
  printf -v from '%b' "$from"
  printf -v to '%b' "$to"
  target="$tree/$file"
  cp "$target" "$target.kept"
  content=$(cat "$target"; printf x)
  content=${content%x}
  rest=${content/"$from"/}
  if [[ $content != *"$from"* || $rest == *"$from"* ]]; then
    echo "NOT FOUND ONCE  $file: $why"; survivors=$((survivors + 1)); continue
  fi
  printf '%s' "${content/"$from"/"$to"}" >"$target"
  count=$((count + 1))
  if ! cmake --build "$build" -j2 >/dev/null 2>&1; then
    echo "DOES NOT BUILD  $file: $why"; survivors=$((survivors + 1))
  elif ctest --test-dir "$build" --timeout 300 >"$build/mutant.log" 2>&1; then
    echo "SURVIVED        $file: $why"; survivors=$((survivors + 1))
  else
    echo "caught          $file: $why  (by $(grep -oE '[0-9]+ - test_[a-z_0-9]+' "$build/mutant.log" | cut -d' ' -f3 | tr '\n' ' '))"
  fi
  mv "$target.kept" "$target"
  touch "$target"
done <tools/mutants.txt
cmake --build "$build" -j2 >/dev/null
echo "$count mutants, $survivors not caught"
[ "$survivors" -eq 0 ]
