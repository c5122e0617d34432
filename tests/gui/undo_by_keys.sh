#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT

# A branch is deleted, entries are moved, tagged, renamed and made elsewhere, and all of it is undone by keys, one step after
# the other, under a real X server with a window manager. What is saved then is what was opened, to the byte; and what is
# redone and saved is what was done.
#
#   undo_by_keys.sh PROGRAM NATIVE_DUMP SAMPLE

# shellcheck source=scripts/lib/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/../../scripts/lib/common.sh"
# shellcheck source=scripts/lib/display.sh
source "$root/scripts/lib/display.sh"
# shellcheck source=tests/gui/road.sh
source "$root/tests/gui/road.sh"

begin_road "$@"
write_small_document "$work/small.qly"
start_program "$work/small.qly"
# As the program writes it.
key ctrl+s
expect_dump "$work/small.qly" '0.1 tagged visible First: First text'
cp "$work/small.qly" "$work/before.qly"

# Second, closed over Deep, goes; First is renamed, gets an entry inside and is untagged.
key Down
key alt+Delete
sleep 0.5
key alt+y
sleep 0.5
key Home
key Down
key F2
key ctrl+a
text "Renamed"
key Return
key alt+i
text "Made"
key Return
key Up
key alt+t
key ctrl+s
expect_dump "$work/small.qly" '0.1 visible Renamed: First text'
cp "$work/small.qly" "$work/after.qly"

for ((step = 0; step < 8; step++)); do
    key ctrl+z
done
# Where the first step acted is selected now.
key Home
key Down
key ctrl+s
expect_same "$work/before.qly" "$work/small.qly"

# From the list of steps forth to the last one.
key alt+l
key h
sleep 0.5
key End
key Return
key Escape
key ctrl+s
expect_dump "$work/small.qly" '0.1 visible Renamed: First text'
expect_dump "$work/small.qly" '0.1.1 visible Made: '
! "$native_dump" "$work/small.qly" | grep -q Deep || fail "what was deleted again is still there"

# Words are typed, replaced in all texts from the dialog, and more are typed: each is taken back alone.
key Home
key alt+t
key Home
key ctrl+s
cp "$work/small.qly" "$work/before.qly"
key Tab
key ctrl+Home
text "typed text "
key alt+s
key r
sleep 0.5
key ctrl+a
text "text"
key alt+p
text "word"
key alt+h
key Down
key Down
key Return
key alt+a
sleep 1
key Return
key Escape
# The last entry in which something was replaced is the selected one.
key ctrl+Home
text "more "
key ctrl+s
expect_dump "$work/small.qly" '0 visible Notes: typed word Root word'
expect_dump "$work/small.qly" '0.1 visible Renamed: more First word'
key ctrl+z
key ctrl+z
key ctrl+s
expect_dump "$work/small.qly" '0 visible Notes: typed text Root text'
expect_dump "$work/small.qly" '0.1 visible Renamed: First text'
key ctrl+z
key ctrl+s
expect_same "$work/before.qly" "$work/small.qly"

# The list of steps, by the mouse: a click on the row above the marked one goes back to it.
key ctrl+y
key ctrl+y
key alt+l
key h
sleep 0.5
key alt+l
key h
sleep 0.5
find_marked_row Up Down
xdotool mousemove $((left + 40)) $((top - height / 2)) click 1
sleep 0.5
key Escape
key ctrl+s
expect_dump "$work/small.qly" '0 visible Notes: typed text Root text'
expect_dump "$work/small.qly" '0.1 visible Renamed: First text'

quit_program
end_road
