// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "find/FindQuery.h"
#include "model/EntryTree.h"

#include <QPointer>
#include <QWidget>

class Document;
class QCheckBox;
class QComboBox;
class QHBoxLayout;
class QToolButton;

// How is looked for something, and where.
class FindOptionsRow final : public QWidget
{
    Q_OBJECT

public:
    explicit FindOptionsRow(QWidget *parent);

    FindOptions options() const;

    // Whose entries are looked through, of those that are open.
    std::vector<Document *> documents(const std::vector<Document *> &open, Document *active) const;

    // The document that a branch would be of.
    void follow(Document *active);

    // Room at the end of the row of buttons.
    QHBoxLayout *buttons() const { return m_buttons; }

    // In the order in which Tab goes through them.
    std::vector<QWidget *> widgets() const;

Q_SIGNALS:
    void changed();

private:
    enum class Where { Document, Branch, Everywhere };

    QToolButton *makeButton(const QString &name, const QString &sign, const QString &words);
    void takeBranch();
    void chooseWhere();

    QPointer<Document> m_active;
    // Where the branch is, and its entry.
    QPointer<Document> m_branchDocument;
    EntryRef m_branch;

    QHBoxLayout *m_buttons;
    QToolButton *m_case;
    QToolButton *m_word;
    QToolButton *m_expression;
    QToolButton *m_accents;
    QComboBox *m_part;
    QComboBox *m_where;
    QCheckBox *m_tagged;
};
