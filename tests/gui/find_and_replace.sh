#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT

# Finding and replacing with the dialog in the real program, by keys alone, seen in the saved file.
#
#   find_and_replace.sh PROGRAM NATIVE_DUMP SAMPLE

# shellcheck source=scripts/lib/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/../../scripts/lib/common.sh"
# shellcheck source=scripts/lib/display.sh
source "$root/scripts/lib/display.sh"
# shellcheck source=tests/gui/road.sh
source "$root/tests/gui/road.sh"

begin_road "$@"

write_small_document "$work/small.qly"
start_program "$work/small.qly"

# Find in all texts: the entry that holds the match becomes the selected one, and its text is not changed by that.
key alt+s
key f
sleep 0.5
text "deep"
key alt+h
key Down
key Down
key Return
sleep 0.5
import -silent -window root "png:${QUILLERY_ROAD_PICTURE:-/dev/null}" || true
key Escape
key alt+f
key s
expect_dump "$work/small.qly" 'selected KEY0.2.1'
expect_dump "$work/small.qly" '0.2.1 visible Deep: Deep text'

# Replace in all texts: the notice at the end goes away with Return.
key alt+s
key r
sleep 0.5
key ctrl+a
text "text"
key alt+p
text "word"
key alt+a
sleep 1
key Return
key Escape
key alt+f
key s
expect_dump "$work/small.qly" '0 visible Notes: Root word'
expect_dump "$work/small.qly" '0.1 tagged visible First: First word'
expect_dump "$work/small.qly" '0.2.1 visible Deep: Deep word'

# The histories outlive the dialog.
grep -q 'FindHistory' "$XDG_CONFIG_HOME/Quillery/Quillery.ini" || fail "the expressions are not kept"

quit_program
grep -q 'Error' "$work/bin/Quillery.log" && fail "the session log tells of errors: $(cat "$work/bin/Quillery.log")"

end_road
