// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "GeneratedDocument.h"

#include "formats/OutlineWalk.h"
#include "formats/modDocV1.h"
#include "model/EntryTree.h"
#include "model/StoredText.h"
#include "util/ByteSink.h"

#include <QRandomGenerator>

#include <array>

using namespace Qt::StringLiterals;

namespace
{

class MemorySink final : public ByteSink
{
public:
    explicit MemorySink(QByteArray &target)
        : m_target(target)
    {
    }

    void write(QByteArrayView bytes) override { m_target.append(bytes.data(), bytes.size()); }

private:
    QByteArray &m_target;
};

// Words of a few hundred, as unevenly spread as those of a language, so that texts compress as real ones do.
QByteArray word(QRandomGenerator &random)
{
    constexpr std::array<const char *, 16> syllables = {"al", "be", "cor", "den", "er", "fi", "gan", "hol",
                                                        "in", "ka", "lo",  "men", "no", "ra", "sti", "tur"};
    const int rank = static_cast<int>(300 * random.generateDouble() * random.generateDouble());
    QByteArray made = syllables[static_cast<size_t>(rank % 16)];
    for (int rest = rank / 16; rest > 0; rest /= 16)
        made += syllables[static_cast<size_t>(rest % 16)];
    return made;
}

QByteArray rtfText(QRandomGenerator &random, int length)
{
    QByteArray text = "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fswiss Arial;}}"
                      "{\\colortbl ;\\red192\\green0\\blue0;}\r\n\\pard\\f0\\fs20 ";
    while (text.size() < length) {
        const QByteArray next = word(random);
        switch (random.bounded(25)) {
        case 0:
            text += "\\par\r\n";
            break;
        case 1:
            text += "{\\b " + next + "} ";
            break;
        case 2:
            text += "{\\cf1\\i " + next + "} ";
            break;
        default:
            text += next + ' ';
        }
    }
    return text + "\\par}";
}

Entry *parentFor(const EntryTree &tree, Shape shape)
{
    const int count = tree.entryCount();
    switch (shape) {
    case Shape::Flat:
        return tree.root();
    case Shape::Chain:
        return tree.collection().at(count);
    default:
        return tree.collection().at((count - 1) / 10 + 1);
    }
}

void fillTree(EntryTree &tree, int entries, int textLength, Shape shape)
{
    QRandomGenerator random(1);
    tree.beginBulkChange();
    tree.insert(Relationship::tvwFirst, nullptr);
    while (tree.entryCount() < entries)
        tree.insert(Relationship::tvwChild, parentFor(tree, shape));
    for (int index = 1; index <= entries; ++index) {
        Entry *entry = tree.collection().at(index);
        tree.setLabel(entry, u"Entry %1 "_s.arg(index) + QString::fromLatin1(word(random)));
        tree.setTagged(entry, index % 50 == 0);
        tree.setStoredText(entry, NodeTextCompressIfRequired(rtfText(random, textLength)));
    }
    if (shape == Shape::Chain)
        tree.setExpandedAll(tree.root(), true);
    tree.setExpanded(tree.root(), true);
    tree.endBulkChange();
}

QByteArray booleanText(bool value)
{
    return value ? "True" : "False";
}

} // namespace

QByteArray generatedDocument(int entries, int textLength, Shape shape)
{
    EntryTree tree;
    fillTree(tree, entries, textLength, shape);
    QByteArray bytes;
    MemorySink sink(bytes);
    modDocV1::DocSaveNodeTag(sink, "formatversion", "1");
    modDocV1::DocSaveNodeTag(sink, "selecteditemkey", "KEY0");
    for (const QByteArray &prefix : {QByteArray("outline"), QByteArray("text")}) {
        modDocV1::DocSaveNodeTag(sink, prefix + "fontname", "Arial");
        modDocV1::DocSaveNodeTag(sink, prefix + "fontsize", "10");
        for (const char *style : {"bold", "italic", "strikethrough", "underline"})
            modDocV1::DocSaveNodeTag(sink, prefix + "font" + style, "False");
    }
    for (OutlineWalk walk(tree.root(), "0"); walk.entry(); walk.next()) {
        modDocV1::DocSaveNodeTag(sink, "nodekey", walk.path());
        modDocV1::DocSaveNodeTag(sink, "nodelabel", walk.entry()->label().toLatin1());
        modDocV1::DocSaveNodeTag(sink, "nodetagged", booleanText(walk.entry()->tagged()));
        modDocV1::DocSaveNodeTag(sink, "nodevisible", booleanText(walk.visible()));
        modDocV1::DocSaveNodeTag(sink, "nodetext", tree.storedText(walk.entry()));
    }
    return bytes;
}
