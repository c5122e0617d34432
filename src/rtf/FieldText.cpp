// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/FieldText.h"

#include "rtf/CodePages.h"
#include "rtf/FieldInstruction.h"

#include <algorithm>

namespace rtf
{

namespace
{

// Fields that always show something; a placeholder keeps their place. Others may well be empty, as a condition that
// does not hold.
constexpr const char *alwaysShown[] = {
    "AUTONUM",        "AUTONUMLGL",   "AUTONUMOUT", "CREATEDATE", "DATE",    "FILENAME", "FILESIZE",
    "INCLUDEPICTURE", "INCLUDETEXT",  "INDEX",      "LISTNUM",    "NOTEREF", "NUMCHARS", "NUMPAGES",
    "NUMWORDS",       "PAGE",         "PAGEREF",    "PRINTDATE",  "REF",     "REVNUM",   "SAVEDATE",
    "SECTION",        "SECTIONPAGES", "SEQ",        "STYLEREF",   "TIME",    "TOA",      "TOC",
};

QString placeholder(const QString &text)
{
    return QChar(0xAB) + text + QChar(0xBB);
}

bool isSwitch(const QString &part)
{
    return part.startsWith(QLatin1Char('\\'));
}

// What stands before the first switch.
QStringList argumentsOf(const QStringList &parts)
{
    return parts.first(std::ranges::find_if(parts, isSwitch) - parts.begin());
}

// The words of a button: all but what it leads to and how it is formatted (\* and the word behind it).
QString buttonText(QStringList parts)
{
    parts.remove(0, std::min<qsizetype>(2, parts.size()));
    for (qsizetype at = parts.indexOf(QLatin1StringView("\\*")); at >= 0;
         at = parts.indexOf(QLatin1StringView("\\*"))) {
        parts.remove(at, std::min<qsizetype>(2, parts.size() - at));
    }
    return parts.join(QLatin1Char(' '));
}

FieldText symbolText(const QStringList &parts)
{
    const auto valueOf = [&parts](QLatin1StringView name) {
        const qsizetype at = parts.indexOf(name, 1);
        return at >= 0 ? parts.value(at + 1) : QString();
    };
    const uint number = parts.value(1).toUInt(nullptr, 0);
    if (number < 0x20 || number > 0xFFFD) {
        return {};
    }
    FieldText shown;
    shown.halfPoints = std::clamp(qRound(valueOf(QLatin1StringView("\\s")).toDouble() * 2), 0, 3276);
    const QString family = valueOf(QLatin1StringView("\\f"));
    const auto isIn = [&family](const char *name) {
        return family.startsWith(QLatin1StringView(name), Qt::CaseInsensitive);
    };
    const bool isByte = number < 0x100 && !parts.contains(QLatin1StringView("\\u"));
    char16_t character = static_cast<char16_t>(number);
    if (isByte && isIn("Symbol")) {
        character = symbolCharacter(static_cast<quint8>(number));
    } else if (isByte && (isIn("Wingdings") || isIn("Webdings"))) {
        character = static_cast<char16_t>(0xF000 + number);
        shown.font = family;
    } else {
        character = isByte ? codePage(windowsLatin).character(static_cast<quint8>(number)) : character;
        shown.font = family;
    }
    shown.text = QChar(character);
    return shown;
}

QString formText(const QString &name, const FormField &form)
{
    const bool isSaid = form.result >= 0 && form.result != FormField::unsetResult;
    const int result = isSaid ? form.result : form.standard;
    if (name == QLatin1StringView("FORMCHECKBOX")) {
        return QChar(char16_t(result > 0 ? 0x2612 : 0x2610));
    }
    if (name == QLatin1StringView("FORMDROPDOWN")) {
        return form.entries.value(result);
    }
    // A text that is to be filled in shows its room.
    constexpr qsizetype room = 5;
    return !form.text.isEmpty() ? form.text : QString(room, QChar(0x2002));
}

} // namespace

FieldText fieldText(const QString &instruction, const FormField &form)
{
    const QStringList parts = splitInstruction(instruction);
    const QString name = parts.value(0).toUpper();
    if (name == QLatin1StringView("SYMBOL")) {
        return symbolText(parts);
    }
    if (name == QLatin1StringView("EQ")) {
        return {equationText(QStringView(instruction).sliced(2)), {}, 0};
    }
    if (name == QLatin1StringView("GOTOBUTTON") || name == QLatin1StringView("MACROBUTTON")) {
        return {buttonText(parts), {}, 0};
    }
    if (name == QLatin1StringView("HYPERLINK")) {
        return {hyperlinkTarget(instruction), {}, 0};
    }
    if (name == QLatin1StringView("QUOTE")) {
        return {argumentsOf(parts).mid(1).join(QLatin1Char(' ')), {}, 0};
    }
    if (name == QLatin1StringView("MERGEFIELD")) {
        return {placeholder(parts.value(1)), {}, 0};
    }
    if (name.startsWith(QLatin1StringView("FORM"))) {
        const bool isForm = name == QLatin1StringView("FORMTEXT") || name == QLatin1StringView("FORMCHECKBOX") ||
                            name == QLatin1StringView("FORMDROPDOWN");
        return {isForm ? formText(name, form) : QString(), {}, 0};
    }
    const bool isShown =
        std::ranges::any_of(alwaysShown, [&name](const char *known) { return name == QLatin1StringView(known); });
    return {isShown ? placeholder(argumentsOf(parts).join(QLatin1Char(' '))) : QString(), {}, 0};
}

} // namespace rtf
