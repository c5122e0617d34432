// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "window/WindowFixture.h"

#include "support/NativeBytes.h"
#include "support/Obstacles.h"

#include "document/modDoc.h"
#include "document/modFile.h"
#include "window/NoticeBar.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

// What a document's window says and offers when another program changes the file, as a user meets it.
class tst_FileChanges : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void aChangeIsShownAsSoonAsItHappens_data();
    void aChangeIsShownAsSoonAsItHappens();
    void aTouchShowsNothing();
    void ownSavesShowNothing();
    void theirsIsTakenAndUndone();
    void theirsIsOfferedWithoutOwnChangesOnly();
    void mineIsKept();
    void theirsIsOpenedBeside();
    void theButtonsAnswerToTheirKeys();
    void aLabelBeingEditedGoesOn();
    void aRemovedFileIsWrittenAgainFromTheBar();
    void eachWindowTellsOfItsOwnFile();
    void aFileInAFolderThatTakesNoNewFilesIsSavedAsAsked();

private:
    frmDocument &form() const { return m_fixture->form(); }

    Document &document() const { return form().document(); }

    QString path(const QString &name) const { return (*m_folder)(name); }

    void open(const QString &name)
    {
        m_folder->write(name, nativeBytes(mine));
        modDoc::DocLoad(path(name));
    }

    void change(const QString &name) const { m_folder->write(name, nativeBytes(theirs)); }

    static QPushButton *button(const frmDocument &where, const char *name)
    {
        return where.noticeBar->findChild<QPushButton *>(QLatin1StringView(name));
    }

    static bool isShown(const frmDocument &where, const char *name)
    {
        const QPushButton *found = button(where, name);
        return found && found->isVisible();
    }

    void click(const char *name) const { QTest::mouseClick(button(form(), name), Qt::LeftButton); }

    const QStringList mine = {u"Root <"_s, u" First"_s, u" Second"_s};
    const QStringList theirs = {u"Root <"_s, u" Second"_s, u" Third"_s};
    std::unique_ptr<WindowFixture> m_fixture;
    std::unique_ptr<TestFolder> m_folder;
};

void tst_FileChanges::init()
{
    m_folder = std::make_unique<TestFolder>();
    m_fixture = std::make_unique<WindowFixture>();
    QVERIFY(QTest::qWaitForWindowActive(&m_fixture->main));
    open(u"a.qly"_s);
    form().treeView->setFocus();
}

void tst_FileChanges::cleanup()
{
    QVERIFY(m_fixture->fakes.dialogs.answers.empty());
    m_fixture.reset();
    m_folder.reset();
}

void tst_FileChanges::aChangeIsShownAsSoonAsItHappens_data()
{
    QTest::addColumn<QString>("how");
    QTest::newRow("written") << u"write"_s;
    QTest::newRow("replaced") << u"replace"_s;
    QTest::newRow("removed and written") << u"remove"_s;
}

void tst_FileChanges::aChangeIsShownAsSoonAsItHappens()
{
    QFETCH(const QString, how);
    // Once again after each: a watch must not stay with the file that was replaced.
    for (int round = 0; round < 3; ++round) {
        const QByteArray bytes = nativeBytes({u"Round %1"_s.arg(round)});
        if (how == u"replace"_s) {
            m_folder->write(u"new"_s, bytes);
            QCOMPARE(std::rename(qPrintable(path(u"new"_s)), qPrintable(path(u"a.qly"_s))), 0);
        } else if (how == u"remove"_s) {
            m_folder->write(u"a.qly"_s, bytes);
        } else {
            QFile file(path(u"a.qly"_s));
            QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
            file.write(bytes);
        }
        QTRY_VERIFY(isShown(form(), "cmdTakeTheirs"));
        QVERIFY(form().treeView->hasFocus());
        QVERIFY(form().noticeBar->findChild<NoticeRow *>()->accessibleName().contains(path(u"a.qly"_s)));
        click("cmdTakeTheirs");
        QVERIFY(!form().noticeBar->isVisible());
        QCOMPARE(document().tree.root()->label(), u"Round %1"_s.arg(round));
    }
}

void tst_FileChanges::aTouchShowsNothing()
{
    QVERIFY(utimensat(AT_FDCWD, qPrintable(path(u"a.qly"_s)), nullptr, 0) == 0);
    open(u"b.qly"_s);
    change(u"b.qly"_s);
    // What came later has been told of by then.
    QTRY_VERIFY(isShown(form(), "cmdTakeTheirs"));
    QVERIFY(m_fixture->documents().front()->notices().empty());
}

void tst_FileChanges::ownSavesShowNothing()
{
    for (int round = 0; round < 2; ++round) {
        document().history.setLabel(document().tree.root(), u"Round %1"_s.arg(round));
        QVERIFY(modFile::FileSave());
        frmDocument &saved = form();
        open(u"b.qly"_s);
        change(u"b.qly"_s);
        QTRY_VERIFY(isShown(form(), "cmdTakeTheirs"));
        QVERIFY(saved.document().notices().empty());
        form().close();
    }
    QVERIFY(m_fixture->fakes.dialogs.questions.isEmpty());
}

void tst_FileChanges::theirsIsTakenAndUndone()
{
    change(u"a.qly"_s);
    QTRY_VERIFY(isShown(form(), "cmdTakeTheirs"));
    click("cmdTakeTheirs");
    QCOMPARE(document().tree.root()->child(1)->label(), u"Third"_s);
    QVERIFY(!document().hasUnsavedChanges());
    QVERIFY(!form().noticeBar->isVisible());
    QVERIFY(form().treeView->hasFocus());
    QVERIFY(document().history.undo());
    QCOMPARE(document().tree.root()->child(0)->label(), u"First"_s);
    QVERIFY(document().hasUnsavedChanges());
}

void tst_FileChanges::theirsIsOfferedWithoutOwnChangesOnly()
{
    change(u"a.qly"_s);
    QTRY_VERIFY(isShown(form(), "cmdTakeTheirs"));
    QVERIFY(button(form(), "cmdTakeTheirs")->isEnabled());
    form().textBox->setFocus();
    QTest::keyClicks(form().textBox, u"words"_s);
    QVERIFY(!button(form(), "cmdTakeTheirs")->isEnabled());
    QVERIFY(!button(form(), "cmdTakeTheirs")->toolTip().isEmpty());
    QVERIFY(button(form(), "cmdKeepMine")->isEnabled());
    QVERIFY(document().history.undo());
    QVERIFY(button(form(), "cmdTakeTheirs")->isEnabled());
}

void tst_FileChanges::mineIsKept()
{
    change(u"a.qly"_s);
    QTRY_VERIFY(isShown(form(), "cmdKeepMine"));
    click("cmdKeepMine");
    QVERIFY(!form().noticeBar->isVisible());
    QVERIFY(modFile::FileSave());
    QVERIFY(m_fixture->fakes.dialogs.questions.isEmpty());
    QCOMPARE(m_folder->read(u"a.qly"_s), nativeBytes(document().outline()));
}

void tst_FileChanges::theirsIsOpenedBeside()
{
    change(u"a.qly"_s);
    QTRY_VERIFY(isShown(form(), "cmdOpenTheirs"));
    const Document &first = document();
    click("cmdOpenTheirs");
    QVERIFY(&document() != &first);
    QCOMPARE(document().tree.root()->child(1)->label(), u"Third"_s);
    QVERIFY(document().m_sFile.isEmpty());
    QVERIFY(first.hasNotice(NoticeKind::FileChanged));
}

void tst_FileChanges::theButtonsAnswerToTheirKeys()
{
    change(u"a.qly"_s);
    QTRY_VERIFY(isShown(form(), "cmdTakeTheirs"));
    QTest::keyClick(form().treeView, Qt::Key_M, Qt::AltModifier);
    QTRY_VERIFY(document().notices().empty());
    // What was kept is unsaved until then, and theirs cannot be taken in its place.
    QVERIFY(modFile::FileSave());
    m_folder->write(u"a.qly"_s, nativeBytes({u"Later"_s}));
    QTRY_VERIFY(isShown(form(), "cmdTakeTheirs"));
    form().noticeBar->enter();
    QVERIFY(button(form(), "cmdTakeTheirs")->hasFocus());
    QTest::keyClick(button(form(), "cmdTakeTheirs"), Qt::Key_Return);
    QCOMPARE(document().tree.root()->label(), u"Later"_s);
    QVERIFY(form().treeView->hasFocus());
}

// The bar comes while the label is being typed, and pressing a button of it ends that as any command does.
void tst_FileChanges::aLabelBeingEditedGoesOn()
{
    form().treeView->StartLabelEdit();
    auto *editor = form().treeView->findChild<QLineEdit *>();
    QVERIFY(editor && editor->hasFocus());
    QTest::keyClicks(editor, u"Mine"_s);
    change(u"a.qly"_s);
    QTRY_VERIFY(isShown(form(), "cmdTakeTheirs"));
    QVERIFY(editor->hasFocus());
    QTest::keyClicks(editor, u" too"_s);
    QCOMPARE(editor->text(), u"Mine too"_s);
    click("cmdTakeTheirs");
    QCOMPARE(document().tree.root()->label(), u"Mine too"_s);
    QVERIFY(document().hasNotice(NoticeKind::FileChanged));
    QVERIFY(!button(form(), "cmdTakeTheirs")->isEnabled());
}

void tst_FileChanges::aRemovedFileIsWrittenAgainFromTheBar()
{
    QVERIFY(QFile::remove(path(u"a.qly"_s)));
    QTRY_VERIFY(isShown(form(), "cmdSaveAgain"));
    QVERIFY(document().hasUnsavedChanges());
    click("cmdSaveAgain");
    QVERIFY(!form().noticeBar->isVisible());
    QCOMPARE(m_folder->read(u"a.qly"_s), nativeBytes(document().outline()));
    QVERIFY(!document().hasUnsavedChanges());
}

void tst_FileChanges::eachWindowTellsOfItsOwnFile()
{
    frmDocument &first = form();
    open(u"b.qly"_s);
    frmDocument &second = form();
    change(u"a.qly"_s);
    QTRY_VERIFY(isShown(first, "cmdTakeTheirs"));
    QVERIFY(!second.noticeBar->isVisible());
    QVERIFY(QFile::remove(path(u"b.qly"_s)));
    QTRY_VERIFY(isShown(second, "cmdSaveAgain"));
    // A button of a window that is not the active one is of its own document.
    QTest::mouseClick(button(first, "cmdTakeTheirs"), Qt::LeftButton);
    QCOMPARE(&form(), &first);
    QCOMPARE(first.document().tree.root()->child(1)->label(), u"Third"_s);
    QCOMPARE(second.document().tree.root()->child(1)->label(), u"Second"_s);
}

void tst_FileChanges::aFileInAFolderThatTakesNoNewFilesIsSavedAsAsked()
{
    const TestFolder state;
    qputenv("XDG_STATE_HOME", QFile::encodeName(state.path()));
    QFile file(path(u"a.qly"_s));
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(nativeBytes(theirs));
    file.close();
    m_folder->setMode(QString(), 0555);
    const OrdinaryUser user;
    QTRY_VERIFY(isShown(form(), "cmdKeepMine"));
    document().history.setLabel(document().tree.root(), u"Mine"_s);
    // First whether their work may go, then how.
    m_fixture->fakes.dialogs.answers = {Answer::Yes, Answer::Yes};
    QVERIFY(modFile::FileSave());
    QVERIFY(m_fixture->fakes.dialogs.questions.front().contains(u"has changed on the disk"_s));
    QVERIFY(m_fixture->fakes.dialogs.questions.back().contains(u"takes no new files"_s));
    QCOMPARE(m_folder->read(u"a.qly"_s), nativeBytes(document().outline()));
    QVERIFY(!document().hasNotice(NoticeKind::FileChanged));
    // It is the document's own now, and is saved with the one question only.
    m_fixture->fakes.dialogs.answers = {Answer::Yes};
    QVERIFY(modFile::FileSave());
}

QTEST_MAIN(tst_FileChanges)
#include "tst_FileChanges.moc"
