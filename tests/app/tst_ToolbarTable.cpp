// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/ToolbarIcon.h"
#include "app/ToolbarRules.h"
#include "support/FakePorts.h"

#include <QDir>
#include <QImage>
#include <QTest>

#include <algorithm>
#include <map>
#include <set>

using namespace Qt::StringLiterals;

namespace
{

// The toolbar as a user meets it: key, what a click runs, and when the button is shown. A condition is a run of the
// letters below, "!" before what must not hold. The table of the program is compared with it line by line.
struct Expected {
    const char *key;
    const char *routine;
    int argument;
    const char *shown;
};

const Expected expectedButtons[] = {
    {"New File", "modFile::FileNew", 0, ""},
    {"Open File", "modFile::FileOpen", 0, ""},
    {"Save File", "modFile::FileSave", 0, "DV"},
    {"Print File", "modFile::FilePrint", 0, "D"},
    {"Preview File", "modFile::FilePrintPreview", 0, "D"},
    {"Go To Outline", "modView::ViewGoToOutline", 0, "T"},
    {"Go To Text", "modView::ViewGoToText", 0, "O"},
    {"Copy Entry", "modOutline::OutlineCopy", 0, "O"},
    {"Paste Entry", "modOutline::OutlinePaste", 0, "O"},
    {"Delete Entry", "modOutline::OutlineDelete", 0, "OS!R"},
    {"Print Entry", "modFile::FilePrint", 1, "D"},
    {"Preview Entry", "modFile::FilePrintPreview", 1, "D"},
    {"New Entry Above", "modOutline::OutlineInsertAbove", 0, "O!R"},
    {"New Entry Below", "modOutline::OutlineInsertBelow", 0, "O"},
    {"New Entry As Child", "modOutline::OutlineInsertChild", 0, "O"},
    {"Move Entry Up", "modOutline::OutlineMoveUp", 0, "OSW!R+"},
    {"Move Entry Down", "modOutline::OutlineMoveDown", 0, "OM"},
    {"Move Entry First", "modOutline::OutlineMoveFirst", 0, "OSW!R!1"},
    {"Move Entry Last", "modOutline::OutlineMoveLast", 0, "OSW!R!9"},
    {"Indent Entry", "modOutline::OutlineIndent", 0, "OSW!RP"},
    {"Unindent Entry", "modOutline::OutlineUnindent", 0, "OSW!R!Q"},
    {"Tag Entry", "modOutline::OutlineTaggedEntry", 0, "O!R"},
    {"Sort Entry", "modOutline::OutlineSortCurrent", 0, "OH"},
    {"Expand Entry", "modOutline::OutlineExpand", 0, "OH!E"},
    {"Contract Entry", "modOutline::OutlineCollapse", 0, "OHE"},
    {"Expand to level 1", "modOutline::OutlineExpandToLevel", 1, "O"},
    {"Expand to level 2", "modOutline::OutlineExpandToLevel", 2, "O"},
    {"Expand to level 3", "modOutline::OutlineExpandToLevel", 3, "O"},
    {"Expand to level 4", "modOutline::OutlineExpandToLevel", 4, "O"},
    {"Expand to level 5", "modOutline::OutlineExpandToLevel", 5, "O"},
    {"Expand to level 6", "modOutline::OutlineExpandToLevel", 6, "O"},
    {"Expand to level 7", "modOutline::OutlineExpandToLevel", 7, "O"},
    {"Expand all levels", "modOutline::OutlineExpandAll", 0, "O"},
    {"Cut Text", "modEdit::EditCut", 0, "TW"},
    {"Copy Text", "modEdit::EditCopy", 0, "T"},
    {"Paste Text", "modEdit::EditPaste", 0, "TW"},
    {"Delete Text", "modEdit::EditDelete", 0, "TW"},
    {"Bold Text", "modEdit::EditFormatBold", 0, "TW"},
    {"Italic Text", "modEdit::EditFormatItalic", 0, "TW"},
    {"Underline Text", "modEdit::EditFormatUnderline", 0, "TW"},
    {"Bullet Text", "modEdit::EditFormatBullet", 0, "TW"},
    {"Indent Text", "modEdit::EditFormatIndent", 0, "TW"},
    {"Unindent Text", "modEdit::EditFormatUnindent", 0, "TW"},
    {"Left Align Text", "modEdit::EditFormatLeft", 0, "TW"},
    {"Centre Align Text", "modEdit::EditFormatCentre", 0, "TW"},
    {"Right Align Text", "modEdit::EditFormatRight", 0, "TW"},
};

const std::map<char, bool CommandState::*> conditions{
    {'V', &CommandState::ActiveSavable}, {'W', &CommandState::Writable},     {'S', &CommandState::Selected},
    {'R', &CommandState::IsRoot},        {'H', &CommandState::HasChildren},  {'E', &CommandState::Expanded},
    {'1', &CommandState::FirstSibling},  {'9', &CommandState::LastSibling},  {'P', &CommandState::HasPrevious},
    {'Q', &CommandState::ParentIsRoot},  {'O', &CommandState::OutlineFocus}, {'T', &CommandState::TextFocus},
    {'M', &CommandState::CanMoveDown},
};

// "D" is an open document, "+" that the entry is not the first child of the root.
bool holds(const char *condition, const CommandState &state)
{
    bool wanted = true;
    for (const char *letter = condition; *letter; ++letter) {
        if (*letter == '!') {
            wanted = false;
            continue;
        }
        bool actual = false;
        if (*letter == 'D')
            actual = state.documentCount > 0;
        else if (*letter == '+')
            actual = !(state.ParentIsRoot && state.FirstSibling);
        else
            actual = state.*conditions.at(*letter);
        if (actual != wanted)
            return false;
        wanted = true;
    }
    return true;
}

QStringList pressedAt(int expansionLevel)
{
    CommandState state;
    state.ExpansionLevel = expansionLevel;
    QStringList pressed;
    for (const ToolbarRow &row : toolbarTable) {
        if (row.pressed && row.pressed(state))
            pressed.append(toText(row.key));
    }
    return pressed;
}

QStringList pressedIn(const TextSelection &text)
{
    QStringList pressed;
    for (const ToolbarRow &row : toolbarTable) {
        if (row.pressedIn && row.pressedIn(text).value_or(false))
            pressed.append(toText(row.key));
    }
    return pressed;
}

} // namespace

class tst_ToolbarTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theButtonsStandInTheirOrderAndRunTheirRoutines();
    void everyButtonIsShownExactlyWhenItsConditionHolds_data();
    void everyButtonIsShownExactlyWhenItsConditionHolds();
    void toggleButtonsAreThoseThatCanBePressed();
    void placesAreKeptForThePaneWithTheFocus();
    void theExpansionButtonsShowTheLevel_data();
    void theExpansionButtonsShowTheLevel();
    void theFormatButtonsShowTheSelection();
    void aMixedSelectionShowsAReleasedButton();
    void theTagButtonsToolTipFollowsTheEntry();
    void everyButtonHasADrawingOfItsOwn();
    void theDrawingsTakeTheirColourOnly();
};

void tst_ToolbarTable::theButtonsStandInTheirOrderAndRunTheirRoutines()
{
    for (const ToolbarRow &row : toolbarTable) {
        const auto isRow = [&row](const Expected &expected) { return expected.key == row.key; };
        QVERIFY2(std::ranges::any_of(expectedButtons, isRow),
                 qPrintable(u"expectedButtons is to say where it stands and when it is shown: "_s + toText(row.key)));
    }
    QCOMPARE(toolbarTable.size(), std::size(expectedButtons));
    for (std::size_t row = 0; row < toolbarTable.size(); ++row) {
        const Expected &expected = expectedButtons[row];
        QCOMPARE(toText(toolbarTable[row].key), QString::fromLatin1(expected.key));
        const CommandRow &command = commandTable[toolbarTable[row].command];
        QCOMPARE(toText(command.routine.name), QString::fromLatin1(expected.routine));
        QCOMPARE(command.argument, expected.argument);
    }
}

void tst_ToolbarTable::everyButtonIsShownExactlyWhenItsConditionHolds_data()
{
    QTest::addColumn<QByteArray>("condition");
    for (const Expected &expected : expectedButtons)
        QTest::newRow(expected.key) << QByteArray(expected.shown);
}

// Tries every combination of the conditions, so that a button that depends on one more or one fewer is found.
void tst_ToolbarTable::everyButtonIsShownExactlyWhenItsConditionHolds()
{
    QFETCH(QByteArray, condition);
    const Rule shown = toolbarTable[toolbarRow(QTest::currentDataTag())].shown;
    for (unsigned combination = 0; combination < (2U << conditions.size()); ++combination) {
        CommandState state;
        unsigned bit = 0;
        for (const auto &[letter, member] : conditions)
            state.*member = (combination >> bit++) & 1U;
        state.documentCount = static_cast<int>((combination >> bit) & 1U);
        if (shown(state) != holds(condition.constData(), state))
            QFAIL(qPrintable(u"wrong for the combination %1"_s.arg(combination, 0, 2)));
    }
}

void tst_ToolbarTable::placesAreKeptForThePaneWithTheFocus()
{
    CommandState none;
    CommandState outline;
    outline.OutlineFocus = true;
    CommandState text;
    text.TextFocus = true;
    for (const CommandState &state : {none, outline, text}) {
        QVERIFY(keepsPlaces(ButtonGroup::File, state));
        QVERIFY(!keepsPlaces(ButtonGroup::Panes, state));
    }
    for (const ButtonGroup group : {ButtonGroup::Entry, ButtonGroup::NewEntry, ButtonGroup::MoveEntry,
                                    ButtonGroup::MarkEntry, ButtonGroup::ExpandEntry}) {
        QVERIFY(keepsPlaces(group, outline));
        QVERIFY(!keepsPlaces(group, text));
        QVERIFY(!keepsPlaces(group, none));
    }
    for (const ButtonGroup group :
         {ButtonGroup::Text, ButtonGroup::Characters, ButtonGroup::Paragraphs, ButtonGroup::Alignment}) {
        QVERIFY(keepsPlaces(group, text));
        QVERIFY(!keepsPlaces(group, outline));
        QVERIFY(!keepsPlaces(group, none));
    }
}

void tst_ToolbarTable::theExpansionButtonsShowTheLevel_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<QStringList>("pressed");
    QTest::newRow("none in particular") << 0 << QStringList();
    QTest::newRow("all levels") << -1 << QStringList(u"Expand all levels"_s);
    for (int level = 1; level <= 7; ++level)
        QTest::addRow("level %d", level) << level << QStringList(u"Expand to level %1"_s.arg(level));
    QTest::newRow("deeper than any button") << 8 << QStringList();
    QTest::newRow("nonsense") << -2 << QStringList();
}

void tst_ToolbarTable::theExpansionButtonsShowTheLevel()
{
    QFETCH(int, level);
    QFETCH(QStringList, pressed);
    QCOMPARE(pressedAt(level), pressed);
}

void tst_ToolbarTable::theFormatButtonsShowTheSelection()
{
    const FakePorts fakes;
    TextPane &text = ports().windows->createDocument().view()->txtRTF;
    text.setSelBold(true);
    text.setSelItalic(false);
    text.setSelUnderline(true);
    text.setSelAlignment(TextPane::Centre);
    QCOMPARE(pressedIn(text), QStringList({u"Bold Text"_s, u"Underline Text"_s, u"Centre Align Text"_s}));
    text.setSelBold(false);
    text.setSelItalic(true);
    text.setSelUnderline(false);
    text.setSelAlignment(TextPane::Left);
    QCOMPARE(pressedIn(text), QStringList({u"Italic Text"_s, u"Left Align Text"_s}));
    text.setSelAlignment(TextPane::Right);
    QCOMPARE(pressedIn(text), QStringList({u"Italic Text"_s, u"Right Align Text"_s}));
}

void tst_ToolbarTable::toggleButtonsAreThoseThatCanBePressed()
{
    for (const ToolbarRow &row : toolbarTable)
        QVERIFY2((row.kind == ButtonKind::Toggle) == (row.pressed || row.pressedIn), row.key.data());
}

void tst_ToolbarTable::aMixedSelectionShowsAReleasedButton()
{
    QCOMPARE(modMain::SetButtonValue(true), qint16(1));
    QCOMPARE(modMain::SetButtonValue(false), qint16(0));
    QCOMPARE(modMain::SetButtonValue(std::nullopt), qint16(0));
}

void tst_ToolbarTable::theTagButtonsToolTipFollowsTheEntry()
{
    const ToolbarRow &button = toolbarTable[toolbarRow("Tag Entry")];
    CommandState state;
    QCOMPARE(button.toolTip(state), u"Tag entry"_s);
    state.Tagged = true;
    QCOMPARE(button.toolTip(state), u"Untag entry"_s);
}

void tst_ToolbarTable::everyButtonHasADrawingOfItsOwn()
{
    QVERIFY(canShowToolbarIcons());
    std::set<QByteArray> drawings;
    QStringList files;
    for (const ToolbarRow &row : toolbarTable) {
        const QIcon icon = toolbarIcon(toText(row.icon), Qt::black);
        QVERIFY2(!icon.isNull(), row.key.data());
        for (const int extent : {16, 20, 24, 48}) {
            const QImage image = icon.pixmap(QSize(extent, extent), 1.0).toImage();
            QCOMPARE(image.size(), QSize(extent, extent));
        }
        const QImage image = icon.pixmap(QSize(16, 16), 1.0).toImage().convertToFormat(QImage::Format_ARGB32);
        const QByteArray bytes(reinterpret_cast<const char *>(image.constBits()), image.sizeInBytes());
        QVERIFY2(drawings.insert(bytes).second, row.key.data());
        files.append(toText(row.icon) + u".svg"_s);
    }
    files.sort();
    // No drawing lies about that no button shows.
    QCOMPARE(QDir(u":/quillery/toolbar"_s).entryList(QDir::Files, QDir::Name), files);
    QVERIFY(toolbarIcon(u"NoSuchDrawing"_s, Qt::black).isNull());
}

// Whether two colours differ by no more than what blending overlapping edges rounds away.
static bool sameButForRounding(const QColor &a, const QColor &b)
{
    return qAbs(a.red() - b.red()) <= 2 && qAbs(a.green() - b.green()) <= 2 && qAbs(a.blue() - b.blue()) <= 2;
}

void tst_ToolbarTable::theDrawingsTakeTheirColourOnly()
{
    constexpr QColor colour(10, 200, 90);
    for (const ToolbarRow &row : toolbarTable) {
        const QImage image = toolbarIcon(toText(row.icon), colour)
                                 .pixmap(QSize(48, 48), 1.0)
                                 .toImage()
                                 .convertToFormat(QImage::Format_ARGB32);
        int opaque = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor pixel = image.pixelColor(x, y);
                if (pixel.alpha() == 255) {
                    ++opaque;
                    QVERIFY2(sameButForRounding(pixel, colour), row.key.data());
                }
            }
        }
        QVERIFY2(opaque > 40, row.key.data());
    }
}

QTEST_MAIN(tst_ToolbarTable)
#include "tst_ToolbarTable.moc"
