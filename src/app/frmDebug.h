// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>

class QPlainTextEdit;

// The diagnostic window: what the active document's panes hold, for whoever looks into the program's workings.
class frmDebug final : public QDialog
{
    Q_OBJECT

public:
    explicit frmDebug(QWidget *parent = nullptr);

    // Shows the window over the active one and returns when it is closed.
    static void showModally();

private:
    void Form_Load();
    void ShowDetails();
    void cmdInput_Click();

    QPlainTextEdit *const m_details;
};
