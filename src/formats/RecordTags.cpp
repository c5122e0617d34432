// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "formats/RecordTags.h"

#include "formats/RecordNames.h"

namespace modDoc
{

QByteArray DocLoadTag(const QByteArray &buffer, const QByteArray &tagName)
{
    const QByteArray tag = recordNames::opener.toByteArray() + tagName + ' ';
    const qsizetype found = buffer.indexOf(tag);
    qsizetype end = 0;
    QByteArray value;
    if (found >= 0)
        DocLoadTagAtPosition(buffer, tagName, found + 1, end, value);
    return value;
}

bool DocLoadTagAtPosition(const QByteArray &buffer, const QByteArray &tagName, qsizetype position,
                          qsizetype &endPosition, QByteArray &value)
{
    value.clear();
    const QByteArrayView rest = QByteArrayView(buffer).sliced(qBound(qsizetype(0), position - 1, buffer.size()));
    const qsizetype openerSize = recordNames::opener.size() + tagName.size() + 1;
    const bool here = rest.startsWith(recordNames::opener) &&
                      rest.sliced(recordNames::opener.size()).startsWith(tagName) && rest.size() >= openerSize &&
                      rest[openerSize - 1] == ' ';
    if (!here)
        return false;
    const qsizetype brace = rest.indexOf('}');
    if (brace < 0) {
        // Cut off within the value: it ends where the bytes do.
        endPosition = buffer.size() + 1;
        value = rest.sliced(openerSize).toByteArray();
        return true;
    }
    endPosition = position + brace;
    value = brace >= openerSize ? rest.sliced(openerSize, brace - openerSize).toByteArray() : QByteArray();
    return true;
}

} // namespace modDoc
