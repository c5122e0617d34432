// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/DocumentWindow.h"

#include <QPointer>
#include <QWidget>

#include <functional>
#include <memory>
#include <string_view>

class Dialogs;
class Dispatcher;
class FileWatch;
class GhostBar;
class NoticeBar;
class OutlineDragger;
class OutlineWidth;
class PreviewOverlay;
class RichTextBox;
class SplitterBar;
class TreeView;
struct KeyBinding;

// The window of one document: the outline on the left, the selected entry's text on the right, a movable split between
// them. It owns the document. Placed in a QMdiSubWindow by the main window, or a window of its own.
class frmDocument final : public QWidget, public DocumentWindow
{
    Q_OBJECT

public:
    // The dispatcher runs the commands of the window's keys. Without an outline it shows a document without entries.
    explicit frmDocument(Dispatcher &dispatcher, std::unique_ptr<Outline> read = nullptr, QWidget *parent = nullptr);
    ~frmDocument() override;

    Document &document() { return *m_document; }

    QString caption() const override;
    void setCaption(const QString &caption) override;
    void activate() override;
    void bringToFront() override;
    bool close() override;
    void autoFitSplit() override;
    void noticesChanged() override;
    void fileTaken() override;
    void holdKeys() override;
    EntryPreview *previewPane() override;

    // To be called when the window becomes the active one.
    void Form_Activate();
    // Whether the window may close: asks about unsaved changes and saves them. Closes nothing itself.
    bool Form_QueryUnload();

    // The window's width in twips, its frame included, and conversions at the window's resolution.
    float Width() const;
    int toPixels(float twips) const;
    float toTwips(int pixels) const;

    // Gives the keyboard focus back to the pane that had it last, once the window can be seen.
    void restorePaneFocus();

    // From holding to releasing, which may be nested, the remembered pane stays the same wherever the focus goes.
    void holdPane() { ++m_paneHolds; }

    void releasePane();

    // Whether typing in the text pane overwrites what is there.
    bool overwriting() const;
    void toggleOverwriting();

    TreeView *const treeView;
    RichTextBox *const textBox;
    OutlineWidth *outlineWidth = nullptr;
    SplitterBar *const imgSplitter;
    GhostBar *const picSplitter;
    PreviewOverlay *const preview;
    // Above both panes while the document has notices; the panes share the height that it leaves.
    NoticeBar *const noticeBar;

    // Whether a move of the split is in progress, where it started and where the ghost bar is, in twips.
    bool m_bMovingSplit = false;
    float m_fSplitPosition = 0;
    float m_fGhostPosition = 0;
    // The outline's width, which is the split position, and the width that it is to have when there is room for it.
    float m_fTreeWidth = 0;
    float m_fWantedWidth = 0;

Q_SIGNALS:
    // A menu of the menu bar, such as "mnuoutline", is wanted as a context menu at a place on the screen.
    void menuWanted(std::string_view menu, const QPoint &place);
    // Typing overwrites from now on, or inserts.
    void overwritingChanged();

protected:
    void closeEvent(QCloseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    using SaveCommand = bool (*)();

    void connectOutline();
    void connectText();
    void connectSplit();
    void connectNotices();
    void layOutPanes();
    void leaveNotices();
    SaveCommand saveAgain() const;
    void saveFromNotice(SaveCommand save);
    void connectFile();
    void offerTheirs();
    void decideOnTheirs(const std::function<void()> &decide);
    void runKey(const KeyBinding &binding);
    void popUpOutlineMenu();
    bool lastPaneHasFocus() const;
    void paneGotFocus(bool outline);
    void trvOutline_NodeClick(Entry *entry);
    void trvOutline_Expand();
    void trvOutline_Collapse(Entry *entry);

    std::unique_ptr<Document> m_document;
    DocumentView m_view;
    Dispatcher &m_dispatcher;
    Dialogs &m_dialogs;
    OutlineDragger *m_dragger = nullptr;
    FileWatch *const m_fileWatch;
    QPointer<QWidget> m_lastPane;
    int m_paneHolds = 0;
    bool m_counted = true;
    // Whether the window was shown, and its split laid out, once.
    bool m_laidOut = false;
};
