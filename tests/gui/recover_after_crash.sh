#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT

# What was typed comes back after the program was killed: under the file's name, by the keyboard alone, more than once,
# and without a byte of the file being written before it is saved. So does a document that never had a file.
#
#   recover_after_crash.sh PROGRAM NATIVE_DUMP SAMPLE [KILLS]
#
# With a number of kills it is worked with at random and killed at random moments that many times instead: the file must be
# whole and what had stood for two seconds must be there each time. Every third time it is killed when all has stood that
# long, and what is recovered must be, word for word, what the same keys make of the document when it is saved.

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
    is_offered || fail "nothing is offered"
}

is_offered() {
    local try name
    for ((try = 0; try < 100; try++)); do
        name=$(xdotool getactivewindow getwindowname 2>/dev/null)
        [[ $name != 'Recover documents' ]] || return 0
        # Of a save that was cut short by the kill, too; its words are in what was left behind.
        if [[ $name == Quillery ]] && compgen -G "$work/.quillery-*" >/dev/null; then
            xdotool key --clearmodifiers alt+n
            sleep 0.3
        fi
        sleep 0.1
    done
    return 1
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

# work_on MOVES: some things that people do, by keys, and none that takes words away.
work_on() {
    local move
    for ((move = 0; move < $1; move++)); do
        case $((RANDOM % 8)) in
        0) key ctrl+s ;;
        1)
            key F2
            text "Named$RANDOM"
            key Return
            ;;
        2)
            key alt+i
            text "Made$RANDOM"
            key Return
            ;;
        3) key alt+Down ;;
        4) key alt+t ;;
        5) key Down ;;
        6) key Up ;;
        *)
            key Tab
            text "$RANDOM words typed "
            key shift+Tab
            ;;
        esac
    done
}

# work_as SEED: the same work for the same number, on a new copy of the document.
work_as() {
    cp "$work/small.before" "$work/small.qly"
    start_program "$work/small.qly"
    RANDOM=$1
    work_on $((RANDOM % 8))
    key Tab
    text "kept$1 "
    key shift+Tab
}

# save_and_dump FILE: what the document holds now.
save_and_dump() {
    sleep 1
    key ctrl+s
    sleep 1
    "$native_dump" "$work/small.qly" >"$1" || fail "the file is not whole"
    kill_program
    rm -rf "$recovery" "$XDG_CONFIG_HOME/Quillery" "$work"/.quillery-*
}

# compare_states SEED: false where what is recovered is not what was there.
compare_states() {
    work_as "$1"
    sleep "$promise"
    kill_program
    "$work/bin/quillery" &
    process=$!
    is_offered || {
        kill_program
        return 1
    }
    key alt+r
    save_and_dump "$work/recovered.txt"
    work_as "$1"
    save_and_dump "$work/saved.txt"
    grep -q "kept$1 " "$work/saved.txt" && diff "$work/saved.txt" "$work/recovered.txt"
}

if [[ $kills -gt 0 ]]; then
    # So long that only what is changed of it is kept.
    long=$(for ((line = 0; line < 60; line++)); do printf 'paragraph %d of the first text\\\\par ' "$line"; done)
    sed -i "s/First text/$long/" "$work/small.before"
    lost=0 offered=0
    for ((kill = 1; kill <= kills; kill++)); do
        if [[ $((kill % 3)) -eq 0 ]]; then
            compare_states "$kill" || {
                lost=$((lost + 1))
                printf 'kill %d: another state\n' "$kill"
            }
            continue
        fi
        cp "$work/small.before" "$work/small.qly"
        start_program "$work/small.qly"
        work_on $((RANDOM % 5))
        key Tab
        text "kept$kill "
        key shift+Tab
        sleep "$promise"
        # Whatever of this is there is welcome.
        work_on 12 2>/dev/null &
        typist=$!
        sleep "$((RANDOM % 3)).$(printf %03d $((RANDOM % 1000)))"
        kill_program
        wait "$typist" || true
        [[ $((kill % 25)) -ne 0 ]] || printf '%d kills so far, %d lost\n' "$kill" "$lost"
        "$native_dump" "$work/small.qly" >/dev/null || {
            lost=$((lost + 1))
            printf 'kill %d: the file is not whole\n' "$kill"
        }
        "$work/bin/quillery" &
        process=$!
        # What was saved last of all leaves nothing behind.
        if is_offered; then
            offered=$((offered + 1))
            key alt+r
            sleep 1
            key ctrl+s
            sleep 1
        fi
        "$native_dump" "$work/small.qly" | grep -q "kept$kill " || {
            lost=$((lost + 1))
            printf 'kill %d: lost\n' "$kill"
            "$native_dump" "$work/small.qly" || true
        }
        kill_program
        rm -rf "$recovery" "$XDG_CONFIG_HOME/Quillery" "$work"/.quillery-*
    done
    printf '%d kills, %d with something to recover, %d lost\n' "$kills" "$offered" "$lost"
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
