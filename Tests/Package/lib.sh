# shellcheck shell=bash
# What both halves of the trial share. To be sourced.
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

# The halves take turns: the user waits at a point until the administrator has done there what its
# name says.
readonly points=/srv/points

# By the user.
administrator() { # POINT
    touch "$points/$1"
    while [[ -e $points/$1 ]]; do sleep 0.2; done
}

# By the administrator; fails when the user's half ends before.
await() { # POINT USER
    while [[ ! -e $points/$1 ]]; do
        kill -0 "$2" 2>/dev/null || fail "the user never comes to: $1"
        sleep 0.2
    done
}
proceed() { rm "$points/$1"; } # POINT

# Process ids of those that run this program of the package, whatever became of its file.
running() { # PROGRAM
    local process
    for process in /proc/[0-9]*; do
        case $(readlink "$process/exe" 2>/dev/null) in
            "/usr/libexec/karvo/$1" | "/usr/libexec/karvo/$1 (deleted)") echo "${process#/proc/}" ;;
        esac
    done
}
