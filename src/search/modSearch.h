// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <functional>

class Document;
class Entry;
class SettingsStore;

// Is told how much of a work is done, of how much in all (0 where nobody knows), and answers false when the user wants
// it to be stopped.
using SearchProgress = std::function<bool(int done, int all)>;

// What the search asks of the program around it.
struct SearchPorts {
    SettingsStore *settings = nullptr;
    // Shows the dialog and returns when it is closed.
    std::function<void()> showDialog;
    std::function<void()> saveSettings;
    // Shows how far a work is, as long as what is returned lives; without it nobody sees it or stops it.
    std::function<SearchProgress(const QString &what)> showProgress = {};
};

SearchPorts &searchPorts();

// What is searched for and how. It outlives the dialog and is not kept between runs.
inline QString g_sSearchFind;
inline QString g_sSearchReplace;
// The scope as the dialog shows it, and its place in the list as a decimal number; see searchScope().
inline QString g_sSearchWhere;
inline QString g_sSearchScope;
inline bool g_bSearchMatchCase = false;
inline bool g_bSearchWholeWord = false;
inline bool g_bSearchBackwards = false;

// 0 no search, 1 finding, 2 finding and replacing. While it is not 0, what happens in the text pane is no edit by the
// user: the search itself stores what it changes.
inline qint16 g_iSearchMode = 0;

// What is searched through. None is what no place in the dialog's list stands for.
enum class SearchScope { None = -1, CurrentText, AllTexts, AllNames };

SearchScope searchScope();

// Finding and replacing in the active document. Every routine does nothing, and finds nothing, without one.
namespace modSearch
{

// The commands of the Search menu. The first two show the dialog, filled with the selected text; the third repeats the
// last search without it.
void SearchFind();
void SearchReplace();
void SearchRepeat();

// Finds the next match of the chosen scope; says so when there is none.
bool SearchPerform();
// Replaces the match that was found last.
void SearchPerformReplace();
// Replaces and finds until nothing is found.
void SearchReplaceAll();

// Whether what is put in holds what is searched for, so that replacing would find it again.
bool replacementHoldsExpression();

// Searches the text pane from its selection on.
bool SearchText();
// One entry's turn in the search through all texts: its text stands in the pane.
bool SearchAllText();
bool SearchAllTexts();
// The last match before `limit` and the first at or behind it, as offsets in the pane's text; -1 for none.
void SearchTextBackwards(int options, int limit, int &next, int &previous);
// Whether a label matches; only its first occurrence counts.
bool SearchLabel(const QString &label, Qt::CaseSensitivity compare);
bool SearchLabels();
void SearchReplaceText();
void SearchReplaceLabel();
// Selects and reveals the entry that holds a match, whose text the pane shows already.
void SearchNodeSelect(Entry *entry);

} // namespace modSearch
