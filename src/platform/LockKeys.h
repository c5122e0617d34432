// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <optional>

// The keyboard's locks.
enum class LockKey { Caps, Num };

class LockKeys
{
public:
    virtual ~LockKeys() = default;
    // Whether the lock is on; nothing where the platform does not tell.
    virtual std::optional<bool> isOn(LockKey key) const = 0;
    // Does nothing where the platform has no way.
    virtual void toggle(LockKey key) = 0;
};

// The locks of the desktop's keyboard, by the X keyboard extension; other platforms have no way.
class DesktopLockKeys final : public LockKeys
{
public:
    std::optional<bool> isOn(LockKey key) const override;
    void toggle(LockKey key) override;
};
