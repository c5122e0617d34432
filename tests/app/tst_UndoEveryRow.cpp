// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/MainFixture.h"
#include "app/PlaceKeeper.h"
#include "document/UndoRedo.h"
#include "document/modNodes.h"
#include "outline/modOutline.h"
#include "platform/RichTextBox.h"
#include "platform/TreeView.h"
#include "search/modSearch.h"
#include "support/NativeBytes.h"
#include "support/OutlineText.h"
#include "support/RawOutline.h"
#include "window/frmDocument.h"

#include <QLineEdit>
#include <QTest>
#include <QTimer>

#include <functional>
#include <map>

using namespace Qt::StringLiterals;

// Every row of the command table, done in the running program: what changes a document is undone and redone to the
// byte, and what changes none leaves its bytes and its history alone. A row without a case fails.

namespace
{

enum class Effect {
    // It makes one step.
    Changes,
    // It opens or closes branches, which is undone behind all steps.
    OpensOrCloses,
    // It goes back and forth in what was done.
    Travels,
    // It reads and writes files and makes and closes windows.
    Files,
    // It shows the same otherwise, or another window or pane.
    Shows,
    // It selects, finds or takes note of something.
    PointsOut,
    // It is there to be seen, and never to be run.
    NeverRuns,
};

struct RowCase {
    Effect effect;
    // What the row works on, made before.
    std::function<void(MainFixture &)> before = {};
    // What the user does to end it.
    std::function<void(MainFixture &)> behind = {};
};

// Selecting is no step.
QByteArray contentIn(const QByteArray &bytes)
{
    QByteArray rest;
    for (const QByteArray &line : bytes.split('\n')) {
        if (!line.startsWith("{\\qlf_selecteditemkey"))
            rest += line + '\n';
    }
    return rest;
}

// What is seen of the outline.
QByteArrayList openIn(const QByteArray &bytes)
{
    QByteArrayList lines = bytes.split('\n');
    lines.removeIf([](const QByteArray &line) { return !line.startsWith("{\\qlf_nodevisible"); });
    return lines;
}

RichTextBox &boxOf(Document &document)
{
    return *static_cast<frmDocument &>(document.view()->window).textBox;
}

TreeView &outlineOf(Document &document)
{
    return *static_cast<frmDocument &>(document.view()->window).treeView;
}

void select(const QString &label)
{
    Document &document = *DocumentActive();
    modNodes::NodeSelect(document, entryLabelled(document.tree, label));
}

void inOutline(MainFixture &main)
{
    main.choose("mnuViewGoToOutline");
}

// The caret in the text, whose second word is selected.
void inText(MainFixture &main)
{
    main.choose("mnuViewGoToText");
    boxOf(*DocumentActive()).setSelStart(2);
    boxOf(*DocumentActive()).setSelLength(3);
}

auto on(const char *label)
{
    return [label](MainFixture &main) {
        select(QString::fromLatin1(label));
        inOutline(main);
    };
}

void withCopied(MainFixture &main)
{
    select(u"A1"_s);
    modOutline::OutlineCopy();
    on("B")(main);
}

void answerYes(MainFixture &main)
{
    main.app.core.dialogs.answers = {Answer::Yes};
}

void chooseFont(MainFixture &main)
{
    FontAttributes font;
    font.name = u"DejaVu Serif"_s;
    font.size = 17;
    main.app.core.dialogs.fonts = {font};
}

void typeLabel(MainFixture &)
{
    QLineEdit *open = nullptr;
    for (QLineEdit *editor : outlineOf(*DocumentActive()).findChildren<QLineEdit *>())
        open = editor->isHidden() ? open : editor;
    if (!open)
        QTest::qFail("no label is open", __FILE__, __LINE__);
    else
        QTest::keyClicks(open, u"Typed"_s);
    outlineOf(*DocumentActive()).EndLabelEdit();
}

// Closes whatever waits for the user.
void closeModalWindow()
{
    QTimer::singleShot(0, qApp, [] {
        if (QWidget *window = QApplication::activeModalWidget())
            window->close();
        else
            closeModalWindow();
    });
}

void replaceAllInDialog(MainFixture &main)
{
    inOutline(main);
    searchPorts().showDialog = [] {
        g_sSearchFind = u"cat"_s;
        g_sSearchReplace = u"dog"_s;
        g_sSearchScope = u"1"_s;
        modSearch::SearchReplaceAll();
    };
}

auto behindACommand(const char *command)
{
    return [command](MainFixture &main) {
        inText(main);
        main.choose(command);
        inText(main);
    };
}

void withAStepUndone(MainFixture &main)
{
    on("B")(main);
    DocumentActive()->history.setLabel(entryLabelled(DocumentActive()->tree, u"C"_s), u"Renamed"_s);
    undoStep(*DocumentActive());
}

void withAStep(MainFixture &main)
{
    withAStepUndone(main);
    redoStep(*DocumentActive());
}

void withPlaces(MainFixture &main)
{
    for (const char *label : {"A1", "C1"}) {
        on(label)(main);
        main.main.places().settle();
    }
}

RowCase changing(std::function<void(MainFixture &)> before, std::function<void(MainFixture &)> behind = {})
{
    return {Effect::Changes, std::move(before), std::move(behind)};
}

RowCase editing(std::function<void(MainFixture &)> before = inText)
{
    return {Effect::Changes, std::move(before), {}};
}

RowCase opening(const char *label)
{
    return {Effect::OpensOrCloses, on(label), {}};
}

// What a dialog would ask for is given up.
void cancelled(MainFixture &main)
{
    inOutline(main);
    main.app.core.dialogs.answers = {Answer::Cancel};
    main.app.core.dialogs.openNames = {std::nullopt};
    main.app.core.dialogs.saveNames = {std::nullopt};
}

void savedUnder(MainFixture &main)
{
    inOutline(main);
    main.app.core.dialogs.answers = {Answer::Yes};
    main.app.core.dialogs.saveNames = {main.app.folder.filePath(u"saved.qly"_s)};
}

const std::map<std::string_view, RowCase> &cases()
{
    using enum Effect;
    static const auto deleting = [](MainFixture &main) {
        on("B")(main);
        answerYes(main);
    };
    static const auto font = [](MainFixture &main) {
        inText(main);
        chooseFont(main);
    };
    static const auto pasting = [](MainFixture &main) {
        inText(main);
        main.app.core.clipboard.setText(u"pasted"_s);
    };
    static const std::map<std::string_view, RowCase> all = {
        {"mnuFileNew", {Files, inOutline}},
        {"mnuFileOpen", {Files, cancelled}},
        {"mnuFileClose", {Files, cancelled}},
        {"mnuFileSave", {Files, savedUnder}},
        {"mnuFileSaveAs", {Files, savedUnder}},
        {"mnuFileSaveAll", {Files, savedUnder}},
        {"mnuFileImportClipboard", {Files, cancelled}},
        {"mnuFileImportText", {Files, cancelled}},
        {"mnuFileExportClipboard", {Files, inOutline}},
        {"mnuFileExportText", {Files, cancelled}},
        {"mnuFilePrintSetup", {Files, inOutline}},
        {"mnuFilePrintPreview", {Files, cancelled}},
        {"mnuFilePrint", {Files, cancelled}},
        {"mnuFilePrintEntry", {Files, cancelled}},
        {"mnuFilePrintPreviewEntry", {Files, cancelled}},
        {"mnuFileMRU", {Files, inOutline}},
        {"mnuFileExit", {Files, cancelled}},
        {"mnuOutlineInsertAbove", changing(on("B"), typeLabel)},
        {"mnuOutlineInsertBelow", changing(on("B"), typeLabel)},
        {"mnuOutlineInsertChild", changing(on("B"), typeLabel)},
        {"mnuOutlineIndent", changing(on("B"))},
        {"mnuOutlineUnindent", changing(on("B1"))},
        {"mnuOutlineMoveUp", changing(on("B"))},
        {"mnuOutlineMoveDown", changing(on("B"))},
        {"mnuOutlineMoveFirst", changing(on("B"))},
        {"mnuOutlineMoveLast", changing(on("B"))},
        {"keyOutlineMoveFirst", changing(on("B"))},
        {"keyOutlineMoveLast", changing(on("B"))},
        {"mnuOutlineExpand", opening("C")},
        {"mnuOutlineExpandLevel1", opening("Root")},
        {"mnuOutlineExpandLevel2", opening("B")},
        {"mnuOutlineExpandLevel3", opening("B")},
        {"mnuOutlineExpandLevel4", opening("B")},
        {"mnuOutlineExpandLevel5", opening("B")},
        {"mnuOutlineExpandLevel6", opening("B")},
        {"mnuOutlineExpandLevel7", opening("B")},
        {"mnuOutlineExpandAll", opening("B")},
        {"mnuOutlineCollapse", opening("B")},
        {"mnuOutlineCollapseAll", opening("Root")},
        {"mnuOutlineCopy", {PointsOut, on("B")}},
        {"mnuOutlinePaste", changing(withCopied)},
        {"mnuOutlinePasteAndDelete", changing(withCopied)},
        {"mnuOutlineDelete", changing(deleting)},
        {"mnuOutlineRename", changing(on("B"), typeLabel)},
        {"mnuOutlineSortCurrent", changing(on("B"))},
        {"mnuOutlineSortAll", changing(on("B"))},
        {"mnuOutlineTaggedEntry", changing(on("B"))},
        {"mnuOutlinePasteTaggedEntries", changing(on("A"))},
        {"mnuOutlineDeleteTaggedEntries", changing(deleting)},
        {"mnuOutlineFont", changing(font)},
        {"mnuEditCut", editing()},
        {"mnuEditCopy", {PointsOut, inText}},
        {"mnuEditPaste", editing(pasting)},
        {"mnuEditPasteSpecial", editing(pasting)},
        {"mnuEditDelete", editing()},
        {"mnuEditSelectAll", {PointsOut, inText}},
        {"mnuEditClearEntryText", editing([](MainFixture &main) {
             inText(main);
             answerYes(main);
         })},
        {"mnuEditInsertTab", editing()},
        {"mnuEditInsertLongDate", editing()},
        {"mnuEditInsertShortDate", editing()},
        {"mnuEditInsertTime", editing()},
        {"mnuEditCaseLower", editing(behindACommand("mnuEditCaseUpper"))},
        {"mnuEditCaseProperName", editing()},
        {"mnuEditCaseUpper", editing()},
        {"mnuEditCaseToggle", editing()},
        {"mnuEditFormatBold", editing()},
        {"mnuEditFormatItalic", editing()},
        {"mnuEditFormatStrikeThrough", editing()},
        {"mnuEditFormatUnderline", editing()},
        {"mnuEditFormatLeft", editing(behindACommand("mnuEditFormatRight"))},
        {"mnuEditFormatCentre", editing()},
        {"mnuEditFormatRight", editing()},
        {"mnuEditFormatBullet", editing()},
        {"mnuEditFormatIndent", editing()},
        {"mnuEditFormatUnindent", editing(behindACommand("mnuEditFormatIndent"))},
        {"mnuEditCurrentFont", editing(font)},
        {"mnuEditDocumentFont", editing(font)},
        {"keyTextSmaller", editing()},
        {"keyTextLarger", editing()},
        {"mnuSearchFind",
         {PointsOut,
          [](MainFixture &main) {
              inOutline(main);
              searchPorts().showDialog = [] {};
          }}},
        {"mnuSearchReplace", changing(replaceAllInDialog)},
        {"mnuSearchRepeat",
         {PointsOut,
          [](MainFixture &main) {
              inOutline(main);
              g_sSearchFind = u"cat"_s;
              g_sSearchScope = u"1"_s;
          }}},
        {"mnuViewToolbar", {Shows, inOutline}},
        {"mnuViewMDITaskbar", {NeverRuns}},
        {"mnuViewStatusBar", {Shows, inOutline}},
        {"mnuViewGoToOutline", {Shows, inText}},
        {"mnuViewGoToText", {Shows, inOutline}},
        {"mnuViewMaximiseLeft", {Shows, inOutline}},
        {"mnuViewMaximiseRight", {Shows, inOutline}},
        {"mnuViewEqualiseLeftAndRight", {Shows, inOutline}},
        {"mnuViewFitSplit", {Shows, inOutline}},
        {"mnuViewMoveSplit", {Shows, inOutline}},
        {"mnuViewOptionsBackupOnSave", {Shows, inOutline}},
        {"mnuViewOptionsAutoFitSplit", {Shows, inOutline}},
        {"mnuViewOptionsStartWithNewDoc", {Shows, inOutline}},
        {"mnuViewOptionsStartWithPrevDocs", {Shows, inOutline}},
        {"mnuViewOptionsClickToRenameEntry", {Shows, inOutline}},
        {"mnuToolsUndo", {Travels, withAStep}},
        {"mnuToolsRedo", {Travels, withAStepUndone}},
        // Its argument is the position.
        {"toolsGoTo", {Travels, withAStep}},
        {"mnuToolsJoin", changing(on("A"))},
        {"mnuToolsSplit", editing()},
        {"mnuToolsGoToAnything",
         {Shows,
          [](MainFixture &main) {
              inOutline(main);
              closeModalWindow();
          }}},
        {"mnuToolsBack", {PointsOut, withPlaces}},
        {"mnuToolsForward",
         {PointsOut,
          [](MainFixture &main) {
              withPlaces(main);
              main.main.places().goBack();
          }}},
        {"mnuToolsFindEverywhere", {Shows, inOutline}},
        {"keyFindEverywhere", {Shows, inOutline}},
        // Its argument is the row of the list.
        {"findGoTo", {Shows, inOutline}},
        {"mnuToolsHistory", {Shows, inOutline}},
        {"mnuToolsVersions", {Shows, inOutline}},
        {"mnuToolsRecover", {Shows, inOutline}},
        {"keyPaneNext", {Shows, inOutline}},
        {"mnuWindowNewWindow", {NeverRuns}},
        {"mnuWindowCascade", {Shows, inOutline}},
        {"mnuWindowTileHorizontal", {Shows, inOutline}},
        {"mnuWindowTileVertical", {Shows, inOutline}},
        {"mnuWindowArrangeIcons", {Shows, inOutline}},
        {"keyWindowNext", {Shows, inOutline}},
        {"mnuHelpContents", {Shows, inOutline}},
        {"mnuHelpSearch", {Shows, inOutline}},
        {"mnuHelpAbout",
         {Shows,
          [](MainFixture &main) {
              inOutline(main);
              closeModalWindow();
          }}},
        {"keyDiagnostics",
         {Shows,
          [](MainFixture &main) {
              inOutline(main);
              closeModalWindow();
          }}},
    };
    return all;
}

bool isRun(const CommandRow &row)
{
    return row.kind != RowKind::Menu && row.kind != RowKind::Separator;
}

} // namespace

class tst_UndoEveryRow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void everyRowHasItsCase();
    void everyRowIsUndoneOrChangesNothing_data();
    void everyRowIsUndoneOrChangesNothing();
    void everyRowThatChangesATextHasANameOfItsOwn();

private:
    void run(const CommandRow &row) const;
    void noteName(const CommandRow &row, const QString &name);

    // What rows of the Edit menu called their steps.
    std::map<QString, QStringList> m_names;
    std::unique_ptr<MainFixture> m_main;
};

void tst_UndoEveryRow::init()
{
    m_main = std::make_unique<MainFixture>();
    m_main->start();
    m_main->main.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_main->main));
    m_main->choose("mnuFileNew");
    Document &document = *DocumentActive();
    document.view()->trvOutline.EndLabelEdit();
    EntryTree &tree = rawOutline(document).tree;
    tree.remove(tree.root());
    plantOutline(tree, {u"Root +"_s, u" A +"_s, u"  A1"_s, u" B +*"_s, u"  B2"_s, u"  B1"_s, u" C"_s, u"  C1"_s});
    for (const Entry *entry = tree.root(); entry; entry = nextInOutline(entry, tree.root()))
        tree.setStoredText(tree.entry(entry->id()), "{\\rtf1 a cat of " + entry->label().toLatin1() + "\\par}");
    select(u"B"_s);
    document.history.startAnew();
    g_sSearchFind.clear();
    g_sSearchReplace.clear();
    g_bSearchMatchCase = g_bSearchWholeWord = g_bSearchBackwards = false;
}

void tst_UndoEveryRow::cleanup()
{
    searchPorts().showDialog = {};
    modOutline::copiedEntry().clear();
    m_main.reset();
}

void tst_UndoEveryRow::everyRowHasItsCase()
{
    QStringList missing;
    for (const CommandRow &row : commandTable) {
        if (isRun(row) && !cases().contains(row.name))
            missing.append(toText(row.name));
    }
    QVERIFY2(missing.isEmpty(), qPrintable(u"cases() is to say what they do: "_s + missing.join(u", "_s)));
    for (const auto &[name, _] : cases())
        QVERIFY2(commandRow(name) != noRow, name.data());
}

void tst_UndoEveryRow::everyRowIsUndoneOrChangesNothing_data()
{
    QTest::addColumn<int>("row");
    for (std::size_t row = 0; row < commandTable.size(); ++row) {
        if (isRun(commandTable[row]) && cases().contains(commandTable[row].name))
            QTest::newRow(commandTable[row].name.data()) << static_cast<int>(row);
    }
}

// A menu item by its menu, the rest by its key. One that has neither is run by what shows its argument, in the test of
// that.
void tst_UndoEveryRow::run(const CommandRow &row) const
{
    if (row.kind == RowKind::Command) {
        m_main->choose(row.name.data());
    } else if (row.routine.run) {
        row.routine.run(row.argument);
    } else if (row.keys[0].key != 0) {
        static constexpr Qt::KeyboardModifiers modifiers[] = {
            Qt::NoModifier,  Qt::KeypadModifier,  Qt::NoModifier,
            Qt::AltModifier, Qt::ControlModifier, Qt::ControlModifier | Qt::ShiftModifier};
        QTest::keyClick(&outlineOf(*DocumentActive()), static_cast<Qt::Key>(row.keys[0].key),
                        modifiers[row.keys[0].modifiers]);
    }
}

void tst_UndoEveryRow::everyRowIsUndoneOrChangesNothing()
{
    QFETCH(const int, row);
    const CommandRow &command = commandTable[static_cast<std::size_t>(row)];
    const RowCase &rowCase = cases().at(command.name);
    Document &document = *DocumentActive();
    if (rowCase.effect == Effect::NeverRuns) {
        QVERIFY(command.routine.name.empty());
        QVERIFY(!m_main->main.dispatcher().isEnabled(command.name, m_main->main.dispatcher().state()));
        return;
    }
    if (rowCase.before)
        rowCase.before(*m_main);
    const QByteArray start = nativeBytes(document.outline());
    // What is opened and closed is undone behind a step.
    if (rowCase.effect == Effect::OpensOrCloses) {
        document.history.setLabel(entryLabelled(document.tree, u"A1"_s), u"Renamed"_s);
        m_main->main.surface().MenuEnableDynamic();
    }
    // A file is asked for where there is something to be saved.
    if (rowCase.effect == Effect::Files)
        document.history.touch();
    else
        document.history.markSaved();
    const QByteArray before = nativeBytes(document.outline());
    const int steps = document.history.stepCount();
    const int position = document.history.position();
    run(command);
    if (rowCase.behind)
        rowCase.behind(*m_main);
    const QByteArray after = nativeBytes(document.outline());
    switch (rowCase.effect) {
    case Effect::NeverRuns:
        break;
    case Effect::Travels:
        QCOMPARE(document.history.stepCount(), steps);
        QVERIFY(document.history.position() != position);
        QVERIFY(contentIn(after) != contentIn(before));
        break;
    case Effect::Files:
    case Effect::Shows:
    case Effect::PointsOut:
        QCOMPARE(document.history.stepCount(), steps);
        QCOMPARE(document.history.position(), position);
        QCOMPARE(contentIn(after), contentIn(before));
        break;
    case Effect::OpensOrCloses:
    case Effect::Changes:
        const bool isStep = rowCase.effect == Effect::Changes;
        QVERIFY(contentIn(after) != contentIn(before));
        QVERIFY(document.m_bDataChanged());
        QVERIFY(document.history.position() > position || !isStep);
        if (isStep) {
            const QString name = document.history.undoName();
            QVERIFY2(!name.startsWith(u"typing in"_s), qPrintable(name));
            noteName(command, name);
        }
        QCOMPARE(document.history.stepCount(), document.history.position());
        const int end = document.history.position();
        // What was opened and closed since stays so when a step is undone.
        if (!isStep) {
            QVERIFY(undoStep(document));
            QCOMPARE(openIn(nativeBytes(document.outline())), openIn(after));
        }
        for (int round = 0; round < 2; ++round) {
            while (isStep ? document.history.position() > position : document.history.canUndo())
                QVERIFY(undoStep(document));
            QCOMPARE(nativeBytes(document.outline()), start);
            QCOMPARE(document.m_bDataChanged(), !isStep);
            while (document.history.position() < end)
                QVERIFY(redoStep(document));
            if (isStep)
                QCOMPARE(nativeBytes(document.outline()), after);
            QCOMPARE(document.m_bDataChanged(), isStep);
        }
        break;
    }
    m_main->app.core.dialogs.answers.clear();
    document.history.markSaved();
}

void tst_UndoEveryRow::noteName(const CommandRow &row, const QString &name)
{
    std::string_view menu = row.name;
    for (std::size_t at = commandRow(menu); at != noRow && !commandTable[at].parent.empty(); at = commandRow(menu))
        menu = commandTable[at].parent;
    if (menu == "mnuEdit")
        m_names[name].append(toText(row.name));
}

// Behind all rows, which it looks at.
void tst_UndoEveryRow::everyRowThatChangesATextHasANameOfItsOwn()
{
    if (m_names.empty())
        QSKIP("The rows were not run.");
    for (const auto &[name, rows] : m_names)
        QVERIFY2(rows.size() == 1, qPrintable(name + u": "_s + rows.join(u", "_s)));
    constexpr int rowsAtLeast = 25;
    QVERIFY(m_names.size() >= rowsAtLeast);
}

QTEST_MAIN(tst_UndoEveryRow)
#include "tst_UndoEveryRow.moc"
