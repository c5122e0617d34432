// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "panes/HistoryModel.h"

#include <QFont>
#include <QLocale>

#include <algorithm>
#include <iterator>
#include <unordered_set>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{

// Steps that became one have a new number; another name or time is none.
bool isSameStep(const History::StepInfo &one, const History::StepInfo &other)
{
    return one.serial == other.serial;
}

} // namespace

HistoryModel::HistoryModel(QObject *parent)
    : QAbstractListModel(parent)
{
}

void HistoryModel::setHistory(History *history)
{
    if (m_history == history && (history || m_steps.empty()))
        return;
    if (m_history)
        m_history->disconnect(this);
    m_history = history;
    if (history) {
        connect(history, &History::stepsChanged, this, &HistoryModel::schedule);
        connect(history, &History::positionChanged, this, &HistoryModel::schedule);
    }
    // Numbers of steps tell them apart within one history only.
    beginResetModel();
    m_steps = history ? history->steps() : std::vector<History::StepInfo>();
    takePosition();
    endResetModel();
    Q_EMIT refreshed();
}

void HistoryModel::schedule()
{
    if (!std::exchange(m_scheduled, true))
        QMetaObject::invokeMethod(this, &HistoryModel::refresh, Qt::QueuedConnection);
}

void HistoryModel::takePosition()
{
    m_position = m_history ? m_history->position() : 0;
    m_saved = m_history ? m_history->savedPosition() : std::nullopt;
}

void HistoryModel::refresh()
{
    m_scheduled = false;
    takeSteps(m_history ? m_history->steps() : std::vector<History::StepInfo>());
    takePosition();
    if (rowCount() > 0)
        Q_EMIT dataChanged(index(0), index(rowCount() - 1));
    Q_EMIT refreshed();
}

// Rows that stay are the same rows, under the mouse that may just be pressing one.
void HistoryModel::takeSteps(std::vector<History::StepInfo> steps)
{
    std::unordered_set<quint64> staying;
    for (const History::StepInfo &step : steps)
        staying.insert(step.serial);
    const auto goes = [&staying](const History::StepInfo &step) { return !staying.contains(step.serial); };
    // From the last on, each stretch at once.
    for (auto end = m_steps.end();
         (end = std::find_if(std::reverse_iterator(end), m_steps.rend(), goes).base()) != m_steps.begin();) {
        const auto begin = std::find_if_not(std::reverse_iterator(end), m_steps.rend(), goes).base();
        end = removeSteps(begin, end);
    }
    for (std::size_t at = 0; at < steps.size();) {
        const auto isNew = [&](std::size_t i) { return m_steps.size() <= at || !isSameStep(m_steps[at], steps[i]); };
        std::size_t end = at;
        while (end < steps.size() && isNew(end))
            ++end;
        if (end == at) {
            m_steps[at] = std::move(steps[at]);
            ++at;
            continue;
        }
        const auto begin = std::make_move_iterator(steps.begin());
        insertSteps(at, std::vector<History::StepInfo>(begin + static_cast<std::ptrdiff_t>(at),
                                                       begin + static_cast<std::ptrdiff_t>(end)));
        at = end;
    }
}

// The row of the state before the steps is there only with them.
HistoryModel::Place HistoryModel::removeSteps(Place begin, Place end)
{
    const auto first = static_cast<int>(begin - m_steps.begin());
    const auto count = static_cast<int>(end - begin);
    const bool isAll = count == static_cast<int>(m_steps.size());
    beginRemoveRows({}, isAll ? 0 : first + 1, first + count);
    const Place next = m_steps.erase(begin, end);
    endRemoveRows();
    return next;
}

void HistoryModel::insertSteps(std::size_t at, std::vector<History::StepInfo> steps)
{
    const auto first = static_cast<int>(at);
    const auto count = static_cast<int>(steps.size());
    beginInsertRows({}, m_steps.empty() ? 0 : first + 1, first + count);
    m_steps.insert(m_steps.begin() + first, std::make_move_iterator(steps.begin()),
                   std::make_move_iterator(steps.end()));
    endInsertRows();
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
    return nameOf(row) + u", "_s + place + (row == m_saved ? u", saved"_s : QString());
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
    case SavedRole:
        return row == m_saved;
    case Qt::FontRole: {
        QFont font;
        font.setBold(row == m_position);
        return row == m_position ? QVariant(font) : QVariant();
    }
    default:
        return {};
    }
}
