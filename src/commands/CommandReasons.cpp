// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "commands/CommandReasons.h"

#include "commands/CommandTable.h"

#include <vector>

using namespace rules;

namespace
{

// What a rule asks for, and what is said where it is not so.
struct Need {
    Rule holds;
    const char *otherwise;
};

template <bool CommandState::*fact>
bool is(State state)
{
    return state.*fact;
}

template <bool CommandState::*fact>
bool isNot(State state)
{
    return !(state.*fact);
}

// Short words, which are other things elsewhere.
namespace need
{

// What is asked of the selected entry alone, while it is the only one.
template <bool (*holds)(State)>
bool ofOne(State state)
{
    return state.Several || holds(state);
}

// What is asked of several, each of which must have it.
template <bool SeveralSelected::*fact>
constexpr Need each{[](State state) { return !state.Several || state.Several.*fact; },
                    "one of the selected entries has nowhere to go"};

constexpr Need open{documentOpen, "no document is open"};
constexpr Need entry{is<&CommandState::Selected>, "no entry is selected"};
constexpr Need changeable{is<&CommandState::Writable>, "the document is read-only"};
constexpr Need notRoot{isNot<&CommandState::IsRoot>, "the document's topmost entry is selected"};
constexpr Need noRoot{taggable, "the document's topmost entry is selected"};
constexpr Need notFirst{ofOne<isNot<&CommandState::FirstSibling>>, "the entry is the first of its branch"};
constexpr Need notLast{ofOne<isNot<&CommandState::LastSibling>>, "the entry is the last of its branch"};
constexpr Need previous{ofOne<is<&CommandState::HasPrevious>>, "the entry is the first of its branch"};
constexpr Need notOutermost{ofOne<isNot<&CommandState::ParentIsRoot>>, "the entry is as far out as it can be"};
constexpr Need roomAbove{[](State state) { return state.Several || !(state.ParentIsRoot && state.FirstSibling); },
                         "the entry is the first of all"};
constexpr Need roomBelow{ofOne<is<&CommandState::CanMoveDown>>, "no branch follows that the entry could move to"};
constexpr Need ofOneWholeText{ofOne<isNot<&CommandState::TextWithheld>>, "the text is not shown whole"};
constexpr Need neighbours{[](State state) { return !state.Several || state.Several.joinable; },
                          "the selected entries do not stand one behind the other"};
constexpr Need children{is<&CommandState::HasChildren>, "the entry has no others inside"};
constexpr Need closed{isNot<&CommandState::Expanded>, "the entry is open already"};
constexpr Need opened{is<&CommandState::Expanded>, "the entry is closed already"};
constexpr Need copied{is<&CommandState::Copied>, "no entry was copied"};
constexpr Need tagged{is<&CommandState::TaggedExist>, "no entry is tagged"};
constexpr Need text{is<&CommandState::TextFocus>, "it works in the text, and the keyboard is not there"};
constexpr Need wholeText{isNot<&CommandState::TextWithheld>, "the text is not shown whole"};
constexpr Need savableFile{is<&CommandState::Savable>, "the document is read-only"};
constexpr Need anySavable{is<&CommandState::AnyWritable>, "no open document can be saved"};
constexpr Need undo{is<&CommandState::CanUndo>, "there is no step to take back"};
constexpr Need redo{is<&CommandState::CanRedo>, "there is no step to do again"};
constexpr Need steps{undoableOrRedoable, "there is no step to go to"};
constexpr Need behind{placesBehind, "no other entry was visited before"};
constexpr Need ahead{placesAhead, "there is no entry to go forward to"};
constexpr Need function{never, "it has no function"};

} // namespace need

struct RuleNeeds {
    Rule rule;
    std::vector<Need> needs;
};

// In the order in which they are asked for.
const std::vector<RuleNeeds> &needsOfRules()
{
    using namespace need;
    static const std::vector<RuleNeeds> all{
        {never, {function}},
        {documentOpen, {open}},
        {savable, {open, entry, savableFile}},
        {anyWritable, {open, entry, anySavable}},
        {selected, {open, entry}},
        {writable, {open, entry, changeable}},
        {writableAndSelected, {open, entry, changeable}},
        {belowRoot, {open, entry, notRoot}},
        {writableBelowRoot, {open, entry, changeable, notRoot}},
        {taggable, {open, entry, noRoot}},
        {deletable, {open, entry, changeable, noRoot}},
        {movable, {open, entry, changeable, noRoot}},
        {indentable, {open, entry, changeable, noRoot, previous, each<&SeveralSelected::indentable>}},
        {unindentable, {open, entry, changeable, noRoot, notOutermost, each<&SeveralSelected::unindentable>}},
        {movableUp, {open, entry, changeable, noRoot, roomAbove, each<&SeveralSelected::movableUp>}},
        {movableDown, {open, entry, roomBelow, each<&SeveralSelected::movableDown>}},
        {movableFirst, {open, entry, changeable, noRoot, notFirst, each<&SeveralSelected::movableFirst>}},
        {movableLast, {open, entry, changeable, noRoot, notLast, each<&SeveralSelected::movableLast>}},
        {expandable, {open, entry, children, closed}},
        {collapsible, {open, entry, children, opened}},
        {joinable, {open, entry, changeable, notLast, ofOneWholeText, neighbours}},
        {sortable, {open, entry, changeable, children}},
        {entryCopied, {open, entry, changeable, copied}},
        {taggedExist, {open, entry, tagged}},
        {inText, {open, entry, text}},
        {inWritableText, {open, entry, changeable, text}},
        {inChangeableText, {open, entry, changeable, text, wholeText}},
        {undoable, {open, undo}},
        {redoable, {open, redo}},
        {undoableOrRedoable, {open, steps}},
        {placesBehind, {behind}},
        {placesAhead, {ahead}},
    };
    return all;
}

QString reasonOf(Rule rule, const CommandState &state)
{
    if (rule(state))
        return {};
    for (const RuleNeeds &each : needsOfRules()) {
        if (each.rule != rule)
            continue;
        for (const Need &asked : each.needs) {
            if (!asked.holds(state))
                return QString::fromLatin1(asked.otherwise);
        }
    }
    return QStringLiteral("it has nothing to act on");
}

} // namespace

QString whyNot(std::string_view command, const CommandState &state)
{
    const std::size_t row = commandRow(command);
    if (row == noRow)
        return {};
    const QString above = whyNot(commandTable[row].parent, state);
    return above.isEmpty() ? reasonOf(commandTable[row].rule, state) : above;
}
