// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/Ports.h"

#include <QObject>
#include <QString>

#include <vector>

class Dispatcher;
class DocumentFrame;
class EmptyArea;
class QMainWindow;
class QMdiArea;
class frmDocument;

// The document windows in the middle of the main window, and what is offered there while there is none. The window with
// the keyboard is the active one, and stays it while another program has the keyboard.
class DocumentArea final : public QObject, public DocumentWindows
{
    Q_OBJECT

public:
    DocumentArea(QMainWindow &mainWindow, Dispatcher &dispatcher);
    ~DocumentArea() override;

    Document &createDocument(std::unique_ptr<Outline> outline) override;
    Document *activeDocument() const override;
    std::vector<Document *> documents() const override;
    void closeMainWindow() override;
    void say(const QString &text) override;

    // What is said while no document is active.
    const QString &said() const { return m_said; }

    QMdiArea &mdiArea() const { return *m_area; }

    // Null while there is none.
    frmDocument *activeForm() const;
    // In the order in which they were opened.
    std::vector<frmDocument *> forms() const;

    // Whether document windows fill the area: the active one does, or without one the next is to.
    bool isMaximised() const;

    void setMaximised(bool maximised) { m_maximised = maximised; }

    // Shows what can be done while there is no document.
    void showOffers();

    // From now on nothing is offered any more.
    void endSession() { m_sessionEnded = true; }

    // Whether the keyboard focus is at the area itself, and in no document.
    bool holdsFocus(const QWidget &focus) const;

Q_SIGNALS:
    // A menu of the menu bar is wanted as a context menu.
    void menuWanted(std::string_view menu, const QPoint &place);
    // A document has its window, which is not the active one yet.
    void opened(frmDocument *form);
    // Another document is active, or none.
    void activeChanged(Document *active);
    // One window less is there.
    void closed();
    // Something else is said while no document is active.
    void statusTextChanged();

private:
    void setActive(DocumentFrame *frame);
    void frameActivated(DocumentFrame *frame);
    void frameClosed(DocumentFrame *frame);

    QMainWindow &m_mainWindow;
    Dispatcher &m_dispatcher;
    QMdiArea *const m_area;
    EmptyArea *m_emptyArea = nullptr;
    // In the order in which the windows were opened.
    std::vector<DocumentFrame *> m_frames;
    DocumentFrame *m_active = nullptr;
    QString m_said;
    bool m_sessionEnded = false;
    // While there is no document, what the next one's window is to be.
    bool m_maximised = false;
};
