// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "panes/FindReplaceRow.h"

#include "panes/FindBox.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

FindReplaceRow::FindReplaceRow(QWidget *parent)
    : QWidget(parent)
    , m_text(new QLineEdit(this))
    , m_all(new QCheckBox(this))
    , m_apply(new QPushButton(u"Re&place"_s, this))
    , m_note(new QLabel(this))
{
    m_text->setObjectName(u"txtReplacement"_s);
    m_text->setAccessibleName(u"Replace with"_s);
    m_text->setPlaceholderText(u"Replace with"_s);
    giveClearButton(*m_text);
    m_text->setToolTip(u"<p>What takes the place of each hit that is checked. For regular expressions, \\1 is what the "
                       "first group in brackets took.</p>"_s);
    m_text->installEventFilter(this);
    m_all->setObjectName(u"chkAll"_s);
    m_apply->setObjectName(u"cmdApply"_s);
    m_apply->setAutoDefault(false);
    m_note->setObjectName(u"lblReplace"_s);
    m_note->setTextFormat(Qt::PlainText);
    m_note->setWordWrap(true);
    m_note->hide();
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_text);
    auto *line = new QHBoxLayout;
    line->addWidget(m_all, 1);
    line->addWidget(m_apply);
    column->addLayout(line);
    column->addWidget(m_note);
    connect(m_text, &QLineEdit::textChanged, this, &FindReplaceRow::edited);
    connect(m_apply, &QPushButton::clicked, this, &FindReplaceRow::applied);
    // A click never leaves a part of them.
    connect(m_all, &QCheckBox::clicked, this, [this] { Q_EMIT allChecked(m_all->checkState() != Qt::Unchecked); });
    setChecked(0, 0, Qt::Unchecked, false);
}

QString FindReplaceRow::replacement() const
{
    return m_text->text();
}

void FindReplaceRow::setChecked(qint64 checked, qint64 all, Qt::CheckState state, bool isPossible)
{
    m_all->setTristate(state == Qt::PartiallyChecked);
    m_all->setCheckState(state);
    m_all->setEnabled(all > 0);
    m_all->setText(all == 0 ? u"All"_s : u"%L1 of %L2"_s.arg(checked).arg(all));
    m_all->setAccessibleName(u"All hits, %L1 of %L2 checked"_s.arg(checked).arg(all));
    // A button that has the keyboard would lose it to another one by being disabled.
    if (!isPossible && m_apply->hasFocus())
        m_text->setFocus();
    m_apply->setEnabled(isPossible && checked > 0);
}

void FindReplaceRow::setNote(const QString &note)
{
    m_note->setText(note);
    m_note->setVisible(!note.isEmpty());
}

std::vector<QWidget *> FindReplaceRow::widgets() const
{
    return {m_text, m_all, m_apply};
}

bool FindReplaceRow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const auto &key = *static_cast<QKeyEvent *>(event);
    if (key.modifiers() != Qt::NoModifier || (key.key() != Qt::Key_Up && key.key() != Qt::Key_Down))
        return QWidget::eventFilter(watched, event);
    Q_EMIT walked(key.key() == Qt::Key_Up ? -1 : 1);
    return true;
}
