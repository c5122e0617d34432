// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/PasteRoundTrip.h"

#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static QApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const char *data, std::size_t size)
{
    const QString fault = pastetest::pasteFault(QByteArray(data, qsizetype(size)));
    if (!fault.isEmpty()) {
        qCritical("%s", qPrintable(fault));
        std::abort();
    }
    return 0;
}
