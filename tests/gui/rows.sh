# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# shellcheck disable=SC2154 # work, native_dump: of the road that sources this

# What roads that work on the outline's rows with the mouse share: a document of their own, its rows, and what it holds
# when it is saved.

header() {
    record formatversion 1
    record selecteditemkey "$1"
    local pane
    for pane in outline text; do
        record "${pane}fontname" 'DejaVu Sans'
        record "${pane}fontsize" 10
        record "${pane}fontbold" False
        record "${pane}fontitalic" False
        record "${pane}fontstrikethrough" False
        record "${pane}fontunderline" False
    done
}

left='' top='' height=''

# find_rows: learns where the outline's first row is and how high rows are. Leaves the root selected.
find_rows() {
    key Home
    find_marked_row Down Home
}

# point ROW [SHIFT]: moves the pointer to the label of a row counted from 0, SHIFT pixels to the right.
point() {
    xdotool mousemove $((left + 60 + ${2-0})) $((top + $1 * height + height / 2))
    sleep 0.1
}

# pull FROM TO: takes the entry of a row to another row, as a hand does, and holds it there; button 1 unless said.
pull() {
    point "$1"
    xdotool mousedown "${3-1}"
    sleep 0.1
    point "$1" 3
    point "$1" 12
    point "$2" 4
    point "$2"
}

drag() {
    pull "$1" "$2" "${3-1}"
    xdotool mouseup "${3-1}"
    sleep 0.3
}

# expect_outline FILE LINE...: saves, and waits until the file has these entries: path, tag and label.
expect_outline() {
    local file=$1 try expected found=''
    shift
    expected=$(printf '%s\n' "$@")
    key alt+f
    key s
    for ((try = 0; try < 50; try++)); do
        found=$("$native_dump" "$file" | sed -En 's/^(0[0-9.]*( tagged)?)( visible)? ([^:]*): .*/\1 \4/p')
        [[ $found != "$expected" ]] || return 0
        sleep 0.1
    done
    fail "the outline is
$found
and not
$expected"
}
