#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT

# Printing to PDF files in the real program, by keys alone: an entry, an entry with its children, the whole document, by
# the preview and without it; cancelled at the dialog and while it prints.
#
#   print_document.sh PROGRAM NATIVE_DUMP SAMPLE

# shellcheck source=scripts/lib/common.sh
source "$(dirname -- "${BASH_SOURCE[0]}")/../../scripts/lib/common.sh"
# shellcheck source=scripts/lib/display.sh
source "$root/scripts/lib/display.sh"
# shellcheck source=tests/gui/road.sh
source "$root/tests/gui/road.sh"

begin_road "$@"
mkdir -p "$HOME/Documents"

# expect_pdf NAME PAGES WORD...: waits for the printed file, which is then called NAME, and compares its words.
expect_pdf() {
    local printed=$HOME/Documents/small.pdf file=$work/$1.pdf pages=$2 words try
    shift 2
    for ((try = 0; try < 100; try++)); do
        [[ ! -e $printed ]] || break
        sleep 0.1
    done
    [[ -e $printed ]] || fail "nothing was printed to $printed: $(ls -A "$HOME/Documents")"
    mv "$printed" "$file"
    words=$(pdftotext "$file" - | tr -s ' \f\n' '   ')
    [[ $words == "$* " ]] || fail "$file has the words \"$words\""
    pdfinfo "$file" | grep -qx "Pages: *$pages" || fail "$file has other pages: $(pdfinfo "$file")"
    # Ink on the first page, and none in the margin.
    [[ $(pdftoppm -r 36 -f 1 -l 1 "$file" | convert - -shave 36x36 -format '%[fx:minima<0.5]' info:) == 1 ]] ||
        fail "$file has an empty page"
    [[ $(pdftoppm -r 36 -f 1 -l 1 "$file" | convert - -crop 0x34+0+0 -format '%[fx:minima>0.99]' info:) == 1 ]] ||
        fail "$file has something in its upper margin"
}

# comes_window TITLE TENTHS: waits so long until a dialog of that title, or the main window itself, has the keyboard.
comes_window() {
    local try window main
    main=$(main_window "$process")
    for ((try = 0; try < $2; try++)); do
        window=$(xdotool getactivewindow 2>/dev/null || true)
        if [[ $1 == main ]]; then
            [[ $window != "$main" ]] || return 0
        elif [[ -n $window && $window != "$main" && $(xdotool getwindowname "$window") == "$1" ]]; then
            return 0
        fi
        sleep 0.1
    done
    return 1
}

expect_window() {
    comes_window "$1" 100 || fail "the window \"$1\" does not come"
}

# choose TITLE KEY...: chooses an item of the File menu, which shows a dialog of that title. Keys that come while the
# dialog before is still going away are lost, so they may be needed again.
choose() {
    local title=$1 try menu_key
    shift
    expect_window main
    for ((try = 0; try < 5; try++)); do
        key alt+f
        for menu_key in "$@"; do
            key "$menu_key"
        done
        ! comes_window "$title" 20 || return 0
        key Escape
        key Escape
    done
    fail "$* in the File menu does not show the window \"$title\""
}

# ask KEY... ANSWER: chooses a print command and answers its question.
ask() {
    choose Quillery "${@:1:$#-1}"
    key "${!#}"
}

# print_to_file: has the printer's dialog print to the file that it proposes.
print_to_file() {
    expect_window Print
    key Return
}

expect_nothing() {
    sleep 0.5
    [[ -z $(ls -A "$HOME/Documents") ]] || fail "there is a file after all: $(ls -A "$HOME/Documents")"
}

write_small_document "$work/small.qly"
sed -i 's/KEY0[.]1}/KEY0.2}/' "$work/small.qly"
start_program "$work/small.qly"

# The selected entry alone: No is the answer of Return. Two items of the menu have the letter c; the second one is meant.
ask c c Return Return
print_to_file
expect_pdf entry 1 Second Second text

# The entry with its children.
ask c c Return alt+y
print_to_file
expect_pdf children 1 Second Second text Deep Deep text

# The whole document.
ask p alt+y
print_to_file
expect_pdf document 1 Notes Root text First First text Second Second text Deep Deep text

# The same by way of the preview, which Escape closes.
ask v alt+y
expect_window 'Print Preview'
sleep 0.5
import -silent -window root "png:${QUILLERY_ROAD_PICTURE:-/dev/null}" || true
key alt+p
print_to_file
expect_pdf preview 1 Notes Root text First First text Second Second text Deep Deep text
expect_window 'Print Preview'
key Escape

# The preview of an entry, closed by its button. From the end of the menu: the way out, the one recent file, the item.
ask Up Up Up Return Return
expect_window 'Print Preview'
key alt+c

# Cancelled at the question, and at the printer's dialog.
ask p Escape
expect_window main
expect_nothing
ask p alt+y
expect_window Print
key Escape
expect_window main
expect_nothing

# Landscape paper, by the printer's setup.
choose 'Print Setup' u
key alt+l
key Return
ask c c Return Return
print_to_file
expect_pdf landscape 1 Second Second text
pdfinfo "$work/landscape.pdf" | awk '/^Page size/ { exit !($3 > $5) }' || fail "the paper is not landscape"
expect_window main
quit_program
grep -q 'Error' "$work/bin/Quillery.log" && fail "the session log tells of errors: $(cat "$work/bin/Quillery.log")"

# Some thousand pages, stopped after the first ones: no file, and nothing of one.
write_small_document "$work/small.qly"
long=$(printf 'many lines\\par %.0s' {1..100000})
short=$(<"$work/small.qly")
printf '%s\n' "${short/Root text/$long}" >"$work/small.qly"
start_program "$work/small.qly"
ask p alt+y
print_to_file
for ((try = 0; try < 100; try++)); do
    ! compgen -G "$HOME/Documents/.quillery-*" >/dev/null || break
    sleep 0.1
done
[[ $try -lt 100 ]] || fail "the printing does not begin"
expect_window Print
key Escape
expect_window main
expect_nothing
quit_program
grep -q 'Error' "$work/bin/Quillery.log" && fail "the session log tells of errors: $(cat "$work/bin/Quillery.log")"

end_road
