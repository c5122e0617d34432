// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/BreakableText.h"

#include <QLabel>
#include <QStringList>
#include <QTextBoundaryFinder>

QString breakable(const QString &text)
{
    constexpr int longWord = 20;
    QStringList words = text.split(u' ');
    for (QString &word : words) {
        if (word.size() <= longWord)
            continue;
        QString parts;
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, word);
        for (qsizetype start = 0, end = 0; (end = finder.toNextBoundary()) >= 0; start = end) {
            if (start > 0)
                parts += QChar(0x200b);
            parts += QStringView(word).sliced(start, end - start);
        }
        word = parts;
    }
    return words.join(u' ');
}

void setBreakableText(QLabel &label, const QString &text)
{
    label.setText(breakable(text));
    label.setAccessibleName(text);
}
