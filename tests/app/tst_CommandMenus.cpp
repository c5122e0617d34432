// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/CommandMenus.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

QString toText(std::string_view text)
{
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

class tst_CommandMenus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void cleanup() { m_bar.reset(); }

    void everyRowIsAnItemInItsMenuAndOrder();
    void aBoundItemRunsItsRoutineWithItsArgument();
    void anItemWithoutARoutineStaysDisabledWhateverTheRulesSay();
    void anItemInADisabledMenuCannotBeChosen();
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

    std::unique_ptr<QMenuBar> m_bar;
    CommandMenus *m_menus = nullptr;
    QStringList m_calls;
};

void tst_CommandMenus::init()
{
    m_calls.clear();
    const auto note = [this](const QString &name) {
        return [this, name](int argument) { m_calls.append(name + u' ' + QString::number(argument)); };
    };
    m_bar = std::make_unique<QMenuBar>();
    m_menus = new CommandMenus(*m_bar, {{Routine::FileNew, note(u"new"_s)},
                                        {Routine::FileSave, note(u"save"_s)},
                                        {Routine::FileMRU, note(u"recent"_s)},
                                        {Routine::OutlineMoveUp, note(u"up"_s)},
                                        {Routine::OutlineExpandToLevel, note(u"level"_s)},
                                        {Routine::ViewStatusBar, note(u"status"_s)}});
}

void tst_CommandMenus::everyRowIsAnItemInItsMenuAndOrder()
{
    for (const CommandRow &row : commandTable) {
        const QAction *item = action(toText(row.name));
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
            if (row.parent == menu.name)
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
    QCOMPARE(titles.join(u' '), u"&File &Outline &Edit &Search &View &Window &Help"_s);
}

void tst_CommandMenus::aBoundItemRunsItsRoutineWithItsArgument()
{
    action(u"mnuFileNew"_s)->trigger();
    action(u"mnuOutlineExpandLevel3"_s)->trigger();
    QCOMPARE(m_calls, QStringList({u"new 0"_s, u"level 3"_s}));
}

void tst_CommandMenus::anItemWithoutARoutineStaysDisabledWhateverTheRulesSay()
{
    const EnableRule allOn[] = {
        {"mnuFileOpen", [](const CommandState &) { return true; }},
        {"mnuFileNew", [](const CommandState &) { return true; }},
        {"mnuEdit", [](const CommandState &) { return true; }},
    };
    m_menus->applyRules(allOn, CommandState());
    QVERIFY(!action(u"mnuFileOpen"_s)->isEnabled());
    QVERIFY(!m_menus->isEnabled("mnuFileOpen"));
    QVERIFY(!action(u"mnuEditClearEntryText"_s)->isEnabled());
    QVERIFY(action(u"mnuFileNew"_s)->isEnabled());
    QVERIFY(m_menus->isEnabled("mnuEdit"));
}

void tst_CommandMenus::anItemInADisabledMenuCannotBeChosen()
{
    QVERIFY(m_menus->isEnabled("mnuOutlineMoveUp"));
    const EnableRule moveOff[] = {{"mnuOutlineMove", [](const CommandState &) { return false; }}};
    m_menus->applyRules(moveOff, CommandState());
    QVERIFY(!m_menus->isEnabled("mnuOutlineMoveUp"));
    QVERIFY(m_menus->isEnabled("mnuOutlineExpandLevel1"));
    const EnableRule outlineOff[] = {{"mnuoutline", [](const CommandState &) { return false; }}};
    m_menus->applyRules(outlineOff, CommandState());
    QVERIFY(!m_menus->isEnabled("mnuOutlineExpandLevel1"));
    QVERIFY(!m_menus->isEnabled("no such item"));
}

void tst_CommandMenus::checkMarksFollowTheOptions()
{
    for (const CheckRule &rule : checkRules()) {
        Options options;
        options.*rule.option = true;
        m_menus->applyCheckMarks(options);
        QVERIFY(action(toText(rule.item))->isChecked());
        options.*rule.option = false;
        m_menus->applyCheckMarks(options);
        QVERIFY(!action(toText(rule.item))->isChecked());
    }
}

void tst_CommandMenus::choosingACheckedItemLeavesTheMarkToTheOption()
{
    Options options;
    options.ViewStatusbar = true;
    m_menus->applyCheckMarks(options);
    action(u"mnuViewStatusBar"_s)->trigger();
    QCOMPARE(m_calls, QStringList(u"status 0"_s));
    m_menus->applyCheckMarks(options);
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
    QCOMPARE(m_calls, QStringList(u"recent 2"_s));
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
