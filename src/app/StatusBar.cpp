// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/StatusBar.h"

#include "app/AppPorts.h"
#include "document/Ports.h"
#include "platform/LockKeys.h"
#include "util/Procedure.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QStyleOption>
#include <QStylePainter>
#include <QTimer>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace
{

constexpr int second = 1000;
constexpr int minute = 60 * second;
constexpr int panelMargin = 6;

// More than a status bar shows; laying out a text of a megabyte would only take time.
constexpr qsizetype lengthShown = 500;

// A label on one line, whatever it holds.
QString onOneLine(const QString &text)
{
    QString line = text.left(lengthShown);
    for (QChar &character : line) {
        if (character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
            character == QChar::ParagraphSeparator)
            character = u' ';
    }
    return line;
}

// The panel of a key: its text, plain while the key is on and pale while it is off. Enabled means that its state is
// known; nothing is shown otherwise, but the room stays.
class KeyPanel final : public QToolButton
{
public:
    using QToolButton::QToolButton;

    QSize sizeHint() const override
    {
        const QFontMetrics metrics = fontMetrics();
        return {metrics.horizontalAdvance(text()) + 2 * panelMargin, metrics.height()};
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        if (!isEnabled())
            return;
        QStylePainter painter(this);
        QPalette colours = palette();
        colours.setCurrentColorGroup(isChecked() ? QPalette::Active : QPalette::Disabled);
        painter.drawItemText(rect(), Qt::AlignCenter, colours, isChecked(), text(), QPalette::WindowText);
    }
};

void showKey(QToolButton &panel, std::optional<bool> on)
{
    panel.setEnabled(on.has_value());
    panel.setChecked(on.value_or(false));
}

bool isLockKey(const QEvent &event)
{
    if (event.type() != QEvent::KeyPress && event.type() != QEvent::KeyRelease)
        return false;
    const int key = static_cast<const QKeyEvent &>(event).key();
    return key == Qt::Key_CapsLock || key == Qt::Key_NumLock;
}

} // namespace

StatusBar::StatusBar(QWidget *parent)
    : QStatusBar(parent)
    , m_text(new QLabel)
    , m_tick(new QTimer(this))
{
    setObjectName(u"sbStatusBar"_s);
    setAccessibleName(u"Status bar"_s);
    m_text->setObjectName(u"sbStatusBarText"_s);
    m_text->setAccessibleDescription(u"Status"_s);
    m_text->setTextFormat(Qt::PlainText);
    // A long label must not widen the window.
    m_text->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    addWidget(m_text, 1);
    m_caps = addKeyPanel(Panel::Caps, u"Caps"_s, u"Caps Lock"_s);
    m_num = addKeyPanel(Panel::Num, u"Num"_s, u"Num Lock"_s);
    m_ins = addKeyPanel(Panel::Ins, u"Ins"_s, u"Overwrite"_s);
    m_time = addClockPanel(u"Time"_s);
    m_date = addClockPanel(u"Date"_s);
    // A coarse timer may be seconds late, and another clock on the screen would be ahead.
    m_tick->setTimerType(Qt::PreciseTimer);
    m_tick->setSingleShot(true);
    connect(m_tick, &QTimer::timeout, this, &StatusBar::showTime);
}

QToolButton *StatusBar::addKeyPanel(Panel panel, const QString &key, const QString &name)
{
    auto *made = new KeyPanel;
    made->setObjectName(u"sbStatusBar"_s + key);
    made->setText(key);
    made->setAccessibleName(name);
    made->setToolTip(name);
    made->setCheckable(true);
    made->setFocusPolicy(Qt::NoFocus);
    made->setEnabled(false);
    connect(made, &QToolButton::clicked, this, [this, panel] { sbStatusBar_PanelClick(panel); });
    addPermanentWidget(made);
    return made;
}

QLabel *StatusBar::addClockPanel(const QString &key)
{
    auto *made = new QLabel;
    made->setObjectName(u"sbStatusBar"_s + key);
    made->setTextFormat(Qt::PlainText);
    made->setContentsMargins(panelMargin, 0, panelMargin, 0);
    made->setAccessibleDescription(key);
    addPermanentWidget(made);
    return made;
}

void StatusBar::start()
{
    qApp->installEventFilter(this);
    showLockKeys();
    showTime();
}

void StatusBar::setText(const QString &text)
{
    m_text->setText(onOneLine(text));
}

void StatusBar::setOverwriting(std::optional<bool> overwriting)
{
    showKey(*m_ins, overwriting);
}

// The keyboard's locks change by their keys while a window of the program is in front, and by anything while none is;
// the clock may have been set, or the machine have slept, meanwhile.
bool StatusBar::eventFilter(QObject *watched, QEvent *event)
{
    if (isLockKey(*event)) {
        // The key is still on its way.
        QMetaObject::invokeMethod(this, &StatusBar::showLockKeys, Qt::QueuedConnection);
    } else if (event->type() == QEvent::ApplicationActivate) {
        showLockKeys();
        showTime();
    }
    return QStatusBar::eventFilter(watched, event);
}

void StatusBar::sbStatusBar_PanelClick(Panel panel)
{
    procedure("frmMain sbStatusBar_PanelClick", [&] {
        if (panel == Panel::Ins)
            Q_EMIT insertClicked();
        else if (LockKeys *keys = appPorts().lockKeys)
            keys->toggle(panel == Panel::Caps ? LockKey::Caps : LockKey::Num);
        showLockKeys();
    });
}

void StatusBar::showLockKeys()
{
    const LockKeys *keys = appPorts().lockKeys;
    showKey(*m_caps, keys ? keys->isOn(LockKey::Caps) : std::nullopt);
    showKey(*m_num, keys ? keys->isOn(LockKey::Num) : std::nullopt);
}

void StatusBar::showTime()
{
    const QDateTime now = ports().clock->now();
    const QLocale locale = QLocale::system();
    m_time->setText(locale.toString(now.time(), QLocale::ShortFormat));
    m_date->setText(locale.toString(now.date(), QLocale::ShortFormat));
    // Some locales show seconds even in their short form.
    const int period = locale.timeFormat(QLocale::ShortFormat).contains(u's') ? second : minute;
    m_tick->start(period - now.time().msecsSinceStartOfDay() % period);
}
