// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "vault/TextComparison.h"

#include <QObject>

#include <map>
#include <optional>

class QPlainTextEdit;

// Scrolls two texts that were compared so that the words which both have stay beside each other.
class ScrolledTogether final : public QObject
{
    Q_OBJECT

public:
    ScrolledTogether(QPlainTextEdit &before, QPlainTextEdit &after);

    // Nothing lets each be scrolled alone.
    void setCompared(const std::optional<TextComparison> &compared);

private:
    void follow(const QPlainTextEdit &scrolled, const UnmatchedWords &its, QPlainTextEdit &other,
                const UnmatchedWords &others);

    std::optional<TextComparison> m_compared;
    bool m_isFollowing = false;
    // Where each stood when it was looked at last.
    std::map<const QPlainTextEdit *, int> m_last;
};

// The place in one text that is beside a place in another, by the words that both have.
qsizetype placeBeside(QStringView text, const UnmatchedWords &its, qsizetype place, QStringView other,
                      const UnmatchedWords &others);
