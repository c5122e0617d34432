// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "app/AppPorts.h"
#include "platform/LockKeys.h"

#include <QStringList>

#include <map>

// Fakes of the application's own ports.

class FakeMainWindow final : public MainWindow
{
public:
    bool minimised() const override { return isMinimised; }

    WindowPlace place() const override { return current; }

    void setPlace(const WindowPlace &place) override
    {
        current = place;
        ++timesPlaced;
    }

    WindowStates states() const override { return currentStates; }

    void setMaximised(bool mainWindow, bool documents) override
    {
        currentStates.mainMaximised = mainWindow;
        currentStates.documentsMaximised = documents;
    }

    void setPanes(const QString &panes) override { currentStates.panes = panes; }

    void fitToScreen() override { ++timesFitted; }

    void setToolbarVisible(bool visible) override { toolbar = visible; }

    void setStatusBarVisible(bool visible) override { statusBar = visible; }

    bool isMinimised = false;
    bool toolbar = true;
    bool statusBar = true;
    WindowPlace current{15, 30, 4500, 3000};
    int timesPlaced = 0;
    int timesFitted = 0;
    WindowStates currentStates;
};

class FakeRecentFileItems final : public RecentFileItems
{
public:
    void hideAll() override { shown.clear(); }

    void showItem(int iItem, const QString &caption) override
    {
        Q_ASSERT(iItem == shown.size() + 1);
        shown.append(caption);
    }

    void setSeparatorVisible(bool visible) override { separator = visible; }

    // The captions shown, from item 1.
    QStringList shown;
    bool separator = false;
};

class FakeLockKeys final : public LockKeys
{
public:
    std::optional<bool> isOn(LockKey key) const override
    {
        const auto found = states.find(key);
        return found == states.end() ? std::nullopt : std::optional(found->second);
    }

    void toggle(LockKey key) override { states[key] = !states[key]; }

    // A key that is not in it is one that the platform does not tell of.
    std::map<LockKey, bool> states{{LockKey::Caps, false}, {LockKey::Num, true}};
};
