// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/TextSelection.h"

#include "model/SealedDocument.h"
#include "model/TextFind.h"

#include <QTest>

using namespace Qt::StringLiterals;

// Texts that no pane shows.
class tst_TextSelection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textIsPutInWhereTheCaretStands();
    void aMatchIsFoundAndSelected();
    void whatIsFoundIsThatOfTheTextAsItStands();
    void formatsAreOfTheSelectionAlone();
    void aFormatAtTheCaretIsThatOfWhatIsPutInNext();
};

void tst_TextSelection::textIsPutInWhereTheCaretStands()
{
    SealedDocument document;
    UnshownSelection text{QTextCursor(&document)};
    text.setSelText(u"one\r\nthree"_s);
    text.setSelStart(3);
    text.setSelText(u"\r\ntwo"_s);
    QCOMPARE(text.Text(), u"one\r\ntwo\r\nthree"_s);
    QCOMPARE(text.SelStart(), 8);
    QCOMPARE(document.blockCount(), 3);
}

void tst_TextSelection::aMatchIsFoundAndSelected()
{
    SealedDocument document;
    UnshownSelection text{QTextCursor(&document)};
    text.setSelText(u"Roses\r\nare red"_s);
    QCOMPARE(findIn(text, u"RED"_s, 0, -1, 0), 11);
    QCOMPARE(text.SelText(), u"red"_s);
    QCOMPARE(findIn(text, u"roses"_s, 0, -1, TextFind::NoHighlight), 0);
    QCOMPARE(text.SelText(), u"red"_s);
    QCOMPARE(findIn(text, u"RED"_s, 0, -1, TextFind::MatchCase), -1);
}

// It is read once and kept until the text changes, whoever changes it.
void tst_TextSelection::whatIsFoundIsThatOfTheTextAsItStands()
{
    SealedDocument document;
    UnshownSelection text{QTextCursor(&document)};
    text.setSelText(u"one"_s);
    QCOMPARE(text.Text(), u"one"_s);
    QTextCursor(&document).insertText(u"two "_s);
    QCOMPARE(text.Text(), u"two one"_s);
    document.undo();
    QCOMPARE(text.Text(), u"one"_s);
    {
        const EditGroup oneStep(text);
        text.setSelText(u" two"_s);
        QCOMPARE(text.Text(), u"one two"_s);
        text.setSelText(u" three"_s);
        QCOMPARE(text.Text(), u"one two three"_s);
    }
    QCOMPARE(text.Text(), u"one two three"_s);
}

void tst_TextSelection::formatsAreOfTheSelectionAlone()
{
    SealedDocument document;
    UnshownSelection text{QTextCursor(&document)};
    text.setSelText(u"one two"_s);
    text.setSelStart(4);
    text.setSelLength(3);
    text.setSelBold(true);
    text.setSelFontSize(20);
    QCOMPARE(text.SelBold(), std::optional(true));
    text.setSelStart(0);
    text.setSelLength(7);
    QCOMPARE(text.SelBold(), std::nullopt);
    QCOMPARE(text.SelFontSize(), std::nullopt);
    text.setSelLength(3);
    QCOMPARE(text.SelBold(), std::optional(false));
}

void tst_TextSelection::aFormatAtTheCaretIsThatOfWhatIsPutInNext()
{
    SealedDocument document;
    UnshownSelection text{QTextCursor(&document)};
    text.setSelItalic(true);
    QCOMPARE(text.SelItalic(), std::optional(true));
    QVERIFY(document.isEmpty());
    text.setSelText(u"leaning"_s);
    text.setSelStart(0);
    text.setSelLength(7);
    QCOMPARE(text.SelItalic(), std::optional(true));
}

QTEST_MAIN(tst_TextSelection)
#include "tst_TextSelection.moc"
