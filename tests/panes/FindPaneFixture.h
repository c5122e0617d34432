// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "app/MainFixture.h"
#include "document/DocumentView.h"
#include "document/EntryPreview.h"
#include "document/modNodes.h"
#include "panes/FindBox.h"
#include "panes/FindHitsModel.h"
#include "panes/FindList.h"
#include "platform/RichTextBox.h"
#include "platform/TreeView.h"
#include "support/OutlineText.h"
#include "support/RawOutline.h"
#include "window/frmDocument.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTest>
#include <QToolButton>
#include <QWindow>

// The pane that finds everywhere, in the running main window.
class FindPaneFixture
{
public:
    // An entry's line of an outline as indented text, and its text.
    using Planted = QList<std::pair<QString, QString>>;

    FindPaneFixture()
    {
        m_main.start();
        m_main.main.resize(1200, 700);
        m_main.main.activateWindow();
        if (!QTest::qWaitForWindowActive(&m_main.main))
            QTest::qFail("the window is not active", __FILE__, __LINE__);
        m_main.app.core.dialogs.answers.assign(20, Answer::Yes);
    }

    Document &plant(const Planted &planted)
    {
        using namespace Qt::StringLiterals;
        m_main.choose("mnuFileNew");
        Document &document = *DocumentActive();
        document.view()->trvOutline.EndLabelEdit();
        EntryTree &tree = rawOutline(document).tree;
        tree.clear();
        QStringList lines;
        for (const auto &[line, text] : planted)
            lines.append(line);
        plantOutline(tree, lines);
        const Entry *entry = tree.root();
        for (const auto &[line, text] : planted) {
            QString rtf = text;
            rtf.replace(u"\n"_s, u"\\par "_s);
            tree.setStoredText(const_cast<Entry *>(entry), "{\\rtf1\\ansi " + rtf.toLatin1() + "}");
            entry = nextInOutline(entry, tree.root());
        }
        modNodes::NodeSelectFull(document, tree.selected() ? tree.selected() : tree.root());
        document.giveUpChanges();
        form().treeView->setFocus();
        return document;
    }

    frmDocument &form() const { return formOf(*DocumentActive()); }

    static frmDocument &formOf(const Document &document)
    {
        return dynamic_cast<frmDocument &>(document.view()->window);
    }

    template <typename Part>
    Part &child(const QString &name) const
    {
        Part *found = m_main.main.findChild<Part *>(name);
        if (!found)
            qFatal("%s", qPrintable(name));
        return *found;
    }

    FindBox &box() const { return child<FindBox>(QStringLiteral("cmbFind")); }

    FindList &list() const { return child<FindList>(QStringLiteral("lstHits")); }

    QString counts() const { return child<QLabel>(QStringLiteral("lblHits")).text(); }

    QToolButton &button(const QString &name) const { return child<QToolButton>(name); }

    QComboBox &combo(const QString &name) const { return child<QComboBox>(name); }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::keyClick(m_main.main.windowHandle(), key, modifiers);
    }

    // Types as a person does, into whatever has the keyboard.
    void type(const QString &text) const
    {
        for (const QChar each : text)
            QTest::keyClick(QApplication::focusWidget(), each.toLatin1());
    }

    void open() const { press(Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier); }

    // Finds a text in the open pane and waits for the end.
    void find(const QString &text) const
    {
        open();
        box().setEditText(QString());
        type(text);
        waitForEnd();
    }

    void waitForEnd() const
    {
        const auto &model = *static_cast<const FindHitsModel *>(list().model());
        if (!QTest::qWaitFor([&] {
                return model.query().text() == box().currentText() && !model.isStale() && model.counts().isFinished;
            }))
            QTest::qFail("the search does not end", __FILE__, __LINE__);
    }

    // What the list shows, hits with their marked part in brackets.
    QStringList rows() const
    {
        QStringList rows;
        const auto &model = *static_cast<const FindHitsModel *>(list().model());
        for (int row = 0; row < model.rowCount(); ++row) {
            QString text = model.index(row, 0).data().toString();
            if (const FindHit *hit = model.row(row).hit()) {
                text.insert(hit->start + hit->length, u']');
                text.insert(hit->start, u'[');
                text.prepend(u' ');
            }
            rows.append(text);
        }
        return rows;
    }

    void choose(const QString &combo, int place) const
    {
        QComboBox &box = this->combo(combo);
        box.setFocus();
        QTest::keyClick(&box, Qt::Key_Home);
        for (int step = 0; step < place; ++step)
            QTest::keyClick(&box, Qt::Key_Down);
    }

    void click(const QString &name) const { QTest::mouseClick(&child<QAbstractButton>(name), Qt::LeftButton); }

    void clickRow(int row) const { QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, centreOf(row)); }

    QPoint centreOf(int row) const
    {
        list().scrollTo(list().model()->index(row, 0));
        return list().visualRect(list().model()->index(row, 0)).center();
    }

    MainFixture &main() { return m_main; }

    const MainFixture &main() const { return m_main; }

    QString status() const { return child<QLabel>(QStringLiteral("sbStatusBarText")).text(); }

private:
    MainFixture m_main;
};
