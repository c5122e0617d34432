// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/SessionEnd.h"

#include "app/frmMain.h"
#include "app/modMain.h"
#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/Globals.h"
#include "document/OutlinePane.h"
#include "util/Procedure.h"
#include "vault/Vault.h"

#include <QApplication>
#include <QEvent>
#include <QSessionManager>

#include <algorithm>
#include <cstdlib>

namespace
{

constexpr int signalStatus = 128;

class DesktopLogOut final : public LogOut
{
public:
    explicit DesktopLogOut(QSessionManager &manager)
        : m_manager(manager)
    {
    }

    // Some managers let a program speak only of what went wrong; losing words is that.
    bool maySpeak() override { return m_manager.allowsInteraction() || m_manager.allowsErrorInteraction(); }

    void hasSpoken() override { m_manager.release(); }

    void refuse() override { m_manager.cancel(); }

private:
    QSessionManager &m_manager;
};

bool wouldLoseChanges(const Document *document)
{
    return document->hasUnsavedChanges() && document->mayBeSaved();
}

// A label being typed is a change, too.
void endLabelEdits(const std::vector<Document *> &documents)
{
    for (const Document *document : documents)
        document->view()->trvOutline.EndLabelEdit();
}

// What is to be ended when the toolkit ends the program by itself.
SessionEnd *living = nullptr;

} // namespace

SessionEnd::SessionEnd(frmMain &mainWindow)
    : m_mainWindow(mainWindow)
{
    connect(&m_signals, &EndingSignals::received, this, [this](int signal) { end(signalStatus + signal); });
    // Directly: the desktop takes the return for the answer.
    connect(
        qApp, &QGuiApplication::commitDataRequest, this,
        [this](QSessionManager &manager) {
            DesktopLogOut logOut(manager);
            commitData(logOut);
        },
        Qt::DirectConnection);
    qApp->installEventFilter(this);
    living = this;
    static const bool registered = std::atexit(endWithTheDisplay) == 0;
    Q_UNUSED(registered)
}

SessionEnd::~SessionEnd()
{
    living = nullptr;
}

void SessionEnd::end(int exitStatus)
{
    if (!m_exitStatus)
        m_exitStatus = exitStatus;
    procedure("frmMain endSession", [this] { endLabelEdits(m_mainWindow.windows().documents()); });
    leaveUnsaved();
    m_mainWindow.endSession();
    // The loops of open dialogs end, too; each dialog counts as cancelled.
    QCoreApplication::exit(*m_exitStatus);
}

void SessionEnd::commitData(LogOut &logOut)
{
    procedure("frmMain commitDataRequest", [&] {
        const std::vector<Document *> documents = m_mainWindow.windows().documents();
        endLabelEdits(documents);
        if (std::any_of(documents.begin(), documents.end(), wouldLoseChanges)) {
            // In the middle of a load or a save there is no document to ask about.
            if (bBusy || !logOut.maySpeak() || !m_mainWindow.mayGiveUpDocuments()) {
                logOut.refuse();
                return;
            }
            logOut.hasSpoken();
        }
        modMain::StoreState();
    });
}

// The desktop's word to end now, after a log-out was agreed to or without one: every window would be asked to close,
// and would ask the user once more.
bool SessionEnd::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Quit || watched != qApp)
        return QObject::eventFilter(watched, event);
    end(EXIT_SUCCESS);
    event->accept();
    return true;
}

void SessionEnd::endWithTheDisplay()
{
    if (!living)
        return;
    leaveUnsaved();
    living->m_mainWindow.endSession();
}

// The next start offers what was not saved.
void SessionEnd::leaveUnsaved()
{
    if (appPorts().vault)
        appPorts().vault->endSession();
}
