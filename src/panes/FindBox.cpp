// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "panes/FindBox.h"

#include "util/Blanks.h"
#include "util/SettingsStore.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

namespace
{

constexpr qint16 mostKept = 20;
constexpr int rowsOfPage = 10;
// What nobody types, and a list can hold.
constexpr int longestKept = 1000;

} // namespace

void giveClearButton(QLineEdit &line)
{
    line.setClearButtonEnabled(true);
    for (QAbstractButton *each : line.findChildren<QAbstractButton *>())
        each->setAccessibleName(QStringLiteral("Clear"));
}

FindBox::FindBox(QWidget *parent)
    : QComboBox(parent)
{
    const QString name = u"Find everywhere"_s;
    setObjectName(u"cmbFind"_s);
    setAccessibleName(name);
    setEditable(true);
    setInsertPolicy(NoInsert);
    setCompleter(nullptr);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(10);
    lineEdit()->setAccessibleName(name);
    lineEdit()->setPlaceholderText(u"Words, or \"a phrase\""_s);
    giveClearButton(*lineEdit());
    setToolTip(u"<p>Several words: all of them in one entry. In \"quotation marks\": just so.</p>"
               "<p>Up and Down look at the hits, Enter goes there, Esc comes back. Alt+Down: earlier searches.</p>"_s);
    m_history.MaxEntries = mostKept;
    connect(this, &QComboBox::editTextChanged, this, &FindBox::edited);
    connect(this, &QComboBox::activated, this, &FindBox::recalled);
}

void FindBox::setSettings(SettingsStore *settings)
{
    if (std::exchange(m_settings, settings) == settings || !settings)
        return;
    m_history.Load(*settings);
    fillList();
}

void FindBox::fillList()
{
    const QSignalBlocker blocker(this);
    const QString text = currentText();
    const int caret = lineEdit()->cursorPosition();
    clear();
    bool atEnd = false;
    for (QString entry = m_history.FirstEntry(atEnd); !atEnd; entry = m_history.NextEntry(atEnd)) {
        if (!entry.isEmpty())
            addItem(entry);
    }
    setCurrentIndex(-1);
    setEditText(text);
    lineEdit()->setCursorPosition(caret);
}

void FindBox::remember()
{
    const QString text = currentText();
    if (!m_settings || withoutOuterBlanks(text).isEmpty() || text.size() > longestKept || itemText(0) == text)
        return;
    m_history.Store(text);
    m_history.Save(*m_settings);
    fillList();
}

void FindBox::begin(const QString &text)
{
    if (!text.isEmpty())
        setEditText(text);
    lineEdit()->selectAll();
}

void FindBox::keyPressEvent(QKeyEvent *event)
{
    const Qt::KeyboardModifiers held = event->modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier);
    if (held == Qt::NoModifier) {
        switch (event->key()) {
        case Qt::Key_Up:
            Q_EMIT walked(-1);
            return;
        case Qt::Key_Down:
            Q_EMIT walked(1);
            return;
        case Qt::Key_PageUp:
            Q_EMIT walked(-rowsOfPage);
            return;
        case Qt::Key_PageDown:
            Q_EMIT walked(rowsOfPage);
            return;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            Q_EMIT entered();
            return;
        default:
            break;
        }
    }
    QComboBox::keyPressEvent(event);
}

// It would change what is looked for.
void FindBox::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}
