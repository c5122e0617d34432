# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT
"""A tour through every menu item and every key of the running program.

    command_tour.py PROCESS COMMAND_TABLES FOLDER

The program shows no document. The folder holds small.qly, which may be written, and locked.qly, which may not: each the
document of write_small_document in road.sh with a third entry. After every step the whole command surface is compared
with the tables, and at the end every item must have been chosen and every key pressed.
"""

import os
import sys
import time

import pyatspi
from assistive import (Program, children, fail, has, is_checked, is_enabled, is_showing, press, role_of, run, type_text,
                       wait, wait_equal, walk)
from command_surface import Surface, Tables, file_of

# The names that xdotool has for keys of the tables.
XDOTOOL = {"+": "KP_Add", "-": "KP_Subtract", "<": "comma", ",": "comma", ">": "period", ".": "period", "Del": "Delete"}


def typed(key):
    """A key of the tables as it is pressed."""
    name = XDOTOOL.get(key["key"], key["key"].lower() if len(key["key"]) == 1 else key["key"])
    return name if key["modifiers"] in ("", "keypad") else f'{key["modifiers"]}+{name}'


# Items that ask something first or show a window of their own; Esc ends it without any effect.
ASKING = {"mnuFileOpen", "mnuFileSaveAs", "mnuFileImportText", "mnuFileExportText", "mnuFilePrintSetup",
          "mnuFilePrintPreview", "mnuFilePrint", "mnuFilePrintEntry", "mnuFilePrintPreviewEntry", "mnuOutlineDelete",
          "mnuOutlineDeleteTaggedEntries", "mnuOutlineFont", "mnuEditClearEntryText", "mnuEditCurrentFont",
          "mnuEditDocumentFont", "mnuSearchFind", "mnuSearchReplace", "mnuToolsGoToAnything", "mnuToolsVersions", "mnuToolsRecover",
          "mnuHelpSearch",
          "mnuHelpAbout"}

# Those of them that are enabled without a document, but have nothing to ask then.
ASKING_OF_DOCUMENTS = {"mnuFilePrintEntry", "mnuFilePrintPreviewEntry", "mnuFileExportText"}

OPTIONS = {"mnuViewToolbar": "ViewToolbar", "mnuViewStatusBar": "ViewStatusbar",
           "mnuViewOptionsBackupOnSave": "Backup", "mnuViewOptionsAutoFitSplit": "AutoSplit",
           "mnuViewOptionsStartWithNewDoc": "StartWithNewDocument",
           "mnuViewOptionsStartWithPrevDocs": "StartWithLatestDocuments",
           "mnuViewOptionsClickToRenameEntry": "AutoLabelEdit"}

# What the pressed button of the toolbar says after a step; of the other steps it is not asked.
LEVELS = {f"mnuOutlineExpandLevel{level}": level for level in range(1, 8)}
LEVELS |= {"mnuOutlineExpandAll": -1}

FORMATS = {"mnuEditFormatBold": "Bold Text", "mnuEditFormatItalic": "Italic Text",
           "mnuEditFormatUnderline": "Underline Text", "mnuEditFormatCentre": "Centre Align Text",
           "mnuEditFormatRight": "Right Align Text", "mnuEditFormatLeft": "Left Align Text"}

# The beginning of the outline when entries were inserted and deleted again.
MADE = "-Notes|  Above|  -Below|    Above 2|    Child|  "

START = "-Notes|  First# <|  +Second|  Third"


class Tour:
    def __init__(self, process, tables, folder):
        self.program = Program(process)
        self.tables = Tables(tables)
        self.surface = Surface(self.program, self.tables)
        self.folder = folder
        self.chosen = set()
        self.pressed = set()
        # While everything is tried that a state offers, the states that were compared; None while each step is.
        self.compared = None

    # What the steps are made of.

    def look(self, when):
        if self.compared is not None:
            state = frozenset(self.surface.facts())
            if state in self.compared:
                return
            self.compared.add(state)
        self.surface.expect_as_the_tables_say(when)

    def rows(self):
        return "|".join(str(row) for row in self.program.rows())

    def expect(self, when, rows=None, text=None):
        if rows is not None:
            wait_equal(self.rows, rows, f"the outline after {when}")
        if text is not None:
            wait_equal(self.program.text, text, f"the text after {when}")
        self.look(f"after {when}")

    def answer(self, key):
        """Answers the dialog that is shown, or about to be."""
        self.program.dialog()
        press(key)
        self.program.wait_for_no_dialog()

    def choose(self, name, rows=None, text=None, answer=None, label=None):
        """Chooses an item: an answer is the key for the dialog that it shows, a label the name of the entry made."""
        if not self.tables.by_name[name]["bound"]:
            return
        self.surface.choose(name)
        self.finish(name, rows, text, answer, label)
        self.chosen.add(name)

    def key(self, keys, rows=None, text=None, answer=None, label=None):
        press(keys)
        self.finish(keys, rows, text, answer, label)
        self.pressed.add(keys)

    def finish(self, what, rows, text, answer, label):
        if answer:
            self.answer(answer)
        if label:
            type_text(label)
            press("Return")
        if what in OPTIONS:
            self.surface.options[OPTIONS[what]] = not self.surface.options[OPTIONS[what]]
        if what in ("mnuOutlineCopy", "alt+c"):
            self.surface.copied_in = self.program.document().name
        if what == "mnuOutlinePasteAndDelete":
            self.surface.copied_in = ""
        self.surface.expansion_level = LEVELS.get(what)
        self.expect(what, rows, text)

    def does_nothing(self, *keys):
        """Keys that have no effect now. An arrow behind them shows that they were all dealt with."""
        before = self.rows()
        press(*keys)
        self.pressed.update(keys)
        label = next(row.label for row in self.program.rows() if row.selected)
        press("Home")
        wait(lambda: self.program.rows()[0].selected, "the selection at the top")
        self.select(label)
        self.expect(f"{keys}, which have no effect", before)

    def select(self, label):
        """Moves to an entry's row with the arrows."""
        rows = self.program.rows()
        now = next(index for index, row in enumerate(rows) if row.selected)
        goal = next(index for index, row in enumerate(rows) if row.label == label)
        if goal != now:
            press(*(["Down" if goal > now else "Up"] * abs(goal - now)))
        wait(lambda: any(row.selected and row.label == label for row in self.program.rows()), f"the entry {label}")

    def focus_is(self, role):
        pane = self.program.in_document(role)
        wait(lambda: has(pane, pyatspi.STATE_FOCUSED), f"the keyboard in the {role}")

    def captions(self):
        return [os.path.basename(file_of(each)) for each in self.program.documents()]

    def open(self, file):
        """Opens a file by the dialog."""
        self.surface.choose("mnuFileOpen")
        self.program.dialog()
        type_text(os.path.join(self.folder, file))
        press("Return")
        self.program.wait_for_no_dialog()
        wait(lambda: self.captions() and file_of(self.program.document()).endswith(file), f"the document {file}")
        self.look(f"after opening {file}")

    def close(self):
        """Closes the active document, without saving when that is asked."""
        count = len(self.captions())
        if self.surface.copied_in == self.program.document().name:
            self.surface.copied_in = ""
        self.surface.choose("mnuFileClose")
        self.chosen.add("mnuFileClose")
        wait(lambda: self.program.dialogs() or len(self.captions()) < count, "a question or the document's end")
        if self.program.dialogs():
            self.answer("alt+n")
        wait(lambda: len(self.captions()) < count, "the document's end")
        self.look("after closing a document")

    # The tour.

    def menus_open_by_their_access_keys(self):
        for item in self.tables.items:
            if item["kind"] != "menu" or item["parent"] or not self.surface.is_enabled(item["name"]):
                continue
            popup = self.program.open_menu(self.surface.items[item["name"]])
            for each in children(popup):
                if role_of(each) == "menu item" and is_showing(each) != bool(each.name):
                    fail(f"the open menu {item['name']} {'hides' if each.name else 'shows'} {each.name!r}")
            press("Escape", "Escape")
            wait(lambda shown=popup: not is_showing(shown), f"the end of the menu {item['name']}")

    def everything_enabled(self, within=""):
        """Chooses whatever can be chosen, and leaves the windows as they were."""
        self.compared = set()
        for item in self.tables.commands():
            name = item["name"]
            if not name.startswith(within) or name in ("mnuFileExit", "mnuFileClose"):
                continue
            if self.surface.is_enabled(name):
                self.try_item(name)
        self.compared = None
        self.look("after trying everything")

    def try_item(self, name):
        count = len(self.captions())
        asks = name in ASKING and (count > 0 or name not in ASKING_OF_DOCUMENTS)
        self.choose(name, answer="Escape" if asks else None)
        if name == "mnuViewMoveSplit":
            press("Escape")
        if name in OPTIONS:
            self.choose(name)
        if name in ("mnuFileNew", "mnuFileImportClipboard", "mnuHelpContents", "mnuHelpSearch"):
            wait(lambda: len(self.captions()) == count + 1, f"a document by {name}")
            self.close()

    def no_document(self):
        self.look("with no document")
        self.menus_open_by_their_access_keys()
        press("ctrl+s", "ctrl+shift+s", "ctrl+w", "ctrl+p", "ctrl+h", "ctrl+b", "ctrl+i", "ctrl+u")
        of_panes = [typed(key) for key in self.tables.keys if key["road"] == "panes"]
        press(*of_panes, "ctrl+Tab", "Menu", "Insert", "Delete", "alt+o", "alt+e")
        self.everything_enabled()
        if self.captions():
            fail(f"with no document there came {self.captions()}")

    def moving(self):
        self.key("alt+Down", "-Notes|  +Second|  First# <|  Third")
        self.key("alt+End", "-Notes|  +Second|  Third|  First# <")
        self.does_nothing("alt+Down", "alt+End")
        self.key("alt+Home", START)
        self.does_nothing("alt+Up", "alt+Home", "alt+Left", "alt+Right")
        self.choose("mnuOutlineMoveDown", "-Notes|  +Second|  First# <|  Third")
        self.choose("mnuOutlineMoveUp", START)
        self.choose("mnuOutlineMoveLast", "-Notes|  +Second|  Third|  First# <")
        self.choose("mnuOutlineMoveFirst", START)
        self.select("Third")
        self.key("alt+Up", "-Notes|  First#|  Third <|  +Second")
        self.key("alt+Down", "-Notes|  First#|  +Second|  Third <")
        self.key("alt+Right", "-Notes|  First#|  -Second|    Deep|    Third <")
        self.key("alt+Left", "-Notes|  First#|  -Second|    Deep|  Third <")
        self.choose("mnuOutlineIndent", "-Notes|  First#|  -Second|    Deep|    Third <")
        self.choose("mnuOutlineUnindent", "-Notes|  First#|  -Second|    Deep|  Third <")

    def from_the_text(self):
        """The outline's keys once more, with the keyboard in the text."""
        self.choose("mnuViewGoToText")
        self.focus_is("text")
        top, end = "-Notes|  First#|  -Second|    Deep|  ", "-Notes|  First#|  -Second|    Deep|  Third <"
        for keys, rows in (("alt+Up", "-Notes|  First#|  Third <|  -Second|    Deep"), ("alt+Down", end),
                           ("alt+Home", "-Notes|  Third <|  First#|  -Second|    Deep"), ("alt+End", end),
                           ("alt+Right", "-Notes|  First#|  -Second|    Deep|    Third <"), ("alt+Left", end),
                           ("alt+t", top + "Third# <"), ("alt+t", end),
                           ("alt+c", end), ("alt+p", top + "Third|  Third <")):
            self.key(keys, rows)
        self.key("alt+Delete", end, answer="alt+y")
        self.focus_is("text")
        second = "-Notes|  First#|  -Second <|    Deep|  Third"
        deep = "-Notes|  First#|  -Second|    Deep <|  Third"
        for keys, rows, afterwards in (("alt+a", top + "New <|  Third", second), ("alt+b", top + "New <|  Third", second),
                                       ("alt+i", top + "  New <|  Third", deep)):
            self.key(keys, rows, label="New")
            self.choose("mnuViewGoToText")
            self.key("alt+Delete", afterwards, answer="alt+y")
        self.key("F2", deep.replace("Deep", "Deeper"), label="Deeper")
        self.choose("mnuViewGoToText")
        self.key("F2", deep, label="Deep")
        self.focus_is("tree")

    def expanding(self):
        self.select("Second")
        self.key("KP_Subtract", "-Notes|  First#|  +Second <|  Third")
        self.does_nothing("KP_Subtract")
        self.key("KP_Add", "-Notes|  First#|  -Second <|    Deep|  Third")
        self.does_nothing("KP_Add")
        self.choose("mnuOutlineCollapse", "-Notes|  First#|  +Second <|  Third")
        self.choose("mnuOutlineExpand", "-Notes|  First#|  -Second <|    Deep|  Third")
        # The tagged entry is out of sight at times.
        self.surface.tags_hidden_in = self.program.document().name
        for level in range(1, 8):
            self.choose(f"mnuOutlineExpandLevel{level}")
        self.choose("mnuOutlineCollapseAll", "+Notes <")
        self.surface.tags_hidden_in = ""
        self.choose("mnuOutlineExpandAll", "-Notes <|  First#|  -Second|    Deep|  Third")

    def inserting(self):
        top, end = "-Notes|  Above|  ", "|  First#|  -Second|    Deep|  Third"
        self.select("First")
        self.key("alt+a", "-Notes|  Above <" + end, label="Above")
        self.key("alt+b", top + "Below <" + end, label="Below")
        self.key("alt+i", top + "-Below|    Child <" + end, label="Child")
        self.choose("mnuOutlineInsertAbove", top + "-Below|    Above 2 <|    Child" + end, label="Above 2")
        self.choose("mnuOutlineInsertBelow", top + "-Below|    Above 2|    Below 2 <|    Child" + end, label="Below 2")
        self.choose("mnuOutlineInsertChild", top + "-Below|    Above 2|    -Below 2|      Child 2 <|    Child" + end,
                    label="Child 2")
        self.key("F2", top + "-Below|    Above 2|    -Below 2|      By key <|    Child" + end, label="By key")
        self.choose("mnuOutlineRename", top + "-Below|    Above 2|    -Below 2|      By menu <|    Child" + end,
                    label="By menu")
        self.key("alt+Delete", top + "-Below|    Above 2|    -Below 2|      By menu <|    Child" + end, answer="Escape")
        self.key("alt+Delete", top + "-Below|    Above 2|    Below 2 <|    Child" + end, answer="alt+y")
        self.choose("mnuOutlineDelete", top + "-Below|    Above 2 <|    Child" + end, answer="alt+y")

    def copying(self):
        top, end = MADE, "|  -Second|    Deep|  Third"
        self.select("Third")
        self.key("alt+c", top + "First#|  -Second|    Deep|  Third <")
        self.select("First")
        self.key("alt+p", top + "First#|  Third <" + end)
        self.choose("mnuOutlineCopy", top + "First#|  Third <" + end)
        self.choose("mnuOutlinePaste", top + "First#|  Third|  Third <" + end)
        self.choose("mnuOutlineCopy", top + "First#|  Third|  Third <" + end)
        self.choose("mnuOutlinePasteAndDelete", top + "First#|  Third|  Third <" + end)

    def tagging_and_sorting(self):
        top, end = MADE, "|  -Second|    Deep|  Third"
        self.key("alt+t", top + "First#|  Third|  Third# <" + end)
        self.key("alt+t", top + "First#|  Third|  Third <" + end)
        self.choose("mnuOutlineTaggedEntry", top + "First#|  Third|  Third# <" + end)
        self.choose("mnuOutlinePasteTaggedEntries", top + "First#|  Third|  Third#|  First|  Third <" + end)
        self.choose("mnuOutlineDeleteTaggedEntries", top + "Third|  First|  Third <" + end, answer="alt+y")
        self.select("Notes")
        in_order = MADE.replace("Notes", "Notes <") + "First" + end + "|  Third|  Third"
        self.choose("mnuOutlineSortCurrent", in_order)
        self.choose("mnuOutlineSortAll", in_order)
        self.choose("mnuOutlineFont", in_order, answer="Escape")

    def editing(self):
        self.select("First")
        self.choose("mnuViewGoToText")
        self.focus_is("text")
        self.choose("mnuEditSelectAll")
        self.choose("mnuEditCut", text="")
        self.choose("mnuEditPaste", text="First text")
        self.choose("mnuEditSelectAll")
        self.choose("mnuEditCopy")
        press("Right")
        self.choose("mnuEditPasteSpecial", text="First textFirst text")
        press("ctrl+a")
        self.choose("mnuEditDelete", text="")
        type_text("one two")
        for name, text in (("mnuEditCaseUpper", "ONE TWO"), ("mnuEditCaseLower", "one two"),
                           ("mnuEditCaseProperName", "One Two"), ("mnuEditCaseToggle", None)):
            press("ctrl+a")
            self.choose(name, text=text)
        press("ctrl+End")
        self.choose("mnuEditInsertTab")
        self.choose("mnuEditInsertLongDate")
        self.choose("mnuEditInsertShortDate")
        self.choose("mnuEditInsertTime")
        self.choose("mnuEditClearEntryText", text="", answer="alt+y")
        self.key("ctrl+Tab", text="\t")
        self.key("ctrl+d")
        self.key("ctrl+m")

    def formatting(self):
        press("ctrl+a")
        for name, button in FORMATS.items():
            self.choose(name)
            wait(lambda shown=button: is_checked(self.surface.buttons[shown]), f"the pressed button {button}")
        for name, keys in (("mnuEditFormatBold", "ctrl+b"), ("mnuEditFormatItalic", "ctrl+i"),
                           ("mnuEditFormatUnderline", "ctrl+u")):
            button = self.surface.buttons[FORMATS[name]]
            for pressed in (False, True):
                self.key(keys)
                wait(lambda shown=button, on=pressed: is_checked(shown) == on, f"the button of {name} to follow {keys}")
        for name in ("StrikeThrough", "Bullet", "Indent", "Unindent"):
            self.choose(f"mnuEditFormat{name}")
        self.choose("mnuEditCurrentFont", answer="Escape")
        self.choose("mnuEditDocumentFont", answer="Escape")
        sizes = [self.size_of_text()]
        for keys in ("ctrl+shift+period", "ctrl+shift+comma"):
            self.key(keys)
            wait(lambda: self.size_of_text() != sizes[-1], f"another size by {keys}")
            sizes.append(self.size_of_text())
        if not sizes[0] < sizes[1] > sizes[2]:
            fail(f"the sizes of the text were {sizes}")

    def size_of_text(self):
        attributes = self.program.in_document("text").queryText().getAttributes(0)[0]
        return float(dict(each.split(":", 1) for each in attributes.split(";"))["size"].removesuffix("pt"))

    def context_menus(self):
        for pane, menu in (("text", "mnuEdit"), ("tree", "mnuoutline")):
            self.focus_is(pane)
            press("Menu")
            popup = children(self.surface.items[menu])[0]
            wait(lambda shown=popup: is_showing(shown), f"the context menu of the {pane}")
            press("Escape")
            wait(lambda shown=popup: not is_showing(shown), f"the end of the context menu of the {pane}")
            if pane == "text":
                self.choose("mnuViewGoToOutline")

    def searching(self):
        self.select("Third")
        self.surface.choose("mnuSearchFind")
        self.program.dialog()
        type_text("text")
        press("alt+h", "Down", "alt+f")
        pane = self.program.in_document("text")
        wait_equal(lambda: pane.queryText().caretOffset, len("Third text"), "the place of the caret after finding")
        press("Escape")
        self.program.wait_for_no_dialog()
        self.look("after finding")
        self.chosen.add("mnuSearchFind")
        self.choose("mnuSearchReplace", answer="Escape")
        self.key("ctrl+f", answer="Escape")
        self.key("ctrl+h", answer="Escape")
        self.choose("mnuViewGoToText")
        press("ctrl+Home")
        wait_equal(lambda: pane.queryText().caretOffset, 0, "the place of the caret at the beginning")
        self.choose("mnuSearchRepeat")
        wait_equal(lambda: pane.queryText().caretOffset, len("Third text"), "the place of the caret after repeating")
        press("ctrl+Home")
        wait_equal(lambda: pane.queryText().caretOffset, 0, "the place of the caret at the beginning again")
        self.key("F3")
        wait_equal(lambda: pane.queryText().caretOffset, len("Third text"), "the place of the caret after F3")

    def width(self, role):
        return self.program.in_document(role).queryComponent().getExtents(pyatspi.DESKTOP_COORDS).width

    def viewing(self):
        for name, bar in (("mnuViewToolbar", self.program.tool_bar), ("mnuViewStatusBar", self.program.status_bar)):
            self.choose(name)
            wait(lambda hidden=bar: not is_showing(hidden), f"the bar to hide by {name}")
            self.choose(name)
            wait(lambda shown=bar: is_showing(shown), f"the bar to be shown by {name}")
        for name in OPTIONS:
            if name.startswith("mnuViewOptions"):
                self.choose(name)
                self.choose(name)
        self.choose("mnuViewGoToText")
        self.focus_is("text")
        self.choose("mnuViewGoToOutline")
        self.focus_is("tree")

    def undoing(self):
        rows = self.rows()
        self.key("alt+Down")
        changed = self.rows()
        self.key("ctrl+z", rows)
        self.key("ctrl+shift+z", changed)
        self.key("ctrl+z", rows)
        self.key("ctrl+y", changed)
        self.choose("mnuToolsUndo", rows)
        self.choose("mnuToolsRedo", changed)
        self.choose("mnuToolsUndo", rows)
        self.choose("mnuToolsJoin")
        self.choose("mnuToolsUndo", rows)
        self.key("ctrl+j")
        self.key("ctrl+z", rows)
        self.choose("mnuViewGoToText")
        self.focus_is("text")
        press("ctrl+Home")
        self.choose("mnuToolsSplit")
        self.choose("mnuToolsUndo", rows)
        self.key("ctrl+shift+j")
        self.key("ctrl+z", rows)
        self.choose("mnuViewGoToOutline")
        self.focus_is("tree")
        for _ in range(2):
            self.choose("mnuToolsHistory")
        for _ in range(2):
            self.choose("mnuToolsFindEverywhere")
        self.choose("mnuToolsVersions", answer="Escape")
        self.choose("mnuToolsRecover", answer="Escape")
        self.key("F6", rows)

    def going(self):
        self.choose("mnuViewGoToOutline")
        self.focus_is("tree")
        rows = self.rows()
        # Long enough for both entries to count as visited.
        time.sleep(1.5)
        press("Home")
        wait(lambda: self.rows() != rows, "the selection at the top")
        time.sleep(1.5)
        below = self.rows()
        self.choose("mnuToolsGoToAnything", below, answer="Escape")
        self.key("ctrl+k", below, answer="Escape")
        self.choose("mnuToolsBack", rows)
        self.choose("mnuToolsForward", below)
        self.key("ctrl+alt+Left", rows)
        self.key("ctrl+alt+Right", below)
        self.choose("mnuToolsBack", rows)

    def splitting(self):
        self.choose("mnuViewMaximiseLeft")
        wait(lambda: self.width("tree") > 3 * self.width("text"), "a wide outline")
        self.choose("mnuViewMaximiseRight")
        wait(lambda: 3 * self.width("tree") < self.width("text"), "a wide text")
        self.choose("mnuViewEqualiseLeftAndRight")
        wait(lambda: abs(self.width("tree") - self.width("text")) < 20, "panes of one width")
        half = self.width("tree")
        self.choose("mnuViewFitSplit")
        wait(lambda: self.width("tree") < half, "an outline as wide as its labels")
        fitted = self.width("tree")
        ghost = next(each for each in walk(self.program.document()) if each.name == "New place of the split")
        for end in ("Escape", "Return"):
            self.choose("mnuViewMoveSplit")
            wait(lambda: is_showing(ghost), "the bar that shows where the split goes")
            press("Right", "Right", "Right", end)
            wait(lambda: not is_showing(ghost), "the end of the split's move")
            if end == "Escape" and self.width("tree") != fitted:
                fail("Esc moved the split")
        wait(lambda: self.width("tree") > fitted, "the split moved by keys")

    def frames(self):
        """The document windows' places, from the first opened to the last."""
        return [each.queryComponent().getExtents(pyatspi.DESKTOP_COORDS) for each in self.program.documents()]

    def windows(self):
        self.choose("mnuFileNew", label="New")
        self.expect("naming a new document", "New <")
        first, second = self.program.documents()
        for expected in (first, second):
            press("ctrl+F6")
            self.pressed.add("ctrl+F6")
            wait(lambda shown=expected: self.program.document() == shown, "the next document by Ctrl+F6")
            self.look("after Ctrl+F6")
        self.choose("mnuWindowTileHorizontal")
        wait(lambda: self.are_tiled("x", "width", "y"), "windows above each other")
        self.choose("mnuWindowTileVertical")
        wait(lambda: self.are_tiled("y", "height", "x"), "windows beside each other")
        self.choose("mnuWindowCascade")
        wait(lambda: self.are_tiled("width", "height", "x", "y"), "windows behind each other")
        self.choose("mnuWindowArrangeIcons")
        self.close()
        self.key("ctrl+n", label="Newer")
        self.expect("naming another new document", "Newer <")
        self.key("ctrl+w", answer="alt+n")
        wait_equal(lambda: len(self.captions()), 1, "the documents after Ctrl+W")
        self.look("after Ctrl+W")
        self.key("ctrl+o", answer="Escape")
        self.key("ctrl+q", answer="Escape")

    def are_tiled(self, same, also_same, *different):
        one, other = self.frames()
        return (getattr(one, same) == getattr(other, same) and getattr(one, also_same) == getattr(other, also_same)
                and all(getattr(one, name) != getattr(other, name) for name in different))

    def save_as(self, name, file):
        """Chooses an item that asks for a file to write."""
        path = os.path.join(self.folder, file)
        self.surface.choose(name)
        self.program.dialog()
        press("ctrl+a")
        type_text(path)
        press("Return")
        self.program.wait_for_no_dialog()
        wait(lambda: os.path.exists(path), f"the file {file}")
        self.chosen.add(name)
        self.look(f"after {name}")

    def files(self):
        path = os.path.join(self.folder, "small.qly")
        for name in ("mnuFileSave", "mnuFileSaveAll"):
            before = os.stat(path).st_mtime_ns
            self.choose(name)
            wait(lambda: os.stat(path).st_mtime_ns != before, f"the saved file by {name}")
        before = os.stat(path).st_mtime_ns
        self.key("ctrl+s")
        wait(lambda: os.stat(path).st_mtime_ns != before, "the saved file by Ctrl+S")
        self.key("ctrl+shift+s", answer="Escape")
        self.key("ctrl+p", answer="Escape")
        self.save_as("mnuFileSaveAs", "copy.qly")
        wait_equal(self.captions, ["copy.qly"], "the documents after saving under another name")
        rows = self.rows()
        self.choose("mnuFileExportClipboard")
        self.choose("mnuFileImportClipboard")
        self.whole_outline_came_as_a_text()
        self.close()
        self.save_as("mnuFileExportText", "text.txt")
        self.surface.choose("mnuFileImportText")
        self.program.dialog()
        type_text(os.path.join(self.folder, "text.txt"))
        press("Return")
        self.program.wait_for_no_dialog()
        self.chosen.add("mnuFileImportText")
        self.whole_outline_came_as_a_text()
        self.close()
        self.expect("exporting and importing", rows)
        for name in sorted(ASKING):
            if name.startswith("mnuFile") and name not in self.chosen:
                self.choose(name, answer="Escape")
        self.close()
        # The first of the recent files is the one that was closed last.
        self.program.open_menu(self.surface.items["mnuFile"])
        press("1")
        wait_equal(self.captions, ["copy.qly"], "the documents after choosing a recent file")
        self.look("after opening a recent file")
        self.close()

    def whole_outline_came_as_a_text(self):
        wait(lambda: len(self.captions()) == 2, "another document")
        wait(lambda: all(part in self.program.text() for part in ("Root text", "0.4.1 Deep")), "the outline as a text")

    def helping(self):
        for _ in range(2):
            self.choose("mnuHelpContents")
            wait_equal(self.captions, ["Help.qly"], "the documents by the help command")
        self.choose("mnuHelpSearch", answer="Escape")
        self.choose("mnuHelpAbout", answer="Return")
        self.close()

    def read_only(self):
        self.open("locked.qly")
        self.expect("opening a document that may not be written", START)
        self.menus_open_by_their_access_keys()
        self.does_nothing("alt+a", "alt+b", "alt+i", "alt+p", "alt+Left", "alt+Right", "alt+Up", "alt+Home",
                          "alt+Delete", "F2", "ctrl+d", "ctrl+m", "ctrl+Tab", "ctrl+shift+comma", "ctrl+shift+period")
        self.select("Second")
        self.key("KP_Add", "-Notes|  First#|  -Second <|    Deep|  Third")
        self.key("KP_Subtract", "-Notes|  First#|  +Second <|  Third")
        self.select("First")
        self.key("alt+c", START)
        # The tagged entry is out of sight at times.
        self.surface.tags_hidden_in = self.program.document().name
        self.everything_enabled()
        self.choose("mnuViewGoToText")
        self.focus_is("text")
        before = self.program.text()
        press("ctrl+d", "ctrl+m", "ctrl+Tab", "ctrl+v", "x", "Delete", "ctrl+shift+period")
        self.everything_enabled("mnuEdit")
        self.expect("everything that a read-only text offers", text=before)
        self.close()
        self.surface.tags_hidden_in = ""

    def leaving(self):
        """Yes ends the program, when a document is open at all; there is none to be saved."""
        self.surface.choose("mnuFileExit")
        self.chosen.add("mnuFileExit")

    def everything_was_tried(self):
        missed = [item["name"] for item in self.tables.commands() if item["bound"] and item["name"] not in self.chosen]
        if missed:
            fail(f"never chosen: {missed}")
        for key in self.tables.keys:
            name = (key["modifiers"], key["key"])
            if typed(key) not in self.pressed:
                fail(f"never pressed: {name}")

    def run(self):
        self.no_document()
        self.open("small.qly")
        self.expect("opening", START)
        self.menus_open_by_their_access_keys()
        self.moving()
        self.from_the_text()
        self.expanding()
        self.inserting()
        self.copying()
        self.tagging_and_sorting()
        self.editing()
        self.formatting()
        self.context_menus()
        self.searching()
        self.viewing()
        self.undoing()
        self.going()
        self.splitting()
        self.windows()
        self.files()
        self.helping()
        self.read_only()
        self.leaving()
        self.everything_was_tried()


def main():
    tour = Tour(*sys.argv[1:])
    tour.run()


run(main)
