// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/FieldInstruction.h"

#include <vector>

namespace rtf
{

namespace
{

struct Part {
    QString text;
    bool isQuoted = false; // any of it, so that it is no switch
};

std::vector<Part> partsOf(const QString &instruction)
{
    std::vector<Part> parts;
    Part part;
    bool isQuoted = false;
    bool hasPart = false;
    for (qsizetype i = 0; i < instruction.size(); ++i) {
        const QChar c = instruction[i];
        const QChar following = i + 1 < instruction.size() ? instruction[i + 1] : QChar();
        if (isQuoted && c == QLatin1Char('\\') && (following == c || following == QLatin1Char('"'))) {
            part.text += following;
            ++i;
        } else if (c == QLatin1Char('"')) {
            isQuoted = !isQuoted;
            part.isQuoted = true;
            hasPart = true;
        } else if (c.isSpace() && !isQuoted) {
            if (hasPart) {
                parts.push_back(part);
            }
            part = {};
            hasPart = false;
        } else {
            part.text += c;
            hasPart = true;
        }
    }
    if (hasPart) {
        parts.push_back(part);
    }
    return parts;
}

} // namespace

QStringList splitInstruction(const QString &instruction)
{
    QStringList texts;
    for (const Part &part : partsOf(instruction)) {
        texts << part.text;
    }
    return texts;
}

QString hyperlinkTarget(const QString &instruction)
{
    const std::vector<Part> parts = partsOf(instruction);
    if (parts.empty() || parts.front().text.compare(QLatin1StringView("HYPERLINK"), Qt::CaseInsensitive) != 0) {
        return {};
    }
    QString address;
    QString place;
    for (std::size_t i = 1; i < parts.size(); ++i) {
        const QString &part = parts[i].text;
        const bool isSwitch = !parts[i].isQuoted && part.size() == 2 && part.front() == QLatin1Char('\\');
        if (!isSwitch) {
            address = address.isEmpty() ? part : address;
        } else if (part == QLatin1StringView("\\l")) {
            ++i;
            place = i < parts.size() ? parts[i].text : QString();
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
