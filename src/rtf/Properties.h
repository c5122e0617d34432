// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "rtf/Limits.h"

#include <QTextFormat>

// What RTF can say and a text document cannot show is kept beside the formats in these properties, so that the writer
// can say it again. All are absent when there is nothing to keep. Lengths are twips.
namespace rtf
{

enum Property : int {
    // Character formats
    LanguageProperty = QTextFormat::UserProperty + 0x100, // int: Windows language number
    HiddenProperty,                                       // bool: \v; the text is shown
    EffectsProperty,       // int: CharFlag bits of outline, shadow, emboss, engrave, double strike, deleted, revised
    UnderlineKindProperty, // int: UnderlineKind, for those shown as another one
    OffsetProperty,        // int: half points above the base line
    FieldProperty,         // QString: the field's instruction

    // Pictures, beside the image format's own name, width and height
    PictureProperty, // QString: kind and numbers in the writer's notation

    // More of character formats
    OuterFieldsProperty,   // QString: the instructions of the fields around the field, outermost first, one a line
    UnshownFieldsProperty, // QString: the same of fields that stand before the word and show nothing

    // Block formats
    HangProperty = QTextFormat::UserProperty + 0x200, // int: negative first-line indent of a list's paragraph
    ParagraphFlagsProperty,                           // int: ParaFlag bits that are not shown
    StyleNameProperty,                                // QString: the paragraph style
    BordersProperty,                                  // QString: four sides, in the writer's notation
    TableLeadProperty,                                // bool: an empty block that only stands before a table
    OpenFieldsProperty, // QString: the instructions of the fields that go on in the next paragraph, as above
    LastFieldsProperty, // QString: the same of fields that stand at the end and show nothing

    // List formats
    ListGroupProperty = QTextFormat::UserProperty + 0x300, // int: levels of one list have the same group
    ListLevelProperty,                                     // int: 0 to 8
    ListStartProperty,                                     // int: the first number, where it is not 1
    ListLabelProperty,  // QString: the label; characters 0 to 8 are the levels' numbers
    ListKindProperty,   // int: \levelnfc, for kinds that are shown as another one
    ListFontProperty,   // QString: the label's family
    ListGoesOnProperty, // bool: the list before it goes on in this one, as that was long enough

    // Of any format: int, means nothing. A document sorts its formats by most of their properties, but not by families,
    // tab stops and column widths: of those that differ in nothing else it looks through all. This tells them apart.
    SpreadProperty = QTextFormat::UserProperty + 0x400,

    // Formats of cells: what their row has that a text document's rows have not
    RowHeightProperty = QTextFormat::UserProperty + 0x500, // int: as \trrh counts
    RowKeepProperty,                                       // bool: on one page
};

} // namespace rtf
