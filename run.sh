#!/usr/bin/env bash
# Builds the KT500 device manager (release build) and starts it on the
# built-in simulated device. Arguments go to the program (try --help).
set -euo pipefail
cd "$(dirname "$0")"

bash scripts/setup >/dev/null

build_dir=${KT500_RUN_BUILD_DIR:-build-release}
cmake -S . -B "$build_dir" -G Ninja -DCMAKE_BUILD_TYPE=Release -DKT500_BUILD_TESTS=OFF \
      -DKT500_BUILD_BENCH=OFF >/dev/null
cmake --build "$build_dir" -j "$(nproc)" --target kt500-dtm >/dev/null
exec "$build_dir/app/kt500-dtm" "$@"
