// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "formats/OutlineDifference.h"
#include "formats/PlainText.h"
#include "formats/modDocText.h"
#include "formats/modDocV1.h"
#include "model/StoredText.h"
#include "support/ErrorRecorder.h"
#include "support/NativeBytes.h"

#include <algorithm>

// What holds for any bytes that are opened as a document.
namespace formatstest
{

// Whether bytes were read whole.
inline bool isWhole(const ReadOutline &read)
{
    return !read.failure && read.damage.isEmpty();
}

// What one outline says that the other does not, in words; empty when they say the same.
inline QString otherWords(const Outline &one, const Outline &other)
{
    if (one.outlineFont.Name() != other.outlineFont.Name() || one.textFont.Name() != other.textFont.Name() ||
        one.outlineFont.Size() != other.outlineFont.Size() || one.textFont.Size() != other.textFont.Size())
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

// An outline is written as plain text, read and written. Every line of it must still be there.
inline QString plainTextFault(const Outline &outline)
{
    MemorySink written;
    modDocText::write(outline, written);
    const ReadOutline read = modDocText::read(written.bytes);
    const EntryTree &tree = read.outline->tree;
    const QString shown = plainTextOf(tree.storedText(tree.root()));
    return shown == withLineEnds(modDocText::plainTextLayout(outline)) ? QString()
                                                                       : QStringLiteral("another plain text");
}

// Reads, writes, reads and writes; the reason why the second time is not like the first, empty when it is.
inline QString nativeFault(const QByteArray &bytes)
{
    const ErrorRecorder errors;
    const ReadOutline first = modDocV1::read(bytes);
    if (const QString broken = first.outline->tree.brokenInvariant(); !broken.isEmpty())
        return broken;
    // As it is read again after saving.
    const ReadOutline inPlace = modDocV1::readInPlace(bytes);
    if (!inPlace.failure != !first.failure || inPlace.damage != first.damage || inPlace.remark != first.remark ||
        inPlace.cutLabels != first.cutLabels)
        return QStringLiteral("told otherwise when read in place");
    if (const QString difference = outlineDifference(*first.outline, *inPlace.outline); !difference.isEmpty())
        return QStringLiteral("in place ") + difference;
    if (!first.outline->tree.root())
        return isWhole(first) ? QStringLiteral("a whole document without an entry") : QString();
    const QByteArray written = nativeBytes(*first.outline);
    const ReadOutline second = modDocV1::read(written);
    if (!isWhole(second))
        return QStringLiteral("damaged when written");
    if (const QString words = otherWords(*first.outline, *second.outline); !words.isEmpty())
        return words;
    // Saving would be refused.
    if (const QString difference = outlineDifference(*first.outline, *second.outline); !difference.isEmpty())
        return difference;
    if (const QByteArray again = nativeBytes(*second.outline); again != written) {
        const auto at = std::ranges::mismatch(written, again).in1 - written.begin();
        return QStringLiteral("other bytes from %1 on: %2 became %3")
            .arg(QString::number(at), QString::fromLatin1(written.mid(at, 60).toPercentEncoding(" {}")),
                 QString::fromLatin1(again.mid(at, 60).toPercentEncoding(" {}")));
    }
    return plainTextFault(*first.outline);
}

} // namespace formatstest
