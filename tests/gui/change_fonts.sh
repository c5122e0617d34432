#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT

# Changing fonts by the dialog and by keys in the real program, seen in the saved file.
#
#   change_fonts.sh PROGRAM NATIVE_DUMP SAMPLE

# shellcheck source=scripts/lib/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/../../scripts/lib/common.sh"
# shellcheck source=scripts/lib/display.sh
source "$root/scripts/lib/display.sh"
# shellcheck source=tests/gui/road.sh
source "$root/tests/gui/road.sh"

begin_road "$@"

document=$work/small.qly
write_small_document "$document"
start_program "$document"

save() {
    key alt+f
    key s
}

# expect_text PATH PATTERN: waits until the stored text of an entry in the saved file has what the pattern says.
expect_text() {
    local try
    for ((try = 0; try < 50; try++)); do
        "$native_dump" "$document" "$1" | grep -qE -- "$2" && return
        sleep 0.1
    done
    fail "the text of $1 has no \"$2\": $("$native_dump" "$document" "$1")"
}

expect_no_text() {
    ! "$native_dump" "$document" "$1" | grep -qE -- "$2" || fail "the text of $1 has \"$2\""
}

# wait_for_dialog: until the font dialog has the keyboard.
wait_for_dialog() {
    local try
    for ((try = 0; try < 50; try++)); do
        [[ $(xdotool getwindowname "$(xdotool getwindowfocus)") == Font ]] && return
        sleep 0.1
    done
    fail "no font dialog"
}

# The first word selected, and its font changed: family by a part of its name, style, size, and an effect.
key Tab
key ctrl+Home
key ctrl+shift+Right
key alt+e
key f
wait_for_dialog
import -silent -window root "png:${QUILLERY_ROAD_PICTURE:-/dev/null}" || true
key ctrl+a
text "vu seri"
key alt+y
text "bold"
key alt+s
key ctrl+a
text "18"
key alt+u
key Return
sleep 0.3
save
expect_text 0.1 '\\fs36'
expect_text 0.1 '\\b[^0a-z]'
expect_text 0.1 '\\ul[^a-z]'
expect_text 0.1 'DejaVu Serif'
expect_dump "$document" '0.1 tagged visible First: First text'

# All of it in one step back, and forth again.
key ctrl+z
save
expect_text 0.1 '\\fs20'
expect_no_text 0.1 '\\fs36|\\b[^0a-z]|\\ul[^a-z]'
key ctrl+y
save
expect_text 0.1 '\\fs36'

# A cancelled dialog changes nothing.
key alt+e
key f
wait_for_dialog
key alt+s
key ctrl+a
text "72"
key Escape
save
expect_no_text 0.1 '\\fs144'

# Sizes by the keys: larger twice, smaller once.
key ctrl+Home
key ctrl+shift+Right
key ctrl+shift+greater
key ctrl+shift+greater
key ctrl+shift+less
save
expect_text 0.1 '\\fs38'

# The document's font reaches every text; the other entries were never shown.
key alt+e
key n
wait_for_dialog
key alt+s
key ctrl+a
text "14"
key Return
sleep 0.5
save
for path in 0 0.1 0.2 0.2.1; do
    expect_text "$path" '\\fs28'
    expect_no_text "$path" '\\fs(20|36|38)'
done
grep -aqF '{\qlf_textfontsize 14}' "$document" || fail "the document does not know its font"
expect_dump "$document" '0.2.1 Deep: Deep text'

# The outline's own.
key shift+Tab
key alt+o
key f
wait_for_dialog
key alt+s
key ctrl+a
text "16"
key Return
sleep 0.3
save
for ((try = 0; try < 50; try++)); do
    grep -aqF '{\qlf_outlinefontsize 16}' "$document" && break
    sleep 0.1
done
grep -aqF '{\qlf_outlinefontsize 16}' "$document" || fail "the outline has no new font"

quit_program
grep -q 'Error' "$work/bin/Quillery.log" && fail "the session log tells of errors: $(cat "$work/bin/Quillery.log")"

end_road
