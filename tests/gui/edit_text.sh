#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT

# Editing a text with the Edit menu and its keys in the real program, seen in the saved file.
#
#   edit_text.sh PROGRAM NATIVE_DUMP SAMPLE

# shellcheck source=scripts/lib/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/../../scripts/lib/common.sh"
# shellcheck source=scripts/lib/display.sh
source "$root/scripts/lib/display.sh"
# shellcheck source=tests/gui/road.sh
source "$root/tests/gui/road.sh"

begin_road "$@"

write_small_document "$work/small.qly"
start_program "$work/small.qly"

# save_and_expect LINE: saves, and the file comes to hold the line.
save_and_expect() {
    key alt+f
    key s
    expect_dump "$work/small.qly" "$1"
}

# The Edit menu: E, then the letters of its items.
edit() {
    local letter
    key alt+e
    for letter in "$@"; do
        key "$letter"
    done
}

key Tab
key ctrl+End
text " one"
key ctrl+Tab
text "two"
save_and_expect "0.1 tagged visible First: First text one$(printf '\t')two"

# The case goes round: to capitals first, because the text is mixed.
edit a
# Two items share the S: the second one is the submenu.
edit s s t
save_and_expect "0.1 tagged visible First: FIRST TEXT ONE$(printf '\t')TWO"
key ctrl+z
save_and_expect "0.1 tagged visible First: First text one$(printf '\t')two"

# Bold, and to the right.
edit a
edit o b
edit o r
key alt+f
key s
for ((try = 0; try < 50; try++)); do
    "$native_dump" "$work/small.qly" 0.1 | grep -q '\\qr' && break
    sleep 0.1
done
"$native_dump" "$work/small.qly" 0.1 | grep -q '\\b[^0a-z]' || fail "the text is not bold: $("$native_dump" "$work/small.qly" 0.1)"
"$native_dump" "$work/small.qly" 0.1 | grep -q '\\qr' || fail "the text is not at the right"

# Cut holds plain text, which replaces the text that is there.
key ctrl+a
edit t
save_and_expect '0.1 tagged visible First: '
edit p
edit p
save_and_expect "0.1 tagged visible First: First text one$(printf '\t')twoFirst text one$(printf '\t')two"

# The time, by its key.
key ctrl+a
key ctrl+m
key alt+f
key s
for ((try = 0; try < 50; try++)); do
    "$native_dump" "$work/small.qly" | grep -qE '^0\.1 .*: [0-9]{2}:[0-9]{2}$' && break
    sleep 0.1
done
"$native_dump" "$work/small.qly" | grep -qE '^0\.1 .*: [0-9]{2}:[0-9]{2}$' || fail "no time: $("$native_dump" "$work/small.qly")"

# The context menu of the text is the Edit menu: its Clear asks, and yes clears.
key Menu
import -silent -window root "png:${QUILLERY_ROAD_PICTURE:-/dev/null}" || true
key e
sleep 0.5
key alt+y
save_and_expect '0.1 tagged visible First: '

# Labels in a row: Alt+B in a label's editor takes the label and opens the next. Alt with no command types nothing.
key shift+Tab
key alt+b
text "one"
key alt+z
key alt+b
text "two"
key Return
save_and_expect '0.2 visible one: '
expect_dump "$work/small.qly" '0.3 visible two: '

quit_program
grep -q 'Error' "$work/bin/Quillery.log" && fail "the session log tells of errors: $(cat "$work/bin/Quillery.log")"

end_road
