// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/frmMain.h"

#include "app/DroppedFiles.h"
#include "document/Globals.h"
#include "document/modDoc.h"
#include "util/FullPath.h"
#include "util/Procedure.h"

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>

void frmMain::dragEnterEvent(QDragEnterEvent *event)
{
    MDIForm_OLEDragOver(*event);
}

void frmMain::dragMoveEvent(QDragMoveEvent *event)
{
    MDIForm_OLEDragOver(*event);
}

void frmMain::dropEvent(QDropEvent *event)
{
    MDIForm_OLEDragOver(*event);
    MDIForm_OLEDragDrop(*event);
}

void frmMain::MDIForm_OLEDragOver(QDropEvent &event)
{
    event.setDropAction(Qt::CopyAction);
    event.accept();
}

void frmMain::MDIForm_OLEDragDrop(QDropEvent &event)
{
    procedure("frmMain MDIForm_OLEDragDrop", [&] { openFiles(droppedFiles(*event.mimeData())); });
}

bool frmMain::openFiles(const QStringList &files)
{
    return procedure("frmMain openFiles", [&] {
        if (bBusy || QApplication::activeModalWidget())
            return false;
        for (const QString &sFile : files)
            modDoc::showOrLoad(FullPathName(sFile));
        return true;
    });
}

void frmMain::comeToFront()
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    activateWindow();
}
