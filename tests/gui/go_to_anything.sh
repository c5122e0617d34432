#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT

# Entries, commands and documents are gone to by a few letters, under a real X server with a window manager. Where one is,
# is told by what is typed there.
#
#   go_to_anything.sh PROGRAM NATIVE_DUMP SAMPLE

# shellcheck source=scripts/lib/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/../../scripts/lib/common.sh"
# shellcheck source=scripts/lib/display.sh
source "$root/scripts/lib/display.sh"
# shellcheck source=tests/gui/road.sh
source "$root/tests/gui/road.sh"

# go_to TYPED [KEY...]: by the line, and with further keys before Enter.
go_to() {
    key ctrl+k
    sleep 0.3
    text "$1"
    shift
    while (($# > 0)); do
        key "$1"
        shift
    done
    key Return
    sleep 0.3
}

begin_road "$@"
write_small_document "$work/one.qly"
write_small_document "$work/two.qly"
start_program "$work/one.qly" "$work/two.qly"

# An entry in a closed branch of the active document, with the keyboard in the outline then.
go_to deep
key F2
key ctrl+a
text "Found"
key Return
key ctrl+s
expect_dump "$work/two.qly" '0.2.1 visible Found: Deep text'

# A command by its name, and one that says that it cannot be run and leaves the line to Esc.
go_to ">tag"
go_to ">indent"
key Escape
key ctrl+s
expect_dump "$work/two.qly" '0.2.1 tagged visible Found: Deep text'

# The other document; an entry there by what it stands below; the text keeps the keyboard.
go_to "@one"
key Tab
go_to "sec/deep"
key ctrl+Home
text "Typed "
key ctrl+s
expect_dump "$work/one.qly" '0.2.1 visible Deep: Typed Deep text'

# What is typed in the line goes nowhere else, and Esc leaves everything as it was.
key ctrl+k
text "root"
key ctrl+z
key alt+b
key Escape
text "too "
key ctrl+s
expect_dump "$work/one.qly" '0.2.1 visible Deep: Typed too Deep text'

# Nothing typed offers where one was: the last place is the first row.
go_to first
go_to notes
go_to ""
key ctrl+Home
text "Back: "
key ctrl+s
expect_dump "$work/one.qly" '0.1 tagged visible First: Back: First text'

quit_program
end_road
