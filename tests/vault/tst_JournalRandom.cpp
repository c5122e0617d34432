// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/RecoveryFixture.h"

#include "rtf/Rtf.h"
#include "util/RunTimeError.h"

#include <QRandomGenerator>
#include <QTest>
#include <QTextList>

#include <deque>

using namespace Qt::StringLiterals;

// Random sequences of changes, typing, undoing and redoing in several documents. Wherever the program is killed, each
// document is recovered as it was then or at some moment of the two seconds before.

namespace
{

constexpr qint64 promise = 2000;

class Player
{
public:
    Player(quint32 seed, Vault &vault, qint64 &time)
        : m_random(seed)
        , m_time(time)
    {
        auto outline = std::make_unique<Outline>();
        Entry *root = outline->tree.insert(Relationship::tvwFirst, nullptr);
        outline->tree.setLabel(root, u"root %1"_s.arg(seed));
        for (int child = 0; child < 4; ++child) {
            Entry *entry = outline->tree.insert(Relationship::tvwChild, root);
            outline->tree.setLabel(entry, u"child %1"_s.arg(child));
            outline->tree.setStoredText(entry, "plain text of " + QByteArray::number(child));
            // Long ones are taken down by what of them was changed.
            if (child == 0)
                outline->tree.setStoredText(entry, longText());
        }
        outline->tree.setForeignRecords(root, {{0, "{\\foreign 1}"}});
        document = std::make_unique<Document>(std::move(outline));
        document->m_sFile = u"/nowhere/notes %1.qly"_s.arg(seed);
        // So that live texts go, and their steps are folded, within a short test.
        document->texts.setMaximumWeight(seed % 2 == 0 ? 20000 : 200000);
        vault.attach(*document);
        note();
    }

    void play()
    {
        const int kind = m_random.bounded(20);
        if (kind < 6)
            type();
        else if (kind < 9)
            walk();
        else if (kind == 9)
            severalAtOnce();
        else if (kind == 10)
            fail();
        else if (kind == 11 && m_random.bounded(6) == 0)
            save();
        else
            change();
        note();
    }

    // What is wrong with what would be recovered now, in words; empty when nothing is.
    QString wrongWith(const QString &folder)
    {
        for (const auto &left : LeftBehind::find(folder)) {
            if (left->facts().file != document->m_sFile)
                continue;
            const RecoveredDocument recovered = recoveredFrom(*left);
            if (recovered.content.lostRecords || recovered.notPlayed || recovered.content.damagedEntries)
                return u"%1 of %2 records could not be played"_s.arg(recovered.notPlayed)
                    .arg(recovered.content.records.size());
            const QStringList found = documentState(*recovered.document);
            if (!isPromised(found))
                return u"recovered is what was at no moment: "_s + firstDifference(found, m_states.back().lines);
            return thereAndBack(*recovered.document);
        }
        // Nothing is left where nothing is to be saved, or was two seconds ago.
        const bool maySo = std::ranges::any_of(
            m_states, [this](const State &state) { return !state.isChanged && state.until >= m_time - promise; });
        return maySo ? QString() : u"nothing was left behind"_s;
    }

    std::unique_ptr<Document> document;

private:
    struct State {
        QStringList lines;
        bool isChanged = false;
        qint64 from = 0;
        qint64 until = 0;
    };

    void note()
    {
        if (!m_states.empty())
            m_states.back().until = m_time;
        m_states.push_back(
            {documentState(*document), document->hasUnsavedChanges(), m_time, std::numeric_limits<qint64>::max()});
        while (m_states.front().until < m_time - 3 * promise)
            m_states.pop_front();
    }

    bool isPromised(const QStringList &found) const
    {
        return std::ranges::any_of(
            m_states, [&](const State &state) { return state.until >= m_time - promise && state.lines == found; });
    }

    // What can be undone leads somewhere and back, to the same but what is open, which is no step.
    static QString thereAndBack(Document &recovered)
    {
        const auto state = [&recovered] {
            return documentState(recovered).replaceInStrings(u" expanded"_s, QString());
        };
        const QStringList found = state();
        const int position = recovered.history.position();
        if (!recovered.history.goTo(0) || !recovered.history.goTo(position))
            return u"its steps cannot be undone and redone"_s;
        const QStringList again = state();
        return again == found ? QString() : u"undone and redone it is another: "_s + firstDifference(again, found);
    }

    static QByteArray longText()
    {
        QByteArray rtf("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 DejaVu Sans;}}\\f0\\fs20 ");
        for (int line = 0; line < 30; ++line)
            rtf += "plain no. " + QByteArray::number(line) + " {\\b jumps} over {\\i the lazy} dog and runs\\par\n";
        return rtf + "}";
    }

    // Changes a text anywhere in it, as the text pane does, which lays it out.
    void edit(const Entry &entry)
    {
        const std::shared_ptr<EntryDocument> live = document->texts.open(entry, QFont());
        document->texts.setShown(live);
        live->document().documentLayout();
        QTextCursor cursor(&live->document());
        cursor.setPosition(m_random.bounded(live->document().characterCount()));
        if (m_random.bounded(2) == 0)
            cursor.setPosition(m_random.bounded(live->document().characterCount()), QTextCursor::KeepAnchor);
        switch (m_random.bounded(8)) {
        case 0: {
            QTextCharFormat format;
            format.setFontWeight(m_random.bounded(2) ? QFont::Bold : QFont::Normal);
            cursor.mergeCharFormat(format);
            break;
        }
        case 1:
            cursor.createList(m_random.bounded(2) ? QTextListFormat::ListDisc : QTextListFormat::ListDecimal);
            break;
        case 2:
            rtf::insert(longText(), cursor);
            break;
        case 3:
            rtf::insert(
                "{\\rtf1 a\\par\\trowd\\cellx2000\\cellx4000\\pard\\intbl one\\cell two\\cell\\row\\pard b\\par}",
                cursor);
            break;
        case 4:
            live->changeFont(QFont(u"Font %1"_s.arg(++m_counter)));
            break;
        default:
            cursor.setPosition(cursor.position());
            cursor.insertText(u"some words"_s);
        }
    }

    Entry *any()
    {
        const EntryTree &tree = document->tree;
        return tree.entryCount() == 0 ? nullptr : tree.collection().at(m_random.bounded(tree.entryCount()) + 1);
    }

    void type()
    {
        // Mostly where it was typed last.
        Entry *entry = document->tree.entry(m_typedIn);
        if (!entry || m_random.bounded(4) == 0)
            entry = any();
        m_typedIn = entry->id();
        if (m_random.bounded(2) == 0) {
            edit(*entry);
            return;
        }
        constexpr const char *keys[] = {"a", "word ", "\n", "\b", "two words", "x\b", "\u00fc"};
        typeInto(*document, *entry, QString::fromUtf8(keys[m_random.bounded(int(std::size(keys)))]));
    }

    void walk()
    {
        try {
            switch (m_random.bounded(4)) {
            case 0:
                document->history.redo();
                break;
            case 1:
                document->history.goTo(m_random.bounded(document->history.stepCount() + 1));
                break;
            default:
                document->history.undo();
            }
        } catch (const RunTimeError &) {
            // A step that is impossible, and then nothing has changed.
            return;
        }
    }

    void change()
    {
        History &history = document->history;
        Entry *entry = any();
        Entry *other = any();
        const bool isRoot = entry->isRoot();
        try {
            switch (m_random.bounded(14)) {
            case 0:
            case 1:
                history.insert(Relationship::tvwChild, entry);
                break;
            case 2:
                if (!isRoot)
                    history.remove(entry);
                break;
            case 3:
                if (!isRoot)
                    history.move(entry, Relationship::tvwChild, other);
                break;
            case 4:
                history.setLabel(entry, u"label %1"_s.arg(++m_counter));
                break;
            case 5:
                history.setTagged(entry, !entry->tagged());
                break;
            case 6:
                history.setExpanded(entry, !entry->expanded());
                break;
            case 7:
                history.setExpandedAll(entry, m_random.bounded(2) == 0);
                break;
            case 8:
                history.setSorted(entry, m_random.bounded(2) == 0);
                break;
            case 9:
                history.setStoredText(entry, "stored " + QByteArray::number(++m_counter));
                break;
            case 10: {
                clsFont font;
                font.setName(u"Font %1"_s.arg(++m_counter));
                history.setFonts(font, document->m_fntTextFont);
                break;
            }
            case 11:
                history.setForeignRecords(entry, {{1, "{\\foreign " + QByteArray::number(++m_counter) + '}'}});
                break;
            case 12:
                history.setFileForeignRecords({{0, "{\\head " + QByteArray::number(++m_counter) + '}'}},
                                              "{\\end " + QByteArray::number(m_counter) + '}');
                break;
            default:
                history.insertCopy(document->tree, other, Relationship::tvwChild, entry);
            }
        } catch (const RunTimeError &) {
            // A move into itself, which is refused.
            return;
        }
    }

    void severalAtOnce()
    {
        const History::Step step(document->history, u"several at once"_s);
        const int count = m_random.bounded(5);
        for (int i = 0; i < count; ++i) {
            if (m_random.bounded(3) == 0)
                type();
            else
                change();
        }
        std::vector<Entry *> leaves;
        for (Entry *entry = document->tree.root(); entry; entry = nextInOutline(entry, document->tree.root())) {
            if (!entry->isRoot() && entry->childCount() == 0 && m_random.bounded(3) == 0)
                leaves.push_back(entry);
        }
        if (m_random.bounded(2) == 0 && document->tree.entryCount() - static_cast<int>(leaves.size()) > 3)
            document->history.removeAll(leaves);
    }

    void fail()
    {
        try {
            const History::Step step(document->history, u"failure"_s);
            change();
            type();
            change();
            throw RunTimeError(ErrorNumber::InvalidCall);
        } catch (const RunTimeError &) {
            return;
        }
    }

    void save()
    {
        document->tree.resolvePendingText();
        document->history.markSaved();
    }

    QRandomGenerator m_random;
    qint64 &m_time;
    std::deque<State> m_states;
    EntryId m_typedIn = EntryId::None;
    int m_counter = 0;
};

} // namespace

class tst_JournalRandom : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDocumentIsRecoveredAsItWasWhereverTheProgramIsKilled_data();
    void aDocumentIsRecoveredAsItWasWhereverTheProgramIsKilled();
};

void tst_JournalRandom::aDocumentIsRecoveredAsItWasWhereverTheProgramIsKilled_data()
{
    QTest::addColumn<quint32>("seed");
    const int count = qEnvironmentVariableIsSet("QUILLERY_SEEDS") ? qEnvironmentVariableIntValue("QUILLERY_SEEDS") : 16;
    for (int seed = 1; seed <= count; ++seed)
        QTest::addRow("seed %d", seed) << static_cast<quint32>(seed);
}

void tst_JournalRandom::aDocumentIsRecoveredAsItWasWhereverTheProgramIsKilled()
{
    QFETCH(const quint32, seed);
    const QTemporaryDir folder;
    qint64 time = 1'000'000;
    Vault vault({folder.filePath(u"recovery"_s), [&time] { return time; }, false});
    QRandomGenerator random(seed * 7919);
    std::vector<std::unique_ptr<Player>> players;
    for (quint32 place = 0; place < 2; ++place)
        players.push_back(std::make_unique<Player>(seed * 10 + place, vault, time));
    if (seed % 3 == 0)
        vault.journalOf(*players.front()->document)->setRoomForLog(-(qint64(1) << 40));
    for (int step = 0; step < 150; ++step) {
        players[static_cast<size_t>(random.bounded(2))]->play();
        // The program looks after its journals four times a second.
        for (int wait = random.bounded(2) == 0 ? 0 : random.bounded(6); wait > 0; --wait) {
            time += Journal::lookInterval;
            vault.look();
            QVERIFY(vault.waitUntilWritten());
        }
        // Where it is killed is as random as what it does; looking after each step takes long.
        if (random.bounded(4) != 0)
            continue;
        const QString crashed = folder.filePath(u"crashed %1"_s.arg(step));
        copyAsLeft(vault.folder(), crashed);
        for (const auto &player : players) {
            const QString wrong = player->wrongWith(crashed);
            QVERIFY2(wrong.isEmpty(), qPrintable(u"step %1: %2"_s.arg(step).arg(wrong)));
        }
        QDir(crashed).removeRecursively();
    }
}

QTEST_MAIN(tst_JournalRandom)
#include "tst_JournalRandom.moc"
