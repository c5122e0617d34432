#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT

# The keyboard goes from an open label or a pane into the menus and comes back, whether a command was run or not, so that
# what is typed next stands where it belongs. Seen in the saved files.
#
#   keep_the_keyboard.sh PROGRAM NATIVE_DUMP SAMPLE

# shellcheck source=scripts/lib/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/../../scripts/lib/common.sh"
# shellcheck source=scripts/lib/display.sh
source "$root/scripts/lib/display.sh"
# shellcheck source=tests/gui/road.sh
source "$root/tests/gui/road.sh"

# save [FILE]: File > Save, and the name where there is none yet.
save() {
    key alt+f
    key s
    [[ -n ${1-} ]] || return 0
    sleep 0.7
    text "$1"
    key Return
    sleep 0.5
}

begin_road "$@"
start_program

# A new document, its label still open, is saved and gets a child.
first=$work/first.qly
key alt+f
key n
text "My root"
save "$first"
key alt+i
text "Child"
key Return
save
expect_dump "$first" '0 visible My root: '
expect_dump "$first" '0.1 visible Child: '

# Out of an open label, saved, and on: letters find entries and run no command.
key alt+b
text "Aardvark"
key Return
key Up
key F2
key ctrl+a
text "Zebra"
save
text "cost"
key F2
key ctrl+a
text "Zebra again"
key alt+f
key Escape
key Escape
text " and again"
save
expect_dump "$first" '0.1 visible Zebra again and again: '
expect_dump "$first" '0.2 visible Aardvark: '

# Alt alone marks the menu bar; Esc as often as one likes takes nothing back.
key F2
key ctrl+a
text "Kept"
key alt
key Escape
key Escape
key Escape
save
expect_dump "$first" '0.1 visible Kept: '

# The about box comes and goes.
key F2
key alt+h
key a
sleep 0.7
key Escape
sleep 0.3
key F2
text " too"
save
# The label opens with all of it selected.
expect_dump "$first" '0.1 visible  too: '

# A label that was opened from the text: the time belongs into texts, and this text is not the one being edited.
key Tab
text "Some text"
key ctrl+a
key F2
key ctrl+a
text "New"
key ctrl+m
key ctrl+Tab
key Return
save
expect_dump "$first" '0.1 visible New: Some text'

# A look into a menu, another mind, and a new document.
second=$work/second.qly
key alt+f
key Escape
key alt+f
key n
text "Found"
key Return
key alt+b
text "Below"
key Return
save "$second"
expect_dump "$second" '0 visible Found: '
expect_dump "$second" '0.1 visible Below: '
expect_dump "$first" '0.1 visible New: Some text'

# From one menu to another by their keys.
key Tab
key alt+f
key Escape
key alt+v
key Escape
key Escape
text "In the text"
save
expect_dump "$second" '0.1 visible Below: In the text'

quit_program
grep -q 'Error' "$work/bin/Quillery.log" && fail "the session log tells of errors: $(cat "$work/bin/Quillery.log")"

end_road
