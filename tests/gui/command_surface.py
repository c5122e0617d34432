# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT
"""The menu bar and the toolbar of the running program, held against the tables."""

import json
import os
import re
import stat
import subprocess

import pyatspi
from assistive import (access_key, children, fail, has, is_checked, is_enabled, is_showing, role_of, wait, walk)

# The options as a first start has them, by the names of the tables' facts.
FIRST_OPTIONS = {"ViewToolbar": True, "ViewStatusbar": True, "AutoSplit": True, "Backup": True, "AutoLabelEdit": False,
                 "StartWithNewDocument": False, "StartWithLatestDocuments": True}


def without_marks(caption):
    return caption.replace("&", "")


def marked_letter(caption):
    found = re.search(r"&(.)", caption)
    return found.group(1).lower() if found else ""


def file_of(document):
    return document.name.removesuffix(" (read-only)")


class Tables:
    """What the tables say of any state, from the program that links them."""

    def __init__(self, program):
        self.process = subprocess.Popen([program], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True,
                                        env={**os.environ, "QT_QPA_PLATFORM": "offscreen"})
        rows = json.loads(self.process.stdout.readline())
        self.items = rows["items"]
        self.buttons = rows["buttons"]
        self.keys = rows["keys"]
        self.by_name = {item["name"]: item for item in self.items}
        self.known = {}

    def commands(self):
        return [item for item in self.items if item["kind"] == "command"]

    def path(self, name):
        """The captions that lead to an item, without their marks."""
        captions = []
        while name:
            captions.insert(0, without_marks(self.by_name[name]["caption"]))
            name = self.by_name[name]["parent"]
        return captions

    def expected(self, facts):
        line = " ".join(sorted(facts))
        if line not in self.known:
            self.process.stdin.write(line + "\n")
            self.process.stdin.flush()
            self.known[line] = json.loads(self.process.stdout.readline())
        return self.known[line]


class Surface:
    def __init__(self, program, tables):
        self.program = program
        self.tables = tables
        self.options = dict(FIRST_OPTIONS)
        # Facts that no look at the window tells.
        self.copied_in = ""
        self.tags_hidden_in = ""
        self.expansion_level = None
        self.items = {}
        for top in [item for item in tables.items if not item["parent"]]:
            self.items[top["name"]] = program.menu(without_marks(top["caption"]))
        for name in [item["name"] for item in tables.items if item["kind"] == "menu"]:
            self.find_items(name)
        # The button of a tagged entry says what it does then.
        self.buttons = {"Tag Entry" if each.name == "Untag entry" else each.name: each
                        for each in walk(program.tool_bar) if role_of(each) in ("push button", "check box")}

    def find_items(self, menu):
        """Pairs the rows of a menu with what it holds: as many, in the same order, with the same words and letters."""
        rows = [item for item in self.tables.items if item["parent"] == menu]
        # Recent files stand among them in any number.
        held = [each for each in children(children(self.items[menu])[0]) if not re.match(r"\d+ .", each.name)]
        if len(held) != len(rows):
            fail(f"{menu} has {[each.name for each in held]}, not {[row['name'] for row in rows]}")
        for row, each in zip(rows, held):
            if (row["kind"] == "separator") != (role_of(each) == "separator"):
                fail(f"{row['name']} is a {role_of(each)}")
            if row["kind"] == "separator":
                continue
            self.items[row["name"]] = each
            if row["name"] in ("mnuOutlineTaggedEntry", "mnuToolsUndo", "mnuToolsRedo"):
                continue
            told = row["shortcut"].lower() or marked_letter(row["caption"])
            if each.name != without_marks(row["caption"]) or access_key(each) != told:
                fail(f"{row['name']} reads {each.name!r} with {access_key(each)!r}, not {row['caption']!r}")

    def facts(self):
        """The state as the windows show it."""
        found = {name for name, on in self.options.items() if on}
        documents = self.program.documents()
        found.add(f"documentCount={len(documents)}")
        if any(self.is_writable(each) for each in documents):
            found.add("AnyWritable")
        # Only the items tell whether there is a step; they name it.
        for name, fact in (("mnuToolsUndo", "CanUndo"), ("mnuToolsRedo", "CanRedo")):
            if " " in self.items[name].name:
                found.add(fact)
        # And whether there is a place to go to.
        for name, fact in (("mnuToolsBack", "CanGoBack"), ("mnuToolsForward", "CanGoForward")):
            if has(self.items[name], pyatspi.STATE_ENABLED):
                found.add(fact)
        document = self.program.document()
        if document is None:
            return found
        rows = self.program.rows(document)
        if self.is_writable(document):
            # No file of the tour changes its permissions while it is open.
            found |= {"ActiveWritable", "ActiveSavable", "Writable", "Savable"}
        found.add("Selected")
        found |= self.entry_facts(rows)
        if document.name == self.tags_hidden_in or any(row.tagged for row in rows):
            found.add("TaggedExist")
        if self.copied_in:
            found.add("Copied")
        text = self.program.in_document("text", document)
        found.add("TextFocus" if has(text, pyatspi.STATE_FOCUSED) else "OutlineFocus")
        if self.expansion_level is not None:
            found.add(f"ExpansionLevel={self.expansion_level}")
        return found

    @staticmethod
    def is_writable(document):
        try:
            return bool(os.stat(file_of(document)).st_mode & stat.S_IWUSR)
        except FileNotFoundError:
            return True

    @staticmethod
    def entry_facts(rows):
        at = next((index for index, row in enumerate(rows) if row.selected), None)
        if at is None:
            fail(f"no entry is selected among {[str(row) for row in rows]}")
        row = rows[at]
        after = [each.level for each in rows[at + 1:]]
        before = [each.level for each in reversed(rows[:at])]
        found = set()
        if row.level == 1:
            found.add("IsRoot")
        if row.level == 2:
            found.add("ParentIsRoot")
        if row.expandable:
            found.add("HasChildren")
        if row.expanded:
            found.add("Expanded")
        if row.tagged:
            found.add("Tagged")
        # The next row of the same or a lesser level decides.
        next_level = next((level for level in after if level <= row.level), 0)
        found.add("HasPrevious" if next((level for level in before if level <= row.level), 0) == row.level
                  else "FirstSibling")
        if next_level != row.level:
            found.add("LastSibling")
        if next_level > 0:
            found.add("CanMoveDown")
        return found

    def differences(self):
        """Where the window is not as the tables say; empty when it is."""
        facts = self.facts()
        expected = self.tables.expected(facts)
        found = []
        for name, item in self.items.items():
            row = self.tables.by_name[name]
            if row["kind"] == "indexed":
                continue
            state = item.getState()
            if state.contains(pyatspi.STATE_ENABLED) != expected["enabled"][name]:
                found.append(f"{name} is {'' if not expected['enabled'][name] else 'not '}enabled")
            if not row["marked"] and state.contains(pyatspi.STATE_CHECKED) != expected["checked"].get(name, False):
                found.append(f"{name} is {'' if not expected['checked'].get(name) else 'not '}checked")
        tag = self.items["mnuOutlineTaggedEntry"]
        if tag.name != without_marks(expected["tagCaption"]):
            found.append(f"the tag item reads {tag.name!r}, not {expected['tagCaption']!r}")
        found += self.button_differences(expected)
        return found and found + [" ".join(sorted(facts))]

    def button_differences(self, expected):
        found = []
        for key, shown in expected["shown"].items():
            if is_showing(self.buttons[key]) != (shown and self.options["ViewToolbar"]):
                found.append(f"the button {key} is {'' if not shown else 'not '}shown")
        for key, pressed in expected["pressed"].items():
            if self.expansion_level is not None and is_checked(self.buttons[key]) != pressed:
                found.append(f"the button {key} is {'' if not pressed else 'not '}pressed")
        return found

    def expect_as_the_tables_say(self, when):
        last = []

        def none():
            last[:] = self.differences()
            return not last

        wait(none, lambda: f"the command surface to be as the tables say {when}:\n  " + "\n  ".join(last))

    def is_enabled(self, name):
        """Whether an item can be chosen: it and the menus that it is in."""
        while name:
            if not is_enabled(self.items[name]):
                return False
            name = self.tables.by_name[name]["parent"]
        return True

    def choose(self, name):
        """Chooses an item by the keyboard, through the menus that it is in."""
        path = []
        step = name
        while step:
            path.insert(0, self.items[step])
            step = self.tables.by_name[step]["parent"]
        self.program.choose_items(path)
