// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/FieldInstruction.h"

#include "rtf/CodePages.h"

#include <QStringList>

namespace rtf
{

namespace
{

// Cuts an instruction at blanks; quotes hold an argument together, and a backslash before a quote or a backslash inside
// them makes that character part of it.
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

bool isNamed(const QStringList &parts, QLatin1StringView name)
{
    return !parts.isEmpty() && parts.front().compare(name, Qt::CaseInsensitive) == 0;
}

} // namespace

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

QString fieldText(const QString &instruction)
{
    const QStringList parts = splitInstruction(instruction);
    if (isNamed(parts, QLatin1StringView("GOTOBUTTON")) || isNamed(parts, QLatin1StringView("MACROBUTTON"))) {
        return parts.mid(2).join(QLatin1Char(' '));
    }
    const uint number = parts.value(1).toUInt(nullptr, 0);
    if (!isNamed(parts, QLatin1StringView("SYMBOL")) || number < 0x20 || number > 0xFFFD) {
        return {};
    }
    const qsizetype font = parts.indexOf(QLatin1StringView("\\f"));
    const QString family = font >= 0 ? parts.value(font + 1) : QString();
    const bool isSymbol = number < 0x100 && family.startsWith(QLatin1StringView("Symbol"), Qt::CaseInsensitive);
    return QChar(isSymbol ? symbolCharacter(static_cast<quint8>(number)) : static_cast<char16_t>(number));
}

} // namespace rtf
