# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# What is read from the scripts around it, and what only they use.
# shellcheck disable=SC2034,SC2154
# What the scripts that drive the real program under X have in common. Sourced after common.sh and display.sh.

program=''
native_dump=''
sample=''
work=''
process=''

fail() {
    [[ -z $process ]] || import -silent -window root "png:${QUILLERY_ROAD_PICTURE:-/dev/null}" || true
    printf 'FAIL: %s\n' "$1" >&2
    exit 1
}

# begin_road PROGRAM NATIVE_DUMP SAMPLE: a display, and a folder with a copy of the program in it, so that its session log
# and its settings are the test's own.
begin_road() {
    program=$1 native_dump=$2 sample=$3
    work=$(mktemp -d)
    trap 'stop_display; rm -rf -- "$work"' EXIT
    mkdir -p "$work/bin" "$work/home/config"
    cp "$program" "$work/bin/quillery"
    export HOME=$work/home XDG_CONFIG_HOME=$work/home/config XDG_STATE_HOME=$work/home/state
    export XDG_DATA_HOME=$work/home/data
    unset QT_QPA_PLATFORM
    # The user's own session may have the program already, and would get the files.
    [[ -n ${QUILLERY_ROAD_SESSION-} ]] || export DBUS_SESSION_BUS_ADDRESS=disabled:
    # The window manager's own keys for its other desktops are the program's for going back and forth.
    mkdir -p "$XDG_CONFIG_HOME/openbox"
    sed '/<keybind key="C-A-\(Left\|Right\)">/,/<\/keybind>/d' /etc/xdg/openbox/rc.xml >"$XDG_CONFIG_HOME/openbox/rc.xml"
    start_display
}

# need_assistive_technology SCRIPT'S ARGUMENT...: runs the script again in a session with a bus of its own, by which
# programs are read; ends it with the status of a skipped test where the packages for that are missing.
need_assistive_technology() {
    if ! command -v dbus-run-session >/dev/null || ! [[ -x /usr/libexec/at-spi-bus-launcher ]] ||
        ! /usr/bin/python3 -c 'import pyatspi' 2>/dev/null; then
        printf 'SKIPPED: reading the program takes the packages at-spi2-core, python3-pyatspi and dbus\n' >&2
        exit 77
    fi
    # The program offers itself to assistive technology though none is there yet when it starts.
    export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1
    need_session_bus "$@"
}

# need_session_bus SCRIPT'S ARGUMENT...: runs the script again in a session with a bus of its own.
need_session_bus() {
    [[ -z ${QUILLERY_ROAD_SESSION-} ]] || return 0
    if ! command -v dbus-run-session >/dev/null; then
        printf 'SKIPPED: a session of its own takes the package dbus\n' >&2
        exit 77
    fi
    QUILLERY_ROAD_SESSION=1 exec dbus-run-session -- "$0" "$@"
}

# read_program SCRIPT [ARGUMENT...]: has the program that runs read by a script of this folder.
read_program() {
    local script=$1
    shift
    PYTHONDONTWRITEBYTECODE=1 /usr/bin/python3 "$root/tests/gui/$script" "$process" "$@" || fail "$script"
}

end_road() {
    stop_display
    printf 'The road was gone to its end.\n'
}

# start_program [FILE...]: starts it and waits until its window has the keyboard.
start_program() {
    local try window=''
    "$work/bin/quillery" "$@" &
    process=$!
    for ((try = 0; try < 300; try++)); do
        kill -0 "$process" 2>/dev/null || fail "the program ended by itself"
        window=$(main_window "$process")
        [[ -z $window ]] || break
        sleep 0.1
    done
    [[ -n $window ]] || fail "the program showed no window"
    # What was found first may have been a window that went again.
    for ((try = 0; try < 10; try++)); do
        activate_window "$window" && break
        window=$(main_window "$process")
    done
    ((try < 10)) || fail "the program's window does not get the keyboard"
    sleep 0.5
}

# quit_program: Alt+F4, and yes to the question.
quit_program() {
    local try
    key alt+F4
    for ((try = 0; try < 100; try++)); do
        kill -0 "$process" 2>/dev/null || break
        # The question's Yes; sent again when the dialog was not there yet.
        xdotool key --clearmodifiers alt+y
        sleep 0.3
    done
    wait "$process" || fail "the program ended with status $?"
    process=''
}

key() {
    xdotool key --clearmodifiers "$1"
    sleep 0.15
}

text() {
    xdotool type --clearmodifiers --delay 15 "$1"
    sleep 0.15
}

# find_marked_row KEY BACK: learns where the highlighted row of a list is and how high rows are, as left, top and height: it
# is what stops being highlighted when KEY moves the mark. BACK moves it back.
find_marked_row() {
    sleep 0.3
    import -silent -window root "png:$work/marked.png"
    key "$1"
    sleep 0.3
    import -silent -window root "png:$work/left.png"
    key "$2"
    read -r left top height < <(awk -F'[,:() ]+' '
        FNR == NR {
            if ($5 > 180 && $3 < 80)
                blue[$1, $2]
            next
        }
        ($1, $2) in blue && $3 == 255 && $4 == 255 && $5 == 255 {
            if (!count[$2]++)
                left[$2] = $1
            if (count[$2] == 20 && !height++)
                top = $2
        }
        END { print left[top], top, height }' <(convert "$work/marked.png" txt:-) <(convert "$work/left.png" txt:-))
    ((height > 9)) || fail "no row is seen to be marked"
}

# expect_dump FILE LINE: waits until the file keeps the format's rules and its dump has the line.
expect_dump() {
    local try
    for ((try = 0; try < 50; try++)); do
        "$native_dump" "$1" | grep -qxF -- "$2" && return
        sleep 0.1
    done
    fail "$1 does not come to hold \"$2\" but:
$("$native_dump" "$1")"
}

# expect_same FILE OTHER: waits until both have the same bytes.
expect_same() {
    local try
    for ((try = 0; try < 50; try++)); do
        cmp -s "$1" "$2" && return
        sleep 0.1
    done
    fail "$1 and $2 differ:
$(diff <("$native_dump" "$1") <("$native_dump" "$2"))"
}

# write_small_document FILE: a root with two children, the first tagged and selected, the second closed over a child.
write_small_document() {
    {
        record formatversion 1
        record selecteditemkey KEY0.1
        local pane
        for pane in outline text; do
            record "${pane}fontname" 'DejaVu Sans'
            record "${pane}fontsize" 10
            record "${pane}fontbold" False
            record "${pane}fontitalic" False
            record "${pane}fontstrikethrough" False
            record "${pane}fontunderline" False
        done
        entry 0 Notes False True 'Root text'
        entry 0.1 First True True 'First text'
        entry 0.2 Second False True 'Second text'
        entry 0.2.1 Deep False False 'Deep text'
    } >"$1"
}

record() {
    printf '{\\qlf_%s %s}\r\n' "$1" "$2"
}

entry() {
    record nodekey "$1"
    record nodelabel "$2"
    record nodetagged "$3"
    record nodevisible "$4"
    record nodetext "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 DejaVu Sans;}}\\f0\\fs20 $5}"
}
