#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT

# What the desktop is told of the program, read by the desktop's own tools.
#
#   desktop_files.sh ICONS, the folder of the icons that the build drew

set -euo pipefail
root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/../.." && pwd)
icons=$1
resources=$root/resources
work=$(mktemp -d)
trap 'rm -rf -- "$work"' EXIT

fail() {
    printf 'FAIL: %s\n' "$1" >&2
    exit 1
}

for tool in desktop-file-validate appstreamcli xmllint update-mime-database; do
    if ! command -v "$tool" >/dev/null; then
        printf 'SKIPPED: %s is missing (see the set "desktop" in scripts/packages.txt)\n' "$tool" >&2
        exit 77
    fi
done

desktop-file-validate --warn-kde "$resources/quillery.desktop" || fail "the entry in the menu"
appstreamcli validate --no-net --strict "$resources/org.quillery.Quillery.metainfo.xml" || fail "the description"
xmllint --noout "$resources/quillery-mime.xml" || fail "the type of documents is no XML"

# The type is known by the name and by the first bytes, and the entry is there to open it.
mkdir -p "$work/mime/packages"
cp "$resources/quillery-mime.xml" "$work/mime/packages/"
XDG_DATA_DIRS=$work update-mime-database "$work/mime" || fail "the type of documents"
grep -qx '50:application/x-quillery:\*\.qly' "$work/mime/globs2" || fail "no document is known by its name"
magic=$(sed -n 's/.*<match .*value="\(.*\)".*/\1/p' "$resources/quillery-mime.xml" | sed 's/\\\\/\\/')
[[ $(head -c "${#magic}" "$resources/sample.qly") == "$magic" ]] || fail "no document is known by its first bytes"
grep -qx 'MimeType=application/x-quillery;' "$resources/quillery.desktop" || fail "the entry does not open documents"

# The sizes stand in a PNG file's header.
for size in 16 22 24 32 48 64 128 256; do
    drawn=$(od -An -tu1 -j16 -N8 "$icons/$size/quillery.png" | tr -s ' ' | sed 's/^ //')
    expected="0 0 $((size / 256)) $((size % 256)) 0 0 $((size / 256)) $((size % 256))"
    [[ $drawn == "$expected" ]] || fail "the icon of $size pixels has the size $drawn"
done
