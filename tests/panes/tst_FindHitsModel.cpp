// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "panes/FindHitDelegate.h"
#include "panes/FindHitsModel.h"
#include "panes/FindList.h"

#include "model/Contrast.h"
#include "support/FakePorts.h"
#include "support/OutlineText.h"
#include "support/RawOutline.h"

#include <QAbstractItemModelTester>
#include <QPainter>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

// Counts the rows that are drawn.
class CountingDelegate final : public QStyledItemDelegate
{
public:
    explicit CountingDelegate(const FindHitsModel &model)
        : hits(model, nullptr)
    {
    }

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        ++sized;
        return hits.sizeHint(option, index);
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        ++painted;
        hits.paint(painter, option, index);
    }

    FindHitDelegate hits;
    mutable int sized = 0;
    mutable int painted = 0;
};

} // namespace

// The hits as rows, without the window around them.
class tst_FindHitsModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rowsKeepTheModelsRulesWhateverHappens();
    void whatIsSelectedStaysWithItsHit();
    void earlierHitsStayForAMomentOnly();
    void aHundredThousandHitsFormatWhatIsSeen();
    void theMarkIsReadableInAnyColours_data();
    void theMarkIsReadableInAnyColours();
    void aLongLineShowsItsMatch();
    void countsSayWhetherThereMayBeMore();
    void theReplacementStandsBehindWhatIsStruckOut();

private:
    static QByteArray text(const QString &words) { return "{\\rtf1\\ansi " + words.toLatin1() + "}"; }

    FakePorts m_fakes;
};

void tst_FindHitsModel::rowsKeepTheModelsRulesWhateverHappens()
{
    Document document;
    EntryTree &tree = rawOutline(document).tree;
    plantOutline(tree, {u"Root +"_s, u" One"_s, u"  Two"_s, u" Three"_s});
    for (Entry *each : {tree.root(), entryLabelled(tree, u"Two"_s), entryLabelled(tree, u"Three"_s)})
        tree.setStoredText(each, text(u"word and word"_s));
    auto other = std::make_unique<Document>();
    plantOutline(rawOutline(*other).tree, {u"Word"_s});
    FindHitsModel model(nullptr);
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.search({&document, other.get()}, FindQuery(u"word"_s, {}));
    QTRY_COMPARE(model.rowCount(), 1 + 3 * 3 + 1 + 2);
    model.setCheckable(true);
    // Changed, moved, removed, new and undone.
    document.history.setLabel(entryLabelled(tree, u"One"_s), u"word One"_s);
    QTRY_COMPARE(model.rowCount(), 15);
    QCOMPARE(model.index(4, 0).data().toString(), u"word One"_s);
    document.history.move(entryLabelled(tree, u"Three"_s), Relationship::tvwFirst, entryLabelled(tree, u"word One"_s));
    QTRY_COMPARE(model.index(4, 0).data().toString(), u"Three"_s);
    document.history.remove(entryLabelled(tree, u"word One"_s));
    QTRY_COMPARE(model.rowCount(), 10);
    while (document.history.canUndo())
        QVERIFY(document.history.undo());
    QTRY_COMPARE(model.rowCount(), 13);
    QCOMPARE(model.index(model.rowCount() - 2, 0).data().toString(), u"Word"_s);
    other.reset();
    QTRY_COMPARE(model.rowCount(), 10);
    model.search({}, FindQuery());
    QCOMPARE(model.rowCount(), 0);
}

void tst_FindHitsModel::whatIsSelectedStaysWithItsHit()
{
    Document document;
    EntryTree &tree = rawOutline(document).tree;
    plantOutline(tree, {u"Root +"_s, u" One"_s, u" Two"_s});
    tree.setStoredText(entryLabelled(tree, u"Two"_s), text(u"a word\\par another word"_s));
    FindHitsModel model(nullptr);
    FindList list(model, nullptr);
    list.show();
    model.search({&document}, FindQuery(u"word"_s, {}));
    QTRY_COMPARE(model.rowCount(), 3);
    list.setCurrentIndex(model.index(2));
    document.history.setLabel(tree.root(), u"word and word"_s);
    QTRY_COMPARE(model.rowCount(), 6);
    QCOMPARE(list.currentIndex().row(), 5);
    QCOMPARE(list.currentIndex().data().toString(), u"another word"_s);
    QVERIFY(document.history.undo());
    QTRY_COMPARE(list.currentIndex().row(), 2);
}

// Not one that would be walked to by a key, though.
void tst_FindHitsModel::earlierHitsStayForAMomentOnly()
{
    Document document;
    plantOutline(rawOutline(document).tree, {u"Word"_s});
    FindHitsModel model(nullptr);
    model.search({&document}, FindQuery(u"word"_s, {}));
    QTRY_COMPARE(model.rowCount(), 2);
    model.search({&document}, FindQuery(u"wo"_s, {}));
    QVERIFY(model.isStale());
    QCOMPARE(model.rowCount(), 2);
    model.dropStale();
    QCOMPARE(model.rowCount(), 0);
    QTRY_COMPARE(model.rowCount(), 2);
    model.search({&document}, FindQuery());
    QCOMPARE(model.rowCount(), 0);
}

void tst_FindHitsModel::aHundredThousandHitsFormatWhatIsSeen()
{
    Document document;
    EntryTree &tree = rawOutline(document).tree;
    QStringList lines{u"Root +"_s};
    for (int number = 1; number < 2500; ++number)
        lines.append(u" Entry %1"_s.arg(number));
    plantOutline(tree, lines);
    const QByteArray words = text(u"word "_s.repeated(45));
    for (const Entry *each = tree.root(); each; each = nextInOutline(each, tree.root()))
        tree.setStoredText(tree.entry(each->id()), words);
    FindHitsModel model(nullptr);
    FindList list(model, nullptr);
    CountingDelegate delegate(model);
    list.setItemDelegate(&delegate);
    list.resize(300, 600);
    list.show();
    const QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    model.search({&document}, FindQuery(u"word"_s, {}));
    QTRY_VERIFY_WITH_TIMEOUT(model.counts().isFinished, 60000);
    QCOMPARE(model.counts().hits, 2500 * 45);
    QVERIFY(model.rowCount() > 50'000);
    QVERIFY(!inserted.isEmpty());
    QTRY_VERIFY(delegate.painted > 0);
    // The heights are all one, and what is out of sight is not drawn.
    const int seen = list.viewport()->height() / list.sizeHintForRow(0) + 2;
    QVERIFY2(delegate.sized < 20 * inserted.size() + 200, qPrintable(QString::number(delegate.sized)));
    delegate.painted = 0;
    list.scrollToBottom();
    list.viewport()->repaint();
    QVERIFY2(delegate.painted <= 2 * seen, qPrintable(QString::number(delegate.painted)));
    QCOMPARE(model.hitRow(model.rowCount(), -1), model.rowCount() - 2);
}

void tst_FindHitsModel::theMarkIsReadableInAnyColours_data()
{
    QTest::addColumn<QColor>("base");
    QTest::addColumn<QColor>("text");
    QTest::addColumn<QColor>("highlight");
    QTest::addColumn<QColor>("highlighted");
    QTest::newRow("light") << QColor(Qt::white) << QColor(Qt::black) << QColor(0x30, 0x8c, 0xc6) << QColor(Qt::white);
    QTest::newRow("dark") << QColor(27, 30, 32) << QColor(252, 252, 252) << QColor(61, 174, 233)
                          << QColor(252, 252, 252);
    QTest::newRow("contrast") << QColor(Qt::black) << QColor(Qt::white) << QColor(Qt::yellow) << QColor(Qt::black);
    QTest::newRow("inverse") << QColor(Qt::black) << QColor(Qt::green) << QColor(Qt::white) << QColor(Qt::black);
    QTest::newRow("pale") << QColor(Qt::white) << QColor(0x70, 0x70, 0x70) << QColor(Qt::black) << QColor(Qt::white);
}

void tst_FindHitsModel::theMarkIsReadableInAnyColours()
{
    QFETCH(const QColor, base);
    QFETCH(const QColor, text);
    QFETCH(const QColor, highlight);
    QFETCH(const QColor, highlighted);
    QPalette colours;
    colours.setColor(QPalette::Base, base);
    colours.setColor(QPalette::Text, text);
    colours.setColor(QPalette::Highlight, highlight);
    colours.setColor(QPalette::HighlightedText, highlighted);
    for (const bool isSelected : {false, true}) {
        const QTextCharFormat mark = FindHitDelegate::markOf(colours, QPalette::Active, isSelected);
        QCOMPARE(mark.fontWeight(), static_cast<int>(QFont::Bold));
        QVERIFY(mark.hasProperty(QTextFormat::BackgroundBrush) || mark.fontUnderline());
        if (mark.hasProperty(QTextFormat::BackgroundBrush))
            QVERIFY(Contrast::between(mark.background().color(), mark.foreground().color()) >= Contrast::readable);
    }
}

void tst_FindHitsModel::aLongLineShowsItsMatch()
{
    Document document;
    EntryTree &tree = rawOutline(document).tree;
    plantOutline(tree, {u"Root"_s});
    tree.setStoredText(tree.root(), text(u"some words before it "_s.repeated(6) + u"XXXX"_s));
    FindHitsModel model(nullptr);
    FindHitDelegate delegate(model, nullptr);
    FindList list(model, nullptr);
    list.setItemDelegate(&delegate);
    list.resize(250, 200);
    list.show();
    model.search({&document}, FindQuery(u"xxxx"_s, {}));
    QTRY_COMPARE(model.rowCount(), 2);
    // The mark's colour stands somewhere in the row, however narrow that is.
    const QRgb mark = FindHitDelegate::markOf(list.palette(), QPalette::Active, false).background().color().rgb();
    for (const int width : {250, 120, 60}) {
        list.resize(width, 200);
        QTRY_COMPARE(list.width(), width);
        const QImage row = list.viewport()->grab(list.visualRect(model.index(1))).toImage();
        bool isMarked = false;
        for (int x = 0; x < row.width(); ++x)
            isMarked = isMarked || row.pixel(x, row.height() / 2) == mark || row.pixel(x, 4) == mark;
        QVERIFY2(isMarked, qPrintable(QString::number(width)));
    }
}

void tst_FindHitsModel::countsSayWhetherThereMayBeMore()
{
    QCOMPARE(inWords({0, 0, 0, 0, false}), u"Looking…"_s);
    QCOMPARE(inWords({1, 1, 0, 0, false}), u"1 hit in 1 entry so far…"_s);
    QCOMPARE(inWords({5, 2, 0, 0, true}), u"5 hits in 2 entries"_s);
    QCOMPARE(inWords({0, 0, 1, 0, true}), u"Nothing found; 1 text could not be read"_s);
    QCOMPARE(inWords({5, 2, 0, 3, true}), u"5 hits in 2 entries; 3 texts were too much work for the expression"_s);
}

void tst_FindHitsModel::theReplacementStandsBehindWhatIsStruckOut()
{
    Document document;
    EntryTree &tree = rawOutline(document).tree;
    plantOutline(tree, {u"cat"_s});
    FindHitsModel model(nullptr);
    FindHitDelegate delegate(model, nullptr);
    model.search({&document}, FindQuery(u"cat"_s, {}));
    QTRY_COMPARE(model.rowCount(), 2);
    const auto widthOf = [&] {
        QImage image(400, 30, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        QStyleOptionViewItem option;
        option.rect = image.rect();
        option.fontMetrics = QFontMetrics(option.font);
        delegate.paint(&painter, option, model.index(1));
        int last = 0;
        for (int x = 0; x < image.width(); ++x) {
            for (int y = 0; y < image.height(); ++y)
                last = image.pixelColor(x, y) == QColor(Qt::white) ? last : x;
        }
        return last;
    };
    const int before = widthOf();
    delegate.setReplacement([](const FindHit &) { return u"elephant"_s; });
    const int longer = widthOf();
    QVERIFY(longer > before);
    delegate.setReplacement([](const FindHit &) { return QString(); });
    QVERIFY(widthOf() <= before);
}

QTEST_MAIN(tst_FindHitsModel)
#include "tst_FindHitsModel.moc"
