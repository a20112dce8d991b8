#!/usr/bin/env bash
# Installs the Debian packages the editor needs to build, install and package (and,
# with "test", what the tests and benchmarks need; with "fuzz", clang and libFuzzer;
# with "guide", an X server for the screenshots). Without the right to install, prints
# the apt line instead.
set -euo pipefail

packages=(g++ make cmake qt6-base-dev zlib1g-dev libgl-dev fonts-dejavu-core help2man desktop-file-utils appstream file dpkg-dev)
if [ "${1:-}" = test ]; then
  packages+=(libbenchmark-dev imagemagick)
fi
if [ "${1:-}" = guide ]; then
  packages+=(xvfb imagemagick)
fi
if [ "${1:-}" = fuzz ]; then
  # libFuzzer's runtime is only a Recommends of clang.
  packages+=(clang libclang-rt-14-dev imagemagick)
fi

missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

apt_line="apt-get install -y --no-install-recommends ${missing[*]}"
if [ "$(id -u)" -eq 0 ]; then
  runner=()
elif command -v sudo >/dev/null 2>&1 && sudo -n true 2>/dev/null; then
  runner=(sudo)
else
  echo "These packages are missing. Install them as root, then run this again:" >&2
  echo "  apt-get update && $apt_line" >&2
  exit 1
fi
export DEBIAN_FRONTEND=noninteractive
"${runner[@]}" apt-get update
"${runner[@]}" $apt_line
