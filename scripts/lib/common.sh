# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# What every script shares. A script sources this file first; it sets `root` to the repository's folder.

set -euo pipefail

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/../.." && pwd)

say() {
    printf '== %s\n' "$*" >&2
}

die() {
    printf '%s: %s\n' "$(basename -- "$0")" "$*" >&2
    exit 2
}

# usage TEXT ARGUMENT...: prints the text and ends when the first argument asks for help.
usage() {
    local text=$1
    shift
    case ${1-} in
    -h | --help)
        printf '%s\n' "$text"
        exit 0
        ;;
    esac
}

# build_preset PRESET [CMAKE BUILD ARGUMENT...]: configures and builds one of CMakePresets.json.
build_preset() {
    local preset=$1
    shift
    say "Building preset $preset"
    (cd "$root" && cmake --preset "$preset" --log-level=NOTICE && cmake --build --preset "$preset" "$@")
}
