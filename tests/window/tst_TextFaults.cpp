// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "outline/EveryCommand.h"
#include "window/WindowFixture.h"

#include "commands/CommandRoutines.h"
#include "document/UndoRedo.h"
#include "search/modSearch.h"
#include "support/ErrorRecorder.h"
#include "support/OutlineState.h"
#include "support/OutlineText.h"
#include "support/RawOutline.h"
#include "support/RefusedMemory.h"
#include "text/modEdit.h"
#include "text/modFont.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

// What is done in texts and between documents while memory is refused, each of the program's own requests once: what
// fails says so once and has left every document as it was, and what comes of it nevertheless is one step.

namespace
{

using FaultyDeed = void (*)(WindowFixture &);

QStringList contentOfAll(const WindowFixture &fixture)
{
    QStringList all;
    for (const Document *document : fixture.documents())
        all += contentOf(document->outline());
    return all;
}

// What is inserted anew is another entry each time.
QStringList withoutNumbers(QStringList lines)
{
    static const QRegularExpression number(u" #[0-9]+"_s);
    return lines.replaceInStrings(number, QString());
}

std::vector<int> positionsOf(const WindowFixture &fixture)
{
    std::vector<int> positions;
    for (const Document *document : fixture.documents())
        positions.push_back(document->history.position());
    return positions;
}

// What was done in each document beyond a position is one step, and is undone.
bool areUndoneTo(const std::vector<int> &positions, const WindowFixture &fixture)
{
    const std::vector<Document *> documents = fixture.documents();
    for (std::size_t i = 0; i < documents.size(); ++i) {
        if (documents[i]->history.position() > positions[i] && !undoStep(*documents[i]))
            return false;
    }
    return positionsOf(fixture) == positions;
}

// Whether the panes show what the document holds.
QString faultOfPanes(const WindowFixture &fixture)
{
    const Document &document = *fixture.activeDocument();
    const Entry *selected = document.tree.selected();
    if (document.texts.entryAsShown() != selected || document.view()->txtRTF.shown() != document.texts.shown())
        return u"another text is shown"_s;
    const QByteArray stored = NodeTextDecompressIfRequired(document.tree.storedText(selected));
    QTextDocument read;
    read.setDefaultFont(document.baseFont());
    rtf::read(stored, read);
    QTextDocument shown;
    shown.setDefaultFont(document.baseFont());
    rtf::read(document.view()->txtRTF.TextRTF(), shown);
    return rtf::write(shown) == rtf::write(read) ? QString() : u"shown is "_s + QString::fromLatin1(rtf::write(shown));
}

QStringList fontsOf(const WindowFixture &fixture)
{
    return {fixture.form().treeView->Font().toString(), fixture.form().textBox->Font().toString()};
}

// As the window reports it, and lets go of what was dragged in any case.
void dropBetweenDocuments(WindowFixture &fixture)
{
    const auto reset = qScopeGuard(ResetDraggingFlags);
    procedure("frmDocument trvOutline_DragDrop", [&fixture] {
        Document &source = *fixture.documents().front();
        dragState().entry.set(&source.tree, source.tree.selected());
        dragState().relationship = Relationship::tvwChild;
        dragState().copy = true;
        dropEntry(*fixture.activeDocument(), *fixture.activeDocument()->tree.root());
    });
}

} // namespace

Q_DECLARE_METATYPE(FaultyDeed)

class tst_TextFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void cleanup()
    {
        modOutline::copiedEntry().clear();
        m_fixture.reset();
    }

    void whatFailsLeavesAllDocumentsAsTheyWere_data();
    void whatFailsLeavesAllDocumentsAsTheyWere();

private:
    Document &document() const { return *m_fixture->activeDocument(); }

    RichTextBox &box() const { return *m_fixture->form().textBox; }

    void prepare() const;
    bool isTriedWithout(long request, FaultyDeed deed) const;

    std::unique_ptr<WindowFixture> m_fixture;
};

void tst_TextFaults::whatFailsLeavesAllDocumentsAsTheyWere_data()
{
    QTest::addColumn<FaultyDeed>("deed");
    const auto row = [](const char *name, FaultyDeed deed) { QTest::newRow(name) << deed; };
    row("a key", [](WindowFixture &f) { QTest::keyClick(f.form().textBox, Qt::Key_X); });
    row("a key over what is selected", [](WindowFixture &f) {
        f.form().textBox->setSelLength(3);
        QTest::keyClick(f.form().textBox, Qt::Key_X);
    });
    row("a new paragraph", [](WindowFixture &f) { QTest::keyClick(f.form().textBox, Qt::Key_Return); });
    row("a deleted character", [](WindowFixture &f) { QTest::keyClick(f.form().textBox, Qt::Key_Delete); });
    row("bold", [](WindowFixture &f) {
        f.form().textBox->setSelLength(3);
        modEdit::EditFormatBold();
    });
    row("a bullet", [](WindowFixture &) { modEdit::EditFormatBullet(); });
    row("rich text that is pasted", [](WindowFixture &f) {
        f.fakes.clipboard.heldRich = "{\\rtf1{\\stylesheet{\\s1\\b\\fs40 head;}{\\*\\cs2\\i word;}}\\s1 {\\cs2 a} "
                                     "cat\\par\\trowd\\cellx1000\\cellx2000 a\\cell b\\cell\\row\\pard c\\par}";
        modEdit::EditPaste();
    });
    row("a text that is cleared", [](WindowFixture &) { modEdit::EditClearEntryText(); });
    row("a replacement in all texts", [](WindowFixture &) {
        g_sSearchScope = u"1"_s;
        modSearch::SearchReplaceAll();
    });
    row("a replacement in one text", [](WindowFixture &) {
        g_sSearchScope = u"0"_s;
        modSearch::SearchReplaceAll();
    });
    row("a replacement in all labels", [](WindowFixture &) {
        g_sSearchScope = u"2"_s;
        modSearch::SearchReplaceAll();
    });
    row("a drag from another document", dropBetweenDocuments);
    row("an entry that comes from another document", [](WindowFixture &) { modOutline::OutlinePasteAndDelete(); });
    row("the font of all texts", [](WindowFixture &) {
        g_fntPendingTextFont = clsFont();
        g_fntPendingTextFont.setName(u"DejaVu Serif"_s);
        g_fntPendingTextFont.setSize(15 * clsFont::point);
        modFont::ChangeDocumentTextFontDetails(false);
    });
    row("the font of the outline", [](WindowFixture &) { modOutline::OutlineFont(); });
}

// Two documents whose panes show a text each; some steps are there before, the last one in the text of the active one.
void tst_TextFaults::init()
{
    m_fixture = std::make_unique<WindowFixture>();
    for (const QString &label : {u"cat"_s, u"dog"_s}) {
        Document &made = m_fixture->createDocument();
        plantOutline(rawOutline(made).tree, {u"Root +"_s, u' ' + label, u" the cat"_s, u"  Last"_s});
        for (const Entry *each = made.tree.root(); each; each = nextInOutline(each, made.tree.root()))
            rawOutline(made).tree.setStoredText(made.tree.entry(each->id()),
                                                "{\\rtf1 a cat of " + each->label().toLatin1() + '}');
        made.m_fileAccess = FileAccess::Writable;
        modNodes::NodeSelectFull(made, entryLabelled(made.tree, label));
    }
    g_sSearchFind = u"cat"_s;
    g_sSearchReplace = u"cow"_s;
    g_bSearchMatchCase = g_bSearchWholeWord = g_bSearchBackwards = false;
    box().setFocus();
    document().history.setTagged(document().tree.root(), true);
    QTest::keyClick(&box(), Qt::Key_Y);
    document().texts.endMerging();
}

void tst_TextFaults::prepare() const
{
    box().setSelStart(1);
    answerCommands(m_fixture->fakes.dialogs);
    const EntryTree &other = m_fixture->documents().front()->tree;
    modOutline::copiedEntry().set(&other, other.selected());
}

// Whether the deed kept its error to itself, and left nothing open.
bool tst_TextFaults::isTriedWithout(long request, FaultyDeed deed) const
{
    bool hasEscaped = false;
    memoryWasRefused = false;
    memoryIsRefusedToTheProgramAlone = true;
    requestsUntilRefusal = request;
    try {
        deed(*m_fixture);
    } catch (const std::bad_alloc &) {
        hasEscaped = true;
    }
    requestsUntilRefusal = -1;
    memoryIsRefusedToTheProgramAlone = false;
    const auto isSound = [](const Document *each) {
        return each->tree.brokenInvariant().isEmpty() && !each->history.isStepOpen();
    };
    return !hasEscaped && iActionDepth == 0 && box().PaneVisible() && m_fixture->form().treeView->PaneVisible() &&
           std::ranges::all_of(m_fixture->documents(), isSound);
}

void tst_TextFaults::whatFailsLeavesAllDocumentsAsTheyWere()
{
    QFETCH(const FaultyDeed, deed);
    prepare();
    const QStringList before = contentOfAll(*m_fixture);
    const QStringList fontsBefore = fontsOf(*m_fixture);
    const std::vector<int> positions = positionsOf(*m_fixture);
    deed(*m_fixture);
    const QStringList after = withoutNumbers(contentOfAll(*m_fixture));
    const QStringList fontsAfter = fontsOf(*m_fixture);
    QVERIFY(after != withoutNumbers(before));
    QVERIFY(areUndoneTo(positions, *m_fixture));

    int failures = 0;
    for (long request = 0;; ++request) {
        QVERIFY(request < 10'000);
        QCOMPARE(contentOfAll(*m_fixture), before);
        const ErrorRecorder errors;
        prepare();
        const bool isSound = isTriedWithout(request, deed);
        if (!memoryWasRefused)
            break;
        const QByteArray here =
            "at request " + QByteArray::number(qlonglong(request)) + " " + errors.summary().join(u", "_s).toLatin1();
        QVERIFY2(isSound, here);
        QVERIFY2(errors.count() <= 1, here);
        failures += errors.count();
        const bool isDone = positionsOf(*m_fixture) != positions;
        // That the panes cannot be fitted is told as well, and changes nothing.
        if (errors.count() == 1 && errors.records()[0].procedure != u"modView ViewAutoFitSplit")
            QVERIFY2(!isDone, here);
        const QStringList now = contentOfAll(*m_fixture);
        QCOMPARE(isDone ? withoutNumbers(now) : now, isDone ? after : before);
        QVERIFY2(fontsOf(*m_fixture) == (isDone ? fontsAfter : fontsBefore), here);
        QVERIFY2(faultOfPanes(*m_fixture).isEmpty(), here + ": " + faultOfPanes(*m_fixture).toUtf8());
        QVERIFY2(areUndoneTo(positions, *m_fixture), here);
        // What can be redone is all there, and nothing of what failed is in the way of what was done before.
        if (document().history.canRedo())
            QVERIFY2(redoStep(document()) && undoStep(document()), here);
        QVERIFY2(undoStep(document()) && redoStep(document()), here);
    }
    QVERIFY(failures > 0);
}

QTEST_MAIN(tst_TextFaults)
#include "tst_TextFaults.moc"
