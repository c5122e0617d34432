// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "search/clsHistory.h"

#include "util/Blanks.h"
#include "util/Procedure.h"
#include "util/SettingsStore.h"

#include <limits>

QString clsHistory::FirstEntry(bool &atEnd)
{
    m_position = 0;
    return entryAt(atEnd);
}

QString clsHistory::NextEntry(bool &atEnd)
{
    ++m_position;
    return entryAt(atEnd);
}

QString clsHistory::entryAt(bool &atEnd) const
{
    atEnd = m_position >= m_entries.size();
    return atEnd ? QString() : m_entries[m_position];
}

void clsHistory::Load(const SettingsStore &settings)
{
    procedure("clsHistory Load", [&] {
        m_entries = {QString()};
        const SettingsStore::Section section = settings.section(Section);
        for (const auto &[key, value] : section) {
            bool isNumber = false;
            const int place = key.toInt(&isNumber);
            // A key that is no place in the list is not ours.
            if (!isNumber || place < 0 || place > std::numeric_limits<qint16>::max())
                continue;
            m_entries.resize(place + 1);
            m_entries[place] = value;
        }
    });
}

void clsHistory::Save(SettingsStore &settings) const
{
    procedure("clsHistory Save", [&] {
        const SettingsStore::Section section = settings.section(Section);
        for (const auto &[key, value] : section)
            settings.removeValue(Section, key);
        for (qsizetype i = 0; i < m_entries.size(); ++i)
            settings.setValue(Section, QString::number(i + 1), m_entries[i]);
    });
}

void clsHistory::Store(const QString &expression)
{
    procedure("clsHistory Store", [&] {
        const QString head = withoutOuterBlanks(expression);
        QStringList entries{head};
        qint16 count = 0;
        for (const QString &entry : std::as_const(m_entries)) {
            const QString trimmed = withoutOuterBlanks(entry);
            if (trimmed.isEmpty() || trimmed == head)
                continue;
            if (++count < MaxEntries)
                entries.append(entry);
        }
        m_entries = entries;
    });
}
