// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>

// Tells that something is being printed, and lets the user stop it. No other window can be used meanwhile.
class PrintProgress final : public QDialog
{
    Q_OBJECT

public:
    explicit PrintProgress(QWidget *parent = nullptr);

    // Lets the user act; false when the printing is to be stopped.
    bool goOn();

    void reject() override;

private:
    bool m_cancelled = false;
};
