// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/SealedDocument.h"
#include "vault/LiveStretch.h"

#include <QByteArray>
#include <QString>

class QTextCursor;

// A text document of its own that becomes, stretch by stretch, what another one is in another thread, so that the whole
// text can be written out without that one. It has no layout.
class FollowedText
{
public:
    // What a stored text is read as; nothing follows one that cannot be inflated whole.
    FollowedText(const QByteArray &storedText, const BaseFont &baseFont);

    // False where the stretch does not fit what is there, which is then of no use any more.
    bool take(const LiveStretch &stretch);

    QByteArray toRtf() const;

private:
    // So many characters and paragraphs as the other one has.
    bool agreesWith(const LiveStretch &stretch) const;
    bool replace(const LiveStretch &stretch);
    bool insert(const LiveStretch &stretch, QTextCursor &cursor);
    bool formatParagraphs(const LiveStretch &stretch, int firstParagraph);
    bool takeIntoLists(const LiveStretch &stretch, int firstParagraph);
    void takeBaseFont(const BaseFont &font);

    SealedDocument m_document;
    BaseFont m_baseFont;
};
