// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "OutlineFixture.h"
#include "document/UndoRedo.h"
#include "outline/BranchMoves.h"
#include "outline/EntryDrag.h"
#include "outline/SelectedEntries.h"
#include "outline/modOutline.h"
#include "support/ErrorRecorder.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <functional>
#include <memory>
#include <set>

using namespace Qt::StringLiterals;

// Random sequences of commands on several selected entries, each compared after every command with a tree of plain
// lists, in which a command on several is the command on one, done to each in turn.

namespace severalRandom
{

#if defined(__SANITIZE_ADDRESS__)
constexpr int steps = 3000;
#else
constexpr int steps = 12000;
#endif

struct Plain {
    // Names the entry as long as the outline lives; copies share the label and not the id.
    int id = 0;
    QString label;
    bool tagged = false;
    Plain *parent = nullptr;
    std::vector<std::unique_ptr<Plain>> children;

    size_t row() const
    {
        size_t at = 0;
        while (parent->children[at].get() != this)
            ++at;
        return at;
    }

    Plain *previous() const { return parent && row() > 0 ? parent->children[row() - 1].get() : nullptr; }

    Plain *next() const
    {
        return parent && row() + 1 < parent->children.size() ? parent->children[row() + 1].get() : nullptr;
    }
};

using Ids = std::set<int>;

class PlainOutline
{
public:
    std::unique_ptr<Plain> root;
    int current = 0;
    Ids selected;

    PlainOutline() = default;

    PlainOutline(const PlainOutline &other) { *this = other; }

    PlainOutline &operator=(const PlainOutline &other)
    {
        root = other.root ? copied(*other.root, nullptr) : nullptr;
        current = other.current;
        selected = other.selected;
        return *this;
    }

    // In the order of the outline.
    std::vector<Plain *> all() const
    {
        std::vector<Plain *> entries;
        gather(root.get(), entries);
        return entries;
    }

    QStringList lines() const
    {
        QStringList lines;
        for (const Plain *each : all()) {
            int level = 0;
            for (const Plain *above = each->parent; above; above = above->parent)
                ++level;
            lines.append(QString(level, u' ') + each->label + (each->tagged ? u" *"_s : QString()) +
                         (selected.contains(each->id) ? u" selected"_s : QString()) +
                         (each->id == current ? u" current"_s : QString()));
        }
        return lines;
    }

    // The selected entries without those that lie inside another of them.
    std::vector<Plain *> branches() const { return branchesOf(selected); }

    std::vector<Plain *> branchesOf(const Ids &ids) const
    {
        std::vector<Plain *> found;
        for (Plain *each : all()) {
            bool inside = false;
            for (const Plain *above = each->parent; above; above = above->parent)
                inside = inside || ids.contains(above->id);
            if (ids.contains(each->id) && !inside)
                found.push_back(each);
        }
        return found;
    }

    static std::unique_ptr<Plain> takeOut(Plain *entry)
    {
        std::vector<std::unique_ptr<Plain>> &siblings = entry->parent->children;
        const auto at = siblings.begin() + static_cast<std::ptrdiff_t>(entry->row());
        std::unique_ptr<Plain> taken = std::move(*at);
        siblings.erase(at);
        return taken;
    }

    static void putIn(std::unique_ptr<Plain> entry, Plain *parent, size_t row)
    {
        entry->parent = parent;
        parent->children.insert(parent->children.begin() + static_cast<std::ptrdiff_t>(row), std::move(entry));
    }

    // What the command does to one; false where it has nowhere to go.
    static bool moveOne(BranchMove move, Plain *entry)
    {
        Plain *parent = entry->parent;
        if (!parent)
            return false;
        Plain *previous = entry->previous();
        Plain *next = entry->next();
        const auto put = [entry](Plain *below, size_t row) {
            putIn(takeOut(entry), below, row);
            return true;
        };
        switch (move) {
        case BranchMove::Indent:
            return previous && put(previous, previous->children.size());
        case BranchMove::Unindent:
            return parent->parent && put(parent->parent, parent->row() + 1);
        case BranchMove::Up:
            if (previous)
                return put(parent, entry->row() - 1);
            return parent->previous() && put(parent->previous(), parent->previous()->children.size());
        case BranchMove::Down:
            if (next)
                return put(parent, entry->row() + 1);
            return parent->next() && put(parent->next(), 0);
        case BranchMove::First:
            return put(parent, 0);
        case BranchMove::Last:
            return put(parent, parent->children.size() - 1);
        }
        return false;
    }

    // Each in turn, in the order in which none overtakes another. False, and nothing is done, where one of them cannot.
    bool move(BranchMove move)
    {
        const PlainOutline before = *this;
        std::vector<Plain *> entries = branches();
        if (move == BranchMove::First || move == BranchMove::Last) {
            for (const Plain *each : entries) {
                if (!each->parent || !(move == BranchMove::First ? each->previous() : each->next()))
                    return false;
            }
        }
        if (move == BranchMove::Unindent || move == BranchMove::Down || move == BranchMove::First)
            std::ranges::reverse(entries);
        for (Plain *each : entries) {
            if (!moveOne(move, each)) {
                *this = before;
                return false;
            }
        }
        return true;
    }

    void remove()
    {
        const std::vector<Plain *> going = branches();
        Plain *branch = byId(current);
        while (branch && std::ranges::find(going, branch) == going.end())
            branch = branch->parent;
        if (branch) {
            Plain *survivor = branch->parent;
            for (Plain *each = branch->next(); each; each = each->next()) {
                if (!selected.contains(each->id)) {
                    survivor = each;
                    break;
                }
            }
            for (Plain *each = branch->previous(); each; each = each->previous()) {
                if (!selected.contains(each->id)) {
                    survivor = each;
                    break;
                }
            }
            current = survivor->id;
        }
        for (Plain *each : going)
            takeOut(each);
        selected = {current};
    }

    void tag()
    {
        bool areAll = true;
        for (const int id : selected)
            areAll = areAll && byId(id)->tagged;
        for (const int id : selected)
            byId(id)->tagged = !areAll;
    }

    // Null when there is none, or none any more.
    Plain *byId(int id) const
    {
        for (Plain *each : all()) {
            if (each->id == id)
                return each;
        }
        return nullptr;
    }

    static bool isWithin(const Plain *entry, const std::vector<Plain *> &tops)
    {
        while (entry && std::ranges::find(tops, entry) == tops.end())
            entry = entry->parent;
        return entry != nullptr;
    }

    // A copy of a branch behind an entry, with ids of its own and without tags.
    static Plain *putCopy(const Plain &source, Plain *parent, size_t row, int &lastId)
    {
        std::unique_ptr<Plain> copy = copied(source, nullptr);
        std::vector<Plain *> entries;
        gather(copy.get(), entries);
        for (Plain *each : entries) {
            each->id = ++lastId;
            each->tagged = false;
        }
        Plain *put = copy.get();
        putIn(std::move(copy), parent, row);
        return put;
    }

    void selectCopies(const std::vector<Plain *> &copies)
    {
        selected.clear();
        for (const Plain *copy : copies)
            selected.insert(copy->id);
        current = copies.back()->id;
    }

    // False where nothing comes of it. Each is pasted in turn, behind the one before.
    bool paste(const Ids &ids, bool removeSources, int &lastId)
    {
        std::vector<Plain *> sources = branchesOf(ids);
        if (sources.empty())
            return false;
        Plain *parent = byId(current);
        size_t row = 0;
        if (parent->parent) {
            row = parent->row() + 1;
            parent = parent->parent;
        } else if (!parent->children.empty() && parent->children[0].get() == sources[0]) {
            row = parent->children.size();
        }
        if (removeSources && isWithin(parent, sources))
            return false;
        std::vector<Plain *> copies;
        for (const Plain *source : sources)
            copies.push_back(putCopy(*source, parent, row++, lastId));
        if (removeSources) {
            for (Plain *source : sources)
                takeOut(source);
        }
        selectCopies(copies);
        return true;
    }

    enum Place { Previous = 1, Next = 2, Child = 4 };

    // Where one may be dropped.
    static int placesForOne(const Plain *dragged, const Plain *target)
    {
        if (!target->parent)
            return Child;
        for (const Plain *above = target; above; above = above->parent) {
            if (above == dragged)
                return 0;
        }
        if (!target->children.empty() && target->children[0].get() == dragged)
            return 0;
        return (target->previous() != dragged ? Previous : 0) | (target->next() != dragged ? Next : 0) | Child;
    }

    // Where all that are selected may be dropped.
    int places(const Plain *target) const
    {
        const std::vector<Plain *> dragged = branches();
        int all = isWithin(target, dragged) ? 0 : Previous | Next | Child;
        for (const Plain *each : dragged)
            all &= placesForOne(each, target);
        return all;
    }

    void drop(Plain *target, int place, bool copies, int &lastId)
    {
        const std::vector<Plain *> dragged = branches();
        if (!target->parent && !target->children.empty() && !isWithin(target->children[0].get(), dragged)) {
            target = target->children[0].get();
            place = Previous;
        }
        std::vector<Plain *> made;
        for (Plain *each : dragged) {
            std::unique_ptr<Plain> moving = copies ? nullptr : takeOut(each);
            Plain *parent = place == Child ? target : target->parent;
            const size_t row = place == Child ? parent->children.size() : target->row() + (place == Next ? 1 : 0);
            if (copies)
                made.push_back(putCopy(*each, parent, row, lastId));
            else
                putIn(std::move(moving), parent, row);
            if (place == Next)
                target = copies ? made.back() : each;
        }
        if (copies)
            selectCopies(made);
    }

private:
    static std::unique_ptr<Plain> copied(const Plain &entry, Plain *parent)
    {
        auto copy = std::make_unique<Plain>();
        copy->id = entry.id;
        copy->label = entry.label;
        copy->tagged = entry.tagged;
        copy->parent = parent;
        for (const std::unique_ptr<Plain> &child : entry.children)
            copy->children.push_back(copied(*child, copy.get()));
        return copy;
    }

    static void gather(Plain *entry, std::vector<Plain *> &entries)
    {
        entries.push_back(entry);
        for (const std::unique_ptr<Plain> &child : entry->children)
            gather(child.get(), entries);
    }
};

QStringList linesOf(const EntryTree &tree)
{
    QStringList lines;
    for (const Entry *entry = tree.root(); entry; entry = nextInOutline(entry, tree.root()))
        lines.append(QString(entry->level() - 1, u' ') + entry->label() + (entry->tagged() ? u" *"_s : QString()) +
                     (tree.isSelected(entry) ? u" selected"_s : QString()) +
                     (entry == tree.selected() ? u" current"_s : QString()));
    return lines;
}

class Player
{
public:
    ~Player() { modOutline::copiedEntry().clear(); }

    explicit Player(quint32 seed)
        : m_random(seed)
        , m_fixture({u"0 +<"_s})
    {
        m_plain.root = std::make_unique<Plain>();
        m_plain.root->label = u"0"_s;
        m_plain.selected = {0};
        document().history.startAnew();
    }

    QString play();

    QString difference()
    {
        const QStringList real = linesOf(document().tree);
        const QStringList plain = m_plain.lines();
        if (real != plain)
            return u"is\n%1\nand should be\n%2"_s.arg(real.join(u'\n'), plain.join(u'\n'));
        return document().tree.brokenInvariant();
    }

private:
    Document &document() { return m_fixture.document(); }

    int draw(int below) { return static_cast<int>(m_random.bounded(below)); }

    Plain *drawEntry()
    {
        const std::vector<Plain *> all = m_plain.all();
        return all[static_cast<size_t>(draw(static_cast<int>(all.size())))];
    }

    // The entry at the same place.
    Entry *entry(const Plain *plain)
    {
        return plain->parent ? entry(plain->parent)->child(static_cast<int>(plain->row())) : document().tree.root();
    }

    void insert()
    {
        const PlainOutline before = m_plain;
        auto plain = std::make_unique<Plain>();
        plain->id = ++m_lastId;
        plain->label = QString::number(plain->id);
        {
            const History::Step step(document().history, u"insertion"_s);
            modOutline::OutlineInsertChild();
            document().history.setLabel(document().tree.selected(), plain->label);
        }
        Plain *parent = m_plain.byId(m_plain.current);
        m_plain.current = plain->id;
        m_plain.selected = {plain->id};
        PlainOutline::putIn(std::move(plain), parent, parent->children.size());
        done(before);
    }

    void selectSeveral()
    {
        std::vector<Plain *> chosen;
        // Neighbours as often as what lies about.
        if (draw(2) == 0) {
            Plain *first = drawEntry();
            for (int more = draw(5); first && more >= 0; --more, first = first->next())
                chosen.push_back(first);
        } else {
            for (int more = draw(6); more >= 0; --more)
                chosen.push_back(drawEntry());
        }
        // Mostly without the root, for which hardly anything is possible.
        if (draw(8) > 0)
            std::erase(chosen, m_plain.root.get());
        if (chosen.empty())
            return;
        const Plain *current = draw(4) == 0 ? drawEntry() : chosen.back();
        std::vector<Entry *> entries;
        m_plain.selected.clear();
        for (const Plain *each : chosen) {
            entries.push_back(entry(each));
            m_plain.selected.insert(each->id);
        }
        selectEntries(document(), entry(current), entries);
        m_plain.current = current->id;
        if (m_plain.selected.size() == 1)
            m_plain.selected = {m_plain.current};
    }

    void copy()
    {
        modOutline::OutlineCopy();
        m_copied.clear();
        for (const Plain *each : m_plain.branches())
            m_copied.insert(each->id);
    }

    void paste(bool removeSources)
    {
        const PlainOutline before = m_plain;
        removeSources ? modOutline::OutlinePasteAndDelete() : modOutline::OutlinePaste();
        if (!m_plain.paste(m_copied, removeSources, m_lastId))
            return;
        if (removeSources)
            m_copied.clear();
        done(before);
    }

    void drag(bool mayCopy)
    {
        if (!document().tree.areSeveralSelected())
            return;
        const PlainOutline before = m_plain;
        const std::vector<Plain *> branches = m_plain.branches();
        Plain *target = drawEntry();
        DragState &state = dragState();
        state.entry.set(&document().tree,
                        entry(branches[static_cast<size_t>(draw(static_cast<int>(branches.size())))]));
        state.copy = draw(3) == 0 && mayCopy;
        const int places = m_plain.places(target);
        const DropPlacements real = dropPlacements(*entry(target));
        if (((real.previous ? PlainOutline::Previous : 0) | (real.next ? PlainOutline::Next : 0) |
             (real.child ? PlainOutline::Child : 0)) != places)
            m_failure = u"the places for a drop are others"_s;
        if (places != 0) {
            constexpr std::pair<PlainOutline::Place, Relationship> all[] = {
                {PlainOutline::Previous, Relationship::tvwPrevious},
                {PlainOutline::Next, Relationship::tvwNext},
                {PlainOutline::Child, Relationship::tvwChild},
            };
            const auto *place = &all[draw(3)];
            while (!(places & place->first))
                place = &all[draw(3)];
            state.relationship = place->second;
            dropEntry(document(), *entry(target));
            m_plain.drop(target, place->first, state.copy, m_lastId);
            done(before);
        }
        ResetDraggingFlags();
    }

    void move(BranchMove move, void (*run)())
    {
        if (!document().tree.areSeveralSelected())
            return;
        const PlainOutline before = m_plain;
        const bool saysPossible = BranchMoves(branches()).arePossible(move);
        if (BranchMoves(branches()).plan(move).empty() == saysPossible)
            m_failure = u"what is planned is something else than what is possible"_s;
        const bool isPossible = m_plain.move(move);
        if (saysPossible != isPossible)
            m_failure = u"the rule says something else"_s;
        run();
        if (isPossible)
            done(before);
    }

    std::vector<Entry *> branches()
    {
        std::vector<Entry *> entries;
        for (const Plain *each : m_plain.branches())
            entries.push_back(entry(each));
        return entries;
    }

    void remove()
    {
        if (m_plain.selected.contains(0))
            return;
        if (m_plain.branches().size() < 2)
            return;
        const PlainOutline before = m_plain;
        m_fixture.fakes.dialogs.answers.push_back(Answer::Yes);
        modOutline::OutlineDelete();
        m_plain.remove();
        done(before);
    }

    void tag()
    {
        if (m_plain.selected.contains(0))
            return;
        const PlainOutline before = m_plain;
        modOutline::OutlineTaggedEntry();
        m_plain.tag();
        done(before);
    }

    void walk(bool back)
    {
        if (back ? m_position == 0 : m_position == m_steps.size())
            return;
        // What was selected when the step began, or when it was done.
        if (back) {
            undoStep(document());
            m_plain = m_steps[--m_position].before;
        } else {
            redoStep(document());
            m_plain = m_steps[m_position++].after;
        }
    }

    void done(const PlainOutline &before)
    {
        m_steps.resize(m_position);
        m_steps.push_back({before, m_plain});
        ++m_position;
    }

    struct Step {
        PlainOutline before;
        PlainOutline after;
    };

    const ErrorRecorder m_errors;
    QRandomGenerator m_random;
    OutlineFixture m_fixture;
    PlainOutline m_plain;
    std::vector<Step> m_steps;
    size_t m_position = 0;
    Ids m_copied;
    int m_lastId = 0;
    QString m_failure;

public:
    // What was drawn last, for who looks into a difference.
    QString m_last;
};

QString Player::play()
{
    using namespace modOutline;
    const int entries = document().tree.entryCount();
    const bool isLarge = entries > 50;
    const int drawn = draw(100);
    m_last = u"%1 at %2 of %3"_s.arg(drawn).arg(m_position).arg(m_steps.size());
    if (entries < 8 || (drawn < 8 && entries < 40))
        insert();
    else if (drawn < 40)
        selectSeveral();
    else if (drawn < 46)
        move(BranchMove::Indent, OutlineIndent);
    else if (drawn < 53)
        move(BranchMove::Unindent, OutlineUnindent);
    else if (drawn < 60)
        move(BranchMove::Up, OutlineMoveUp);
    else if (drawn < 67)
        move(BranchMove::Down, OutlineMoveDown);
    else if (drawn < 70)
        move(BranchMove::First, OutlineMoveFirst);
    else if (drawn < 73)
        move(BranchMove::Last, OutlineMoveLast);
    else if (drawn < (isLarge ? 81 : 75))
        remove();
    else if (drawn < 77)
        tag();
    else if (drawn < 79)
        copy();
    else if (drawn < 81)
        paste(false);
    else if (drawn < 83)
        paste(true);
    else if (drawn < 87)
        drag(!isLarge);
    else if (drawn < 94)
        walk(true);
    else
        walk(false);
    if (!m_failure.isEmpty())
        return m_failure;
    if (document().history.position() != static_cast<int>(m_position))
        return u"%1 steps are done instead of %2"_s.arg(document().history.position()).arg(m_position);
    return difference();
}

} // namespace severalRandom

class tst_SeveralRandom : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void commandsOnSeveralAreThoseOnOneInTurn_data();
    void commandsOnSeveralAreThoseOnOneInTurn();
};

void tst_SeveralRandom::commandsOnSeveralAreThoseOnOneInTurn_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 12; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void tst_SeveralRandom::commandsOnSeveralAreThoseOnOneInTurn()
{
    QFETCH(const quint32, seed);
    severalRandom::Player player(seed);
    for (int step = 0; step < severalRandom::steps / 12; ++step) {
        const QString difference = player.play();
        QVERIFY2(difference.isEmpty(),
                 qPrintable(u"after step %1 (%2): it %3"_s.arg(step).arg(player.m_last, difference)));
    }
}

QTEST_GUILESS_MAIN(tst_SeveralRandom)
#include "tst_SeveralRandom.moc"
