// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QHash>
#include <QIcon>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QStyledItemDelegate>

#include <optional>

class TreeView;

// Draws an entry's row (its image and its label on one line) and edits the label in place. What was pasted into the
// editor with line breaks becomes one line.
class LabelDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit LabelDelegate(TreeView *view);

    // The open editor, or null.
    QWidget *openEditor() const { return m_editor; }

    // What is in the open editor now, as it would be taken over.
    struct Typed {
        QModelIndex index;
        QString label;
    };

    std::optional<Typed> typed() const;

    // Makes what an input method is still composing in the open editor a part of the label.
    void endComposing();

    QString displayText(const QVariant &value, const QLocale &locale) const override;
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void destroyEditor(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;

private:
    bool isForEditorAlone(const QEvent &event);
    QIcon image(const QString &name) const;

    TreeView *m_view;
    mutable QPointer<QWidget> m_editor;
    mutable QPersistentModelIndex m_edited;
    // What is being composed in the editor.
    mutable QString m_composed;
    mutable QHash<QString, QIcon> m_images;
};
