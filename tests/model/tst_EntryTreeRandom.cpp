// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "support/SlowTree.h"

#include "util/RunTimeError.h"

#include <QAbstractItemModelTester>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

// Random sequences of operations on two trees at once, each compared with a model of it that is as slow as it is
// obvious.

namespace
{

using Node = SlowEntry;

QString line(const QString &key, const QString &label, const QByteArray &text, bool tagged, bool expanded)
{
    return u"%1 \"%2\" (%3)%4%5"_s.arg(key, label, QString::fromLatin1(text), tagged ? u" tagged"_s : QString(),
                                       expanded ? u" expanded"_s : QString());
}

// A tree and its slow model, with persistent indexes and references that must stay with their entries.
class Pair
{
public:
    Pair()
        : tester(&tree, QAbstractItemModelTester::FailureReportingMode::Fatal)
    {
    }

    Entry *entryOf(const Node *node) const { return tree.itemByKey(SlowTree::keyOf(node)); }

    void watch(Node *node)
    {
        if (m_watched.size() >= 6)
            m_watched.erase(m_watched.begin());
        Watched watched;
        watched.number = node->number;
        watched.index = tree.indexOf(entryOf(node));
        watched.reference.set(&tree, entryOf(node));
        m_watched.push_back(std::move(watched));
    }

    // Persistent indexes end with a reset, references do not.
    void forgetIndexes()
    {
        for (Watched &watched : m_watched)
            watched.indexUsed = false;
    }

    // What differs, in words; empty when nothing does.
    QString difference() const
    {
        if (const QString broken = tree.brokenInvariant(); !broken.isEmpty())
            return broken;
        QStringList expected;
        for (const Node *node : slow.inOutlineOrder())
            expected.append(line(SlowTree::keyOf(node), node->label, node->text, node->tagged, node->expanded));
        QStringList found;
        for (const Entry *entry = tree.root(); entry; entry = nextInOutline(entry, tree.root()))
            found.append(
                line(tree.key(entry), entry->label(), tree.storedText(entry), entry->tagged(), entry->expanded()));
        if (found != expected)
            return u"expected:\n"_s + expected.join(u'\n') + u"\nfound:\n"_s + found.join(u'\n');
        for (size_t i = 0; i < slow.collection.size(); ++i) {
            if (tree.collection().at(static_cast<int>(i) + 1) != entryOf(slow.collection[i]))
                return u"the collection differs at index %1"_s.arg(i + 1);
        }
        if (tree.selected() != (slow.selected ? entryOf(slow.selected) : nullptr))
            return u"another entry is selected"_s;
        return watchedDifference();
    }

    EntryTree tree;
    SlowTree slow;
    QAbstractItemModelTester tester;

private:
    struct Watched {
        int number = 0;
        QPersistentModelIndex index;
        EntryRef reference;
        bool indexUsed = true;
    };

    QString watchedDifference() const
    {
        for (const Watched &watched : m_watched) {
            const auto node = std::find_if(slow.collection.begin(), slow.collection.end(),
                                           [&](const Node *each) { return each->number == watched.number; });
            const Entry *expected = node == slow.collection.end() ? nullptr : entryOf(*node);
            if (watched.reference.entry() != expected)
                return u"a reference lost its entry"_s;
            if (watched.indexUsed && tree.entryAt(watched.index) != expected)
                return u"a persistent index lost its entry"_s;
            if (watched.indexUsed && expected && watched.index.row() != expected->row())
                return u"a persistent index has an old row"_s;
        }
        return QString();
    }

    std::vector<Watched> m_watched;
};

class Player
{
public:
    explicit Player(quint32 seed)
        : m_random(seed)
    {
    }

    // Performs one operation and returns its name.
    QString play()
    {
        Pair &pair = m_pairs[m_random.bounded(2)];
        if (!pair.slow.root)
            return insertRoot(pair);
        const std::vector<Node *> nodes = pair.slow.inOutlineOrder();
        m_node = nodes[m_random.bounded(static_cast<quint32>(nodes.size()))];
        // Removal is as likely as insertion once a tree is large, so that trees stay of a size to compare.
        const bool large = nodes.size() > 40;
        switch (m_random.bounded(17)) {
        case 0:
        case 1:
        case 2:
            return large ? remove(pair) : insert(pair);
        case 3:
        case 4:
            return large ? remove(pair) : insertCopy(pair);
        case 5:
            return m_random.bounded(4) == 0 || large ? remove(pair) : insert(pair);
        case 6:
            return sort(pair);
        case 7:
            return expandToLevel(pair);
        case 8:
            return expandAll(pair);
        case 9:
            return bulk(pair);
        case 10:
            pair.watch(m_node);
            return u"watch"_s;
        case 11:
        case 12:
            return move(pair);
        case 13:
            return takeAndPutBack(pair);
        default:
            return change(pair);
        }
    }

    QString difference() const
    {
        if (!m_failure.isEmpty())
            return m_failure;
        const QString first = m_pairs[0].difference();
        return first.isEmpty() ? m_pairs[1].difference() : first;
    }

private:
    QString randomLabel() { return QString(QChar(u"abcABC"[m_random.bounded(6)])); }

    QString insertRoot(Pair &pair)
    {
        pair.tree.insert(Relationship::tvwFirst, nullptr);
        pair.slow.add(std::make_unique<Node>(), Relationship::tvwFirst, nullptr);
        return u"insert the root"_s;
    }

    Relationship place() const { return m_node->parent ? Relationship(m_random.bounded(5)) : Relationship::tvwChild; }

    QString insert(Pair &pair)
    {
        const Relationship relationship = place();
        Entry *entry = pair.tree.insert(relationship, pair.entryOf(m_node));
        Node *node = pair.slow.add(std::make_unique<Node>(), relationship, m_node);
        node->label = randomLabel();
        pair.tree.setLabel(entry, node->label);
        return u"insert"_s;
    }

    // The source may be the other tree's, an ancestor of the place, or the entry itself.
    QString insertCopy(Pair &pair)
    {
        const Pair &sourcePair = m_pairs[m_random.bounded(2)];
        const std::vector<Node *> sources = sourcePair.slow.inOutlineOrder();
        if (sources.empty())
            return u"nothing to copy"_s;
        const Node *source = sources[m_random.bounded(static_cast<quint32>(sources.size()))];
        const Relationship relationship = place();
        pair.tree.insertCopy(sourcePair.tree, sourcePair.entryOf(source), relationship, pair.entryOf(m_node));
        pair.slow.add(SlowTree::copyOf(source), relationship, m_node);
        return u"insert a copy"_s;
    }

    // Leaves no trace: the slow model is not touched.
    QString takeAndPutBack(Pair &pair)
    {
        Entry *entry = pair.entryOf(m_node);
        const EntryTree::Place place{entry->parent(), entry->row()};
        Entry *selected = pair.tree.selected();
        if (m_random.bounded(2) == 0) {
            Subtree taken = pair.tree.take(entry);
            pair.tree.put(taken, place);
        } else {
            std::vector<TakenSubtree> taken = pair.tree.takeAll({entry});
            pair.tree.putAll(taken);
        }
        pair.tree.select(selected);
        // What was taken has no index that leads to it.
        pair.forgetIndexes();
        return u"take and put back"_s;
    }

    QString remove(Pair &pair)
    {
        pair.tree.remove(pair.entryOf(m_node));
        pair.slow.remove(m_node);
        return u"remove"_s;
    }

    QString move(Pair &pair)
    {
        const std::vector<Node *> nodes = pair.slow.inOutlineOrder();
        Node *moving = nodes[m_random.bounded(static_cast<quint32>(nodes.size()))];
        const Relationship relationship = place();
        const Node *newParent = relationship == Relationship::tvwChild ? m_node : m_node->parent;
        bool possible = moving->parent;
        for (const Node *up = newParent; up; up = up->parent)
            possible = possible && up != moving;
        try {
            pair.tree.move(pair.entryOf(moving), relationship, pair.entryOf(m_node));
            if (!possible)
                m_failure = u"an entry was moved into itself"_s;
        } catch (const RunTimeError &) {
            if (possible)
                m_failure = u"a possible move was refused"_s;
            return u"a refused move"_s;
        }
        pair.slow.move(moving, relationship, m_node);
        return u"move"_s;
    }

    QString sort(Pair &pair)
    {
        pair.tree.setSorted(pair.entryOf(m_node), true);
        SlowTree::sortChildren(m_node);
        return u"sort"_s;
    }

    QString expandToLevel(Pair &pair)
    {
        const int level = static_cast<int>(m_random.bounded(6));
        Entry *entry = pair.entryOf(m_node);
        pair.tree.expandToLevel(entry, level);
        SlowTree::expandToLevel(m_node, entry->level(), level);
        return u"expand to level %1"_s.arg(level);
    }

    QString expandAll(Pair &pair)
    {
        const bool expanded = m_random.bounded(2) == 0;
        pair.tree.setExpandedAll(pair.entryOf(m_node), expanded);
        SlowTree::setExpandedAll(m_node, expanded);
        return u"expand or collapse all"_s;
    }

    QString bulk(Pair &pair)
    {
        pair.tree.beginBulkChange();
        insert(pair);
        change(pair);
        sort(pair);
        pair.tree.endBulkChange();
        pair.forgetIndexes();
        return u"a bulk change"_s;
    }

    QString change(Pair &pair)
    {
        Entry *entry = pair.entryOf(m_node);
        m_node->label = randomLabel();
        m_node->tagged = m_random.bounded(2) == 0;
        m_node->expanded = m_random.bounded(2) == 0;
        m_node->text = QByteArray::number(m_random.bounded(1000));
        pair.tree.setLabel(entry, m_node->label);
        pair.tree.setTagged(entry, m_node->tagged);
        pair.tree.setExpanded(entry, m_node->expanded);
        if (m_random.bounded(2) == 0)
            pair.tree.setStoredText(entry, m_node->text);
        else
            pair.tree.setPendingText(entry, [text = m_node->text] { return text; });
        pair.slow.selected = m_random.bounded(3) == 0 ? nullptr : m_node;
        pair.tree.select(pair.slow.selected ? entry : nullptr);
        return u"change"_s;
    }

    mutable QRandomGenerator m_random;
    Pair m_pairs[2];
    Node *m_node = nullptr;
    QString m_failure;
};

} // namespace

class tst_EntryTreeRandom : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void sequences_data();
    void sequences();
};

void tst_EntryTreeRandom::initTestCase()
{
    // The slow model sorts without a locale.
    QLocale::setDefault(QLocale::c());
}

void tst_EntryTreeRandom::sequences_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 10; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void tst_EntryTreeRandom::sequences()
{
    QFETCH(const quint32, seed);
    Player player(seed);
    QStringList played;
    for (int i = 0; i < 3000; ++i) {
        played.append(player.play());
        const QString difference = player.difference();
        if (!difference.isEmpty())
            QFAIL(qPrintable(
                u"After operation %1 (%2): %3"_s.arg(i).arg(played.mid(qMax(0, i - 5)).join(u", "_s), difference)));
    }
}

QTEST_GUILESS_MAIN(tst_EntryTreeRandom)
#include "tst_EntryTreeRandom.moc"
