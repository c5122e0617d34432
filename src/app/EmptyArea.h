// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>
#include <QWidget>

class QLabel;
class QVBoxLayout;

// What stands in the place of the document windows while there is none: what can be done now, each a button that runs
// its menu item, with the item's key. Return and Space press them, the arrows and Tab lead from one to the next.
class EmptyArea final : public QWidget
{
    Q_OBJECT

public:
    // How many of the recent files it offers at most.
    static constexpr int recentFilesShown = 5;

    // Lies over a widget in its parent, hidden at first.
    explicit EmptyArea(QWidget &place);

    // Full paths in the order of the recent-file items, the first of which is item 1.
    void setRecentFiles(const QStringList &files);
    void setTourOffered(bool offered);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    // A menu item is to be chosen, by its object's name such as "mnuFileNew".
    void itemChosen(const QString &item);
    void tourChosen();

private:
    QWidget &m_place;
    QWidget *m_column;
    QWidget *m_tour;
    QLabel *m_recentHead;
    QVBoxLayout *m_recentRows;
};
