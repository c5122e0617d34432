#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT

# Finding everywhere in the real program, by keys alone: hits are looked at and left, one is gone to and typed over, all are
# replaced and that is taken back; seen in the saved file.
#
#   find_everywhere.sh PROGRAM NATIVE_DUMP SAMPLE

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

# Two hits are looked at, the second in a branch that is closed; Esc leaves everything as it was.
key ctrl+shift+f
text "deep text"
sleep 0.5
key Down
key Down
sleep 0.5
import -silent -window root "png:${QUILLERY_ROAD_PICTURE:-/dev/null}" || true
key Escape
key Escape
key ctrl+s
expect_same "$work/before.qly" "$work/small.qly"

# Enter goes to a hit, with what was found selected.
key ctrl+shift+f
text "second"
sleep 0.5
key Down
key Down
key Return
text "Other"
key ctrl+s
expect_dump "$work/small.qly" '0.2 visible Second: Other text'
expect_dump "$work/small.qly" 'selected KEY0.2'
cp "$work/small.qly" "$work/before.qly"

# All are replaced as one step.
key ctrl+shift+f
text "text"
sleep 0.5
for ((step = 0; step < 8; step++)); do
    key Tab
done
key space
text "word"
key Tab
key Tab
key space
sleep 0.5
key ctrl+s
expect_dump "$work/small.qly" '0 visible Notes: Root word'
expect_dump "$work/small.qly" '0.1 tagged visible First: First word'
expect_dump "$work/small.qly" '0.2.1 Deep: Deep word'
key ctrl+z
key ctrl+s
expect_same "$work/before.qly" "$work/small.qly"

# The searches outlive the program.
quit_program
grep -q 'FindEverywhereHistory' "$XDG_CONFIG_HOME/Quillery/Quillery.ini" || fail "the searches are not kept"
grep -q 'Error' "$work/bin/Quillery.log" && fail "the session log tells of errors: $(cat "$work/bin/Quillery.log")"

end_road
