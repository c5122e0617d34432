#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT

# A program whose data is installed in a folder of its own finds it there.
#
#   install_folders.sh CMAKE, the program that configures

set -euo pipefail
root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf -- "$work"' EXIT

# configured EXPECTED OPTION ...: the way to the data from the program's folder, configured with these options.
configured() {
    local expected=$1
    shift
    "$cmake" -S "$root" -B "$work" -DQUILLERY_TESTS=OFF "$@" >"$work/log" 2>&1 || {
        cat -- "$work/log" >&2
        exit 1
    }
    grep -q "QUILLERY_DATA_FROM_PROGRAM=[^ ]*\"${expected}[^ ]*\"" "$work/compile_commands.json" || {
        printf 'FAIL: the data is not looked for in %s\n' "$expected" >&2
        exit 1
    }
}

cmake=$1
configured ../share/quillery
configured ../lib/data/quillery -DCMAKE_INSTALL_DATADIR=lib/data
configured ../../share/quillery -DCMAKE_INSTALL_DATADIR=share -DCMAKE_INSTALL_BINDIR=games/bin
