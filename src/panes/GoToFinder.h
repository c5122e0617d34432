// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "commands/CommandState.h"
#include "document/PlaceTrail.h"
#include "find/EntryNames.h"

#include <QStringList>

#include <functional>
#include <map>
#include <memory>
#include <string_view>
#include <vector>

class Dispatcher;

enum class GoToKind { Entry, Command, Document, File };

// What a row of the list leads to.
struct GoToTarget {
    GoToKind kind = GoToKind::Entry;
    // Of an entry, or a document itself.
    Place place = {};
    std::string_view command = {};
    // The place of a file in the list of recent files, from 1.
    int file = 0;
};

struct GoToRow {
    GoToTarget target;
    // As it is shown, and the offsets of the characters in it that were typed.
    QString name;
    std::vector<int> marks = {};
    // Where it stands: the entries above, the menu, the folder.
    QString way = {};
    // The key of a command.
    QString key = {};
    // Why it cannot be gone to now, as the end of a sentence; empty where it can.
    QString whyNot = {};

    // All of it in words, for who hears the row.
    QString spoken() const;
};

// The labels of documents' entries, kept from one time to the next.
using KnownEntryNames = std::map<const Document *, EntryNames>;

// What there is to go to.
struct GoToWorld {
    Document *active = nullptr;
    // In the order in which they were opened.
    std::vector<Document *> documents = {};
    // By their places, the latest first.
    QStringList recentFiles = {};
    // The entries where one has been, the latest first.
    std::vector<Place> visited = {};
    const Dispatcher &dispatcher;
};

// Finds entries, commands, documents and recent files by some of their letters. Everything stays as it is while this
// lives.
class GoToFinder
{
public:
    // A sign in front that says what is looked for, and nothing else.
    static constexpr char16_t commandSign = u'>';
    static constexpr char16_t documentSign = u'@';
    static constexpr char16_t entrySign = u'#';

    GoToFinder(const GoToWorld &world, KnownEntryNames &known);
    ~GoToFinder();

    // Looks for what was typed. Nothing typed finds where one has been, and what was opened lately.
    void find(const QString &typed);

    int count() const { return static_cast<int>(m_found.size()); }

    // How many there are in all, those beyond the list too.
    int total() const { return m_total; }

    GoToRow row(int place) const;

private:
    // Names of one kind, and what each leads to.
    struct Source;

    struct Found {
        const Source *source;
        int place;
        int rank;
    };

    void addEntries(const Document &document, const EntryNames &names, bool isActive);
    void addCommands();
    void addDocuments();
    void addVisited();
    Source &addSource(GoToKind kind, int handicap);
    QString wayOf(const GoToTarget &target) const;

    const GoToWorld m_world;
    const CommandState m_state;
    std::vector<std::unique_ptr<Source>> m_sources;
    std::unique_ptr<Source> m_visited;
    NamePattern m_pattern;
    std::vector<Found> m_found;
    int m_total = 0;
};
