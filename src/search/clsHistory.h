// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

class SettingsStore;

// A bounded list of expressions, the latest first, kept in a section of the settings store.
class clsHistory
{
public:
    explicit clsHistory(const QString &section)
        : Section(section)
    {
    }

    // How many entries Store() keeps at most.
    qint16 MaxEntries = 10;
    QString Section;

    // Goes through the list. `atEnd` is set, and the answer empty, behind the last entry.
    QString FirstEntry(bool &atEnd);
    QString NextEntry(bool &atEnd);

    // Reads the section. The list then begins with an empty entry, which the next Store() takes away.
    void Load(const SettingsStore &settings);
    void Save(SettingsStore &settings) const;

    // Puts an expression at the head, and takes other entries like it and empty ones away.
    void Store(const QString &expression);

private:
    QString entryAt(bool &atEnd) const;

    qsizetype m_position = 0;
    QStringList m_entries;
};

// What was searched for, and what it was replaced by.
inline clsHistory g_hisFind{QStringLiteral("FindHistory")};
inline clsHistory g_hisReplace{QStringLiteral("ReplaceHistory")};
