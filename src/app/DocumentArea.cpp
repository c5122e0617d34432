// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/DocumentArea.h"

#include "app/AppPorts.h"
#include "app/DocumentFrame.h"
#include "app/EmptyArea.h"
#include "app/Tour.h"
#include "app/modMRU.h"
#include "document/Globals.h"
#include "find/TextIndex.h"
#include "vault/Vault.h"
#include "window/frmDocument.h"

#include <QAction>
#include <QMainWindow>
#include <QMdiArea>

#include <algorithm>

using namespace Qt::StringLiterals;

DocumentArea::DocumentArea(QMainWindow &mainWindow, Dispatcher &dispatcher)
    : m_mainWindow(mainWindow)
    , m_dispatcher(dispatcher)
    , m_area(new QMdiArea)
{
    m_area->setObjectName(u"mdiArea"_s);
    m_area->setAccessibleName(u"Documents"_s);
    m_area->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_area->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    mainWindow.setCentralWidget(m_area);
    m_emptyArea = new EmptyArea(*m_area);
    connect(m_emptyArea, &EmptyArea::itemChosen, this, [this](const QString &item) {
        if (auto *action = m_mainWindow.findChild<QAction *>(item); action && action->isEnabled())
            action->trigger();
        showOffers();
    });
    connect(m_emptyArea, &EmptyArea::tourChosen, this, Tour::open);
    connect(m_area, &QMdiArea::subWindowActivated, this,
            [this](QMdiSubWindow *window) { frameActivated(qobject_cast<DocumentFrame *>(window)); });
}

DocumentArea::~DocumentArea()
{
    // The documents' windows may still call this one while they go.
    m_area->disconnect(this);
    m_active = nullptr;
    for (DocumentFrame *frame : std::exchange(m_frames, {})) {
        frame->disconnect(this);
        delete frame;
    }
}

Document &DocumentArea::createDocument(std::unique_ptr<Outline> outline)
{
    auto *form = new frmDocument(m_dispatcher, std::move(outline));
    auto *frame = new DocumentFrame(form);
    connect(form, &frmDocument::menuWanted, this, &DocumentArea::menuWanted);
    connect(frame, &DocumentFrame::closed, this, &DocumentArea::frameClosed);
    if (appPorts().vault)
        appPorts().vault->attach(form->document());
    new TextIndex(form->document());
    Q_EMIT opened(form);
    m_area->addSubWindow(frame);
    m_frames.push_back(frame);
    // Before the main window shows, the area activates nothing by itself.
    const bool maximised = m_frames.size() == 1 && m_maximised;
    setActive(frame);
    m_emptyArea->hide();
    if (maximised)
        frame->showMaximized();
    else
        frame->show();
    m_area->setActiveSubWindow(frame);
    return form->document();
}

frmDocument *DocumentArea::activeForm() const
{
    return m_active ? m_active->form() : nullptr;
}

Document *DocumentArea::activeDocument() const
{
    return m_active ? &m_active->form()->document() : nullptr;
}

std::vector<frmDocument *> DocumentArea::forms() const
{
    std::vector<frmDocument *> open;
    for (const DocumentFrame *frame : m_frames)
        open.push_back(frame->form());
    return open;
}

std::vector<Document *> DocumentArea::documents() const
{
    std::vector<Document *> open;
    for (const DocumentFrame *frame : m_frames)
        open.push_back(&frame->form()->document());
    return open;
}

void DocumentArea::say(const QString &text)
{
    m_said = text;
    Q_EMIT statusTextChanged();
}

void DocumentArea::closeMainWindow()
{
    m_mainWindow.close();
}

bool DocumentArea::isMaximised() const
{
    return m_active && !m_active->isMinimized() ? m_active->isMaximized() : m_maximised;
}

bool DocumentArea::holdsFocus(const QWidget &focus) const
{
    return &focus == m_area || &focus == m_area->viewport() || qobject_cast<const DocumentFrame *>(&focus);
}

void DocumentArea::showOffers()
{
    if (m_frames.empty()) {
        QStringList recentFiles = appPorts().recentFiles->list();
        recentFiles.removeAll(QString());
        m_emptyArea->setRecentFiles(recentFiles);
        m_emptyArea->setTourOffered(Tour::isThere());
    }
    m_emptyArea->setVisible(m_frames.empty());
}

void DocumentArea::setActive(DocumentFrame *frame)
{
    m_active = frame;
    m_said.clear();
    Q_EMIT activeChanged(activeDocument());
}

void DocumentArea::frameActivated(DocumentFrame *frame)
{
    // No frame is active while another program is; the document commands work on stays.
    if (!frame || std::find(m_frames.begin(), m_frames.end(), frame) == m_frames.end())
        return;
    setActive(frame);
    frame->form()->Form_Activate();
    frame->form()->restorePaneFocus();
}

void DocumentArea::frameClosed(DocumentFrame *frame)
{
    m_maximised = frame->isMaximized();
    std::erase(m_frames, frame);
    if (m_active == frame)
        setActive(m_frames.empty() ? nullptr : m_frames.back());
    Q_EMIT closed();
    if (!m_sessionEnded)
        showOffers();
}
