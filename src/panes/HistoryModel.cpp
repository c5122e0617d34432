// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "panes/HistoryModel.h"

#include <QFont>
#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

bool isSameStep(const History::StepInfo &one, const History::StepInfo &other)
{
    return one.name == other.name && one.time == other.time && one.entry == other.entry;
}

} // namespace

HistoryModel::HistoryModel(QObject *parent)
    : QAbstractListModel(parent)
{
}

void HistoryModel::setHistory(History *history)
{
    if (m_history == history)
        return;
    if (m_history)
        m_history->disconnect(this);
    m_history = history;
    if (history) {
        connect(history, &History::stepsChanged, this, &HistoryModel::schedule);
        connect(history, &History::positionChanged, this, &HistoryModel::schedule);
    }
    refresh();
}

void HistoryModel::schedule()
{
    if (!std::exchange(m_scheduled, true))
        QMetaObject::invokeMethod(this, &HistoryModel::refresh, Qt::QueuedConnection);
}

void HistoryModel::refresh()
{
    m_scheduled = false;
    std::vector<History::StepInfo> steps = m_history ? m_history->steps() : std::vector<History::StepInfo>();
    const int position = m_history ? m_history->position() : 0;
    // Going back and forth leaves the rows where they are, under the mouse that may just be pressing one.
    if (std::ranges::equal(steps, m_steps, isSameStep)) {
        m_position = position;
        if (rowCount() > 0)
            Q_EMIT dataChanged(index(0), index(rowCount() - 1));
    } else {
        beginResetModel();
        m_steps = std::move(steps);
        m_position = position;
        endResetModel();
    }
    Q_EMIT refreshed();
}

int HistoryModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() || m_steps.empty() ? 0 : static_cast<int>(m_steps.size()) + 1;
}

QString HistoryModel::nameOf(int row) const
{
    if (row == 0)
        return u"Before all of this"_s;
    QString name = m_steps[static_cast<std::size_t>(row) - 1].name;
    if (!name.isEmpty())
        name[0] = name[0].toUpper();
    return name;
}

QString HistoryModel::spoken(int row) const
{
    const QString place = row == m_position ? u"the document is here"_s : row > m_position ? u"undone"_s : u"done"_s;
    return nameOf(row) + u", "_s + place;
}

QVariant HistoryModel::data(const QModelIndex &index, int role) const
{
    const int row = index.row();
    if (!index.isValid() || row > static_cast<int>(m_steps.size()))
        return {};
    switch (role) {
    case Qt::DisplayRole: {
        const QDateTime time = row == 0 ? QDateTime() : m_steps[static_cast<std::size_t>(row) - 1].time;
        const QString clock =
            time.isValid() ? QLocale::system().toString(time.time(), QLocale::ShortFormat) : QString();
        return clock.isEmpty() ? nameOf(row) : clock + u"  "_s + nameOf(row);
    }
    case Qt::ToolTipRole:
        return nameOf(row);
    case Qt::AccessibleTextRole:
        return spoken(row);
    case Qt::FontRole: {
        QFont font;
        font.setBold(row == m_position);
        return row == m_position ? QVariant(font) : QVariant();
    }
    default:
        return {};
    }
}
