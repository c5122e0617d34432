#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT

# Entries are rearranged with the mouse under a real X server with a window manager: left and right button, Ctrl, a drop on
# the entry itself, on forbidden places, Escape, scrolling near the edge, and a closed entry that opens under the pointer.
# What is saved afterwards is what was done.
#
#   drag_entries.sh PROGRAM NATIVE_DUMP SAMPLE

# shellcheck source=scripts/lib/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/../../scripts/lib/common.sh"
# shellcheck source=scripts/lib/display.sh
source "$root/scripts/lib/display.sh"
# shellcheck source=tests/gui/road.sh
source "$root/tests/gui/road.sh"
# shellcheck source=tests/gui/rows.sh
source "$root/tests/gui/rows.sh"

# drag_on_itself ROW SHIFT
drag_on_itself() {
    point "$1"
    xdotool mousedown 1
    sleep 0.1
    point "$1" $(($2 / 2))
    point "$1" "$2"
    xdotool mouseup 1
    sleep 0.3
}

begin_road "$@"
# The icons of a drag lie beside the program.
cp "${program%/*}"/*.ico "$work/bin/"

file=$work/drag.qly
{
    header KEY0
    entry 0 Root False True root
    entry 0.1 A True True a
    entry 0.1.1 A1 False True a1
    entry 0.2 B False True b
    entry 0.3 C False True c
    entry 0.4 D False True d
    entry 0.4.1 D1 False False d1
} >"$file"

start_program "$file"
find_rows

# Rows: 0 Root, 1 A, 2 A1, 3 B, 4 C, 5 D (closed).
drag 1 4
expect_outline "$file" '0 Root' '0.1 B' '0.2 C' '0.3 tagged A' '0.3.1 A1' '0.4 D' '0.4.1 D1'
expect_dump "$file" '0.3 tagged visible A: a'
expect_dump "$file" 'selected KEY0.3'

# Taken back by keys, and done again: what is saved is what was there, to the byte.
cp "$file" "$work/dragged.qly"
key ctrl+z
expect_outline "$file" '0 Root' '0.1 tagged A' '0.1.1 A1' '0.2 B' '0.3 C' '0.4 D' '0.4.1 D1'
key ctrl+y
expect_outline "$file" '0 Root' '0.1 B' '0.2 C' '0.3 tagged A' '0.3.1 A1' '0.4 D' '0.4.1 D1'
expect_same "$file" "$work/dragged.qly"

# Rows: 0 Root, 1 B, 2 C, 3 A, 4 A1, 5 D. A copy stays untagged; it lands before the next entry.
point 3
xdotool mousedown 1
xdotool keydown ctrl
point 3 12
point 1 4
point 1
xdotool mouseup 1
xdotool keyup ctrl
sleep 0.3
expect_outline "$file" '0 Root' '0.1 B' '0.2 A' '0.2.1 A1' '0.3 C' '0.4 tagged A' '0.4.1 A1' '0.5 D' '0.5.1 D1'
expect_dump "$file" '0.2.1 visible A1: a1'

# An entry on its own child, and a drag that Escape ends, change nothing.
drag 2 3
pull 2 4
# Without clearing modifiers, which would let the button go.
xdotool key Escape
sleep 0.2
xdotool mouseup 1
sleep 0.3
expect_outline "$file" '0 Root' '0.1 B' '0.2 A' '0.2.1 A1' '0.3 C' '0.4 tagged A' '0.4.1 A1' '0.5 D' '0.5.1 D1'

# Rows: 0 Root, 1 B, 2 A, 3 A1, 4 C, 5 A, 6 A1, 7 D. On itself: to the right, then to the left.
drag_on_itself 4 14
expect_outline "$file" '0 Root' '0.1 B' '0.2 A' '0.2.1 A1' '0.2.2 C' '0.3 tagged A' '0.3.1 A1' '0.4 D' '0.4.1 D1'
drag_on_itself 4 -14
expect_outline "$file" '0 Root' '0.1 B' '0.2 A' '0.2.1 A1' '0.3 C' '0.4 tagged A' '0.4.1 A1' '0.5 D' '0.5.1 D1'

# Onto the root: its first child.
drag 4 0
expect_outline "$file" '0 Root' '0.1 C' '0.2 B' '0.3 A' '0.3.1 A1' '0.4 tagged A' '0.4.1 A1' '0.5 D' '0.5.1 D1'

# Rows: 0 Root, 1 C, 2 B, 3 A, 4 A1, 5 A, 6 A1, 7 D. The right button asks: Escape does nothing, Return takes what is
# offered first, which is to move it after the other.
drag 1 2 3
key Escape
drag 1 2 3
key Return
expect_outline "$file" '0 Root' '0.1 B' '0.2 C' '0.3 A' '0.3.1 A1' '0.4 tagged A' '0.4.1 A1' '0.5 D' '0.5.1 D1'
# "Move as child", then for the child itself "Unindent".
drag 2 1 3
key h
expect_outline "$file" '0 Root' '0.1 B' '0.1.1 C' '0.2 A' '0.2.1 A1' '0.3 tagged A' '0.3.1 A1' '0.4 D' '0.4.1 D1'
point 2
xdotool mousedown 3
point 2 6
point 2 14
xdotool mouseup 3
sleep 0.3
key u
expect_outline "$file" '0 Root' '0.1 B' '0.2 C' '0.3 A' '0.3.1 A1' '0.4 tagged A' '0.4.1 A1' '0.5 D' '0.5.1 D1'

# Rows: 0 Root, 1 B, 2 C, 3 A, 4 A1, 5 A, 6 A1, 7 D. A closed entry opens under the resting pointer, and what shows takes
# the entry.
pull 1 7
sleep 1.2
point 8
xdotool mouseup 1
sleep 0.3
expect_outline "$file" '0 Root' '0.1 C' '0.2 A' '0.2.1 A1' '0.3 tagged A' '0.3.1 A1' '0.4 D' '0.4.1 D1' '0.4.2 B'

# A click with the right button: the menu of the outline, in which G tags.
point 1
xdotool click 3
sleep 0.4
key g
expect_outline "$file" '0 Root' '0.1 tagged C' '0.2 A' '0.2.1 A1' '0.3 tagged A' '0.3.1 A1' '0.4 D' '0.4.1 D1' '0.4.2 B'
quit_program

# A long outline scrolls when the pointer nears its edge, and the entry goes along to where no row was shown before.
long=$work/long.qly
{
    header KEY0
    entry 0 Root False True root
    for ((i = 1; i <= 300; i++)); do
        entry "0.$i" "Entry $i" False True "text $i"
    done
} >"$long"
start_program "$long"
find_rows
point 2
xdotool mousedown 1
point 2 12
point 6
# Beyond the lower edge, wherever that is.
xdotool mousemove $((left + 60)) 790
sleep 3
point 10
sleep 0.2
xdotool mouseup 1
sleep 0.3
key alt+f
key s
for ((try = 0; try < 50; try++)); do
    place=$("$native_dump" "$long" | sed -n 's/^0\.\([0-9]*\) visible Entry 2: text 2$/\1/p')
    [[ ${place:-0} -le 40 ]] || break
    sleep 0.1
done
((place > 40)) || fail "the outline did not scroll: the entry is at place ${place:-none}"
quit_program

grep -q 'Error' "$work/bin/Quillery.log" && fail "the session log tells of errors: $(cat "$work/bin/Quillery.log")"

end_road
