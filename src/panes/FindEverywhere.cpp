// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "panes/FindEverywhere.h"

#include "commands/Dispatcher.h"
#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/Ports.h"
#include "document/TextPane.h"
#include "panes/FindBox.h"
#include "panes/FindHitDelegate.h"
#include "panes/FindList.h"
#include "panes/FindOptionsRow.h"
#include "panes/FindReplaceRow.h"

#include <QAccessible>
#include <QApplication>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// After a key nothing is begun for so long, in milliseconds: the next one may come.
constexpr int restAfterKey = 120;
// What takes longer to be shown waits for the next key.
constexpr int longestLook = 40;

} // namespace

FindEverywhere::FindEverywhere(const PaneHost &host)
    : m_host(host)
    , m_guide(host.windows)
    , m_hits(new FindHitsModel(this))
    , m_delegate(new FindHitDelegate(*m_hits, this))
    , m_box(new FindBox(this))
    , m_error(new QLabel(this))
    , m_options(new FindOptionsRow(this))
    , m_replacing(new QToolButton(this))
    , m_replaceRow(new FindReplaceRow(this))
    , m_counts(new QLabel(this))
    , m_list(new FindList(*m_hits, this))
{
    setObjectName(u"paneFindEverywhere"_s);
    setFocusProxy(m_box);
    m_rest.setSingleShot(true);
    m_rest.setInterval(restAfterKey);
    connect(&m_rest, &QTimer::timeout, this, &FindEverywhere::search);
    m_looking.setSingleShot(true);
    connect(&m_looking, &QTimer::timeout, this, &FindEverywhere::showCurrent);
    layOut();
    connectBox();
    connectList();
    connectReplacing();
    connect(m_options, &FindOptionsRow::changed, this, &FindEverywhere::search);
    connect(qApp, &QApplication::focusChanged, this, [this](const QWidget *, const QWidget *focus) { leftFor(focus); });
    // As a command, so that the way back leads here again.
    host.dispatcher.bind("findGoTo", [this](int row) { goTo(row); });
    showCounts();
}

FindEverywhere::~FindEverywhere()
{
    // What is below goes after this, and tells of it.
    m_hits->disconnect(this);
    qApp->disconnect(this);
}

void FindEverywhere::layOut()
{
    for (QLabel *label : {m_error, m_counts}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
    }
    m_error->setObjectName(u"lblFindError"_s);
    m_error->hide();
    m_counts->setObjectName(u"lblHits"_s);
    m_replacing->setObjectName(u"cmdReplacing"_s);
    m_replacing->setText(u"Replace"_s);
    m_replacing->setToolTip(u"Replace what is found"_s);
    m_replacing->setAccessibleName(u"Replace what is found"_s);
    m_replacing->setCheckable(true);
    m_replacing->setAutoRaise(true);
    m_replacing->setArrowType(Qt::RightArrow);
    m_replacing->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_replacing->setFocusPolicy(Qt::StrongFocus);
    m_options->buttons()->addWidget(m_replacing);
    m_replaceRow->hide();
    m_list->setItemDelegate(m_delegate);
    auto *column = new QVBoxLayout(this);
    const int margin = fontMetrics().averageCharWidth() / 2;
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(margin);
    for (QWidget *each : std::initializer_list<QWidget *>{m_box, m_error, m_options, m_replaceRow, m_counts})
        column->addWidget(each);
    column->addWidget(m_list, 1);
    std::vector<QWidget *> order{m_box};
    const std::vector<QWidget *> options = m_options->widgets();
    order.insert(order.end(), options.begin(), options.end());
    order.push_back(m_replacing);
    const std::vector<QWidget *> replacing = m_replaceRow->widgets();
    order.insert(order.end(), replacing.begin(), replacing.end());
    order.push_back(m_list);
    for (std::size_t place = 1; place < order.size(); ++place)
        setTabOrder(order[place - 1], order[place]);
}

void FindEverywhere::connectBox()
{
    connect(m_box, &FindBox::edited, this, &FindEverywhere::edit);
    // The box tells of a text that stands in its list when it loses the keyboard, too.
    connect(m_box, &FindBox::recalled, this, [this] {
        if (m_rest.isActive())
            search();
    });
    connect(m_box, &FindBox::walked, this, &FindEverywhere::walk);
    connect(m_box, &FindBox::entered, this, &FindEverywhere::goToCurrent);
}

void FindEverywhere::connectList()
{
    connect(m_list, &FindList::looked, this, &FindEverywhere::look);
    connect(m_list, &FindList::chosen, this, &FindEverywhere::choose);
    connect(m_hits, &FindHitsModel::counted, this, &FindEverywhere::showCounts);
    connect(m_hits, &FindHitsModel::rowsInserted, this, &FindEverywhere::takeFirst);
    connect(m_hits, &FindHitsModel::finished, this, [this] {
        m_wanted = Wanted::Nothing;
        showCounts();
        QAccessibleEvent event(m_counts, QAccessible::Alert);
        QAccessible::updateAccessibility(&event);
    });
}

void FindEverywhere::follow(Document *active)
{
    m_active = active;
    // A window that came to the front for a look changes nothing of what is looked for.
    if (m_guide.isMoving() && m_guide.isShown())
        return;
    m_options->follow(active);
    if (isVisible() && searched() != m_searched)
        search();
}

std::vector<Document *> FindEverywhere::searched() const
{
    return m_options->documents(m_host.windows.documents(), m_active);
}

// One line of what is selected in the document, unless that is a hit that was gone to.
QString FindEverywhere::selectedText() const
{
    constexpr int longest = 200;
    QString text;
    if (const auto *line = qobject_cast<const QLineEdit *>(QApplication::focusWidget()); line && !isAncestorOf(line))
        text = line->selectedText();
    else if (m_active && m_active->view() && m_active->view()->m_bTextHasFocus() &&
             !isAncestorOf(QApplication::focusWidget()))
        text = m_active->view()->txtRTF.SelText();
    const bool isLine = !text.contains(u'\n') && !text.contains(u'\r') && text.size() <= longest;
    return isLine && text != m_goneTo ? text : QString();
}

void FindEverywhere::enter()
{
    const QString text = selectedText();
    m_box->setFocus(Qt::ShortcutFocusReason);
    m_box->begin(text);
}

bool FindEverywhere::escape()
{
    const bool wasLooking = m_looking.isActive();
    m_looking.stop();
    return m_guide.takeBack() || wasLooking;
}

void FindEverywhere::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_box->setSettings(m_host.settings ? m_host.settings() : nullptr);
    if (!event->spontaneous())
        search();
}

// Nothing is looked for that nobody sees.
void FindEverywhere::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    if (event->spontaneous())
        return;
    escape();
    m_rest.stop();
    m_box->remember();
    m_searched.clear();
    m_hits->search({}, FindQuery());
}

void FindEverywhere::edit()
{
    m_wanted = Wanted::Nothing;
    m_goneTo.clear();
    if (isVisible())
        m_rest.start();
}

void FindEverywhere::search()
{
    m_rest.stop();
    escape();
    m_searched = searched();
    const FindQuery query(m_box->currentText(), m_options->options());
    showError(query.error());
    m_hits->search(m_searched, query);
    takeReplacing();
}

void FindEverywhere::showError(const QString &reason)
{
    QString error = reason;
    if (!error.isEmpty())
        error[0] = error[0].toUpper();
    m_error->setText(error);
    m_error->setAccessibleName(error);
    m_error->setVisible(!error.isEmpty());
    m_box->setAccessibleDescription(error);
}

void FindEverywhere::showCounts()
{
    const bool isNothing = m_hits->query().isEmpty();
    const QString text = isNothing ? QString() : inWords(m_hits->counts());
    say(text);
    m_list->setEmptyText(!m_active && m_searched.empty() ? u"No document is open."_s
                         : !isNothing                    ? QString()
                         : m_error->text().isEmpty()     ? u"Type what is to be found in labels and texts. Of several "
                                                       "words all must be in an entry; what stands in \"quotation "
                                                       "marks\" is found just so."_s
                                                     : QString());
    showReplacing();
}

void FindEverywhere::say(const QString &text)
{
    m_counts->setText(text);
    m_counts->setAccessibleName(text);
}

// What is pending is looked for at once; the first hit comes when it comes.
void FindEverywhere::walk(int hits)
{
    if (m_rest.isActive())
        search();
    m_hits->dropStale();
    // At the end of the list there is still the last one, if it was taken back.
    const bool isTakenBack = m_list->currentIndex().isValid() && !m_guide.isShown() && !m_looking.isActive();
    if (m_list->walk(hits) || isTakenBack)
        look(m_list->currentIndex().row());
    else if (m_hits->rowCount() == 0 && !m_hits->query().isEmpty())
        m_wanted = Wanted::Look;
}

void FindEverywhere::goToCurrent()
{
    if (m_rest.isActive())
        search();
    m_hits->dropStale();
    const int row = m_list->currentIndex().isValid() ? m_list->currentIndex().row() : m_hits->hitRow(-1, 1);
    if (row >= 0)
        choose(row);
    else if (!m_hits->query().isEmpty() && !m_hits->counts().isFinished)
        m_wanted = Wanted::Go;
}

void FindEverywhere::takeFirst()
{
    const Wanted wanted = std::exchange(m_wanted, Wanted::Nothing);
    if (wanted == Wanted::Nothing)
        return;
    // The rows are to be laid out before one is gone to.
    QMetaObject::invokeMethod(
        this, [this, wanted] { wanted == Wanted::Look ? walk(1) : goToCurrent(); }, Qt::QueuedConnection);
}

void FindEverywhere::look(int row)
{
    if (m_hits->row(row).kind == FindHitsModel::RowKind::More) {
        m_hits->tellMore(row);
        return;
    }
    m_box->remember();
    m_list->setCurrentIndex(m_hits->index(row));
    if (m_looking.interval() > longestLook)
        m_looking.start();
    else
        showCurrent();
}

void FindEverywhere::showCurrent()
{
    if (!m_list->currentIndex().isValid())
        return;
    QElapsedTimer time;
    time.start();
    m_guide.show(m_hits->row(m_list->currentIndex().row()), [this] { goToCurrent(); });
    m_looking.setInterval(static_cast<int>(std::min<qint64>(time.elapsed(), restAfterKey)));
}

void FindEverywhere::choose(int row)
{
    if (m_hits->row(row).kind == FindHitsModel::RowKind::More)
        m_hits->tellMore(row);
    else
        m_host.dispatcher.run("findGoTo", row);
}

void FindEverywhere::goTo(int row)
{
    if (row < 0 || row >= m_hits->rowCount())
        return;
    m_looking.stop();
    m_box->remember();
    m_list->setCurrentIndex(m_hits->index(row));
    const FindHitsModel::Row found = m_hits->row(row);
    if (!m_guide.goTo(found))
        return;
    const bool isInText = found.hit() && !found.hit()->inLabel && found.document->view();
    m_goneTo = isInText ? found.document->view()->txtRTF.SelText() : QString();
}

// Whoever goes on elsewhere in the window has done with looking.
void FindEverywhere::leftFor(const QWidget *focus)
{
    if (!focus || m_guide.isMoving() || focus->window() != window() || isAncestorOf(focus))
        return;
    if (parentWidget() == focus)
        return;
    m_looking.stop();
    m_guide.leave();
}
