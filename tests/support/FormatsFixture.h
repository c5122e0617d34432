// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/modDoc.h"
#include "support/ErrorRecorder.h"
#include "support/FakePorts.h"
#include "support/NativeBytes.h"
#include "support/RawOutline.h"

// Documents in the formats' own fonts, whose panes and windows are fakes.
class FormatsFixture
{
public:
    // A document with that outline and the fonts that the format's examples have.
    FakeDocument &plant(const QStringList &lines)
    {
        Document &document = fake.windows.createDocument();
        plantOutline(rawOutline(document).tree, lines);
        rawOutline(document).outlineFont.setName(QStringLiteral("MS Sans Serif"));
        rawOutline(document).outlineFont.setSize(82500);
        rawOutline(document).textFont.setName(QStringLiteral("Arial"));
        rawOutline(document).textFont.setSize(100000);
        return fake.windows.fakeOf(document);
    }

    // The active document, if any.
    FakeDocument *active() const { return fake.windows.active; }

    static QByteArray savedNative(const Document &document) { return nativeBytes(document.outline()); }

    void closeAll()
    {
        while (fake.windows.active)
            fake.windows.active->window.close();
    }

    FakePorts fake;
    ErrorRecorder errors;
};
