// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "panes/GoToFinder.h"

class Dispatcher;
class DocumentArea;
class PlaceKeeper;
class QWidget;

// Asks for an entry, a command, a document or a recent file, and goes there.
class GoToAnything
{
public:
    GoToAnything(const DocumentArea &area, Dispatcher &dispatcher, PlaceKeeper &places, QWidget &mainWindow);

private:
    void show();
    void goTo(const GoToTarget &target);

    const DocumentArea &m_area;
    Dispatcher &m_dispatcher;
    PlaceKeeper &m_places;
    QWidget &m_mainWindow;
    KnownEntryNames m_known;
};
