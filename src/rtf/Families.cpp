// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/Families.h"

#include "rtf/EditBlock.h"
#include "rtf/Limits.h"

#include <QSet>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>

namespace rtf
{

namespace
{

// Which families a document has, as far as it may have them.
class FamilySet
{
public:
    // Whether the format's families are among those that may stay.
    bool take(const QTextFormat &format)
    {
        const QStringList families = format.toCharFormat().fontFamilies().toStringList();
        if (families.isEmpty() || m_known.contains(families)) {
            return true;
        }
        if (m_known.size() >= mostFamilies) {
            return false;
        }
        m_known.insert(families);
        return true;
    }

private:
    QSet<QStringList> m_known;
};

void takeBetween(FamilySet &families, const QTextDocument &document, int from, int to)
{
    for (QTextBlock block = document.findBlock(from); block.isValid() && block.position() < to; block = block.next()) {
        families.take(block.charFormat());
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            families.take(it.fragment().charFormat());
        }
    }
}

} // namespace

void boundFamilies(QTextDocument &document, int from, int to)
{
    // No format has more than one.
    if (document.allFormats().size() <= mostFamilies) {
        return;
    }
    FamilySet families;
    takeBetween(families, document, 0, from);
    takeBetween(families, document, to, document.characterCount());
    QTextCharFormat common;
    common.setFontFamilies({document.defaultFont().family()});
    QTextCursor cursor(&document);
    const EditBlock edit(cursor);
    for (QTextBlock block = document.findBlock(from); block.isValid() && block.position() < to; block = block.next()) {
        if (!families.take(block.charFormat())) {
            cursor.setPosition(block.position());
            cursor.mergeBlockCharFormat(common);
        }
        // Changing a stretch may make one of it and the next, so that its places are gathered first.
        std::vector<std::pair<int, int>> beyond;
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const int start = std::max(from, fragment.position());
            const int end = std::min(to, fragment.position() + fragment.length());
            if (start < end && !families.take(fragment.charFormat())) {
                beyond.emplace_back(start, end);
            }
        }
        for (const auto &[start, end] : beyond) {
            cursor.setPosition(start);
            cursor.setPosition(end, QTextCursor::KeepAnchor);
            cursor.mergeCharFormat(common);
        }
    }
}

} // namespace rtf
