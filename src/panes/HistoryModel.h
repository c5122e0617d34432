// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/History.h"

#include <QAbstractListModel>
#include <QPointer>

#include <optional>
#include <vector>

// The steps of a document as a list: the state before them, then one row a step. Row n is the state after n steps. It
// follows the history; many changes at once are one.
class HistoryModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    explicit HistoryModel(QObject *parent);

    // Whether a row is the state that was saved last.
    static constexpr int SavedRole = Qt::UserRole;

    // Null for none.
    void setHistory(History *history);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;

    // The row of the state that the document is in.
    int position() const { return m_position; }

    // Brings the rows up to date at once.
    void refresh();

Q_SIGNALS:
    void refreshed();

private:
    using Place = std::vector<History::StepInfo>::iterator;

    void schedule();
    void takeSteps(std::vector<History::StepInfo> steps);
    void takePosition();
    Place removeSteps(Place begin, Place end);
    void insertSteps(std::size_t at, std::vector<History::StepInfo> steps);
    QString nameOf(int row) const;
    QString spoken(int row) const;

    QPointer<History> m_history;
    std::vector<History::StepInfo> m_steps;
    int m_position = 0;
    std::optional<int> m_saved;
    bool m_scheduled = false;
};
