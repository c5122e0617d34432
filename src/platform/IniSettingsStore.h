// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "util/SettingsStore.h"

#include <memory>

class QSettings;
class QTemporaryDir;

// The settings store in an INI file of the user's configuration folder: $XDG_CONFIG_HOME/Quillery/Quillery.ini. What
// lies there and cannot be such a file, because it is a pipe or far too large, is left alone: nothing is read, and
// writing fails.
class IniSettingsStore final : public SettingsStore
{
public:
    IniSettingsStore();

    // The same; while the user has no such file, the values of another one hold, which is never written.
    struct FirstSettings {
        QString fileName;
    };

    explicit IniSettingsStore(const FirstSettings &first);
    // A store in a file of its own.
    explicit IniSettingsStore(const QString &fileName);
    ~IniSettingsStore() override;

    std::optional<QString> value(const QString &section, const QString &key) const override;
    void setValue(const QString &section, const QString &key, const QString &value) override;
    // Decimal keys first, in numeric order; the others follow in the order of their characters.
    Section section(const QString &section) const override;
    void removeValue(const QString &section, const QString &key) override;
    void flush() override;

    QString fileName() const;

private:
    std::unique_ptr<QSettings> m_settings;
    // Null unless the user has no settings.
    std::unique_ptr<QSettings> m_first;
    // What the store would be in but cannot; empty otherwise. The settings are then in a file that goes with the store.
    QString m_unusable;
    std::unique_ptr<QTemporaryDir> m_standIn;
};
