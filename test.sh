#!/usr/bin/env bash
# Builds the KT500 device manager with AddressSanitizer and
# UndefinedBehaviorSanitizer and runs every test through CTest. Installs what
# the build needs first (scripts/setup, which does nothing when all is there).
set -euo pipefail
cd "$(dirname "$0")"

bash scripts/setup

build_dir=${KT500_TEST_BUILD_DIR:-build-tests}
cmake -S . -B "$build_dir" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DKT500_SANITIZE=ON
cmake --build "$build_dir" -j "$(nproc)"

export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
export QT_QPA_PLATFORM=offscreen
ctest --test-dir "$build_dir" --output-on-failure -j "$(nproc)" --timeout 600
