# shellcheck shell=bash
# What both halves of the trial share. To be sourced.
say() { printf '\n== %s\n' "$*"; }
fail() {
    printf 'FAILED: %s\n' "$*" >&2
    exit 1
}
trap 'echo "FAILED: line $LINENO: $BASH_COMMAND" >&2' ERR
