#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT

# A second start in a session: its file is opened in the window that is there, in front of all others, and it ends.
#
#   one_program.sh PROGRAM NATIVE_DUMP SAMPLE

# shellcheck source=scripts/lib/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/../../scripts/lib/common.sh"
# shellcheck source=scripts/lib/display.sh
source "$root/scripts/lib/display.sh"
# shellcheck source=tests/gui/road.sh
source "$root/tests/gui/road.sh"

# start_once_more [FILE...]: must end by itself.
start_once_more() {
    timeout 60 "$work/bin/quillery" "$@" || fail "the second start did not end well but with status $?"
}

# expect_front WINDOW: waits until that has the keyboard.
expect_front() {
    local try
    for ((try = 0; try < 100; try++)); do
        [[ $(xdotool getactivewindow 2>/dev/null) != "$1" ]] || return 0
        sleep 0.1
    done
    fail "the window did not come to the front"
}

need_session_bus "$@"
begin_road "$@"

for name in one two three; do
    write_small_document "$work/$name.qly"
done
start_program "$work/one.qly"
window=$(main_window "$process")

# From another folder, with a name that is one only there.
(cd "$work" && start_once_more two.qly)
expect_front "$window"
sleep 0.5
key Tab
text "Handed over. "
key ctrl+s
expect_dump "$work/two.qly" '0.1 tagged visible First: Handed over. First text'

# A window out of sight comes back.
xdotool windowminimize --sync "$window"
start_once_more
expect_front "$window"

# A file waits for the end of a dialog.
key ctrl+o
sleep 0.5
start_once_more "$work/three.qly"
sleep 0.5
key Escape
sleep 1
key Tab
text "After the dialog. "
key ctrl+s
expect_dump "$work/three.qly" '0.1 tagged visible First: After the dialog. First text'

# Beside it, when asked for.
"$work/bin/quillery" --alone "$work/one.qly" &
other=$!
for ((try = 0; try < 100; try++)); do
    [[ -z $(main_window "$other") ]] || break
    sleep 0.1
done
[[ -n $(main_window "$other") ]] || fail "no second program came"
kill "$other"
wait "$other" || true

# When the first is gone, the next is the session's.
activate_window "$window" || fail "the window does not get the keyboard again"
quit_program
start_program "$work/two.qly"
start_once_more "$work/one.qly"
kill "$process"
wait "$process" || true
process=''

end_road
