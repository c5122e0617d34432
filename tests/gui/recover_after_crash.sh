#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT

# What was typed comes back after the program was killed: under the file's name, by the keyboard alone, more than once,
# and without a byte of the file being written before it is saved. So does a document that never had a file.
#
#   recover_after_crash.sh PROGRAM NATIVE_DUMP SAMPLE [KILLS]
#
# With a number of kills it types and is killed at random moments that many times instead: what had stood for two
# seconds must be there each time.

# shellcheck source=scripts/lib/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/../../scripts/lib/common.sh"
# shellcheck source=scripts/lib/display.sh
source "$root/scripts/lib/display.sh"
# shellcheck source=tests/gui/road.sh
source "$root/tests/gui/road.sh"

begin_road "${@:1:3}"
kills=${4-0}
recovery=$XDG_STATE_HOME/Quillery/recovery

# What the journal promises; the machine's own time to write comes on top.
promise=2.5

kill_program() {
    kill -KILL "$process"
    wait "$process" 2>/dev/null || true
    process=''
}

# wait_for_list: the list of what was left behind has the keyboard.
wait_for_list() {
    local try
    for ((try = 0; try < 100; try++)); do
        [[ $(xdotool getactivewindow getwindowname 2>/dev/null) == 'Recover documents' ]] && return
        sleep 0.1
    done
    fail "nothing is offered"
}

# expect_nothing_left: what was left behind goes when it is of no use any more.
expect_nothing_left() {
    local try
    for ((try = 0; try < 100; try++)); do
        compgen -G "$recovery/*" >/dev/null || return 0
        sleep 0.1
    done
    fail "left behind: $(ls -l "$recovery")"
}

start_left() {
    "$work/bin/quillery" &
    process=$!
    wait_for_list
}

write_small_document "$work/small.qly"
cp "$work/small.qly" "$work/small.before"

if [[ $kills -gt 0 ]]; then
    lost=0
    for ((kill = 1; kill <= kills; kill++)); do
        cp "$work/small.before" "$work/small.qly"
        start_program "$work/small.qly"
        key Tab
        text "kept$kill "
        sleep "$promise"
        # Whatever of these words is there is welcome.
        text "more words that are typed while it is killed" &
        typist=$!
        sleep "0.$((RANDOM % 10))"
        kill_program
        wait "$typist" || true
        start_left
        key alt+r
        sleep 1
        key ctrl+s
        sleep 1
        "$native_dump" "$work/small.qly" | grep -q "kept$kill " || {
            lost=$((lost + 1))
            printf 'kill %d: lost\n' "$kill"
        }
        kill_program
        rm -rf "$recovery" "$XDG_CONFIG_HOME/Quillery"
    done
    printf '%d kills, %d lost\n' "$kills" "$lost"
    [[ $lost -eq 0 ]] || exit 1
    end_road
    exit
fi

# Words that have stood for two seconds, and a label.
start_program "$work/small.qly"
key F2
text "Renamed"
key Return
key Tab
text "typed "
sleep "$promise"
[[ $(stat -c %a "$recovery") == 700 ]] || fail "others may look into $recovery"
[[ -z $(find "$recovery" -type f -not -perm 600) ]] || fail "others may read what is in $recovery"
kill_program

# Later leaves it; then Recover, and a second crash before anything is saved.
start_left
key alt+l
sleep 0.5
quit_program
start_left
import -silent -window root "${QUILLERY_ROAD_PICTURE:-png:/dev/null}" || true
key alt+r
sleep 1.5
cmp -s "$work/small.qly" "$work/small.before" || fail "the file was written"
kill_program

start_left
key alt+r
sleep 1
key ctrl+s
expect_dump "$work/small.qly" '0.1 tagged visible Renamed: typed First text'
expect_nothing_left
quit_program

# A document that never had a file, and a signal in the second in which it was typed.
rm -rf "$XDG_CONFIG_HOME/Quillery"
start_program
key ctrl+n
text "Unnamed"
key Return
key Tab
text "never saved"
kill -TERM "$process"
wait "$process" || true
start_left
key alt+r
sleep 1
key ctrl+s
sleep 1
text "$work/named.qly"
key Return
expect_dump "$work/named.qly" '0 visible Unnamed: never saved'
expect_nothing_left
quit_program

end_road
