#!/usr/bin/env bash
# Configures and builds Plotvane into build/ (or $PLOTVANE_BUILD_DIR).
# Extra arguments go to cmake's configure step.
set -euo pipefail
cd "$(dirname "$0")/.."
BUILD_DIR=${PLOTVANE_BUILD_DIR:-build}
cmake -S . -B "$BUILD_DIR" -DCMAKE_BUILD_TYPE=${PLOTVANE_BUILD_TYPE:-RelWithDebInfo} "$@" >/dev/null
cmake --build "$BUILD_DIR" -j"$(nproc)"
