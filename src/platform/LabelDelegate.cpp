// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/LabelDelegate.h"

#include "document/Ports.h"
#include "model/EntryTree.h"
#include "model/Limits.h"
#include "platform/AltCharacter.h"
#include "platform/TreeView.h"
#include "rtf/VisibleText.h"

#include <QApplication>
#include <QFocusEvent>
#include <QInputMethod>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenuBar>

#include <algorithm>

using namespace Qt::StringLiterals;

// A static library's resources are linked only where something asks for them by name, outside every namespace.
static void linkImages()
{
    Q_INIT_RESOURCE(quillery_platform);
}

namespace
{

QString onOneLine(QString text)
{
    text.replace("\r\n"_L1, " "_L1);
    for (const char16_t lineBreak : {u'\n', u'\r', u'\v', u'\f', u'\u0085', u'\u2028', u'\u2029'})
        text.replace(QChar(lineBreak), u' ');
    return text;
}

// What an editor's text is as a label.
QString labelIn(const QLineEdit &line)
{
    return onOneLine(rtf::visibleText(line.text()));
}

// A label that is longer already is not cut, though nothing can be added to it. Megabytes pasted into one line would
// take minutes at each key.
void bound(QLineEdit &line, qsizetype length, Dialogs *dialogs)
{
    line.setMaxLength(static_cast<int>(std::max<qsizetype>(limits::longestLabel, length)));
    const auto tell = [dialogs] {
        if (dialogs)
            dialogs->inform(u"A label has room for %L1 characters. What goes beyond was left out; what was pasted is "
                            "still where it was copied from."_s.arg(limits::longestLabel));
    };
    // The paste is to be over before the message takes the keyboard.
    QObject::connect(&line, &QLineEdit::inputRejected, qApp, tell,
                     Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
}

// Opened all the same, the editor would stand still at each key. What it took would be less than the label.
void tellOfEndlessLabel(qsizetype length, Dialogs *dialogs)
{
    const auto tell = [length, dialogs] {
        if (dialogs)
            dialogs->inform(u"This label has %L1 characters, and only labels of up to %L2 can be edited. It is kept "
                            "whole; the outline shows its beginning."_s.arg(length)
                                .arg(limits::longestEditedLabel));
    };
    // Whoever asked for the editor is to be done before the message takes the keyboard.
    QMetaObject::invokeMethod(qApp, tell, Qt::QueuedConnection);
}

} // namespace

LabelDelegate::LabelDelegate(TreeView *view)
    : QStyledItemDelegate(view)
    , m_view(view)
{
    linkImages();
}

QString LabelDelegate::displayText(const QVariant &value, const QLocale &) const
{
    return onOneLine(value.toString());
}

QWidget *LabelDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                                     const QModelIndex &index) const
{
    const qsizetype length = index.data(Qt::EditRole).toString().size();
    if (length > limits::longestEditedLabel) {
        tellOfEndlessLabel(length, m_view->dialogs());
        return nullptr;
    }
    m_editor = QStyledItemDelegate::createEditor(parent, option, index);
    m_edited = index;
    m_composed.clear();
    m_editor->setObjectName("labelEditor"_L1);
    m_editor->setAccessibleName(u"Label"_s);
    if (QLineEdit *line = qobject_cast<QLineEdit *>(m_editor)) {
        bound(*line, length, m_view->dialogs());
        connect(line, &QLineEdit::textChanged, m_view, &TreeView::labelTyped);
    }
    connect(qApp, &QApplication::focusChanged, m_editor, [this](const QWidget *from, const QWidget *to) {
        if (qobject_cast<const QMenuBar *>(from) && to != m_editor)
            m_view->EndLabelEdit();
    });
    return m_editor;
}

void LabelDelegate::destroyEditor(QWidget *editor, const QModelIndex &index) const
{
    if (editor == m_editor)
        m_editor = nullptr;
    QStyledItemDelegate::destroyEditor(editor, index);
    Q_EMIT m_view->labelTyped();
}

std::optional<LabelDelegate::Typed> LabelDelegate::typed() const
{
    const auto *line = qobject_cast<const QLineEdit *>(m_editor);
    if (!line)
        return std::nullopt;
    return Typed{m_edited, labelIn(*line)};
}

void LabelDelegate::setModelData(QWidget *editor, QAbstractItemModel *, const QModelIndex &index) const
{
    if (const auto *line = qobject_cast<const QLineEdit *>(editor))
        m_view->applyLabelEdit(index, labelIn(*line));
}

void LabelDelegate::endComposing()
{
    QGuiApplication::inputMethod()->commit();
    if (!m_editor || m_composed.isEmpty())
        return;
    // The input method gave nothing back.
    QInputMethodEvent composed;
    composed.setCommitString(m_composed);
    QCoreApplication::sendEvent(m_editor, &composed);
}

bool LabelDelegate::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_editor && isForEditorAlone(*event))
        return false;
    // Left to whoever has a command for it: the key goes on to the outline.
    if (event->type() == QEvent::KeyPress && isAltCharacter(*static_cast<QKeyEvent *>(event))) {
        event->ignore();
        return true;
    }
    return QStyledItemDelegate::eventFilter(watched, event);
}

// Whether the event is the editor's alone.
bool LabelDelegate::isForEditorAlone(const QEvent &event)
{
    switch (event.type()) {
    case QEvent::InputMethod:
        m_composed = static_cast<const QInputMethodEvent &>(event).preeditString();
        return false;
    case QEvent::FocusIn:
        m_view->labelEditorGotFocus();
        return false;
    case QEvent::FocusOut:
        endComposing();
        // The menu bar gives the keyboard back to the editor and to nobody else. The label is taken over all the same.
        if (static_cast<const QFocusEvent &>(event).reason() != Qt::MenuBarFocusReason)
            return false;
        Q_EMIT commitData(m_editor);
        return true;
    default:
        return false;
    }
}

void LabelDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    const bool selected = option->state.testFlag(QStyle::State_Selected);
    option->icon = image(index.data(selected ? EntryTree::SelectedImageRole : EntryTree::ImageRole).toString());
    option->features.setFlag(QStyleOptionViewItem::HasDecoration, !option->icon.isNull());
}

QIcon LabelDelegate::image(const QString &name) const
{
    const auto known = m_images.constFind(name);
    if (known != m_images.cend())
        return *known;
    const QString file = u":/quillery/icons/%1.svg"_s.arg(name);
    QIcon icon(file);
    // Selected rows have images of their own; the style is not to tint them.
    icon.addFile(file, QSize(), QIcon::Selected);
    // Without the desktop's SVG support the rows go without an image.
    if (icon.pixmap(16, 16).isNull())
        icon = QIcon();
    return *m_images.insert(name, icon);
}
