// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/Ports.h"

#include <QString>

class QFileDialog;

// Message boxes, file dialogs and the font dialog over the active window.
class MessageDialogs final : public Dialogs
{
public:
    Answer ask(const QString &question) override;
    Answer askPlainly(const QString &question, Answer preset) override;
    void inform(const QString &text) override;
    void informPlainly(const QString &text) override;
    void warn(const QString &text) override;
    std::optional<QString> askOpenName(const FileDialogRequest &request) override;
    // A name without an extension gets that of the chosen filter, or else the default one. Asks again for a folder that
    // does not exist.
    std::optional<QString> askSaveName(const FileDialogRequest &request) override;
    std::optional<FontAttributes> askFont(const FontDialogRequest &request) override;

private:
    std::optional<QString> chosenName(QFileDialog &dialog);

    // Where the last dialog ended; empty before the first.
    QString m_folder;
};
