// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

// What takes the place of the hits that are checked.
class FindReplaceRow final : public QWidget
{
    Q_OBJECT

public:
    explicit FindReplaceRow(QWidget *parent);

    QString replacement() const;

    // How many hits are checked, of how many; and whether they can be replaced now.
    void setChecked(qint64 checked, qint64 all, Qt::CheckState state, bool isPossible);
    // What is to be known before: why nothing can be replaced, or which documents stay as they are.
    void setNote(const QString &note);

    std::vector<QWidget *> widgets() const;

Q_SIGNALS:
    // The replacement is another one.
    void edited();
    void allChecked(bool checked);
    void applied();
    // Up or down was pressed in the field.
    void walked(int rows);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QLineEdit *const m_text;
    QCheckBox *const m_all;
    QPushButton *const m_apply;
    QLabel *const m_note;
};
