// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/MainFixture.h"
#include "commands/CommandTable.h"
#include "document/modNodes.h"
#include "outline/modOutline.h"
#include "platform/DesktopClipboard.h"
#include "rtf/Rtf.h"
#include "support/RawOutline.h"
#include "window/frmDocument.h"

#include <QMenuBar>
#include <QTest>

using namespace Qt::StringLiterals;

// The menus of the running main window against their tables, in every state of the document.
class tst_CommandsInMain : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void cleanup() { m_main.reset(); }

    void everyMenuHoldsItsRowsInOrder();
    void withNoDocumentEveryRowAgreesWithTheTable();
    void everyRowAgreesWithTheTable_data();
    void everyRowAgreesWithTheTable();
    void everyCheckMarkShowsItsOption();
    void everyShortcutOfACaptionRunsWhatItsItemRuns_data();
    void everyShortcutOfACaptionRunsWhatItsItemRuns();

private:
    void compareRows() const;

    std::unique_ptr<MainFixture> m_main;
};

void tst_CommandsInMain::init()
{
    m_main = std::make_unique<MainFixture>();
    m_main->start();
    m_main->main.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_main->main));
}

void tst_CommandsInMain::compareRows() const
{
    m_main->refresh();
    const CommandState state = m_main->main.dispatcher().state();
    for (const CommandRow &row : commandTable) {
        if (row.kind != RowKind::Menu && row.kind != RowKind::Command)
            continue;
        const QAction *item = m_main->action(toText(row.name));
        QVERIFY2(item, row.name.data());
        const bool runsSomething = row.kind == RowKind::Menu || m_main->main.dispatcher().isBound(row.name);
        QVERIFY2(item->isEnabled() == (runsSomething && row.rule(state)), row.name.data());
        QVERIFY2(item->isVisible(), row.name.data());
        QCOMPARE(item->text(), row.captionNow ? row.captionNow(state) : toText(row.caption));
    }
}

void tst_CommandsInMain::everyMenuHoldsItsRowsInOrder()
{
    m_main->makeDocument();
    std::map<std::string_view, QStringList> expected;
    for (const CommandRow &row : commandTable) {
        if (isMenuItem(row))
            expected[row.parent].append(toText(row.name));
    }
    for (const auto &[parent, names] : expected) {
        QStringList shown;
        const QWidget *menu = m_main->main.menuBar();
        if (!parent.empty())
            menu = m_main->action(toText(parent))->menu();
        for (const QAction *action : menu->actions())
            shown.append(action->menu() ? action->menu()->objectName() : action->objectName());
        QCOMPARE(shown, names);
    }
}

void tst_CommandsInMain::withNoDocumentEveryRowAgreesWithTheTable()
{
    compareRows();
    QVERIFY(!m_main->action(u"mnuoutline"_s)->isEnabled());
    QVERIFY(m_main->action(u"mnuFileOpen"_s)->isEnabled());
}

void tst_CommandsInMain::everyRowAgreesWithTheTable_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("inText");
    QTest::addColumn<bool>("readOnly");
    QTest::addColumn<bool>("tagged");
    for (const QString &path : {u"KEY0"_s, u"KEY0.1"_s, u"KEY0.2"_s, u"KEY0.1.1"_s}) {
        for (const bool inText : {false, true}) {
            for (const bool readOnly : {false, true}) {
                for (const bool tagged : {false, true})
                    QTest::addRow("%s%s%s%s", qPrintable(path), inText ? ", text" : "", readOnly ? ", read-only" : "",
                                  tagged ? ", tagged and copied" : "")
                        << path << inText << readOnly << tagged;
            }
        }
    }
}

void tst_CommandsInMain::everyRowAgreesWithTheTable()
{
    QFETCH(QString, path);
    QFETCH(bool, inText);
    QFETCH(bool, readOnly);
    QFETCH(bool, tagged);
    Document &document = m_main->makeDocument();
    Entry *entry = document.tree.itemByKey(path);
    modNodes::NodeSelectFull(document, entry);
    m_main->choose(inText ? "mnuViewGoToText" : "mnuViewGoToOutline");
    if (tagged) {
        m_main->choose("mnuOutlineCopy");
        document.history.setTagged(entry, true);
    }
    if (readOnly) {
        const QString file = m_main->app.makeFile(u"a.txt"_s, "text");
        QVERIFY(QFile::setPermissions(file, QFile::ReadOwner));
        document.m_sFile = file;
        document.lookAtFileAgain();
    }
    compareRows();

    // What a few items come to, without the rules.
    const CommandState state = m_main->main.dispatcher().state();
    QCOMPARE(state.TextFocus, inText);
    QCOMPARE(state.OutlineFocus, !inText);
    QCOMPARE(state.Copied, tagged);
    QCOMPARE(m_main->enabled("mnuEditCopy"), inText);
    QCOMPARE(m_main->enabled("mnuEditCut"), inText && !readOnly);
    QCOMPARE(m_main->enabled("mnuFileSave"), !readOnly);
    QCOMPARE(m_main->enabled("mnuOutlineMoveFirst"), path == u"KEY0.2" && !readOnly);
    QCOMPARE(m_main->enabled("mnuOutlineCopy"), true);
    QCOMPARE(m_main->enabled("mnuOutlinePaste"), tagged && !readOnly);
    QCOMPARE(m_main->enabled("mnuOutlineDeleteTaggedEntries"), tagged);
}

void tst_CommandsInMain::everyCheckMarkShowsItsOption()
{
    m_main->makeDocument();
    for (const bool on : {true, false}) {
        for (const CommandRow &row : commandTable) {
            if (row.option)
                g_options.*row.option = on;
        }
        m_main->main.surface().MenuEnableDynamic();
        for (const CommandRow &row : commandTable) {
            const bool marked = row.option != nullptr;
            const QAction *item = m_main->action(toText(row.name));
            if (row.kind == RowKind::Command)
                QVERIFY2(item->isCheckable() == (marked || row.marked) && item->isChecked() == (marked && on),
                         row.name.data());
        }
    }
    g_options = Options();
}

void tst_CommandsInMain::everyShortcutOfACaptionRunsWhatItsItemRuns_data()
{
    QTest::addColumn<QString>("item");
    QTest::addColumn<QString>("shortcut");
    for (const CommandRow &row : commandTable) {
        const QString caption = toText(row.caption);
        const qsizetype gap = caption.indexOf(u"  "_s);
        // Alt+F4 is the window manager's.
        if (gap > 0 && !caption.endsWith(u"Alt+F4"_s))
            QTest::addRow("%s", row.name.data()) << toText(row.name) << caption.mid(gap).trimmed();
    }
}

namespace
{

// What a command can change of a document with its clipboard, in words.
QString picture(const Document &document, const Clipboard &clipboard)
{
    QStringList lines;
    for (const Entry *entry = document.tree.root(); entry; entry = nextInOutline(entry, document.tree.root()))
        lines.append(
            u"%1 %2 %3 %4"_s.arg(document.tree.key(entry), entry->label()).arg(entry->tagged()).arg(entry->expanded()));
    lines.append(document.view()->txtRTF.Text());
    lines.append(u"%1 %2"_s.arg(document.view()->txtRTF.SelStart()).arg(document.view()->txtRTF.SelLength()));
    // A command may copy rich text alone, a key of the pane copies plain text beside it.
    lines.append(clipboard.text().isEmpty() ? rtf::toPlainText(clipboard.richText()) : clipboard.text());
    lines.append(document.tree.key(document.tree.selected()));
    const QWidget *focus = QApplication::focusWidget();
    lines.append(focus ? QString::fromLatin1(focus->metaObject()->className()) : QString());
    return lines.join(u'\n');
}

QKeySequence keyOf(QString shortcut)
{
    // The keypad's keys by their names.
    shortcut.replace(u"Plus"_s, u"+"_s).replace(u"Minus"_s, u"-"_s);
    return QKeySequence(shortcut, QKeySequence::PortableText);
}

} // namespace

void tst_CommandsInMain::everyShortcutOfACaptionRunsWhatItsItemRuns()
{
    QFETCH(QString, item);
    QFETCH(QString, shortcut);
    const QKeySequence sequence = keyOf(shortcut);
    QCOMPARE(sequence.count(), 1);
    const bool ofTheText = item.startsWith(u"mnuEdit"_s);
    QStringList pictures;
    DesktopClipboard clipboard;
    for (const bool byKey : {false, true}) {
        m_main.reset();
        init();
        // The text pane's own keys use the desktop's clipboard.
        ports().clipboard = &clipboard;
        clipboard.setText(u"pasted"_s);
        m_main->app.core.dialogs.answers = {Answer::Yes};
        Document &document = m_main->makeDocument();
        // From its fourth entry all of the outline's commands can be chosen but Unindent.
        Entry *middle = document.tree.itemByKey(u"KEY0.2"_s);
        modNodes::NodeInsert(document, Relationship::tvwNext, middle);
        modNodes::NodeInsert(document, Relationship::tvwChild, middle);
        int number = 0;
        for (Entry *entry = document.tree.root(); entry; entry = nextInOutline(entry, document.tree.root()))
            rawOutline(document).tree.setLabel(entry, u"Entry %1"_s.arg(++number));
        rawOutline(document).tree.setExpanded(middle, item == u"mnuOutlineCollapse");
        modNodes::NodeSelectFull(document, item == u"mnuOutlineUnindent" ? middle->firstChild() : middle);
        m_main->choose("mnuOutlineCopy");
        document.view()->txtRTF.setSelText(u"some words here"_s);
        document.view()->txtRTF.setSelStart(5);
        document.view()->txtRTF.setSelLength(5);
        m_main->choose(ofTheText ? "mnuViewGoToText" : "mnuViewGoToOutline");
        m_main->refresh();
        const QString before = picture(document, clipboard);
        if (byKey) {
            const auto key = sequence[0];
            const Qt::KeyboardModifiers keypad =
                shortcut.startsWith(u"Plus"_s) || shortcut.startsWith(u"Minus"_s) ? Qt::KeypadModifier : Qt::NoModifier;
            QTest::keyClick(m_main->main.windowHandle(), key.key(), key.keyboardModifiers() | keypad);
        } else {
            m_main->choose(item.toLatin1().constData());
        }
        const QString after = picture(document, clipboard);
        if (item != u"mnuOutlineCopy" && item != u"mnuEditCopy")
            QVERIFY2(after != before, qPrintable(after));
        pictures.append(after);
        document.history.markSaved();
    }
    QCOMPARE(pictures[1], pictures[0]);
}

QTEST_MAIN(tst_CommandsInMain)
#include "tst_CommandsInMain.moc"
