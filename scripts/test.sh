#!/usr/bin/env bash
# Sets up the machine, builds, and runs every test: the unit tests, the same
# tests under AddressSanitizer and UndefinedBehaviorSanitizer, and a host
# program built against the installed package.
set -euo pipefail
cd "$(dirname "$0")/.."
ROOT=$(pwd)

./scripts/install-deps.sh

echo "== build and unit tests"
PLOTVANE_BUILD_DIR=build ./scripts/build.sh
ctest --test-dir build --output-on-failure -j"$(nproc)"

echo "== unit tests under ASan + UBSan"
PLOTVANE_BUILD_DIR=build-asan ./scripts/build.sh -DPLOTVANE_SANITIZE=ON -DPLOTVANE_BUILD_BENCH=OFF
ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
    ctest --test-dir build-asan --output-on-failure -j"$(nproc)"

echo "== install and build the example host against the installed package"
STAGE="$ROOT/build/stage"
rm -rf "$STAGE" build/example
cmake --install build --prefix "$STAGE" >/dev/null
cmake -S examples/host -B build/example -DCMAKE_PREFIX_PATH="$STAGE" >/dev/null
cmake --build build/example -j"$(nproc)"
LD_LIBRARY_PATH="$STAGE/lib" ./build/example/plotvane-example-host

echo "== all tests passed"
