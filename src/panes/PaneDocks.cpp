// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "panes/PaneDocks.h"

#include "commands/CommandWords.h"
#include "commands/Dispatcher.h"

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QKeyEvent>
#include <QMainWindow>

#include <algorithm>

namespace
{

// Told apart from the layouts of programs that had other panes.
constexpr int layoutVersion = 1;

} // namespace

PaneDocks::PaneDocks(QMainWindow &mainWindow, const PaneHost &host, std::span<const PaneRow> table,
                     std::function<void()> goToDocument)
    : QObject(&mainWindow)
    , m_mainWindow(mainWindow)
    , m_host(host)
    , m_goToDocument(std::move(goToDocument))
{
    for (const PaneRow &row : table)
        add(row);
    host.dispatcher.bind("keyPaneNext", [this](int) { goToNext(); });
    qApp->installEventFilter(this);
}

// The docks belong to the window; what they show goes before.
PaneDocks::~PaneDocks()
{
    for (const Docked &each : m_docked) {
        each.dock->disconnect(this);
        delete each.dock;
    }
}

void PaneDocks::add(const PaneRow &row)
{
    const std::size_t place = m_docked.size();
    m_docked.push_back(
        {row.make(m_host), new QDockWidget(&m_mainWindow), m_mainWindow.findChild<QAction *>(toText(row.command))});
    const Docked &made = m_docked.back();
    made.dock->setObjectName(QStringLiteral("dock_") + toText(row.command));
    made.dock->setWindowTitle(made.pane->name());
    made.dock->setAccessibleName(made.pane->name());
    made.dock->setAllowedAreas(Qt::AllDockWidgetAreas);
    QWidget *content = made.pane->makeWidget();
    made.dock->setWidget(content);
    made.dock->setFocusProxy(content);
    m_mainWindow.addDockWidget(made.pane->area(), made.dock);
    made.dock->hide();
    m_host.dispatcher.bind(row.command, [this, place](int) { toggle(place); });
    if (!row.entering.empty())
        m_host.dispatcher.bind(row.entering, [this, place](int) { enter(place); });
    Q_ASSERT(made.item);
    made.item->setCheckable(true);
    // Whichever way it is shown or closed.
    connect(made.dock->toggleViewAction(), &QAction::toggled, this, [this, place](bool shown) {
        m_docked[place].item->setChecked(shown);
        m_wasUsed = true;
        Q_EMIT stateChanged();
    });
    connect(made.dock, &QDockWidget::dockLocationChanged, this, &PaneDocks::stateChanged);
}

void PaneDocks::toggle(std::size_t place)
{
    QDockWidget &dock = *m_docked[place].dock;
    const bool shown = dock.isHidden();
    // Whoever closes the pane in which they are goes on in the document.
    if (!shown && holdsFocus(dock))
        m_goToDocument();
    dock.setVisible(shown);
    m_docked[place].item->setChecked(shown);
    if (shown)
        dock.widget()->setFocus(Qt::ShortcutFocusReason);
}

void PaneDocks::enter(std::size_t place)
{
    QDockWidget &dock = *m_docked[place].dock;
    dock.show();
    // Of docks that lie on each other, the one in front.
    dock.raise();
    if (!m_docked[place].pane->enter())
        dock.widget()->setFocus(Qt::ShortcutFocusReason);
}

bool PaneDocks::holdsFocus(const QDockWidget &dock) const
{
    const QWidget *focus = QApplication::focusWidget();
    return focus && (focus == &dock || dock.isAncestorOf(focus));
}

void PaneDocks::follow(Document *active)
{
    for (const Docked &each : m_docked)
        each.pane->follow(active);
}

QString PaneDocks::state() const
{
    return m_wasUsed ? QString::fromLatin1(m_mainWindow.saveState(layoutVersion).toBase64()) : QString();
}

void PaneDocks::restore(const QString &state)
{
    if (state.isEmpty())
        return;
    m_wasUsed = true;
    m_mainWindow.restoreState(QByteArray::fromBase64(state.toLatin1()), layoutVersion);
    for (const Docked &each : m_docked)
        each.item->setChecked(!each.dock->isHidden());
}

void PaneDocks::goToNext()
{
    bool found = true;
    for (const Docked &each : m_docked)
        found = found && !holdsFocus(*each.dock);
    for (const Docked &each : m_docked) {
        if (found && each.dock->isVisible()) {
            each.dock->widget()->setFocus(Qt::TabFocusReason);
            return;
        }
        found = found || holdsFocus(*each.dock);
    }
    m_goToDocument();
}

// Of what is pressed in a pane, F6 and Esc lead out of it, unless the pane takes them itself first. Its closing does
// too, which would give the keyboard to whatever comes next in the window.
bool PaneDocks::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Close) {
        const auto isClosed = [&](const Docked &each) { return each.dock == watched && holdsFocus(*each.dock); };
        if (std::ranges::any_of(m_docked, isClosed))
            m_goToDocument();
    }
    if (event->type() != QEvent::KeyPress)
        return QObject::eventFilter(watched, event);
    const auto &key = *static_cast<QKeyEvent *>(event);
    if (key.modifiers() != Qt::NoModifier || (key.key() != Qt::Key_F6 && key.key() != Qt::Key_Escape))
        return QObject::eventFilter(watched, event);
    for (const Docked &each : m_docked) {
        const auto *widget = qobject_cast<const QWidget *>(watched);
        if (!widget || !(widget == each.dock || each.dock->isAncestorOf(widget)))
            continue;
        if (key.key() == Qt::Key_F6)
            goToNext();
        else if (!each.pane->escape())
            m_goToDocument();
        return true;
    }
    return QObject::eventFilter(watched, event);
}
