// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// The editing of labels in the outline.

#include "platform/TreeView.h"

#include "model/EntryTree.h"
#include "platform/LabelDelegate.h"

#include <QMouseEvent>

LabelEditMode TreeView::LabelEdit() const
{
    return m_labelEdit;
}

void TreeView::setLabelEdit(LabelEditMode mode)
{
    m_labelEdit = mode;
    setEditTriggers(mode == LabelEditMode::tvwAutomatic ? SelectedClicked : NoEditTriggers);
}

void TreeView::StartLabelEdit()
{
    m_editWhenShown = true;
    openWaitingEditor();
}

void TreeView::openWaitingEditor()
{
    if (!m_editWhenShown || !m_paneVisible || m_mirroring > 0)
        return;
    m_editWhenShown = false;
    const QModelIndex index = m_tree ? m_tree->indexOf(m_tree->selected()) : QModelIndex();
    if (!index.isValid() || nearestShown(index) != index)
        return;
    EndLabelEdit();
    scrollTo(index);
    edit(index);
}

void TreeView::EndLabelEdit()
{
    if (QWidget *editor = m_delegate->openEditor()) {
        m_delegate->endComposing();
        commitData(editor);
        QTreeView::closeEditor(editor, QAbstractItemDelegate::NoHint);
    }
}

const Entry *TreeView::EntryToBeRenamed() const
{
    const std::optional<LabelDelegate::Typed> typed = m_delegate->typed();
    const Entry *entry = typed && m_tree ? m_tree->entryAt(typed->index) : nullptr;
    return entry && entry->label() != typed->label ? entry : nullptr;
}

bool TreeView::edit(const QModelIndex &index, EditTrigger trigger, QEvent *event)
{
    // A row reaches over the pane's whole width; only a click on its image or label asks for the editor.
    if (trigger == SelectedClicked && event->type() == QEvent::MouseButtonRelease) {
        const int x = static_cast<QMouseEvent *>(event)->position().toPoint().x();
        const int left = visualRect(index).left();
        if (x < left || x >= left + sizeHintForIndex(index).width())
            return false;
        // Among several, a click leaves the one that it is on.
        if (m_press.isAmongSeveral || (m_mayEditByClick && !m_mayEditByClick()))
            return false;
    }
    return QTreeView::edit(index, trigger, event);
}

void TreeView::closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint)
{
    const bool next = hint == QAbstractItemDelegate::EditNextItem;
    if (!next && hint != QAbstractItemDelegate::EditPreviousItem) {
        QTreeView::closeEditor(editor, hint);
        return;
    }
    // Tab leads to the next pane, not to the next row.
    QTreeView::closeEditor(editor, QAbstractItemDelegate::NoHint);
    focusNextPrevChild(next);
}

void TreeView::labelEditorGotFocus()
{
    Q_EMIT gotFocus();
}

void TreeView::applyLabelEdit(const QModelIndex &index, const QString &label)
{
    if (!m_tree || !index.isValid())
        return;
    model()->setData(index, label);
}
