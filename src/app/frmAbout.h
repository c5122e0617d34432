// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>

// The about box: what the program is, where it runs and which version it is.
class frmAbout final : public QDialog
{
    Q_OBJECT

public:
    explicit frmAbout(QWidget *parent = nullptr);
};
