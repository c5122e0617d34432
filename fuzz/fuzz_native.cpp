// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "formats/NativeRoundTrip.h"

#include <QGuiApplication>

#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static QGuiApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const char *data, std::size_t size)
{
    const QString fault = formatstest::nativeFault(QByteArray(data, qsizetype(size)));
    if (!fault.isEmpty()) {
        qCritical("%s", qPrintable(fault));
        std::abort();
    }
    return 0;
}
