// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "support/OutlineText.h"
#include "support/RawOutline.h"
#include "window/PreviewOverlay.h"
#include "window/WindowFixture.h"
#include "window/modView.h"

#include <QApplication>
#include <QLabel>
#include <QScrollBar>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr int entries = 120;
constexpr int lines = 200;

QByteArray longText(int number)
{
    QByteArray text = "{\\rtf1\\ansi ";
    for (int line = 0; line < lines; ++line)
        text += "Text " + QByteArray::number(number) + " line " + QByteArray::number(line) + "\\par ";
    return text + "}";
}

// Where a document stands before the user's eyes.
struct Stand {
    const Entry *selected;
    QStringList outline;
    QPoint outlineScrolled;
    int textScrolled;
    int anchor;
    int caret;
    int steps;
    bool isChanged;
    bool operator==(const Stand &) const = default;
};

} // namespace

// Entries that are looked at and not gone to.
class tst_Preview : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void cleanup() { m_window.reset(); }

    void theTextLiesWhereTheOtherDid();
    void whatIsMarkedIsInSight();
    void aLabelIsMarkedAboveTheText();
    void labelsAreNoMarkup();
    void theEndLeavesTheDocumentAsItStood();
    void anEntryInAClosedBranchIsMarkedAtItsHead();
    void theSplitTakesItAlong();
    void goingOnInTheDocumentEndsIt();
    void aClickIntoTheOutlineMeansWhatIsSeenThere();
    void aChangeOfTheDocumentEndsIt();
    void aClickOnTheTextChoosesIt();
    void anEntryThatIsGoneShowsNothing();

private:
    frmDocument &form() const { return m_window->form(); }

    EntryPreview &preview() const { return *m_document->view()->window.previewPane(); }

    const Entry *entry(int number) const { return entryLabelled(m_document->tree, u"Entry %1"_s.arg(number)); }

    void show(int number, int start = 0, int length = 0, Preview::Part part = Preview::Part::Text) const
    {
        preview().show({entry(number)->id(), part, start, length});
    }

    template <typename Part>
    Part &child(const QString &name) const
    {
        return *form().findChild<Part *>(name);
    }

    Stand stand() const;

    std::unique_ptr<WindowFixture> m_window;
    Document *m_document = nullptr;
};

void tst_Preview::init()
{
    m_window = std::make_unique<WindowFixture>();
    m_document = &m_window->createDocument();
    QStringList outline{u"Root +"_s};
    for (int number = 0; number < entries; ++number)
        outline.append((number % 10 == 0 ? u" Entry %1"_s : u"  Entry %1"_s).arg(number));
    EntryTree &tree = rawOutline(*m_document).tree;
    plantOutline(tree, outline);
    for (Entry *each = tree.root(); each; each = const_cast<Entry *>(nextInOutline(each, tree.root())))
        tree.setStoredText(each, longText(each->label().section(u' ', 1).toInt()));
    for (int number = 0; number < entries; number += 20)
        tree.setExpanded(const_cast<Entry *>(entry(number)), true);
    modNodes::NodeSelectFull(*m_document, const_cast<Entry *>(entry(40)));
    m_window->main.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_window->main));
    form().treeView->setFocus();
    form().textBox->setSelStart(500);
    form().textBox->setSelLength(20);
    form().textBox->verticalScrollBar()->setValue(150);
    form().treeView->verticalScrollBar()->setValue(11);
    m_document->giveUpChanges();
}

Stand tst_Preview::stand() const
{
    const auto &text = *form().textBox;
    const auto &outline = *form().treeView;
    return {m_document->tree.selected(),
            dumpOutline(m_document->tree),
            {outline.horizontalScrollBar()->value(), outline.verticalScrollBar()->value()},
            text.verticalScrollBar()->value(),
            text.textCursor().anchor(),
            text.textCursor().position(),
            static_cast<int>(m_document->history.steps().size()),
            m_document->hasUnsavedChanges()};
}

void tst_Preview::theTextLiesWhereTheOtherDid()
{
    QVERIFY(!preview().isShown());
    show(71);
    QVERIFY(preview().isShown() && form().preview->isVisible());
    QCOMPARE(form().preview->geometry(), form().textBox->geometry());
    QVERIFY(child<RichTextBox>(u"txtPreview"_s).Text().startsWith(u"Text 71 line 0"_s));
    QCOMPARE(child<QLabel>(u"lblPreview"_s).accessibleName(), u"Preview: Root, Entry 70, Entry 71"_s);
    QVERIFY(!child<RichTextBox>(u"txtPreview"_s).textCursor().hasSelection());
    show(3);
    QVERIFY(child<RichTextBox>(u"txtPreview"_s).Text().startsWith(u"Text 3 line 0"_s));
}

void tst_Preview::whatIsMarkedIsInSight()
{
    show(71);
    const QString text = child<RichTextBox>(u"txtPreview"_s).Text();
    for (const QString &sought : {u"71 line 150"_s, u"71 line 199"_s, u"71 line 0"_s}) {
        show(71, static_cast<int>(text.indexOf(sought)), static_cast<int>(sought.size()));
        const auto &box = child<RichTextBox>(u"txtPreview"_s);
        QCOMPARE(box.SelText(), sought);
        QVERIFY(box.viewport()->rect().contains(box.cursorRect()));
        // As a mark that stands out, though the text has no keyboard.
        QCOMPARE(box.palette().color(QPalette::Inactive, QPalette::Highlight),
                 form().palette().color(QPalette::Active, QPalette::Highlight));
    }
    const QRect row = form().treeView->visualRect(m_document->tree.indexOf(entry(70)));
    QVERIFY(form().treeView->viewport()->rect().intersects(row));
}

void tst_Preview::aLabelIsMarkedAboveTheText()
{
    show(71, 6, 2, Preview::Part::Label);
    const QString head = child<QLabel>(u"lblPreview"_s).text();
    QVERIFY2(head.contains(u"Entry <span"_s) && head.contains(u">71</span>"_s), qPrintable(head));
    QVERIFY(!child<RichTextBox>(u"txtPreview"_s).textCursor().hasSelection());
}

void tst_Preview::labelsAreNoMarkup()
{
    rawOutline(*m_document).tree.setLabel(const_cast<Entry *>(entry(70)), u"<img src=x> & co"_s);
    show(71);
    const QString head = child<QLabel>(u"lblPreview"_s).text();
    QVERIFY2(head.contains(u"&lt;img src=x&gt; &amp; co"_s), qPrintable(head));
}

void tst_Preview::theEndLeavesTheDocumentAsItStood()
{
    const Stand before = stand();
    for (const int number : {0, 119, 71, 55}) {
        show(number, 40, 10);
        QVERIFY(!form().treeView->viewport()->grab().isNull());
    }
    QVERIFY(stand() != before);
    preview().end();
    QVERIFY(!preview().isShown() && !form().preview->isVisible());
    QVERIFY(stand() == before);
    QVERIFY(form().treeView->hasFocus());
    QTest::keyClick(form().treeView, Qt::Key_Down);
    QCOMPARE(m_document->tree.selected(), entry(41));
}

void tst_Preview::anEntryInAClosedBranchIsMarkedAtItsHead()
{
    QVERIFY(!entry(110)->expanded());
    const auto rowOf = [this](int number) {
        const QRect row = form().treeView->visualRect(m_document->tree.indexOf(entry(number)));
        return form().treeView->viewport()->grab(row).toImage();
    };
    form().treeView->ScrollTo(entry(110));
    const QImage before = rowOf(110);
    const QImage other = rowOf(100);
    show(115);
    QVERIFY(!entry(110)->expanded());
    QVERIFY(rowOf(110) != before);
    QCOMPARE(rowOf(100), other);
    preview().end();
    form().treeView->ScrollTo(entry(110));
    QCOMPARE(rowOf(110), before);
}

void tst_Preview::theSplitTakesItAlong()
{
    show(71);
    form().window()->resize(900, 600);
    form().parentWidget()->resize(500, 400);
    QCOMPARE(form().preview->geometry(), form().textBox->geometry());
    modView::ViewMaximiseLeft();
    QCOMPARE(form().preview->geometry(), form().textBox->geometry());
}

void tst_Preview::goingOnInTheDocumentEndsIt()
{
    form().textBox->setFocus();
    const Stand before = stand();
    QLabel elsewhere(m_window->area);
    elsewhere.setFocusPolicy(Qt::StrongFocus);
    elsewhere.show();
    elsewhere.setFocus();
    show(71);
    form().textBox->setFocus(Qt::OtherFocusReason);
    QVERIFY(!preview().isShown());
    QVERIFY(stand() == before);
}

void tst_Preview::aClickIntoTheOutlineMeansWhatIsSeenThere()
{
    show(115);
    const QPoint place = form().treeView->visualRect(m_document->tree.indexOf(entry(101))).center();
    QVERIFY(form().treeView->viewport()->rect().contains(place));
    form().textBox->setFocus();
    show(115);
    const int scrolled = form().treeView->verticalScrollBar()->value();
    QTest::mouseClick(form().treeView->viewport(), Qt::LeftButton, {}, place);
    QVERIFY(!preview().isShown());
    QCOMPARE(form().treeView->verticalScrollBar()->value(), scrolled);
    QCOMPARE(m_document->tree.selected(), entry(101));
}

void tst_Preview::aChangeOfTheDocumentEndsIt()
{
    const auto change = [this](const std::function<void()> &done) {
        show(71);
        if (!preview().isShown())
            return false;
        done();
        return !preview().isShown();
    };
    QVERIFY(change([this] { m_document->history.setLabel(const_cast<Entry *>(entry(3)), u"Other"_s); }));
    QVERIFY(change([this] { QVERIFY(m_document->history.undo()); }));
    QVERIFY(change([this] { QTest::keyClicks(form().textBox, u"typed"_s); }));
    QVERIFY(change([this] { m_document->history.remove(const_cast<Entry *>(entry(70))); }));
}

void tst_Preview::aClickOnTheTextChoosesIt()
{
    int chosen = 0;
    preview().show({entry(71)->id(), Preview::Part::Text, 0, 4, [&chosen] { ++chosen; }});
    QWidget *text = child<RichTextBox>(u"txtPreview"_s).viewport();
    QTest::mouseClick(text, Qt::RightButton, {}, {20, 20});
    QCOMPARE(chosen, 0);
    QTest::mouseClick(text, Qt::LeftButton, {}, {20, 20});
    QCOMPARE(chosen, 1);
    QTest::mouseClick(&child<QLabel>(u"lblPreview"_s), Qt::LeftButton);
    QCOMPARE(chosen, 2);
    // It can be scrolled, and nothing else: the keyboard stays where it was.
    QCOMPARE(QApplication::focusWidget(), form().treeView);
}

void tst_Preview::anEntryThatIsGoneShowsNothing()
{
    const EntryId gone = entry(71)->id();
    m_document->history.remove(const_cast<Entry *>(entry(71)));
    preview().show({gone, Preview::Part::Text, 0, 4});
    QVERIFY(!preview().isShown());
}

QTEST_MAIN(tst_Preview)
#include "tst_Preview.moc"
