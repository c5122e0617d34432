#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT

# A text from a word processor into an entry and back, by the clipboard between the two real programs: bold, colours, lists,
# a table, a picture and a link survive both ways. Needs LibreOffice Writer with a graphical surface (not among the
# packages that the tests install), so it is run by hand:
#
#   tests/gui/writer_round_trip.sh PROGRAM NATIVE_DUMP SAMPLE

# shellcheck source=scripts/lib/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/../../scripts/lib/common.sh"
# shellcheck source=scripts/lib/display.sh
source "$root/scripts/lib/display.sh"
# shellcheck source=tests/gui/road.sh
source "$root/tests/gui/road.sh"

writer_process=''

# writer FILE: opens it in Writer and waits for its window.
writer() {
    local try window=''
    soffice "-env:UserInstallation=file://$work/profile" --norestore --nologo --nolockcheck --writer "$1" >"$work/writer.log" 2>&1 &
    writer_process=$!
    for ((try = 0; try < 600; try++)); do
        window=$(xdotool search --onlyvisible --name "$(basename -- "$1").*Writer" 2>/dev/null | tail -n 1) || true
        [[ -z $window ]] || break
        sleep 0.1
    done
    [[ -n $window ]] || fail "Writer showed no window: $(cat "$work/writer.log")"
    activate_window "$window"
    # The first start is slow to fill its window.
    sleep 6
}

quit_writer() {
    pkill -f "$work/profile" || true
    wait "$writer_process" 2>/dev/null || true
    sleep 1
}

# as_open_document FILE: what Writer makes of it, as flat XML on standard output.
as_open_document() {
    soffice "-env:UserInstallation=file://$work/batch" --headless --convert-to fodt --outdir "$work/flat" "$1" >/dev/null 2>&1
    cat "$work/flat/$(basename -- "${1%.*}").fodt"
}

# expect_in FILE WHAT PATTERN: the flat document has it.
expect_in() {
    grep -qE -- "$3" "$1" || fail "$(basename -- "$1") has no $2"
}

expect_everything() {
    expect_in "$1" 'bold' 'fo:font-weight="bold"'
    expect_in "$1" 'red' 'fo:color="#c8000[0a]"'
    expect_in "$1" 'list' '<text:list[ >]'
    expect_in "$1" 'second item' 'second item'
    expect_in "$1" 'table' '<table:table '
    expect_in "$1" 'cell' 'cell four'
    expect_in "$1" 'picture' '<draw:image'
    expect_in "$1" 'link' 'xlink:href="https?://example.org/page"'
}

begin_road "$@"
export SAL_USE_VCLPLUGIN=${SAL_USE_VCLPLUGIN-gtk3}

picture=89504e470d0a1a0a0000000d49484452000000010000000108060000001f15c4890000000d49444154789c6360606060000000050001a5f645400000000049454e44ae426082
cat >"$work/rich.rtf" <<RTF
{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 DejaVu Sans;}{\\f1\\fcharset2 Symbol;}}{\\colortbl;\\red200\\green0\\blue0;}
{\\*\\listtable{\\list{\\listlevel\\levelnfc0\\levelstartat1{\\leveltext\\'02\\'00.;}{\\levelnumbers\\'01;}\\fi-360\\li720}\\listid7}}
{\\*\\listoverridetable{\\listoverride\\listid7\\listoverridecount0\\ls1}}
\\f0\\fs24 Some {\\b bold} and {\\cf1 red} words.\\par
\\pard\\ls1\\fi-360\\li720 first item\\par second item\\par
\\pard A {\\field{\\*\\fldinst{HYPERLINK "http://example.org/page"}}{\\fldrslt link}}.\\par
\\trowd\\cellx2000\\cellx4000\\intbl cell one\\cell cell two\\cell\\row
\\trowd\\cellx2000\\cellx4000\\intbl cell three\\cell cell four\\cell\\row
\\pard A picture: {\\pict\\pngblip\\picwgoal600\\pichgoal600 $picture}\\par
The end.\\par}
RTF
write_small_document "$work/small.qly"
mkdir -p "$work/flat"

# Into an entry.
writer "$work/rich.rtf"
key ctrl+a
key ctrl+c
sleep 1
start_program "$work/small.qly"
key Tab
key ctrl+a
key ctrl+v
sleep 1
import -silent -window root "png:${QUILLERY_ROAD_PICTURE:-/dev/null}" || true
key alt+f
key s
sleep 1
"$native_dump" "$work/small.qly" 0.1 >"$work/entry.rtf"
as_open_document "$work/entry.rtf" >"$work/into.fodt"
expect_everything "$work/into.fodt"
quit_writer

# And back: into an empty text, from the program's own copy.
printf '{\\rtf1 }' >"$work/back.rtf"
soffice "-env:UserInstallation=file://$work/batch" --headless --convert-to odt --outdir "$work" "$work/back.rtf" >/dev/null 2>&1
activate_window "$(main_window "$process")"
sleep 0.5
key ctrl+a
key ctrl+c
writer "$work/back.odt"
key ctrl+v
sleep 2
key ctrl+s
sleep 3
as_open_document "$work/back.odt" >"$work/back.fodt"
expect_everything "$work/back.fodt"
quit_writer
activate_window "$(main_window "$process")"
quit_program

end_road
