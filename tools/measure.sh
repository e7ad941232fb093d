#!/usr/bin/env bash
# Runs every benchmark: the logic natively, then start-up under Wine. Arguments go to the native ones:
# tools/measure.sh --benchmark_filter=import
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/setup.sh

install_packages "${PROGRAM_PACKAGES[@]}" libbenchmark-dev
build bench
build win64 start_up_bench
build/bench/tolvan_bench "$@"

# Drawn nowhere, so that no display's speed counts.
trap stop_wine EXIT
use_prefix "$PWD/build/bench-prefix" "$PWD/build/test-com1" null
stop_wine
start_wine
wine build/win64/start_up_bench.exe </dev/null | tr -d '\r'
