#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT

# From entry to entry and from one document to another, and back by the buttons of the mouse and by keys, under a real X
# server with a window manager. Where one is, is told by what is typed there.
#
#   back_and_forward.sh PROGRAM NATIVE_DUMP SAMPLE

# shellcheck source=scripts/lib/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/../../scripts/lib/common.sh"
# shellcheck source=scripts/lib/display.sh
source "$root/scripts/lib/display.sh"
# shellcheck source=tests/gui/road.sh
source "$root/tests/gui/road.sh"

# An entry is shown for long enough to be a place.
rest() {
    sleep 1.5
}

begin_road "$@"
write_small_document "$work/one.qly"
write_small_document "$work/two.qly"
start_program "$work/one.qly" "$work/two.qly"

# In the second document: First, Second; then the first document at its topmost entry.
rest
key Down
rest
key ctrl+F6
rest
key Home
rest

# By the button that goes back: First of the first document, then Second of the other. The pointer is over the panes.
xdotool mousemove 200 300
xdotool click 8
sleep 0.3
xdotool click 8
sleep 0.3
key F2
key ctrl+a
text "Went back"
key Return
key ctrl+s
expect_dump "$work/two.qly" '0.2 visible Went back: Second text'

# Forth by the keys, from within the text.
key Tab
key ctrl+alt+Right
key ctrl+alt+Right
key Tab
key F2
key ctrl+a
text "Went forth"
key Return
key ctrl+s
expect_dump "$work/one.qly" '0 visible Went forth: Root text'

# An open label is kept, and one is back where one was.
key F2
key ctrl+a
text "Kept"
xdotool click 8
sleep 0.3
key F2
key ctrl+a
text "One back"
key Return
key ctrl+s
expect_dump "$work/one.qly" '0 visible Kept: Root text'
expect_dump "$work/one.qly" '0.1 tagged visible One back: First text'

quit_program
end_road
