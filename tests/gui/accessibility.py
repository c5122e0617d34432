# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT
"""What a screen reader is told: names, levels, states and actions.

    accessibility.py PROCESS FOLDER

The process shows a document like write_small_document's in road.sh, which lies alone in the folder.
"""

import os
import sys
import time

import pyatspi
from assistive import (Program, children, fail, has, is_checked, is_enabled, is_showing, press, role_of, run, type_text,
                       wait, wait_equal, walk)
from gi.repository import GLib

# What somebody can work with or read, and so must be able to name. Scroll bars belong to the named pane around them.
NAMED = {"push button", "toggle button", "check box", "radio button", "combo box", "text", "password text",
         "spin button", "tree", "tree table", "list", "table", "slider", "split pane", "menu bar", "menu item",
         "popup menu", "tool bar", "status bar", "frame", "dialog", "alert", "page tab", "layered pane", "label",
         "link"}

# The menu items that open a dialog, and its title.
DIALOGS = [
    ("File", "Open", "Open"),
    ("File", "Save as...", "Save As"),
    ("File", "Print...", None),
    ("File", "Print setup...", None),
    ("File", "Print preview...", None),
    ("Outline", "Font...", None),
    ("Search", "Find", "Search"),
    ("Search", "Find and replace", "Search"),
    ("Help", "About Quillery...", "About Quillery"),
]


def described(accessible):
    return f"{role_of(accessible)} {accessible.name!r}"


def is_anonymous(accessible):
    if role_of(accessible) not in NAMED or not is_showing(accessible):
        return False
    # The toolkit's file dialog has panes that only arrange what is in them.
    if role_of(accessible) in ("split pane", "frame", "layered pane") and is_in_file_dialog(accessible):
        return False
    # The field of a list box is named by the box.
    parent = accessible.parent
    if parent is not None and role_of(parent) == "combo box" and parent.name:
        return False
    # A label without text is a picture, or has something to say later.
    if role_of(accessible) == "label" and not accessible.name:
        return not (accessible.description or is_picture(accessible))
    return not accessible.name


def is_in_file_dialog(accessible):
    while accessible is not None and role_of(accessible) != "application":
        if role_of(accessible) == "dialog" and accessible.name in ("Open", "Save As"):
            return True
        accessible = accessible.parent
    return False


def is_picture(accessible):
    return "Image" in pyatspi.listInterfaces(accessible)


def place_of(accessible, window):
    path = [described(accessible)]
    while accessible != window:
        accessible = accessible.parent
        path.append(described(accessible))
    return " in ".join(path)


def expect_names(window):
    """Every control of a window has a name."""
    anonymous = [place_of(each, window) for each in walk(window) if is_anonymous(each)]
    if anonymous:
        fail("without a name:\n  " + "\n  ".join(anonymous))


class FocusLog:
    """What got the keyboard's focus. The editor of a label is none of the outline's rows, and found this way only."""

    def __init__(self):
        self.seen = []
        pyatspi.Registry.registerEventListener(self.note, "object:state-changed")

    def note(self, event):
        if event.type.minor != "focused" or not event.detail1:
            return
        try:
            self.seen.append(described(event.source))
        except GLib.Error:
            # It is gone already.
            pass

    def listen(self, seconds):
        end = time.monotonic() + seconds
        while time.monotonic() < end and "text 'Label'" not in self.seen:
            GLib.MainContext.default().iteration(False)
            time.sleep(0.01)


class Accessibility:
    def __init__(self, process):
        self.program = Program(process)

    def outline(self):
        return [str(row) for row in self.program.rows()]

    def expect_outline(self, *rows):
        wait_equal(self.outline, list(rows), "the outline")

    def everything_has_a_name(self):
        expect_names(self.program.main)
        for name in ("Outline", "Entry text", "Split between outline and text"):
            if not any(each.name == name for each in walk(self.program.main)):
                fail(f"nothing is named {name!r}")

    def the_outline_tells_labels_levels_and_states(self):
        self.expect_outline("-Notes", "  First# <", "  +Second")
        press("Down")
        self.expect_outline("-Notes", "  First#", "  +Second <")
        press("Right")
        self.expect_outline("-Notes", "  First#", "  -Second <", "    Deep")
        press("alt+t")
        self.expect_outline("-Notes", "  First#", "  -Second# <", "    Deep")
        press("alt+t", "Left", "Up")
        self.expect_outline("-Notes", "  First# <", "  +Second")

    def an_entry_is_selected_by_its_row(self):
        table = self.program.outline().queryTable()
        table.addRowSelection(2)
        self.expect_outline("-Notes", "  First#", "  +Second <")
        wait_equal(self.program.text, "Second text", "the text")
        table.addRowSelection(1)
        self.expect_outline("-Notes", "  First# <", "  +Second")

    def the_text_can_be_read(self):
        wait_equal(self.program.text, "First text", "the text")
        press("Down")
        wait_equal(self.program.text, "Second text", "the text")
        press("Up")
        wait_equal(self.program.text, "First text", "the text")
        press("Tab")
        pane = self.program.in_document("text")
        wait(lambda: has(pane, pyatspi.STATE_FOCUSED), "the keyboard in the text")
        press("ctrl+End")
        type_text(" typed")
        wait_equal(self.program.text, "First text typed", "the text")
        press("shift+Tab")
        wait(lambda: has(self.program.outline(), pyatspi.STATE_FOCUSED), "the keyboard in the outline")

    def a_label_is_edited_by_name(self):
        focus = FocusLog()

        def editor_gets_the_focus():
            press("F2")
            focus.listen(0.5)
            press("Escape")
            return "text 'Label'" in focus.seen

        # The program begins to tell of its focus some time after it was asked to.
        wait(editor_gets_the_focus, lambda: f"the editor of the label; the focus went to {focus.seen}")

    def the_status_bar_tells_keys_and_entry(self):
        names = [each.name for each in children(self.program.status_bar)]
        for name in ("First", "Caps Lock", "Num Lock", "Overwrite"):
            if name not in names:
                fail(f"the status bar has no {name!r} but {names}")
        overwrite = next(each for each in children(self.program.status_bar) if each.name == "Overwrite")
        press("Tab", "Insert")
        wait(lambda: is_checked(overwrite), "overwriting in the status bar")
        press("Insert", "shift+Tab")
        wait(lambda: not is_checked(overwrite), "the end of overwriting in the status bar")

    def dialogs_and_their_controls_have_names(self):
        for menu, caption, title in DIALOGS:
            if not is_enabled(Program.child(children(self.program.menu(menu))[0], "menu item", caption)):
                continue
            self.program.choose(menu, caption)
            dialog = self.program.dialog()
            if title is not None and dialog.name != title:
                fail(f"the dialog of {caption!r} is named {dialog.name!r}")
            expect_names(dialog)
            press("Escape")
            self.program.wait_for_no_dialog()

    def menus_have_names(self):
        for menu in ("File", "Outline", "Edit", "Search", "View", "Window", "Help"):
            Program.child(self.program.menu(menu), "popup menu", menu)


    def what_is_found_is_told(self):
        press("ctrl+shift+f")
        box = wait(lambda: [each for each in walk(self.program.main)
                            if each.name == "Find everywhere" and role_of(each) == "combo box"], "the box to find")[0]
        wait(lambda: has(box, pyatspi.STATE_FOCUSED) or any(has(each, pyatspi.STATE_FOCUSED) for each in children(box)),
             "the keyboard in the box to find")
        type_text("text")
        wait(lambda: any(each.name.endswith("hits in 4 entries") for each in walk(self.program.main)), "the count of hits")
        hits = next(each for each in walk(self.program.main) if each.name == "Hits" and role_of(each) == "list")
        wait_equal(lambda: [each.name for each in children(hits)][:3],
                   ["Notes, 1 hit", "Root text", "First, 1 hit, in Notes"], "the list of hits")
        expect_names(self.program.main)
        press("Escape")
        wait(lambda: has(self.program.outline(), pyatspi.STATE_FOCUSED), "the keyboard back in the outline")
        self.program.choose("Tools", "Find everywhere  Ctrl+Shift+F")

    def a_failed_save_is_told(self, folder):
        def notices():
            return [each for each in walk(self.program.main) if role_of(each) == "alert" and is_showing(each)]

        focus = self.program.outline()
        os.rename(folder, folder + ".away")
        self.program.choose("File", "Save")
        notice = wait(notices, "the notice of the failed save")[0]
        if "could not be saved" not in notice.name:
            fail(f"the notice of the failed save says {notice.name!r}")
        wait(lambda: has(focus, pyatspi.STATE_FOCUSED), "the keyboard in the outline beside the notice")
        press("F6")
        button = Program.child(notice, "push button", "Save as...")
        wait(lambda: has(button, pyatspi.STATE_FOCUSED), "the keyboard in the notice")
        if button.description != notice.name:
            fail(f"the button of the notice is described as {button.description!r}")
        press("Escape")
        wait(lambda: has(focus, pyatspi.STATE_FOCUSED), "the keyboard back in the outline")
        os.rename(folder + ".away", folder)
        press("alt+r")
        wait(lambda: not notices(), "the end of the notice")


def main():
    test = Accessibility(sys.argv[1])
    test.everything_has_a_name()
    test.menus_have_names()
    test.the_outline_tells_labels_levels_and_states()
    test.an_entry_is_selected_by_its_row()
    test.the_text_can_be_read()
    test.a_label_is_edited_by_name()
    test.the_status_bar_tells_keys_and_entry()
    test.dialogs_and_their_controls_have_names()
    test.what_is_found_is_told()
    test.a_failed_save_is_told(sys.argv[2])


run(main)
