# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# A display of our own for machines that have none. Sourced after common.sh.

have_display() {
    [[ -n ${DISPLAY-} || -n ${WAYLAND_DISPLAY-} ]]
}

display_processes=()
display_folder=

# start_display [WIDTHxHEIGHT]: an X server without a screen and a window manager, without which no window ever becomes
# active. Sets DISPLAY; stop_display ends both.
start_display() {
    display_folder=$(mktemp -d)
    chmod 700 "$display_folder"
    export XDG_RUNTIME_DIR=$display_folder
    Xvfb -displayfd 3 -screen 0 "${1:-1280x800}x24" -nolisten tcp \
        3>"$display_folder/number" >"$display_folder/xvfb.log" 2>&1 &
    display_processes+=($!)
    local try
    for ((try = 0; try < 100; try++)); do
        [[ -s $display_folder/number ]] && break
        sleep 0.1
    done
    if [[ ! -s $display_folder/number ]]; then
        cat "$display_folder/xvfb.log" >&2
        die "The virtual display did not start"
    fi
    DISPLAY=:$(<"$display_folder/number")
    export DISPLAY
    unset WAYLAND_DISPLAY
    openbox >"$display_folder/openbox.log" 2>&1 &
    display_processes+=($!)
    for ((try = 0; try < 100; try++)); do
        xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id' && return
        # On a busy machine the server may tell its number before it lets anybody in.
        if ! kill -0 "${display_processes[-1]}" 2>/dev/null; then
            openbox >"$display_folder/openbox.log" 2>&1 &
            display_processes[-1]=$!
        fi
        sleep 0.1
    done
    cat "$display_folder/openbox.log" >&2
    die "The window manager did not start"
}

stop_display() {
    local index
    for ((index = ${#display_processes[@]} - 1; index >= 0; index--)); do
        kill "${display_processes[index]}" 2>/dev/null || true
        wait "${display_processes[index]}" 2>/dev/null || true
    done
    display_processes=()
    [[ -z $display_folder ]] || rm -rf -- "$display_folder"
    display_folder=
}

# main_window PROCESS: the X window of the program's main window once it is shown; nothing before. The start-up banner
# belongs to the same process but is a dialog.
main_window() {
    local window
    for window in $(xdotool search --onlyvisible --pid "$1" 2>/dev/null); do
        if xprop -id "$window" _NET_WM_WINDOW_TYPE WM_STATE 2>/dev/null | tr '\n' ' ' |
            grep -q '_NET_WM_WINDOW_TYPE_NORMAL.*window state: Normal'; then
            printf '%s\n' "$window"
            return
        fi
    done
}

# activate_window WINDOW: gives it the keyboard. Asked for while another window goes, as the start-up banner does,
# xdotool may end with an X error.
activate_window() {
    local try
    for ((try = 0; try < 50; try++)); do
        xdotool windowactivate --sync "$1" 2>/dev/null && return
        sleep 0.1
    done
    return 1
}

# picture_of_program PROCESS FILE: waits until the program's main window is shown and painted, and writes it as a PNG.
picture_of_program() {
    local process=$1 file=$2 window='' before='' now try
    for ((try = 0; try < 300; try++)); do
        kill -0 "$process" 2>/dev/null || return 1
        window=$(main_window "$process")
        [[ -z $window ]] || break
        sleep 0.1
    done
    [[ -n $window ]] || return 1
    # Painted: two looks in a row see the same picture (a blinking cursor may spoil some looks, not all).
    for ((try = 0; try < 20; try++)); do
        now=$(import -silent -window "$window" rgba:- | cksum)
        [[ $now != "$before" ]] || break
        before=$now
        sleep 0.4
    done
    import -silent -window "$window" "png:$file"
}
