// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QListView>

class FindHitsModel;

// The hits. A row that the user moves to is looked at, Enter and a double click go there, Space checks.
class FindList final : public QListView
{
    Q_OBJECT

public:
    FindList(FindHitsModel &model, QWidget *parent);

    // What is said while there are no rows.
    void setEmptyText(const QString &text);

    // Moves to the hit so many hits on, or back; to the first or last one where none is current. False where there is
    // none.
    bool walk(int hits);

    QSize sizeHint() const override;

Q_SIGNALS:
    void looked(int row);
    void chosen(int row);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void tellCurrent();
    bool isOnCheck(const QMouseEvent &event) const;

    FindHitsModel &m_model;
    QString m_emptyText;
};
