// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "vault/ComparedVersion.h"
#include "vault/VersionStore.h"

#include <QAbstractTableModel>

#include <vector>

// The versions of a document as a table, the newest first.
class VersionsModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    // From the oldest to the newest.
    void setVersions(const std::vector<VersionInfo> &versions);

    const VersionInfo &version(int row) const { return m_versions[static_cast<size_t>(row)]; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    std::vector<VersionInfo> m_versions;
};

// What of a version is another in the document now, a row each.
class DifferencesModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    // Null for none; it must outlive what is shown of it.
    void setCompared(const ComparedVersion *compared);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const ComparedVersion *m_compared = nullptr;
};

// The time of a version as the user reads it.
QString shownTime(const QDateTime &time);
// "2 added, 1 removed, 5 changed", or "none".
QString inWords(const DifferenceCounts &counts);
