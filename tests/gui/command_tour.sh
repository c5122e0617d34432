#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT

# Every menu item and every key of the real program, with a document open, a read-only one and none.
#
#   command_tour.sh PROGRAM NATIVE_DUMP SAMPLE COMMAND_TABLES

# shellcheck source=scripts/lib/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/../../scripts/lib/common.sh"
# shellcheck source=scripts/lib/display.sh
source "$root/scripts/lib/display.sh"
# shellcheck source=tests/gui/road.sh
source "$root/tests/gui/road.sh"

need_assistive_technology "$@"
begin_road "$@"

write_small_document "$work/small.qly"
entry 0.3 Third False True 'Third text' >>"$work/small.qly"
cp "$work/small.qly" "$work/locked.qly"
chmod 444 "$work/locked.qly"
cp -p "$(dirname -- "$program")/Help.qly" "$work/bin/"
start_program
# Wide enough for all the buttons that are ever shown together.
xdotool windowsize --sync "$(main_window "$process")" 1270 740
read_program command_tour.py "$4" "$work"
wait "$process" || fail "the program ended with status $?"
process=''
grep -q 'Error' "$work/bin/Quillery.log" && fail "the session log tells of errors: $(cat "$work/bin/Quillery.log")"

end_road
