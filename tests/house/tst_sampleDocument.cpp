// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "OutlineDocument.h"
#include "OutlineSource.h"

#include "model/StoredText.h"
#include "rtf/Rtf.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

struct Record {
    QByteArray name;
    QByteArray value;
};

// The records of a native file, read apart from the program's own reader; texts are inflated, since the compressed
// bytes depend on the version of zlib.
QList<Record> recordsOf(const QByteArray &file)
{
    const QByteArray opener = "{\\qlf_";
    QList<Record> records;
    qsizetype start = file.indexOf(opener);
    while (start >= 0) {
        const qsizetype next = file.indexOf(opener, start + 1);
        const qsizetype end = next < 0 ? file.size() : next;
        const qsizetype name = start + opener.size();
        const qsizetype blank = file.indexOf(' ', name);
        QByteArray value = file.mid(blank + 1, end - 3 - (blank + 1));
        const QByteArray tag = file.mid(name, blank - name);
        if (tag == "nodetext")
            value = NodeTextDecompressIfRequired(value);
        records.append({tag, value});
        start = next;
    }
    return records;
}

QByteArray contentOf(const QString &name)
{
    QFile file(QStringLiteral(QUILLERY_SOURCE_DIR "/resources/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString sampleSource()
{
    return QString::fromUtf8(contentOf(u"sample.outline"_s));
}

} // namespace

class tst_sampleDocument : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void generatingAgainGivesTheSameDocument();
    void holdsWhatASampleShows();
    void everyTextSaysWhatItsSourceSays();
};

void tst_sampleDocument::generatingAgainGivesTheSameDocument()
{
    const QList<Record> kept = recordsOf(contentOf(u"sample.qly"_s));
    const QList<Record> made = recordsOf(makeNativeFile(sampleSource()));
    QVERIFY(!kept.isEmpty());
    for (qsizetype place = 0; place < qMin(kept.size(), made.size()); place++) {
        const QByteArray where = "record " + QByteArray::number(place) + ", " + kept.at(place).name;
        QVERIFY2(kept.at(place).name == made.at(place).name, where);
        QVERIFY2(kept.at(place).value == made.at(place).value,
                 where + ": kept " + kept.at(place).value + "\nmade " + made.at(place).value);
    }
    QCOMPARE(made.size(), kept.size());
}

void tst_sampleDocument::holdsWhatASampleShows()
{
    qsizetype entries = 0;
    qsizetype tagged = 0;
    qsizetype visible = 0;
    qsizetype depth = 0;
    QByteArray selected;
    QByteArray texts;
    for (const Record &record : recordsOf(contentOf(u"sample.qly"_s))) {
        if (record.name == "nodekey") {
            entries++;
            depth = qMax(depth, record.value.count('.') + 1);
        } else if (record.name == "nodetagged") {
            tagged += record.value == "True" ? 1 : 0;
        } else if (record.name == "nodevisible") {
            visible += record.value == "True" ? 1 : 0;
        } else if (record.name == "nodetext") {
            texts += record.value;
        } else if (record.name == "selecteditemkey") {
            selected = record.value;
        }
    }
    QVERIFY(entries >= 40);
    QCOMPARE(depth, qsizetype(4));
    QVERIFY(tagged >= 3);
    QCOMPARE(visible, qsizetype(12));
    QCOMPARE(selected, QByteArray("KEY0"));
    for (const char *word : {"\\b", "\\i", "\\ul", "\\strike", "\\cf", "\\qc", "\\qr", "\\li", "\\tab", "\\u-"})
        QVERIFY2(texts.contains(word), word);
}

void tst_sampleDocument::everyTextSaysWhatItsSourceSays()
{
    const OutlineSource source = parseOutlineSource(sampleSource());
    std::size_t entry = 0;
    for (const Record &record : recordsOf(contentOf(u"sample.qly"_s))) {
        if (record.name != "nodetext")
            continue;
        QStringList paragraphs;
        for (const SourceParagraph &paragraph : source.entries.at(entry).paragraphs) {
            QString text;
            for (const SourceRun &run : paragraph.runs)
                text += run.text;
            paragraphs += text;
        }
        QCOMPARE(rtf::toPlainText(record.value), paragraphs.join(u"\r\n"_s));
        entry++;
    }
    QCOMPARE(entry, source.entries.size());
}

QTEST_MAIN(tst_sampleDocument)
#include "tst_sampleDocument.moc"
