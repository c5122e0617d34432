// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "window/PreviewOverlay.h"

#include "window/frmDocument.h"

#include "platform/RichTextBox.h"
#include "platform/TreeView.h"

#include "model/ShownLabel.h"

#include <QApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// Of the entries above one, those next to the root and to it; the others are dots.
QStringList labelsAbove(const Entry &entry)
{
    constexpr qsizetype mostNamed = 4;
    constexpr qsizetype longest = 30;
    QStringList labels;
    int left = 0;
    const Entry *top = nullptr;
    for (const Entry *each = entry.parent(); each; each = each->parent()) {
        if (labels.size() < mostNamed - 1)
            labels.prepend(briefLabel(each->label(), longest));
        else
            ++left;
        top = each;
    }
    if (left > 1)
        labels.prepend(u"…"_s);
    if (left > 0)
        labels.prepend(briefLabel(top->label(), longest));
    return labels;
}

// A label with what is marked in it; all of it where it is short, or what stands around the mark.
QString markedLabel(const QString &label, int start, int length, const QPalette &colours)
{
    constexpr qsizetype around = 60;
    const qsizetype from = start > around ? start - around : 0;
    const qsizetype to = std::min<qsizetype>(label.size(), start + length + around);
    const auto part = [&label](qsizetype begin, qsizetype end) {
        return label.sliced(begin, end - begin).simplified().toHtmlEscaped();
    };
    const auto space = [&label](qsizetype place) {
        return place > 0 && place < label.size() && (label[place].isSpace() || label[place - 1].isSpace()) ? u" "_s
                                                                                                           : QString();
    };
    const QString style = u"background-color:%1;color:%2"_s.arg(colours.color(QPalette::Highlight).name(),
                                                                colours.color(QPalette::HighlightedText).name());
    return (from > 0 ? u"…"_s : QString()) + part(from, start) + space(start) + u"<span style=\"%1\">"_s.arg(style) +
           part(start, start + length) + u"</span>"_s + space(start + length) + part(start + length, to) +
           (to < label.size() ? u"…"_s : QString());
}

} // namespace

PreviewOverlay::PreviewOverlay(frmDocument &form)
    : QFrame(&form)
    , m_form(form)
    , m_head(new QLabel(this))
    , m_text(new RichTextBox(this))
{
    setObjectName(u"preview"_s);
    setAccessibleName(u"Preview"_s);
    setAutoFillBackground(true);
    setFrameStyle(QFrame::StyledPanel | QFrame::Plain);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_head);
    layout->addWidget(m_text, 1);
    m_head->setObjectName(u"lblPreview"_s);
    m_head->setTextFormat(Qt::RichText);
    m_head->setWordWrap(true);
    m_head->setMargin(fontMetrics().height() / 3);
    // However long the labels are.
    m_head->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Minimum);
    m_text->setObjectName(u"txtPreview"_s);
    m_text->setAccessibleName(u"Preview of the entry's text"_s);
    m_text->setFrameShape(QFrame::NoFrame);
    m_text->setLocked(true);
    m_text->setFocusPolicy(Qt::NoFocus);
    m_text->setContextMenuPolicy(Qt::NoContextMenu);
    m_text->viewport()->installEventFilter(this);
    m_head->installEventFilter(this);
    takeColours();
    hide();
}

void PreviewOverlay::follow()
{
    m_form.textBox->installEventFilter(this);
    connect(m_form.treeView, &TreeView::gotFocus, this, &PreviewOverlay::leave);
    connect(m_form.textBox, &RichTextBox::gotFocus, this, &PreviewOverlay::leave);
    Document &document = m_form.document();
    connect(&document.history, &History::changed, this, &PreviewOverlay::end);
    connect(&document.history, &History::positionChanged, this, &PreviewOverlay::end);
    connect(&document.tree, &EntryTree::selectedChanged, this, &PreviewOverlay::end);
    connect(&document.tree, &EntryTree::modelAboutToBeReset, this, &PreviewOverlay::end);
    connect(&document.texts, &LiveTexts::changed, this, &PreviewOverlay::end);
}

void PreviewOverlay::show(const Preview &preview)
{
    const Entry *entry = m_form.document().tree.entry(preview.entry);
    if (!entry)
        return;
    m_preview = preview;
    keepKeyboard(QApplication::focusWidget());
    m_form.treeView->mark(entry);
    showHead(*entry);
    setGeometry(m_form.textBox->geometry());
    QFrame::show();
    raise();
    layout()->activate();
    showText(*entry);
}

void PreviewOverlay::end()
{
    if (!isShown())
        return;
    m_preview = {};
    keepKeyboard(nullptr);
    m_shown = EntryId::None;
    hide();
    m_text->showText(std::make_shared<EntryDocument>(Inflated(), m_form.document().baseFont()));
    m_form.treeView->endMark(TreeView::AfterMark::GoBack);
}

// A click would give it to the window's pane otherwise, and that would end the look.
void PreviewOverlay::keepKeyboard(QWidget *widget)
{
    for (QWidget *each :
         {static_cast<QWidget *>(this), static_cast<QWidget *>(m_head), static_cast<QWidget *>(m_text)}) {
        each->setFocusProxy(widget);
        each->setFocusPolicy(widget ? Qt::ClickFocus : Qt::NoFocus);
    }
}

// Whoever clicked into the outline means what he saw there.
void PreviewOverlay::leave()
{
    if (isShown() && QApplication::mouseButtons() != Qt::NoButton)
        m_form.treeView->endMark(TreeView::AfterMark::Stay);
    end();
}

void PreviewOverlay::showHead(const Entry &entry)
{
    const bool isLabel = m_preview.part == Preview::Part::Label;
    const QString &label = entry.label();
    const int start = std::clamp<int>(m_preview.start, 0, static_cast<int>(label.size()));
    const int length = std::clamp<int>(m_preview.length, 0, static_cast<int>(label.size()) - start);
    const QString own =
        isLabel ? markedLabel(label, start, length, palette()) : briefLabel(label, limits::shownLabel).toHtmlEscaped();
    QStringList above = labelsAbove(entry);
    m_head->setAccessibleName(u"Preview: "_s + (above + QStringList(briefLabel(label))).join(u", "_s));
    for (QString &each : above)
        each = each.toHtmlEscaped();
    above.append(u"<b>"_s + own + u"</b>"_s);
    m_head->setText(above.join(u" ▸ "_s));
}

void PreviewOverlay::showText(const Entry &entry)
{
    Document &document = m_form.document();
    if (m_shown != m_preview.entry) {
        const QByteArray stored = document.tree.storedText(&entry);
        m_text->showText(std::make_shared<EntryDocument>(stored, document.baseFont(), m_preview.entry));
        m_shown = m_preview.entry;
    }
    const bool isText = m_preview.part == Preview::Part::Text;
    m_text->setSelStart(isText ? m_preview.start : 0);
    if (!isText || m_preview.length == 0) {
        m_text->verticalScrollBar()->setValue(0);
        return;
    }
    m_text->setSelLength(m_preview.length);
    m_text->ensureCursorVisible();
    // With what stands before it.
    QTextCursor start = m_text->textCursor();
    start.setPosition(start.selectionStart());
    constexpr int share = 3;
    QScrollBar &bar = *m_text->verticalScrollBar();
    bar.setValue(bar.value() + m_text->cursorRect(start).top() - m_text->viewport()->height() / share);
}

bool PreviewOverlay::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Resize:
    case QEvent::Move:
        if (watched == m_form.textBox && isShown())
            setGeometry(m_form.textBox->geometry());
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
        return watched != m_form.textBox;
    case QEvent::MouseButtonRelease:
        if (watched == m_form.textBox)
            break;
        if (static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton && m_preview.chosen) {
            const std::function<void()> chosen = m_preview.chosen;
            chosen();
        }
        return true;
    default:
        break;
    }
    return QFrame::eventFilter(watched, event);
}

void PreviewOverlay::changeEvent(QEvent *event)
{
    QFrame::changeEvent(event);
    if (event->type() != QEvent::PaletteChange)
        return;
    takeColours();
    if (const Entry *entry = isShown() ? m_form.document().tree.entry(m_preview.entry) : nullptr)
        showHead(*entry);
}

// The mark is a selection, which is to be seen though the text never has the keyboard.
void PreviewOverlay::takeColours()
{
    QPalette marks;
    for (const auto role : {QPalette::Highlight, QPalette::HighlightedText})
        marks.setColor(QPalette::Inactive, role, palette().color(QPalette::Active, role));
    m_text->setPalette(marks);
}
