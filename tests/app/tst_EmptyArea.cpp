// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/EmptyArea.h"
#include "app/MainFixture.h"
#include "document/modDoc.h"
#include "platform/RichTextBox.h"
#include "platform/TreeView.h"
#include "window/frmDocument.h"

#include <QAccessible>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QTest>
#include <QWindow>

using namespace Qt::StringLiterals;

// What the running main window shows while it has no document, and the first document's window.
class tst_EmptyArea : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void init() { m_main = std::make_unique<MainFixture>(); }

    void cleanup() { m_main.reset(); }

    void itShowsWhileThereIsNoDocument();
    void itDoesNotShowWhereTheStartOpensADocument();
    void aPressRunsTheMenuItem();
    void itsLinesArePressedByKeyboard();
    void recentFilesOpenByAClick();
    void aRecentFileThatHasGoneLeavesTheList();
    void everyLineTellsItsNameAndKey();
    void itIsCutRatherThanTheWindowEnlarged();
    void theTourIsADocumentWithoutAFile();
    void whatIsTypedIntoATextFileIsSavedWithoutAQuestion();
    void theFirstDocumentFillsTheAreaWhenTheLastOneDid();
    void anUntouchedStoreOpensDocumentsAsBefore();
    void theMainWindowStartsMaximisedWhenItEndedSo();

private:
    void start() const
    {
        m_main->start();
        m_main->main.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&m_main->main));
    }

    EmptyArea *area() const { return m_main->main.findChild<EmptyArea *>(); }

    QPushButton *row(const QString &item) const { return area()->findChild<QPushButton *>(u"offer_"_s + item); }

    QMdiSubWindow *subWindow() const { return m_main->main.findChild<QMdiArea *>()->currentSubWindow(); }

    void set(const char *section, const char *key, const QString &value) const
    {
        m_main->app.settings.values[{QString::fromLatin1(section), QString::fromLatin1(key)}] = value;
    }

    std::unique_ptr<MainFixture> m_main;
};

void tst_EmptyArea::itShowsWhileThereIsNoDocument()
{
    start();
    QVERIFY(area()->isVisible());
    m_main->choose("mnuFileNew");
    QVERIFY(!area()->isVisible());
    DocumentActive()->history.markSaved();
    m_main->choose("mnuFileNew");
    DocumentActive()->history.markSaved();
    m_main->choose("mnuFileClose");
    QVERIFY(!area()->isVisible());
    m_main->choose("mnuFileClose");
    QVERIFY(area()->isVisible());
}

void tst_EmptyArea::itDoesNotShowWhereTheStartOpensADocument()
{
    appPorts().commandLine = m_main->app.makeFile(u"a.txt"_s, "label");
    start();
    QVERIFY(!area()->isVisible());
}

void tst_EmptyArea::aPressRunsTheMenuItem()
{
    start();
    QTest::mouseClick(row(u"mnuFileNew"_s), Qt::LeftButton);
    QCOMPARE(m_main->main.windows().documents().size(), 1U);
    QVERIFY(!area()->isVisible());
    QVERIFY(m_main->main.findChild<QMdiArea *>()->isVisible());
}

void tst_EmptyArea::itsLinesArePressedByKeyboard()
{
    start();
    m_main->app.core.dialogs.openNames = {std::nullopt};
    QCOMPARE(QApplication::focusWidget(), row(u"mnuFileNew"_s));
    QTest::keyClick(m_main->main.windowHandle(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), row(u"mnuFileOpen"_s));
    QTest::keyClick(m_main->main.windowHandle(), Qt::Key_Up);
    QTest::keyClick(m_main->main.windowHandle(), Qt::Key_Down);
    QCOMPARE(QApplication::focusWidget(), row(u"mnuFileOpen"_s));
    QTest::keyClick(m_main->main.windowHandle(), Qt::Key_Return);
    QCOMPARE(m_main->app.core.dialogs.openRequests.size(), 1U);
    QTest::keyClick(m_main->main.windowHandle(), Qt::Key_Up);
    QTest::keyClick(m_main->main.windowHandle(), Qt::Key_Space);
    QCOMPARE(m_main->main.windows().documents().size(), 1U);
}

void tst_EmptyArea::recentFilesOpenByAClick()
{
    const QString first = m_main->app.makeFile(u"a & b.txt"_s, "label");
    const QString second = m_main->app.makeFile(u"second.txt"_s, "label");
    set("MRU", "1", first);
    set("MRU", "2", second);
    start();
    QCOMPARE(row(u"mnuFileMRU1"_s)->text(), u"a & b.txt"_s);
    QTest::mouseClick(row(u"mnuFileMRU2"_s), Qt::LeftButton);
    QCOMPARE(DocumentActive()->m_sFile, second);
}

void tst_EmptyArea::aRecentFileThatHasGoneLeavesTheList()
{
    set("MRU", "1", u"/nowhere/gone.qly"_s);
    start();
    QTest::mouseClick(row(u"mnuFileMRU1"_s), Qt::LeftButton);
    QCOMPARE(m_main->app.core.dialogs.warnings.size(), 1);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!row(u"mnuFileMRU1"_s));
    QVERIFY(area()->isVisible());
}

void tst_EmptyArea::everyLineTellsItsNameAndKey()
{
    set("MRU", "1", u"/home/me/notes.qly"_s);
    start();
    const auto descriptionOf = [this](const char *item) {
        return QAccessible::queryAccessibleInterface(row(QString::fromLatin1(item)))->text(QAccessible::Description);
    };
    QCOMPARE(descriptionOf("mnuFileNew"), u"Ctrl+N"_s);
    QCOMPARE(descriptionOf("mnuFileOpen"), u"Ctrl+O"_s);
    QCOMPARE(descriptionOf("mnuHelpContents"), u"F1"_s);
    QCOMPARE(descriptionOf("mnuFileMRU1"), u"/home/me"_s);
    for (const QPushButton *each : area()->findChildren<QPushButton *>())
        QVERIFY(!each->accessibleName().isEmpty());
}

void tst_EmptyArea::itIsCutRatherThanTheWindowEnlarged()
{
    for (int number = 1; number <= 9; ++number)
        set("MRU", qPrintable(QString::number(number)), u"/home/me/%1.qly"_s.arg(number));
    start();
    QVERIFY(!row(u"mnuFileMRU6"_s));
    const int least = m_main->main.minimumSizeHint().height();
    area()->hide();
    QCOMPARE(m_main->main.minimumSizeHint().height(), least);
}

void tst_EmptyArea::theTourIsADocumentWithoutAFile()
{
    // As it lies beside an installed program.
    const QString sample = QCoreApplication::applicationDirPath() + u"/sample.qly"_s;
    QFile::remove(sample);
    QVERIFY(QFile::copy(QStringLiteral(QUILLERY_SOURCE_DIR "/resources/sample.qly"), sample));
    QVERIFY(QFile::setPermissions(sample, QFile::ReadOwner));
    for (int number = 1; number <= g_options.MaxMRUFiles; ++number)
        set("MRU", qPrintable(QString::number(number)), u"/home/me/%1.qly"_s.arg(number));
    start();
    const QStringList recent = m_main->recentFiles.list();
    QVERIFY(row(u"tour"_s)->isVisible());
    QTest::mouseClick(row(u"tour"_s), Qt::LeftButton);
    QCOMPARE(m_main->main.windows().documents().size(), 1U);
    const Document &document = *DocumentActive();
    QVERIFY(document.m_sFile.isEmpty());
    QVERIFY(!document.bReadOnly());
    QVERIFY(!document.m_bDataChanged());
    QVERIFY(m_main->enabled("mnuFileSave"));
    QCOMPARE(document.view()->window.caption(), u"A tour of outlining"_s);
    // What is only looked at takes no recent file's place.
    QCOMPARE(m_main->recentFiles.list(), recent);
    // Each of its entries can be written in, not only the one that is shown first.
    auto &form = static_cast<frmDocument &>(document.view()->window);
    for (int step = 0; step < 2; ++step) {
        form.treeView->setFocus();
        QTest::keyClick(form.treeView, Qt::Key_Down);
        form.textBox->setFocus();
        QTest::keyClicks(form.textBox, u"written "_s);
        QVERIFY(document.view()->txtRTF.Text().startsWith(u"written "_s));
    }
    QVERIFY(document.m_bDataChanged());
    DocumentActive()->giveUpChanges();
    QVERIFY(QFile::remove(sample));
}

void tst_EmptyArea::whatIsTypedIntoATextFileIsSavedWithoutAQuestion()
{
    const QString sFile = m_main->app.makeFile(u"a.txt"_s, "label");
    start();
    QVERIFY(modDoc::DocLoad(sFile));
    m_main->choose("mnuFileNew");
    DocumentActive()->view()->trvOutline.EndLabelEdit();
    m_main->app.core.dialogs.saveNames = {sFile.chopped(5) + u"b.txt"_s};
    for (const Document *document : m_main->main.windows().documents()) {
        auto &form = static_cast<frmDocument &>(document->view()->window);
        form.activate();
        form.textBox->setFocus();
        QTest::keyClicks(form.textBox, u"typed"_s);
        m_main->choose("mnuFileSave");
        QVERIFY(!document->m_bDataChanged());
    }
    QCOMPARE(m_main->app.core.dialogs.questions, QStringList());
}

void tst_EmptyArea::theFirstDocumentFillsTheAreaWhenTheLastOneDid()
{
    set("Windows", "DocumentsMaximised", u"True"_s);
    start();
    m_main->choose("mnuFileNew");
    QVERIFY(subWindow()->isMaximized());
    QVERIFY(m_main->main.states().documentsMaximised);
    DocumentActive()->history.markSaved();
    m_main->choose("mnuFileClose");
    QVERIFY(m_main->main.states().documentsMaximised);
    m_main->choose("mnuFileNew");
    QVERIFY(subWindow()->isMaximized());
    subWindow()->showNormal();
    QVERIFY(!m_main->main.states().documentsMaximised);
}

void tst_EmptyArea::anUntouchedStoreOpensDocumentsAsBefore()
{
    start();
    m_main->choose("mnuFileNew");
    QVERIFY(!subWindow()->isMaximized());
    QVERIFY(!m_main->main.isMaximized());
}

void tst_EmptyArea::theMainWindowStartsMaximisedWhenItEndedSo()
{
    set("Windows", "MainMaximised", u"True"_s);
    set("Windows", "NormalWidth", u"7500"_s);
    start();
    QVERIFY(m_main->main.isMaximized());
    m_main->main.showNormal();
    QTRY_VERIFY(!m_main->main.isMaximized());
    QTRY_COMPARE(m_main->main.place().width, 7500.F);
}

QTEST_MAIN(tst_EmptyArea)
#include "tst_EmptyArea.moc"
