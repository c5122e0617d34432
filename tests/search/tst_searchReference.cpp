// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "find/TextIndex.h"
#include "search/SearchFixture.h"
#include "support/RawOutline.h"

#include <QSignalSpy>
#include <QTest>
#include <QTextCursor>

#include <random>

using namespace Qt::StringLiterals;

namespace
{

bool isLetterOrDigit(const QString &text, qsizetype at)
{
    return at >= 0 && at < text.size() && text[at].isLetterOrNumber();
}

bool isAsciiWordCharacter(QChar c)
{
    return (c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
}

// The search engine as its rules read, on strings and numbers, with no thought of its cost.
class Reference
{
public:
    struct Row {
        int parent;
        QString label;
        QString text;
    };

    // In the order of insertion; the first is the root.
    std::vector<Row> rows;
    int selected = 0;
    // The text pane.
    QString shown;
    int start = 0;
    int length = 0;

    void select(int row)
    {
        selected = row;
        load(row);
    }

    bool perform()
    {
        if (g_sSearchScope == u"0")
            return searchText();
        if (g_sSearchScope == u"1")
            return searchAllTexts();
        return searchLabels();
    }

    void performReplace()
    {
        if (g_sSearchScope == u"2")
            replaceLabel();
        else
            replaceText();
    }

private:
    void load(int row)
    {
        shown = rows[std::size_t(row)].text;
        start = length = 0;
    }

    static bool equal(const QString &a, const QString &b)
    {
        return a.compare(b, g_bSearchMatchCase ? Qt::CaseSensitive : Qt::CaseInsensitive) == 0;
    }

    int find(int from) const
    {
        const qsizetype size = g_sSearchFind.size();
        for (qsizetype at = from; at + size <= shown.size(); ++at) {
            const bool isWord = !isLetterOrDigit(shown, at - 1) && !isLetterOrDigit(shown, at + size);
            if (equal(shown.mid(at, size), g_sSearchFind) && (isWord || !g_bSearchWholeWord))
                return int(at);
        }
        return -1;
    }

    bool findAndSelect(int from)
    {
        const int found = find(from);
        if (found < 0)
            return false;
        start = found;
        length = int(g_sSearchFind.size());
        return true;
    }

    bool searchText()
    {
        if (g_bSearchBackwards)
            return searchBackwards();
        if (findAndSelect(start + length))
            return true;
        if (length == 0)
            return false;
        start = length = 0;
        return findAndSelect(0);
    }

    void sweep(int limit, int &next, int &previous) const
    {
        next = previous = -1;
        for (;;) {
            previous = next;
            next = find(next + 1);
            if (next == -1 || next >= limit)
                return;
        }
    }

    bool searchBackwards()
    {
        int next = -1;
        int previous = -1;
        sweep(start, next, previous);
        if (previous == -1) {
            if (length > 0)
                start = length = 0;
            sweep(int(shown.size()), next, previous);
        }
        if (previous >= 0) {
            start = previous;
            length = int(g_sSearchFind.size());
        }
        return next >= 0;
    }

    bool searchAllText()
    {
        return g_bSearchBackwards ? searchBackwards() : findAndSelect(length > 0 ? start + length : 0);
    }

    bool searchAllTexts()
    {
        const int first = selected;
        std::vector<int> order;
        for (int row = first; row < int(rows.size()); ++row)
            order.push_back(row);
        for (int row = 0; row < first; ++row)
            order.push_back(row);
        for (const int row : order) {
            if (row != first)
                load(row);
            if (searchAllText()) {
                selected = row;
                return true;
            }
        }
        load(selected);
        return false;
    }

    int nextSibling(int row) const
    {
        for (int other = row + 1; other < int(rows.size()); ++other) {
            if (rows[std::size_t(other)].parent == rows[std::size_t(row)].parent)
                return other;
        }
        return -1;
    }

    int firstChild(int row) const
    {
        for (int other = row + 1; other < int(rows.size()); ++other) {
            if (rows[std::size_t(other)].parent == row)
                return other;
        }
        return -1;
    }

    // The row below the selected one; the selected one when there is none.
    int rowBelow() const
    {
        int target = nextSibling(selected);
        for (int up = rows[std::size_t(selected)].parent; target < 0 && up >= 0; up = rows[std::size_t(up)].parent)
            target = nextSibling(up);
        if (target < 0)
            target = firstChild(selected);
        return target >= 0 ? target : selected;
    }

    // The first place of the expression in a label, from 0, and whether it is a word of its own there.
    static int placeIn(const QString &label, bool &isWord)
    {
        const qsizetype size = g_sSearchFind.size();
        for (qsizetype at = 0; at + size <= label.size(); ++at) {
            if (!equal(label.mid(at, size), g_sSearchFind))
                continue;
            const QChar before = at > 0 ? label[at - 1] : u' ';
            // Counted from 1, the place behind the match is at + size + 1; it is looked at only before the last.
            const QChar behind = at + 1 + size < label.size() ? label[at + size] : u' ';
            isWord = !isAsciiWordCharacter(before) && !isAsciiWordCharacter(behind);
            return int(at);
        }
        return -1;
    }

    static bool labelMatches(const QString &label)
    {
        bool isWord = false;
        return placeIn(label, isWord) >= 0 && (isWord || !g_bSearchWholeWord);
    }

    bool searchLabels()
    {
        const int first = rowBelow();
        std::vector<int> order;
        for (int row = first; row < int(rows.size()); ++row)
            order.push_back(row);
        for (int row = 0; row < first; ++row)
            order.push_back(row);
        for (const int row : order) {
            if (labelMatches(rows[std::size_t(row)].label)) {
                // The selected entry's text keeps its caret.
                if (row != selected)
                    select(row);
                return true;
            }
        }
        return false;
    }

    void replaceText()
    {
        if (length == 0)
            return;
        QString with = g_sSearchReplace;
        const QChar initial = shown[start];
        if (!with.isEmpty() && !with.contains(u' ') && !g_bSearchMatchCase && initial >= u'A' && initial <= u'Z')
            with[0] = with[0].toUpper();
        shown.replace(start, length, with);
        length = int(with.size());
        rows[std::size_t(selected)].text = shown;
    }

    void replaceLabel()
    {
        QString &label = rows[std::size_t(selected)].label;
        for (;;) {
            bool isWord = false;
            const int place = placeIn(label, isWord);
            if (place < 0 || (g_bSearchWholeWord && !isWord))
                return;
            label = label.left(place) + g_sSearchReplace + label.mid(place + g_sSearchFind.size());
        }
    }
};

} // namespace

// The search engine beside a slow and obvious one, on random outlines, values and steps.
class tst_searchReference : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void cleanup() { m_fixture.reset(); }

    void everyStepIsTheSame_data();
    void everyStepIsTheSame();
    void replacingAllIsReplacingOneByOne_data();
    void replacingAllIsReplacingOneByOne();

private:
    int below(int bound) { return int(m_random() % unsigned(bound)); }

    bool oneIn(int n) { return below(n) == 0; }

    QString pieces(int most)
    {
        static const QString words[] = {u"a"_s, u"b"_s,  u"-"_s, u"ab"_s, u"Ab"_s, u"AB"_s, u"abc"_s,
                                        u" "_s, u"\n"_s, u"1"_s, u" "_s,  u"ab"_s, u"c"_s,  u"\u00e4"_s};
        // Few kinds of letters make many matches, which touch each other.
        const int kinds = oneIn(2) ? 4 : int(std::size(words));
        QString made;
        for (int i = below(most); i > 0; --i)
            made += words[below(kinds)];
        return made;
    }

    // The same characters, some of them in other looks.
    QByteArray looks(const QString &text)
    {
        QByteArray rtf("{\\rtf1{\\fonttbl{\\f0 DejaVu Sans;}{\\f1 DejaVu Serif;}}{\\colortbl;\\red255;}\\f0\\fs20 ");
        for (const QChar c : text) {
            if (oneIn(4)) {
                static const char *const words[] = {"\\b ", "\\b0 ", "\\i ", "\\fs30 ", "\\f1 ", "\\cf1 ", "\\plain "};
                rtf += words[below(int(std::size(words)))];
            }
            rtf += c == u'\n'          ? QByteArray("\\par ")
                   : c.unicode() > 127 ? "\\'" + QByteArray::number(c.unicode(), 16)
                                       : QByteArray(1, char(c.unicode()));
        }
        return rtf + "}";
    }

    void chooseValues()
    {
        static const QString expressions[] = {u"ab"_s, u"b"_s,      u"abc"_s, u"b a"_s,
                                              u"a"_s,  u"\u00c4"_s, u"bab"_s, u"Ab\u00c4"_s};
        static const QString replacements[] = {u"x"_s, u"xyz"_s, u"ba"_s, u"x y"_s, u"1"_s, u"-"_s};
        do {
            g_sSearchFind = expressions[below(int(std::size(expressions)))];
            g_sSearchReplace = replacements[below(int(std::size(replacements)))];
            g_bSearchMatchCase = oneIn(2);
        } while (modSearch::replacementHoldsExpression());
        g_bSearchWholeWord = oneIn(2);
        g_bSearchBackwards = oneIn(3);
    }

    std::mt19937 m_random;
    std::unique_ptr<SearchFixture> m_fixture;
};

void tst_searchReference::everyStepIsTheSame_data()
{
    QTest::addColumn<bool>("hasIndex");
    QTest::newRow("each text looked at") << false;
    QTest::newRow("with an index") << true;
}

void tst_searchReference::everyStepIsTheSame()
{
    QFETCH(const bool, hasIndex);
    m_random.seed(11);
    for (int round = 0; round < 150; ++round) {
        m_fixture.reset();
        m_fixture = std::make_unique<SearchFixture>();
        SearchFixture &f = *m_fixture;
        Reference expected;
        std::vector<Entry *> entries;
        for (int i = 0, count = 1 + below(7); i < count; ++i) {
            QString text = pieces(9);
            QString label = pieces(5).remove(u'\n');
            const int parent = i == 0 ? -1 : below(i);
            entries.push_back(f.add(i == 0 ? nullptr : entries[std::size_t(parent)], label, {}));
            rawOutline(f.document).tree.setStoredText(entries.back(), NodeTextCompressIfRequired(looks(text)));
            // A paragraph that the text only opens is none yet.
            if (text.endsWith(u'\n'))
                text.chop(1);
            expected.rows.push_back({parent, label, text.replace(u"\n"_s, u"\r\n"_s)});
        }
        const int first = below(int(entries.size()));
        modNodes::NodeSelectFull(f.document, entries[std::size_t(first)]);
        expected.select(first);
        auto *index = hasIndex ? new TextIndex(f.document, 0) : nullptr;
        for (int step = 0; step < 25; ++step) {
            const QByteArray where = "round " + QByteArray::number(round) + ", step " + QByteArray::number(step);
            // What was replaced lately, and much else, is known from before at most.
            if (index && oneIn(3))
                QVERIFY(index->isComplete() || QSignalSpy(index, &TextIndex::completed).wait());
            if (step % 6 == 0) {
                chooseValues();
                g_sSearchScope = QString::number(below(3));
            }
            if (oneIn(5)) {
                // Never between the halves of a line break.
                const auto offset = [&] {
                    const int place = below(int(expected.shown.size()) + 1);
                    return place > 0 && expected.shown[place - 1] == u'\r' ? place - 1 : place;
                };
                const int from = offset();
                const int to = offset();
                expected.start = std::min(from, to);
                expected.length = std::max(from, to) - expected.start;
                f.select(expected.start, expected.length);
            }
            if (oneIn(3)) {
                expected.performReplace();
                modSearch::SearchPerformReplace();
            } else {
                const bool found = expected.perform();
                QVERIFY2(modSearch::SearchPerform() == found, where.constData());
            }
            QVERIFY2(f.document.tree.selected() == entries[std::size_t(expected.selected)], where.constData());
            QVERIFY2(f.box.Text() == expected.shown, where.constData());
            QVERIFY2(f.box.SelStart() == expected.start, where.constData());
            QVERIFY2(f.box.SelLength() == expected.length, where.constData());
            for (std::size_t i = 0; i < entries.size(); ++i) {
                QVERIFY2(entries[i]->label() == expected.rows[i].label, where.constData());
                QVERIFY2(f.textOf(entries[i]) == expected.rows[i].text, where.constData());
            }
        }
    }
}

void tst_searchReference::replacingAllIsReplacingOneByOne_data()
{
    QTest::addColumn<QString>("scope");
    QTest::addColumn<bool>("hasIndex");
    QTest::newRow("the text") << u"0"_s << false;
    QTest::newRow("all texts") << u"1"_s << false;
    QTest::newRow("all texts, with an index") << u"1"_s << true;
    QTest::newRow("all labels") << u"2"_s << false;
}

// Texts with their looks, byte for byte.
void tst_searchReference::replacingAllIsReplacingOneByOne()
{
    QFETCH(const QString, scope);
    QFETCH(const bool, hasIndex);
    m_random.seed(12);
    for (int round = 0; round < 500; ++round) {
        m_fixture.reset();
        m_fixture = std::make_unique<SearchFixture>();
        SearchFixture &f = *m_fixture;
        std::vector<Entry *> entries;
        std::vector<QByteArray> texts;
        QStringList labels;
        for (int i = 0, count = 1 + below(5); i < count; ++i) {
            labels.append(pieces(6).remove(u'\n'));
            texts.push_back(NodeTextCompressIfRequired(looks(pieces(14))));
            entries.push_back(f.add(i == 0 ? nullptr : entries[std::size_t(below(i))], labels.back(), {}));
        }
        chooseValues();
        g_sSearchScope = scope;
        const auto *index = hasIndex ? new TextIndex(f.document, 0) : nullptr;
        const int first = below(int(entries.size()));
        const int from = below(12);
        const int length = below(4);

        struct Outcome {
            std::vector<QByteArray> texts;
            QStringList labels;
            const Entry *selected;
            QByteArray shown;
            int start;
            int length;
            bool isChanged;
            qsizetype notices;
            bool operator==(const Outcome &) const = default;
        };

        const auto outcome = [&](void (*replaceAll)()) {
            for (std::size_t i = 0; i < entries.size(); ++i) {
                rawOutline(f.document).tree.setLabel(entries[i], labels[qsizetype(i)]);
                rawOutline(f.document).tree.setStoredText(entries[i], texts[i]);
            }
            modNodes::NodeSelectFull(f.document, entries[std::size_t(first)]);
            f.select(from, length);
            f.document.history.markSaved();
            f.fake.dialogs.notices.clear();
            if (index && oneIn(2))
                QSignalSpy(index, &TextIndex::completed).wait();
            replaceAll();
            Outcome result;
            for (const Entry *entry : entries) {
                result.texts.push_back(NodeTextDecompressIfRequired(f.document.tree.storedText(entry)));
                result.labels.append(entry->label());
            }
            result.selected = f.document.tree.selected();
            result.shown = f.box.TextRTF();
            // One by one, the search may have left the selected entry and its caret in between.
            const bool isBack = scope == u"2" && result.selected == entries[std::size_t(first)];
            result.start = isBack ? 0 : f.box.SelStart();
            result.length = isBack ? 0 : f.box.SelLength();
            result.isChanged = f.document.m_bDataChanged();
            result.notices = f.fake.dialogs.notices.size();
            return result;
        };
        const Outcome expected = outcome([] {
            do {
                modSearch::SearchPerformReplace();
            } while (modSearch::SearchPerform());
        });
        QVERIFY2(outcome(modSearch::SearchReplaceAll) == expected, qPrintable(u"round %1"_s.arg(round)));
    }
}

QTEST_MAIN(tst_searchReference)
#include "tst_searchReference.moc"
