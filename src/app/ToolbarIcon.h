// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>

// The toolbar's drawings. They are SVG files drawn with "currentColor", for which a colour of the palette is put in,
// so that one drawing serves light and dark; each is drawn anew for every size and device pixel ratio.

// Whether SVG drawings can be shown at all: Qt reads them by a plugin that may not be installed.
bool canShowToolbarIcons();

// The drawing of a name (see ToolbarRow::icon) in a colour; an empty icon when there is no such drawing.
QIcon toolbarIcon(const QString &name, const QColor &colour);
