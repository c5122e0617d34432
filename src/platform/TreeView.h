// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/OutlinePane.h"
#include "model/Entry.h"

#include <QPersistentModelIndex>
#include <QPointer>
#include <QTreeView>

#include <functional>
#include <memory>
#include <optional>
#include <utility>

class Dialogs;
class EntryTree;
class History;
class LabelDelegate;

// The outline pane: shows an entry tree, follows every change of it, and turns what the user does into changes of
// its history and signals. Expansion and selection live in the entry tree; the view only mirrors them.
class TreeView final : public QTreeView, public OutlinePane
{
    Q_OBJECT

public:
    // Entries below this level (1 is the root) are shown closed whatever the tree says: the view lays out an open
    // branch recursively, and tens of thousands of nested levels would exhaust the stack.
    static constexpr int deepestOpenLevel = 5000;

    explicit TreeView(QWidget *parent = nullptr);
    ~TreeView() override;

    // Shows the outline of a history, through which the user opens, closes, selects and renames; null shows nothing.
    // The outline must outlive the view or be destroyed as a whole.
    void setHistory(History *history);

    // The tree that is shown, or null.
    const EntryTree *entryTree() const;

    // The entry whose row contains a point of the viewport, or null, as for any point beyond the viewport. A row
    // reaches over the pane's whole width.
    Entry *HitTest(const QPoint &point) const;
    // The same without the room of the branch signs, which lies before the rows' images.
    Entry *HitTestRow(const QPoint &point) const;

    bool PaneVisible() const override;
    void setPaneVisible(bool visible) override;
    QFont Font() const override;
    void setFont(const QFont &font) override;
    LabelEditMode LabelEdit() const override;
    void setLabelEdit(LabelEditMode mode) override;

    // Asked before a click opens the editor; StartLabelEdit() opens it whatever the answer is.
    void setMayEditByClick(std::function<bool()> mayEdit) { m_mayEditByClick = std::move(mayEdit); }

    // To be called when the press that was last told of becomes a drag. Of several selected entries one that was
    // pressed with Ctrl or Shift is dragged alone, as the only one selected.
    void pressBecomesDrag();

    // What tells the user something; without it nothing is told.
    void setDialogs(Dialogs *dialogs) { m_dialogs = dialogs; }

    Dialogs *dialogs() const { return m_dialogs; }

    // Whether a key of the pane is at work.
    bool isTakingKey() const { return m_isTakingKey; }

    // While the pane is hidden the editor waits until it is shown.
    void StartLabelEdit() override;
    void EndLabelEdit() override;
    const Entry *EntryToBeRenamed() const override;
    void ScrollTo(const Entry *entry) override;
    QRect SelectedRow() const override;
    void ClearDropHighlight() override;
    void setFocus() override;
    using QWidget::setFocus;

    // Frames an entry's row, or that of the closed branch which it is in, and scrolls there; nothing of the tree
    // changes. The end scrolls to where the pane was before, unless it is to stay.
    void mark(const Entry *entry);
    enum class AfterMark { GoBack, Stay };
    void endMark(AfterMark after);

    // Never opens a closed branch: a row hidden in one scrolls to the branch's head. Sideways, to its label.
    void scrollTo(const QModelIndex &index, ScrollHint hint = EnsureVisible) override;

Q_SIGNALS:
    // The user made this entry the selected one, or clicked on the selected one again. The entry tree already says so.
    // Selecting by program raises nothing.
    void nodeClicked(Entry *entry);
    // The expanded state of one entry changed, whoever changed it. A change of many at once (the tree's
    // expansionReset) raises nothing.
    void entryExpanded(Entry *entry);
    void entryCollapsed(Entry *entry);
    // What EntryToBeRenamed() answers may be another.
    void labelTyped();
    // The pane has the keyboard, or the label editor in it has it.
    void gotFocus();

protected:
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex &index, const QEvent *event) const override;
    bool edit(const QModelIndex &index, EditTrigger trigger, QEvent *event) override;
    using QTreeView::edit;
    void closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint) override;
    void focusInEvent(QFocusEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void updateGeometries() override;
    void paintEvent(QPaintEvent *event) override;
    void drawRow(QPainter *painter, const QStyleOptionViewItem &options, const QModelIndex &index) const override;

private:
    class MirrorGuard;

    void connectBeforeView();
    void connectAfterView();
    void mirrorEverything();
    void mirrorSelection();
    void mirrorExpansion(const Entry *entry, int level);
    void followExpansion(Entry *entry, bool expanded);
    void userChangedExpansion(const QModelIndex &index, bool expanded);
    void userMovedTo(Entry *entry);
    void userSelected(Entry *current, const std::vector<Entry *> &several);
    void followSelection();
    void followSeveral(const QModelIndexList &rows);
    void mirrorSeveral();
    void drawSelection(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index) const;
    bool isPale(const QModelIndex &index) const;
    void tellOfSeveral();
    bool pressAmongSeveral(QMouseEvent &event, Entry *pressed);
    void releaseAmongSeveral();
    bool keyAmongSeveral(const QKeyEvent &event);
    bool moveByKey(const QKeyEvent &event);
    void toggle(Entry *entry);
    void selectUpTo(Entry *entry, bool adding);
    Entry *anchor() const;
    Entry *nextShown(Entry *entry) const;
    std::vector<Entry *> shownBetween(Entry *one, Entry *other) const;
    void openWaitingEditor();
    void repaintRows(const QItemSelection &rows);
    bool isInSight(const QModelIndex &index) const;
    void fitColumn(int atLeast);
    void scrollSideways(const QModelIndex &index, int position);
    QModelIndex nearestShown(const QModelIndex &index) const;
    void labelEditorGotFocus();
    void applyLabelEdit(const QModelIndex &index, const QString &label);

    friend class LabelDelegate;

    QPointer<const EntryTree> m_tree;
    QPointer<History> m_history;
    // Carries the connections to the tree.
    std::unique_ptr<QObject> m_link;
    LabelDelegate *m_delegate;
    bool m_paneVisible = true;
    LabelEditMode m_labelEdit = LabelEditMode::tvwManual;
    Dialogs *m_dialogs = nullptr;
    std::function<bool()> m_mayEditByClick;
    QPersistentModelIndex m_scrollWhenShown;
    QPersistentModelIndex m_marked;
    // The row that shows it, while it is painted.
    QModelIndex m_markedRow;
    // Where the scroll bars stood before anything was marked.
    std::optional<QPoint> m_beforeMark;
    bool m_editWhenShown = false;
    // Above 0 while the view follows the tree, so that the view's own signals are not taken for the user's doing.
    int m_mirroring = 0;
    bool m_isTakingKey = false;
    bool m_mirrorsSeveral = false;
    // While it is true, mouse and keys change no selection of Qt's own accord.
    bool m_keepsSelection = false;
    // Where a range of several begins.
    EntryId m_anchor = EntryId::None;

    // What a press among several selected entries leaves to its release, if no drag comes of it.
    struct Press {
        EntryId entry = EntryId::None;
        bool isAmongSeveral = false;
        bool withModifier = false;
        bool deselects = false;
        bool returnsToOne = false;
    };

    Press m_press;
};
