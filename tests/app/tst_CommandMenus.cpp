// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/CommandMenus.h"
#include "commands/Dispatcher.h"
#include "support/FakePorts.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_CommandMenus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void cleanup()
    {
        m_bar.reset();
        m_fakes.reset();
    }

    void everyRowIsAnItemInItsMenuAndOrder();
    void anItemRunsItsCommandWithItsArgument();
    void anItemThatRunsNothingStaysDisabledWhateverItsRuleSays();
    void itemsAreEnabledByTheirOwnRules();
    void captionsFollowTheState();
    void checkMarksFollowTheOptions();
    void choosingACheckedItemLeavesTheMarkToTheOption();
    void recentFilesStandBetweenTheirSeparatorAndTheLast();
    void recentFilesAreHiddenAndShownAgain();
    void anAmpersandInARecentFileNameIsShown();
    void theElementBehindTheRecentFilesIsNeverShown();

private:
    QAction *action(const QString &name) const
    {
        auto *found = m_bar->findChild<QAction *>(name);
        if (found)
            return found;
        auto *menu = m_bar->findChild<QMenu *>(name);
        return menu ? menu->menuAction() : nullptr;
    }

    std::unique_ptr<FakePorts> m_fakes;
    CommandState m_state;
    std::unique_ptr<Dispatcher> m_dispatcher;
    std::unique_ptr<QMenuBar> m_bar;
    CommandMenus *m_menus = nullptr;
    QStringList m_calls;
};

void tst_CommandMenus::init()
{
    m_calls.clear();
    m_state = {};
    m_fakes = std::make_unique<FakePorts>();
    const auto note = [this](const QString &name) {
        return [this, name](int argument) { m_calls.append(name + u' ' + QString::number(argument)); };
    };
    m_bar = std::make_unique<QMenuBar>();
    m_dispatcher = std::make_unique<Dispatcher>([this] { return m_state; });
    for (const CommandRow &row : commandTable) {
        if (!row.routine.name.empty())
            m_dispatcher->bind(row.name, note(toText(row.name)));
    }
    m_dispatcher->bind("mnuFileOpen", nullptr);
    m_menus = new CommandMenus(*m_bar, *m_dispatcher);
}

void tst_CommandMenus::everyRowIsAnItemInItsMenuAndOrder()
{
    for (const CommandRow &row : commandTable) {
        const QAction *item = action(toText(row.name));
        if (!isMenuItem(row)) {
            QVERIFY2(!item, qPrintable(toText(row.name)));
            continue;
        }
        QVERIFY2(item, qPrintable(toText(row.name)));
        QCOMPARE(item->text(), toText(row.caption));
        QCOMPARE(item->isSeparator(), row.kind == RowKind::Separator);
        QCOMPARE(item->menu() != nullptr, row.kind == RowKind::Menu);
    }
    // Every menu lists its rows in the table's order.
    for (const CommandRow &menu : commandTable) {
        if (menu.kind != RowKind::Menu)
            continue;
        QStringList expected;
        for (const CommandRow &row : commandTable) {
            if (row.parent == menu.name && isMenuItem(row))
                expected.append(toText(row.name));
        }
        QStringList shown;
        for (const QAction *item : action(toText(menu.name))->menu()->actions())
            shown.append(item->menu() ? item->menu()->objectName() : item->objectName());
        QCOMPARE(shown, expected);
    }
    QStringList titles;
    for (const QAction *menu : m_bar->actions())
        titles.append(menu->text());
    QCOMPARE(titles.join(u' '), u"&File &Outline &Edit &Search &View Too&ls &Window &Help"_s);
}

void tst_CommandMenus::anItemRunsItsCommandWithItsArgument()
{
    m_state = CommandState{.documentCount = 1};
    m_menus->apply(m_state, {});
    action(u"mnuFileNew"_s)->trigger();
    action(u"mnuOutlineExpandLevel3"_s)->trigger();
    QCOMPARE(m_calls, QStringList({u"mnuFileNew 0"_s, u"mnuOutlineExpandLevel3 3"_s}));
}

void tst_CommandMenus::anItemThatRunsNothingStaysDisabledWhateverItsRuleSays()
{
    m_menus->apply(m_state, {});
    QVERIFY(commandTable[commandRow("mnuFileOpen")].rule(m_state));
    QVERIFY(!action(u"mnuFileOpen"_s)->isEnabled());
    QVERIFY(!action(u"mnuWindowNewWindow"_s)->isEnabled());
    QVERIFY(action(u"mnuFileNew"_s)->isEnabled());
}

void tst_CommandMenus::itemsAreEnabledByTheirOwnRules()
{
    m_menus->apply(m_state, {});
    QVERIFY(!action(u"mnuoutline"_s)->isEnabled());
    QVERIFY(action(u"mnuOutlineExpandAll"_s)->isEnabled());
    m_menus->apply(CommandState{.documentCount = 1}, {});
    QVERIFY(action(u"mnuoutline"_s)->isEnabled());
    QVERIFY(!action(u"mnuOutlineMove"_s)->isEnabled());
}

void tst_CommandMenus::captionsFollowTheState()
{
    m_menus->apply(CommandState{.Tagged = true}, {});
    QCOMPARE(action(u"mnuOutlineTaggedEntry"_s)->text(), u"Unta&g entry    Alt+T"_s);
    m_menus->apply({}, {});
    QCOMPARE(action(u"mnuOutlineTaggedEntry"_s)->text(), u"Ta&g entry      Alt+T"_s);
}

void tst_CommandMenus::checkMarksFollowTheOptions()
{
    for (const CommandRow &row : commandTable) {
        if (!row.option)
            continue;
        Options options;
        options.*row.option = true;
        m_menus->apply({}, options);
        QVERIFY(action(toText(row.name))->isChecked());
        options.*row.option = false;
        m_menus->apply({}, options);
        QVERIFY(!action(toText(row.name))->isChecked());
    }
}

void tst_CommandMenus::choosingACheckedItemLeavesTheMarkToTheOption()
{
    Options options;
    options.ViewStatusbar = true;
    m_menus->apply({}, options);
    action(u"mnuViewStatusBar"_s)->trigger();
    QCOMPARE(m_calls, QStringList(u"mnuViewStatusBar 0"_s));
    m_menus->apply({}, options);
    QVERIFY(action(u"mnuViewStatusBar"_s)->isChecked());
}

void tst_CommandMenus::recentFilesStandBetweenTheirSeparatorAndTheLast()
{
    m_menus->showItem(1, u"&1 /a"_s);
    m_menus->showItem(2, u"&2 /b"_s);
    m_menus->setSeparatorVisible(true);
    QStringList names;
    for (const QAction *item : action(u"mnuFile"_s)->menu()->actions()) {
        if (item->isVisible())
            names.append(item->objectName());
    }
    names = names.mid(names.indexOf(u"mnuFileBarMRU"_s));
    QCOMPARE(names,
             QStringList({u"mnuFileBarMRU"_s, u"mnuFileMRU1"_s, u"mnuFileMRU2"_s, u"mnuFileBar4"_s, u"mnuFileExit"_s}));
    action(u"mnuFileMRU2"_s)->trigger();
    QCOMPARE(m_calls, QStringList(u"mnuFileMRU 2"_s));
}

void tst_CommandMenus::recentFilesAreHiddenAndShownAgain()
{
    for (int item = 1; item <= 12; ++item)
        m_menus->showItem(item, u"&%1 /a"_s.arg(item % 10));
    const QAction *twelfth = action(u"mnuFileMRU12"_s);
    m_menus->hideAll();
    QVERIFY(!twelfth->isVisible() && !twelfth->isEnabled());
    m_menus->showItem(1, u"&1 /b"_s);
    QCOMPARE(action(u"mnuFileMRU1"_s)->text(), u"&1 /b"_s);
    QVERIFY(!twelfth->isVisible());
    m_menus->showItem(12, u"&2 /l"_s);
    QCOMPARE(action(u"mnuFileMRU12"_s), twelfth);
    QVERIFY(twelfth->isVisible() && twelfth->isEnabled());
}

void tst_CommandMenus::anAmpersandInARecentFileNameIsShown()
{
    m_menus->showItem(1, u"&1 /docs/R&D\tnotes.qly"_s);
    QCOMPARE(action(u"mnuFileMRU1"_s)->text(), u"&1 /docs/R&&D notes.qly"_s);
}

void tst_CommandMenus::theElementBehindTheRecentFilesIsNeverShown()
{
    m_menus->showItem(1, u"&1 /a"_s);
    QVERIFY(!action(u"mnuFileMRU"_s)->isVisible());
    QVERIFY(!action(u"mnuFileBarMRU"_s)->isVisible());
}

QTEST_MAIN(tst_CommandMenus)
#include "tst_CommandMenus.moc"
