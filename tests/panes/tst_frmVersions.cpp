// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "panes/frmVersions.h"

#include "app/MainFixture.h"
#include "document/DocumentView.h"
#include "document/FileWitness.h"
#include "document/UndoRedo.h"
#include "document/modDoc.h"
#include "document/modNodes.h"
#include "model/Contrast.h"
#include "platform/RichTextBox.h"
#include "support/ModalSteps.h"
#include "support/OutlineText.h"
#include "support/RawOutline.h"
#include "vault/VersionKeeper.h"
#include "window/frmDocument.h"

#include <QAccessible>
#include <QDir>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTreeView>

using namespace Qt::StringLiterals;

// The versions of documents in the running main window, with real keys and clicks.
class tst_frmVersions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void theItemNeedsADocument();
    void aDocumentWithoutAFileHasNone();
    void theVersionsAreListedTheNewestFirst();
    void whatChangedIsShownEntryByEntry();
    void theWordsThatChangedAreMarked();
    void theMarksAreReadableInEveryTheme_data();
    void theMarksAreReadableInEveryTheme();
    void aTextThatOnlyLooksDifferentIsSaidToBeThat();
    void versionsThatWereNotSavedSayWhatTheyAre();
    void allComesBackAsOneStep();
    void whatTheProgramDoesNotKnowComesBackToo();
    void whereNothingIsDifferentNothingCanBeBroughtBack();
    void bothTextsAreScrolledTogether();
    void aBranchThatIsGoneComesBackWhereItWas();
    void aBranchThatWasChangedAndMovedComesBack();
    void aTextComesBackAlone();
    void aVersionIsOpenedToBeReadOnly();
    void keysAloneBringBack();
    void aReadOnlyDocumentIsOnlyCompared();
    void twoDocumentsHaveTheirOwn();
    void everythingHasANameForAssistiveTechnology();
    void itLooksRight();

private:
    // A saved document with a root and the entries A (with A1 and A2 below it), B and C.
    Document &plant(const QString &name);
    void save(Document &document);
    // Opens the dialog by its menu item, waits until the version of a row is compared, and does something.
    void visit(int row, const std::function<void(frmVersions &)> &body);

    static QPushButton &button(const frmVersions &dialog, const char *name)
    {
        return *dialog.findChild<QPushButton *>(QString::fromLatin1(name));
    }

    static QTreeView &table(const frmVersions &dialog, const char *name)
    {
        return *dialog.findChild<QTreeView *>(QString::fromLatin1(name));
    }

    static QStringList rowsOf(const QTreeView &table);
    static void choose(const frmVersions &dialog, const QString &difference);

    static void click(QPushButton &button)
    {
        QVERIFY(button.isEnabled());
        QTest::mouseClick(&button, Qt::LeftButton);
    }

    static QString outline(const Document &document) { return dumpOutline(document.tree).join(u'|'); }

    static Entry *entryOf(const Document &document, const QString &label);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<MainFixture> m_main;
    std::unique_ptr<VersionKeeper> m_keeper;
};

void tst_frmVersions::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_main = std::make_unique<MainFixture>();
    m_keeper = std::make_unique<VersionKeeper>(m_folder->filePath(u"versions"_s));
    ports().files = m_keeper.get();
    appPorts().versions = m_keeper.get();
    m_main->start();
    m_main->main.resize(1200, 700);
    m_main->main.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_main->main));
    m_main->app.core.dialogs.answers.assign(20, Answer::No);
}

void tst_frmVersions::cleanup()
{
    ports().files = portsOfNobody().files;
    appPorts().versions = nullptr;
    m_main.reset();
    m_keeper.reset();
    m_folder.reset();
}

Document &tst_frmVersions::plant(const QString &name)
{
    modDoc::DocNew();
    Document &document = *DocumentActive();
    plantOutline(rawOutline(document).tree, {u"Root +<"_s, u" A +"_s, u"  A1"_s, u"  A2 *"_s, u" B"_s, u" C"_s});
    rawOutline(document).tree.setStoredText(entryOf(document, u"B"_s), "the first words");
    modNodes::NodeSelectFull(document, document.tree.selected());
    document.m_sFile = m_folder->filePath(name);
    save(document);
    return document;
}

void tst_frmVersions::save(Document &document)
{
    QCOMPARE(modDoc::save(document, document.m_sFile), SaveOutcome::Saved);
    document.history.markSaved();
    QTRY_VERIFY(m_keeper->isIdle());
}

Entry *tst_frmVersions::entryOf(const Document &document, const QString &label)
{
    for (Entry *entry = document.tree.root(); entry; entry = nextInOutline(entry, document.tree.root())) {
        if (entry->label() == label)
            return entry;
    }
    return nullptr;
}

void tst_frmVersions::visit(int row, const std::function<void(frmVersions &)> &body)
{
    ModalSteps steps;
    steps.next([&](QWidget *window) {
        auto *dialog = qobject_cast<frmVersions *>(window);
        QVERIFY(dialog);
        QTRY_VERIFY(m_keeper->isIdle());
        QTreeView &versions = table(*dialog, "lstVersions");
        if (row > 0) {
            QVERIFY(row < versions.model()->rowCount());
            versions.setCurrentIndex(versions.model()->index(row, 0));
        }
        QTRY_VERIFY(m_keeper->isIdle());
        body(*dialog);
        dialog->close();
    });
    m_main->choose("mnuToolsVersions");
    QVERIFY(steps.isDone());
}

QStringList tst_frmVersions::rowsOf(const QTreeView &table)
{
    QStringList rows;
    for (int row = 0; row < table.model()->rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < table.model()->columnCount(); ++column)
            cells.append(table.model()->index(row, column).data().toString());
        rows.append(cells.join(u": "_s));
    }
    return rows;
}

void tst_frmVersions::choose(const frmVersions &dialog, const QString &difference)
{
    QTreeView &differences = table(dialog, "lstDifferences");
    const auto row = static_cast<int>(rowsOf(differences).indexOf(difference));
    QVERIFY2(row >= 0, qPrintable(rowsOf(differences).join(u'|')));
    const QModelIndex index = differences.model()->index(row, 0);
    differences.scrollTo(index);
    QTest::mouseClick(differences.viewport(), Qt::LeftButton, {}, differences.visualRect(index).center());
    QCOMPARE(differences.currentIndex().row(), row);
}

void tst_frmVersions::theItemNeedsADocument()
{
    QVERIFY(!m_main->enabled("mnuToolsVersions"));
    plant(u"plan.qly"_s);
    QVERIFY(m_main->enabled("mnuToolsVersions"));
}

void tst_frmVersions::aDocumentWithoutAFileHasNone()
{
    plant(u"plan.qly"_s).m_sFile.clear();
    visit(0, [](const frmVersions &dialog) {
        QCOMPARE(rowsOf(table(dialog, "lstVersions")), QStringList());
        QVERIFY(dialog.findChild<QLabel *>(u"lblState"_s)->text().contains(u"no file"_s));
        QVERIFY(!button(dialog, "cmdAll").isEnabled() && !button(dialog, "cmdOpen").isEnabled());
    });
}

void tst_frmVersions::theVersionsAreListedTheNewestFirst()
{
    Document &document = plant(u"plan.qly"_s);
    document.history.setLabel(entryOf(document, u"C"_s), u"C of two words"_s);
    save(document);
    visit(0, [](const frmVersions &dialog) {
        const QStringList rows = rowsOf(table(dialog, "lstVersions"));
        QCOMPARE(rows.size(), 2);
        QVERIFY2(rows[0].endsWith(u": 6: 12: 1 changed"_s), qPrintable(rows[0]));
        QVERIFY2(rows[1].endsWith(u": 6: 9: 6 added"_s), qPrintable(rows[1]));
        QCOMPARE(rowsOf(table(dialog, "lstDifferences")), QStringList());
    });
}

void tst_frmVersions::whatChangedIsShownEntryByEntry()
{
    Document &document = plant(u"plan.qly"_s);
    document.history.setStoredText(entryOf(document, u"B"_s), "other words");
    document.history.remove(entryOf(document, u"A1"_s));
    document.history.setLabel(document.history.insert(Relationship::tvwNext, entryOf(document, u"C"_s)), u"D"_s);
    visit(0, [](const frmVersions &dialog) {
        QCOMPARE(rowsOf(table(dialog, "lstDifferences")),
                 (QStringList{u"A1: removed"_s, u"B: text changed"_s, u"D: added"_s}));
        choose(dialog, u"B: text changed"_s);
        QCOMPARE(dialog.findChild<QPlainTextEdit *>(u"txtThen"_s)->toPlainText(), u"the first words"_s);
        QCOMPARE(dialog.findChild<QPlainTextEdit *>(u"txtNow"_s)->toPlainText(), u"other words"_s);
        QVERIFY(button(dialog, "cmdText").isEnabled() && button(dialog, "cmdBranch").isEnabled());
        choose(dialog, u"D: added"_s);
        QVERIFY(!button(dialog, "cmdText").isEnabled() && !button(dialog, "cmdBranch").isEnabled());
        choose(dialog, u"A1: removed"_s);
        QVERIFY(!button(dialog, "cmdText").isEnabled() && button(dialog, "cmdBranch").isEnabled());
    });
}

namespace
{

// The marked stretches of a text, with what is struck out in brackets and what is underlined in braces.
QString marksOf(const frmVersions &dialog, const QString &name)
{
    const auto *text = dialog.findChild<QPlainTextEdit *>(name);
    QStringList marks;
    for (const QTextEdit::ExtraSelection &each : text->extraSelections()) {
        const QString words = each.cursor.selectedText();
        marks.append(each.format.fontStrikeOut() && !each.format.fontUnderline()   ? u'[' + words + u']'
                     : !each.format.fontStrikeOut() && each.format.fontUnderline() ? u'{' + words + u'}'
                                                                                   : u"neither"_s);
    }
    return marks.join(u' ');
}

QString captionOf(const frmVersions &dialog, const QString &name)
{
    return dialog.findChild<QLabel *>(name)->text();
}

} // namespace

void tst_frmVersions::theWordsThatChangedAreMarked()
{
    Document &document = plant(u"plan.qly"_s);
    document.history.setStoredText(entryOf(document, u"B"_s), "the few last words");
    document.history.setStoredText(entryOf(document, u"C"_s), "new");
    visit(0, [](const frmVersions &dialog) {
        choose(dialog, u"B: text changed"_s);
        QCOMPARE(marksOf(dialog, u"txtThen"_s), u"[first]"_s);
        QCOMPARE(marksOf(dialog, u"txtNow"_s), u"{few last}"_s);
        QCOMPARE(captionOf(dialog, u"lblThen"_s), u"Text t&hen (1 word gone since)"_s);
        QCOMPARE(captionOf(dialog, u"lblNow"_s), u"Text &now (2 words new)"_s);
        // Who cannot see the marks is told as much.
        QCOMPARE(dialog.findChild<QPlainTextEdit *>(u"txtNow"_s)->accessibleName(), u"Text now (2 words new)"_s);
        choose(dialog, u"C: text changed"_s);
        QCOMPARE(marksOf(dialog, u"txtThen"_s), QString());
        QCOMPARE(marksOf(dialog, u"txtNow"_s), u"{new}"_s);
        QCOMPARE(captionOf(dialog, u"lblThen"_s), u"Text t&hen"_s);
    });
}

void tst_frmVersions::theMarksAreReadableInEveryTheme_data()
{
    QTest::addColumn<QColor>("paper");
    QTest::addColumn<QColor>("ink");
    QTest::newRow("light") << QColor(Qt::white) << QColor(Qt::black);
    QTest::newRow("dark") << QColor(30, 30, 30) << QColor(220, 220, 220);
    QTest::newRow("grey on grey") << QColor(60, 60, 60) << QColor(190, 190, 190);
    QTest::newRow("green on black") << QColor(Qt::black) << QColor(0, 255, 0);
}

// The theme changes while the dialog is open, as it does in the evening.
void tst_frmVersions::theMarksAreReadableInEveryTheme()
{
    QFETCH(const QColor, paper);
    QFETCH(const QColor, ink);
    Document &document = plant(u"plan.qly"_s);
    document.history.setStoredText(entryOf(document, u"B"_s), "the last words");
    visit(0, [&](frmVersions &dialog) {
        choose(dialog, u"B: text changed"_s);
        QPalette palette = dialog.palette();
        palette.setColor(QPalette::Base, paper);
        palette.setColor(QPalette::Text, ink);
        dialog.setPalette(palette);
        for (const QString &name : {u"txtThen"_s, u"txtNow"_s}) {
            const auto *text = dialog.findChild<QPlainTextEdit *>(name);
            QTRY_COMPARE(text->extraSelections().value(0).format.foreground().color(), ink);
            const auto marks = text->extraSelections();
            QCOMPARE(marks.size(), 1);
            const QColor behind = marks.front().format.background().color();
            const QColor words = marks.front().format.foreground().color();
            QVERIFY2(Contrast::between(behind, words) >= Contrast::readable,
                     qPrintable(behind.name() + u' ' + words.name()));
            QVERIFY(behind != paper);
        }
    });
}

void tst_frmVersions::aTextThatOnlyLooksDifferentIsSaidToBeThat()
{
    Document &document = plant(u"plan.qly"_s);
    document.history.setStoredText(entryOf(document, u"B"_s), "{\\rtf1 the \\b first\\b0  words}");
    visit(0, [](const frmVersions &dialog) {
        choose(dialog, u"B: text changed"_s);
        QCOMPARE(marksOf(dialog, u"txtNow"_s), QString());
        QCOMPARE(captionOf(dialog, u"lblNow"_s), u"Text &now (the same words, formatted differently)"_s);
    });
}

void tst_frmVersions::versionsThatWereNotSavedSayWhatTheyAre()
{
    Document &document = plant(u"plan.qly"_s);
    document.history.setLabel(entryOf(document, u"C"_s), u"D"_s);
    ports().files->recovered(document, document.m_sFile, ports().clock->now());
    QTRY_VERIFY(m_keeper->isIdle());
    visit(0, [](const frmVersions &dialog) {
        const QStringList rows = rowsOf(table(dialog, "lstVersions"));
        QCOMPARE(rows.size(), 2);
        QVERIFY2(rows[0].contains(u": recovered: 6: "_s), qPrintable(rows[0]));
        QVERIFY2(rows[1].contains(u": saved: 6: "_s), qPrintable(rows[1]));
        // In full.
        const QTreeView &versions = table(dialog, "lstVersions");
        for (int column = 0; column < versions.model()->columnCount(); ++column)
            QVERIFY(versions.columnWidth(column) >=
                    versions.sizeHintForIndex(versions.model()->index(0, column)).width());
    });
}

void tst_frmVersions::allComesBackAsOneStep()
{
    Document &document = plant(u"plan.qly"_s);
    const QString before = outline(document);
    document.history.setStoredText(entryOf(document, u"B"_s), "other words");
    document.history.remove(entryOf(document, u"A"_s));
    document.history.setTagged(entryOf(document, u"C"_s), true);
    save(document);
    const QString after = outline(document);
    const int position = document.history.position();
    visit(1, [](const frmVersions &dialog) {
        click(button(dialog, "cmdAll"));
        QCOMPARE(dialog.findChild<QLabel *>(u"lblState"_s)->text(), u"The document is what this version is."_s);
    });
    QCOMPARE(outline(document), before);
    QCOMPARE(document.tree.storedText(entryOf(document, u"B"_s)), "the first words");
    QCOMPARE(document.history.position(), position + 1);
    QVERIFY(document.history.undoName().startsWith(u"bringing back of the version of "_s));
    QVERIFY(document.m_bDataChanged());
    QVERIFY(undoStep(document));
    QCOMPARE(outline(document), after);
    QVERIFY(!document.m_bDataChanged());
    QVERIFY(redoStep(document));
    QCOMPARE(outline(document), before);
}

void tst_frmVersions::whatTheProgramDoesNotKnowComesBackToo()
{
    Document &document = plant(u"plan.qly"_s);
    const ForeignRecordList head = {{1, "{\\qlf_head x}\r\n"}};
    const ForeignRecordList own = {{1, "{\\qlf_own x}\r\n"}};
    document.history.setFileForeignRecords(head, "{\\qlf_end x}\r\n");
    document.history.setForeignRecords(entryOf(document, u"A1"_s), own);
    save(document);
    document.history.setFileForeignRecords({}, {});
    document.history.setForeignRecords(entryOf(document, u"A1"_s), {});
    document.history.setLabel(entryOf(document, u"C"_s), u"D"_s);
    visit(0, [](const frmVersions &dialog) { click(button(dialog, "cmdAll")); });
    QVERIFY(document.outline().foreignHeader == head);
    QCOMPARE(document.outline().foreignTrailer, "{\\qlf_end x}\r\n");
    QVERIFY(entryOf(document, u"A1"_s)->foreignRecords() == own);
    QVERIFY(undoStep(document));
    QVERIFY(document.outline().foreignHeader.empty() && document.outline().foreignTrailer.isEmpty());
    QVERIFY(entryOf(document, u"A1"_s)->foreignRecords().empty());
}

void tst_frmVersions::whereNothingIsDifferentNothingCanBeBroughtBack()
{
    Document &document = plant(u"plan.qly"_s);
    // To open and select entries makes no other document.
    modNodes::NodeSelectFull(document, entryOf(document, u"A2"_s));
    visit(0, [](const frmVersions &dialog) {
        for (const char *name : {"cmdAll", "cmdBranch", "cmdText"})
            QVERIFY2(!button(dialog, name).isEnabled(), name);
        QVERIFY(button(dialog, "cmdOpen").isEnabled());
    });
    // A font is of no entry.
    clsFont font;
    document.m_fntTextFont.CopyTo(font);
    font.setSize(document.m_fntTextFont.Size() + 50000);
    document.history.setFonts(document.m_fntOutlineFont, font);
    visit(0, [](const frmVersions &dialog) {
        QVERIFY(dialog.findChild<QLabel *>(u"lblState"_s)->text().contains(u"only fonts"_s));
        click(button(dialog, "cmdAll"));
        QVERIFY(!button(dialog, "cmdAll").isEnabled());
    });
}

void tst_frmVersions::bothTextsAreScrolledTogether()
{
    Document &document = plant(u"plan.qly"_s);
    QStringList lines;
    for (int line = 0; line < 300; ++line)
        lines.append(u"line number %1"_s.arg(line));
    const auto store = [&](const QStringList &all) {
        document.history.setStoredText(entryOf(document, u"B"_s), all.join(u"\r\n"_s).toLatin1());
    };
    store(lines);
    save(document);
    // A long stretch that is new moves all behind it.
    QStringList others = lines;
    for (int line = 0; line < 100; ++line)
        others.insert(50, u"something new"_s);
    store(others);
    visit(0, [](const frmVersions &dialog) {
        choose(dialog, u"B: text changed"_s);
        auto &then = *dialog.findChild<QPlainTextEdit *>(u"txtThen"_s);
        auto &now = *dialog.findChild<QPlainTextEdit *>(u"txtNow"_s);
        const auto topOf = [](const QPlainTextEdit &text) {
            return text.cursorForPosition(QPoint(0, 0)).block().text();
        };
        then.verticalScrollBar()->setValue(200);
        QCOMPARE(topOf(then), u"line number 200"_s);
        QCOMPARE(topOf(now), u"line number 200"_s);
        // By the keyboard, from the other side.
        now.setFocus();
        now.verticalScrollBar()->setValue(20);
        QCOMPARE(topOf(then), u"line number 20"_s);
        QTest::keyClick(&now, Qt::Key_End, Qt::ControlModifier);
        QVERIFY(then.verticalScrollBar()->value() >= then.verticalScrollBar()->maximum() - 1);
        QTest::keyClick(&now, Qt::Key_Home, Qt::ControlModifier);
        QCOMPARE(then.verticalScrollBar()->value(), 0);
        // What is new stands beside what comes behind it.
        now.verticalScrollBar()->setValue(100);
        QCOMPARE(topOf(now), u"something new"_s);
        QCOMPARE(topOf(then), u"line number 50"_s);
    });
}

void tst_frmVersions::aBranchThatIsGoneComesBackWhereItWas()
{
    Document &document = plant(u"plan.qly"_s);
    const QString before = outline(document);
    document.history.remove(entryOf(document, u"A"_s));
    visit(0, [](const frmVersions &dialog) {
        choose(dialog, u"A: removed"_s);
        click(button(dialog, "cmdBranch"));
        QCOMPARE(rowsOf(table(dialog, "lstDifferences")), QStringList());
    });
    QCOMPARE(outline(document).remove(u'<'), QString(before).remove(u'<'));
    QCOMPARE(document.tree.selected()->label(), u"A"_s);
    QCOMPARE(document.history.undoName(), u"bringing back of the branch \"A\""_s);
    QVERIFY(undoStep(document));
    QVERIFY(!entryOf(document, u"A"_s));
}

void tst_frmVersions::aBranchThatWasChangedAndMovedComesBack()
{
    Document &document = plant(u"plan.qly"_s);
    document.history.move(entryOf(document, u"A"_s), Relationship::tvwChild, entryOf(document, u"C"_s));
    document.history.remove(entryOf(document, u"A1"_s));
    visit(0, [](const frmVersions &dialog) {
        choose(dialog, u"A: moved"_s);
        click(button(dialog, "cmdBranch"));
        QCOMPARE(rowsOf(table(dialog, "lstDifferences")), QStringList());
    });
    QCOMPARE(entryOf(document, u"A"_s)->row(), 0);
    QCOMPARE(entryOf(document, u"A"_s)->parent(), document.tree.root());
    QCOMPARE(entryOf(document, u"A"_s)->childCount(), 2);
    QVERIFY(undoStep(document));
    QCOMPARE(entryOf(document, u"A"_s)->parent()->label(), u"C"_s);
}

void tst_frmVersions::aTextComesBackAlone()
{
    Document &document = plant(u"plan.qly"_s);
    Entry *entry = entryOf(document, u"B"_s);
    modNodes::NodeSelectFull(document, entry);
    auto &form = dynamic_cast<frmDocument &>(document.view()->window);
    form.textBox->setFocus();
    QTest::keyClicks(form.textBox, u"typed "_s);
    QTRY_VERIFY(QString::fromLatin1(form.textBox->TextRTF()).contains(u"typed"_s));
    visit(0, [](const frmVersions &dialog) {
        choose(dialog, u"B: text changed"_s);
        QCOMPARE(dialog.findChild<QPlainTextEdit *>(u"txtNow"_s)->toPlainText(), u"typed the first words"_s);
        click(button(dialog, "cmdText"));
        QCOMPARE(rowsOf(table(dialog, "lstDifferences")), QStringList());
    });
    QCOMPARE(document.tree.storedText(entry), "the first words");
    QCOMPARE(form.textBox->toPlainText(), u"the first words"_s);
    QCOMPARE(document.history.undoName(), u"bringing back of the text of \"B\""_s);
    QVERIFY(undoStep(document));
    QCOMPARE(form.textBox->toPlainText(), u"typed the first words"_s);
}

void tst_frmVersions::aVersionIsOpenedToBeReadOnly()
{
    Document &document = plant(u"plan.qly"_s);
    document.history.remove(entryOf(document, u"A"_s));
    save(document);
    visit(1, [](const frmVersions &dialog) { click(button(dialog, "cmdOpen")); });
    Document &opened = *DocumentActive();
    QVERIFY(&opened != &document);
    QVERIFY(opened.m_sFile.isEmpty());
    QVERIFY(entryOf(opened, u"A2"_s)->tagged());
    QVERIFY2(opened.caption().startsWith(u"plan.qly as of "_s), qPrintable(opened.caption()));
    QVERIFY(opened.bReadOnly() && !opened.mayBeSaved() && !opened.hasUnsavedChanges());
    QVERIFY(opened.bReadOnlyAsSeen());
    QVERIFY(!m_main->enabled("mnuFileSave"));
    QVERIFY(!m_main->enabled("mnuOutlineRename"));
    auto &form = dynamic_cast<frmDocument &>(opened.view()->window);
    modNodes::NodeSelectFull(opened, entryOf(opened, u"B"_s));
    form.textBox->setFocus();
    QTest::keyClicks(form.textBox, u"x"_s);
    QCOMPARE(form.textBox->toPlainText(), u"the first words"_s);
    // Whoever saves it by habit is told.
    QTest::keyClick(form.textBox, Qt::Key_S, Qt::ControlModifier);
    QVERIFY2(opened.said().value_or(QString()).contains(u"read-only, so it was not saved"_s),
             qPrintable(opened.said().value_or(QString())));
    // Saved under a name it is a document like any other.
    QCOMPARE(modDoc::save(opened, m_folder->filePath(u"old.qly"_s)), SaveOutcome::Saved);
    QVERIFY(!opened.bReadOnly() && opened.mayBeSaved());
    QTest::keyClicks(form.textBox, u"x"_s);
    QCOMPARE(form.textBox->toPlainText(), u"xthe first words"_s);
    opened.giveUpChanges();
}

void tst_frmVersions::keysAloneBringBack()
{
    Document &document = plant(u"plan.qly"_s);
    document.history.remove(entryOf(document, u"B"_s));
    document.history.remove(entryOf(document, u"C"_s));
    save(document);
    visit(0, [this](frmVersions &dialog) {
        QTRY_COMPARE(dialog.focusWidget(), &table(dialog, "lstVersions"));
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Down);
        QTRY_VERIFY(m_keeper->isIdle());
        QTest::keyClick(&dialog, Qt::Key_D, Qt::AltModifier);
        QCOMPARE(dialog.focusWidget(), &table(dialog, "lstDifferences"));
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Down);
        QTest::keyClick(&dialog, Qt::Key_B, Qt::AltModifier);
        QTRY_COMPARE(rowsOf(table(dialog, "lstDifferences")), QStringList(u"B: removed"_s));
        QTest::keyClick(&dialog, Qt::Key_A, Qt::AltModifier);
        QTRY_COMPARE(rowsOf(table(dialog, "lstDifferences")), QStringList());
        QTest::keyClick(&dialog, Qt::Key_Escape);
        QVERIFY(!dialog.isVisible());
    });
    QCOMPARE(document.tree.entryCount(), 6);
}

void tst_frmVersions::aReadOnlyDocumentIsOnlyCompared()
{
    Document &document = plant(u"plan.qly"_s);
    document.history.setStoredText(entryOf(document, u"B"_s), "other words");
    QVERIFY(QFile::setPermissions(document.m_sFile, QFile::ReadOwner));
    visit(0, [](const frmVersions &dialog) {
        choose(dialog, u"B: text changed"_s);
        QVERIFY(button(dialog, "cmdOpen").isEnabled());
        for (const char *name : {"cmdAll", "cmdBranch", "cmdText"})
            QVERIFY(!button(dialog, name).isEnabled());
    });
    QVERIFY(QFile::setPermissions(document.m_sFile, QFile::ReadOwner | QFile::WriteOwner));
}

void tst_frmVersions::twoDocumentsHaveTheirOwn()
{
    Document &one = plant(u"one.qly"_s);
    one.history.remove(entryOf(one, u"C"_s));
    Document &other = plant(u"other.qly"_s);
    other.history.remove(entryOf(other, u"B"_s));
    visit(0, [](const frmVersions &dialog) {
        QCOMPARE(dialog.windowTitle(), u"Versions of other.qly"_s);
        QCOMPARE(rowsOf(table(dialog, "lstDifferences")), QStringList(u"B: removed"_s));
        click(button(dialog, "cmdAll"));
    });
    QVERIFY(entryOf(other, u"B"_s));
    QVERIFY(!entryOf(one, u"C"_s));
}

void tst_frmVersions::everythingHasANameForAssistiveTechnology()
{
    plant(u"plan.qly"_s);
    visit(0, [](const frmVersions &dialog) {
        for (const char *name : {"lstVersions", "lstDifferences", "txtThen", "txtNow", "cmdOpen", "cmdAll", "cmdBranch",
                                 "cmdText", "cmdClose", "lblState"}) {
            auto *widget = dialog.findChild<QWidget *>(QString::fromLatin1(name));
            QVERIFY2(widget, name);
            QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(widget);
            QVERIFY2(spoken && !spoken->text(QAccessible::Name).isEmpty(), name);
        }
    });
}

// A picture for whoever wants to look at it.
void tst_frmVersions::itLooksRight()
{
    const QString picture = qEnvironmentVariable("QUILLERY_PICTURES");
    Document &document = plant(u"plan.qly"_s);
    document.history.setStoredText(entryOf(document, u"B"_s), "other words");
    document.history.remove(entryOf(document, u"A1"_s));
    save(document);
    visit(1, [&](frmVersions &dialog) {
        choose(dialog, u"B: text changed"_s);
        for (const char *name : {"cmdOpen", "cmdAll", "cmdBranch", "cmdText", "cmdClose"}) {
            const QPushButton &each = button(dialog, name);
            QVERIFY2(each.width() >= each.minimumSizeHint().width(), name);
            QVERIFY(dialog.rect().contains(each.geometry()));
        }
        if (!picture.isEmpty())
            QVERIFY(dialog.grab().save(picture + u"/versions.png"_s));
    });
}

QTEST_MAIN(tst_frmVersions)
#include "tst_frmVersions.moc"
