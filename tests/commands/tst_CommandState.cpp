// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "commands/CommandReasons.h"
#include "commands/CommandTable.h"
#include "document/modDoc.h"
#include "outline/modOutline.h"
#include "support/FakePorts.h"
#include "support/RawOutline.h"
#include "util/ByteSink.h"

#include <QTemporaryDir>
#include <QTest>

#include <map>
#include <set>

using namespace Qt::StringLiterals;

namespace
{

bool enabled(std::string_view item, const CommandState &state)
{
    return commandTable[commandRow(item)].rule(state);
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

// A bit for each condition, in the order of the map; the bit above them is an open document.
unsigned bitsOf(const QByteArray &letters)
{
    unsigned bits = letters.contains('N') ? 1U << conditions.size() : 0;
    unsigned bit = 0;
    for (const auto &[letter, member] : conditions) {
        if (letters.contains(letter))
            bits |= 1U << bit;
        ++bit;
    }
    return bits;
}

// By the bits of the conditions that hold.
const std::vector<CommandState> &everyState()
{
    static const std::vector<CommandState> states = [] {
        std::vector<CommandState> made(std::size_t(2) << conditions.size());
        unsigned bit = 0;
        for (const auto &[letter, member] : conditions) {
            for (unsigned combination = 0; combination < made.size(); ++combination)
                made[combination].*member = (combination >> bit) & 1U;
            ++bit;
        }
        for (unsigned combination = 0; combination < made.size(); ++combination)
            made[combination].documentCount = static_cast<int>(combination >> bit);
        return made;
    }();
    return states;
}

// The letters of the conditions that an item needs, and of those that forbid it; "N" is an open document.
struct ConditionRow {
    const char *item;
    const char *needed;
    const char *forbidden = "";
};

constexpr ConditionRow conditionRows[] = {
    {"mnuFileClose", "N"},
    {"mnuToolsVersions", "N"},
    {"mnuFilePrint", "N"},
    {"mnuFilePrintPreview", "N"},
    {"mnuFileExport", "N"},
    {"mnuoutline", "N"},
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
    {"mnuToolsJoin", "WS", "9B"},
    {"mnuToolsSplit", "WT", "B"},
};

} // namespace

class tst_CommandState : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyItemIsEnabledExactlyWhenItsConditionsHold_data();
    void everyItemIsEnabledExactlyWhenItsConditionsHold();
    void noOtherCommandDependsOnAnything();
    void whatCannotBeRunSaysWhy();
    void theReasonIsTheFirstThatAPersonWouldName_data();
    void theReasonIsTheFirstThatAPersonWouldName();
    void ofSeveralTheReasonIsThatOfOneAmongThem();
    void undoAndRedoNeedAStep();
    void goingBackAndForwardNeedsAPlaceInAnyDocument();
    void keysWithoutAnItemActAsTheirItemsDo();
    void withNoDocumentTheOutlineMenuIsGreyedAndTheOthersWork();
    void aReadOnlyDocumentOffersNothingThatWrites();
    void theRootCannotBeMovedDeletedTaggedOrPrecededByAnEntry();
    void moveUpNeedsMoreThanTheFirstPlaceUnderTheRoot();
    void moveDownNeedsAFollowingSiblingSomewhereBelowTheRoot();
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
    const unsigned neededBits = bitsOf(needed);
    const unsigned forbiddenBits = bitsOf(forbidden);
    const Rule rule = commandTable[commandRow(item)].rule;
    const std::vector<CommandState> &states = everyState();
    for (unsigned combination = 0; combination < states.size(); ++combination) {
        const bool expected = (combination & neededBits) == neededBits && (combination & forbiddenBits) == 0;
        if (rule(states[combination]) != expected)
            QFAIL(qPrintable(u"wrong for the combination %1"_s.arg(combination, 0, 2)));
    }
}

// The same for every command that the table above does not list, in the barest and the fullest state.
void tst_CommandState::noOtherCommandDependsOnAnything()
{
    std::set<std::string_view> listed{"mnuOutlineMoveUp", "keyOutlineMoveFirst", "keyOutlineMoveLast", "keyTextSmaller",
                                      "keyTextLarger",    "mnuToolsUndo",        "mnuToolsRedo",       "toolsGoTo",
                                      "mnuToolsBack",     "mnuToolsForward"};
    for (const ConditionRow &row : conditionRows)
        listed.insert(row.item);
    CommandState full = ordinaryEntry();
    for (const auto &[letter, member] : conditions)
        full.*member = true;
    for (const CommandRow &row : commandTable) {
        if (listed.contains(row.name))
            continue;
        const bool runsSomething = row.kind != RowKind::Command || !row.routine.name.empty();
        QVERIFY2(row.rule({}) == runsSomething && row.rule(full) == runsSomething,
                 qPrintable(u"conditionRows is to say when it can be run: "_s + toText(row.name)));
    }
}

// In combinations of the conditions from all over, and for every rule.
void tst_CommandState::whatCannotBeRunSaysWhy()
{
    std::map<Rule, std::string_view> commands;
    for (const CommandRow &row : commandTable) {
        if (row.kind == RowKind::Command)
            commands.emplace(row.rule, row.name);
    }
    constexpr std::size_t stride = 41;
    for (std::size_t combination = 0; combination < everyState().size(); combination += stride) {
        const CommandState &state = everyState()[combination];
        for (const auto &[rule, command] : commands) {
            bool possible = true;
            for (std::size_t at = commandRow(command); at != noRow; at = commandRow(commandTable[at].parent))
                possible = possible && commandTable[at].rule(state);
            const QString why = whyNot(command, state);
            if (why.isEmpty() != possible || why == u"it has nothing to act on"_s)
                QFAIL(qPrintable(toText(command) + u": "_s + why));
        }
    }
    QCOMPARE(whyNot("mnuNowhere", {}), QString());
}

void tst_CommandState::theReasonIsTheFirstThatAPersonWouldName_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QByteArray>("letters");
    QTest::addColumn<QString>("why");
    QTest::newRow("no document") << QByteArray("mnuOutlineRename") << QByteArray() << u"no document is open"_s;
    QTest::newRow("no entry") << QByteArray("mnuOutlineRename") << QByteArray("N") << u"no entry is selected"_s;
    QTest::newRow("read-only") << QByteArray("mnuOutlineRename") << QByteArray("NS") << u"the document is read-only"_s;
    QTest::newRow("possible") << QByteArray("mnuOutlineRename") << QByteArray("NSW") << QString();
    QTest::newRow("the root") << QByteArray("mnuOutlineMoveUp") << QByteArray("NSWR")
                              << u"the document's topmost entry is selected"_s;
    QTest::newRow("the first of all") << QByteArray("mnuOutlineMoveUp") << QByteArray("NSWQ1")
                                      << u"the entry is the first of all"_s;
    QTest::newRow("in the outline") << QByteArray("mnuEditCaseUpper") << QByteArray("NSW")
                                    << u"it works in the text, and the keyboard is not there"_s;
    QTest::newRow("withheld") << QByteArray("mnuEditCaseUpper") << QByteArray("NSWTB")
                              << u"the text is not shown whole"_s;
    QTest::newRow("nothing copied") << QByteArray("mnuOutlinePaste") << QByteArray("NSW") << u"no entry was copied"_s;
    QTest::newRow("nothing inside") << QByteArray("mnuOutlineExpand") << QByteArray("NS")
                                    << u"the entry has no others inside"_s;
    QTest::newRow("no function") << QByteArray("mnuWindowNewWindow") << QByteArray("NSW") << u"it has no function"_s;
}

void tst_CommandState::theReasonIsTheFirstThatAPersonWouldName()
{
    QFETCH(const QByteArray, command);
    QFETCH(const QByteArray, letters);
    QFETCH(const QString, why);
    QCOMPARE(whyNot(std::string_view(command), everyState()[bitsOf(letters)]), why);
}

void tst_CommandState::undoAndRedoNeedAStep()
{
    for (const bool undo : {false, true}) {
        for (const bool redo : {false, true}) {
            const CommandState state{.CanUndo = undo, .CanRedo = redo, .undoName = u"a & b"_s, .redoName = u"c"_s};
            const CommandRow &undoRow = commandTable[commandRow("mnuToolsUndo")];
            const CommandRow &redoRow = commandTable[commandRow("mnuToolsRedo")];
            QCOMPARE(undoRow.rule(state), undo);
            QCOMPARE(redoRow.rule(state), redo);
            QCOMPARE(enabled("toolsGoTo", state), undo || redo);
            QCOMPARE(undoRow.captionNow(state), undo ? u"&Undo a && b"_s : u"&Undo"_s);
            QCOMPARE(redoRow.captionNow(state), redo ? u"&Redo c"_s : u"&Redo"_s);
        }
    }
}

void tst_CommandState::goingBackAndForwardNeedsAPlaceInAnyDocument()
{
    QVERIFY(enabled("mnuToolsBack", {.CanGoBack = true}) && !enabled("mnuToolsForward", {.CanGoBack = true}));
    QVERIFY(enabled("mnuToolsForward", {.CanGoForward = true}) && !enabled("mnuToolsBack", {.CanGoForward = true}));
    QCOMPARE(whyNot("mnuToolsBack", {}), u"no other entry was visited before"_s);
    QCOMPARE(whyNot("mnuToolsForward", {}), u"there is no entry to go forward to"_s);
}

void tst_CommandState::keysWithoutAnItemActAsTheirItemsDo()
{
    const auto sameRule = [](std::string_view key, std::string_view item) {
        return commandTable[commandRow(key)].rule == commandTable[commandRow(item)].rule &&
               commandTable[commandRow(key)].parent == commandTable[commandRow(item)].parent;
    };
    // Moving to the ends by key is possible exactly when moving by one is.
    QVERIFY(sameRule("keyOutlineMoveFirst", "mnuOutlineMoveUp"));
    QVERIFY(sameRule("keyOutlineMoveLast", "mnuOutlineMoveDown"));
    QVERIFY(sameRule("keyTextSmaller", "mnuEditCurrentFont"));
    QVERIFY(sameRule("keyTextLarger", "mnuEditCurrentFont"));
}

void tst_CommandState::withNoDocumentTheOutlineMenuIsGreyedAndTheOthersWork()
{
    const CommandState none;
    for (const char *item :
         {"mnuFileNew", "mnuFileOpen", "mnuFilePrintSetup", "mnuFileExit", "mnuView", "mnuWindow", "mnuHelp"})
        QVERIFY2(enabled(item, none), item);
    QVERIFY(!enabled("mnuoutline", none));
    QVERIFY(!enabled("mnuFileSave", none));
    QVERIFY(!enabled("mnuEdit", none));
    QVERIFY(enabled("mnuoutline", ordinaryEntry()));
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
        QVERIFY2(!enabled(item, state), item);
    // Another file can always be written.
    QVERIFY(enabled("mnuFileSaveAs", state));
    QVERIFY(enabled("mnuOutlineExpand", state));
    state.Expanded = true;
    QVERIFY(enabled("mnuOutlineCollapse", state));
    QVERIFY(enabled("mnuEditCopy", state));
    QVERIFY(enabled("mnuOutlineCopy", state));
}

void tst_CommandState::theRootCannotBeMovedDeletedTaggedOrPrecededByAnEntry()
{
    CommandState state = ordinaryEntry();
    state.IsRoot = state.FirstSibling = state.LastSibling = true;
    for (const char *item :
         {"mnuOutlineInsertAbove", "mnuOutlineTaggedEntry", "mnuOutlineDelete", "mnuOutlineMove", "mnuOutlineMoveUp",
          "mnuOutlineMoveDown", "mnuOutlineMoveFirst", "mnuOutlineMoveLast", "mnuOutlineIndent", "mnuOutlineUnindent"})
        QVERIFY2(!enabled(item, state), item);
    QVERIFY(enabled("mnuOutlineInsertBelow", state));
    QVERIFY(enabled("mnuOutlineInsertChild", state));
}

void tst_CommandState::moveUpNeedsMoreThanTheFirstPlaceUnderTheRoot()
{
    CommandState state = ordinaryEntry();
    QVERIFY(enabled("mnuOutlineMoveUp", state));
    state.FirstSibling = true;
    QVERIFY(enabled("mnuOutlineMoveUp", state));
    state.ParentIsRoot = true;
    QVERIFY(!enabled("mnuOutlineMoveUp", state));
    state.FirstSibling = false;
    QVERIFY(enabled("mnuOutlineMoveUp", state));
    state.Writable = false;
    QVERIFY(!enabled("mnuOutlineMoveUp", state));
}

void tst_CommandState::moveDownNeedsAFollowingSiblingSomewhereBelowTheRoot()
{
    const FakePorts fakes;
    Document &document = ports().windows->createDocument();
    EntryTree &tree = rawOutline(document).tree;
    Entry *root = tree.insert(Relationship::tvwFirst, nullptr);
    Entry *first = tree.insert(Relationship::tvwChild, root);
    Entry *grandchild = tree.insert(Relationship::tvwChild, first);

    const auto movable = [&](Entry *entry) {
        tree.select(entry);
        return enabled("mnuOutlineMoveDown", currentCommandState());
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
    for (const CommandRow &row : commandTable) {
        const auto marked = expected.find(row.name);
        QVERIFY2(row.option == (marked == expected.end() ? nullptr : marked->second), row.name.data());
    }
}

void tst_CommandState::theStateDescribesTheSelectedEntry()
{
    const FakePorts fakes;
    Document &document = ports().windows->createDocument();
    EntryTree &tree = rawOutline(document).tree;
    Entry *root = tree.insert(Relationship::tvwFirst, nullptr);
    Entry *first = tree.insert(Relationship::tvwChild, root);
    Entry *second = tree.insert(Relationship::tvwNext, first);
    Entry *grandchild = tree.insert(Relationship::tvwChild, second);
    tree.setTagged(second, true);
    tree.setExpanded(second, true);
    document.view()->outlineGotFocus();
    document.setExpansionLevel(-1);

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
    document.view()->outlineGotFocus();
    state = currentCommandState();
    QVERIFY(state.Open() && state.ActiveWritable);
    QVERIFY(!state.AnyWritable);
    QVERIFY(!state.Selected && !state.Writable && !state.OutlineFocus && !state.IsRoot);
}

void tst_CommandState::aCopiedEntryCanBePastedAsLongAsItExists()
{
    const FakePorts fakes;
    EntryTree &tree = rawOutline(ports().windows->createDocument()).tree;
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
    rawOutline(readOnly).tree.select(rawOutline(readOnly).tree.insert(Relationship::tvwFirst, nullptr));
    QVERIFY(readOnly.bReadOnly());
    CommandState state = currentCommandState();
    QVERIFY(state.AnyWritable && !state.ActiveWritable);
    writable.view()->window.close();
    state = currentCommandState();
    QVERIFY(!state.AnyWritable);
}

// What was changed while the file could be written is still to be saved.
void tst_CommandState::aFileThatTurnsReadOnlyLeavesItsDocumentSavable()
{
    const QTemporaryDir folder;
    FakePorts fakes;
    Document &document = fakes.windows.createDocument();
    rawOutline(document).tree.select(rawOutline(document).tree.insert(Relationship::tvwFirst, nullptr));
    const QString path = folder.filePath(u"notes.qly"_s);
    QCOMPARE(modDoc::DocSave(path), SaveOutcome::Saved);
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner));
    QVERIFY(document.bReadOnly());
    const CommandState state = currentCommandState();
    QVERIFY(state.Savable && state.ActiveSavable && state.AnyWritable);
    QVERIFY(!state.Writable && !state.ActiveWritable);
}

// As the rule itself says, in every combination of what holds for each of them.
void tst_CommandState::ofSeveralTheReasonIsThatOfOneAmongThem()
{
    CommandState state = ordinaryEntry();
    state.Several.count = 2;
    constexpr std::pair<const char *, bool SeveralSelected::*> moves[] = {
        {"mnuOutlineIndent", &SeveralSelected::indentable},      {"mnuOutlineUnindent", &SeveralSelected::unindentable},
        {"mnuOutlineMoveUp", &SeveralSelected::movableUp},       {"mnuOutlineMoveDown", &SeveralSelected::movableDown},
        {"mnuOutlineMoveFirst", &SeveralSelected::movableFirst}, {"mnuOutlineMoveLast", &SeveralSelected::movableLast},
    };
    for (const auto &[item, fact] : moves) {
        // Whatever the current one is.
        for (const bool isFirst : {false, true}) {
            state.FirstSibling = state.ParentIsRoot = isFirst;
            state.HasPrevious = state.CanMoveDown = !isFirst;
            state.Several.*fact = false;
            QVERIFY(!enabled(item, state));
            QCOMPARE(whyNot(item, state), u"one of the selected entries has nowhere to go"_s);
            state.Several.*fact = true;
            QVERIFY(enabled(item, state));
            QCOMPARE(whyNot(item, state), QString());
        }
        state.Writable = false;
        QVERIFY(!enabled(item, state));
        state.Writable = true;
        state.Several.*fact = false;
    }
    state.IsRoot = true;
    for (const char *item : {"mnuOutlineDelete", "mnuOutlineTaggedEntry", "mnuOutlineMove"}) {
        QVERIFY(enabled(item, state));
        state.Several.withRoot = true;
        QVERIFY(!enabled(item, state));
        QCOMPARE(whyNot(item, state), u"the document's topmost entry is selected"_s);
        state.Several.withRoot = false;
    }
}

QTEST_GUILESS_MAIN(tst_CommandState)
#include "tst_CommandState.moc"
