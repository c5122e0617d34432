#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT

# The lock keys under X, where they can be read and set; the test program finds none on its own platform.
#
#   lock_keys.sh PROGRAM NATIVE_DUMP SAMPLE TEST_PROGRAM

# shellcheck source=scripts/lib/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/../../scripts/lib/common.sh"
# shellcheck source=scripts/lib/display.sh
source "$root/scripts/lib/display.sh"
# shellcheck source=tests/gui/road.sh
source "$root/tests/gui/road.sh"

begin_road "$@"
QT_QPA_PLATFORM=xcb "$4" eachLockIsReadAndSetByItself | tee "$work/lock_keys.log"
grep -q '^PASS.*eachLockIsReadAndSetByItself' "$work/lock_keys.log" || fail 'the lock keys were not tested'
end_road
