// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/History.h"
#include "model/Outline.h"
#include "support/OutlineState.h"
#include "util/RunTimeError.h"

#include <QAbstractItemModelTester>
#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

// Random sequences of changes, undone and redone from time to time: at each position the outline must be what it was
// when it was there first.

namespace
{

// What an outline was at a position. An expansion alone is no step, and stays when steps are undone: once there was one
// it is only known what is open when everything is undone.
struct Remembered {
    QStringList content;
    QStringList expansion;
    QString selected;
};

class HistoryPlayer
{
public:
    explicit HistoryPlayer(quint32 seed)
        : m_random(seed)
        , m_mayExpandAlone(seed % 3 > 0)
        , m_tester(&m_outline.tree, QAbstractItemModelTester::FailureReportingMode::Fatal)
    {
        m_outline.tree.insert(Relationship::tvwFirst, nullptr);
        m_history.markSaved();
        m_remembered.push_back(now());
        m_saved = m_start = m_remembered.front();
    }

    // Performs something and returns what is wrong then, in words; empty when nothing is.
    QString play()
    {
        switch (m_random.bounded(12)) {
        case 0:
            return wander();
        case 1:
            return expandAlone();
        case 2:
            if (m_random.bounded(20) == 0) {
                m_history.markSaved();
                m_savedAt = m_history.position();
                m_saved = now();
                if (m_savedAt == 0)
                    m_start = m_remembered.front() = now();
            }
            return check();
        case 3:
            return fail();
        default:
            return step();
        }
    }

    QString thereAndBack()
    {
        for (const int position : {0, m_history.stepCount()}) {
            m_history.goTo(position);
            if (position == 0)
                noteAllUndone();
            if (const QString wrong = check(); !wrong.isEmpty())
                return wrong;
        }
        m_history.goTo(0);
        const Remembered end = now();
        if (end.content != m_start.content || end.expansion != m_start.expansion)
            return u"undoing everything does not lead to the start:\n%1\n%2"_s.arg(
                (m_start.content + m_start.expansion).join(u'\n'), (end.content + end.expansion).join(u'\n'));
        return QString();
    }

private:
    Remembered now() const
    {
        const Entry *selected = m_outline.tree.selected();
        return {contentOf(m_outline), expansionOf(m_outline),
                selected ? QString::number(static_cast<quint64>(selected->id())) : QString()};
    }

    QString check() const
    {
        if (const QString broken = m_outline.tree.brokenInvariant(); !broken.isEmpty())
            return broken;
        const Remembered &expected = m_remembered[static_cast<size_t>(m_history.position())];
        const Remembered found = now();
        if (found.content != expected.content)
            return u"at position %1 expected:\n%2\nfound:\n%3"_s.arg(m_history.position())
                .arg(expected.content.join(u'\n'), found.content.join(u'\n'));
        if (found.selected != expected.selected)
            return u"at position %1 another entry is selected"_s.arg(m_history.position());
        if (!m_hasExpandedAlone && found.expansion != expected.expansion)
            return u"at position %1 expected open: %2, found: %3"_s.arg(m_history.position())
                .arg(expected.expansion.join(u' '), found.expansion.join(u' '));
        const bool isAsSaved = found.expansion == m_saved.expansion && found.selected == m_saved.selected;
        if (m_savedAt == m_history.position() && isAsSaved && m_history.isChanged())
            return u"what was saved counts as changed"_s;
        return QString();
    }

    Entry *any()
    {
        const int count = m_outline.tree.entryCount();
        return count ? m_outline.tree.collection().at(1 + static_cast<int>(m_random.bounded(quint32(count)))) : nullptr;
    }

    // One change that is possible now, most of the time.
    void change()
    {
        Entry *entry = any();
        if (!entry) {
            m_history.insert(Relationship::tvwFirst, nullptr);
            return;
        }
        const bool large = m_outline.tree.entryCount() > 25;
        const Relationship place = entry->isRoot() ? Relationship::tvwChild : Relationship(m_random.bounded(5));
        switch (m_random.bounded(16)) {
        case 0:
        case 1:
        case 2:
            if (!large)
                m_history.insert(place, entry);
            break;
        case 3:
            if (!large)
                m_history.insertCopy(m_outline.tree, any(), place, entry);
            break;
        case 4:
            if (large || m_random.bounded(4) == 0)
                m_history.remove(entry);
            break;
        case 5:
            removeSome();
            break;
        case 6:
        case 7: {
            Entry *moving = any();
            try {
                m_history.move(moving, place, entry);
            } catch (const RunTimeError &) {
            }
            break;
        }
        case 8:
            m_history.setSorted(entry, true);
            m_history.setSorted(entry, m_random.bounded(2) == 0);
            break;
        case 9:
            m_history.renewInsertion(entry);
            break;
        case 10:
            m_history.setStoredText(entry, QByteArray::number(m_random.bounded(1000)));
            break;
        case 11: {
            clsFont font;
            font.setName(QString::number(m_random.bounded(3)));
            m_history.setFonts(font, m_outline.textFont);
            break;
        }
        case 12:
            m_history.setForeignRecords(entry, {{1, QByteArray::number(m_random.bounded(3))}});
            break;
        case 13:
            m_history.setFileForeignRecords({{0, QByteArray::number(m_random.bounded(3))}}, "end");
            break;
        case 14:
            m_history.setTagged(entry, !entry->tagged());
            break;
        default:
            m_history.setLabel(entry, QString(QChar(u"abcABC"[m_random.bounded(6)])));
        }
    }

    void removeSome()
    {
        std::vector<Entry *> some;
        for (Entry *child : {any(), any(), any()}) {
            const bool apart = std::ranges::none_of(some, [child](const Entry *other) {
                return other == child || other->isAncestorOf(child) || child->isAncestorOf(other);
            });
            if (apart && !child->isRoot())
                some.push_back(child);
        }
        m_history.removeAll(some);
    }

    void expand()
    {
        Entry *entry = any();
        if (!entry)
            return;
        switch (m_random.bounded(4)) {
        case 0:
            m_history.setExpandedAll(entry, m_random.bounded(2) == 0);
            break;
        case 1:
            m_history.expandToLevel(entry, 1 + static_cast<int>(m_random.bounded(4)));
            break;
        case 2:
            m_history.expandAncestors(entry);
            break;
        default:
            m_history.setExpanded(entry, !entry->expanded());
        }
    }

    QString step()
    {
        const int before = m_history.position();
        Entry *selected = m_outline.tree.selected();
        {
            const History::Step step(m_history, u"step"_s);
            const quint32 changes = 1 + m_random.bounded(4);
            for (quint32 i = 0; i < changes; ++i) {
                change();
                if (m_random.bounded(3) == 0)
                    expand();
            }
            if (Entry *entry = any(); entry && m_random.bounded(2) == 0)
                m_history.select(entry);
        }
        if (m_history.position() == before) {
            // Nothing, or expansions alone; nobody remembers what was selected then.
            m_history.select(selected);
            expanded();
            return check();
        }
        m_remembered.resize(static_cast<size_t>(before) + 1);
        m_remembered.push_back(now());
        if (m_savedAt > before)
            m_savedAt = -1;
        return check();
    }

    QString expandAlone()
    {
        if (!m_mayExpandAlone)
            return QString();
        expand();
        expanded();
        return check();
    }

    void expanded()
    {
        m_hasExpandedAlone = true;
        // Whether it led to what was saved is not worth modelling.
        if (m_savedAt == m_history.position())
            m_savedAt = -1;
    }

    // What is selected may have been hidden by then.
    void noteAllUndone() { m_remembered.front().selected = now().selected; }

    // A step that is left by an exception.
    QString fail()
    {
        const Remembered before = now();
        try {
            const History::Step step(m_history, u"failing"_s);
            for (int i = 0; i < 3; ++i) {
                change();
                expand();
            }
            throw std::bad_alloc();
        } catch (const std::bad_alloc &) {
        }
        const Remembered after = now();
        if (after.content != before.content || after.expansion != before.expansion || after.selected != before.selected)
            return u"a failed step left something behind"_s;
        return check();
    }

    QString wander()
    {
        const int there = static_cast<int>(m_random.bounded(quint32(m_history.stepCount()) + 1));
        const bool couldUndo = m_history.canUndo();
        if (!m_history.goTo(there))
            return u"position %1 was not reached"_s.arg(there);
        if (there == 0 && m_history.canUndo())
            return u"there is more to be undone than everything"_s;
        if (there == 0 && couldUndo) {
            noteAllUndone();
            if (now().expansion != m_start.expansion)
                return u"everything is undone, but not what is open"_s;
        }
        return check();
    }

    mutable QRandomGenerator m_random;
    bool m_mayExpandAlone;
    Outline m_outline;
    QAbstractItemModelTester m_tester;
    History m_history{m_outline};
    std::vector<Remembered> m_remembered;
    Remembered m_start;
    Remembered m_saved;
    int m_savedAt = 0;
    bool m_hasExpandedAlone = false;
};

} // namespace

class tst_HistoryRandom : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void everyPositionIsWhatItWas_data();
    void everyPositionIsWhatItWas();
};

void tst_HistoryRandom::everyPositionIsWhatItWas_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 30; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void tst_HistoryRandom::everyPositionIsWhatItWas()
{
    QFETCH(const quint32, seed);
    HistoryPlayer player(seed);
    for (int i = 0; i < 500; ++i) {
        const QString wrong = player.play();
        if (!wrong.isEmpty())
            QFAIL(qPrintable(u"After operation %1: %2"_s.arg(i).arg(wrong)));
    }
    const QString wrong = player.thereAndBack();
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
}

QTEST_GUILESS_MAIN(tst_HistoryRandom)
#include "tst_HistoryRandom.moc"
