#!/usr/bin/env bash
# Installs the Debian packages Plotvane builds, tests and runs with.
# Idempotent: when everything is present it touches nothing; otherwise it runs
# apt-get update once and installs what is missing, non-interactively.
set -euo pipefail

PACKAGES=(
    build-essential cmake pkg-config
    libgl-dev libglu1-mesa-dev libegl-dev libegl-mesa0 libgl1-mesa-dri
    libfreetype-dev libfontconfig-dev fonts-dejavu-core
    libpng-dev
    libwxgtk3.2-dev
    googletest libgtest-dev libbenchmark-dev
    xvfb xauth xdotool
    clang libclang-rt-14-dev
    ngspice
)

missing=()
for p in "${PACKAGES[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$p")
    fi
done

if [ ${#missing[@]} -eq 0 ]; then
    echo "install-deps: all ${#PACKAGES[@]} packages present"
    exit 0
fi

SUDO=""
if [ "$(id -u)" -ne 0 ]; then
    SUDO="sudo"
fi

echo "install-deps: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -q
$SUDO apt-get install -y -q --no-install-recommends "${missing[@]}"
