// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "window/frmDocument.h"

#include "window/NoticeBar.h"
#include "window/OutlineDragger.h"
#include "window/PreviewOverlay.h"
#include "window/SplitterBar.h"
#include "window/modSplit.h"
#include "window/modView.h"

#include "commands/CommandKeys.h"
#include "commands/Dispatcher.h"

#include "platform/AltCharacter.h"
#include "platform/OutlineWidth.h"
#include "platform/RichTextBox.h"
#include "platform/TreeView.h"

#include "document/FileWatch.h"
#include "document/Globals.h"
#include "document/Ports.h"
#include "document/UndoRedo.h"
#include "document/modFile.h"
#include "document/modNodes.h"

#include "util/Procedure.h"
#include "util/Twips.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMdiArea>
#include <QMdiSubWindow>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// What the frame of a window takes of its width, in twips: the text pane ends where the frame begins.
constexpr float frameWidth = modSplit::rightHandAllowance - modSplit::gap;

QMdiSubWindow *subWindowOf(const QWidget &form)
{
    return qobject_cast<QMdiSubWindow *>(form.parentWidget());
}

bool isBareInsert(const QKeyEvent &key)
{
    return key.key() == Qt::Key_Insert && (key.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

} // namespace

frmDocument::frmDocument(Dispatcher &dispatcher, std::unique_ptr<Outline> read, QWidget *parent)
    : QWidget(parent)
    , treeView(new TreeView(this))
    , textBox(new RichTextBox(this))
    , imgSplitter(new SplitterBar(this))
    , picSplitter(new GhostBar(this))
    , preview(new PreviewOverlay(*this))
    , noticeBar(new NoticeBar(this))
    , m_document(std::make_unique<Document>(std::move(read)))
    , m_view(*m_document, *treeView, *textBox, *this)
    , m_dispatcher(dispatcher)
    , m_dialogs(*ports().dialogs)
    , m_fileWatch(new FileWatch(this))
    , m_lastPane(treeView)
{
    setObjectName(u"frmDocument"_s);
    setFocusProxy(treeView);
    outlineWidth = new OutlineWidth(*treeView, m_document->tree);
    treeView->setHistory(&m_document->history);
    m_dragger = new OutlineDragger(*this);
    treeView->installEventFilter(this);
    textBox->installEventFilter(this);
    setTabOrder(treeView, textBox);
    treeView->setDialogs(&m_dialogs);
    textBox->setDialogs(&m_dialogs);
    preview->follow();
    connectOutline();
    connectText();
    connectSplit();
    connectNotices();
    connectFile();
    ++iDocumentCount;
}

frmDocument::~frmDocument()
{
    preview->end();
    // The panes outlive the document otherwise, and would ask it while they are taken apart.
    m_document->tree.disconnect(this);
    m_document->history.disconnect(this);
    treeView->disconnect(this);
    textBox->disconnect(this);
    treeView->setHistory(nullptr);
    delete m_dragger;
    if (m_counted)
        --iDocumentCount;
}

QString frmDocument::caption() const
{
    return windowTitle();
}

void frmDocument::setCaption(const QString &caption)
{
    setWindowTitle(caption);
}

void frmDocument::activate()
{
    if (QMdiSubWindow *subWindow = subWindowOf(*this); subWindow && subWindow->mdiArea())
        subWindow->mdiArea()->setActiveSubWindow(subWindow);
    else
        activateWindow();
}

void frmDocument::bringToFront()
{
    activate();
    if (QMdiSubWindow *subWindow = subWindowOf(*this); subWindow && subWindow->isMinimized())
        subWindow->showNormal();
}

bool frmDocument::close()
{
    if (QMdiSubWindow *subWindow = subWindowOf(*this))
        return subWindow->close();
    return QWidget::close();
}

EntryPreview *frmDocument::previewPane()
{
    return preview;
}

void frmDocument::autoFitSplit()
{
    modView::ViewAutoFitSplit(*this);
}

void frmDocument::Form_Activate()
{
    m_document->lookAtFileAgain();
    m_fileWatch->look();
    procedure("frmDocument Form_Activate", [this] {
        if (bBusy)
            return;
        m_document->endPassing();
        autoFitSplit();
    });
}

float frmDocument::Width() const
{
    return toTwips(width()) + frameWidth;
}

int frmDocument::toPixels(float twips) const
{
    return Twips::toPixels(twips, logicalDpiX());
}

float frmDocument::toTwips(int pixels) const
{
    return static_cast<float>(Twips::fromPixels(pixels, logicalDpiX()));
}

void frmDocument::restorePaneFocus()
{
    if (m_lastPane && isVisible() && isActiveWindow() && !lastPaneHasFocus())
        m_lastPane->setFocus();
}

// A label being edited lies in its pane.
bool frmDocument::lastPaneHasFocus() const
{
    const QWidget *focus = QApplication::focusWidget();
    return m_lastPane && focus && (focus == m_lastPane || m_lastPane->isAncestorOf(focus));
}

void frmDocument::releasePane()
{
    if (--m_paneHolds == 0 && lastPaneHasFocus())
        paneGotFocus(m_lastPane == treeView);
}

bool frmDocument::overwriting() const
{
    return textBox->overwriteMode();
}

void frmDocument::toggleOverwriting()
{
    procedure("frmDocument toggleOverwriting", [this] {
        textBox->setOverwriteMode(!textBox->overwriteMode());
        Q_EMIT overwritingChanged();
    });
}

void frmDocument::connectOutline()
{
    treeView->setMayEditByClick([this] { return !m_document->bReadOnly(); });
    connect(treeView, &TreeView::gotFocus, this, [this] { paneGotFocus(true); });
    connect(treeView, &TreeView::nodeClicked, this, &frmDocument::trvOutline_NodeClick);
    connect(treeView, &TreeView::entryExpanded, this, &frmDocument::trvOutline_Expand);
    connect(treeView, &TreeView::entryCollapsed, this, &frmDocument::trvOutline_Collapse);
    // Whoever changed it: the user in place, or a replacement. An action fits the split once, at its end.
    connect(&m_document->tree, &EntryTree::labelChanged, this, [this] {
        if (!bBusy && iActionDepth == 0)
            autoFitSplit();
    });
}

void frmDocument::connectText()
{
    connect(textBox, &RichTextBox::gotFocus, this, [this] { paneGotFocus(false); });
    connect(textBox, &RichTextBox::undoWanted, this, [this] { undoStep(*m_document); });
    connect(textBox, &RichTextBox::redoWanted, this, [this] { redoStep(*m_document); });
    connect(textBox, &RichTextBox::partsLeftOut, this,
            [this](const QString &parts) { m_document->say(u"Not put in: "_s + parts); });
    // By the right button and by the context-menu key alike.
    connect(textBox, &QWidget::customContextMenuRequested, this,
            [this](const QPoint &place) { Q_EMIT menuWanted("mnuEdit", textBox->viewport()->mapToGlobal(place)); });
}

void frmDocument::connectSplit()
{
    connect(imgSplitter, &SplitterBar::grabbed, this, [this] { modSplit::SplitMoveStart(*this); });
    connect(imgSplitter, &SplitterBar::dragged, this, [this](int left) { modSplit::SplitMove(*this, toTwips(left)); });
    connect(imgSplitter, &SplitterBar::released, this, [this] { modSplit::SplitMoveEnd(*this); });
    connect(imgSplitter, &SplitterBar::doubleClicked, this, [] { modView::ViewFitSplit(); });
    connect(picSplitter, &GhostBar::stepped, this, [this](int direction) {
        modSplit::SplitMove(*this, m_fGhostPosition + static_cast<float>(direction) * modSplit::keyboardStep);
    });
    connect(picSplitter, &GhostBar::accepted, this, [this] { modSplit::SplitMoveEnd(*this); });
    connect(picSplitter, &GhostBar::cancelled, this, [this] { modSplit::SplitMoveCancel(*this); });
}

void frmDocument::closeEvent(QCloseEvent *event)
{
    const bool bMayClose = procedure("frmDocument Form_QueryUnload", [this] { return Form_QueryUnload(); });
    if (!bMayClose) {
        event->ignore();
        return;
    }
    event->accept();
    if (m_counted) {
        m_counted = false;
        --iDocumentCount;
    }
}

// Whether the window may close: unsaved changes are asked about, and when they are to be saved the save must succeed.
bool frmDocument::Form_QueryUnload()
{
    treeView->EndLabelEdit();
    if (!m_document->hasUnsavedChanges() || !m_document->mayBeSaved())
        return true;
    activate();
    switch (m_dialogs.ask(u"Do you want to save the file "_s + m_document->m_sFile + u"?"_s)) {
    case Answer::No:
        return true;
    case Answer::Cancel:
        return false;
    case Answer::Yes:
        break;
    }
    if (modFile::FileSave())
        return true;
    // The window stays with what was not saved, and closing it again must ask again.
    m_document->history.touch();
    return false;
}

void frmDocument::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    layOutPanes();
}

void frmDocument::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    // Only now has the window its size; what was laid out before, when there was nothing to divide, is forgotten.
    if (event->spontaneous() || m_laidOut)
        return;
    m_laidOut = true;
    modView::ViewInitialise(*this);
    autoFitSplit();
    treeView->ScrollTo(m_document->tree.selected());
}

// What a pane does not take, and the key that has ended a move of the split, which then does what it always does.
void frmDocument::keyPressEvent(QKeyEvent *event)
{
    const KeyBinding *binding = bindingOf(*event);
    if (binding && m_dispatcher.isEnabled(binding->command))
        runKey(*binding);
    else
        QWidget::keyPressEvent(event);
}

// The panes' keys come here first. A shortcut override claims a key before the menus take it for an access key; the
// press that follows runs the command.
bool frmDocument::eventFilter(QObject *watched, QEvent *event)
{
    const bool claims = event->type() == QEvent::ShortcutOverride;
    if (!claims && event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const auto &key = *static_cast<QKeyEvent *>(event);
    // During a drag a command would pull the outline away under the pointer. Ctrl is the drag's own.
    if (m_dragger->active()) {
        event->accept();
        if (key.key() == Qt::Key_Escape)
            m_dragger->cancel();
        return true;
    }
    if (key.key() == Qt::Key_Menu && watched == treeView) {
        event->accept();
        if (!claims)
            popUpOutlineMenu();
        return true;
    }
    if (key.key() == Qt::Key_F6 && key.modifiers() == Qt::NoModifier && noticeBar->isVisible()) {
        event->accept();
        if (!claims)
            noticeBar->enter();
        return true;
    }
    const KeyBinding *binding = bindingOf(key);
    const bool enabled = binding && m_dispatcher.isEnabled(binding->command);
    // A disabled Alt key does nothing; the outline would take it for the bare key.
    if (enabled || (binding && binding->modifiers == KeyBinding::Alt)) {
        event->accept();
        if (enabled && !claims)
            runKey(*binding);
        return true;
    }
    if (watched == textBox && isBareInsert(key)) {
        event->accept();
        if (!claims)
            toggleOverwriting();
        return true;
    }
    return !claims && isAltCharacter(key);
}

void frmDocument::runKey(const KeyBinding &binding)
{
    procedure("frmDocument Form_KeyDown", [&] { m_dispatcher.run(binding.command); });
}

// The context-menu key's menu belongs to the selected row.
void frmDocument::popUpOutlineMenu()
{
    const QRect row = treeView->visualRect(treeView->currentIndex());
    const QPoint place = treeView->viewport()->mapToGlobal(row.bottomLeft());
    Q_EMIT menuWanted("mnuoutline", place);
}

void frmDocument::paneGotFocus(bool outline)
{
    if (m_paneHolds > 0)
        return;
    procedure(outline ? "frmDocument trvOutline_GotFocus" : "frmDocument txtRTF_GotFocus", [&] {
        m_document->lookAtFileAgain();
        if (outline)
            m_view.outlineGotFocus();
        else
            m_view.textGotFocus();
        m_lastPane = outline ? static_cast<QWidget *>(treeView) : textBox;
    });
}

void frmDocument::trvOutline_NodeClick(Entry *entry)
{
    procedure("frmDocument trvOutline_NodeClick", [&] {
        if (bBusy)
            return;
        m_document->history.touch();
        const bool isShown = m_document->texts.entryAsShown() == entry;
        modNodes::NodeSelect(*m_document, entry);
        if (!isShown)
            textBox->returnToPlace();
        autoFitSplit();
    });
}

void frmDocument::trvOutline_Expand()
{
    procedure("frmDocument trvOutline_Expand", [&] {
        if (bBusy || !DocumentActive())
            return;
        m_document->history.touch();
        m_document->setExpansionLevel(0);
        if (iActionDepth == 0)
            autoFitSplit();
    });
}

void frmDocument::trvOutline_Collapse(Entry *entry)
{
    procedure("frmDocument trvOutline_Collapse", [&] {
        if (bBusy || !DocumentActive())
            return;
        m_document->history.touch();
        if (modNodes::nodCurrent().entry() != entry)
            modNodes::NodeSelect(*m_document, entry);
        m_document->setExpansionLevel(entry->isRoot() ? 1 : 0);
        if (iActionDepth == 0)
            autoFitSplit();
    });
}
