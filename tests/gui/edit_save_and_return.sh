#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT

# The main road under a real X server with a window manager: open two documents, rename an entry, type a text, save, quit,
# start again, and find everything as it was left.
#
#   edit_save_and_return.sh PROGRAM NATIVE_DUMP SAMPLE

# shellcheck source=scripts/lib/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/../../scripts/lib/common.sh"
# shellcheck source=scripts/lib/display.sh
source "$root/scripts/lib/display.sh"
# shellcheck source=tests/gui/road.sh
source "$root/tests/gui/road.sh"

begin_road "$@"

cp "$sample" "$work/tour.qly"
write_small_document "$work/small.qly"

start_program "$work/tour.qly" "$work/small.qly"

# The second document is the active one, and its selected entry has the keyboard.
key F2
key ctrl+a
text "Renamed entry"
key Return
key Tab
key ctrl+End
text " and more"
key alt+f
key s
expect_dump "$work/small.qly" '0.1 tagged visible Renamed entry: First text and more'
expect_dump "$work/small.qly" '0.2.1 Deep: Deep text'
expect_dump "$work/small.qly" 'selected KEY0.1'
[[ -e $work/small.bak ]] || fail "no backup of the old file was kept"
quit_program
cp "$work/small.qly" "$work/small.after"

# Nothing is named now: the documents of the last run come back. Saving one again must give the same bytes, which holds its
# text, tags, expansion and selection.
start_program
key F2
key Escape
key alt+f
key s
expect_same "$work/small.qly" "$work/small.after"
quit_program
grep -q 'tour.qly' "$XDG_CONFIG_HOME/Quillery/Quillery.ini" || fail "the first document is not among the last run's"
grep -q 'Error' "$work/bin/Quillery.log" && fail "the session log tells of errors: $(cat "$work/bin/Quillery.log")"
grep -c 'Session ended' "$work/bin/Quillery.log" | grep -qx 2 || fail "the session log does not tell of two ends"

end_road
