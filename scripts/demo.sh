#!/usr/bin/env bash
# Sets up the machine, builds, and runs the main job on built-in demo data:
# a generated DDR write eye (DQ against DQS/DQS#) drawn with its setup and
# hold overlay, measured, and reported as JSON.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/install-deps.sh
PLOTVANE_BUILD_DIR=build ./scripts/build.sh -DPLOTVANE_BUILD_TESTS=OFF
out="$PWD/build/demo"
mkdir -p "$out"
./build/apps/plotvane-render --demo ddr-write \
    -o "$out/plotvane-ddr-write.png" \
    --save-chart "$out/plotvane-ddr-write.pvc" \
    --report "$out/plotvane-ddr-write.json"
echo
echo "PNG:    $out/plotvane-ddr-write.png"
echo "Chart:  $out/plotvane-ddr-write.pvc  (plotvane-render --chart, or a host's CPlotvane_Manager::Serialize)"
echo "Report: $out/plotvane-ddr-write.json"
