# shellcheck shell=bash
# What the scripts beside this file share. To be sourced; leaves the caller at the project's root.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

say() { printf '\n== %s\n' "$*"; }
fail() {
    printf 'FAILED: %s\n' "$*" >&2
    exit 1
}

# Installs the Debian packages of these lists that are missing, and does nothing when none is.
install_missing() {
    local list package
    local missing=()
    if ! command -v dpkg-query >/dev/null; then
        echo "This is no Debian system. The packages needed are listed in:" \
            "${*/#/Scripts/packages/}"
        return
    fi
    for list in "$@"; do
        while read -r package; do
            [[ -z $package || $package == \#* ]] && continue
            dpkg-query -W -f '${db:Status-Status}\n' "$package" 2>/dev/null |
                grep -qx installed || missing+=("$package")
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
    "${root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -q --no-install-recommends "${missing[@]}" </dev/null
}

# Configures the preset and builds these targets of it, or everything when none is named.
build() {
    local preset=$1
    shift
    say "Building ($preset)"
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" ${1+--target "$@"}
}
