// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/Ports.h"

#include <QString>
#include <QStringList>

class RecentFileItems;
class SettingsStore;

// The recent-file list: the names of the files last opened or saved, newest first, shown at the end of the File menu
// and kept between runs in the settings section "MRU". The list always has an element; empty ones are kept but not
// shown.
class modMRU final : public RecentFiles
{
public:
    modMRU(SettingsStore &settings, RecentFileItems &items);

    // Reads the stored list. Each key resizes the list to end at its number, so a list stored from key 1 has an empty
    // element 0. A key that is no index (16 bits, as all counts) is logged and ends the reading.
    void LoadMRUFiles();
    // Stores the list under the keys 1, 2, ..., empty elements included.
    void SaveMRUFiles() const;
    void ShowMRUFiles();

    // Moves a file to the top of the list, or removes it. Names that differ only in letter case or outer blanks are the
    // same; beyond Options::MaxMRUFiles names the oldest are dropped.
    void UpdateMRUFile(const QString &sFile, bool bRemove) override;
    QString itemCaption(int iIndex) const override;

    const QStringList &list() const { return m_files; }

private:
    // The names that are shown, in order.
    QStringList shownNames() const;

    QStringList m_files{QString()};
    SettingsStore &m_settings;
    RecentFileItems &m_items;
};
