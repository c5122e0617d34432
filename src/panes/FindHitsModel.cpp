// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "panes/FindHitsModel.h"

#include "document/Document.h"
#include "find/FindRun.h"
#include "formats/OutlineWalk.h"
#include "model/ShownLabel.h"

#include <QFileInfo>

#include <algorithm>
#include <unordered_map>

using namespace Qt::StringLiterals;

namespace
{

// How long what was found before may still be shown, and how long changes are gathered, in milliseconds.
constexpr int longestStale = 250;
constexpr int changesGathered = 50;

} // namespace

FindHitsModel::FindHitsModel(QObject *parent)
    : QAbstractListModel(parent)
{
    m_refreshing.setSingleShot(true);
    m_refreshing.setInterval(changesGathered);
    connect(&m_refreshing, &QTimer::timeout, this, &FindHitsModel::refresh);
    m_dropping.setSingleShot(true);
    m_dropping.setInterval(longestStale);
    connect(&m_dropping, &QTimer::timeout, this, &FindHitsModel::dropStale);
}

FindHitsModel::~FindHitsModel() = default;

void FindHitsModel::search(const std::vector<Document *> &documents, const FindQuery &query)
{
    for (const auto &section : m_sections)
        section->run.reset();
    m_query = query;
    m_next.clear();
    if (!query.isEmpty()) {
        for (Document *document : documents) {
            m_next.push_back(std::make_unique<Section>());
            listenTo(*m_next.back(), *document);
        }
    }
    m_isStale = true;
    m_isNextNamed = documents.size() > 1;
    if (m_next.empty())
        dropStale();
    else
        m_dropping.start();
    Q_EMIT counted();
}

void FindHitsModel::listenTo(Section &section, Document &document)
{
    section.document = &document;
    section.run = std::make_unique<FindRun>(document, m_query);
    FindRun *run = section.run.get();
    connect(run, &FindRun::found, this, [this, &section](const std::vector<EntryHits> &entries) {
        dropStale();
        append(section, entries);
    });
    connect(run, &FindRun::finished, this, &FindHitsModel::noteFinished);
    connect(run, &FindRun::countsChanged, this, &FindHitsModel::counted);
    const auto note = [this, &section](EntryId entry, const EntryHits &hits) {
        section.due[entry] = hits;
        m_refreshing.start();
    };
    connect(run, &FindRun::changed, this, note);
    connect(run, &FindRun::gone, this, [note](EntryId entry) { note(entry, EntryHits()); });
    connect(run, &FindRun::orderChanged, this, [this, &section] {
        section.isOrderDue = true;
        m_refreshing.start();
    });
    connect(&document.tree, &EntryTree::labelChanged, run, [this] {
        if (rowCount() > 0)
            Q_EMIT dataChanged(index(0), index(rowCount() - 1));
    });
    connect(&document, &QObject::destroyed, this, &FindHitsModel::dropDocument, Qt::UniqueConnection);
}

// By then the document is none any more.
void FindHitsModel::dropDocument(const QObject *)
{
    const auto isGone = [](const std::unique_ptr<Section> &section) { return !section->document; };
    std::erase_if(m_next, isGone);
    if (std::ranges::none_of(m_sections, isGone))
        return;
    beginResetModel();
    std::erase_if(m_sections, isGone);
    count();
    endResetModel();
    Q_EMIT counted();
}

void FindHitsModel::dropStale()
{
    if (!m_isStale)
        return;
    m_dropping.stop();
    beginResetModel();
    m_sections = std::exchange(m_next, {});
    m_isStale = false;
    m_isEachNamed = m_isNextNamed;
    count();
    endResetModel();
}

void FindHitsModel::noteFinished()
{
    const auto isRunning = [](const auto &section) { return section->run && !section->run->isFinished(); };
    if (std::ranges::any_of(m_isStale ? m_next : m_sections, isRunning))
        return;
    dropStale();
    Q_EMIT counted();
    Q_EMIT finished();
}

int FindHitsModel::rowsOf(const Group &group)
{
    const int listed = static_cast<int>(group.found.hits.size());
    return 1 + listed + (group.found.count > listed ? 1 : 0);
}

int FindHitsModel::headRows(const Section &section) const
{
    return m_isEachNamed && !section.groups.empty() ? 1 : 0;
}

void FindHitsModel::count()
{
    int row = 0;
    for (const auto &section : m_sections) {
        section->firstRow = row;
        row += headRows(*section);
        for (Group &group : section->groups) {
            group.firstRow = row;
            row += rowsOf(group);
        }
        section->rows = row - section->firstRow;
    }
}

void FindHitsModel::append(Section &section, const std::vector<EntryHits> &entries)
{
    if (entries.empty())
        return;
    refresh();
    // The document's own row comes with its first entry.
    const bool isFirst = section.groups.empty();
    const int before = section.rows;
    std::vector<Group> added;
    int rows = isFirst && m_isEachNamed ? 1 : 0;
    for (const EntryHits &each : entries) {
        added.push_back({each});
        rows += rowsOf(added.back());
    }
    const int first = section.firstRow + before;
    beginInsertRows({}, first, first + rows - 1);
    section.groups.insert(section.groups.end(), std::make_move_iterator(added.begin()),
                          std::make_move_iterator(added.end()));
    count();
    endInsertRows();
    Q_EMIT counted();
}

// What changes at many places is laid out once; what is selected stays with what it stands for.
void FindHitsModel::refresh()
{
    m_refreshing.stop();
    const auto isDue = [](const auto &section) { return !section->due.empty() || section->isOrderDue; };
    if (std::ranges::none_of(m_sections, isDue))
        return;
    Q_EMIT layoutAboutToBeChanged();
    const QModelIndexList kept = persistentIndexList();
    std::vector<Place> places;
    for (const QModelIndex &each : kept)
        places.push_back(placeOf(each.row()));
    for (const auto &section : m_sections)
        takeDue(*section);
    count();
    QModelIndexList now;
    for (const Place &place : places) {
        const int row = rowOf(place);
        now.append(row < 0 ? QModelIndex() : index(row));
    }
    changePersistentIndexList(kept, now);
    Q_EMIT layoutChanged();
    Q_EMIT counted();
    noteChecks();
}

void FindHitsModel::takeDue(Section &section)
{
    for (auto group = section.groups.begin(); group != section.groups.end() && !section.due.empty(); ++group) {
        const auto due = section.due.find(group->found.entry);
        if (due == section.due.end())
            continue;
        group->found = std::move(due->second);
        if (!group->unchecked.empty())
            group->unchecked.resize(static_cast<std::size_t>(group->found.count));
        section.due.erase(due);
    }
    std::erase_if(section.groups, [](const Group &group) { return group.found.count == 0; });
    for (auto &[entry, hits] : section.due) {
        if (hits.count == 0)
            continue;
        section.groups.push_back({std::move(hits)});
        section.isOrderDue = true;
    }
    section.due.clear();
    if (std::exchange(section.isOrderDue, false))
        sort(section);
}

void FindHitsModel::sort(Section &section)
{
    if (!section.document)
        return;
    std::unordered_map<EntryId, int> order;
    const Entry *root = section.document->tree.root();
    int number = 0;
    for (const Entry *entry = root; entry; entry = nextInOutline(entry, root))
        order[entry->id()] = number++;
    std::ranges::stable_sort(section.groups, {}, [&order](const Group &group) { return order[group.found.entry]; });
}

std::pair<const FindHitsModel::Section *, const FindHitsModel::Group *> FindHitsModel::find(int row) const
{
    const auto behind = std::ranges::upper_bound(m_sections, row, {}, [](const auto &each) { return each->firstRow; });
    if (behind == m_sections.begin())
        return {nullptr, nullptr};
    // Sections without rows begin where the next one does.
    const Section &section = **std::prev(behind);
    if (row < section.firstRow + headRows(section))
        return {&section, nullptr};
    const auto next = std::ranges::upper_bound(section.groups, row, {}, &Group::firstRow);
    return {&section, next == section.groups.begin() ? nullptr : &*std::prev(next)};
}

FindHitsModel::Row FindHitsModel::row(int row) const
{
    const auto [section, group] = find(row);
    if (!section)
        return {};
    if (!group)
        return {RowKind::Document, section->document, nullptr, 0};
    const int number = row - group->firstRow - 1;
    const RowKind kind = number < 0                                            ? RowKind::Entry
                         : number < static_cast<int>(group->found.hits.size()) ? RowKind::Hit
                                                                               : RowKind::More;
    return {kind, section->document, &group->found, std::max(number, 0)};
}

FindHitsModel::Place FindHitsModel::placeOf(int row) const
{
    const Row found = this->row(row);
    return {found.document, found.found ? found.found->entry : EntryId::None, found.kind, found.number};
}

int FindHitsModel::rowOf(const Place &place) const
{
    for (const auto &section : m_sections) {
        if (section->document != place.document || section->groups.empty())
            continue;
        if (place.kind == RowKind::Document)
            return headRows(*section) > 0 ? section->firstRow : -1;
        const auto group =
            std::ranges::find(section->groups, place.entry, [](const Group &each) { return each.found.entry; });
        if (group == section->groups.end())
            return -1;
        const int hits = static_cast<int>(group->found.hits.size());
        return group->firstRow + (place.kind == RowKind::Entry ? 0 : 1 + std::min(place.number, hits - 1));
    }
    return -1;
}

FindHitsModel::Counts FindHitsModel::counts() const
{
    Counts counts;
    for (const auto &section : m_isStale ? m_next : m_sections) {
        if (!section->run)
            continue;
        counts.hits += section->run->hitCount();
        counts.entries += section->run->entryCount();
        counts.unreadable += section->run->unreadableCount();
        counts.givenUp += section->run->givenUpCount();
        counts.isFinished = counts.isFinished && section->run->isFinished();
    }
    return counts;
}

qint64 FindHitsModel::countOf(int row) const
{
    const auto [section, group] = find(row);
    return group ? group->found.count : section && section->run ? section->run->hitCount() : 0;
}

int FindHitsModel::hitRow(int from, int step) const
{
    const int rows = rowCount();
    for (int each = from + step; each >= 0 && each < rows; each += step) {
        if (row(each).kind == RowKind::Hit)
            return each;
    }
    return -1;
}

void FindHitsModel::tellMore(int row)
{
    const auto [section, group] = find(row);
    if (group && section->run)
        section->run->tellMore(group->found.entry);
}

std::vector<Document *> FindHitsModel::documents() const
{
    std::vector<Document *> found;
    for (const auto &section : m_sections) {
        if (section->document && !section->groups.empty())
            found.push_back(section->document);
    }
    return found;
}

int FindHitsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() || m_sections.empty() ? 0 : m_sections.back()->firstRow + m_sections.back()->rows;
}

QString FindHitsModel::text(const Row &row) const
{
    switch (row.kind) {
    case RowKind::Document:
        return row.document ? shortNameOf(*row.document) : QString();
    case RowKind::Entry: {
        const Entry *entry = row.document ? row.document->tree.entry(row.found->entry) : nullptr;
        return entry ? briefLabel(entry->label(), limits::shownLabel) : QString();
    }
    case RowKind::Hit:
        return row.hit()->line;
    case RowKind::More:
        return u"%L1 more"_s.arg(row.found->count - static_cast<int>(row.found->hits.size()));
    }
    return {};
}

QString FindHitsModel::spoken(const Row &row) const
{
    switch (row.kind) {
    case RowKind::Document:
        return u"Document "_s + text(row);
    case RowKind::Entry: {
        const QString path = row.document ? pathOf(*row.document, row.found->entry) : QString();
        return text(row) + (row.found->count == 1 ? u", 1 hit"_s : u", %L1 hits"_s.arg(row.found->count)) +
               (path.isEmpty() ? QString() : u", in "_s + path);
    }
    case RowKind::Hit:
        return (row.hit()->inLabel ? u"Label: "_s : QString()) + row.hit()->line.simplified();
    case RowKind::More:
        return text(row);
    }
    return {};
}

QVariant FindHitsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const Row row = this->row(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return text(row);
    case Qt::AccessibleTextRole:
        return spoken(row);
    case Qt::ToolTipRole:
        if (row.kind == RowKind::Entry && row.document) {
            const QString path = pathOf(*row.document, row.found->entry);
            return path.isEmpty() ? text(row) : path + u" ▸ "_s + text(row);
        }
        return row.kind == RowKind::Document && row.document ? row.document->m_sFile : QString();
    case Qt::CheckStateRole:
        return m_isCheckable ? QVariant(checkedAt(index.row())) : QVariant();
    default:
        return {};
    }
}

QString shortNameOf(const Document &document)
{
    return document.m_sFile.isEmpty() ? document.caption() : QFileInfo(document.m_sFile).fileName();
}

QString pathOf(const Document &document, EntryId entry, PathFrom from)
{
    constexpr qsizetype mostNamed = 12;
    QStringList labels;
    const Entry *found = document.tree.entry(entry);
    for (const Entry *each = found ? found->parent() : nullptr; each && labels.size() < mostNamed;
         each = each->parent())
        if (from == PathFrom::Root || !each->isRoot())
            labels.prepend(briefLabel(each->label()));
    return labels.join(u" ▸ "_s);
}

QString inWords(const FindHitsModel::Counts &counts)
{
    const QString hits = counts.hits == 1 ? u"1 hit"_s : u"%L1 hits"_s.arg(counts.hits);
    const QString entries = counts.entries == 1 ? u"1 entry"_s : u"%L1 entries"_s.arg(counts.entries);
    QString words = counts.hits == 0 ? u"Nothing found"_s : hits + u" in "_s + entries;
    if (!counts.isFinished)
        words = counts.hits == 0 ? u"Looking…"_s : words + u" so far…"_s;
    if (counts.unreadable > 0)
        words += counts.unreadable == 1 ? u"; 1 text could not be read"_s
                                        : u"; %L1 texts could not be read"_s.arg(counts.unreadable);
    if (counts.givenUp > 0)
        words += counts.givenUp == 1 ? u"; 1 text was too much work for the expression"_s
                                     : u"; %L1 texts were too much work for the expression"_s.arg(counts.givenUp);
    return words;
}
