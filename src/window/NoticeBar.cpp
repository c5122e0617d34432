// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "window/NoticeBar.h"

#include "platform/BreakableText.h"

#include <QAbstractButton>
#include <QAccessibleWidget>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QStyle>
#include <QTimer>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace
{

struct NoticeButton {
    NoticeKind kind;
    const char16_t *caption;
    const char16_t *name;
    void (NoticeBar::*chosen)();
};

constexpr const char16_t *takeTheirsName = u"cmdTakeTheirs";

constexpr std::array noticeButtons = {
    NoticeButton{NoticeKind::NotSaved, u"Save &as...", u"cmdSaveAs", &NoticeBar::saveAsChosen},
    NoticeButton{NoticeKind::NotSaved, u"T&ry again", u"cmdTryAgain", &NoticeBar::saveChosen},
    NoticeButton{NoticeKind::FileGone, u"Save a&gain", u"cmdSaveAgain", &NoticeBar::saveChosen},
    NoticeButton{NoticeKind::FileChanged, u"Ta&ke theirs", takeTheirsName, &NoticeBar::takeTheirsChosen},
    NoticeButton{NoticeKind::FileChanged, u"Keep &mine", u"cmdKeepMine", &NoticeBar::keepMineChosen},
    NoticeButton{NoticeKind::FileChanged, u"Ope&n theirs beside", u"cmdOpenTheirs", &NoticeBar::openTheirsChosen},
};

// What is to be decided goes when that was done.
bool canBeDismissed(NoticeKind kind)
{
    return kind != NoticeKind::FileChanged;
}

// Tells assistive technology that a notice is a message to be spoken; Qt takes it for a container.
QAccessibleInterface *noticeInterface(const QString &className, QObject *object)
{
    if (className != "NoticeRow"_L1)
        return nullptr;
    return new QAccessibleWidget(static_cast<QWidget *>(object), QAccessible::AlertMessage);
}

// A colour between two, `share` of it the second.
QColor mixed(const QColor &first, const QColor &second, double share)
{
    const auto mix = [share](double one, double other) { return static_cast<float>(one + (other - one) * share); };
    return QColor::fromRgbF(mix(first.redF(), second.redF()), mix(first.greenF(), second.greenF()),
                            mix(first.blueF(), second.blueF()));
}

} // namespace

NoticeRow::NoticeRow(QWidget *parent)
    : QWidget(parent)
    , m_body(new QBoxLayout(QBoxLayout::LeftToRight))
    , m_buttons(new QBoxLayout(QBoxLayout::LeftToRight))
    , m_sign(new QLabel(this))
    , m_label(new QLabel(this))
{
    auto *layout = new QHBoxLayout(this);
    layout->addWidget(m_sign, 0, Qt::AlignTop);
    layout->addLayout(m_body, 1);
    m_body->addWidget(m_label, 1);
    m_body->addLayout(m_buttons);
    m_buttons->addStretch();
    m_label->setObjectName(u"lblNotice"_s);
    m_label->setTextFormat(Qt::PlainText);
    m_label->setWordWrap(true);
    showSign();
}

void NoticeRow::setText(const QString &text)
{
    if (text == m_text)
        return;
    m_text = text;
    setBreakableText(*m_label, text);
    setAccessibleName(text);
    for (QPushButton *button : findChildren<QPushButton *>())
        button->setAccessibleDescription(text);
    if (!text.isEmpty())
        announce();
}

void NoticeRow::addButton(const QString &caption, const QString &name, std::function<void()> run)
{
    auto *button = new QPushButton(caption, this);
    button->setObjectName(name);
    button->setFocusPolicy(Qt::TabFocus);
    connect(button, &QPushButton::clicked, this, std::move(run));
    m_buttons->addWidget(button, 0, Qt::AlignTop);
}

void NoticeRow::announce()
{
    constexpr int eyeTime = 1000;
    m_drawsEye = true;
    update();
    QTimer::singleShot(eyeTime, this, [this] {
        m_drawsEye = false;
        update();
    });
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

// The buttons go below the text where they would leave it too little room.
int NoticeRow::heightFor(int width)
{
    constexpr int charactersBeside = 40;
    const int needed = m_buttons->sizeHint().width() + charactersBeside * fontMetrics().averageCharWidth();
    m_body->setDirection(needed > width ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    // A layout within another keeps what it has measured until the outer one is activated. To invalidate it here would
    // ask for another layout each time, and so for ever.
    layout()->activate();
    return layout()->totalHeightForWidth(width);
}

void NoticeRow::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange)
        showSign();
}

void NoticeRow::paintEvent(QPaintEvent *)
{
    constexpr QColor warning(240, 160, 32);
    constexpr double backgroundShare = 0.2;
    constexpr double lineShare = 0.6;
    const QColor window = palette().color(QPalette::Window);
    QPainter painter(this);
    painter.fillRect(rect(), mixed(window, warning, backgroundShare));
    painter.fillRect(0, height() - 1, width(), 1, mixed(window, warning, lineShare));
    if (m_drawsEye) {
        constexpr int frame = 2;
        painter.setPen(QPen(palette().color(QPalette::Highlight), frame));
        painter.drawRect(rect().adjusted(1, 1, -1, -1));
    }
}

void NoticeRow::showSign()
{
    const int side = std::max(style()->pixelMetric(QStyle::PM_SmallIconSize), fontMetrics().height());
    const QIcon icon = style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, this);
    m_sign->setPixmap(icon.pixmap(QSize(side, side), devicePixelRatio()));
}

NoticeBar::NoticeBar(QWidget *parent)
    : QWidget(parent)
    , m_area(new QScrollArea(this))
    , m_content(new QWidget)
{
    // A second installation of the same factory changes nothing.
    QAccessible::installFactory(noticeInterface);
    setObjectName(u"noticeBar"_s);
    setAccessibleName(tr("Notices"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_area);
    m_area->setFrameShape(QFrame::NoFrame);
    m_area->setFocusPolicy(Qt::NoFocus);
    m_area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_area->setWidgetResizable(true);
    auto *rows = new QVBoxLayout(m_content);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    m_area->setWidget(m_content);
    m_content->installEventFilter(this);
    hide();
}

void NoticeBar::showNotices(const std::vector<DocumentNotice> &notices)
{
    m_shown = notices;
    for (const auto &[kind, row] : m_rows) {
        if (std::ranges::find(notices, kind, &DocumentNotice::kind) != notices.end())
            continue;
        leaveIfInside(row);
        row->hide();
        // Told of again, it is news again.
        row->setText(QString());
    }
    for (const DocumentNotice &notice : notices) {
        NoticeRow *row = rowOf(notice.kind);
        row->show();
        row->setText(notice.text);
    }
    setVisible(!notices.empty());
}

void NoticeBar::setTheirsOffered(bool offered)
{
    m_theirsOffered = offered;
    showTheirsOffer();
}

void NoticeBar::showTheirsOffer()
{
    auto *button = findChild<QAbstractButton *>(QString::fromUtf16(takeTheirsName));
    if (!button || button->isEnabled() == m_theirsOffered)
        return;
    if (!m_theirsOffered)
        leaveIfInside(button);
    button->setEnabled(m_theirsOffered);
    button->setToolTip(m_theirsOffered ? QString() : tr("This window has changes of its own, which would be lost"));
}

void NoticeBar::announce(NoticeKind kind)
{
    if (std::ranges::find(m_shown, kind, &DocumentNotice::kind) != m_shown.end())
        rowOf(kind)->announce();
}

int NoticeBar::layOut()
{
    if (m_shown.empty())
        return 0;
    int wanted = 0;
    for (const DocumentNotice &notice : m_shown)
        wanted += rowOf(notice.kind)->heightFor(parentWidget()->width());
    const int height = std::min(wanted, parentWidget()->height() / 2);
    setGeometry(0, 0, parentWidget()->width(), height);
    return height;
}

void NoticeBar::enter()
{
    if (!m_shown.empty())
        rowOf(m_shown.front().kind)->findChild<QAbstractButton *>()->setFocus(Qt::TabFocusReason);
}

void NoticeBar::hold()
{
    if (!m_shown.empty())
        setFocus(Qt::OtherFocusReason);
}

// Whoever types on without a look would come into a pane by Tab.
bool NoticeBar::focusNextPrevChild(bool next)
{
    return hasFocus() || QWidget::focusNextPrevChild(next);
}

// What the bar does not take goes on to the window, as the keys of its panes do.
void NoticeBar::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Escape:
    case Qt::Key_F6:
        Q_EMIT left();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (auto *button = qobject_cast<QAbstractButton *>(window()->focusWidget()))
            button->click();
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

bool NoticeBar::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::LayoutRequest)
        Q_EMIT heightChanged();
    return QWidget::eventFilter(watched, event);
}

NoticeRow *NoticeBar::rowOf(NoticeKind kind)
{
    const auto [place, isNew] = m_rows.try_emplace(kind, nullptr);
    NoticeRow *&row = place->second;
    if (!isNew)
        return row;
    row = new NoticeRow(m_content);
    for (const NoticeButton &button : noticeButtons) {
        if (button.kind == kind)
            row->addButton(QString::fromUtf16(button.caption), QString::fromUtf16(button.name),
                           [this, chosen = button.chosen] { (this->*chosen)(); });
    }
    if (canBeDismissed(kind))
        row->addButton(tr("&Dismiss"), u"cmdDismiss"_s, [this, kind] { Q_EMIT dismissed(kind); });
    if (kind == NoticeKind::FileChanged)
        showTheirsOffer();
    static_cast<QBoxLayout *>(m_content->layout())
        ->insertWidget(static_cast<int>(std::distance(m_rows.begin(), place)), row);
    return row;
}

// Otherwise Qt would hand the focus to whatever comes next.
void NoticeBar::leaveIfInside(const QWidget *part)
{
    if (part->isAncestorOf(window()->focusWidget()) || hasFocus())
        Q_EMIT left();
}
