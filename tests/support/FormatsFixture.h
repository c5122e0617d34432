// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/modDoc.h"
#include "formats/Formats.h"
#include "formats/modDocV1.h"
#include "support/ErrorRecorder.h"
#include "support/FakePorts.h"
#include "support/OutlineText.h"
#include "util/ByteSink.h"

// Takes what is written into memory.
class MemorySink final : public ByteSink
{
public:
    void write(QByteArrayView more) override { bytes.append(more.data(), more.size()); }

    QByteArray bytes;
};

// The program's formats on documents whose panes and windows are fakes.
class FormatsFixture
{
public:
    FormatsFixture() { ports().formats = &m_formats; }

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

    static QByteArray savedNative(const Document &document)
    {
        MemorySink sink;
        modDocV1::DocSaveVersion(document, sink);
        return sink.bytes;
    }

    void closeAll()
    {
        while (fake.windows.active)
            fake.windows.active->window.close();
    }

    FakePorts fake;
    ErrorRecorder errors;

private:
    Formats m_formats;
};
