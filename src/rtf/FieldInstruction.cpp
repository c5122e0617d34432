// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/FieldInstruction.h"

namespace rtf
{

namespace
{

bool isNamed(const QStringList &parts, QLatin1StringView name)
{
    return !parts.isEmpty() && parts.front().compare(name, Qt::CaseInsensitive) == 0;
}

} // namespace

QStringList splitInstruction(const QString &instruction)
{
    QStringList parts;
    QString part;
    bool isQuoted = false;
    bool hasPart = false;
    for (qsizetype i = 0; i < instruction.size(); ++i) {
        const QChar c = instruction[i];
        const QChar following = i + 1 < instruction.size() ? instruction[i + 1] : QChar();
        if (isQuoted && c == QLatin1Char('\\') && (following == c || following == QLatin1Char('"'))) {
            part += following;
            ++i;
        } else if (c == QLatin1Char('"')) {
            isQuoted = !isQuoted;
            hasPart = true;
        } else if (c.isSpace() && !isQuoted) {
            if (hasPart) {
                parts << part;
            }
            part.clear();
            hasPart = false;
        } else {
            part += c;
            hasPart = true;
        }
    }
    if (hasPart) {
        parts << part;
    }
    return parts;
}

QString hyperlinkTarget(const QString &instruction)
{
    const QStringList parts = splitInstruction(instruction);
    if (!isNamed(parts, QLatin1StringView("HYPERLINK"))) {
        return {};
    }
    QString address;
    QString place;
    for (qsizetype i = 1; i < parts.size(); ++i) {
        const QString &part = parts[i];
        const bool isSwitch = part.size() == 2 && part.front() == QLatin1Char('\\');
        if (!isSwitch) {
            address = address.isEmpty() ? part : address;
        } else if (part == QLatin1StringView("\\l")) {
            place = parts.value(++i);
        } else if (part == QLatin1StringView("\\o") || part == QLatin1StringView("\\t")) {
            ++i;
        }
    }
    return place.isEmpty() ? address : address + QLatin1Char('#') + place;
}

QString hyperlinkInstruction(const QString &target)
{
    QString quoted = target;
    quoted.replace(QLatin1StringView("\\"), QLatin1StringView("\\\\"))
        .replace(QLatin1StringView("\""), QLatin1StringView("\\\""));
    return QLatin1StringView("HYPERLINK \"") + quoted + QLatin1Char('"');
}

QString fieldsTarget(const QStringList &fields)
{
    for (auto field = fields.crbegin(); field != fields.crend(); ++field) {
        if (const QString target = hyperlinkTarget(*field); !target.isEmpty()) {
            return target;
        }
    }
    return {};
}

} // namespace rtf
