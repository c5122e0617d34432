// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/Ports.h"

#include "document/NoPorts.h"

namespace
{

int s_hourglasses = 0;

} // namespace

Ports &ports()
{
    static Ports instance = portsOfNobody();
    return instance;
}

Document *DocumentActive()
{
    return ports().windows->activeDocument();
}

HourglassPointer::HourglassPointer()
{
    if (s_hourglasses++ == 0)
        ports().pointer->setHourglass(true);
}

HourglassPointer::~HourglassPointer()
{
    if (--s_hourglasses == 0)
        ports().pointer->setHourglass(false);
}
