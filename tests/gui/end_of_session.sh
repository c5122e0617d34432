#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT

# The ends that nobody chooses in the program: a signal while a question is open, and a display that goes. Neither hangs,
# both keep the list of open documents and end the log, and no document is written.
#
#   end_of_session.sh PROGRAM NATIVE_DUMP SAMPLE

# shellcheck source=scripts/lib/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/../../scripts/lib/common.sh"
# shellcheck source=scripts/lib/display.sh
source "$root/scripts/lib/display.sh"
# shellcheck source=tests/gui/road.sh
source "$root/tests/gui/road.sh"

begin_road "$@"

# expect_end STATUS: waits until the program has ended with the status, the log and the list of open documents in order.
expect_end() {
    local try status=0
    for ((try = 0; try < 100; try++)); do
        kill -0 "$process" 2>/dev/null || break
        sleep 0.1
    done
    kill -0 "$process" 2>/dev/null && fail "the program does not end"
    wait "$process" || status=$?
    process=''
    [[ $status -eq $1 ]] || fail "the program ended with status $status"
    tail -n1 "$work/bin/Quillery.log" | grep -q '^Session ended at' || fail "the log has no end"
    grep -q '^1=.*/small.qly$' "$XDG_CONFIG_HOME/Quillery/Quillery.ini" || fail "the open document was not kept"
    cmp -s "$work/small.qly" "$work/small.before" || fail "the document was written"
}

write_small_document "$work/small.qly"
cp "$work/small.qly" "$work/small.before"

# Words that are not saved, and the question about them open.
start_program "$work/small.qly"
key Tab
text "unsaved "
key alt+F4
sleep 0.5
kill -TERM "$process"
expect_end 143

# The display goes while a label is being typed.
rm "$XDG_CONFIG_HOME/Quillery/Quillery.ini"
start_program "$work/small.qly"
key F2
text "unsaved"
stop_display
expect_end 1

end_road
