// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/Tour.h"

#include "model/Document.h"
#include "model/DocumentWindow.h"
#include "model/Globals.h"
#include "model/Ports.h"
#include "model/TextPane.h"
#include "model/modDoc.h"
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
    procedure("modHelp Tour", [] {
        const QString sFile = tourFile();
        if (!modDoc::DocLoad(sFile))
            return;
        Document *document = DocumentActive();
        if (!document || document->m_sFile != sFile)
            return;
        document->m_sFile.clear();
        document->window.setCaption(u"A tour of outlining"_s);
        // An installed sample is locked.
        document->txtRTF.setLocked(false);
        ports().recentFiles->UpdateMRUFile(sFile, true);
        ports().commands->MenuEnable(iDocumentCount);
        ports().commands->MenuEnableDynamic();
    });
}

} // namespace Tour
