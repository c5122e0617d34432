#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT

# Two documents side by side, and the mouse goes from one to the other: what is typed after a click stands in the document
# that was clicked, seen in the saved files.
#
#   two_documents.sh PROGRAM NATIVE_DUMP SAMPLE

# shellcheck source=scripts/lib/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/../../scripts/lib/common.sh"
# shellcheck source=scripts/lib/display.sh
source "$root/scripts/lib/display.sh"
# shellcheck source=tests/gui/road.sh
source "$root/tests/gui/road.sh"

# click X Y: in hundredths of the main window's width and height.
click() {
    xdotool mousemove $((left + width * $1 / 100)) $((top + height * $2 / 100)) click 1
    sleep 0.3
}

begin_road "$@"

write_small_document "$work/one.qly"
write_small_document "$work/two.qly"
start_program "$work/one.qly" "$work/two.qly"
window=$(main_window "$process")
xdotool windowsize --sync "$window" 1200 700
left='' top='' width='' height=''
eval "$(xdotool getwindowgeometry --shell "$window" | sed -n 's/^X=/left=/p; s/^Y=/top=/p; s/^WIDTH=/width=/p; s/^HEIGHT=/height=/p')"

# Side by side, each with its outline to the left and its text to the right.
key alt+w
key v
key alt+v
key a
click 40 70
key alt+v
key a

click 40 70
key ctrl+End
text " in one"
click 90 70
key ctrl+End
text " in two"
click 40 70
text " again"
# The outline of the other document, and an entry for it.
click 55 85
key F2
key ctrl+a
text "Renamed"
click 40 70
text " at last"
key alt+f
key l
expect_dump "$work/one.qly" '0.1 tagged visible First: First text in one again at last'
expect_dump "$work/two.qly" '0.1 tagged visible Renamed: First text in two'

# File > Close closes the document that was clicked.
click 90 70
key alt+f
key c
key Return
sleep 0.5
text " and on"
key alt+f
key s
expect_dump "$work/one.qly" '0.1 tagged visible First: First text in one again at last and on'
expect_dump "$work/two.qly" '0.1 tagged visible Renamed: First text in two'

quit_program
grep -q 'Error' "$work/bin/Quillery.log" && fail "the session log tells of errors: $(cat "$work/bin/Quillery.log")"

end_road
