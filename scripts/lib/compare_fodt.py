# SPDX-FileCopyrightText: 2026 The Quillery developers
# SPDX-License-Identifier: MIT
"""compare_fodt.py THEIRS OURS: how far the flat OpenDocument texts of two folders agree in text and formatting.

Paragraphs are matched by their text. Characters are compared one by one in their looks and links, paragraphs in theirs,
in the level of their list and in the cell where they stand; blanks count for nothing but the text. Fails when THEIRS
has a text that OURS lacks, which is one that could not be loaded.
"""

import collections
import difflib
import pathlib
import sys
import xml.etree.ElementTree as ET

NS = {
    "office": "urn:oasis:names:tc:opendocument:xmlns:office:1.0",
    "style": "urn:oasis:names:tc:opendocument:xmlns:style:1.0",
    "text": "urn:oasis:names:tc:opendocument:xmlns:text:1.0",
    "fo": "urn:oasis:names:tc:opendocument:xmlns:xsl-fo-compatible:1.0",
    "svg": "urn:oasis:names:tc:opendocument:xmlns:svg-compatible:1.0",
    "draw": "urn:oasis:names:tc:opendocument:xmlns:drawing:1.0",
    "table": "urn:oasis:names:tc:opendocument:xmlns:table:1.0",
    "xlink": "http://www.w3.org/1999/xlink",
}
CHARACTER = ("bold", "italic", "underline", "strike", "position", "font", "size", "colour", "background", "link")
LENGTHS = (
    ("left", "fo:margin-left"), ("right", "fo:margin-right"), ("first line", "fo:text-indent"),
    ("above", "fo:margin-top"), ("below", "fo:margin-bottom"),
)
PARAGRAPH = (
    "alignment", "left", "right", "first line", "above", "below", "line height", "border", "list", "cell", "page break",
)


def name(prefixed):
    prefix, local = prefixed.split(":")
    return "{%s}%s" % (NS[prefix], local)


def inches(value):
    """A length in inches, rounded to a twentieth of a point; percentages and the like are 0."""
    units = {"in": 1.0, "cm": 1 / 2.54, "mm": 1 / 25.4, "pt": 1 / 72.0}
    for unit, factor in units.items():
        if value and value.endswith(unit):
            return round(float(value[: -len(unit)]) * factor, 2)
    return 0.0


class Document:
    """The paragraphs of a file: (text, paragraph properties, properties of each character)."""

    def __init__(self, path):
        root = ET.parse(path).getroot()
        self.fonts = {
            face.get(name("style:name")): face.get(name("svg:font-family"), "").strip("'")
            for face in root.iter(name("style:font-face"))
        }
        self.styles = {}
        self.defaults = {}
        for style in root.iter(name("style:style")):
            self.styles[style.get(name("style:family")), style.get(name("style:name"))] = style
        for style in root.iter(name("style:default-style")):
            self.defaults[style.get(name("style:family"))] = style
        self.lists = {
            style.get(name("style:name")): {int(level.get(name("text:level"))): level for level in style}
            for style in root.iter(name("text:list-style"))
        }
        self.paragraphs = []
        self.breaks = False  # the table that comes begins a page
        body = root.find("office:body/office:text", NS)
        self.walk(body)

    def walk(self, element, lists=(), cells=()):
        for child in element:
            if child.tag in (name("text:p"), name("text:h")):
                self.add_paragraph(child, lists, cells)
            elif child.tag == name("text:list"):
                self.walk(child, lists + (child.get(name("text:style-name")),), cells)
            elif child.tag == name("table:table"):
                self.walk_table(child, cells)
            elif child.tag not in (name("text:note"), name("office:annotation"), name("text:tracked-changes")):
                self.walk(child, lists, cells)

    def begins_page(self, style, kind):
        """Whether a style says to begin a page; None when it says nothing. LibreOffice lets a section begin by naming a
        page style, which the first one of a text does as well."""
        properties = style.find("style:%s-properties" % kind, NS)
        broken = None if properties is None else properties.get(name("fo:break-before"))
        if style.get(name("style:master-page-name")) and self.paragraphs:
            return True
        return None if broken is None else broken == "page"

    def walk_table(self, table, cells):
        for style in self.chain("table", table.get(name("table:style-name"))):
            self.breaks = self.breaks or bool(self.begins_page(style, "table"))
        for row, line in enumerate(self.rows_of(table)):
            place = 0
            for cell in line:
                if cell.tag not in (name("table:table-cell"), name("table:covered-table-cell")):
                    continue
                if cell.tag == name("table:table-cell"):
                    spans = tuple(int(cell.get(name("table:number-%s-spanned" % what), "1")) for what in ("rows", "columns"))
                    self.walk(cell, (), cells + ((row, place) + spans,))
                place += int(cell.get(name("table:number-columns-repeated"), "1"))

    def rows_of(self, table):
        """The rows of a table, without those of tables in it."""
        rows = []
        for child in table:
            if child.tag == name("table:table-row"):
                rows.append(child)
            elif child.tag in (name("table:table-header-rows"), name("table:table-rows"), name("table:table-row-group")):
                rows.extend(self.rows_of(child))
        return rows

    def list_indents(self, lists):
        """The indents that a list gives its paragraphs: those of the level that is as deep as the list."""
        named = [style for style in lists if style]
        level = self.lists.get(named[-1] if named else None, {}).get(len(lists))
        label = None if level is None else level.find(".//style:list-level-label-alignment", NS)
        if label is None:
            return {}
        return {"left": inches(label.get(name("fo:margin-left"))), "first line": inches(label.get(name("fo:text-indent")))}

    def chain(self, family, style_name):
        """The styles of a name, from the most general one on."""
        found = []
        while style_name and (family, style_name) in self.styles and len(found) < 20:
            style = self.styles[family, style_name]
            found.insert(0, style)
            style_name = style.get(name("style:parent-style-name"))
        if family in self.defaults:
            found.insert(0, self.defaults[family])
        return found

    def character(self, inherited, style):
        properties = dict(inherited)
        text = style.find("style:text-properties", NS)
        if text is None:
            return properties
        weight = text.get(name("fo:font-weight"))
        if weight is not None:
            properties["bold"] = weight == "bold"
        slant = text.get(name("fo:font-style"))
        if slant is not None:
            properties["italic"] = slant == "italic"
        line = text.get(name("style:text-underline-style"))
        if line is not None:
            properties["underline"] = line != "none"
        font = text.get(name("style:font-name"))
        if font is not None:
            properties["font"] = self.fonts.get(font, font)
        size = text.get(name("fo:font-size"))
        if size is not None and size.endswith("pt"):
            properties["size"] = round(float(size[:-2]), 1)
        line = text.get(name("style:text-line-through-style"))
        if line is not None:
            properties["strike"] = line != "none"
        position = text.get(name("style:text-position"))
        if position is not None:
            properties["position"] = position.split()[0]
        background = text.get(name("fo:background-color"))
        if background is not None:
            properties["background"] = background
        colour = text.get(name("fo:color"))
        if text.get(name("style:use-window-font-color")) == "true":
            properties["colour"] = "automatic"
        elif colour is not None:
            properties["colour"] = "automatic" if colour == "#000000" else colour
        return properties

    def add_paragraph(self, element, lists, cells):
        base = {"bold": False, "italic": False, "underline": False, "strike": False, "position": "0%", "font": "",
                "size": 12.0, "colour": "automatic", "background": "transparent", "link": ""}
        look = {"alignment": "start", "left": 0.0, "right": 0.0, "first line": 0.0, "above": 0.0, "below": 0.0,
                "line height": "100%", "border": "", "list": len(lists), "cell": cells, "page break": False}
        styles = self.chain("paragraph", element.get(name("text:style-name")))
        for style in styles:
            if lists and style is styles[-1]:
                look.update(self.list_indents(lists))
            base = self.character(base, style)
            begins_page = self.begins_page(style, "paragraph")
            if begins_page is not None:
                look["page break"] = begins_page
            paragraph = style.find("style:paragraph-properties", NS)
            if paragraph is None:
                continue
            alignment = paragraph.get(name("fo:text-align"))
            if alignment is not None:
                look["alignment"] = {"left": "start", "right": "end"}.get(alignment, alignment)
            for key, attribute in LENGTHS:
                if paragraph.get(name(attribute)) is not None:
                    look[key] = inches(paragraph.get(name(attribute)))
            for attribute in ("fo:line-height", "style:line-height-at-least"):
                height = paragraph.get(name(attribute))
                if height is not None:
                    look["line height"] = height if height.endswith("%") else "%.2f" % inches(height)
            borders = [(paragraph.get(name("fo:border")) or "none")] * 4
            for i, side in enumerate(("top", "left", "bottom", "right")):
                borders[i] = paragraph.get(name("fo:border-" + side)) or borders[i]
            if any(border != "none" for border in borders):
                look["border"] = ", ".join("none" if b == "none" else " ".join(b.split()[1:]) for b in borders)
        look["page break"] = look["page break"] or self.breaks
        self.breaks = False
        text = []
        characters = []
        later = []

        def put(string, properties):
            string = string.replace("\u2006", "")  # LibreOffice puts it beside some blanks
            text.append(string)
            characters.extend([properties] * len(string))

        def run(node, properties):
            put(node.text or "", properties)
            for child in node:
                tag = child.tag
                if tag == name("text:s"):
                    put(" " * int(child.get(name("text:c"), "1")), properties)
                elif tag == name("text:tab"):
                    put("\t", properties)
                elif tag == name("text:line-break"):
                    put("\n", properties)
                elif tag in (name("text:span"), name("text:a")):
                    inner = dict(properties, link=child.get(name("xlink:href"), properties["link"]))
                    for style in self.chain("text", child.get(name("text:style-name"))):
                        if style is not self.defaults.get("text"):
                            inner = self.character(inner, style)
                    run(child, inner)
                elif tag in (name("text:note"), name("office:annotation")):
                    pass
                elif tag.startswith("{%s}" % NS["draw"]):
                    later.append(child)
                else:
                    run(child, properties)
                put(child.tail or "", properties)

        run(element, base)
        self.paragraphs.append(("".join(text), look, characters))
        for frame in later:
            self.walk(frame, (), cells)


def compare(theirs, ours, agreed, total, differences):
    one = [paragraph for paragraph in theirs.paragraphs if paragraph[0].strip()]
    other = [paragraph for paragraph in ours.paragraphs if paragraph[0].strip()]
    matcher = difflib.SequenceMatcher(None, [p[0].strip() for p in one], [p[0].strip() for p in other], autojunk=False)
    matched = 0
    for block in matcher.get_matching_blocks():
        matched += block.size
        for i in range(block.size):
            (text, look, characters), (other_text, other_look, other_characters) = one[block.a + i], other[block.b + i]
            for key in PARAGRAPH:
                total[key] += 1
                if look[key] == other_look[key]:
                    agreed[key] += 1
                else:
                    differences[key, str(look[key]), str(other_look[key])] += 1
            start = len(text) - len(text.lstrip())
            other_start = len(other_text) - len(other_text.lstrip())
            for k in range(len(text.strip())):
                if text[start + k].isspace():
                    continue
                a, b = characters[start + k], other_characters[other_start + k]
                for key in CHARACTER:
                    total[key] += 1
                    if a[key] == b[key]:
                        agreed[key] += 1
                    else:
                        differences[key, str(a[key]), str(b[key])] += 1
    total["text"] += max(len(one), len(other))
    agreed["text"] += matched
    for tag, i1, i2, j1, j2 in matcher.get_opcodes():
        if tag != "equal":
            differences["text", repr([p[0][:40] for p in one[i1:i2]][:2]), repr([p[0][:40] for p in other[j1:j2]][:2])] += 1


def main():
    theirs, ours = (pathlib.Path(folder) for folder in sys.argv[1:3])
    all_agreed, all_total = collections.Counter(), collections.Counter()
    refused = []
    for path in sorted(theirs.glob("*.rtf")):
        if not path.with_suffix(".fodt").exists():
            print("%s: cannot be loaded as it is" % path.stem)
    for path in sorted(theirs.glob("*.fodt")):
        if not (ours / path.name).exists():
            refused.append(path.stem)
            continue
        agreed, total, differences = collections.Counter(), collections.Counter(), collections.Counter()
        compare(Document(path), Document(ours / path.name), agreed, total, differences)
        all_agreed.update(agreed)
        all_total.update(total)
        if differences:
            print(path.stem)
            for (key, a, b), count in differences.most_common(6):
                print("    %s: %s became %s (%d)" % (key, a, b, count))
    print("\nShare that agrees")
    for key in ("text",) + PARAGRAPH + CHARACTER:
        if all_total[key]:
            print("    %-10s %7.3f %% of %d" % (key, 100.0 * all_agreed[key] / all_total[key], all_total[key]))
    print("    %-10s %7.3f %%" % ("all", 100.0 * sum(all_agreed.values()) / max(1, sum(all_total.values()))))
    if refused:
        sys.exit("Refused when Quillery has written it: " + ", ".join(refused))


main()
