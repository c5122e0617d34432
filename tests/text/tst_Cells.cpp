// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "text/PaneFixture.h"
#include "text/modEdit.h"
#include "text/modFont.h"

#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QTest>
#include <QTextBlock>
#include <QTextFrame>
#include <QTextTable>

#include <memory>

using namespace Qt::StringLiterals;

// Commands on cells of a table, which the mouse has selected.
class tst_Cells : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void init()
    {
        m_pane = std::make_unique<PaneFixture>();
        m_box = &m_pane->box;
        m_box->resize(600, 400);
        m_box->show();
        QVERIFY(QTest::qWaitForWindowActive(m_box));
    }

    void cleanup() { m_pane.reset(); }

    void caseChangesThoseCellsAlone_data() { drags(); }

    void caseChangesThoseCellsAlone();

    void deletingEmptiesThoseCellsAlone_data() { drags(); }

    void deletingEmptiesThoseCellsAlone();

    void formatsAreSetOnThoseCellsAndReadFromThem_data() { drags(); }

    void formatsAreSetOnThoseCellsAndReadFromThem();

    void paragraphsOfThoseCellsAloneAreChanged_data() { drags(); }

    void paragraphsOfThoseCellsAloneAreChanged();

    void theSameCellsAreSelectedAfterTheCaseHasGoneRound_data() { drags(); }

    void theSameCellsAreSelectedAfterTheCaseHasGoneRound();

    void cuttingPutsThoseCellsOnTheClipboard_data() { drags(); }

    void cuttingPutsThoseCellsOnTheClipboard();

    void whatIsTypedTakesThePlaceOfThoseCells_data() { drags(); }

    void whatIsTypedTakesThePlaceOfThoseCells();

    void whatIsComposedTakesThePlaceOfThoseCells_data() { drags(); }

    void whatIsComposedTakesThePlaceOfThoseCells();
    void whatIsTypedLooksLikeTheFirstCell();
    void aLockedTextKeepsItsCells();
    void everyCellBeginsAName();
    void aColumnWhoseFirstCellIsEmptyGrowsByAPoint();
    void emptyCellsGrowByAPointToo();
    void whatIsTypedIntoAnEmptyCellHasTheLookThatTheCellsGot();
    void aFormatOfCellsIsOneStepToUndo();
    void aPasteOverCellsGoesIntoTheFirst();
    void theCellsOfAMergedTable();
    void aSelectionFromOutsideTakesWholeRows();
    void aSelectionInsideOneCellIsOrdinaryText();

private:
    // Which cell the drag begins and ends in, and which are selected by it.
    static void drags()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        QTest::addColumn<QStringList>("cells");
        const QStringList all = {u"ka"_s, u"kb"_s, u"kc"_s, u"kd"_s};
        QTest::newRow("all, down to the right") << u"ka"_s << u"kd"_s << all;
        QTest::newRow("all, down to the left") << u"kb"_s << u"kc"_s << all;
        QTest::newRow("all, up to the right") << u"kc"_s << u"kb"_s << all;
        QTest::newRow("all, up to the left") << u"kd"_s << u"ka"_s << all;
        QTest::newRow("a row, to the right") << u"ka"_s << u"kb"_s << QStringList{u"ka"_s, u"kb"_s};
        QTest::newRow("a row, to the left") << u"kd"_s << u"kc"_s << QStringList{u"kc"_s, u"kd"_s};
        QTest::newRow("a column, down") << u"ka"_s << u"kc"_s << QStringList{u"ka"_s, u"kc"_s};
        QTest::newRow("a column, up") << u"kd"_s << u"kb"_s << QStringList{u"kb"_s, u"kd"_s};
    }

    // A table of these cells, a paragraph before it and one behind it.
    QTextTable *showTable(int rows, int columns, const QStringList &cells)
    {
        m_box->setTextRTF("{\\rtf1{\\fonttbl{\\f0 DejaVu Sans;}}\\fs20 before}");
        QTextCursor cursor(m_box->document());
        cursor.movePosition(QTextCursor::End);
        const QTextCharFormat look = cursor.charFormat();
        QTextTable *table = cursor.insertTable(rows, columns);
        cursor.movePosition(QTextCursor::End);
        cursor.insertText(u"behind"_s, look);
        for (int cell = 0; cell < rows * columns; ++cell)
            table->cellAt(cell / columns, cell % columns).firstCursorPosition().insertText(cells.value(cell), look);
        return table;
    }

    QTextTable *showFourCells() { return showTable(2, 2, {u"ka"_s, u"kb"_s, u"kc"_s, u"kd"_s}); }

    QPoint placeOf(int position) const
    {
        QTextCursor cursor(m_box->document());
        cursor.setPosition(position);
        return m_box->cursorRect(cursor).center();
    }

    void drag(int from, int to)
    {
        QWidget *text = m_box->viewport();
        QTest::mousePress(text, Qt::LeftButton, {}, placeOf(from));
        QTest::mouseMove(text, (placeOf(from) + placeOf(to)) / 2);
        QTest::mouseMove(text, placeOf(to));
        QTest::mouseRelease(text, Qt::LeftButton, {}, placeOf(to));
    }

    int placeOfWord(const QString &word) const { return m_box->document()->find(word).selectionStart(); }

    // Inside the words, as one does by hand.
    void dragOverWords(const QString &from, const QString &to) { drag(placeOfWord(from) + 1, placeOfWord(to) + 1); }

    void dragOverRow()
    {
        QFETCH(const QString, from);
        QFETCH(const QString, to);
        dragOverWords(from, to);
        QVERIFY(m_box->SelHoldsCells());
    }

    QString textWith(const QStringList &cells, QString (*change)(const QString &)) const
    {
        QString text = u"before|ka|kb|kc|kd|behind"_s;
        for (const QString &cell : cells)
            text.replace(cell, change(cell));
        return text;
    }

    QString shownText() const { return m_box->Text().replace(u"\r\n"_s, u"|"_s); }

    template <class Property>
    QStringList wordsWhere(Property has) const
    {
        QStringList words;
        for (const QString &word : {u"before"_s, u"ka"_s, u"kb"_s, u"kc"_s, u"kd"_s, u"behind"_s}) {
            if (has(m_box->document()->find(word)))
                words << word;
        }
        return words;
    }

    std::unique_ptr<PaneFixture> m_pane;
    // Its own.
    RichTextBox *m_box = nullptr;
};

namespace
{

QString inCapitals(const QString &text)
{
    return text.toUpper();
}

QString gone(const QString &)
{
    return {};
}

} // namespace

void tst_Cells::caseChangesThoseCellsAlone()
{
    QFETCH(const QStringList, cells);
    showFourCells();
    dragOverRow();
    modEdit::EditCaseUpper();
    QCOMPARE(shownText(), textWith(cells, inCapitals));
    m_box->undo();
    QCOMPARE(shownText(), textWith({}, gone));
}

void tst_Cells::deletingEmptiesThoseCellsAlone()
{
    QFETCH(const QStringList, cells);
    showFourCells();
    dragOverRow();
    QTest::keyClick(m_box, Qt::Key_Delete);
    QCOMPARE(shownText(), textWith(cells, gone));
    m_box->undo();
    dragOverRow();
    modEdit::EditDelete();
    QCOMPARE(shownText(), textWith(cells, gone));
}

void tst_Cells::formatsAreSetOnThoseCellsAndReadFromThem()
{
    QFETCH(const QStringList, cells);
    showFourCells();
    dragOverRow();
    const auto isBold = [](const QTextCursor &word) { return word.charFormat().fontWeight() == QFont::Bold; };
    const auto isLarge = [](const QTextCursor &word) { return word.charFormat().fontPointSize() == 11; };
    modEdit::EditFormatBold();
    QCOMPARE(wordsWhere(isBold), cells);
    QCOMPARE(m_box->SelBold(), std::optional(true));
    modFont::ChangeSelectedFontSize(1);
    QCOMPARE(wordsWhere(isLarge), cells);
    QCOMPARE(m_box->SelFontSize(), std::optional(11.0));
    modFont::ChangeSelectedFontSize(1);
    QCOMPARE(m_box->SelFontSize(), std::optional(12.0));
    modEdit::EditFormatBold();
    QCOMPARE(m_box->SelBold(), std::optional(false));
    QCOMPARE(wordsWhere(isBold), QStringList());
    m_box->setSelColor(Qt::red);
    QCOMPARE(wordsWhere([](const QTextCursor &word) { return word.charFormat().foreground() == QBrush(Qt::red); }),
             cells);
    QCOMPARE(m_box->SelColor(), std::optional(QColor(Qt::red)));
}

void tst_Cells::paragraphsOfThoseCellsAloneAreChanged()
{
    QFETCH(const QStringList, cells);
    showFourCells();
    dragOverRow();
    modEdit::EditFormatCentre();
    QCOMPARE(wordsWhere([](const QTextCursor &word) { return word.blockFormat().alignment() == Qt::AlignHCenter; }),
             cells);
    QCOMPARE(m_box->SelAlignment(), std::optional(TextPane::Centre));
    modEdit::EditFormatIndent();
    QCOMPARE(wordsWhere([](const QTextCursor &word) { return word.blockFormat().leftMargin() > 0; }), cells);
    QCOMPARE(m_box->SelIndent(), std::optional(300));
    modEdit::EditFormatBullet();
    QCOMPARE(wordsWhere([](const QTextCursor &word) { return word.block().textList() != nullptr; }), cells);
    QCOMPARE(m_box->SelBullet(), std::optional(true));
}

void tst_Cells::theSameCellsAreSelectedAfterTheCaseHasGoneRound()
{
    QFETCH(const QStringList, cells);
    showFourCells();
    dragOverRow();
    for (int i = 0; i < 3; ++i) {
        modEdit::EditCaseToggle();
        QVERIFY(m_box->SelHoldsCells());
    }
    QCOMPARE(shownText(), textWith({}, gone));
    modEdit::EditFormatBold();
    QCOMPARE(wordsWhere([](const QTextCursor &word) { return word.charFormat().fontWeight() == QFont::Bold; }), cells);
}

void tst_Cells::cuttingPutsThoseCellsOnTheClipboard()
{
    QFETCH(const QStringList, cells);
    const auto text = [&](const QString &row) {
        return cells.size() == 4                                    ? u"ka\tkb"_s + row + u"kc\tkd"_s
               : cells.contains(u"ka"_s) == cells.contains(u"kb"_s) ? cells.join(u'\t')
                                                                    : cells.join(row);
    };
    showFourCells();
    dragOverRow();
    QCOMPARE(m_box->SelText(), text(u"\r\n"_s));
    modEdit::EditCut();
    QCOMPARE(QApplication::clipboard()->text(), text(u"\n"_s));
    QCOMPARE(shownText(), textWith(cells, gone));
    m_box->undo();
    dragOverRow();
    QTest::keyClick(m_box, Qt::Key_X, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), text(u"\n"_s));
    QCOMPARE(shownText(), textWith(cells, gone));
    // And back comes what was taken away, formatting and all.
    m_box->setTextRTF({});
    QTest::keyClick(m_box, Qt::Key_V, Qt::ControlModifier);
    for (const QString &word : {u"ka"_s, u"kb"_s, u"kc"_s, u"kd"_s})
        QCOMPARE(m_box->Text().contains(word), cells.contains(word));
    QCOMPARE(m_box->document()->rootFrame()->childFrames().size(), 1);
}

void tst_Cells::whatIsTypedTakesThePlaceOfThoseCells()
{
    QFETCH(const QStringList, cells);
    const auto withFirst = [&](const QString &typed) {
        return textWith(cells.sliced(1), gone).replace(cells.front(), typed);
    };
    showFourCells();
    dragOverRow();
    QTest::keyClick(m_box, 'x');
    QCOMPARE(shownText(), withFirst(u"x"_s));
    QTest::keyClick(m_box, 'y');
    QCOMPARE(shownText(), withFirst(u"xy"_s));
    m_box->undo();
    if (shownText() != textWith({}, gone))
        m_box->undo();
    QCOMPARE(shownText(), textWith({}, gone));

    dragOverRow();
    QTest::keyClick(m_box, 'x', Qt::ShiftModifier);
    m_box->undo();
    QCOMPARE(shownText(), textWith({}, gone));

    dragOverRow();
    QTest::keyClick(m_box, Qt::Key_Return);
    QTest::keyClick(m_box, 'z');
    QCOMPARE(shownText(), withFirst(u"|z"_s));
    m_box->setTextRTF({});
    showFourCells();
    dragOverRow();
    QTest::keyClick(m_box, Qt::Key_Return, Qt::ShiftModifier);
    QTest::keyClick(m_box, 'z');
    QCOMPARE(shownText(), withFirst(u"\nz"_s));

    // Keys that type nothing leave the cells alone.
    showFourCells();
    dragOverRow();
    QTest::keyClick(m_box, Qt::Key_Shift);
    QTest::keyClick(m_box, Qt::Key_F, Qt::ControlModifier);
    QTest::keyClick(m_box, Qt::Key_Escape);
    QCOMPARE(shownText(), textWith({}, gone));
}

void tst_Cells::whatIsComposedTakesThePlaceOfThoseCells()
{
    QFETCH(const QStringList, cells);
    const auto withFirst = [&](const QString &typed) {
        return textWith(cells.sliced(1), gone).replace(cells.front(), typed);
    };
    // A dead key and its letter come as a whole, an ideogram is first composed in the text.
    showFourCells();
    dragOverRow();
    QInputMethodEvent whole;
    whole.setCommitString(u"é"_s);
    QApplication::sendEvent(m_box, &whole);
    QCOMPARE(shownText(), withFirst(u"é"_s));
    m_box->undo();
    QCOMPARE(shownText(), textWith({}, gone));

    dragOverRow();
    QInputMethodEvent composing(u"ni"_s, {});
    QApplication::sendEvent(m_box, &composing);
    QInputMethodEvent chosen;
    chosen.setCommitString(u"你"_s);
    QApplication::sendEvent(m_box, &chosen);
    QCOMPARE(shownText(), withFirst(u"你"_s));
}

void tst_Cells::whatIsTypedLooksLikeTheFirstCell()
{
    showFourCells();
    dragOverWords(u"ka"_s, u"ka"_s);
    m_box->setTextCursor(m_box->document()->find(u"ka"_s));
    m_box->setSelBold(true);
    dragOverWords(u"kd"_s, u"ka"_s);
    QVERIFY(m_box->SelHoldsCells());
    QTest::keyClick(m_box, 'x');
    QTest::keyClick(m_box, 'y');
    QCOMPARE(wordsWhere([](const QTextCursor &word) { return word.charFormat().fontWeight() == QFont::Bold; }),
             QStringList());
    const QTextCursor typed = m_box->document()->find(u"xy"_s);
    QCOMPARE(typed.charFormat().fontWeight(), int(QFont::Bold));
}

void tst_Cells::aLockedTextKeepsItsCells()
{
    showFourCells();
    m_box->setLocked(true);
    dragOverWords(u"ka"_s, u"kd"_s);
    QTest::keyClick(m_box, 'x');
    QInputMethodEvent whole;
    whole.setCommitString(u"é"_s);
    QApplication::sendEvent(m_box, &whole);
    QCOMPARE(shownText(), textWith({}, gone));
}

void tst_Cells::everyCellBeginsAName()
{
    showFourCells();
    dragOverWords(u"ka"_s, u"kd"_s);
    modEdit::EditCaseProper();
    QCOMPARE(shownText(), u"before|Ka|Kb|Kc|Kd|behind"_s);
}

void tst_Cells::aColumnWhoseFirstCellIsEmptyGrowsByAPoint()
{
    const QTextTable *table = showTable(2, 2, {{}, u"kb"_s, u"kc"_s, u"kd"_s});
    drag(table->cellAt(0, 0).firstPosition(), placeOfWord(u"kc"_s) + 1);
    QVERIFY(m_box->SelHoldsCells());
    modFont::ChangeSelectedFontSize(1);
    QCOMPARE(m_box->SelFontSize(), std::optional(11.0));
    QCOMPARE(wordsWhere([](const QTextCursor &word) { return word.charFormat().fontPointSize() == 11; }),
             QStringList(u"kc"_s));
    modFont::ChangeSelectedFontSize(-1);
    QCOMPARE(m_box->SelFontSize(), std::optional(10.0));
}

void tst_Cells::emptyCellsGrowByAPointToo()
{
    const QTextTable *table = showTable(2, 2, {});
    drag(table->cellAt(0, 0).firstPosition(), table->cellAt(1, 1).firstPosition());
    QVERIFY(m_box->SelHoldsCells());
    const double size = *m_box->SelFontSize();
    modFont::ChangeSelectedFontSize(1);
    QCOMPARE(m_box->SelFontSize(), std::optional(size + 1));
}

void tst_Cells::whatIsTypedIntoAnEmptyCellHasTheLookThatTheCellsGot()
{
    const QTextTable *table = showTable(2, 2, {});
    drag(table->cellAt(0, 0).firstPosition(), table->cellAt(1, 0).firstPosition());
    modEdit::EditFormatBold();
    QCOMPARE(m_box->SelBold(), std::optional(true));
    QTextCursor cursor = m_box->textCursor();
    cursor.setPosition(table->cellAt(1, 0).firstPosition());
    m_box->setTextCursor(cursor);
    QTest::keyClicks(m_box, u"bold"_s);
    QCOMPARE(m_box->document()->find(u"bold"_s).charFormat().fontWeight(), int(QFont::Bold));
    cursor.setPosition(table->cellAt(0, 1).firstPosition());
    m_box->setTextCursor(cursor);
    QTest::keyClicks(m_box, u"thin"_s);
    QCOMPARE(m_box->document()->find(u"thin"_s).charFormat().fontWeight(), int(QFont::Normal));
}

void tst_Cells::aFormatOfCellsIsOneStepToUndo()
{
    showTable(2, 2, {u"ka"_s, {}, {}, u"kd"_s});
    const QByteArray before = m_box->TextRTF();
    dragOverWords(u"ka"_s, u"kd"_s);
    modEdit::EditFormatBold();
    QVERIFY(m_box->TextRTF() != before);
    m_box->undo();
    QCOMPARE(m_box->TextRTF(), before);
}

void tst_Cells::aPasteOverCellsGoesIntoTheFirst()
{
    showFourCells();
    dragOverWords(u"ka"_s, u"kd"_s);
    m_box->setSelText(u"new"_s);
    QCOMPARE(shownText(), u"before|new||||behind"_s);
    m_box->undo();
    dragOverWords(u"kb"_s, u"kc"_s);
    m_box->setSelRTF("{\\rtf1 new}");
    QCOMPARE(shownText(), u"before|new||||behind"_s);
    m_box->undo();
    QCOMPARE(shownText(), u"before|ka|kb|kc|kd|behind"_s);
}

void tst_Cells::theCellsOfAMergedTable()
{
    QTextTable *table =
        showTable(3, 3, {u"ka"_s, u"kb"_s, u"kc"_s, u"kd"_s, u"ke"_s, u"kf"_s, u"kg"_s, u"kh"_s, u"ki"_s});
    table->mergeCells(0, 1, 2, 2); // kb, kc, ke and kf
    dragOverWords(u"kd"_s, u"kh"_s);
    modEdit::EditCaseUpper();
    const QString changed = shownText();
    m_box->undo();
    dragOverWords(u"kd"_s, u"kh"_s);
    modEdit::EditDelete();
    // What is changed is what is taken away.
    const QString left = shownText();
    for (const QChar letter : u"abcdefghi"_s) {
        const QString word = QString(u'k') + letter;
        QCOMPARE(changed.contains(word), left.contains(word));
        QVERIFY(changed.contains(word) != changed.contains(word.toUpper()));
    }
    QVERIFY(!left.contains(u"kg"_s) && left.contains(u"ka"_s) && left.contains(u"ki"_s));
}

void tst_Cells::aSelectionFromOutsideTakesWholeRows()
{
    const auto dragOver = [this](const QString &from, const QString &to) {
        showFourCells();
        drag(placeOfWord(from) + 2, placeOfWord(to) + 1);
        QVERIFY(!m_box->SelHoldsCells());
    };
    dragOver(u"before"_s, u"kb"_s);
    modEdit::EditCaseUpper();
    QCOMPARE(shownText(), u"beFORE|KA|KB|KC|KD|behind"_s);
    dragOver(u"before"_s, u"kb"_s);
    modEdit::EditDelete();
    QCOMPARE(shownText(), u"bebehind"_s);
    dragOver(u"behind"_s, u"kb"_s);
    modEdit::EditCaseUpper();
    QCOMPARE(shownText(), u"before|KA|KB|KC|KD|BEhind"_s);
    dragOver(u"behind"_s, u"kb"_s);
    modEdit::EditDelete();
    QCOMPARE(shownText(), u"beforehind"_s);
}

void tst_Cells::aSelectionInsideOneCellIsOrdinaryText()
{
    showTable(2, 2, {u"word"_s, u"kb"_s, u"kc"_s, u"kd"_s});
    drag(placeOfWord(u"word"_s) + 1, placeOfWord(u"word"_s) + 3);
    QVERIFY(!m_box->SelHoldsCells());
    QCOMPARE(m_box->SelText(), u"or"_s);
    modEdit::EditCaseUpper();
    QCOMPARE(shownText(), u"before|wORd|kb|kc|kd|behind"_s);
}

QTEST_MAIN(tst_Cells)
#include "tst_Cells.moc"
