// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "panes/GoToFinder.h"

#include "commands/CommandKeys.h"
#include "commands/CommandReasons.h"
#include "commands/CommandTable.h"
#include "commands/Dispatcher.h"
#include "document/Document.h"
#include "find/Folding.h"
#include "model/ShownLabel.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// As many entries where one has been as one would remember.
constexpr std::size_t mostVisited = 12;

// Between the names of a way.
const QString wayMark = u" ▸ "_s;

// What stands closer to what one does is meant more often: these are taken from the rank of the rest.
constexpr int commandHandicap = 2 * LetterPattern::unit;
constexpr int fileHandicap = LetterPattern::unit;
constexpr int elsewhereHandicap = 3 * LetterPattern::unit;

// A caption without its access key and the key that it shows.
QString wordsOf(QString caption)
{
    caption.replace(u"&&"_s, QString(QChar(u'\0')));
    caption.remove(u'&');
    caption.replace(QChar(u'\0'), u"&"_s);
    const qsizetype blanks = caption.indexOf(u"  "_s);
    if (blanks >= 0)
        caption.truncate(blanks);
    return caption.trimmed();
}

// As a row says it. What is only a number is called after its menu.
QString nameOfCommand(const CommandRow &row, const CommandState &state)
{
    const QString words = wordsOf(row.captionNow ? row.captionNow(state) : toText(row.caption));
    const bool hasLetters = std::ranges::any_of(words, [](QChar c) { return c.isLetter(); });
    if (hasLetters || row.parent.empty())
        return words;
    return wordsOf(toText(commandTable[commandRow(row.parent)].caption)) + u' ' + words;
}

QString menusOf(const CommandRow &row)
{
    if (row.parent.empty())
        return {};
    const CommandRow &menu = commandTable[commandRow(row.parent)];
    const QString above = menusOf(menu);
    QString words = wordsOf(toText(menu.caption));
    if (words.endsWith(u"..."_s))
        words.chop(3);
    return above.isEmpty() ? words : above + wayMark + words;
}

QString nameOfDocument(const Document &document)
{
    return document.m_sFile.isEmpty() ? document.caption() : QFileInfo(document.m_sFile).fileName();
}

// The nearest entries above, the outermost first.
QString entriesAbove(const Entry &entry)
{
    constexpr int mostNamed = 6;
    constexpr qsizetype longestNamed = 60;
    QString way;
    int named = 0;
    for (const Entry *above = entry.parent(); above; above = above->parent()) {
        const bool isEnough = ++named > mostNamed;
        const QString label = isEnough ? u"\u2026"_s : briefLabel(above->label(), longestNamed);
        way = way.isEmpty() ? label : label + wayMark + way;
        if (isEnough)
            break;
    }
    return way;
}

// Where the letters of a name as it is shown stand that were typed.
std::vector<int> marksIn(const QString &name, const NamePattern &pattern)
{
    const std::vector<int> origins = originsOfFolded(name);
    std::vector<int> marks;
    for (const int at : pattern.places(folded(name)))
        marks.push_back(origins[static_cast<std::size_t>(at)]);
    // Two letters of one character are one mark.
    marks.erase(std::unique(marks.begin(), marks.end()), marks.end());
    return marks;
}

} // namespace

struct GoToFinder::Source {
    Source(GoToKind kind_, int handicap_)
        : kind(kind_)
        , handicap(handicap_)
    {
    }

    // What its names are: its own list, or a document's entries.
    void rankNames() { ranking = std::make_unique<NameRanking>(entries ? entries->names() : names); }

    GoToTarget targetAt(int place) const
    {
        if (entries)
            return {.kind = kind, .place = {document, entries->entryAt(place)}};
        return targets[static_cast<std::size_t>(place)];
    }

    GoToKind kind;
    int handicap;
    QPointer<Document> document = {};
    const EntryNames *entries = nullptr;
    NameList names = {};
    std::vector<GoToTarget> targets = {};
    std::unique_ptr<NameRanking> ranking = {};
};

QString GoToRow::spoken() const
{
    static constexpr const char16_t *kinds[] = {u"entry", u"command", u"open document", u"recent file"};
    QStringList parts{name, QString::fromUtf16(kinds[static_cast<int>(target.kind)])};
    if (!way.isEmpty())
        parts += u"in "_s + way;
    if (!key.isEmpty())
        parts += key;
    if (!whyNot.isEmpty())
        parts += u"not now: "_s + whyNot;
    return parts.join(u", "_s);
}

GoToFinder::GoToFinder(const GoToWorld &world, KnownEntryNames &known)
    : m_world(world)
    , m_state(world.dispatcher.state())
{
    std::erase_if(known, [this](const auto &each) {
        return std::ranges::find(m_world.documents, each.first) == m_world.documents.end();
    });
    for (const bool active : {true, false}) {
        for (const Document *document : m_world.documents) {
            if ((document == m_world.active) != active)
                continue;
            EntryNames &names = known[document];
            names.take(document->tree);
            addEntries(*document, names, active);
        }
    }
    addDocuments();
    addCommands();
    addVisited();
    find({});
}

GoToFinder::~GoToFinder() = default;

GoToFinder::Source &GoToFinder::addSource(GoToKind kind, int handicap)
{
    m_sources.push_back(std::make_unique<Source>(kind, handicap));
    return *m_sources.back();
}

void GoToFinder::addEntries(const Document &document, const EntryNames &names, bool isActive)
{
    Source &source = addSource(GoToKind::Entry, isActive ? 0 : elsewhereHandicap);
    for (Document *each : m_world.documents) {
        if (each == &document)
            source.document = each;
    }
    source.entries = &names;
    source.rankNames();
}

void GoToFinder::addCommands()
{
    Source &source = addSource(GoToKind::Command, commandHandicap);
    std::vector<int> places(commandTable.size(), -1);
    for (std::size_t row = 0; row < commandTable.size(); ++row) {
        const CommandRow &command = commandTable[row];
        const bool isMenu = command.kind == RowKind::Menu;
        if (!isMenu && (command.kind != RowKind::Command || !m_world.dispatcher.isBound(command.name)))
            continue;
        if (command.name == "mnuToolsGoToAnything")
            continue;
        places[row] = source.names.count();
        const int above = command.parent.empty() ? -1 : places[commandRow(command.parent)];
        source.names.add(nameOfCommand(command, m_state), above, !isMenu);
        source.targets.push_back({.kind = GoToKind::Command, .command = command.name});
    }
    source.rankNames();
}

void GoToFinder::addDocuments()
{
    Source &open = addSource(GoToKind::Document, 0);
    QStringList files;
    for (Document *document : m_world.documents) {
        files += document->m_sFile;
        if (document == m_world.active)
            continue;
        open.names.add(nameOfDocument(*document));
        open.targets.push_back({.kind = GoToKind::Document, .place = {document}});
    }
    open.rankNames();
    Source &recent = addSource(GoToKind::File, fileHandicap);
    for (int number = 1; number <= m_world.recentFiles.size(); ++number) {
        const QString &sFile = m_world.recentFiles.at(number - 1);
        if (files.contains(sFile))
            continue;
        recent.names.add(QFileInfo(sFile).fileName());
        recent.targets.push_back({.kind = GoToKind::File, .file = number});
    }
    recent.rankNames();
}

void GoToFinder::addVisited()
{
    m_visited = std::make_unique<Source>(GoToKind::Entry, 0);
    for (const Place &place : m_world.visited) {
        const Entry *entry = place.document ? place.document->tree.entry(place.entry) : nullptr;
        if (!entry)
            continue;
        m_visited->names.add(entry->label());
        m_visited->targets.push_back({.kind = GoToKind::Entry, .place = place});
        if (m_visited->targets.size() == mostVisited)
            break;
    }
    m_visited->rankNames();
}

void GoToFinder::find(const QString &typed)
{
    const char16_t sign = typed.isEmpty() ? u'\0' : typed.front().unicode();
    const bool isSigned = sign == commandSign || sign == documentSign || sign == entrySign;
    m_pattern = NamePattern(isSigned ? QStringView(typed).sliced(1) : QStringView(typed));
    const bool isNothing = !isSigned && m_pattern.isEmpty();
    const auto isLookedFor = [&](const Source &source) {
        switch (source.kind) {
        case GoToKind::Entry:
            return isSigned ? sign == entrySign : !isNothing;
        case GoToKind::Command:
            return isSigned ? sign == commandSign : !isNothing;
        default:
            return !isSigned || sign == documentSign;
        }
    };
    m_found.clear();
    m_total = 0;
    const auto take = [this](const Source &source) {
        for (const NameRanking::Found &each : source.ranking->find(m_pattern))
            m_found.push_back({&source, each.place, each.rank - source.handicap});
        m_total += source.ranking->count();
    };
    if (isNothing)
        take(*m_visited);
    for (const std::unique_ptr<Source> &source : m_sources) {
        if (isLookedFor(*source))
            take(*source);
    }
    // Where nothing was looked for, the order is that of the kinds.
    if (!m_pattern.isEmpty())
        std::ranges::stable_sort(m_found, std::greater(), &Found::rank);
    if (count() > NameRanking::mostFound)
        m_found.resize(NameRanking::mostFound);
}

QString GoToFinder::wayOf(const GoToTarget &target) const
{
    switch (target.kind) {
    case GoToKind::Command:
        return menusOf(commandTable[commandRow(target.command)]);
    case GoToKind::File:
        return QFileInfo(m_world.recentFiles.at(target.file - 1)).absolutePath();
    case GoToKind::Document:
        return target.place.document->m_sFile.isEmpty() ? QString()
                                                        : QFileInfo(target.place.document->m_sFile).absolutePath();
    case GoToKind::Entry:
        break;
    }
    const QString above = entriesAbove(*target.place.document->tree.entry(target.place.entry));
    if (target.place.document == m_world.active)
        return above;
    const QString document = nameOfDocument(*target.place.document);
    return above.isEmpty() ? document : document + wayMark + above;
}

GoToRow GoToFinder::row(int place) const
{
    constexpr qsizetype longestShown = 200;
    const Found &found = m_found[static_cast<std::size_t>(place)];
    GoToRow row{.target = found.source->targetAt(found.place), .name = {}};
    const NameList &names = found.source->entries ? found.source->entries->names() : found.source->names;
    row.name = briefLabel(names.at(found.place).name, longestShown);
    row.marks = marksIn(row.name, m_pattern);
    row.way = wayOf(row.target);
    if (row.target.kind == GoToKind::Command) {
        row.key = keyTextOf(commandTable[commandRow(row.target.command)]);
        row.whyNot = whyNot(row.target.command, m_state);
    }
    return row;
}
