#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT

# The real program on a desktop that prefers dark colours and then changes its mind.
#
#   dark_desktop.sh PROGRAM NATIVE_DUMP SAMPLE

# shellcheck source=scripts/lib/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/../../scripts/lib/common.sh"
# shellcheck source=scripts/lib/display.sh
source "$root/scripts/lib/display.sh"
# shellcheck source=tests/gui/road.sh
source "$root/tests/gui/road.sh"

need_assistive_technology "$@"
begin_road "$@"
unset QT_QPA_PLATFORMTHEME QT_STYLE_OVERRIDE XDG_CURRENT_DESKTOP

# expect_brightness LEAST MOST: waits until the window's mean brightness, in percent, lies between the two.
expect_brightness() {
    local try brightness=''
    for ((try = 0; try < 100; try++)); do
        brightness=$(import -silent -window "$(main_window "$process")" png:- | convert png:- -colorspace Gray \
            -format '%[fx:int(100*mean)]' info:) || true
        ((${brightness:--1} < $1 || brightness > $2)) || return 0
        sleep 0.1
    done
    fail "the window's brightness is $brightness, not between $1 and $2"
}

PYTHONDONTWRITEBYTECODE=1 /usr/bin/python3 "$root/tests/gui/settings_portal.py" &
display_processes+=("$!")
portal=$!
for ((try = 0; try < 100; try++)); do
    dbus-send --session --print-reply --dest=org.freedesktop.DBus / org.freedesktop.DBus.NameHasOwner \
        string:org.freedesktop.portal.Desktop 2>/dev/null | grep -q 'boolean true' && break
    sleep 0.1
done

write_small_document "$work/small.qly"
start_program "$work/small.qly"
expect_brightness 0 40
kill -USR1 "$portal"
expect_brightness 60 100

quit_program
grep -q 'Error' "$work/bin/Quillery.log" && fail "the session log tells of errors: $(cat "$work/bin/Quillery.log")"

end_road
