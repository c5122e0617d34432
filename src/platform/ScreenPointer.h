// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/Ports.h"

// The screen's mouse pointer. Showing the hourglass twice needs no second step to end it.
class ScreenPointer final : public MousePointer
{
public:
    ScreenPointer() = default;
    ~ScreenPointer() override;
    ScreenPointer(const ScreenPointer &) = delete;
    ScreenPointer &operator=(const ScreenPointer &) = delete;

    void setHourglass(bool hourglass) override;

private:
    bool m_hourglass = false;
};
