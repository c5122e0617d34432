// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "panes/GoToFinder.h"

#include <QDialog>

#include <optional>

class QLabel;
class QLineEdit;
class QListView;
class QModelIndex;

// The line in which one types where to go, and below it what there is. It lies over the main window, near its top, and
// closes with Esc.
class frmGoTo final : public QDialog
{
    Q_OBJECT

public:
    frmGoTo(const GoToWorld &world, KnownEntryNames &known, QWidget *mainWindow);
    ~frmGoTo() override;

    // What was chosen; nothing where the line was closed.
    const std::optional<GoToTarget> &chosen() const { return m_chosen; }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    class Rows;
    class RowDelegate;

    void layOut(const QWidget &mainWindow);
    void find(const QString &typed);
    void moveBy(int rows);
    void tell();
    void choose(const QModelIndex &index);

    GoToFinder m_finder;
    QLineEdit *const m_line;
    QListView *const m_list;
    QLabel *const m_note;
    Rows *const m_rows;
    std::optional<GoToTarget> m_chosen;
};
