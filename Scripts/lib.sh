# shellcheck shell=bash
# Functions for the scripts in this folder. To be sourced; changes to the root of the project.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

say() { printf '\n== %s\n' "$*"; }
fail() {
    printf 'FAILED: %s\n' "$*" >&2
    exit 1
}

# Installs the missing Debian packages of these lists; does nothing if all are installed.
install_missing() {
    local list package
    local missing=()
    if ! command -v dpkg-query >/dev/null; then
        echo "This is not a Debian system. The required packages are listed in:" \
            "${*/#/Scripts/packages/}"
        return
    fi
    for list in "$@"; do
        while read -r package; do
            [[ -z $package || $package == \#* ]] && continue
            # dpkg-query fails if one of several names is unknown, but still prints the others.
            { dpkg-query -W -f '${db:Status-Status}\n' "${package%|*}" "${package#*|}" 2>/dev/null ||
                true; } | grep -qx installed || missing+=("$package")
        done <"Scripts/packages/$list"
    done
    ((${#missing[@]})) || return 0

    say "Installing ${missing[*]}"
    local root=()
    if ((EUID != 0)); then
        command -v sudo >/dev/null || fail "installing needs root or sudo"
        root=(sudo)
    fi
    "${root[@]}" apt-get update -q </dev/null
    for package in "${!missing[@]}"; do
        list=${missing[package]}
        apt-cache show "${list%|*}" &>/dev/null && missing[package]=${list%|*} ||
            missing[package]=${list#*|}
    done
    "${root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -q --no-install-recommends "${missing[@]}" </dev/null
}

# Configures the preset and builds these targets, or everything if none is given.
build() {
    local preset=$1
    shift
    say "Building ($preset)"
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" ${1+--target "$@"}
}
