// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/PlaceTrail.h"

#include <QObject>
#include <QTimer>

class Dispatcher;
class DocumentArea;
class QWidget;
class frmDocument;

// Follows the user from entry to entry and from document to document, and leads back. A place counts when it was gone
// to on purpose (by a click, a search, the list of steps), or was shown for a while: walking by the arrow keys passes
// through entries, and so do commands that leave another entry selected. The mouse's buttons for going back and forth
// do so anywhere in the main window.
class PlaceKeeper final : public QObject
{
    Q_OBJECT

public:
    PlaceKeeper(DocumentArea &area, Dispatcher &dispatcher, QWidget &mainWindow);

    const PlaceTrail &trail() const { return m_trail; }

    // How long, in milliseconds, a place is shown before it counts; below 0 it never does by itself.
    void setRest(int milliseconds);
    // What is shown counts.
    void settle();

    void goBack();
    void goForward();
    // Shows an entry, in its document's window; one that is not there any more is not gone to.
    void goTo(const Place &place);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void changed();

private:
    void follow(frmDocument *form);
    void note(bool isMeant);
    void noteOf(const frmDocument *form);

    DocumentArea &m_area;
    Dispatcher &m_dispatcher;
    QWidget &m_mainWindow;
    PlaceTrail m_trail;
    QTimer m_rest;
    bool m_rests = true;
};
