// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "window/DragIcon.h"

#include "outline/EntryDrag.h"

#include "util/Procedure.h"
#include "util/ProgramFiles.h"
#include "util/RunTimeError.h"

#include <QCursor>
#include <QPixmap>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace
{

QString iconName(bool allowed)
{
    if (!allowed)
        return u"NoDrop.ico"_s;
    return dragState().copy ? u"FolderDragCopy.ico"_s : u"FolderDrag.ico"_s;
}

Qt::CursorShape standIn(bool allowed)
{
    if (!allowed)
        return Qt::ForbiddenCursor;
    return dragState().copy ? Qt::DragCopyCursor : Qt::DragMoveCursor;
}

} // namespace

void ChangeDragIcon(QWidget &control, bool allowed)
{
    procedure("modMain ChangeDragIcon", [&] {
        const QString name = iconName(allowed);
        const QPixmap icon(programFile(name));
        // The folders hang on an arrow, whose tip points; the sign that forbids is centred on the place.
        const QPoint hotSpot = allowed ? QPoint(0, 0) : icon.rect().center();
        control.setCursor(icon.isNull() ? QCursor(standIn(allowed)) : QCursor(icon, hotSpot.x(), hotSpot.y()));
        if (icon.isNull())
            throw RunTimeError(ErrorNumber::FileNotFound,
                               u"%1: %2"_s.arg(errorDescription(ErrorNumber::FileNotFound), name));
    });
}
