// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "panes/VersionsModel.h"

#include "model/ShownLabel.h"

#include <QLocale>

#include <array>

using namespace Qt::StringLiterals;

namespace
{

constexpr std::array versionHeads{u"Time", u"Kept", u"Entries", u"Words", u"Changes"};
constexpr std::array differenceHeads{u"Entry", u"Change since then"};

QString changeInWords(const EntryDifference &difference, const ComparedVersion &compared)
{
    if (difference.isAdded())
        return u"added"_s;
    if (difference.isRemoved())
        return u"removed"_s;
    QStringList parts;
    if (difference.isRenamed)
        parts.append(u"was called \"%1\""_s.arg(briefLabel(compared.then(difference)->label())));
    if (difference.hasOtherText)
        parts.append(u"text changed"_s);
    if (difference.hasOtherTag)
        parts.append(compared.now(difference)->tagged() ? u"tagged"_s : u"untagged"_s);
    if (difference.isMoved)
        parts.append(u"moved"_s);
    return parts.join(u", "_s);
}

template <std::size_t Size>
QVariant headOf(const std::array<const char16_t *, Size> &heads, int section, Qt::Orientation orientation, int role)
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || static_cast<std::size_t>(section) >= Size)
        return {};
    return QString::fromUtf16(heads[static_cast<std::size_t>(section)]);
}

QString originInWords(VersionOrigin origin)
{
    switch (origin) {
    case VersionOrigin::Saved:
        break;
    case VersionOrigin::Found:
        return u"found before a save"_s;
    case VersionOrigin::Recovered:
        return u"recovered"_s;
    }
    return u"saved"_s;
}

} // namespace

QString shownTime(const QDateTime &time)
{
    const QLocale locale = QLocale::system();
    return locale.toString(time.date(), QLocale::ShortFormat) + u' ' + locale.toString(time.time(), u"HH:mm:ss"_s);
}

QString inWords(const DifferenceCounts &counts)
{
    QStringList parts;
    for (const auto &[count, what] : {std::pair(counts.added, u"added"), std::pair(counts.removed, u"removed"),
                                      std::pair(counts.changed, u"changed")}) {
        if (count > 0)
            parts.append(QLocale::system().toString(count) + u' ' + QString::fromUtf16(what));
    }
    return parts.isEmpty() ? u"none"_s : parts.join(u", "_s);
}

void VersionsModel::setVersions(const std::vector<VersionInfo> &versions)
{
    beginResetModel();
    m_versions.assign(versions.rbegin(), versions.rend());
    endResetModel();
}

int VersionsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_versions.size());
}

int VersionsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(versionHeads.size());
}

QVariant VersionsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const VersionInfo &info = version(index.row());
    if (role == Qt::ToolTipRole)
        return info.isVerified ? u"It was read again when it was kept, and is what was saved."_s
                               : u"It has not been read again since it was kept."_s;
    if (role != Qt::DisplayRole)
        return {};
    const QLocale locale = QLocale::system();
    switch (index.column()) {
    case 0:
        return shownTime(info.time);
    case 1:
        return originInWords(info.origin);
    case 2:
        return locale.toString(info.entries);
    case 3:
        return locale.toString(info.words);
    default:
        return inWords(info.changes) + (info.isVerified ? QString() : u" (not verified)"_s);
    }
}

QVariant VersionsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    return headOf(versionHeads, section, orientation, role);
}

void DifferencesModel::setCompared(const ComparedVersion *compared)
{
    beginResetModel();
    m_compared = compared;
    endResetModel();
}

int DifferencesModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() || !m_compared ? 0 : static_cast<int>(m_compared->differences().size());
}

int DifferencesModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(differenceHeads.size());
}

QVariant DifferencesModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || !m_compared || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    const EntryDifference &difference = m_compared->differences()[static_cast<size_t>(index.row())];
    if (index.column() > 0)
        return changeInWords(difference, *m_compared);
    const Entry *now = m_compared->now(difference);
    return shownLabel((now ? now : m_compared->then(difference))->label());
}

QVariant DifferencesModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    return headOf(differenceHeads, section, orientation, role);
}
