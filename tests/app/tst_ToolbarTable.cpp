// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/TableText.h"
#include "app/ToolbarIcon.h"
#include "app/ToolbarRules.h"
#include "support/FakePorts.h"

#include <QDir>
#include <QImage>
#include <QTest>

#include <map>
#include <set>

using namespace Qt::StringLiterals;

namespace
{

// The toolbar as a user meets it: key, what a click runs, and when the button is shown. A condition is a run of the
// letters below, "!" before what must not hold. The table of the program is compared with it line by line.
struct Expected {
    const char *key;
    Routine routine;
    int argument;
    const char *shown;
};

using enum Routine;

const Expected expectedButtons[] = {
    {"New File", FileNew, 0, ""},
    {"Open File", FileOpen, 0, ""},
    {"Save File", FileSave, 0, "DV"},
    {"Print File", FilePrint, 0, "D"},
    {"Preview File", FilePrintPreview, 0, "D"},
    {"Go To Outline", ViewGoToOutline, 0, "T"},
    {"Go To Text", ViewGoToText, 0, "O"},
    {"Copy Entry", OutlineCopy, 0, "O"},
    {"Paste Entry", OutlinePaste, 0, "O"},
    {"Delete Entry", OutlineDelete, 0, "OS!R"},
    {"Print Entry", FilePrint, 1, "D"},
    {"Preview Entry", FilePrintPreview, 1, "D"},
    {"New Entry Above", OutlineInsertAbove, 0, "O!R"},
    {"New Entry Below", OutlineInsertBelow, 0, "O"},
    {"New Entry As Child", OutlineInsertChild, 0, "O"},
    {"Move Entry Up", OutlineMoveUp, 0, "OSW!R+"},
    {"Move Entry Down", OutlineMoveDown, 0, "OM"},
    {"Move Entry First", OutlineMoveFirst, 0, "OSW!R!1"},
    {"Move Entry Last", OutlineMoveLast, 0, "OSW!R!9"},
    {"Indent Entry", OutlineIndent, 0, "OSW!RP"},
    {"Unindent Entry", OutlineUnindent, 0, "OSW!R!Q"},
    {"Tag Entry", OutlineTaggedEntry, 0, "O!R"},
    {"Sort Entry", OutlineSortCurrent, 0, "OH"},
    {"Expand Entry", OutlineExpand, 0, "OH!E"},
    {"Contract Entry", OutlineCollapse, 0, "OHE"},
    {"Expand to level 1", OutlineExpandToLevel, 1, "O"},
    {"Expand to level 2", OutlineExpandToLevel, 2, "O"},
    {"Expand to level 3", OutlineExpandToLevel, 3, "O"},
    {"Expand to level 4", OutlineExpandToLevel, 4, "O"},
    {"Expand to level 5", OutlineExpandToLevel, 5, "O"},
    {"Expand to level 6", OutlineExpandToLevel, 6, "O"},
    {"Expand to level 7", OutlineExpandToLevel, 7, "O"},
    {"Expand all levels", OutlineExpandAll, 0, "O"},
    {"Cut Text", EditCut, 0, "TW"},
    {"Copy Text", EditCopy, 0, "T"},
    {"Paste Text", EditPaste, 0, "TW"},
    {"Delete Text", EditDelete, 0, "TW"},
    {"Bold Text", EditFormatBold, 0, "TW"},
    {"Italic Text", EditFormatItalic, 0, "TW"},
    {"Underline Text", EditFormatUnderline, 0, "TW"},
    {"Bullet Text", EditFormatBullet, 0, "TW"},
    {"Indent Text", EditFormatIndent, 0, "TW"},
    {"Unindent Text", EditFormatUnindent, 0, "TW"},
    {"Left Align Text", EditFormatLeft, 0, "TW"},
    {"Centre Align Text", EditFormatCentre, 0, "TW"},
    {"Right Align Text", EditFormatRight, 0, "TW"},
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

const ButtonRule *ruleOf(std::string_view key)
{
    for (const auto rules : {menuEnableButtons(), menuEnableDynamicButtons()}) {
        for (const ButtonRule &rule : rules) {
            if (rule.button == key)
                return &rule;
        }
    }
    return nullptr;
}

QStringList pressedOf(std::span<const PressedButton> buttons)
{
    QStringList pressed;
    for (const PressedButton &each : buttons) {
        if (each.pressed)
            pressed.append(toText(each.button));
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
    void menuEnableSetsTheSevenThatDependOnOpenDocuments();
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
    QCOMPARE(toolbarTable.size(), std::size(expectedButtons));
    for (std::size_t row = 0; row < toolbarTable.size(); ++row) {
        const Expected &expected = expectedButtons[row];
        QCOMPARE(toText(toolbarTable[row].key), QString::fromLatin1(expected.key));
        QVERIFY2(toolbarTable[row].routine == expected.routine, expected.key);
        QCOMPARE(toolbarTable[row].argument, expected.argument);
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
    const ButtonRule *rule = ruleOf(QTest::currentDataTag());
    QVERIFY(rule);
    for (unsigned combination = 0; combination < (2U << conditions.size()); ++combination) {
        CommandState state;
        unsigned bit = 0;
        for (const auto &[letter, member] : conditions)
            state.*member = (combination >> bit++) & 1U;
        state.documentCount = static_cast<int>((combination >> bit) & 1U);
        if (rule->shown(state) != holds(condition.constData(), state))
            QFAIL(qPrintable(u"wrong for the combination %1"_s.arg(combination, 0, 2)));
    }
}

void tst_ToolbarTable::menuEnableSetsTheSevenThatDependOnOpenDocuments()
{
    QStringList set;
    for (const ButtonRule &rule : menuEnableButtons())
        set.append(toText(rule.button));
    QCOMPARE(set, QStringList({u"New File"_s, u"Open File"_s, u"Save File"_s, u"Print File"_s, u"Preview File"_s,
                               u"Print Entry"_s, u"Preview Entry"_s}));
    QCOMPARE(menuEnableDynamicButtons().size(), 39U);
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
    const auto buttons = pressedExpansion(level);
    QCOMPARE(pressedOf(buttons), pressed);
    for (const PressedButton &each : buttons)
        QCOMPARE(toolbarTable[toolbarRow(each.button)].kind, ButtonKind::Toggle);
}

void tst_ToolbarTable::theFormatButtonsShowTheSelection()
{
    const FakePorts fakes;
    TextPane &text = ports().windows->createDocument().txtRTF;
    text.setSelBold(true);
    text.setSelItalic(false);
    text.setSelUnderline(true);
    text.setSelAlignment(TextPane::Centre);
    QCOMPARE(pressedOf(pressedFormats(text)),
             QStringList({u"Bold Text"_s, u"Underline Text"_s, u"Centre Align Text"_s}));
    text.setSelBold(false);
    text.setSelItalic(true);
    text.setSelUnderline(false);
    text.setSelAlignment(TextPane::Left);
    QCOMPARE(pressedOf(pressedFormats(text)), QStringList({u"Italic Text"_s, u"Left Align Text"_s}));
    text.setSelAlignment(TextPane::Right);
    QCOMPARE(pressedOf(pressedFormats(text)), QStringList({u"Italic Text"_s, u"Right Align Text"_s}));
    for (const PressedButton &each : pressedFormats(text))
        QCOMPARE(toolbarTable[toolbarRow(each.button)].kind, ButtonKind::Toggle);
}

void tst_ToolbarTable::aMixedSelectionShowsAReleasedButton()
{
    QCOMPARE(modMain::SetButtonValue(true), qint16(1));
    QCOMPARE(modMain::SetButtonValue(false), qint16(0));
    QCOMPARE(modMain::SetButtonValue(std::nullopt), qint16(0));
}

void tst_ToolbarTable::theTagButtonsToolTipFollowsTheEntry()
{
    QCOMPARE(tagEntryToolTip(true), u"Untag entry"_s);
    QCOMPARE(tagEntryToolTip(false), u"Tag entry"_s);
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
