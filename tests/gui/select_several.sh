#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT

# Several entries are selected with the mouse and with keys under a real X server with a window manager, and moved,
# indented, tagged, dragged, copied into another document and deleted in one step each. What is saved afterwards is what
# was done, and what is taken back is what was there, to the byte.
#
#   select_several.sh PROGRAM NATIVE_DUMP SAMPLE

# shellcheck source=scripts/lib/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/../../scripts/lib/common.sh"
# shellcheck source=scripts/lib/display.sh
source "$root/scripts/lib/display.sh"
# shellcheck source=tests/gui/road.sh
source "$root/tests/gui/road.sh"
# shellcheck source=tests/gui/rows.sh
source "$root/tests/gui/rows.sh"

# click ROW [MODIFIER]
click() {
    point "$1"
    [[ -z ${2-} ]] || xdotool keydown "$2"
    xdotool click 1
    [[ -z ${2-} ]] || xdotool keyup "$2"
    sleep 0.3
}

# keys KEY...
keys() {
    local each
    for each in "$@"; do
        key "$each"
    done
}

begin_road "$@"
cp "${program%/*}"/*.ico "$work/bin/"

number=0
file=$work/several.qly
other=$work/other.qly
{
    header KEY0
    entry 0 Root False True root
    for label in A B C D E; do
        entry "0.$((++number))" "$label" False True "$label"
    done
} >"$file"
{
    header KEY0
    entry 0 There False True there
    entry 0.1 X False True x
} >"$other"

start_program "$other" "$file"
find_rows

# Rows: 0 Root, 1 A, 2 B, 3 C, 4 D, 5 E. Ctrl and clicks leave gaps.
click 2
click 4 ctrl
key alt+Up
expect_outline "$file" '0 Root' '0.1 B' '0.2 A' '0.3 D' '0.4 C' '0.5 E'
key ctrl+z
expect_outline "$file" '0 Root' '0.1 A' '0.2 B' '0.3 C' '0.4 D' '0.5 E'
cp "$file" "$work/undone.qly"
key ctrl+y
expect_outline "$file" '0 Root' '0.1 B' '0.2 A' '0.3 D' '0.4 C' '0.5 E'
key ctrl+z
expect_outline "$file" '0 Root' '0.1 A' '0.2 B' '0.3 C' '0.4 D' '0.5 E'
expect_same "$file" "$work/undone.qly"

# B and D are selected again, and are tagged together.
key alt+t
expect_outline "$file" '0 Root' '0.1 A' '0.2 tagged B' '0.3 C' '0.4 tagged D' '0.5 E'
key alt+t
expect_outline "$file" '0 Root' '0.1 A' '0.2 B' '0.3 C' '0.4 D' '0.5 E'

# By keys: a range, and one that is passed over. Indented, they are the children of the entry before them.
keys Home Down Down shift+Down ctrl+Down ctrl+Down ctrl+space alt+Right
expect_outline "$file" '0 Root' '0.1 A' '0.1.1 B' '0.1.2 C' '0.2 D' '0.2.1 E'
keys ctrl+z Escape
expect_outline "$file" '0 Root' '0.1 A' '0.2 B' '0.3 C' '0.4 D' '0.5 E'

# A range by the mouse, taken along by a drag.
click 1
click 3 shift
drag 2 5
expect_outline "$file" '0 Root' '0.1 D' '0.2 E' '0.3 A' '0.4 B' '0.5 C'
# A click leaves one: only it goes back.
click 4
drag 4 1
expect_outline "$file" '0 Root' '0.1 D' '0.2 B' '0.3 E' '0.4 A' '0.5 C'

# Into another document, and away from this one.
click 1
click 3 shift
key alt+c
key ctrl+F6
sleep 0.3
keys Home Down alt+p
expect_outline "$other" '0 There' '0.1 X' '0.2 D' '0.3 B' '0.4 E'
key ctrl+F6
sleep 0.3
keys ctrl+a alt+Delete
sleep 0.3
# All children of the root, after a question.
key y
expect_outline "$file" '0 Root'
key ctrl+z
expect_outline "$file" '0 Root' '0.1 D' '0.2 B' '0.3 E' '0.4 A' '0.5 C'
quit_program

grep -q 'Error' "$work/bin/Quillery.log" && fail "the session log tells of errors: $(cat "$work/bin/Quillery.log")"

end_road
