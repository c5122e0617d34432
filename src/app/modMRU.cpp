// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/modMRU.h"

#include "app/AppPorts.h"
#include "document/Globals.h"
#include "util/Blanks.h"
#include "util/Numbers.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"
#include "util/SettingsStore.h"

using namespace Qt::StringLiterals;

namespace
{

const QString mruSection = u"MRU"_s;

// A stored key as an index of the list: error 6 or 13 for what is no 16-bit number, 5 for a negative one.
int listIndex(const QString &key)
{
    const int index = Numbers::toInt16(Numbers::toNumber(key));
    if (index < 0)
        throw RunTimeError(ErrorNumber::InvalidCall, u"\"%1\" is no place in the recent-file list"_s.arg(key.left(80)));
    return index;
}

QString comparisonKey(const QString &sFile)
{
    return withoutOuterBlanks(sFile).toLower();
}

// The access key of the tenth name is 0 and that of the eleventh 1 again.
QString caption(qsizetype place, const QString &sFile)
{
    return u"&%1 "_s.arg(place % 10) + sFile;
}

} // namespace

modMRU::modMRU(SettingsStore &settings, RecentFileItems &items)
    : m_settings(settings)
    , m_items(items)
{
}

void modMRU::LoadMRUFiles()
{
    procedure("modMRU LoadMRUFiles", [this] {
        m_files = QStringList(QString());
        for (const auto &[key, sFile] : m_settings.section(mruSection)) {
            int index = 0;
            try {
                index = listIndex(key);
            } catch (const RunTimeError &error) {
                // What was read before the odd key is still the user's list.
                reportError("modMRU LoadMRUFiles", error);
                break;
            }
            m_files.resize(index + 1);
            m_files[index] = sFile;
        }
        ShowMRUFiles();
    });
}

void modMRU::SaveMRUFiles() const
{
    procedure("modMRU SaveMRUFiles", [this] {
        for (const auto &[key, sFile] : m_settings.section(mruSection))
            m_settings.removeValue(mruSection, key);
        int counter = 0;
        for (const QString &sFile : m_files)
            m_settings.setValue(mruSection, QString::number(++counter), sFile);
        m_settings.flush();
    });
}

void modMRU::ShowMRUFiles()
{
    procedure("modMRU ShowMRUFiles", [this] {
        m_items.hideAll();
        const QStringList names = shownNames();
        for (qsizetype place = 1; place <= names.size(); ++place)
            m_items.showItem(static_cast<int>(place), caption(place, names.at(place - 1)));
        m_items.setSeparatorVisible(!names.isEmpty());
    });
}

void modMRU::UpdateMRUFile(const QString &sFile, bool bRemove)
{
    procedure("modMRU UpdateMRUFile", [&] {
        QStringList updated;
        if (!bRemove)
            updated.append(withoutOuterBlanks(sFile));
        const QString key = comparisonKey(sFile);
        for (const QString &listed : std::as_const(m_files)) {
            if (updated.size() >= g_options.MaxMRUFiles)
                break;
            const QString listedKey = comparisonKey(listed);
            if (!listedKey.isEmpty() && listedKey != key)
                updated.append(listed);
        }
        if (updated.isEmpty())
            updated.append(QString());
        m_files = updated;
        ShowMRUFiles();
        noteKeptState();
    });
}

QString modMRU::itemCaption(int iIndex) const
{
    const QStringList names = shownNames();
    return iIndex >= 1 && iIndex <= names.size() ? caption(iIndex, names.at(iIndex - 1)) : QString();
}

QStringList modMRU::shownNames() const
{
    QStringList names;
    for (const QString &sFile : m_files) {
        if (!sFile.isEmpty())
            names.append(sFile);
    }
    return names;
}
