#!/usr/bin/env bash
# Installs the given Debian packages that are not installed yet (nothing
# when all are). Progress goes to stderr; fails when apt-get does.
#
#   scripts/install-packages.sh PACKAGE...
set -euo pipefail
missing=()
for p in "$@"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
((${#missing[@]})) || exit 0
sudo=""
[ "$(id -u)" -ne 0 ] && sudo=sudo
echo "Installing: ${missing[*]}" >&2
{
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
} >&2
