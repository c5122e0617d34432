// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/SealedDocument.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace rtf
{
class CharChange;
}

// A stretch of a text, in offsets of its plain characters, and what takes its place.
struct TextReplacement {
    int start;
    int length;
    QString text;

    bool operator==(const TextReplacement &) const = default;
};

// Fills an empty document with an entry's text: rich text, or characters (see AnsiCodec).
void readEntryText(const QByteArray &text, QTextDocument &document);

// Changes all characters, and how those look that are typed into an empty first paragraph. One step of undo.
void changeText(QTextDocument &document, const rtf::CharChange &change);

// Makes replacements, which must be in order and apart, and lie within paragraphs. Each new text looks like the
// beginning of what it replaces. One step of undo.
void replaceText(QTextDocument &document, const std::vector<TextReplacement> &replacements);

// An entry's text apart from the text pane, which makes the same of it at many times the cost.
class EntryText
{
public:
    // The base font is that of what names none.
    EntryText(const QByteArray &text, const QFont &base);

    // The characters as the text pane finds in them.
    QString findableText() const;
    // See changeText.
    void change(const rtf::CharChange &change);
    // See replaceText.
    void replace(const std::vector<TextReplacement> &replacements);
    // As it is stored before it is compressed.
    QByteArray toRtf() const;

private:
    SealedDocument m_document;
};
