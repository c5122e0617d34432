// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/MainFixture.h"
#include "document/modDoc.h"
#include "outline/modOutline.h"
#include "platform/RichTextBox.h"
#include "platform/TreeView.h"
#include "support/OutlineText.h"
#include "support/RawOutline.h"
#include "window/frmDocument.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QWindow>

using namespace Qt::StringLiterals;

// Entries made one of two, and two of one, in the real main window by their keys.
class tst_JoinAndSplit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void cleanup() { m_main.reset(); }

    void theNextEntryBecomesPartOfTheSelectedOne();
    void nothingOfALabelIsLost_data();
    void nothingOfALabelIsLost();
    void joiningIsOneStepThatIsUndoneToTheByte();
    void joiningKeepsTagsAndOpenBranches();
    void whatIsTypedStaysWithItsSteps();
    void aListOfEntriesIsJoinedInItsOrder();
    void theLastEntryAndAReadOnlyDocumentHaveNothingToJoin();
    void aDamagedTextIsNotJoined();
    void theTextFromTheCaretOnBecomesAnEntry();
    void theTextOfTheTopEntryBecomesItsFirstChild();
    void splittingIsOneStepThatIsUndoneToTheByte();
    void splittingAndJoiningGiveTheTextBack();
    void aLongFirstLineIsNotRepeatedEither();
    void aTableIsNotSplit();
    void nothingBehindTheCaretMakesNoEntry();
    void splittingBelongsToTheText();
    void anOpenLabelIsEndedBeforeEntriesAreJoined();
    void aFullDocumentIsNotSplit();

private:
    Entry *entry(const QString &label) const { return entryLabelled(DocumentActive()->tree, label); }

    void select(const QString &label) const
    {
        modNodes::NodeSelect(*DocumentActive(), entry(label));
        form().treeView->setFocus();
    }

    // The caret in the selected entry's text.
    void putCaret(int position) const
    {
        form().textBox->setFocus();
        QTextCursor caret = form().textBox->caret();
        caret.setPosition(position);
        form().textBox->setCaret(caret);
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers) const
    {
        m_main->refresh();
        QTest::keyClick(m_main->main.windowHandle(), key, modifiers);
    }

    void join() const { press(Qt::Key_J, Qt::ControlModifier); }

    void split() const { press(Qt::Key_J, Qt::ControlModifier | Qt::ShiftModifier); }

    QString textOf(const QString &label) const
    {
        const QByteArray text = DocumentActive()->tree.storedText(entry(label));
        return rtf::toPlainText(NodeTextDecompressIfRequired(text));
    }

    QString said() const { return DocumentActive()->said().value_or(QString()); }

    QByteArray bytes() const { return nativeBytes(DocumentActive()->outline()); }

    frmDocument &form() const { return static_cast<frmDocument &>(DocumentActive()->view()->window); }

    std::unique_ptr<MainFixture> m_main;
};

void tst_JoinAndSplit::init()
{
    m_main = std::make_unique<MainFixture>();
    m_main->start();
    m_main->main.resize(1000, 800);
    m_main->main.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_main->main));
    m_main->choose("mnuFileNew");
    Document &document = *DocumentActive();
    document.view()->trvOutline.EndLabelEdit();
    EntryTree &tree = rawOutline(document).tree;
    tree.remove(tree.root());
    plantOutline(tree, {u"Root +"_s, u" A +"_s, u"  A1"_s, u" B +*"_s, u"  B1"_s, u"   B11"_s, u"  B2"_s, u" C"_s});
    for (const Entry *each = tree.root(); each; each = nextInOutline(each, tree.root()))
        tree.setStoredText(tree.entry(each->id()),
                           "{\\rtf1{\\b text} of " + each->label().toLatin1() + "\\par second line}");
    modNodes::NodeSelect(document, entry(u"A"_s));
    document.history.startAnew();
    document.history.markSaved();
}

void tst_JoinAndSplit::theNextEntryBecomesPartOfTheSelectedOne()
{
    join();
    QCOMPARE(dumpOutline(DocumentActive()->tree),
             (QStringList{u"Root +"_s, u" A +*<"_s, u"  A1"_s, u"  B1"_s, u"   B11"_s, u"  B2"_s, u" C"_s}));
    QCOMPARE(textOf(u"A"_s), u"text of A\r\nsecond line\r\nB\r\ntext of B\r\nsecond line"_s);
    QCOMPARE(form().textBox->Text(), textOf(u"A"_s));
    // The caret stands where what came begins.
    QCOMPARE(form().textBox->Text().mid(form().textBox->SelStart()), u"B\r\ntext of B\r\nsecond line"_s);
    QVERIFY(form().treeView->hasFocus());
}

void tst_JoinAndSplit::nothingOfALabelIsLost_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("added");
    QTest::newRow("a label of its own") << u"Another"_s << u"Another\r\n"_s;
    QTest::newRow("that of the selected entry") << u"A"_s << QString();
    QTest::newRow("none") << QString() << QString();
    QTest::newRow("the first line of its text") << u"text of B"_s << QString();
    QTest::newRow("the beginning of that line") << u"text of"_s << u"text of\r\n"_s;
    QTest::newRow("a part of its first word") << u"t"_s << u"t\r\n"_s;
    QTest::newRow("a word from the middle") << u"of B"_s << u"of B\r\n"_s;
    QTest::newRow("more than the first line") << u"text of B and more"_s << u"text of B and more\r\n"_s;
    QTest::newRow("braces and strokes") << u"{a\\b}"_s << u"{a\\b}\r\n"_s;
}

void tst_JoinAndSplit::nothingOfALabelIsLost()
{
    QFETCH(const QString, label);
    QFETCH(const QString, added);
    DocumentActive()->history.setLabel(entry(u"B"_s), label);
    modNodes::NodeSelect(*DocumentActive(), DocumentActive()->tree.root()->child(0));
    join();
    QCOMPARE(form().textBox->Text(), u"text of A\r\nsecond line\r\n"_s + added + u"text of B\r\nsecond line"_s);
    QCOMPARE(DocumentActive()->tree.selected()->label(), u"A"_s);
}

void tst_JoinAndSplit::joiningIsOneStepThatIsUndoneToTheByte()
{
    const QByteArray before = bytes();
    join();
    const QByteArray after = bytes();
    QVERIFY(after != before);
    QCOMPARE(DocumentActive()->history.stepCount(), 1);
    QCOMPARE(DocumentActive()->history.undoName(), u"joining of \"A\""_s);
    for (int round = 0; round < 3; ++round) {
        press(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(bytes(), before);
        QVERIFY(!DocumentActive()->m_bDataChanged());
        QCOMPARE(form().textBox->Text(), u"text of A\r\nsecond line"_s);
        press(Qt::Key_Y, Qt::ControlModifier);
        QCOMPARE(bytes(), after);
    }
}

void tst_JoinAndSplit::joiningKeepsTagsAndOpenBranches()
{
    Document &document = *DocumentActive();
    document.history.remove(entry(u"A1"_s));
    document.history.setExpanded(entry(u"A"_s), false);
    join();
    QVERIFY(entry(u"A"_s)->tagged());
    QVERIFY(entry(u"A"_s)->expanded());
    // A closed branch that has entries of its own stays closed.
    QVERIFY(document.history.undo());
    document.history.insert(Relationship::tvwChild, entry(u"C"_s));
    document.history.setExpanded(entry(u"B"_s), false);
    document.history.setExpanded(entry(u"C"_s), true);
    select(u"B"_s);
    join();
    QVERIFY(!entry(u"B"_s)->expanded());
    QCOMPARE(entry(u"B"_s)->childCount(), 3);
}

void tst_JoinAndSplit::whatIsTypedStaysWithItsSteps()
{
    const QByteArray before = bytes();
    putCaret(0);
    QTest::keyClicks(form().textBox, u"typed "_s);
    join();
    QVERIFY(textOf(u"A"_s).startsWith(u"typed text of A"_s));
    QVERIFY(form().textBox->hasFocus());
    QTest::keyClicks(form().textBox, u"more "_s);
    QVERIFY(textOf(u"A"_s).contains(u"more B"_s));
    press(Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(entry(u"B"_s));
    QCOMPARE(form().textBox->Text(), u"typed text of A\r\nsecond line"_s);
    press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(bytes(), before);
}

void tst_JoinAndSplit::aListOfEntriesIsJoinedInItsOrder()
{
    Document &document = *DocumentActive();
    const QByteArray before = bytes();
    QVERIFY(!modOutline::joinEntries(document, {entry(u"A"_s)}));
    QVERIFY(modOutline::joinEntries(document, {entry(u"C"_s), entry(u"A"_s), entry(u"B2"_s)}));
    QCOMPARE(textOf(u"C"_s), u"text of C\r\nsecond line\r\nA\r\ntext of A\r\nsecond line\r\nB2\r\ntext of B2\r\nsecond "
                             "line"_s);
    QCOMPARE(dumpOutline(document.tree),
             (QStringList{u"Root +"_s, u" B +*"_s, u"  B1"_s, u"   B11"_s, u" C +<"_s, u"  A1"_s}));
    QVERIFY(document.history.undo());
    QCOMPARE(bytes(), before);
}

void tst_JoinAndSplit::theLastEntryAndAReadOnlyDocumentHaveNothingToJoin()
{
    select(u"C"_s);
    QVERIFY(!m_main->enabled("mnuToolsJoin"));
    join();
    QCOMPARE(DocumentActive()->tree.entryCount(), 8);
    select(u"Root"_s);
    QVERIFY(!m_main->enabled("mnuToolsJoin"));
    const QString file = m_main->app.makeFile(u"read.qly"_s, nativeBytes({u"Help"_s, u" X"_s, u" Y"_s}));
    QVERIFY(QFile::setPermissions(file, QFile::ReadOwner));
    QVERIFY(modDoc::DocLoad(file));
    select(u"X"_s);
    QVERIFY(!m_main->enabled("mnuToolsJoin"));
    join();
    putCaret(0);
    QVERIFY(!m_main->enabled("mnuToolsSplit"));
    split();
    // Nor by whoever asks for it elsewhere.
    modOutline::OutlineJoin();
    modOutline::OutlineSplit();
    QCOMPARE(DocumentActive()->tree.entryCount(), 3);
    QCOMPARE(DocumentActive()->history.stepCount(), 0);
}

void tst_JoinAndSplit::aDamagedTextIsNotJoined()
{
    rawOutline(*DocumentActive()).tree.setStoredText(entry(u"B"_s), "100,this is no stream");
    const QByteArray before = bytes();
    join();
    QCOMPARE(bytes(), before);
    QCOMPARE(DocumentActive()->history.stepCount(), 0);
    QCOMPARE(said(), u"These entries cannot be joined: their text could not be shown whole"_s);
}

void tst_JoinAndSplit::theTextFromTheCaretOnBecomesAnEntry()
{
    putCaret(10);
    split();
    QCOMPARE(dumpOutline(DocumentActive()->tree),
             (QStringList{u"Root +"_s, u" A +"_s, u"  A1"_s, u" second line <"_s, u" B +*"_s, u"  B1"_s, u"   B11"_s,
                          u"  B2"_s, u" C"_s}));
    QCOMPARE(textOf(u"A"_s), u"text of A"_s);
    QCOMPARE(textOf(u"second line"_s), u"second line"_s);
    // One goes on in the new text.
    QVERIFY(form().textBox->hasFocus());
    QCOMPARE(form().textBox->SelStart(), 0);
    QTest::keyClicks(form().textBox, u"the "_s);
    QCOMPARE(textOf(u"second line"_s), u"the second line"_s);
}

void tst_JoinAndSplit::theTextOfTheTopEntryBecomesItsFirstChild()
{
    select(u"Root"_s);
    putCaret(5);
    split();
    QCOMPARE(DocumentActive()->tree.root()->child(0)->label(), u"of Root"_s);
    QCOMPARE(DocumentActive()->tree.selected()->label(), u"of Root"_s);
    QCOMPARE(textOf(u"Root"_s), u"text "_s);
    QCOMPARE(textOf(u"of Root"_s), u"of Root\r\nsecond line"_s);
}

void tst_JoinAndSplit::splittingIsOneStepThatIsUndoneToTheByte()
{
    const QByteArray before = bytes();
    putCaret(2);
    split();
    const QByteArray after = bytes();
    QCOMPARE(DocumentActive()->history.stepCount(), 1);
    QCOMPARE(DocumentActive()->history.undoName(), u"splitting of \"A\""_s);
    for (int round = 0; round < 3; ++round) {
        press(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(bytes(), before);
        QVERIFY(!DocumentActive()->m_bDataChanged());
        press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(bytes(), after);
    }
}

void tst_JoinAndSplit::splittingAndJoiningGiveTheTextBack()
{
    putCaret(10);
    split();
    select(u"A"_s);
    join();
    QCOMPARE(form().textBox->Text(), u"text of A\r\nsecond line"_s);
    const QByteArray first = NodeTextDecompressIfRequired(DocumentActive()->tree.storedText(entry(u"A"_s)));
    QVERIFY(first.contains("\\b "));
    QCOMPARE(DocumentActive()->tree.entryCount(), 8);
}

void tst_JoinAndSplit::aLongFirstLineIsNotRepeatedEither()
{
    QString line;
    for (int word = 0; word < 40; ++word)
        line += u"word%1 "_s.arg(word);
    putCaret(10);
    QTest::keyClicks(form().textBox, line);
    const QString text = form().textBox->Text();
    putCaret(10);
    split();
    QVERIFY(DocumentActive()->tree.selected()->label().size() <= 80);
    select(u"A"_s);
    join();
    QCOMPARE(form().textBox->Text(), text);
}

void tst_JoinAndSplit::aTableIsNotSplit()
{
    rawOutline(*DocumentActive())
        .tree.setStoredText(entry(u"C"_s), "{\\rtf1 one\\par\\trowd\\cellx2000\\intbl cell\\cell\\row\\pard two}");
    select(u"C"_s);
    putCaret(6);
    QVERIFY(form().textBox->caret().currentTable());
    split();
    QCOMPARE(DocumentActive()->history.stepCount(), 0);
    QCOMPARE(said(), u"The caret is inside a table: put it before or behind the table to split the entry there"_s);
    QTextCursor end = form().textBox->caret();
    end.movePosition(QTextCursor::End);
    end.movePosition(QTextCursor::StartOfBlock);
    putCaret(end.position());
    split();
    QCOMPARE(textOf(u"C"_s), u"one\r\ncell\r\n"_s);
    QCOMPARE(textOf(u"two"_s), u"two"_s);
}

void tst_JoinAndSplit::nothingBehindTheCaretMakesNoEntry()
{
    form().textBox->setFocus();
    QTextCursor end = form().textBox->caret();
    end.movePosition(QTextCursor::End);
    putCaret(end.position());
    split();
    QCOMPARE(DocumentActive()->history.stepCount(), 0);
    QCOMPARE(said(), u"There is no text behind the caret to make an entry of"_s);
}

void tst_JoinAndSplit::splittingBelongsToTheText()
{
    putCaret(10);
    QVERIFY(m_main->enabled("mnuToolsSplit"));
    form().treeView->setFocus();
    QVERIFY(!m_main->enabled("mnuToolsSplit"));
    split();
    QCOMPARE(DocumentActive()->tree.entryCount(), 8);
}

void tst_JoinAndSplit::anOpenLabelIsEndedBeforeEntriesAreJoined()
{
    select(u"A"_s);
    press(Qt::Key_F2, Qt::NoModifier);
    auto *editor = qobject_cast<QLineEdit *>(QApplication::focusWidget());
    QVERIFY(editor);
    QTest::keyClicks(editor, u"Renamed"_s);
    join();
    QVERIFY(entry(u"Renamed"_s));
    QVERIFY(!entry(u"B"_s));
}

void tst_JoinAndSplit::aFullDocumentIsNotSplit()
{
    Document &document = *DocumentActive();
    EntryTree &tree = rawOutline(document).tree;
    tree.beginBulkChange();
    while (tree.entryCount() < EntryTree::maximumCount)
        tree.insert(Relationship::tvwChild, entry(u"C"_s));
    tree.endBulkChange();
    putCaret(10);
    const int steps = document.history.stepCount();
    split();
    QCOMPARE(document.history.stepCount(), steps);
    QCOMPARE(textOf(u"A"_s), u"text of A\r\nsecond line"_s);
    QVERIFY(document.hasNotice(NoticeKind::DocumentFull));
}

QTEST_MAIN(tst_JoinAndSplit)
#include "tst_JoinAndSplit.moc"
