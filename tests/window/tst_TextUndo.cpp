// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "support/RawOutline.h"
#include "window/WindowFixture.h"

#include "commands/CommandRoutines.h"
#include "document/UndoRedo.h"
#include "search/modSearch.h"
#include "support/OutlineText.h"
#include "text/modEdit.h"
#include "text/modFont.h"

#include <QTest>

using namespace Qt::StringLiterals;

// What is done in the texts of a document, by keys and by commands, undone and redone from the text pane.
class tst_TextUndo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void everythingIsUndoneAndRedoneInOrder();
    void withLittleMemoryAllIsUndoneInFewerSteps();
    void whatIsUndoneToTheSavedStateIsNotChanged();
    void undoShowsWhereItActed();
    void aReplacementInAllTextsIsOneStep();
    void aFontForAllTextsIsOneStep();
    void theFontOfThePaneIsUndoneFromAnyText();
    void theOutlineIsShownAgainInAFontThatHasNoName();
    void aBranchThatIsClosedOverALetGoTextIsOpenedAgain();
    void nothingIsUndoneInALockedText();

private:
    Document &document() const { return *m_fixture->activeDocument(); }

    RichTextBox &box() const { return *m_fixture->form().textBox; }

    Entry *entry(const QString &label) const { return entryLabelled(document().tree, label); }

    void select(const QString &label) const
    {
        modNodes::NodeSelectFull(document(), entry(label));
        box().setFocus();
    }

    // Everything that a file would hold, and the font of the pane.
    QStringList state() const
    {
        QStringList all;
        const EntryTree &tree = document().tree;
        for (const Entry *each = tree.root(); each; each = nextInOutline(each, tree.root()))
            all.append(each->label() + u": "_s +
                       QString::fromLatin1(NodeTextDecompressIfRequired(tree.storedText(each))));
        all.append(box().Font().family() + QString::number(box().Font().pointSizeF()));
        all.append(document().m_fntTextFont.Name());
        return all;
    }

    // One of each kind, in several entries.
    std::vector<std::function<void()>> deeds() const;

    std::unique_ptr<WindowFixture> m_fixture;
};

void tst_TextUndo::init()
{
    m_fixture = std::make_unique<WindowFixture>();
    Document &made = m_fixture->createDocument();
    plantOutline(rawOutline(made).tree, {u"Root +"_s, u" First"_s, u" Second"_s, u" Third"_s});
    for (const QString &label : {u"First"_s, u"Second"_s, u"Third"_s})
        rawOutline(made).tree.setStoredText(entry(label), "{\\rtf1 a cat of " + label.toLatin1() + '}');
    made.m_fileAccess = FileAccess::Writable;
    select(u"First"_s);
    g_sSearchFind.clear();
    g_sSearchReplace.clear();
    g_bSearchMatchCase = g_bSearchWholeWord = g_bSearchBackwards = false;
}

void tst_TextUndo::cleanup()
{
    m_fixture.reset();
}

std::vector<std::function<void()>> tst_TextUndo::deeds() const
{
    return {
        [this] { QTest::keyClicks(&box(), u"One "_s); },
        [this] {
            select(u"Second"_s);
            QTest::keyClicks(&box(), u"Two "_s);
        },
        [this] {
            box().setSelStart(0);
            box().setSelLength(3);
            modEdit::EditFormatBold();
        },
        [this] {
            select(u"First"_s);
            QTest::keyClick(&box(), Qt::Key_End);
            QTest::keyClicks(&box(), u" and more"_s);
        },
        [this] { box().setSelRTF("{\\rtf1\\trowd\\cellx1000\\cellx2000 a\\cell b\\cell\\row\\pard behind\\par}"); },
        [this] { modEdit::EditFormatBullet(); },
        [this] { document().history.setLabel(entry(u"Third"_s), u"Last"_s); },
        [this] {
            g_sSearchFind = u"cat"_s;
            g_sSearchReplace = u"dog"_s;
            g_sSearchScope = u"1"_s;
            modSearch::SearchReplaceAll();
        },
        [] {
            g_fntPendingTextFont.setName(u"DejaVu Serif"_s);
            g_fntPendingTextFont.setSize(15 * clsFont::point);
            modFont::ChangeDocumentTextFontDetails(false);
        },
        [this] {
            select(u"Second"_s);
            QTest::keyClicks(&box(), u"Three "_s);
        },
    };
}

void tst_TextUndo::everythingIsUndoneAndRedoneInOrder()
{
    QList<QStringList> states{state()};
    for (const auto &deed : deeds()) {
        const int before = document().history.position();
        deed();
        states.append(state());
        QCOMPARE(document().history.position(), before + 1);
    }
    for (int round = 0; round < 2; ++round) {
        for (qsizetype at = states.size() - 2; at >= 0; --at) {
            QTest::keyClick(&box(), Qt::Key_Z, Qt::ControlModifier);
            QCOMPARE(state(), states[at]);
        }
        QVERIFY(!document().history.canUndo());
        for (qsizetype at = 1; at < states.size(); ++at) {
            QTest::keyClick(&box(), Qt::Key_Y, Qt::ControlModifier);
            QCOMPARE(state(), states[at]);
        }
    }
}

// Texts that are let go keep what they were at the ends of what was typed into them.
void tst_TextUndo::withLittleMemoryAllIsUndoneInFewerSteps()
{
    document().texts.setMaximumWeight(0);
    const QStringList first = state();
    for (const auto &deed : deeds())
        deed();
    const QStringList last = state();
    select(u"Root"_s);
    QCOMPARE(document().texts.count(), 1);
    for (int round = 0; round < 2; ++round) {
        for (int steps = document().history.position(); steps > 0; --steps)
            QTest::keyClick(&box(), Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(!document().history.canUndo());
        QCOMPARE(state(), first);
        for (int steps = document().history.stepCount(); steps > 0; --steps)
            QTest::keyClick(&box(), Qt::Key_Y, Qt::ControlModifier);
        QVERIFY(!document().history.canRedo());
        QCOMPARE(state(), last);
    }
}

void tst_TextUndo::whatIsUndoneToTheSavedStateIsNotChanged()
{
    QTest::keyClicks(&box(), u"One "_s);
    document().history.markSaved();
    QTest::keyClicks(&box(), u"Two "_s);
    QVERIFY(document().m_bDataChanged());
    QTest::keyClick(&box(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(box().Text(), u"One a cat of First"_s);
    QVERIFY(!document().m_bDataChanged());
    QTest::keyClick(&box(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(box().Text(), u"a cat of First"_s);
    QVERIFY(document().m_bDataChanged());
}

void tst_TextUndo::undoShowsWhereItActed()
{
    QTest::keyClick(&box(), Qt::Key_End);
    QTest::keyClicks(&box(), u"!"_s);
    select(u"Third"_s);
    QTest::keyClick(&box(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(document().tree.selected(), entry(u"First"_s));
    QCOMPARE(box().Text(), u"a cat of First"_s);
    QCOMPARE(box().SelStart(), 14);
}

void tst_TextUndo::aReplacementInAllTextsIsOneStep()
{
    const QStringList before = state();
    g_sSearchFind = u"cat"_s;
    g_sSearchReplace = u"dog"_s;
    g_sSearchScope = u"1"_s;
    modSearch::SearchReplaceAll();
    QCOMPARE(document().history.stepCount(), 1);
    QCOMPARE(plainTextOf(document().tree, entry(u"First"_s)), u"a dog of First"_s);
    QCOMPARE(plainTextOf(document().tree, entry(u"Second"_s)), u"a dog of Second"_s);
    QVERIFY(undoStep(document()));
    QCOMPARE(state(), before);
    QCOMPARE(document().tree.selected(), entry(u"First"_s));
    QCOMPARE(box().Text(), u"a cat of First"_s);
}

void tst_TextUndo::aFontForAllTextsIsOneStep()
{
    const QStringList before = state();
    g_fntPendingTextFont.setName(u"DejaVu Serif"_s);
    g_fntPendingTextFont.setSize(15 * clsFont::point);
    modFont::ChangeDocumentTextFontDetails(false);
    QCOMPARE(document().history.stepCount(), 1);
    QCOMPARE(box().Font().pointSizeF(), 15.0);
    QVERIFY(undoStep(document()));
    QCOMPARE(state(), before);
}

// Whatever text is shown then, and with whatever the pane had that no description names.
void tst_TextUndo::theFontOfThePaneIsUndoneFromAnyText()
{
    QFont base = box().Font();
    base.setFamily(u"DejaVu Sans Mono"_s);
    document().setBaseFont(base);
    modNodes::NodeSelectFull(document(), modNodes::NodeInsert(document(), Relationship::tvwChild, entry(u"First"_s)));
    for (const QString &name : {u"DejaVu Serif"_s, u"DejaVu Sans"_s}) {
        g_fntPendingTextFont = clsFont();
        g_fntPendingTextFont.setName(name);
        modFont::ChangeDocumentTextFontDetails(false);
        modNodes::NodeSelectFull(document(),
                                 modNodes::NodeInsert(document(), Relationship::tvwChild, entry(u"First"_s)));
        QTest::keyClicks(&box(), u"typed"_s);
    }
    const int end = document().history.position();
    for (int round = 0; round < 2; ++round) {
        QVERIFY(goToStep(document(), 0));
        QCOMPARE(box().Font().family(), u"DejaVu Sans Mono"_s);
        QVERIFY(goToStep(document(), end));
        QCOMPARE(box().Font().family(), u"DejaVu Sans"_s);
    }
}

// Closing it selects another entry, so that the text that was shown is let go and its steps become fewer.
// Until fonts are chosen a document's have no name: they are those of the desktop.
void tst_TextUndo::theOutlineIsShownAgainInAFontThatHasNoName()
{
    const TreeView &outline = *m_fixture->form().treeView;
    QVERIFY(document().m_fntOutlineFont.Name().isEmpty());
    QList<QFont> shown{outline.Font()};
    for (const QString &name : {u"DejaVu Serif"_s, u"DejaVu Sans Mono"_s}) {
        FontAttributes font;
        font.name = name;
        font.size = 15;
        m_fixture->fakes.dialogs.fonts = {font};
        modOutline::OutlineFont();
        shown.append(outline.Font());
    }
    QVERIFY(shown[0] != shown[1] && shown[1] != shown[2]);
    for (const qsizetype at : {1, 0}) {
        QTest::keyClick(&box(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(outline.Font(), shown[at]);
    }
    for (const qsizetype at : {1, 2}) {
        QTest::keyClick(&box(), Qt::Key_Y, Qt::ControlModifier);
        QCOMPARE(outline.Font(), shown[at]);
    }
}

void tst_TextUndo::aBranchThatIsClosedOverALetGoTextIsOpenedAgain()
{
    document().texts.setMaximumWeight(0);
    for (int i = 0; i < 20; ++i) {
        QTest::keyClicks(&box(), u"One "_s);
        document().history.markSaved();
    }
    QTest::keyClicks(&box(), u"Two "_s);
    QTest::keyClick(&box(), Qt::Key_Return);
    m_fixture->form().treeView->collapse(document().tree.indexOf(document().tree.root()));
    QCOMPARE(document().tree.selected(), document().tree.root());
    QVERIFY(!document().tree.root()->expanded());
    QVERIFY(undoStep(document()));
    QVERIFY(document().tree.root()->expanded());
    while (document().history.canUndo())
        QVERIFY(undoStep(document()));
    QVERIFY(document().tree.root()->expanded());
    QCOMPARE(plainTextOf(document().tree, entry(u"First"_s)), u"a cat of First"_s);
}

void tst_TextUndo::nothingIsUndoneInALockedText()
{
    QTest::keyClicks(&box(), u"One "_s);
    box().setLocked(true);
    QTest::keyClick(&box(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(box().Text(), u"One a cat of First"_s);
}

QTEST_MAIN(tst_TextUndo)
#include "tst_TextUndo.moc"
