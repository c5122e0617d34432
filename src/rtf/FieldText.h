// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

// What a field shows of which the text says no result: word processors make it anew from the instruction.
namespace rtf
{

// What a form's field says beside its instruction (\formfield).
struct FormField {
    QStringList entries; // of a list
    QString text;        // to begin with
    int result = -1;     // the entry chosen, or whether a box is checked; -1 or unsetResult: not said
    int standard = 0;    // the same, to begin with

    static constexpr int unsetResult = 25;
};

struct FieldText {
    QString text;       // empty when the field shows nothing by its nature
    QString font;       // its family, where the instruction names one that the text needs
    int halfPoints = 0; // its size, where the instruction names one
};

FieldText fieldText(const QString &instruction, const FormField &form);

// The texts of an equation (EQ) in one line: fractions with a stroke, text above other text in brackets behind it.
QString equationText(QStringView equation);

} // namespace rtf
