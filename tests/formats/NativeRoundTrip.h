// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/Globals.h"
#include "formats/PlainText.h"
#include "formats/modDocText.h"
#include "formats/modDocV1.h"
#include "model/StoredText.h"
#include "support/ErrorRecorder.h"
#include "support/FakeDocument.h"
#include "util/ByteSink.h"
#include "util/RunTimeError.h"

#include <algorithm>

// What holds for any bytes that are opened as a document.
namespace formatstest
{

class BytesSink final : public ByteSink
{
public:
    void write(QByteArrayView more) override { bytes.append(more.data(), more.size()); }

    QByteArray bytes;
};

// What a load applies once all entries exist.
inline void applyResult(Document &document, const LoadResult &result)
{
    const EntryCollection &entries = document.tree.collection();
    const auto flagged = [](const std::vector<bool> &flags, int index) {
        return static_cast<size_t>(index) < flags.size() && flags[static_cast<size_t>(index)];
    };
    for (int index = 1; index <= entries.count(); ++index) {
        if (flagged(result.visible, index))
            document.tree.expandAncestors(entries.at(index));
        if (flagged(result.tagged, index))
            document.tree.setTagged(entries.at(index), true);
    }
    Entry *selected = document.tree.root();
    try {
        if (!result.selectedKey.isEmpty())
            selected = document.tree.itemByKey(result.selectedKey);
    } catch (const RunTimeError &) {
        // Then the root is selected.
    }
    document.tree.select(selected);
}

// Reads as far as it goes, as a load does. False when the bytes are damaged.
inline bool readNative(const QByteArray &bytes, Document &document)
{
    LoadResult result;
    bool whole = false;
    try {
        modDocV1::read(document, bytes, result);
        whole = result.damage.isEmpty();
    } catch (const RunTimeError &) {
        // What was read until then is a document.
    }
    applyResult(document, result);
    return whole;
}

inline QByteArray writtenNative(const Document &document)
{
    BytesSink sink;
    modDocV1::write(document, sink);
    return sink.bytes;
}

// What one document says that the other does not, in words; empty when they say the same.
inline QString otherWords(const Document &one, const Document &other)
{
    if (one.m_fntOutlineFont.Name() != other.m_fntOutlineFont.Name() ||
        one.m_fntTextFont.Name() != other.m_fntTextFont.Name() ||
        one.m_fntOutlineFont.Size() != other.m_fntOutlineFont.Size() ||
        one.m_fntTextFont.Size() != other.m_fntTextFont.Size())
        return QStringLiteral("another font");
    const Entry *left = one.tree.root();
    const Entry *right = other.tree.root();
    for (; left && right;
         left = nextInOutline(left, one.tree.root()), right = nextInOutline(right, other.tree.root())) {
        const QString key = one.tree.key(left);
        if (other.tree.key(right) != key)
            return QStringLiteral("another shape at ") + key;
        if (left->label() != right->label())
            return QStringLiteral("another label of ") + key;
        if (inflated(one.tree.storedText(left)).text != inflated(other.tree.storedText(right)).text)
            return QStringLiteral("another text of ") + key;
        if (left->tagged() != right->tagged())
            return QStringLiteral("another tag of ") + key;
    }
    return left || right ? QStringLiteral("another number of entries") : QString();
}

// A document is written as plain text, read and written. Every line of it must still be there.
inline QString plainTextFault(const Document &document)
{
    BytesSink written;
    modDocText::write(document, written);
    FakeDocument read;
    modDocText::read(read.document, written.bytes);
    const QString shown = plainTextOf(read.document.tree.storedText(read.document.tree.root()));
    return shown == withLineEnds(modDocText::plainTextLayout(document)) ? QString()
                                                                        : QStringLiteral("another plain text");
}

// Reads, writes, reads and writes; the reason why the second time is not like the first, empty when it is.
inline QString nativeFault(const QByteArray &bytes)
{
    const BusyScope busy;
    const ErrorRecorder errors;
    FakeDocument first;
    const bool whole = readNative(bytes, first.document);
    if (const QString broken = first.document.tree.brokenInvariant(); !broken.isEmpty())
        return broken;
    if (!first.document.tree.root())
        return whole ? QStringLiteral("a whole document without an entry") : QString();
    const QByteArray written = writtenNative(first.document);
    FakeDocument second;
    if (!readNative(written, second.document))
        return QStringLiteral("damaged when written");
    if (const QString words = otherWords(first.document, second.document); !words.isEmpty())
        return words;
    if (const QByteArray again = writtenNative(second.document); again != written) {
        const auto at = std::ranges::mismatch(written, again).in1 - written.begin();
        return QStringLiteral("other bytes from %1 on: %2 became %3")
            .arg(QString::number(at), QString::fromLatin1(written.mid(at, 60).toPercentEncoding(" {}")),
                 QString::fromLatin1(again.mid(at, 60).toPercentEncoding(" {}")));
    }
    return plainTextFault(first.document);
}

} // namespace formatstest
