#!/usr/bin/env bash
# Builds (Release) and runs the ontology store benchmark on a 2.7 M-node taxonomy.
set -euo pipefail
top="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${SORVIK_BUILD_DIR:-$top/build/release}"
scratch="${SORVIK_BENCH_DIR:-/tmp/sorvik-bench}"
nodes="${1:-2700000}"
mkdir -p "$scratch"
cmake -S "$top" -B "$build" -DCMAKE_BUILD_TYPE=Release -DSORVIK_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" --parallel 2 --target bench_ontology_store >/dev/null
"$build/bench/bench_ontology_store" write "$scratch/store.ontology" "$nodes"
"$build/bench/bench_ontology_store" read "$scratch/store.ontology"
ls -l "$scratch/store.ontology"
