// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/Ports.h"

// The desktop's clipboard. Text is read with CR LF line breaks, whichever the program that put it there used, and put
// there with the LF that other programs expect.
class DesktopClipboard final : public Clipboard
{
public:
    void clear() override;
    QString text() const override;
    void setText(const QString &text) override;
    QByteArray richText() const override;
    void setRichText(const QByteArray &rtf) override;
    QByteArray picture() const override;
};
