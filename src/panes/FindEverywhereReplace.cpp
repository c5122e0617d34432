// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// How what was found is replaced.

#include "panes/FindEverywhere.h"

#include "document/Document.h"
#include "document/Globals.h"
#include "document/Ports.h"
#include "find/FindReplace.h"
#include "panes/FindBox.h"
#include "panes/FindHitDelegate.h"
#include "panes/FindList.h"
#include "panes/FindReplaceRow.h"
#include "platform/WorkProgress.h"
#include "util/Procedure.h"

#include <QToolButton>

using namespace Qt::StringLiterals;

namespace
{

QString counted(int count, const QString &one, const QString &many)
{
    return count == 1 ? u"1 "_s + one : u"%L1 "_s.arg(count) + many;
}

// Where Undo takes it back is told behind that it does.
QString inWords(const FindReplace::Result &result, const QString &where)
{
    QStringList parts;
    if (result.replaced > 0)
        parts.append(u"Replaced "_s + counted(result.replaced, u"hit"_s, u"hits"_s) + u" in "_s +
                     counted(result.entries, u"entry"_s, u"entries"_s) + u" – Ctrl+Z takes it back"_s + where);
    else
        parts.append(u"Nothing was replaced"_s);
    if (result.isCancelled)
        parts.append(u"cancelled before the rest"_s);
    if (result.changed > 0)
        parts.append(counted(result.changed, u"was"_s, u"were"_s) + u" changed meanwhile and left alone"_s);
    if (result.withheld > 0)
        parts.append(counted(result.withheld, u"is"_s, u"are"_s) + u" in texts that cannot be read whole"_s);
    if (result.tooLong > 0)
        parts.append(counted(result.tooLong, u"would"_s, u"would"_s) + u" make its label or text too long"_s);
    if (result.readOnly > 0)
        parts.append(counted(result.readOnly, u"is"_s, u"are"_s) + u" in a document that is read-only"_s);
    return parts.join(u"; "_s);
}

void add(FindReplace::Result &sum, const FindReplace::Result &each)
{
    sum.replaced += each.replaced;
    sum.entries += each.entries;
    sum.changed += each.changed;
    sum.withheld += each.withheld;
    sum.tooLong += each.tooLong;
    sum.readOnly += each.readOnly;
    sum.isCancelled = sum.isCancelled || each.isCancelled;
}

} // namespace

void FindEverywhere::connectReplacing()
{
    connect(m_replacing, &QToolButton::toggled, this, [this](bool isOpen) {
        m_replacing->setArrowType(isOpen ? Qt::DownArrow : Qt::RightArrow);
        m_replaceRow->setVisible(isOpen);
        takeReplacing();
        if (isOpen)
            m_replaceRow->widgets().front()->setFocus();
    });
    connect(m_replaceRow, &FindReplaceRow::edited, this, &FindEverywhere::takeReplacing);
    connect(m_replaceRow, &FindReplaceRow::walked, this, &FindEverywhere::walk);
    connect(m_replaceRow, &FindReplaceRow::allChecked, m_hits, &FindHitsModel::setAllChecked);
    connect(m_replaceRow, &FindReplaceRow::applied, this, &FindEverywhere::replace);
    connect(m_hits, &FindHitsModel::checksChanged, this, &FindEverywhere::showReplacing);
}

// Each hit shows what it would become.
void FindEverywhere::takeReplacing()
{
    const bool isOpen = m_replacing->isChecked();
    if (isOpen) {
        const FindReplace replace(m_hits->query(), m_replaceRow->replacement());
        m_delegate->setReplacement(replace.error().isEmpty()
                                       ? [replace](const FindHit &hit) { return replace.after(hit); }
                                       : FindHitDelegate::Replacement());
    } else {
        m_delegate->setReplacement({});
    }
    m_hits->setCheckable(isOpen);
    m_list->viewport()->update();
    showReplacing();
}

void FindEverywhere::showReplacing()
{
    if (!m_replacing->isChecked())
        return;
    const FindReplace replace(m_hits->query(), m_replaceRow->replacement());
    const FindHitsModel::Counts counts = m_hits->counts();
    QStringList readOnly;
    bool isAnyWritable = false;
    for (const Document *document : m_hits->documents()) {
        if (document->bReadOnlyAsSeen())
            readOnly.append(shortNameOf(*document));
        else
            isAnyWritable = true;
    }
    QString note = replace.error();
    if (note.isEmpty() && !readOnly.isEmpty())
        note = readOnly.size() == 1 ? u"%1 is read-only and stays as it is."_s.arg(readOnly.front())
                                    : u"%1 are read-only and stay as they are."_s.arg(readOnly.join(u", "_s));
    m_replaceRow->setNote(note);
    const bool isPossible =
        replace.error().isEmpty() && isAnyWritable && counts.isFinished && !m_hits->isStale() && !bBusy;
    m_replaceRow->setChecked(m_hits->checkedCount(), counts.hits, m_hits->checkedOfAll(), isPossible);
}

void FindEverywhere::replace()
{
    procedure("FindEverywhere replace", [this] {
        if (m_rest.isActive())
            search();
        if (m_hits->isStale() || bBusy)
            return;
        escape();
        m_box->remember();
        m_hits->refresh();
        const FindReplace replace(m_hits->query(), m_replaceRow->replacement());
        FindReplace::Result sum;
        const auto progress = workProgress(u"Replacing…"_s, window());
        int done = 0;
        const auto all = static_cast<int>(m_hits->checkedCount());
        std::vector<const Document *> changed;
        for (Document *document : m_hits->documents()) {
            const std::vector<FindReplace::Choice> choices = m_hits->choicesOf(*document);
            if (choices.empty())
                continue;
            const FindReplace::Result result = replace.apply(*document, choices, [&](int doneHere, int) {
                // Whatever comes meanwhile, nobody is to select or to save anything.
                const BusyScope busy;
                return progress(done + doneHere, all);
            });
            for (const FindReplace::Choice &choice : choices)
                done += choice.count;
            add(sum, result);
            if (result.replaced > 0)
                changed.push_back(document);
            document->sayOfStep(inWords(result, {}));
            if (result.isCancelled)
                break;
        }
        const bool isHere = changed.empty() || (changed.size() == 1 && changed.front() == m_active);
        const QString words = inWords(sum, isHere               ? QString()
                                           : changed.size() > 1 ? u" in each of %1 documents"_s.arg(changed.size())
                                                                : u" in "_s + shortNameOf(*changed.front()));
        if (m_active)
            m_active->sayOfStep(words);
        say(words);
        // From there the keys of undo are the document's.
        m_list->setFocus();
    });
}
