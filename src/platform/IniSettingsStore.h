// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "util/SettingsStore.h"

#include <memory>

class QSettings;

// The settings store in an INI file of the user's configuration folder: $XDG_CONFIG_HOME/Quillery/Quillery.ini.
class IniSettingsStore final : public SettingsStore
{
public:
    IniSettingsStore();
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
};
