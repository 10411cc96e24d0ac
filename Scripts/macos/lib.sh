# shellcheck shell=bash
# Functions for the scripts in this folder. To be sourced after Scripts/lib.sh.

export PYTHONDONTWRITEBYTECODE=1
objects=build/macos/objects

# Prints the sources that macOS builds: portable ones (cpp), or those in its own folders (mm).
mac_sources() {
    git ls-files --cached --others --exclude-standard "Sources/*.$1" |
        grep -vE '/(Linux|X11|Qt|Wayland)/' || true
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
        nice -n 19 Scripts/macos/compile -c "${options[@]}" -o "$(object_of "$file")" "$file" &
        jobs=$((jobs + 1))
    done
    while ((jobs > 0)); do
        wait -n || status=1
        jobs=$((jobs - 1))
    done
    return "$status"
}
