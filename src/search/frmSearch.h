// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>

#include <array>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;

// The dialog of Find, and of Find and replace: which of the two, the search mode says when it is made. It stays off the
// match that it finds.
class frmSearch final : public QDialog
{
    Q_OBJECT

public:
    explicit frmSearch(QWidget *parent = nullptr);
    ~frmSearch() override;

protected:
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    // The places of the controls among those of their kind.
    enum Input { Expression, Replacement, Where };

    enum Check { MatchCase, WholeWord, Backwards };

    enum Button { Find, Replace, ReplaceAll, Close };

    void makeControls();
    void Form_Load();
    void LoadFindAndReplaceLists();
    void ApplySettings();
    void EnableControls();
    // Runs the handler of that name.
    void inputChanged(const char *name);
    void cmdInput_Click(Button index);
    void find();
    // Moves the dialog where it hides neither the match, a rectangle of the screen, nor itself.
    void moveOff(const QRect &match);

    bool m_isReplacing;
    bool m_loading = false;
    // Whether a replacement was given to the history.
    bool m_hasReplacement = false;
    std::array<QComboBox *, 3> cmbInput{};
    std::array<QLabel *, 3> lblInput{};
    std::array<QCheckBox *, 3> chkInput{};
    std::array<QPushButton *, 4> cmdInput{};
};
