// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QTextDocument>
#include <QVariant>

// A text document that fetches nothing: what a text only names (a file, an address) does not exist for it. Pictures
// that are part of the text are added to it as resources.
class SealedDocument final : public QTextDocument
{
    Q_OBJECT

public:
    using QTextDocument::QTextDocument;

protected:
    QVariant loadResource(int, const QUrl &) override { return QVariant(); }
};
