// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "panes/Pane.h"

#include <QObject>

#include <functional>
#include <span>
#include <vector>

class QAction;
class QDockWidget;
class QMainWindow;

// The panes around the documents, each in a dock of its own that its command shows and hides. F6 goes from a document
// to the panes that are shown and from the last one back, and Esc from any back at once.
class PaneDocks final : public QObject
{
    Q_OBJECT

public:
    // The menus' items are found below the window by their names. The last argument gives the keyboard back to the
    // active document.
    PaneDocks(QMainWindow &mainWindow, const PaneHost &host, std::span<const PaneRow> table,
              std::function<void()> goToDocument);
    ~PaneDocks() override;

    void follow(Document *active);

    // Which panes are shown and where all of them stand, as a text to be kept; empty while none was ever shown.
    QString state() const;
    void restore(const QString &state);

    // Gives the keyboard to the pane after the one that has it, to the first, or back to the document.
    void goToNext();

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    // state() answers differently.
    void stateChanged();

private:
    struct Docked {
        std::unique_ptr<Pane> pane;
        QDockWidget *dock = nullptr;
        QAction *item = nullptr;
    };

    void add(const PaneRow &row);
    void toggle(std::size_t place);
    void enter(std::size_t place);
    bool holdsFocus(const QDockWidget &dock) const;

    QMainWindow &m_mainWindow;
    const PaneHost m_host;
    std::function<void()> m_goToDocument;
    std::vector<Docked> m_docked;
    bool m_wasUsed = false;
};
