// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/Ports.h"

Ports &ports()
{
    static Ports instance;
    return instance;
}

Document *DocumentActive()
{
    return ports().windows->activeDocument();
}

HourglassPointer::HourglassPointer()
{
    ports().pointer->setHourglass(true);
}

HourglassPointer::~HourglassPointer()
{
    ports().pointer->setHourglass(false);
}
