#!/usr/bin/env bash
# Prints how large the tests are against the code they test: non-blank, non-comment
# C++ lines under tests/ and fuzz/ against those under src/ and tools/. The project
# aims for a quarter to a third.
set -euo pipefail
cd "$(dirname "$0")/.."
count() {
  git ls-files -co --exclude-standard -- "$@" | grep -E '\.(cpp|cc|h|hpp)$' | xargs -r cat | grep -cvE '^\s*(//.*)?$' || true
}
code=$(count src tools)
tests=$(count tests fuzz)
echo "test share: $tests test lines for $code code lines ($((100 * tests / code))%)"
