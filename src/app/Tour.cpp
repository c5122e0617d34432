// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/Tour.h"

#include "document/modDoc.h"
#include "util/Procedure.h"
#include "util/ProgramFiles.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace
{

QString tourFile()
{
    return programFile(u"sample.qly"_s);
}

} // namespace

namespace Tour
{

bool isThere()
{
    return QFileInfo(tourFile()).isReadable();
}

void open()
{
    procedure("modHelp Tour", [] { modDoc::DocLoadUnnamed(tourFile(), u"A tour of outlining"_s); });
}

} // namespace Tour
