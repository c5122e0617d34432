// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/modDoc.h"
#include "support/ErrorRecorder.h"
#include "support/FakePorts.h"
#include "support/NativeBytes.h"

// Documents in the formats' own fonts, whose panes and windows are fakes.
class FormatsFixture
{
public:
    // A document with that outline and the fonts that the format's examples have.
    FakeDocument &plant(const QStringList &lines)
    {
        Document &document = fake.windows.createDocument();
        plantOutline(document.tree, lines);
        document.m_fntOutlineFont.setName(QStringLiteral("MS Sans Serif"));
        document.m_fntOutlineFont.setSize(82500);
        document.m_fntTextFont.setName(QStringLiteral("Arial"));
        document.m_fntTextFont.setSize(100000);
        return fake.windows.fakeOf(document);
    }

    // The active document, if any.
    FakeDocument *active() const { return fake.windows.active; }

    static QByteArray savedNative(const Document &document) { return nativeBytes(*document.outline); }

    void closeAll()
    {
        while (fake.windows.active)
            fake.windows.active->window.close();
    }

    FakePorts fake;
    ErrorRecorder errors;
};
