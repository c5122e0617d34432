#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT

# An entry is split at the caret and joined again, and all of it undone, by keys and from the menu, under a real X server
# with a window manager.
#
#   join_and_split.sh PROGRAM NATIVE_DUMP SAMPLE

# shellcheck source=scripts/lib/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/../../scripts/lib/common.sh"
# shellcheck source=scripts/lib/display.sh
source "$root/scripts/lib/display.sh"
# shellcheck source=tests/gui/road.sh
source "$root/tests/gui/road.sh"

begin_road "$@"
write_small_document "$work/small.qly"
start_program "$work/small.qly"
# As the program writes it.
key ctrl+s
expect_dump "$work/small.qly" '0.1 tagged visible First: First text'
cp "$work/small.qly" "$work/before.qly"

# "text" of "First text" becomes an entry, in which one goes on.
key Tab
key ctrl+Home
key ctrl+Right
key ctrl+shift+j
text "Other "
key ctrl+s
expect_dump "$work/small.qly" '0.1 tagged visible First: First '
expect_dump "$work/small.qly" '0.2 visible text: Other text'

# Joined again, by the menu, with the label above what came.
key Tab
key Up
key alt+l
key j
key ctrl+s
expect_dump "$work/small.qly" '0.1 tagged visible First: First |text|Other text'
cp "$work/small.qly" "$work/joined.qly"

for ((step = 0; step < 3; step++)); do
    key ctrl+z
done
key ctrl+s
expect_same "$work/before.qly" "$work/small.qly"

for ((step = 0; step < 3; step++)); do
    key ctrl+y
done
key ctrl+s
expect_same "$work/joined.qly" "$work/small.qly"

# The entry with what is inside goes into the one before.
key ctrl+j
key ctrl+s
expect_dump "$work/small.qly" '0.1 tagged visible First: First |text|Other text|Second|Second text'
expect_dump "$work/small.qly" '0.1.1 Deep: Deep text'

quit_program
end_road
