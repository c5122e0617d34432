// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/EntryTree.h"
#include "model/ShownLabel.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_ShownLabel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void labelsAtTheBoundAndBeyondIt();
    void aCharacterIsNotHalved();
    void aLabelInASentenceIsOneLine();
    void theOutlineShowsTheBeginningAndKeepsTheWhole();
};

void tst_ShownLabel::labelsAtTheBoundAndBeyondIt()
{
    const QString longest(limits::shownLabel, u'x');
    QCOMPARE(shownLabel(longest), longest);
    QCOMPARE(shownLabel(longest + u'x'), longest.chopped(1) + u'\u2026');
    QCOMPARE(shownLabel(longest.repeated(5000)), longest.chopped(1) + u'\u2026');
    QCOMPARE(briefLabel(longest), longest.first(39) + u'\u2026');
}

void tst_ShownLabel::aCharacterIsNotHalved()
{
    const QString label = u"ab\U0001F333cd"_s;
    QCOMPARE(shownLabel(label, 6), label);
    QCOMPARE(shownLabel(label, 5), u"ab\U0001F333\u2026"_s);
    QCOMPARE(shownLabel(label, 4), u"ab\u2026"_s);
    QCOMPARE(shownLabel(label, 3), u"ab\u2026"_s);
}

void tst_ShownLabel::aLabelInASentenceIsOneLine()
{
    QCOMPARE(briefLabel(u"two  blanks"_s), u"two  blanks"_s);
    QCOMPARE(briefLabel(u"one\n two\r\nthree "_s), u"one two three"_s);
    QCOMPARE(briefLabel(u"one   two"_s.repeated(20), 12), u"one twoone \u2026"_s);
    // White space however long hides nothing of what stands behind it.
    QCOMPARE(briefLabel(QString(500, u' ') + u"word"_s), u"word"_s);
    // An accent belongs to its letter, and a family of signs is one.
    QCOMPARE(briefLabel(u"abce\u0301f"_s, 5), u"abc\u2026"_s);
    const QString family = u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_s;
    QCOMPARE(briefLabel(u"ab"_s + family + u"cd"_s, 9), u"ab\u2026"_s);
    // What has no end of a character is cut where it has to be.
    QCOMPARE(briefLabel(u"a"_s + QString(100, u'\u0301'), 10).size(), 10);
}

void tst_ShownLabel::theOutlineShowsTheBeginningAndKeepsTheWhole()
{
    EntryTree tree;
    Entry *root = tree.insert(Relationship::tvwFirst, nullptr);
    const QString label(5'000'000, u'x');
    tree.setLabel(root, label);
    const QModelIndex index = tree.indexOf(root);
    QCOMPARE(tree.data(index, Qt::DisplayRole).toString(), shownLabel(label));
    QCOMPARE(tree.data(index, Qt::EditRole).toString(), label);
    QCOMPARE(root->label(), label);
}

QTEST_APPLESS_MAIN(tst_ShownLabel)
#include "tst_ShownLabel.moc"
