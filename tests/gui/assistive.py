# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT
"""The running program as assistive technology sees it, and a keyboard to work it with.

Nothing here waits for a fixed time and hopes: what is to come is looked for until it is there or the patience is over.
"""

import os
import subprocess
import sys
import time

import pyatspi
from gi.repository import GLib

PATIENCE = 20
MENU_PATIENCE = 4
PAUSE = 0.01


class Failure(Exception):
    pass


def fail(message):
    raise Failure(message)


def wait(condition, what):
    """What the condition comes to return, once that counts as true."""
    end = time.monotonic() + PATIENCE
    while True:
        try:
            found = condition()
        except GLib.Error:
            # What was looked at went away meanwhile.
            found = None
        if found:
            return found
        if time.monotonic() > end:
            fail(f"waited in vain for {what() if callable(what) else what}")
        time.sleep(PAUSE)


def wait_equal(current, expected, what):
    """Waits until current() returns what is expected; says the difference when it does not."""
    wait(lambda: current() == expected, lambda: f"{what}:\n  expected {expected!r}\n  is       {current()!r}")


def press(*keys):
    subprocess.run(["xdotool", "key", "--delay", "5", *keys], check=True)


def type_text(text):
    subprocess.run(["xdotool", "type", "--delay", "5", text], check=True)


def has(accessible, state):
    return accessible.getState().contains(state)


def is_enabled(accessible):
    return has(accessible, pyatspi.STATE_ENABLED)


def is_showing(accessible):
    return has(accessible, pyatspi.STATE_SHOWING)


def is_checked(accessible):
    return has(accessible, pyatspi.STATE_CHECKED)


def role_of(accessible):
    return accessible.getRoleName()


def children(accessible):
    """The children that are there; a window may go while it is looked at."""
    try:
        found = [accessible.getChildAtIndex(index) for index in range(accessible.childCount)]
    except Exception:  # pylint: disable=broad-except
        return []
    return [child for child in found if child is not None]


def walk(accessible, enter=lambda accessible: True):
    """An object and everything below it, leaving out what lies below objects that are not to be entered."""
    yield accessible
    if enter(accessible):
        for child in children(accessible):
            yield from walk(child, enter)


def access_key(item):
    """The letter that chooses a menu item; empty where it has none. An item with a key of its own tells that instead."""
    return item.queryAction().getKeyBinding(0).removeprefix("Alt+").lower()


def choose_item(item):
    """Chooses an item of the menu that shows it."""
    letter = access_key(item)
    others = [each for each in children(item.parent) if role_of(each) == "menu item" and each.name]
    # Where an item tells its key, its letter may be this one, too.
    clear = all(len(access_key(each)) <= 1 for each in others)
    if letter and clear and sum(access_key(each) == letter for each in others) == 1:
        press(letter)
        return
    # A letter that several items have goes from one to the next, but not beyond one that is not enabled: the arrows do.
    enabled = [each for each in others if is_enabled(each)]
    to_go = enabled.index(item)
    arrow = "Down" if to_go < len(enabled) / 2 else "Up"
    for _ in range(len(enabled) + 1):
        now = marked(enabled)
        if now == item:
            press("Return")
            return
        press(arrow)
        wait(lambda before=now: marked(enabled) != before, f"the next item on the way to {item.name!r}")
    fail(f"the menu does not come to {item.name!r}")


def marked(items):
    """The item that Return would choose."""
    return next((each for each in items if has(each, pyatspi.STATE_FOCUSED)), None)


class Program:
    """The program with a process number. Objects found once stay valid as long as their controls live."""

    def __init__(self, process):
        self.process = int(process)
        desktop = pyatspi.Registry.getDesktop(0)
        # What a program shows changes behind the back of every cache.
        desktop.setCacheMask(0)
        self.application = wait(lambda: next((each for each in children(desktop) if self.is_mine(each)), None),
                                "the program among those that assistive technology sees")
        self.main = wait(lambda: next((each for each in children(self.application) if each.name.startswith("Quillery")
                                       and role_of(each) == "frame"), None), "the main window")
        self.menu_bar = self.child(self.main, "menu bar")
        self.tool_bar = self.child(self.main, "tool bar")
        self.status_bar = self.child(self.main, "status bar")
        self.area = self.child(self.main, "layered pane")

    def menu(self, caption):
        """A menu of the menu bar: its item there, whose child is the menu."""
        return self.child(self.menu_bar, "menu item", caption)

    def open_menu(self, item):
        """Opens a menu of the menu bar by its access key, and returns it."""
        popup = children(item)[0]
        pressed = float("-inf")

        def is_open():
            # The toolkit sends each key over the bus and back. On a busy machine Alt comes back when the menu is open
            # already, and closes it again.
            nonlocal pressed
            if time.monotonic() > pressed + MENU_PATIENCE and not is_showing(popup):
                press(f"alt+{access_key(item)}")
                pressed = time.monotonic()
            return is_showing(popup)

        wait(is_open, f"the menu {item.name}")
        return popup

    def open_submenu(self, item):
        choose_item(item)
        popup = children(item)[0]
        wait(lambda: is_showing(popup), f"the menu {item.name}")
        return popup

    def close_menus(self):
        """Esc closes one menu after the other; the last one gives the keyboard back."""
        for item in children(self.menu_bar):
            for popup in children(item):
                while is_showing(popup):
                    press("Escape")

    def choose(self, *captions):
        """Chooses a menu item by the keyboard alone: the access keys where they are clear, the arrows elsewhere."""
        path = [self.menu(captions[0])]
        for caption in captions[1:]:
            path.append(self.child(children(path[-1])[0], "menu item", caption))
        self.choose_items(path)

    def choose_items(self, path):
        """The same for the items that lead to one and the item itself."""
        popup = self.open_menu(path[0])
        for item in path[1:-1]:
            self.open_submenu(item)
        choose_item(path[-1])
        wait(lambda: not is_showing(popup), f"the end of the menu after {path[-1].name!r}")

    def is_mine(self, application):
        try:
            return application.get_process_id() == self.process
        except Exception:  # pylint: disable=broad-except
            return False

    @staticmethod
    def child(accessible, role, name=None):
        for each in children(accessible):
            if role_of(each) == role and name in (None, each.name):
                return each
        return fail(f"{accessible.name!r} has no {role} {name or ''}")

    def dialogs(self):
        """The windows of the program other than its main one."""
        return [each for each in children(self.application)
                if each != self.main and role_of(each) in ("dialog", "alert", "file chooser", "font chooser", "frame")
                and is_showing(each)]

    def dialog(self):
        """The dialog that the program shows, waited for until it has the keyboard."""
        return wait(lambda: next((each for each in self.dialogs() if has(each, pyatspi.STATE_ACTIVE)), None),
                    "a dialog with the keyboard")

    def wait_for_no_dialog(self):
        wait(lambda: not self.dialogs(), lambda: f"the end of the dialogs {[each.name for each in self.dialogs()]}")
        wait(lambda: has(self.main, pyatspi.STATE_ACTIVE), "the main window to have the keyboard again")

    def documents(self):
        return [each for each in children(self.area) if role_of(each) == "frame"]

    def document(self):
        """The document window that has the keyboard, or had it last."""
        frames = self.documents()
        inside = [each for each in frames if has(each, pyatspi.STATE_FOCUSED) or has(each, pyatspi.STATE_ACTIVE)]
        return (inside or frames or [None])[0]

    def in_document(self, role, document=None):
        document = document or self.document()
        if document is None:
            return None
        return next((each for each in walk(document, lambda each: role_of(each) in ("frame", "filler"))
                     if role_of(each) == role), None)

    def outline(self, document=None):
        return self.in_document("tree", document)

    def text(self, document=None):
        """The text of the selected entry."""
        pane = self.in_document("text", document)
        if pane is None:
            return None
        return pane.queryText().getText(0, -1)

    def rows(self, document=None):
        """The outline as it is shown: for each row its label, level, signs and whether it is the selected one."""
        found = []
        for cell in self.cells(document):
            state = cell.getState()
            found.append(Row(cell.name, cell.description, state))
        return found

    def cells(self, document=None):
        tree = self.outline(document)
        return [] if tree is None else [each for each in children(tree) if role_of(each) == "table cell"]


class Row:
    def __init__(self, label, description, state):
        self.label = label
        level, _, tag = description.partition(", ")
        self.level = int(level.removeprefix("Level "))
        self.tagged = tag == "tagged"
        self.selected = state.contains(pyatspi.STATE_SELECTED)
        self.expandable = state.contains(pyatspi.STATE_EXPANDABLE)
        self.expanded = state.contains(pyatspi.STATE_EXPANDED)

    def __str__(self):
        """Like "  +Label# <": two blanks a level, + or - before a branch, # after a tagged entry, < after the
        selected one."""
        sign = ("-" if self.expanded else "+") if self.expandable else ""
        return f"{'  ' * (self.level - 1)}{sign}{self.label}{'#' if self.tagged else ''}{' <' if self.selected else ''}"


def run(test):
    """Runs a test and turns its failure into a message and a status."""
    try:
        test()
    except Failure as failure:
        print(f"FAIL: {failure}", file=sys.stderr)
        picture = os.environ.get("QUILLERY_ROAD_PICTURE")
        if picture:
            subprocess.run(["import", "-silent", "-window", "root", f"png:{picture}"], check=False)
        sys.exit(1)
