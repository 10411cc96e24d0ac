# shellcheck shell=bash
# Functions for the scripts in this folder. To be sourced after Scripts/lib.sh.

export PYTHONDONTWRITEBYTECODE=1
objects=build/macos/objects

# The exit status of a check that could not run.
export skipped=77
skip() {
    printf '\n!! SKIPPED: %s.\n!! No macOS source was checked.\n' "$*"
}

# Succeeds if a program that the scripts need is missing, and says which.
missing_tools() {
    local tool
    for tool in clang++-19 llvm-nm-19 npm python3; do
        command -v "$tool" >/dev/null && continue
        skip "$tool is missing; install the packages of Scripts/packages/macos and npm"
        return 0
    done
    return 1
}

package=@nativescript/macos-node-api@0.4.0

# Waits until no other script works on build/macos. The caller is a subshell, whose end ends the lock.
lock_folder() {
    mkdir -p build/macos
    exec 9>build/macos/lock
    flock 9
}

# Extracts the package to build/macos/package.
get_package() (
    lock_folder
    [[ -d build/macos/package/types ]] && return
    command -v npm >/dev/null || return
    cd build/macos && timeout 300 npm pack --silent "$package" >/dev/null 2>&1 &&
        tar xzf nativescript-macos-node-api-*.tgz
)

# Generates the headers that the macOS sources and their tests need, unless they are up to date.
make_headers() (
    lock_folder
    local stamp=build/macos/frameworks.stamp used
    mapfile -t used < <(mac_sources mm; mac_sources h | grep /macOS/
        git ls-files --cached --others --exclude-standard 'Tests/macOS/*.mm' 'Tests/macOS/*.h')
    [[ -e $stamp && -z $(find "${used[@]}" Scripts/macos/headers Scripts/macos/declarations \
        -newer "$stamp" -print -quit) ]] && return
    python3 Scripts/macos/headers/headers.py build/macos/package Scripts/macos/declarations \
        build/macos/frameworks "${used[@]}" >/dev/null
    cp -rp Scripts/macos/declarations/extra/. build/macos/frameworks/
    touch "$stamp"
)

# Prints the sources that macOS builds: portable ones (cpp), or those in its own folders (mm).
mac_sources() {
    git ls-files --cached --others --exclude-standard "Sources/*.$1" |
        grep -vE '/(Linux|X11|Qt|Wayland)/' || true
}

# Prints what to compile for the portable sources: files that each include ten of them, which takes
# a fifth of the time, and those that repeat names of others.
portable_batches() {
    local folder=build/macos/batches alone='/(AppKitBadgePresenter|StagingFolder)\.cpp$'
    rm -rf "$folder" && mkdir -p "$folder"
    mac_sources cpp | grep -vE "$alone" | sed 's|.*|#include "../../../&"|' |
        split -l 10 --additional-suffix=.cpp - "$folder/"
    mac_sources cpp | grep -E "$alone"
    printf '%s\n' "$folder"/*.cpp
}

object_of() { printf '%s/%s.o' "$objects" "${1//\//_}"; }

# Compiles these sources to Mach-O objects, one job per processor. Prints the compiler's errors, and
# fails if there are any.
compile_all() {
    local file status=0 jobs=0 limit=${KARVO_JOBS:-$(nproc)}
    local options=()
    mkdir -p "$objects"
    for file in "$@"; do
        if ((jobs == limit)); then
            wait -n || status=1
            jobs=$((jobs - 1))
        fi
        options=()
        [[ $file == *.mm ]] && options=(-fobjc-arc)
        # In a batch, a name may hide one of another source.
        [[ $file == build/* ]] && options=(-Wno-shadow)
        Scripts/macos/compile -c "${options[@]}" -o "$(object_of "$file")" "$file" &
        jobs=$((jobs + 1))
    done
    while ((jobs > 0)); do
        wait -n || status=1
        jobs=$((jobs - 1))
    done
    return "$status"
}
