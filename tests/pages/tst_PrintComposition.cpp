// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "pages/PrintComposition.h"
#include "support/RawOutline.h"

#include "model/Limits.h"
#include "pages/PrintFixture.h"
#include "support/MovedBytes.h"

#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <QTextTable>

using namespace Qt::StringLiterals;

// What is printed, as a text document.
class tst_PrintComposition : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void init() { m_fixture = std::make_unique<PrintFixture>(); }

    void cleanup()
    {
        QCOMPARE(m_fixture->errors.summary(), QStringList());
        m_fixture.reset();
    }

    void oneEntry();
    void anEntryWithItsDescendantsInOutlineOrder();
    void ofALabelWithoutEndTheBeginningIsPrinted();
    void headingsGetSmallerWithTheLevel();
    void headingSizesCountFromTheEntryThatPrintingBeginsWith();
    void anEntryWithoutATextIsItsLabel();
    void anEntryWithoutALabelIsItsText();
    void nothingAtAll();
    void aLabelIsOneLine();
    void everyTextKeepsItsLook();
    void anEmptyListItemStays();
    void aTextThatIsNoRtfIsPrintedAsItIs();
    void aDamagedTextIsLeftOutAndReported();
    void ofATextTooLongToBeLaidOutTheBeginningIsPrintedAndTheRestToldOf();
    void aTextThatIsComposedAgainIsBuiltOnce();
    void piecesTogetherAreTheWhole();
    void aLongTextIsBrokenBetweenParagraphs();
    void whatBelongsTogetherIsNotBroken();
    void aLongChainIsNoTrouble();

private:
    std::unique_ptr<QTextDocument> compose(const PrintExtent &extent, qsizetype characters = INT_MAX)
    {
        const PrintComposition composition(extent, QFont(u"DejaVu Sans"_s));
        auto document = std::make_unique<QTextDocument>();
        m_next = composition.compose(*document, composition.first(), {characters});
        return document;
    }

    QList<QStringList> visiblePieces(const PrintExtent &extent, qsizetype lines);

    // The paragraphs, a heading with its size in front.
    static QStringList lines(const QTextDocument &document)
    {
        QStringList all;
        for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
            const QString size = QString::number(block.charFormat().fontPointSize());
            all << (PrintComposition::isHeading(block) ? size + u": "_s : QString()) + block.text();
        }
        return all;
    }

    std::unique_ptr<PrintFixture> m_fixture;
    PrintPlace m_next;
};

void tst_PrintComposition::oneEntry()
{
    Document &document = m_fixture->plant({u"Root"_s, u" A"_s});
    const auto text = compose(m_fixture->extent(document, u"Root"_s, false));
    QCOMPARE(lines(*text), QStringList({u"20: Root"_s, u"text of Root"_s}));
    QVERIFY(!m_next.entry);
    const QTextCharFormat heading = text->begin().begin().fragment().charFormat();
    QCOMPARE(heading.fontWeight(), int(QFont::Bold));
    QCOMPARE(heading.fontPointSize(), 20.0);
    // Printed in the automatic colour.
    QVERIFY(!heading.hasProperty(QTextFormat::ForegroundBrush));
}

void tst_PrintComposition::anEntryWithItsDescendantsInOutlineOrder()
{
    Document &document = m_fixture->plant({u"Root"_s, u" A"_s, u"  B"_s, u"   C"_s, u"  D"_s, u" E"_s});
    QCOMPARE(lines(*compose(m_fixture->extent(document, u"Root"_s, true))),
             QStringList({u"20: Root"_s, u"text of Root"_s, u"17: A"_s, u"text of A"_s, u"15: B"_s, u"text of B"_s,
                          u"13.5: C"_s, u"text of C"_s, u"15: D"_s, u"text of D"_s, u"17: E"_s, u"text of E"_s}));
}

void tst_PrintComposition::ofALabelWithoutEndTheBeginningIsPrinted()
{
    Document &document = m_fixture->plant({u"Root"_s});
    const QString label(limits::printedLabel, u'x');
    for (const QString &longer : {label, label.repeated(100)}) {
        rawOutline(document).tree.setLabel(document.tree.root(), longer);
        QCOMPARE(lines(*compose({&document, document.tree.root(), false})).value(0).size(),
                 label.size() + u"20: "_s.size());
    }
}

void tst_PrintComposition::headingsGetSmallerWithTheLevel()
{
    qreal before = 1000;
    for (int depth = 0; depth < 7; ++depth) {
        QVERIFY(PrintComposition::headingSize(depth) < before);
        before = PrintComposition::headingSize(depth);
    }
    // The smallest can still be read.
    QCOMPARE(before, 10.0);
    QCOMPARE(PrintComposition::headingSize(30000), 10.0);
}

void tst_PrintComposition::headingSizesCountFromTheEntryThatPrintingBeginsWith()
{
    Document &document = m_fixture->plant({u"Root"_s, u" A"_s, u"  B"_s, u"   C"_s, u" D"_s});
    QCOMPARE(lines(*compose(m_fixture->extent(document, u"B"_s, true))),
             QStringList({u"20: B"_s, u"text of B"_s, u"17: C"_s, u"text of C"_s}));
}

void tst_PrintComposition::anEntryWithoutATextIsItsLabel()
{
    Document &document = m_fixture->plant({u"Root"_s, u" A"_s, u" B"_s, u" C"_s});
    m_fixture->setText(document, u"Root"_s, "");
    m_fixture->setText(document, u"A"_s, "{\\rtf1\\qc }");
    m_fixture->setText(document, u"C"_s, "{\\rtf1 }");
    const auto text = compose(m_fixture->extent(document, u"Root"_s, true));
    QCOMPARE(lines(*text), QStringList({u"20: Root"_s, u"17: A"_s, u"17: B"_s, u"text of B"_s, u"17: C"_s}));
    QCOMPARE(text->lastBlock().charFormat().fontPointSize(), 17.0);
    QCOMPARE(text->lastBlock().blockFormat().alignment(), Qt::AlignLeft | Qt::AlignLeading);
    // A list of labels stands closer together than headings with texts between them.
    const auto spaceAbove = [&text](int block) { return text->findBlockByNumber(block).blockFormat().topMargin(); };
    QCOMPARE(spaceAbove(0), 0.0);
    QVERIFY(spaceAbove(1) > 0);
    QVERIFY(spaceAbove(4) > spaceAbove(1));
}

void tst_PrintComposition::anEntryWithoutALabelIsItsText()
{
    Document &document = m_fixture->plant({u"Root"_s, u" A"_s});
    rawOutline(document).tree.setLabel(document.tree.root(), QString());
    QCOMPARE(lines(*compose({&document, document.tree.root(), true})),
             QStringList({u"text of Root"_s, u"17: A"_s, u"text of A"_s}));
}

void tst_PrintComposition::nothingAtAll()
{
    Document &document = m_fixture->plant({u"Root"_s});
    m_fixture->setText(document, u"Root"_s, "");
    rawOutline(document).tree.setLabel(document.tree.root(), QString());
    QVERIFY(compose({&document, document.tree.root(), true})->isEmpty());
}

void tst_PrintComposition::aLabelIsOneLine()
{
    Document &document = m_fixture->plant({u"Root"_s});
    rawOutline(document).tree.setLabel(document.tree.root(), u"a\nb\r\nc\u2029d"_s);
    QCOMPARE(lines(*compose({&document, document.tree.root(), true})).first(), u"20: a b  c d"_s);
}

void tst_PrintComposition::everyTextKeepsItsLook()
{
    Document &document = m_fixture->plant({u"Root"_s, u" List"_s, u" Same"_s, u" Table"_s, u" Plain"_s});
    const QByteArray list("{\\rtf1{\\*\\pn\\pnlvlbody\\pndec{\\pntxta .}}one\\par two}");
    m_fixture->setText(document, u"Root"_s, "{\\rtf1{\\fonttbl{\\f0 Liberation Serif;}}\\f0\\fs30\\qc\\b centred}");
    m_fixture->setText(document, u"List"_s, list);
    m_fixture->setText(document, u"Same"_s, list);
    m_fixture->setText(document, u"Table"_s, "{\\rtf1\\trowd\\cellx2000\\cellx4000\\intbl x\\cell y\\cell\\row\\pard}");
    const auto text = compose(m_fixture->extent(document, u"Root"_s, true));

    const QTextBlock centred = text->find(u"centred"_s).block();
    QCOMPARE(centred.blockFormat().alignment(), Qt::AlignHCenter);
    const QTextCharFormat look = text->find(u"centred"_s).charFormat();
    QCOMPARE(look.fontFamilies().toStringList(), QStringList(u"Liberation Serif"_s));
    QCOMPARE(look.fontPointSize(), 15.0);

    // Each list counts from 1.
    const QTextCursor first = text->find(u"two"_s);
    const QTextCursor second = text->find(u"two"_s, first);
    QVERIFY(first.currentList());
    QCOMPARE(second.currentList()->itemText(second.block()), u"2."_s);
    QVERIFY(first.currentList() != second.currentList());

    const QTextCursor cell = text->find(u"y"_s, text->find(u"x"_s, second));
    QVERIFY(cell.currentTable());
    QCOMPARE(cell.currentTable()->columns(), 2);

    // Nothing of one entry's look gets into the next.
    const QTextCursor plain = text->find(u"text of Plain"_s);
    QVERIFY(!plain.currentTable() && !plain.currentList());
    QCOMPARE(plain.blockFormat().alignment(), Qt::AlignLeft | Qt::AlignLeading);
    QVERIFY(plain.charFormat().fontWeight() != QFont::Bold);
}

void tst_PrintComposition::anEmptyListItemStays()
{
    Document &document = m_fixture->plant({u"Root"_s, u" A"_s});
    m_fixture->setText(document, u"Root"_s, "{\\rtf1{\\*\\pn\\pnlvlblt{\\pntxtb\\'b7}}\\par}");
    QCOMPARE(lines(*compose(m_fixture->extent(document, u"Root"_s, true))),
             QStringList({u"20: Root"_s, QString(), u"17: A"_s, u"text of A"_s}));
}

void tst_PrintComposition::aTextThatIsNoRtfIsPrintedAsItIs()
{
    Document &document = m_fixture->plant({u"Root"_s});
    m_fixture->setText(document, u"Root"_s, "caf\xe9 {\\b\r\nsecond line");
    QCOMPARE(lines(*compose(m_fixture->extent(document, u"Root"_s, true))),
             QStringList({u"20: Root"_s, u"caf\u00e9 {\\b"_s, u"second line"_s}));
}

void tst_PrintComposition::aDamagedTextIsLeftOutAndReported()
{
    Document &document = m_fixture->plant({u"Root"_s, u" A"_s});
    rawOutline(document).tree.setStoredText(document.tree.root(), "30,no such stream");
    QCOMPARE(lines(*compose(m_fixture->extent(document, u"Root"_s, true))),
             QStringList({u"20: Root"_s, u"17: A"_s, u"text of A"_s}));
    QVERIFY(!m_fixture->errors.records().empty());
    QCOMPARE(m_fixture->errors.records().back().report.number, 321);
    m_fixture->errors.clear();
}

void tst_PrintComposition::ofATextTooLongToBeLaidOutTheBeginningIsPrintedAndTheRestToldOf()
{
    Document &document = m_fixture->plant({u"Root"_s});
    rawOutline(document).tree.setStoredText(document.tree.root(), QByteArray("x ").repeated(limits::longestParagraph));
    const QStringList printed = lines(*compose(m_fixture->extent(document, u"Root"_s, true)));
    QCOMPARE(printed.size(), 3);
    QCOMPARE(printed[1].size(), limits::shownBeginning);
    QCOMPARE(printed[2], u"(This text is too long to be printed whole.)"_s);
}

void tst_PrintComposition::aTextThatIsComposedAgainIsBuiltOnce()
{
    Document &document = m_fixture->plant({u"Root"_s});
    m_fixture->setText(document, u"Root"_s, "{\\rtf1 " + QByteArray("{\\b some} words\\par ").repeated(3000) + "}");
    const PrintComposition composition(m_fixture->extent(document, u"Root"_s, true), QFont(u"DejaVu Sans"_s));
    const auto built = [&composition] {
        const qint64 before = movedBytes();
        QTextDocument printed;
        composition.compose(printed, composition.first(), {});
        return movedBytes() - before;
    };
    const qint64 first = built();
    const qint64 again = built();
    QVERIFY2(again * 4 < first * 3, qPrintable(u"%1 bytes and then %2"_s.arg(first).arg(again)));
}

void tst_PrintComposition::piecesTogetherAreTheWhole()
{
    QStringList outline{u"Root"_s};
    for (int i = 0; i < 50; ++i)
        outline << QString(1 + i % 5, u' ') + u"entry%1"_s.arg(i);
    Document &document = m_fixture->plant(outline);
    for (int i = 0; i < 50; i += 3)
        m_fixture->setText(document, u"entry%1"_s.arg(i), "");
    const PrintExtent whole = m_fixture->extent(document, u"Root"_s, true);
    const PrintComposition composition(whole, QFont());
    for (const qsizetype characters : {1, 20, 100, 500}) {
        QStringList all;
        int pieces = 0;
        for (PrintPlace next = composition.first(); next.entry; ++pieces) {
            QTextDocument piece;
            next = composition.compose(piece, next, {characters});
            all << lines(piece);
        }
        QVERIFY(pieces > 1);
        QCOMPARE(all, lines(*compose(whole)));
    }
}

// The pieces of a text, by what can be seen of each.
QList<QStringList> tst_PrintComposition::visiblePieces(const PrintExtent &extent, qsizetype lines)
{
    const PrintComposition composition(extent, QFont());
    QList<QStringList> pieces;
    for (PrintPlace next = composition.first(); next.entry;) {
        QTextDocument piece;
        next = composition.compose(piece, next, {INT_MAX, lines});
        QStringList texts;
        for (QTextBlock block = piece.begin(); block.isValid(); block = block.next()) {
            if (block.isVisible())
                texts << block.text();
        }
        pieces << texts;
    }
    return pieces;
}

void tst_PrintComposition::aLongTextIsBrokenBetweenParagraphs()
{
    Document &document = m_fixture->plant({u"Root"_s, u" A"_s});
    m_fixture->setText(document, u"Root"_s, "{\\rtf1 a\\par b\\par c\\par d\\par e}");
    const QList<QStringList> expected{{u"Root"_s, u"a"_s, u"b"_s}, {u"c"_s, u"d"_s}, {u"e"_s, u"A"_s, u"text of A"_s}};
    QCOMPARE(visiblePieces(m_fixture->extent(document, u"Root"_s, true), 2), expected);
    // A long paragraph counts as the lines that it will have.
    m_fixture->setText(document, u"Root"_s, "{\\rtf1 " + QByteArray(400, 'a') + "\\par b\\par c}");
    QCOMPARE(visiblePieces(m_fixture->extent(document, u"Root"_s, false), 4).size(), 2);
}

void tst_PrintComposition::whatBelongsTogetherIsNotBroken()
{
    Document &document = m_fixture->plant({u"Root"_s});
    const PrintExtent extent{&document, document.tree.root(), false};
    m_fixture->setText(document, u"Root"_s,
                       "{\\rtf1 a\\par\\trowd\\cellx1000\\cellx2000\\intbl b\\cell c\\cell\\row\\pard d\\par e}");
    const QList<QStringList> table = visiblePieces(extent, 1);
    QCOMPARE(table.size(), 2);
    QCOMPARE(table.last(), QStringList(u"e"_s));
    m_fixture->setText(document, u"Root"_s, "{\\rtf1 a\\par\\keepn b\\par\\keepn c\\par\\pard d\\par e}");
    const QList<QStringList> kept = visiblePieces(extent, 1);
    QCOMPARE(kept, QList<QStringList>({{u"Root"_s, u"a"_s}, {u"b"_s, u"c"_s, u"d"_s}, {u"e"_s}}));
}

void tst_PrintComposition::aLongChainIsNoTrouble()
{
    Document &document = m_fixture->fake.windows.createDocument();
    Entry *entry = nullptr;
    for (int i = 0; i < EntryTree::maximumCount; ++i) {
        entry = rawOutline(document).tree.insert(Relationship::tvwChild, entry);
        rawOutline(document).tree.setLabel(entry, u"x"_s);
    }
    QCOMPARE(compose({&document, document.tree.root(), true})->blockCount(), EntryTree::maximumCount);
}

QTEST_MAIN(tst_PrintComposition)
#include "tst_PrintComposition.moc"
