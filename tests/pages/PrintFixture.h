// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/StoredText.h"
#include "support/ErrorRecorder.h"
#include "support/FakeDocument.h"
#include "support/FakePorts.h"
#include "support/OutlineText.h"
#include "support/RawOutline.h"

// A document to print from, as the active one.
class PrintFixture
{
public:
    PrintFixture() { errors.clear(); }

    // A document of that outline, each entry with a one-line text "text of <label>".
    Document &plant(const QStringList &lines)
    {
        Document &document = fake.windows.createDocument();
        plantOutline(rawOutline(document).tree, lines);
        for (const Entry *entry = document.tree.root(); entry; entry = nextInOutline(entry, document.tree.root()))
            setText(document, entry->label(), "{\\rtf1 text of " + entry->label().toLatin1() + "}");
        return document;
    }

    static void setText(Document &document, const QString &label, const QByteArray &text)
    {
        rawOutline(document).tree.setStoredText(entryLabelled(document.tree, label), NodeTextCompressIfRequired(text));
    }

    static PrintExtent extent(Document &document, const QString &label, bool bDescendants)
    {
        return {&document, entryLabelled(document.tree, label), bDescendants};
    }

    FakePorts fake;
    ErrorRecorder errors;
};
