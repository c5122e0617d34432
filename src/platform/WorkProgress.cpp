// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/WorkProgress.h"

#include "document/Globals.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

class WorkProgress::Arrow
{
public:
    Arrow() { QGuiApplication::setOverrideCursor(Qt::ArrowCursor); }

    ~Arrow() { QGuiApplication::restoreOverrideCursor(); }

    Arrow(const Arrow &) = delete;
    Arrow &operator=(const Arrow &) = delete;
};

WorkProgress::WorkProgress(const QString &what, QWidget *parent, int rest)
    : QDialog(parent)
    , m_rest(rest)
    , m_bar(new QProgressBar)
{
    setObjectName(u"frmProgress"_s);
    setWindowTitle(QCoreApplication::applicationName());
    setWindowModality(Qt::ApplicationModal);
    setAccessibleName(what);
    constexpr int margin = 24;
    constexpr int width = 260;
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin / 2);
    auto *label = new QLabel(what);
    label->setObjectName(u"lblProgress"_s);
    column->addWidget(label);
    m_bar->setObjectName(u"barProgress"_s);
    m_bar->setAccessibleName(what);
    m_bar->setMinimumWidth(width);
    column->addWidget(m_bar);
    column->addSpacing(margin / 2);
    auto *line = new QHBoxLayout;
    line->addStretch();
    auto *cancel = new QPushButton(u"Cancel"_s);
    cancel->setObjectName(u"cmdCancel"_s);
    connect(cancel, &QPushButton::clicked, this, &WorkProgress::reject);
    line->addWidget(cancel);
    line->addStretch();
    column->addLayout(line);
    m_sinceStart.start();
}

WorkProgress::~WorkProgress() = default;

bool WorkProgress::goOn(int done, int all)
{
    constexpr int turn = 50;
    if (m_cancelled || m_sinceStart.elapsed() < m_rest || (m_sinceTurn.isValid() && m_sinceTurn.elapsed() < turn))
        return !m_cancelled;
    m_bar->setRange(0, all);
    m_bar->setValue(done);
    if (!isVisible()) {
        m_arrow = std::make_unique<Arrow>();
        show();
    }
    // What ends the program is heard when the work is done: nobody is to take a document away from under it, and what
    // comes meanwhile is not to select or to save anything.
    const BusyScope busy;
    QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
    m_sinceTurn.start();
    return !m_cancelled;
}

// Escape, the button and the window's own close button all come here. The window stays until the work has stopped.
void WorkProgress::reject()
{
    m_cancelled = true;
}

std::function<bool(int, int)> workProgress(const QString &what, QWidget *parent)
{
    return [progress = std::make_shared<WorkProgress>(what, parent)](int done, int all) {
        return progress->goOn(done, all);
    };
}
