// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QFont>
#include <QRect>

class Entry;

// When a label can be edited in place: by a click on the selected entry's label too, or only by StartLabelEdit().
enum class LabelEditMode { tvwAutomatic = 0, tvwManual = 1 };

// The mode that the option for renaming by a click asks for.
LabelEditMode optionalLabelEdit();

// The outline pane of a document window as the core sees it: it shows the document's entry tree.
class OutlinePane
{
public:
    virtual ~OutlinePane() = default;

    // A hidden pane draws nothing of what happens to it; it keeps its place and the keyboard focus.
    virtual bool PaneVisible() const = 0;
    virtual void setPaneVisible(bool visible) = 0;
    virtual QFont Font() const = 0;
    virtual void setFont(const QFont &font) = 0;
    virtual LabelEditMode LabelEdit() const = 0;
    virtual void setLabelEdit(LabelEditMode mode) = 0;
    // Opens the in-place editor on the selected entry's label.
    virtual void StartLabelEdit() = 0;
    // Ends an open in-place editor, keeping what was typed.
    virtual void EndLabelEdit() = 0;
    // The entry that ending the in-place editor would rename; null while none is open, or it holds what it began with.
    virtual const Entry *EntryToBeRenamed() const = 0;
    // Scrolls until the entry's row shows; its ancestors are expanded already.
    virtual void ScrollTo(const Entry *entry) = 0;
    // Where the selected entry's row is on the screen; a null rectangle where it does not show.
    virtual QRect SelectedRow() const = 0;
    virtual void ClearDropHighlight() = 0;
    virtual void setFocus() = 0;
};
