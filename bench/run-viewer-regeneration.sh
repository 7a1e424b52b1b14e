#!/usr/bin/env bash
# Builds (Release) and runs the viewer regeneration benchmark on a counted chart of 50 000 nodes.
set -euo pipefail
top="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${SORVIK_BUILD_DIR:-$top/build/release}"
cmake -S "$top" -B "$build" -DCMAKE_BUILD_TYPE=Release -DSORVIK_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" --parallel 2 --target bench_viewer_regeneration >/dev/null
"$build/bench/bench_viewer_regeneration" "${1:-50000}" "${2:-15}"
