// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "panes/Pane.h"

#include <QPointer>

class HistoryList;

// The steps of the active document, of which each can be gone back or forth to: with a click, or with Enter.
class HistoryPane final : public Pane
{
public:
    explicit HistoryPane(Dispatcher &dispatcher);

    QString name() const override;

    Qt::DockWidgetArea area() const override { return Qt::RightDockWidgetArea; }

    QWidget *makeWidget() override;
    void follow(Document *active) override;

private:
    Dispatcher &m_dispatcher;
    QPointer<HistoryList> m_list;
};
