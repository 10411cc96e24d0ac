# shellcheck shell=bash
# Functions for both scripts of the test, the administrator's and the user's. To be sourced.
say() { printf '\n== %s\n' "$*"; }
fail() {
    printf 'FAILED: %s\n' "$*" >&2
    exit 1
}
trap 'echo "FAILED: line $LINENO: $BASH_COMMAND" >&2' ERR

eventually() { # COMMAND... succeeds within a minute
    local end=$((SECONDS + 60))
    until "$@"; do
        ((SECONDS < end)) || return 1
        sleep 0.2
    done
}

# The two scripts take turns: the user waits at a named point until the administrator has carried
# out that step.
readonly points=/srv/points

# Called by the user.
administrator() { # POINT
    touch "$points/$1"
    while [[ -e $points/$1 ]]; do sleep 0.2; done
}

# Called by the administrator; fails if the user's script ends first.
await() { # POINT USER
    while [[ ! -e $points/$1 ]]; do
        kill -0 "$2" 2>/dev/null || fail "the user's script ended before: $1"
        sleep 0.2
    done
}
proceed() { rm "$points/$1"; } # POINT

# Process ids of this program of the package, even if its file was replaced or deleted.
running() { # PROGRAM
    local process
    for process in /proc/[0-9]*; do
        case $(readlink "$process/exe" 2>/dev/null) in
            "/usr/libexec/karvo/$1" | "/usr/libexec/karvo/$1 (deleted)") echo "${process#/proc/}" ;;
        esac
    done
}
