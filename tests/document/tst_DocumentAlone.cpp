// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/modDoc.h"
#include "document/modNodes.h"
#include "model/StoredText.h"
#include "rtf/Rtf.h"
#include "support/ErrorRecorder.h"
#include "support/FakeDocument.h"
#include "support/NativeBytes.h"
#include "support/Obstacles.h"
#include "support/RawOutline.h"
#include "util/RunTimeError.h"

#include <QTest>

using namespace Qt::StringLiterals;

// A document that nobody shows, in a program that registers no port: everything but being seen works.
class tst_DocumentAlone : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void madeChangedAndSaved();
    void loadedChangedAndSaved();
    void aFontForAllItsTexts();
    void aFileThatCannotBeReadWholeIsNoDocument();
    void formattingIsNotGivenUpUnasked();
    void aViewComesAndGoes();

private:
    std::unique_ptr<ErrorRecorder> m_errors;
    std::unique_ptr<TestFolder> m_folder;
};

void tst_DocumentAlone::init()
{
    m_errors = std::make_unique<ErrorRecorder>();
    m_folder = std::make_unique<TestFolder>();
}

void tst_DocumentAlone::cleanup()
{
    QCOMPARE(m_errors->summary(), QStringList());
    m_errors.reset();
    m_folder.reset();
}

void tst_DocumentAlone::madeChangedAndSaved()
{
    Document document;
    QVERIFY(!document.view());
    Entry *root = modNodes::NodeInsert(document, Relationship::tvwFirst, nullptr);
    modNodes::NodeInitialise(document, root);
    Entry *child = modNodes::NodeInsert(document, Relationship::tvwChild, root);
    document.history.setLabel(child, u"Child"_s);
    modNodes::NodeSelectFull(document, child);
    modNodes::NodeTagOn(document, child);
    QCOMPARE(dumpOutline(document.tree), QStringList({u"New Entry +"_s, u" Child *<"_s}));
    const QString sFile = (*m_folder)(u"a.qly"_s);
    QCOMPARE(modDoc::save(document, sFile), SaveOutcome::Saved);
    QCOMPARE(m_folder->read(u"a.qly"_s), nativeBytes(document.outline()));
    QCOMPARE(document.m_sFile, sFile);
    QCOMPARE(document.caption(), sFile);
    modNodes::NodeDelete(document, child);
    QCOMPARE(dumpOutline(document.tree), QStringList(u"New Entry"_s));
}

void tst_DocumentAlone::loadedChangedAndSaved()
{
    const QByteArray bytes = nativeBytes({u"Root +"_s, u" A <"_s});
    m_folder->write(u"a.qly"_s, bytes);
    const std::unique_ptr<Document> document = modDoc::openUnshown((*m_folder)(u"a.qly"_s));
    QCOMPARE(dumpOutline(document->tree), QStringList({u"Root +"_s, u" A <"_s}));
    QCOMPARE(document->baseFont().family(), u"MS Sans Serif"_s);
    QVERIFY(!document->hasUnsavedChanges());
    modNodes::NodeDuplicate(*document, document->tree, document->tree.root()->child(0), nullptr,
                            Relationship::tvwFirst);
    QCOMPARE(modDoc::save(*document, document->m_sFile), SaveOutcome::Saved);
    QCOMPARE(m_folder->read(u"a.bak"_s), bytes);
    const std::unique_ptr<Document> again = modDoc::openUnshown((*m_folder)(u"a.qly"_s));
    QCOMPARE(dumpOutline(again->tree), dumpOutline(document->tree));
    QCOMPARE(again->tree.entryCount(), 3);
}

void tst_DocumentAlone::aFontForAllItsTexts()
{
    Document document;
    Entry *root = modNodes::NodeInsert(document, Relationship::tvwFirst, nullptr);
    rawOutline(document).tree.setStoredText(root, "words");
    clsFont font;
    font.setName(u"Courier New"_s);
    font.setSize(14 * clsFont::point);
    modNodes::NodeSetFontAll(document, root, font);
    QCOMPARE(document.baseFont().family(), u"Courier New"_s);
    QVERIFY(NodeTextDecompressIfRequired(document.tree.storedText(root)).contains("Courier New"));
}

void tst_DocumentAlone::aFileThatCannotBeReadWholeIsNoDocument()
{
    m_folder->write(u"cut.qly"_s, nativeBytes({u"Root"_s}).chopped(4));
    QVERIFY_THROWS_EXCEPTION(RunTimeError, modDoc::openUnshown((*m_folder)(u"cut.qly"_s)));
    QVERIFY_THROWS_EXCEPTION(RunTimeError, modDoc::openUnshown((*m_folder)(u"gone.qly"_s)));
}

void tst_DocumentAlone::formattingIsNotGivenUpUnasked()
{
    Document document;
    plantOutline(rawOutline(document).tree, {u"Root"_s, u" A"_s});
    QCOMPARE(modDoc::save(document, (*m_folder)(u"a.txt"_s)), SaveOutcome::Refused);
    QCOMPARE(m_folder->names(), QStringList());
}

void tst_DocumentAlone::aViewComesAndGoes()
{
    Document document;
    document.setCaption(u"Document 1"_s);
    plantOutline(rawOutline(document).tree, {u"Root"_s});
    rawOutline(document).tree.setStoredText(document.tree.root(), "words");
    FakeOutlinePane outline;
    FakeTextPane text;
    FakeDocumentWindow window;
    {
        const DocumentView view(document, outline, text, window);
        QCOMPARE(document.view(), &view);
        QCOMPARE(window.text, u"Document 1"_s);
        modNodes::NodeSelectFull(document, document.tree.root());
        QCOMPARE(text.Text(), u"words"_s);
        text.type(u"typed"_s);
        document.setBaseFont(QFont(u"Courier New"_s, 14));
        QCOMPARE(text.font.family(), u"Courier New"_s);
    }
    QVERIFY(!document.view());
    QCOMPARE(document.baseFont().family(), u"Courier New"_s);
    // What was typed is kept, and a second view begins with it.
    QCOMPARE(rtf::toPlainText(NodeTextDecompressIfRequired(document.tree.storedText(document.tree.root()))),
             u"typed"_s);
    const DocumentView view(document, outline, text, window);
    modNodes::NodeSelectFull(document, document.tree.root());
    QCOMPARE(text.Text(), u"typed"_s);
}

QTEST_MAIN(tst_DocumentAlone)
#include "tst_DocumentAlone.moc"
