// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/IniSettingsStore.h"

#include "util/RunTimeError.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>

#include <algorithm>
#include <tuple>

using namespace Qt::StringLiterals;

namespace
{

// QSettings reads a slash or backslash in a name as a step into a group.
QString encodedName(QString name)
{
    return name.replace(u'%', "%25"_L1).replace(u'/', "%2F"_L1).replace(u'\\', "%5C"_L1);
}

QString decodedName(QString name)
{
    return name.replace("%5C"_L1, "\\"_L1).replace("%2F"_L1, "/"_L1).replace("%25"_L1, "%"_L1);
}

QString fullName(const QString &section, const QString &key)
{
    return encodedName(section) + u'/' + encodedName(key);
}

// Where the settings of the user lie. Asking a settings object for it would open the file.
QString userFile()
{
    const QString configured = qEnvironmentVariable("XDG_CONFIG_HOME");
    QString folder = configured.isEmpty() ? u".config"_s : configured;
    if (QDir::isRelativePath(folder))
        folder = QDir::homePath() + u'/' + folder;
    return folder + u"/Quillery/Quillery.ini"_s;
}

// Whether a file can be read without waiting, and soon. Settings are a few thousand bytes.
bool isReadableAsSettings(const QString &fileName)
{
    constexpr qint64 largestFile = 4 * 1024 * 1024;
    const QFileInfo info(fileName);
    return info.isFile() && info.size() <= largestFile;
}

// A value written by hand with a bare comma arrives as a list.
QString textOf(const QVariant &value)
{
    return value.toStringList().size() > 1 ? value.toStringList().join(", "_L1) : value.toString();
}

bool isDecimal(const QString &key)
{
    return !key.isEmpty() && std::all_of(key.cbegin(), key.cend(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

// Orders decimal keys by their value, however many digits they have, and before all others.
bool keyBefore(const QString &a, const QString &b)
{
    const auto rank = [](const QString &key) {
        qsizetype zeros = 0;
        while (zeros < key.size() && key[zeros] == u'0')
            ++zeros;
        const bool decimal = isDecimal(key);
        const QString digits = decimal ? key.sliced(zeros) : QString();
        return std::tuple(!decimal, digits.size(), digits, key);
    };
    return rank(a) < rank(b);
}

} // namespace

IniSettingsStore::IniSettingsStore()
    : IniSettingsStore(userFile())
{
}

IniSettingsStore::IniSettingsStore(const FirstSettings &first)
    : IniSettingsStore()
{
    if (!QFileInfo::exists(fileName()) && isReadableAsSettings(first.fileName))
        m_first = std::make_unique<QSettings>(first.fileName, QSettings::IniFormat);
}

IniSettingsStore::IniSettingsStore(const QString &fileName)
{
    if (!QFileInfo::exists(fileName) || isReadableAsSettings(fileName)) {
        m_settings = std::make_unique<QSettings>(fileName, QSettings::IniFormat);
        return;
    }
    m_unusable = fileName;
    m_standIn = std::make_unique<QTemporaryDir>();
    m_settings = std::make_unique<QSettings>(m_standIn->filePath(u"Quillery.ini"_s), QSettings::IniFormat);
}

IniSettingsStore::~IniSettingsStore() = default;

std::optional<QString> IniSettingsStore::value(const QString &section, const QString &key) const
{
    const QString name = fullName(section, key);
    const QSettings &settings = m_first && !m_settings->contains(name) ? *m_first : *m_settings;
    if (!settings.contains(name))
        return std::nullopt;
    return textOf(settings.value(name));
}

void IniSettingsStore::setValue(const QString &section, const QString &key, const QString &value)
{
    m_settings->setValue(fullName(section, key), value);
}

SettingsStore::Section IniSettingsStore::section(const QString &section) const
{
    const QString prefix = encodedName(section) + u'/';
    Section entries;
    m_settings->beginGroup(encodedName(section));
    const QStringList keys = m_settings->childKeys();
    m_settings->endGroup();
    for (const QString &key : keys)
        entries.emplace_back(decodedName(key), textOf(m_settings->value(prefix + key)));
    std::sort(entries.begin(), entries.end(), [](const auto &a, const auto &b) { return keyBefore(a.first, b.first); });
    return entries;
}

void IniSettingsStore::removeValue(const QString &section, const QString &key)
{
    m_settings->remove(fullName(section, key));
}

void IniSettingsStore::flush()
{
    if (!m_unusable.isEmpty())
        throw RunTimeError(ErrorNumber::PathFileAccess,
                           u"The settings are not kept, because %1 is no file of settings"_s.arg(m_unusable));
    m_settings->sync();
    // A line that was no setting when the file was read is no reason against writing.
    if (m_settings->status() == QSettings::AccessError)
        throw RunTimeError(ErrorNumber::PathFileAccess, u"The settings could not be written to %1"_s.arg(fileName()));
    // Now they are the user's own.
    m_first.reset();
}

QString IniSettingsStore::fileName() const
{
    return m_unusable.isEmpty() ? m_settings->fileName() : m_unusable;
}
