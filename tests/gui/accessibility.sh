#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT

# The real program as a screen reader finds it.
#
#   accessibility.sh PROGRAM NATIVE_DUMP SAMPLE

# shellcheck source=scripts/lib/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/../../scripts/lib/common.sh"
# shellcheck source=scripts/lib/display.sh
source "$root/scripts/lib/display.sh"
# shellcheck source=tests/gui/road.sh
source "$root/tests/gui/road.sh"

need_assistive_technology "$@"
begin_road "$@"

mkdir "$work/folder"
write_small_document "$work/folder/small.qly"
start_program "$work/folder/small.qly"
read_program accessibility.py "$work/folder"
quit_program
# The one save that could not succeed is on record, and nothing else.
[[ $(grep -c 'Error' "$work/bin/Quillery.log") == 1 ]] ||
    fail "the session log tells of other errors: $(cat "$work/bin/Quillery.log")"

end_road
