// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "panes/HitGuide.h"
#include "panes/Pane.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>

class Document;
class FindBox;
class FindHitDelegate;
class FindList;
class FindOptionsRow;
class FindReplaceRow;
class QLabel;
class QToolButton;

// Finds in labels and texts while one types, shows what was found where it stands, and replaces it. Nothing of a
// document moves by it before the user goes to a hit.
class FindEverywhere final : public QWidget
{
    Q_OBJECT

public:
    explicit FindEverywhere(const PaneHost &host);
    ~FindEverywhere() override;

    void follow(Document *active);
    // Gives the box the keyboard, with what is selected in the document.
    void enter();
    // Takes back what is only looked at. False when there is nothing.
    bool escape();

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    // What the user wants as soon as there is a first hit.
    enum class Wanted { Nothing, Look, Go };

    void layOut();
    void connectBox();
    void connectList();
    void connectReplacing();
    void edit();
    void search();
    void walk(int hits);
    void goToCurrent();
    void takeFirst();
    void look(int row);
    void showCurrent();
    void choose(int row);
    void goTo(int row);
    void leftFor(const QWidget *focus);
    void showCounts();
    void say(const QString &text);
    void showError(const QString &reason);
    QString selectedText() const;
    std::vector<Document *> searched() const;
    void takeReplacing();
    void showReplacing();
    void replace();

    const PaneHost m_host;
    HitGuide m_guide;
    QPointer<Document> m_active;
    std::vector<Document *> m_searched;
    Wanted m_wanted = Wanted::Nothing;
    // What was selected by going to a hit, and is nothing to look for.
    QString m_goneTo;
    QTimer m_rest;
    // Shows the current hit, where showing takes so long that the next key is to be waited for.
    QTimer m_looking;

    FindHitsModel *const m_hits;
    FindHitDelegate *const m_delegate;
    FindBox *const m_box;
    QLabel *const m_error;
    FindOptionsRow *const m_options;
    QToolButton *const m_replacing;
    FindReplaceRow *const m_replaceRow;
    QLabel *const m_counts;
    FindList *const m_list;
};
