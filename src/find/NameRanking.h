// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "find/LetterPattern.h"

#include <optional>
#include <vector>

// Names that can be looked for by some of their letters, each of which may stand below another one of them.
class NameList
{
public:
    struct Name {
        QString name;
        QString folded;
        quint64 bits = 0;
        // The place in the list of the one that it stands below, which comes before it; -1 for none.
        int above = -1;
        // Whether it is looked for itself, and not only names the way to others.
        bool isSought = true;
    };

    void reserve(int count) { m_names.reserve(static_cast<std::size_t>(count)); }

    void add(const QString &name, int above = -1, bool isSought = true);
    // The same of a name that is known already.
    void add(Name known);

    int count() const { return static_cast<int>(m_names.size()); }

    const Name &at(int place) const { return m_names[static_cast<std::size_t>(place)]; }

private:
    std::vector<Name> m_names;
};

// What is typed to find names: letters of the name, and before it, each with a "/" or a ">" behind, those of names that
// it stands below, from the outermost on. A name in which all of it stands as it was typed is found as well.
class NamePattern
{
public:
    NamePattern() = default;
    explicit NamePattern(QStringView typed);

    // Whether nothing is looked for.
    bool isEmpty() const { return m_name.isEmpty() && m_way.empty(); }

    const LetterPattern &name() const { return m_name; }

    // All of it, where there is a way, which the name itself may spell out.
    const LetterPattern &whole() const { return m_whole; }

    const std::vector<LetterPattern> &way() const { return m_way; }

    // Whether it finds nothing that the other does not.
    bool narrows(const NamePattern &other) const;
    bool hasWayOf(const NamePattern &other) const;

    // Where its letters stand in a name, as offsets in the folded name.
    std::vector<int> places(QStringView folded) const;

private:
    std::vector<LetterPattern> m_way;
    LetterPattern m_name;
    LetterPattern m_whole;
};

// Finds names of a list, the best first. What is typed behind what was looked for before is looked for only in what
// that found.
class NameRanking
{
public:
    // As many as a person would look through, and more.
    static constexpr int mostFound = 200;

    struct Found {
        // In the list.
        int place;
        int rank;

        bool operator==(const Found &) const = default;
    };

    // The list must stay as it is for as long as this lives.
    explicit NameRanking(const NameList &names)
        : m_names(names)
    {
    }

    // The best, and of equals those that come first in the list.
    const std::vector<Found> &find(const NamePattern &pattern);

    // How many there are in all.
    int count() const { return static_cast<int>(m_matching.size()); }

    // How many names the last call looked at.
    int lookedAt() const { return m_lookedAt; }

private:
    void goTheWay(const NamePattern &pattern);
    std::optional<int> rank(const NamePattern &pattern, const NameList::Name &name) const;

    const NameList &m_names;
    std::optional<NamePattern> m_pattern;
    // What matches it, in the order of the list.
    std::vector<Found> m_matching;
    std::vector<Found> m_best;
    // For each name and each part of the way, from none to all, what the names from the outermost to this one come to
    // that stand for them; below 0 where none do.
    std::vector<int> m_ways;
    int m_lookedAt = 0;
};
