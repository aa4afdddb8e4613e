#!/usr/bin/env bash
# Sets up the machine, builds, and runs the main job on built-in demo data.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/install-deps.sh
PLOTVANE_BUILD_DIR=build ./scripts/build.sh -DPLOTVANE_BUILD_TESTS=OFF
./build/apps/plotvane-selfcheck
