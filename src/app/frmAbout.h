// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>

// The about box: what the program is, where it runs and which version it is. Without its button it is the banner that
// stands on the screen while the program starts.
class frmAbout final : public QDialog
{
    Q_OBJECT

public:
    enum Purpose { Box, Banner };

    explicit frmAbout(QWidget *parent = nullptr, Purpose purpose = Box);

private:
    void cmdOK_Click();
};
