// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <optional>
#include <utility>
#include <vector>

// The per-user settings store: sections of keys with text values, kept between runs. Every text comes back as it was
// set.
class SettingsStore
{
public:
    using Section = std::vector<std::pair<QString, QString>>;

    virtual ~SettingsStore() = default;

    // The stored text, or nothing when the key was never set.
    virtual std::optional<QString> value(const QString &section, const QString &key) const = 0;
    virtual void setValue(const QString &section, const QString &key, const QString &value) = 0;
    // Every key and value of a section in the order written: decimal keys in numeric order ("2" before "10").
    virtual Section section(const QString &section) const = 0;
    virtual void removeValue(const QString &section, const QString &key) = 0;
    // Writes everything to disk; error 75 when that fails.
    virtual void flush() = 0;
};
