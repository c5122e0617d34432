// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArrayView>

// Where a writer's bytes go. A write either takes all of its bytes or throws a RunTimeError.
class ByteSink
{
public:
    virtual ~ByteSink() = default;
    virtual void write(QByteArrayView bytes) = 0;
};
