// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/RecoveryList.h"

#include "document/modDoc.h"
#include "support/FakePorts.h"
#include "vault/RecoveryFixture.h"

#include <QFileInfo>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

class tst_RecoveryList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void nothingIsShownWhereNothingWasLeft();
    void eachDocumentIsNamedWithWhatIsKeptOfIt();
    void whatIsUnsavedWithoutChangesIsSaidToBeWhatItIs();
    void aLongNameLeavesTheOthersInSight();
    void manyAreNotAllNamedWhenTheyAreDiscarded();
    void allAreRecoveredByReturn();
    void whatIsLookedAtStaysInTheList();
    void whatIsLookedAtTwiceHasOneWindow();
    void noLookStaysBehindWhatWasRecovered();
    void aLookAtWhatWasDiscardedSaysSo();
    void discardingAsksFirst();
    void laterLeavesAllForTheNextStart();
    void whatCannotBeReadCanOnlyBeDiscarded();

private:
    // Two documents with unsaved changes, one of which never had a file, as a program that was ended leaves them.
    void leaveTwo() { leave({m_folder->filePath(u"notes.qly"_s), QString()}); }

    void leave(const QStringList &files);
    QPointer<RecoveryList> offer();

    static QPushButton *button(const RecoveryList &list, const QString &name)
    {
        return list.findChild<QPushButton *>(name);
    }

    static QTreeWidget *rows(const RecoveryList &list) { return list.findChild<QTreeWidget *>(u"lstRecovery"_s); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<FakePorts> m_ports;
    std::unique_ptr<Vault> m_vault;
};

void tst_RecoveryList::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_ports = std::make_unique<FakePorts>();
    m_vault = std::make_unique<Vault>(Vault::Settings{m_folder->filePath(u"recovery"_s), {}, false});
}

void tst_RecoveryList::cleanup()
{
    m_ports->windows.open.clear();
    m_vault.reset();
    m_ports.reset();
}

void tst_RecoveryList::leave(const QStringList &files)
{
    Vault gone({m_vault->folder(), {}, false});
    std::vector<std::unique_ptr<Document>> documents;
    for (const QString &file : files) {
        auto outline = std::make_unique<Outline>();
        Entry *root = outline->tree.insert(Relationship::tvwFirst, nullptr);
        documents.push_back(std::make_unique<Document>(std::move(outline)));
        Document &document = *documents.back();
        document.m_sFile = file;
        document.setCaption(file.isEmpty() ? u"Document 2"_s : file);
        gone.attach(document);
        document.history.setLabel(root, u"unsaved"_s);
    }
    gone.endSession();
    for (const auto &document : documents)
        document->history.setWitness(nullptr);
}

QPointer<RecoveryList> tst_RecoveryList::offer()
{
    return RecoveryList::offer(*m_vault, nullptr);
}

void tst_RecoveryList::nothingIsShownWhereNothingWasLeft()
{
    QVERIFY(!offer());
}

void tst_RecoveryList::eachDocumentIsNamedWithWhatIsKeptOfIt()
{
    leaveTwo();
    const QPointer<RecoveryList> list = offer();
    QVERIFY(list);
    QVERIFY(!rows(*list)->accessibleName().isEmpty());
    QCOMPARE(rows(*list)->topLevelItemCount(), 2);
    QStringList found;
    for (int row = 0; row < 2; ++row) {
        const QTreeWidgetItem *item = rows(*list)->topLevelItem(row);
        QVERIFY(item->isSelected());
        found.append(item->text(0) + u": "_s + item->text(1) + u", "_s + item->text(3) + u", "_s + item->text(4));
    }
    found.sort();
    QCOMPARE(found, (QStringList{u"Document 2: 1 change, never saved, "_s,
                                 u"notes.qly: 1 change, no longer there, %1"_s.arg(m_folder->path())}));
    list->close();
}

// All that was changed was undone when the file went; and one was recovered beside its file and never saved since.
void tst_RecoveryList::whatIsUnsavedWithoutChangesIsSaidToBeWhatItIs()
{
    Vault gone({m_vault->folder(), {}, false});
    std::vector<std::unique_ptr<Document>> documents;
    for (const bool isBeside : {false, true}) {
        auto outline = std::make_unique<Outline>();
        Entry *root = outline->tree.insert(Relationship::tvwFirst, nullptr);
        documents.push_back(std::make_unique<Document>(std::move(outline)));
        Document &document = *documents.back();
        const QString file = m_folder->filePath(isBeside ? u"beside.qly"_s : u"gone.qly"_s);
        (isBeside ? document.m_sRecoveredFrom : document.m_sFile) = file;
        document.setCaption(u"Document 3"_s);
        gone.attach(document);
        document.history.setLabel(root, u"changed"_s);
        if (!isBeside) {
            document.history.undo();
            document.history.forgetSaved();
        }
    }
    gone.endSession();
    for (const auto &document : documents)
        document->history.setWitness(nullptr);
    const QPointer<RecoveryList> list = offer();
    QVERIFY(list);
    QStringList found;
    for (int row = 0; row < rows(*list)->topLevelItemCount(); ++row) {
        const QTreeWidgetItem *item = rows(*list)->topLevelItem(row);
        found.append(item->text(0) + u": "_s + item->text(1) + u", "_s + item->text(3) + u", "_s + item->text(4));
    }
    found.sort();
    QCOMPARE(found, (QStringList{u"beside.qly: 1 change, recovered before, not saved, %1"_s.arg(m_folder->path()),
                                 u"gone.qly: its file is gone, no longer there, %1"_s.arg(m_folder->path())}));
    list->close();
}

void tst_RecoveryList::aLongNameLeavesTheOthersInSight()
{
    const QString name = QString(240, u'w') + u".the end.qly"_s;
    leave({m_folder->filePath(name)});
    const QPointer<RecoveryList> list = offer();
    const QTreeWidgetItem *item = rows(*list)->topLevelItem(0);
    const int last = 4;
    for (int column = 0; column <= last; ++column) {
        const QRect cell = rows(*list)->visualRect(rows(*list)->model()->index(0, column));
        QVERIFY2(rows(*list)->viewport()->rect().contains(cell), qPrintable(QString::number(column)));
    }
    QVERIFY(rows(*list)->columnWidth(last) > list->fontMetrics().averageCharWidth() * 20);
    QCOMPARE(rows(*list)->textElideMode(), Qt::ElideMiddle);
    QCOMPARE(item->toolTip(0), m_folder->filePath(name));
    QCOMPARE(item->toolTip(last), item->text(last));
    QVERIFY(item->data(0, Qt::AccessibleTextRole).toString().contains(name));
    list->close();
}

void tst_RecoveryList::manyAreNotAllNamedWhenTheyAreDiscarded()
{
    QStringList files;
    for (int file = 1; file <= 8; ++file)
        files.append(m_folder->filePath(u"notes %1.qly"_s.arg(file)));
    leave(files);
    const QPointer<RecoveryList> list = offer();
    m_ports->dialogs.answers = {Answer::No};
    QTest::mouseClick(button(*list, u"cmdDiscard"_s), Qt::LeftButton);
    const QString question = m_ports->dialogs.plainQuestions.value(0);
    QCOMPARE(question.count(u".qly\""_s), 5);
    QVERIFY2(question.contains(u" and 3 more? They"_s), qPrintable(question));
    list->close();
}

void tst_RecoveryList::allAreRecoveredByReturn()
{
    leaveTwo();
    const QPointer<RecoveryList> list = offer();
    QTest::keyClick(rows(*list), Qt::Key_Return);
    QCOMPARE(m_ports->windows.open.size(), size_t(2));
    for (const auto &open : m_ports->windows.open)
        QCOMPARE(open->document.tree.root()->label(), u"unsaved"_s);
    QTRY_VERIFY(!list);
    QVERIFY(!offer());
}

void tst_RecoveryList::whatIsLookedAtStaysInTheList()
{
    leaveTwo();
    const QPointer<RecoveryList> list = offer();
    list->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(list));
    // One by the mouse, and the other by its letter.
    const QTreeWidgetItem *first = rows(*list)->topLevelItem(0);
    QTest::mouseClick(rows(*list)->viewport(), Qt::LeftButton, {}, rows(*list)->visualItemRect(first).center());
    QTest::mouseClick(button(*list, u"cmdLook"_s), Qt::LeftButton);
    QCOMPARE(m_ports->windows.open.size(), size_t(1));
    QTest::keyClick(rows(*list), Qt::Key_Down);
    QTest::keyClick(list, Qt::Key_O, Qt::AltModifier);
    QTRY_COMPARE(m_ports->windows.open.size(), size_t(2));
    for (const auto &open : m_ports->windows.open) {
        QCOMPARE(open->document.tree.root()->label(), u"unsaved"_s);
        QVERIFY(open->document.caption().endsWith(u"(left behind, read-only)"_s));
        QVERIFY(open->text.locked && !open->document.hasUnsavedChanges());
    }
    QCOMPARE(rows(*list)->topLevelItemCount(), 2);
    list->close();
}

void tst_RecoveryList::whatIsLookedAtTwiceHasOneWindow()
{
    leaveTwo();
    const QPointer<RecoveryList> list = offer();
    QTest::mouseClick(button(*list, u"cmdLook"_s), Qt::LeftButton);
    QTest::mouseClick(button(*list, u"cmdLook"_s), Qt::LeftButton);
    QCOMPARE(m_ports->windows.open.size(), size_t(2));
    // One that was closed is opened again.
    m_ports->windows.open.front()->window.close();
    QTest::mouseClick(button(*list, u"cmdLook"_s), Qt::LeftButton);
    QCOMPARE(m_ports->windows.open.size(), size_t(2));
    list->close();
}

void tst_RecoveryList::noLookStaysBehindWhatWasRecovered()
{
    leaveTwo();
    const QPointer<RecoveryList> list = offer();
    QTest::mouseClick(button(*list, u"cmdLook"_s), Qt::LeftButton);
    QCOMPARE(m_ports->windows.open.size(), size_t(2));
    QVERIFY(m_ports->windows.open.front()->document.bReadOnly());
    // Saved as a file it is a document of its own.
    Document &kept = m_ports->windows.open.front()->document;
    QCOMPARE(modDoc::save(kept, m_folder->filePath(u"kept.qly"_s)), SaveOutcome::Saved);
    QTest::mouseClick(button(*list, u"cmdRecover"_s), Qt::LeftButton);
    QStringList captions;
    for (const auto &open : m_ports->windows.open)
        captions.append(QFileInfo(open->document.caption()).fileName());
    QCOMPARE(captions.size(), 3);
    QCOMPARE(captions.front(), u"kept.qly"_s);
    QCOMPARE(captions.filter(u"left behind"_s), QStringList());
}

void tst_RecoveryList::aLookAtWhatWasDiscardedSaysSo()
{
    leaveTwo();
    const QPointer<RecoveryList> list = offer();
    QTest::mouseClick(button(*list, u"cmdLook"_s), Qt::LeftButton);
    m_ports->dialogs.answers = {Answer::Yes};
    QTest::mouseClick(button(*list, u"cmdDiscard"_s), Qt::LeftButton);
    QCOMPARE(m_ports->windows.open.size(), size_t(2));
    for (const auto &open : m_ports->windows.open)
        QVERIFY2(open->document.caption().endsWith(u"(discarded, read-only)"_s), qPrintable(open->document.caption()));
}

void tst_RecoveryList::discardingAsksFirst()
{
    leaveTwo();
    const QPointer<RecoveryList> list = offer();
    m_ports->dialogs.answers = {Answer::No, Answer::Yes};
    QTest::mouseClick(button(*list, u"cmdDiscard"_s), Qt::LeftButton);
    QVERIFY(m_ports->dialogs.plainQuestions.front().contains(u"\"notes.qly\""_s));
    // Whoever presses Return once too often loses nothing.
    QCOMPARE(m_ports->dialogs.presets.front(), Answer::No);
    QCOMPARE(rows(*list)->topLevelItemCount(), 2);
    QTest::mouseClick(button(*list, u"cmdDiscard"_s), Qt::LeftButton);
    QTRY_VERIFY(!list);
    QVERIFY(QDir(m_vault->folder()).isEmpty());
}

void tst_RecoveryList::laterLeavesAllForTheNextStart()
{
    leaveTwo();
    QPointer<RecoveryList> list = offer();
    QTest::keyClick(list, Qt::Key_Escape);
    QTRY_VERIFY(!list || !list->isVisible());
    delete list;
    list = offer();
    QVERIFY(list);
    QCOMPARE(rows(*list)->topLevelItemCount(), 2);
    delete list;
}

void tst_RecoveryList::whatCannotBeReadCanOnlyBeDiscarded()
{
    QDir().mkpath(m_vault->folder());
    QFile file(m_vault->folder() + u"/broken.recovery"_s);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(10000, 'x'));
    file.close();
    const QPointer<RecoveryList> list = offer();
    QVERIFY(list);
    QVERIFY(!button(*list, u"cmdRecover"_s)->isEnabled());
    QVERIFY(!button(*list, u"cmdLook"_s)->isEnabled());
    QVERIFY(button(*list, u"cmdDiscard"_s)->isEnabled());
    list->close();
}

QTEST_MAIN(tst_RecoveryList)
#include "tst_RecoveryList.moc"
