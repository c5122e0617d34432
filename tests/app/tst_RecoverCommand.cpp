// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/MainFixture.h"
#include "app/RecoveryList.h"
#include "vault/Vault.h"

#include <QDir>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

// What was put off can be recovered by the menu, without another start.
class tst_RecoverCommand : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void whatWasPutOffIsShownAgain();
    void theListIsShownOnce();
    void whereNothingIsLeftThatIsSaid();

private:
    // A document with unsaved changes, as a program that was killed leaves it.
    void leaveOne();

    RecoveryList *list() const { return m_main->main.findChild<RecoveryList *>(); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<MainFixture> m_main;
    std::unique_ptr<Vault> m_vault;
};

void tst_RecoverCommand::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_main = std::make_unique<MainFixture>();
    m_vault = std::make_unique<Vault>(Vault::Settings{m_folder->filePath(u"recovery"_s), {}, false});
    appPorts().vault = m_vault.get();
    m_main->start();
    m_main->app.core.dialogs.answers.assign(20, Answer::No);
}

void tst_RecoverCommand::cleanup()
{
    appPorts().vault = nullptr;
    m_main.reset();
    m_vault.reset();
    m_folder.reset();
}

void tst_RecoverCommand::leaveOne()
{
    Vault gone({m_vault->folder(), {}, false});
    auto outline = std::make_unique<Outline>();
    Entry *root = outline->tree.insert(Relationship::tvwFirst, nullptr);
    Document document(std::move(outline));
    document.setCaption(u"Document 7"_s);
    gone.attach(document);
    document.history.setLabel(root, u"unsaved"_s);
    gone.endSession();
    document.history.setWitness(nullptr);
}

void tst_RecoverCommand::whatWasPutOffIsShownAgain()
{
    leaveOne();
    m_main->choose("mnuToolsRecover");
    QVERIFY(list());
    QTest::mouseClick(list()->findChild<QPushButton *>(u"cmdLater"_s), Qt::LeftButton);
    QTRY_VERIFY(!list());
    // What is open now is nothing that was left.
    m_main->choose("mnuFileNew");
    DocumentActive()->history.setLabel(DocumentActive()->tree.root(), u"at work"_s);
    QVERIFY(m_vault->flush());
    m_main->choose("mnuToolsRecover");
    QVERIFY(list());
    QCOMPARE(list()->findChild<QTreeWidget *>(u"lstRecovery"_s)->topLevelItemCount(), 1);
    QTest::mouseClick(list()->findChild<QPushButton *>(u"cmdRecover"_s), Qt::LeftButton);
    QCOMPARE(DocumentActive()->tree.root()->label(), u"unsaved"_s);
    QTRY_VERIFY(!list());
    for (Document *document : ports().windows->documents())
        document->giveUpChanges();
}

void tst_RecoverCommand::theListIsShownOnce()
{
    leaveOne();
    m_main->choose("mnuToolsRecover");
    const RecoveryList *shown = list();
    m_main->choose("mnuToolsRecover");
    QCOMPARE(m_main->main.findChildren<RecoveryList *>().size(), 1);
    QCOMPARE(list(), shown);
    QVERIFY(m_main->app.core.dialogs.informations.isEmpty());
}

void tst_RecoverCommand::whereNothingIsLeftThatIsSaid()
{
    m_main->choose("mnuToolsRecover");
    QVERIFY(!list());
    QCOMPARE(m_main->app.core.dialogs.informations, QStringList(u"Nothing is left to be recovered."_s));
}

QTEST_MAIN(tst_RecoverCommand)
#include "tst_RecoverCommand.moc"
