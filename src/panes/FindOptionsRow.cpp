// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "panes/FindOptionsRow.h"

#include "document/Document.h"
#include "model/ShownLabel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QToolButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

enum class Part { Both, Labels, Texts };

QComboBox *makeBox(const QString &name, const QString &spoken, const QStringList &items, QWidget *parent)
{
    constexpr int shortest = 8;
    auto *box = new QComboBox(parent);
    box->setObjectName(name);
    box->setAccessibleName(spoken);
    box->addItems(items);
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(shortest);
    box->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    return box;
}

} // namespace

FindOptionsRow::FindOptionsRow(QWidget *parent)
    : QWidget(parent)
    , m_buttons(new QHBoxLayout)
    , m_case(makeButton(u"cmdMatchCase"_s, u"Aa"_s, u"Match case"_s))
    , m_word(makeButton(u"cmdWholeWord"_s, u"[ab]"_s, u"Whole words"_s))
    , m_expression(makeButton(u"cmdExpression"_s, u".*"_s, u"Regular expression"_s))
    , m_accents(makeButton(u"cmdAccents"_s, u"é"_s, u"Accents count"_s))
    , m_part(makeBox(u"cmbPart"_s, u"Look in"_s, {u"Labels and texts"_s, u"Labels"_s, u"Texts"_s}, this))
    , m_where(makeBox(u"cmbWhere"_s, u"Where"_s, {u"This document"_s, u"This branch"_s, u"All documents"_s}, this))
    , m_tagged(new QCheckBox(u"Tagged entries only"_s, this))
{
    m_tagged->setObjectName(u"chkTagged"_s);
    m_where->setItemData(static_cast<int>(Where::Branch), u"The selected entry, and what is inside it"_s,
                         Qt::ToolTipRole);
    m_where->setItemData(static_cast<int>(Where::Everywhere), u"All documents that are open"_s, Qt::ToolTipRole);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    m_buttons->setSpacing(2);
    for (QToolButton *button : {m_case, m_word, m_expression, m_accents})
        m_buttons->addWidget(button);
    m_buttons->addStretch();
    column->addLayout(m_buttons);
    auto *boxes = new QHBoxLayout;
    boxes->addWidget(m_part);
    boxes->addWidget(m_where);
    column->addLayout(boxes);
    column->addWidget(m_tagged);
    connect(m_part, &QComboBox::currentIndexChanged, this, &FindOptionsRow::changed);
    connect(m_tagged, &QCheckBox::toggled, this, &FindOptionsRow::changed);
    // Chosen once more, it is the branch that is selected by then.
    connect(m_where, &QComboBox::activated, this, &FindOptionsRow::chooseWhere);
    connect(m_expression, &QToolButton::toggled, m_accents, &QWidget::setDisabled);
}

QToolButton *FindOptionsRow::makeButton(const QString &name, const QString &sign, const QString &words)
{
    auto *button = new QToolButton(this);
    button->setObjectName(name);
    button->setText(sign);
    button->setToolTip(words);
    button->setAccessibleName(words);
    button->setCheckable(true);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::StrongFocus);
    connect(button, &QToolButton::toggled, this, &FindOptionsRow::changed);
    return button;
}

std::vector<QWidget *> FindOptionsRow::widgets() const
{
    return {m_case, m_word, m_expression, m_accents, m_part, m_where, m_tagged};
}

FindOptions FindOptionsRow::options() const
{
    FindOptions options;
    options.labels = m_part->currentIndex() != static_cast<int>(Part::Texts);
    options.texts = m_part->currentIndex() != static_cast<int>(Part::Labels);
    options.matchCase = m_case->isChecked();
    options.wholeWord = m_word->isChecked();
    options.regularExpression = m_expression->isChecked();
    options.accents = m_accents->isChecked();
    options.taggedOnly = m_tagged->isChecked();
    if (m_where->currentIndex() == static_cast<int>(Where::Branch))
        options.branch = m_branch.id();
    return options;
}

std::vector<Document *> FindOptionsRow::documents(const std::vector<Document *> &open, Document *active) const
{
    if (m_where->currentIndex() == static_cast<int>(Where::Everywhere))
        return open;
    Document *document = m_where->currentIndex() == static_cast<int>(Where::Branch) ? m_branchDocument.data() : active;
    return document ? std::vector{document} : std::vector<Document *>();
}

void FindOptionsRow::follow(Document *active)
{
    m_active = active;
    if (m_where->currentIndex() != static_cast<int>(Where::Branch) || m_branchDocument)
        return;
    // The branch's document is closed.
    const QSignalBlocker blocker(m_where);
    m_where->setCurrentIndex(static_cast<int>(Where::Document));
    takeBranch();
}

void FindOptionsRow::chooseWhere()
{
    takeBranch();
    Q_EMIT changed();
}

void FindOptionsRow::takeBranch()
{
    const bool isBranch = m_where->currentIndex() == static_cast<int>(Where::Branch);
    const Entry *selected = isBranch && m_active ? m_active->tree.selected() : nullptr;
    m_branchDocument = selected ? m_active.data() : nullptr;
    m_branch.set(selected ? &m_active->tree : nullptr, selected);
    if (isBranch && !selected)
        m_where->setCurrentIndex(static_cast<int>(Where::Document));
    const QString words = selected ? u"Branch “%1”"_s.arg(briefLabel(selected->label())) : u"This branch"_s;
    m_where->setItemText(static_cast<int>(Where::Branch), words);
    m_where->setToolTip(selected ? words : QString());
    // Where the box is too narrow for the label, it is heard all the same.
    m_where->setAccessibleDescription(selected ? words : QString());
}
