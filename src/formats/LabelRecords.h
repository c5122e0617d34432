// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// How the records of a native file carry a label. The label's own record ends at its first closing brace, and other
// readers may end it at a line end; such a label stands once more, percent-encoded, in a record behind it, which they
// skip.
struct LabelRecords {
    // The value of "nodelabel".
    QByteArray value;
    // The value of "nodelabelexact"; empty when there is no need of one.
    QByteArray exact;
};

LabelRecords labelRecords(const QString &label);

// The label that "nodelabelexact" holds; nothing when it holds none, or not that of which "nodelabel" is read as
// `value`.
std::optional<QString> exactLabel(const QByteArray &exact, const QByteArray &value);
