// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "app/EndingSignals.h"

#include <QObject>

#include <optional>

class frmMain;

// What the desktop's session manager grants a program at a log-out, and is told by it.
class LogOut
{
public:
    virtual ~LogOut() = default;
    // Whether the user may be asked; may wait until it is this program's turn.
    virtual bool maySpeak() = 0;
    // The user has agreed; it is another program's turn.
    virtual void hasSpoken() = 0;
    // The session is to go on. Instead of hasSpoken(): with that the turn has passed, and a manager takes what comes
    // afterwards for a failure to save at best.
    virtual void refuse() = 0;
};

// The ends of a session that do not begin with closing the main window.
//
// A log-out asks about unsaved changes as closing does, and Cancel keeps the session; where nobody may be asked,
// unsaved changes refuse the log-out. When the desktop then ends the program, nothing is asked again.
//
// A signal ends the program without a question, which nobody might be there to answer: settings, recent files and the
// list of open documents are stored and the log is ended. No document is written, as nobody said that its file is to be
// replaced; what is unsaved is offered at the next start. The exit status is 128 and the signal's number.
//
// A display that is gone lets the toolkit end the program; the session is ended on that way, too.
class SessionEnd final : public QObject
{
    Q_OBJECT

public:
    explicit SessionEnd(frmMain &mainWindow);
    ~SessionEnd() override;

    // Ends the session and every event loop.
    void end(int exitStatus);

    // What the program is to return when it was ended before its event loop ran.
    std::optional<int> exitStatus() const { return m_exitStatus; }

    // A log-out's request.
    void commitData(LogOut &logOut);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    static void endWithTheDisplay();
    static void leaveUnsaved();

    frmMain &m_mainWindow;
    EndingSignals m_signals;
    std::optional<int> m_exitStatus;
};
