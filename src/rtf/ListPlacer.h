// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "rtf/Looks.h"
#include "rtf/State.h"
#include "rtf/Tables.h"

#include <QHash>

#include <array>
#include <optional>

class QTextCursor;
class QTextDocument;
class QTextList;

namespace rtf
{

// Finds the list of a text document that a paragraph belongs to. Numbers go on through a whole list; a deeper level
// begins anew below each paragraph of a higher one.
class ListPlacer
{
public:
    // Lists already in the document keep to themselves.
    explicit ListPlacer(const QTextDocument &document);

    // What a paragraph's list looks like, none if it is in no list; the indents that come from the list are put in.
    std::optional<ListLook> look(ParaState &para, const Tables &tables) const;

    // The list so far, null if the paragraph begins one or a long one goes on in another; call join() then.
    QTextList *find(const ParaState &para, bool isInList);

    // Whether the last paragraph for which find() found none goes on with a long list.
    bool goesOn() const { return m_goesOn; }

    // The paragraph is in this list from now on.
    void join(const ParaState &para, QTextList *list);

    // A number that no other list has, for one that find() did not find.
    int group(const ParaState &para);

private:
    struct Levels {
        int group = 0;
        std::array<QTextList *, 9> lists{};
    };

    Levels &levels(const ParaState &para);

    int m_groups = 0;
    qint64 m_looks = 0; // at paragraphs of lists of numbers
    bool m_goesOn = false;
    QHash<int, Levels> m_lists;
    qint32 m_legacyPlace = 0; // of the paragraph before
    Levels m_legacy;
};

} // namespace rtf
