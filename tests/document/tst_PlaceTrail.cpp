// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/Document.h"
#include "document/PlaceTrail.h"

#include <QTest>

#include <random>

using namespace Qt::StringLiterals;

class tst_PlaceTrail : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void whatWasVisitedIsGoneBackToAndForthAgain();
    void whatIsOnlyPassedThroughDoesNotCount();
    void whoOnlyPassesHasThePlaceBeforeBehindHim();
    void theSamePlaceAgainIsNoOther();
    void aVisitEndsWhatCouldBeGoneForthTo();
    void whatIsDeletedIsPassedOverUntilItIsBack();
    void whatIsClosedIsPassedOverForGood();
    void theOldestPlacesGo();
    void theOthersAreTheLatestFirst();
    void whatIsSaidOfTheWaysIsSo();

private:
    Entry *entry(const QString &label) const
    {
        Entry *found = m_document->tree.root();
        while (found && found->label() != label)
            found = nextInOutline(found, m_document->tree.root());
        return found;
    }

    Place place(const QString &label) const { return {m_document.get(), entry(label)->id()}; }

    void visit(const QString &label)
    {
        m_trail->show(place(label));
        m_trail->settle();
    }

    QString labelOf(const std::optional<Place> &place) const
    {
        const Entry *found = place && place->document ? place->document->tree.entry(place->entry) : nullptr;
        return found ? found->label() : u"nowhere"_s;
    }

    // Where going leads, as who shows it tells the trail again.
    QString back() { return arrive(m_trail->goBack()); }

    QString forward() { return arrive(m_trail->goForward()); }

    QString arrive(const std::optional<Place> &place)
    {
        if (place)
            m_trail->show(*place);
        return labelOf(place);
    }

    std::unique_ptr<Document> m_document;
    std::unique_ptr<PlaceTrail> m_trail;
};

void tst_PlaceTrail::init()
{
    m_trail = std::make_unique<PlaceTrail>();
    m_document = std::make_unique<Document>();
    History &history = m_document->history;
    Entry *root = history.insert(Relationship::tvwFirst, nullptr);
    history.setLabel(root, u"Root"_s);
    for (const QString &label : {u"A"_s, u"B"_s, u"C"_s, u"D"_s})
        history.setLabel(history.insert(Relationship::tvwChild, root), label);
}

void tst_PlaceTrail::whatWasVisitedIsGoneBackToAndForthAgain()
{
    QVERIFY(!m_trail->canGoBack() && !m_trail->canGoForward());
    QCOMPARE(back(), u"nowhere"_s);
    visit(u"A"_s);
    QVERIFY(!m_trail->canGoBack());
    visit(u"B"_s);
    visit(u"C"_s);
    QVERIFY(m_trail->canGoBack() && !m_trail->canGoForward());
    QCOMPARE(back(), u"B"_s);
    QCOMPARE(back(), u"A"_s);
    QCOMPARE(back(), u"nowhere"_s);
    QCOMPARE(forward(), u"B"_s);
    QCOMPARE(forward(), u"C"_s);
    QCOMPARE(forward(), u"nowhere"_s);
}

void tst_PlaceTrail::whatIsOnlyPassedThroughDoesNotCount()
{
    visit(u"A"_s);
    for (const QString &label : {u"B"_s, u"C"_s, u"B"_s})
        m_trail->show(place(label));
    visit(u"D"_s);
    QCOMPARE(back(), u"A"_s);
    QVERIFY(!m_trail->canGoBack());
    QCOMPARE(forward(), u"D"_s);
}

void tst_PlaceTrail::whoOnlyPassesHasThePlaceBeforeBehindHim()
{
    visit(u"A"_s);
    visit(u"B"_s);
    m_trail->show(place(u"C"_s));
    QCOMPARE(back(), u"B"_s);
    // What was left to go back counts.
    QCOMPARE(forward(), u"C"_s);
    QCOMPARE(back(), u"B"_s);
    // Who passes on the way forth goes forth.
    m_trail->show(place(u"D"_s));
    QCOMPARE(forward(), u"C"_s);
    QVERIFY(!m_trail->canGoForward());
}

void tst_PlaceTrail::theSamePlaceAgainIsNoOther()
{
    visit(u"A"_s);
    visit(u"B"_s);
    visit(u"B"_s);
    m_trail->show(place(u"C"_s));
    visit(u"B"_s);
    QCOMPARE(back(), u"A"_s);
    QVERIFY(!m_trail->canGoBack());
}

void tst_PlaceTrail::aVisitEndsWhatCouldBeGoneForthTo()
{
    visit(u"A"_s);
    visit(u"B"_s);
    visit(u"C"_s);
    back();
    back();
    m_trail->show(place(u"D"_s));
    QVERIFY(m_trail->canGoForward());
    m_trail->settle();
    QVERIFY(!m_trail->canGoForward());
    QCOMPARE(back(), u"A"_s);
}

void tst_PlaceTrail::whatIsDeletedIsPassedOverUntilItIsBack()
{
    visit(u"A"_s);
    visit(u"B"_s);
    visit(u"A"_s);
    m_document->history.remove(entry(u"B"_s));
    // Both ends of the way are the same place now.
    QVERIFY(!m_trail->canGoBack());
    visit(u"C"_s);
    QCOMPARE(back(), u"A"_s);
    QVERIFY(m_document->history.undo());
    QCOMPARE(back(), u"B"_s);
    QCOMPARE(back(), u"A"_s);
    QVERIFY(m_document->history.redo());
    QCOMPARE(forward(), u"C"_s);
}

void tst_PlaceTrail::whatIsClosedIsPassedOverForGood()
{
    auto other = std::make_unique<Document>();
    Entry *elsewhere = other->history.insert(Relationship::tvwFirst, nullptr);
    other->history.setLabel(elsewhere, u"Elsewhere"_s);
    visit(u"A"_s);
    m_trail->show({other.get(), elsewhere->id()});
    m_trail->settle();
    visit(u"B"_s);
    QCOMPARE(back(), u"Elsewhere"_s);
    QCOMPARE(forward(), u"B"_s);
    other.reset();
    QCOMPARE(back(), u"A"_s);
    QCOMPARE(forward(), u"B"_s);
}

void tst_PlaceTrail::theOldestPlacesGo()
{
    for (int i = 0; i < PlaceTrail::mostPlaces + 50; ++i)
        visit(i % 2 == 0 ? u"A"_s : u"B"_s);
    int steps = 0;
    while (m_trail->canGoBack()) {
        back();
        ++steps;
    }
    QCOMPARE(steps, PlaceTrail::mostPlaces - 1);
}

void tst_PlaceTrail::theOthersAreTheLatestFirst()
{
    for (const QString &label : {u"A"_s, u"B"_s, u"C"_s, u"A"_s, u"D"_s})
        visit(label);
    m_document->history.remove(entry(u"C"_s));
    QStringList labels;
    for (const Place &each : m_trail->others())
        labels += labelOf(each);
    QCOMPARE(labels, (QStringList{u"A"_s, u"B"_s}));
}

// Whatever was done: where it is said that one can go, one gets somewhere else, and back from there.
void tst_PlaceTrail::whatIsSaidOfTheWaysIsSo()
{
    std::mt19937 random(3);
    const QStringList labels{u"Root"_s, u"A"_s, u"B"_s, u"C"_s, u"D"_s};
    QString here = u"nowhere"_s;
    for (int step = 0; step < 5000; ++step) {
        switch (random() % 6) {
        case 0:
        case 1:
            if (const QString label = labels[qsizetype(random() % 5)]; entry(label)) {
                here = label;
                m_trail->show(place(here));
            }
            break;
        case 2:
            m_trail->settle();
            break;
        case 3:
            if (Entry *gone = entry(labels[qsizetype(1 + random() % 4)]))
                m_document->history.remove(gone);
            else
                m_document->history.undo();
            break;
        default:
            const bool isBack = random() % 2 == 0;
            const bool can = isBack ? m_trail->canGoBack() : m_trail->canGoForward();
            const QString there = isBack ? back() : forward();
            QCOMPARE(there != u"nowhere"_s, can);
            if (can && isBack && entry(here))
                QVERIFY(m_trail->canGoForward());
            if (can)
                here = there;
        }
    }
}

QTEST_MAIN(tst_PlaceTrail)
#include "tst_PlaceTrail.moc"
