// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/CommandState.h"
#include "document/modDoc.h"
#include "outline/modOutline.h"
#include "support/FakePorts.h"
#include "util/ByteSink.h"

#include <QTemporaryDir>
#include <QTest>

#include <map>
#include <set>

using namespace Qt::StringLiterals;

namespace
{

using Names = std::set<std::string>;

Names enabledBy(std::span<const EnableRule> rules, const CommandState &state)
{
    Names names;
    for (const EnableRule &rule : rules) {
        if (rule.enabled(state))
            names.insert(std::string(rule.item));
    }
    return names;
}

bool dynamicallyEnabled(std::string_view item, const CommandState &state)
{
    for (const EnableRule &rule : menuEnableDynamicRules()) {
        if (rule.item == item)
            return rule.enabled(state);
    }
    QTest::qFail("no such rule", __FILE__, __LINE__);
    return false;
}

// The first entry below the root's first child, in a document that may be written, with everything possible for it.
CommandState ordinaryEntry()
{
    CommandState state;
    state.documentCount = 1;
    state.ActiveWritable = state.ActiveSavable = state.AnyWritable = true;
    state.Selected = state.Writable = state.Savable = true;
    return state;
}

// Each condition by the letters that the table below uses.
const std::map<char, bool CommandState::*> conditions{
    {'W', &CommandState::Writable},     {'A', &CommandState::AnyWritable}, {'S', &CommandState::Selected},
    {'R', &CommandState::IsRoot},       {'H', &CommandState::HasChildren}, {'E', &CommandState::Expanded},
    {'1', &CommandState::FirstSibling}, {'9', &CommandState::LastSibling}, {'P', &CommandState::HasPrevious},
    {'Q', &CommandState::ParentIsRoot}, {'X', &CommandState::TaggedExist}, {'T', &CommandState::TextFocus},
    {'V', &CommandState::Savable},      {'C', &CommandState::Copied},      {'D', &CommandState::CanMoveDown},
    {'B', &CommandState::TextWithheld},
};

// The letters of the conditions that an item needs, and of those that forbid it.
struct ConditionRow {
    const char *item;
    const char *needed;
    const char *forbidden = "";
};

constexpr ConditionRow conditionRows[] = {
    {"mnuFileSave", "V"},
    {"mnuFileSaveAs", "S"},
    {"mnuFileSaveAll", "A"},
    {"mnuOutlineDelete", "WS", "R"},
    {"mnuOutlineInsertAbove", "W", "R"},
    {"mnuOutlineInsertBelow", "W"},
    {"mnuOutlineInsertChild", "W"},
    {"mnuOutlineSortAll", "W"},
    {"mnuOutlineTaggedEntry", "", "R"},
    {"mnuOutlinePasteTaggedEntries", "X"},
    {"mnuOutlineDeleteTaggedEntries", "X"},
    {"mnuOutlineSortCurrent", "WHS"},
    {"mnuOutlineExpand", "HS", "E"},
    {"mnuOutlineCollapse", "HES"},
    {"mnuOutlineMove", "SW", "R"},
    {"mnuOutlineIndent", "SWP", "R"},
    {"mnuOutlineUnindent", "SW", "RQ"},
    {"mnuOutlinePaste", "CWS"},
    {"mnuOutlinePasteAndDelete", "CWS"},
    {"mnuOutlineRename", "WS"},
    {"mnuOutlineMoveFirst", "SW", "R1"},
    {"mnuOutlineMoveLast", "SW", "R9"},
    {"mnuOutlineMoveDown", "D"},
    {"mnuEdit", "T"},
    {"mnuEditCopy", "T"},
    {"mnuEditSelectAll", "T"},
    {"mnuEditCase", "WT", "B"},
    {"mnuEditClearEntryText", "WT"},
    {"mnuEditCurrentFont", "WT", "B"},
    {"mnuEditCut", "WT", "B"},
    {"mnuEditDelete", "WT", "B"},
    {"mnuEditDocumentFont", "WT"},
    {"mnuEditFormat", "WT", "B"},
    {"mnuEditInsert", "WT", "B"},
    {"mnuEditPaste", "WT", "B"},
    {"mnuEditPasteSpecial", "WT", "B"},
    {"mnuSearchReplace", "W"},
};

} // namespace

class tst_CommandState : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyItemIsEnabledExactlyWhenItsConditionsHold_data();
    void everyItemIsEnabledExactlyWhenItsConditionsHold();
    void noOtherItemDependsOnTheSelection();
    void menuEnableFollowsTheOpenDocuments();
    void withNoDocumentTheOutlineMenuIsGreyedAndTheOthersWork();
    void aReadOnlyDocumentOffersNothingThatWrites();
    void theRootCannotBeMovedDeletedTaggedOrPrecededByAnEntry();
    void moveUpNeedsMoreThanTheFirstPlaceUnderTheRoot();
    void moveDownNeedsAFollowingSiblingSomewhereBelowTheRoot();
    void aTaggedEntryIsOfferedToBeUntagged();
    void checkMarksShowTheOptions();
    void theStateDescribesTheSelectedEntry();
    void withoutASelectedEntryOnlyTheDocumentsCount();
    void aCopiedEntryCanBePastedAsLongAsItExists();
    void saveAllNeedsAnyDocumentThatMayBeWritten();
    void aFileThatTurnsReadOnlyLeavesItsDocumentSavable();
};

void tst_CommandState::everyItemIsEnabledExactlyWhenItsConditionsHold_data()
{
    QTest::addColumn<QByteArray>("needed");
    QTest::addColumn<QByteArray>("forbidden");
    for (const ConditionRow &row : conditionRows)
        QTest::newRow(row.item) << QByteArray(row.needed) << QByteArray(row.forbidden);
}

// Tries every combination of the conditions, so that an item that depends on one more or one fewer is found.
void tst_CommandState::everyItemIsEnabledExactlyWhenItsConditionsHold()
{
    QFETCH(QByteArray, needed);
    QFETCH(QByteArray, forbidden);
    const std::string item = QTest::currentDataTag();
    for (unsigned combination = 0; combination < (1U << conditions.size()); ++combination) {
        CommandState state;
        bool expected = true;
        unsigned bit = 0;
        for (const auto &[letter, member] : conditions) {
            const bool on = (combination >> bit++) & 1U;
            state.*member = on;
            if (needed.contains(letter))
                expected = expected && on;
            if (forbidden.contains(letter))
                expected = expected && !on;
        }
        if (dynamicallyEnabled(item, state) != expected)
            QFAIL(qPrintable(u"wrong for the combination %1"_s.arg(combination, 0, 2)));
    }
}

void tst_CommandState::noOtherItemDependsOnTheSelection()
{
    std::set<std::string> untested;
    for (const EnableRule &rule : menuEnableDynamicRules())
        untested.insert(std::string(rule.item));
    for (const ConditionRow &row : conditionRows)
        QVERIFY2(untested.erase(row.item) == 1, row.item);
    // These have tests of their own.
    QCOMPARE(untested, (std::set<std::string>{"mnuOutlineMoveUp", "mnuoutline"}));
}

void tst_CommandState::menuEnableFollowsTheOpenDocuments()
{
    const Names always{"mnuFile",     "mnuFileNew", "mnuFileOpen", "mnuFilePrintSetup",
                       "mnuFileExit", "mnuHelp",    "mnuView",     "mnuWindow"};
    CommandState state;
    state.ActiveWritable = state.ActiveSavable = true;
    QCOMPARE(enabledBy(menuEnableRules(), state), always);

    state.documentCount = 1;
    state.ActiveWritable = state.ActiveSavable = false;
    Names withReadOnly = always;
    withReadOnly.insert(
        {"mnuFileClose", "mnuFileSaveAs", "mnuFilePrint", "mnuFilePrintPreview", "mnuFileExport", "mnuoutline"});
    QCOMPARE(enabledBy(menuEnableRules(), state), withReadOnly);

    state.ActiveWritable = state.ActiveSavable = true;
    Names withWritable = withReadOnly;
    withWritable.insert({"mnuFileSave", "mnuFileSaveAll", "mnuEdit"});
    QCOMPARE(enabledBy(menuEnableRules(), state), withWritable);
    QCOMPARE(menuEnableRules().size(), withWritable.size());
}

void tst_CommandState::withNoDocumentTheOutlineMenuIsGreyedAndTheOthersWork()
{
    const CommandState none;
    const Names atStart = enabledBy(menuEnableRules(), none);
    for (const char *item :
         {"mnuFileNew", "mnuFileOpen", "mnuFilePrintSetup", "mnuFileExit", "mnuView", "mnuWindow", "mnuHelp"})
        QVERIFY2(atStart.contains(item), item);
    QVERIFY(!atStart.contains("mnuoutline"));
    QVERIFY(!dynamicallyEnabled("mnuoutline", none));
    QVERIFY(!dynamicallyEnabled("mnuFileSave", none));
    QVERIFY(!dynamicallyEnabled("mnuEdit", none));
    QVERIFY(dynamicallyEnabled("mnuoutline", ordinaryEntry()));
}

void tst_CommandState::aReadOnlyDocumentOffersNothingThatWrites()
{
    CommandState state = ordinaryEntry();
    state.Writable = state.ActiveWritable = state.AnyWritable = false;
    state.Savable = state.ActiveSavable = false;
    state.TextFocus = state.HasChildren = true;
    for (const char *item :
         {"mnuFileSave", "mnuFileSaveAll", "mnuEditClearEntryText", "mnuEditCut", "mnuEditPaste", "mnuEditFormat",
          "mnuOutlineInsertBelow", "mnuOutlineSortAll", "mnuOutlineRename", "mnuOutlineMove", "mnuSearchReplace"})
        QVERIFY2(!dynamicallyEnabled(item, state), item);
    // Another file can always be written.
    QVERIFY(dynamicallyEnabled("mnuFileSaveAs", state));
    QVERIFY(enabledBy(menuEnableRules(), state).contains("mnuFileSaveAs"));
    QVERIFY(dynamicallyEnabled("mnuOutlineExpand", state));
    state.Expanded = true;
    QVERIFY(dynamicallyEnabled("mnuOutlineCollapse", state));
    QVERIFY(dynamicallyEnabled("mnuEditCopy", state));
    // Copying an entry is always possible: no rule touches it.
    for (const EnableRule &rule : menuEnableDynamicRules())
        QVERIFY(rule.item != "mnuOutlineCopy");
    QVERIFY(!enabledBy(menuEnableRules(), state).contains("mnuEdit"));
}

void tst_CommandState::theRootCannotBeMovedDeletedTaggedOrPrecededByAnEntry()
{
    CommandState state = ordinaryEntry();
    state.IsRoot = state.FirstSibling = state.LastSibling = true;
    for (const char *item :
         {"mnuOutlineInsertAbove", "mnuOutlineTaggedEntry", "mnuOutlineDelete", "mnuOutlineMove", "mnuOutlineMoveUp",
          "mnuOutlineMoveDown", "mnuOutlineMoveFirst", "mnuOutlineMoveLast", "mnuOutlineIndent", "mnuOutlineUnindent"})
        QVERIFY2(!dynamicallyEnabled(item, state), item);
    QVERIFY(dynamicallyEnabled("mnuOutlineInsertBelow", state));
    QVERIFY(dynamicallyEnabled("mnuOutlineInsertChild", state));
}

void tst_CommandState::moveUpNeedsMoreThanTheFirstPlaceUnderTheRoot()
{
    CommandState state = ordinaryEntry();
    QVERIFY(dynamicallyEnabled("mnuOutlineMoveUp", state));
    state.FirstSibling = true;
    QVERIFY(dynamicallyEnabled("mnuOutlineMoveUp", state));
    state.ParentIsRoot = true;
    QVERIFY(!dynamicallyEnabled("mnuOutlineMoveUp", state));
    state.FirstSibling = false;
    QVERIFY(dynamicallyEnabled("mnuOutlineMoveUp", state));
    state.Writable = false;
    QVERIFY(!dynamicallyEnabled("mnuOutlineMoveUp", state));
}

void tst_CommandState::moveDownNeedsAFollowingSiblingSomewhereBelowTheRoot()
{
    const FakePorts fakes;
    Document &document = ports().windows->createDocument();
    EntryTree &tree = document.tree;
    Entry *root = tree.insert(Relationship::tvwFirst, nullptr);
    Entry *first = tree.insert(Relationship::tvwChild, root);
    Entry *grandchild = tree.insert(Relationship::tvwChild, first);

    const auto movable = [&](Entry *entry) {
        tree.select(entry);
        return dynamicallyEnabled("mnuOutlineMoveDown", currentCommandState());
    };
    QVERIFY(!movable(root));
    QVERIFY(!movable(first));
    QVERIFY(!movable(grandchild));

    Entry *second = tree.insert(Relationship::tvwNext, first);
    QVERIFY(!movable(root));
    QVERIFY(movable(first));
    QVERIFY(movable(grandchild));
    QVERIFY(!movable(second));
}

void tst_CommandState::aTaggedEntryIsOfferedToBeUntagged()
{
    QCOMPARE(taggedEntryCaption(true), u"Unta&g entry    Alt+T"_s);
    QCOMPARE(taggedEntryCaption(false), u"Ta&g entry      Alt+T"_s);
}

void tst_CommandState::checkMarksShowTheOptions()
{
    const std::map<std::string_view, bool Options::*> expected{
        {"mnuViewStatusBar", &Options::ViewStatusbar},
        {"mnuViewToolbar", &Options::ViewToolbar},
        {"mnuViewOptionsAutoFitSplit", &Options::AutoSplit},
        {"mnuViewOptionsBackupOnSave", &Options::Backup},
        {"mnuViewOptionsClickToRenameEntry", &Options::AutoLabelEdit},
        {"mnuViewOptionsStartWithNewDoc", &Options::StartWithNewDocument},
        {"mnuViewOptionsStartWithPrevDocs", &Options::StartWithLatestDocuments},
    };
    QCOMPARE(checkRules().size(), expected.size());
    for (const CheckRule &rule : checkRules())
        QVERIFY2(expected.at(rule.item) == rule.option, std::string(rule.item).c_str());
}

void tst_CommandState::theStateDescribesTheSelectedEntry()
{
    const FakePorts fakes;
    Document &document = ports().windows->createDocument();
    EntryTree &tree = document.tree;
    Entry *root = tree.insert(Relationship::tvwFirst, nullptr);
    Entry *first = tree.insert(Relationship::tvwChild, root);
    Entry *second = tree.insert(Relationship::tvwNext, first);
    Entry *grandchild = tree.insert(Relationship::tvwChild, second);
    tree.setTagged(second, true);
    tree.setExpanded(second, true);
    document.m_bOutlineHasFocus = true;
    document.m_iExpansionLevel = -1;

    tree.select(second);
    CommandState state = currentCommandState();
    QCOMPARE(state.documentCount, 1);
    QVERIFY(state.Selected && state.Writable && state.AnyWritable && state.ActiveWritable);
    QVERIFY(state.HasChildren && state.Expanded && state.LastSibling && state.HasPrevious && state.ParentIsRoot);
    QVERIFY(state.Tagged && state.TaggedExist && state.OutlineFocus);
    QCOMPARE(state.ExpansionLevel, -1);
    QVERIFY(!state.IsRoot && !state.FirstSibling && !state.TextFocus && !state.CanMoveDown && !state.Copied);

    tree.select(grandchild);
    state = currentCommandState();
    QVERIFY(state.FirstSibling && state.LastSibling && state.TaggedExist);
    QVERIFY(!state.ParentIsRoot && !state.HasPrevious && !state.Tagged && !state.HasChildren && !state.Expanded);

    tree.select(root);
    state = currentCommandState();
    QVERIFY(state.IsRoot && state.FirstSibling && state.LastSibling && state.HasChildren);
    QVERIFY(!state.ParentIsRoot && !state.HasPrevious);
}

void tst_CommandState::withoutASelectedEntryOnlyTheDocumentsCount()
{
    const FakePorts fakes;
    CommandState state = currentCommandState();
    QVERIFY(!state.Open() && !state.AnyWritable && !state.ActiveWritable);

    Document &document = ports().windows->createDocument();
    document.m_bOutlineHasFocus = true;
    state = currentCommandState();
    QVERIFY(state.Open() && state.ActiveWritable);
    QVERIFY(!state.AnyWritable);
    QVERIFY(!state.Selected && !state.Writable && !state.OutlineFocus && !state.IsRoot);
}

void tst_CommandState::aCopiedEntryCanBePastedAsLongAsItExists()
{
    const FakePorts fakes;
    EntryTree &tree = ports().windows->createDocument().tree;
    Entry *root = tree.insert(Relationship::tvwFirst, nullptr);
    Entry *child = tree.insert(Relationship::tvwChild, root);
    tree.select(root);
    QVERIFY(!currentCommandState().Copied);
    modOutline::copiedEntry().set(&tree, child);
    QVERIFY(currentCommandState().Copied);
    tree.remove(child);
    QVERIFY(!currentCommandState().Copied);
}

void tst_CommandState::saveAllNeedsAnyDocumentThatMayBeWritten()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"help.qly"_s);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    QVERIFY(file.setPermissions(QFile::ReadOwner));

    FakePorts fakes;
    Document &writable = fakes.windows.createDocument();
    Document &readOnly = fakes.windows.createDocument();
    readOnly.m_sFile = path;
    readOnly.tree.select(readOnly.tree.insert(Relationship::tvwFirst, nullptr));
    QVERIFY(readOnly.bReadOnly());
    CommandState state = currentCommandState();
    QVERIFY(state.AnyWritable && !state.ActiveWritable);
    writable.window.close();
    state = currentCommandState();
    QVERIFY(!state.AnyWritable);
}

// What was changed while the file could be written is still to be saved.
void tst_CommandState::aFileThatTurnsReadOnlyLeavesItsDocumentSavable()
{
    const QTemporaryDir folder;
    FakePorts fakes;
    fakes.formats.onWriteNative = [](const Document &, ByteSink &sink) { sink.write("native"); };
    Document &document = fakes.windows.createDocument();
    document.tree.select(document.tree.insert(Relationship::tvwFirst, nullptr));
    const QString path = folder.filePath(u"notes.qly"_s);
    QCOMPARE(modDoc::DocSave(path), SaveOutcome::Saved);
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner));
    QVERIFY(document.bReadOnly());
    const CommandState state = currentCommandState();
    QVERIFY(state.Savable && state.ActiveSavable && state.AnyWritable);
    QVERIFY(!state.Writable && !state.ActiveWritable);
}

QTEST_GUILESS_MAIN(tst_CommandState)
#include "tst_CommandState.moc"
