// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/SplitText.h"
#include "model/EntryText.h"
#include "model/SealedDocument.h"
#include "model/StoredText.h"
#include "rtf/PlainText.h"
#include "rtf/Rtf.h"

#include <QDir>
#include <QTest>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextFrame>
#include <QTextList>

#include <random>

using namespace Qt::StringLiterals;

namespace
{

const QFont base(u"DejaVu Sans"_s, 10);

std::unique_ptr<SealedDocument> read(const QByteArray &storedText)
{
    auto document = std::make_unique<SealedDocument>();
    document->setUndoRedoEnabled(false);
    document->setDefaultFont(base);
    readEntryText(NodeTextDecompressIfRequired(storedText), *document);
    return document;
}

// As the program writes it.
QByteArray canonical(const QByteArray &rtf)
{
    return rtf::write(*read(rtf));
}

QByteArray rich(const QByteArray &body)
{
    return canonical("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 DejaVu Sans;}{\\f1 DejaVu Serif;}}\\f0\\fs20 " + body + "}");
}

std::optional<SplitText> splitAt(const QByteArray &text, int position, int selectedTo = -1)
{
    const std::unique_ptr<SealedDocument> document = read(text);
    QTextCursor place(document.get());
    place.setPosition(selectedTo < 0 ? position : selectedTo);
    place.setPosition(position, QTextCursor::KeepAnchor);
    return splitText(text, base, place);
}

QString words(const QByteArray &storedText)
{
    return rtf::plainText(*read(storedText));
}

// How a character looks, and its paragraph.
QString lookOf(const QTextDocument &document, int position)
{
    QTextCursor cursor(const_cast<QTextDocument *>(&document));
    cursor.setPosition(position + 1);
    const QTextCharFormat text = cursor.charFormat();
    cursor.setPosition(position);
    const QTextBlockFormat block = cursor.blockFormat();
    const QTextList *list = cursor.currentList();
    return u"%1 %2 %3 %4 %5 %6 %7 | %8 %9 %10 %11 %12"_s.arg(text.font().family())
        .arg(text.fontPointSize())
        .arg(text.fontWeight())
        .arg(text.fontItalic())
        .arg(text.fontUnderline())
        .arg(text.foreground().color().name())
        .arg(text.verticalAlignment())
        .arg(int(block.alignment()))
        .arg(block.leftMargin())
        .arg(block.textIndent())
        .arg(block.topMargin())
        .arg(list ? int(list->format().style()) : 0);
}

// The looks of all characters but those of paragraphs' ends, in order.
QStringList looks(const QTextDocument &document, int from, int to)
{
    QStringList found;
    for (int position = from; position < to; ++position) {
        const QChar c = document.characterAt(position);
        if (c != QChar::ParagraphSeparator && c != QChar(0xfdd0) && c != QChar(0xfdd1))
            found += QString(c) + u' ' + lookOf(document, position);
    }
    return found;
}

} // namespace

class tst_SplitText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aTextIsSplitWhereTheCaretIs_data();
    void aTextIsSplitWhereTheCaretIs();
    void joiningWhatWasSplitGivesTheText();
    void bothSidesKeepTheirFormats();
    void emptyParagraphsAtTheEdgesKeepTheirLook();
    void everySampleIsSplitAndJoinedAsItLooks();
    void whatIsJoinedKeepsItsLook();
    void anEmptyTextLeavesNoTrace();
    void headingsStandInParagraphsOfTheirOwn();
    void aTableAtTheEndIsFollowedByWhatComes();
    void damagedTextsAreLeftAlone();
    void theFirstLineIsBounded();
};

void tst_SplitText::aTextIsSplitWhereTheCaretIs_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("at");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("behind");
    QTest::newRow("in a paragraph") << QByteArray("one two\\par three") << 4 << u"one "_s << u"two\r\nthree"_s;
    QTest::newRow("before a paragraph") << QByteArray("one\\par two\\par three") << 4 << u"one"_s << u"two\r\nthree"_s;
    QTest::newRow("behind a paragraph") << QByteArray("one\\par two") << 3 << u"one"_s << u"\r\ntwo"_s;
    QTest::newRow("at the beginning") << QByteArray("one\\par two") << 0 << QString() << u"one\r\ntwo"_s;
    QTest::newRow("at the end") << QByteArray("one\\par two") << 7 << u"one\r\ntwo"_s << QString();
    QTest::newRow("behind an empty paragraph") << QByteArray("one\\par\\par two") << 5 << u"one\r\n"_s << u"two"_s;
    QTest::newRow("a line within a paragraph") << QByteArray("one\\line two") << 4 << u"one\n"_s << u"two"_s;
    QTest::newRow("before a table")
        << QByteArray("one\\par\\trowd\\cellx2000\\cellx4000\\intbl a\\cell b\\cell\\row\\pard two") << 0 << QString()
        << u"one\r\na\r\nb\r\ntwo"_s;
    QTest::newRow("behind a table") << QByteArray("one\\par\\trowd\\cellx2000\\intbl a\\cell\\row\\pard two") << 6
                                    << u"one\r\na\r\n"_s << u"two"_s;
}

void tst_SplitText::aTextIsSplitWhereTheCaretIs()
{
    QFETCH(const QByteArray, body);
    QFETCH(const int, at);
    const QByteArray text = rich(body);
    const std::optional<SplitText> split = splitAt(text, at);
    QVERIFY(split);
    QTEST(words(split->before), "before");
    QTEST(words(split->behind), "behind");
    QCOMPARE(split->words, words(split->behind));
    // What is selected goes with what is behind.
    const int end = int(read(text)->characterCount()) - 1;
    QCOMPARE(splitAt(text, end, at)->behind, split->behind);
}

void tst_SplitText::joiningWhatWasSplitGivesTheText()
{
    const QByteArray text = rich("\\qc one {\\b bold}\\par\\pard\\li600 two\\par\\pard{\\pntext\\f0 \\'B7\\tab}{\\*\\pn"
                                 "\\pnlvlblt\\pnf0{\\pntxtb\\'B7}}\\fi-300\\li300 three\\par four\\par\\pard five");
    const std::unique_ptr<SealedDocument> document = read(text);
    int splits = 0;
    for (QTextBlock block = document->firstBlock().next(); block.isValid(); block = block.next()) {
        const std::optional<SplitText> split = splitAt(text, block.position());
        QVERIFY(split);
        const std::optional<JoinedText> joined = joinedText({{split->before}, {split->behind}}, base);
        QVERIFY(joined);
        QCOMPARE(words(joined->text), words(text));
        QCOMPARE(joined->seam, block.position());
        QCOMPARE(looks(*read(joined->text), 0, document->characterCount() - 1),
                 looks(*document, 0, document->characterCount() - 1));
        ++splits;
    }
    QCOMPARE(splits, 4);
}

void tst_SplitText::bothSidesKeepTheirFormats()
{
    const QByteArray text =
        rich("\\qr ab{\\b\\fs40\\f1 cd}\\par\\pard\\qc ef{\\i gh}\\par\\pard\\li600 ij\\par\\par kl");
    const std::unique_ptr<SealedDocument> document = read(text);
    const int size = document->characterCount() - 1;
    for (int at = 0; at <= size; ++at) {
        const std::optional<SplitText> split = splitAt(text, at);
        QVERIFY(split);
        const std::unique_ptr<SealedDocument> before = read(split->before);
        const std::unique_ptr<SealedDocument> behind = read(split->behind);
        QCOMPARE(looks(*before, 0, before->characterCount() - 1), looks(*document, 0, at));
        QCOMPARE(looks(*behind, 0, behind->characterCount() - 1), looks(*document, at, size));
        // What is stored is as the program writes it.
        for (const QByteArray &part : {split->before, split->behind}) {
            if (!part.isEmpty())
                QCOMPARE(NodeTextDecompressIfRequired(part), canonical(NodeTextDecompressIfRequired(part)));
        }
    }
}

void tst_SplitText::emptyParagraphsAtTheEdgesKeepTheirLook()
{
    const QByteArray text = rich("one\\par\\pard\\qr\\par\\pard\\qc\\par\\pard\\li600 two");
    const std::unique_ptr<SealedDocument> document = read(text);
    const auto alignmentsOf = [](const QTextDocument &of) {
        QList<Qt::Alignment> found;
        for (QTextBlock block = of.firstBlock(); block.isValid(); block = block.next())
            found += block.blockFormat().alignment() & (Qt::AlignHCenter | Qt::AlignRight);
        return found;
    };
    const QList<Qt::Alignment> all = alignmentsOf(*document);
    QCOMPARE(all, (QList<Qt::Alignment>{{}, Qt::AlignRight, Qt::AlignHCenter, {}}));
    for (int paragraph = 1; paragraph < 4; ++paragraph) {
        const std::optional<SplitText> split = splitAt(text, document->findBlockByNumber(paragraph).position());
        QVERIFY(split);
        QCOMPARE(alignmentsOf(*read(split->before)), all.first(paragraph));
        QCOMPARE(alignmentsOf(*read(split->behind)), all.sliced(paragraph));
    }
}

void tst_SplitText::everySampleIsSplitAndJoinedAsItLooks()
{
    const QDir folder(QStringLiteral(QUILLERY_TEST_DATA "/rtf"));
    const QStringList samples = folder.entryList({u"*.rtf"_s});
    QVERIFY(samples.size() > 20);
    std::mt19937 random(1);
    int splits = 0;
    for (const QString &name : samples) {
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        if (bytes.size() > 20000)
            continue;
        const QByteArray text = canonical(bytes);
        const std::unique_ptr<SealedDocument> document = read(text);
        const int size = document->characterCount() - 1;
        for (int round = 0; round < 3; ++round) {
            const int at = int(random() % unsigned(size + 1));
            QTextCursor place(document.get());
            place.setPosition(at);
            if (place.currentFrame() != document->rootFrame())
                continue;
            const std::optional<SplitText> split = splitText(text, base, place);
            if (!split)
                continue;
            const std::unique_ptr<SealedDocument> before = read(split->before);
            const std::unique_ptr<SealedDocument> behind = read(split->behind);
            const QStringList was = looks(*document, 0, size);
            const QStringList is =
                looks(*before, 0, before->characterCount() - 1) + looks(*behind, 0, behind->characterCount() - 1);
            if (is != was) {
                qsizetype first = 0;
                while (is.value(first) == was.value(first))
                    ++first;
                QFAIL(qPrintable(u"%1 at %2: %3 is not %4"_s.arg(name).arg(at).arg(is.value(first), was.value(first))));
            }
            ++splits;
        }
    }
    QVERIFY(splits > 50);
}

void tst_SplitText::whatIsJoinedKeepsItsLook()
{
    const QByteArray first = rich("\\qc ab{\\b cd}\\par\\pard\\li900 ef");
    const QByteArray second = rich("\\qr{\\i gh}\\par\\pard ij");
    const std::optional<JoinedText> joined = joinedText({{first}, {second}, {first}}, base);
    QVERIFY(joined);
    QCOMPARE(words(joined->text), u"abcd\r\nef\r\ngh\r\nij\r\nabcd\r\nef"_s);
    QCOMPARE(joined->seam, 8);
    const std::unique_ptr<SealedDocument> whole = read(joined->text);
    const std::unique_ptr<SealedDocument> parts[] = {read(first), read(second)};
    QCOMPARE(looks(*whole, 0, 8), looks(*parts[0], 0, 8));
    QCOMPARE(looks(*whole, 8, 14), looks(*parts[1], 0, 6));
    QCOMPARE(looks(*whole, 14, 21), looks(*parts[0], 0, 7));
}

void tst_SplitText::anEmptyTextLeavesNoTrace()
{
    const QByteArray text = NodeTextCompressIfRequired(rich("{\\b one}\\par two"));
    QCOMPARE(joinedText({{text}, {QByteArray()}}, base)->text, text);
    QCOMPARE(words(joinedText({{QByteArray()}, {text}}, base)->text), u"one\r\ntwo"_s);
    QCOMPARE(looks(*read(joinedText({{QByteArray()}, {text}}, base)->text), 0, 7), looks(*read(text), 0, 7));
    QCOMPARE(joinedText({{QByteArray()}, {QByteArray()}}, base)->text, QByteArray());
}

void tst_SplitText::headingsStandInParagraphsOfTheirOwn()
{
    const std::optional<JoinedText> joined =
        joinedText({{rich("one")}, {rich("two"), u"Heading\nof two lines"_s}, {QByteArray(), u"Alone"_s}}, base);
    QVERIFY(joined);
    QCOMPARE(words(joined->text), u"one\r\nHeading\nof two lines\r\ntwo\r\nAlone"_s);
    QCOMPARE(joined->seam, 4);
    // Characters of text files too.
    QCOMPARE(words(joinedText({{"plain"}, {"words"}}, base)->text), u"plain\r\nwords"_s);
}

void tst_SplitText::aTableAtTheEndIsFollowedByWhatComes()
{
    const QByteArray table = rich("one\\par\\trowd\\cellx2000\\intbl a\\cell\\row");
    const std::optional<JoinedText> joined = joinedText({{table}, {rich("two")}, {table}, {table}}, base);
    QVERIFY(joined);
    QVERIFY2(words(joined->text).startsWith(u"one\r\na\r\ntwo\r\none\r\na\r\none\r\na"_s),
             qPrintable(words(joined->text)));
}

void tst_SplitText::damagedTextsAreLeftAlone()
{
    const QByteArray damaged("100,this is no stream");
    QVERIFY(!joinedText({{damaged}, {rich("two")}}, base));
    QVERIFY(!joinedText({{rich("one")}, {damaged}}, base));
    SealedDocument document;
    QVERIFY(!splitText(damaged, base, QTextCursor(&document)));
    // The pane shows something else than what is stored.
    QVERIFY(!splitText(rich("other words"), base, QTextCursor(&document)));
}

void tst_SplitText::theFirstLineIsBounded()
{
    QCOMPARE(firstLine(u"\r\n  one  two \nthree"_s), u"one two"_s);
    QCOMPARE(firstLine(u"\ufffc\r\nafter a picture"_s), u"after a picture"_s);
    QCOMPARE(firstLine(u" \r\n "_s), QString());
    QCOMPARE(firstLine(u"some words and more"_s, 12), u"some words"_s);
    QCOMPARE(firstLine(u"some words"_s, 10), u"some words"_s);
    QCOMPARE(firstLine(u"unbroken"_s, 3), u"unb"_s);
    QCOMPARE(firstLine(u"ab\U0001f600"_s, 3), u"ab"_s);
}

QTEST_MAIN(tst_SplitText)
#include "tst_SplitText.moc"
