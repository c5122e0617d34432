// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/DocumentNotice.h"

#include <QWidget>

#include <functional>
#include <map>
#include <vector>

class QBoxLayout;
class QLabel;
class QScrollArea;

// One notice: a sign of warning, the text, and the buttons of its kind, which end with "Dismiss" where there is nothing
// to decide.
class NoticeRow final : public QWidget
{
    Q_OBJECT

public:
    explicit NoticeRow(QWidget *parent);

    void setText(const QString &text);
    // A button of the row, which the Tab key reaches and a click leaves the focus where it is.
    void addButton(const QString &caption, const QString &name, std::function<void()> run);
    // Draws the eye, and tells assistive technology to speak.
    void announce();

    int heightFor(int width);

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void showSign();

    QBoxLayout *m_body = nullptr;
    QBoxLayout *m_buttons = nullptr;
    QLabel *m_sign = nullptr;
    QLabel *m_label = nullptr;
    QString m_text;
    bool m_drawsEye = false;
};

// The standing notices of a document, one below the other at the top of its window. It never takes the focus by itself.
class NoticeBar final : public QWidget
{
    Q_OBJECT

public:
    explicit NoticeBar(QWidget *parent);

    // Shows these and no others, in their order; without any the bar is hidden.
    void showNotices(const std::vector<DocumentNotice> &notices);
    // Whether what another has made of the file can take the place of what is shown.
    void setTheirsOffered(bool offered);
    // Announces a notice that stands on after an attempt to mend what it tells of.
    void announce(NoticeKind kind);
    // Takes as much of the window's top as the notices need, half of it at most. The height taken.
    int layOut();
    // Gives the focus to the first button.
    void enter();
    // Takes the keyboard and does nothing with what is typed, until Esc, F6 or the mouse goes back to a pane.
    void hold();

Q_SIGNALS:
    void saveAsChosen();
    void saveChosen();
    void takeTheirsChosen();
    void keepMineChosen();
    void openTheirsChosen();
    void dismissed(NoticeKind kind);
    // The focus is in the bar and does not belong there any longer.
    void left();
    // The notices may need more room or less, as with another font.
    void heightChanged();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    NoticeRow *rowOf(NoticeKind kind);
    void showTheirsOffer();
    void leaveIfInside(const QWidget *part);

    QScrollArea *m_area = nullptr;
    QWidget *m_content = nullptr;
    // Made when first needed, the gravest kind first; a row without a notice is hidden.
    std::map<NoticeKind, NoticeRow *> m_rows;
    std::vector<DocumentNotice> m_shown;
    bool m_theirsOffered = true;
};
