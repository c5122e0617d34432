// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "text/modFont.h"

#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/DocumentWindow.h"
#include "document/Globals.h"
#include "document/OutlinePane.h"
#include "document/Ports.h"
#include "document/TextDeed.h"
#include "document/TextPane.h"
#include "document/modNodes.h"
#include "rtf/CharChange.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace
{

// What the user chose; a cancelled dialog ends the routine.
FontAttributes chosenFont(const FontAttributes &initial, bool effects)
{
    const std::optional<FontAttributes> chosen = ports().dialogs->askFont({initial, effects});
    if (!chosen)
        throw RunTimeError(ErrorNumber::Cancelled);
    return *chosen;
}

FontAttributes attributesOf(const clsFont &font)
{
    FontAttributes attributes;
    if (!font.Name().isEmpty())
        attributes.name = font.Name();
    if (font.Size() > 0)
        attributes.size = static_cast<double>(font.Size()) / clsFont::point;
    attributes.bold = font.Bold();
    attributes.italic = font.Italic();
    attributes.underline = font.Underline();
    attributes.strikeThrough = font.StrikeThrough();
    return attributes;
}

void setAttributes(clsFont &font, const FontAttributes &attributes)
{
    font.setName(attributes.name.value_or(font.Name()));
    if (attributes.size)
        font.setSize(std::llround(*attributes.size * clsFont::point));
    font.setBold(attributes.bold.value_or(font.Bold()));
    font.setItalic(attributes.italic.value_or(font.Italic()));
    font.setUnderline(attributes.underline.value_or(font.Underline()));
    font.setStrikeThrough(attributes.strikeThrough.value_or(font.StrikeThrough()));
}

FontAttributes attributesOfSelection(const TextSelection &selection)
{
    return {selection.SelFontName(),  selection.SelFontSize(),   selection.SelBold(), selection.SelItalic(),
            selection.SelUnderline(), selection.SelStrikeThru(), selection.SelColor()};
}

// The font at the caret, which is the whole text's where that has one.
FontAttributes attributesAtCaret(const TextPane &pane)
{
    FontAttributes attributes = attributesOfSelection(pane);
    attributes.name = attributes.name.value_or(pane.Font().family());
    attributes.size = attributes.size.value_or(pane.Font().pointSizeF());
    attributes.colour.reset();
    return attributes;
}

rtf::CharChange changeTo(const FontAttributes &attributes)
{
    rtf::CharChange change;
    if (attributes.name)
        change.setFamily(*attributes.name);
    if (attributes.size)
        change.setSize(*attributes.size);
    if (attributes.bold)
        change.setBold(*attributes.bold);
    if (attributes.italic)
        change.setItalic(*attributes.italic);
    if (attributes.underline)
        change.setUnderline(*attributes.underline);
    if (attributes.strikeThrough)
        change.setStrikeOut(*attributes.strikeThrough);
    if (attributes.colour)
        change.setColour(*attributes.colour);
    return change;
}

void askForDetails(clsFont &font)
{
    setAttributes(font, chosenFont(attributesOf(font), false));
}

// Gives a document's texts the pending font.
void changeTexts(Document &document)
{
    const HiddenText hidden(document.view()->txtRTF);
    document.history.touch();
    const int texts = document.tree.entryCount();
    const History::Step step(document.history, texts > 1 ? u"change of the font of %1 texts"_s.arg(texts)
                                                         : u"change of the font of texts"_s);
    document.history.setFonts(document.m_fntOutlineFont, g_fntPendingTextFont);
    if (document.tree.selected()) {
        modNodes::NodeSetFontAll(document, modNodes::NodeGetRoot(document), g_fntPendingTextFont);
        return;
    }
    QFont base = document.view()->txtRTF.Font();
    g_fntPendingTextFont.SetFont(base);
    document.view()->txtRTF.setFont(base);
}

} // namespace

namespace modFont
{

bool ChangeFontDetails(clsFont &font)
{
    return procedure("modFont ChangeFontDetails", [&] {
        askForDetails(font);
        return true;
    });
}

bool ChangeTreeviewFont(clsFont &font)
{
    return procedure("modFont ChangeTreeviewFont", [&] {
        askForDetails(font);
        if (Document *document = DocumentActive()) {
            OutlinePane &pane = document->view()->trvOutline;
            const QFont before = pane.Font();
            QFont shown = before;
            font.SetFont(shown);
            try {
                pane.setFont(shown);
                document->autoFitSplit();
            } catch (...) {
                pane.setFont(before);
                throw;
            }
        }
        return true;
    });
}

bool ChangeRTFFont(TextPane &pane)
{
    return procedure("modFont ChangeRTFFont", [&] {
        FontAttributes chosen = chosenFont(attributesAtCaret(pane), false);
        // The dialog does not offer these, so what is underlined or struck through stays so.
        chosen.underline.reset();
        chosen.strikeThrough.reset();
        const rtf::CharChange change = changeTo(chosen);
        pane.changeText(change);
        // What is typed next would go by what stands beside it, or by nothing in an empty text.
        if (pane.SelLength() == 0)
            pane.changeSelection(change);
        return true;
    });
}

bool ChangeRTFSelFont(TextSelection &selection)
{
    return procedure("modFont ChangeRTFSelFont", [&] {
        selection.changeSelection(changeTo(chosenFont(attributesOfSelection(selection), true)));
        return true;
    });
}

void ChangeDocumentTextFontDetails(bool bAllDocuments)
{
    procedure("modFont ChangeDocumentTextFontDetails", [&] {
        Document *active = DocumentActive();
        if (!active)
            return;
        const HourglassPointer hourglass;
        for (Document *document : ports().windows->documents()) {
            if (document != active && !bAllDocuments)
                continue;
            if (document != DocumentActive())
                document->view()->window.activate();
            changeTexts(*document);
        }
        if (DocumentActive() != active)
            active->view()->window.activate();
    });
}

void ChangeSelectedFontSize(qint16 iDirection)
{
    procedure("modFont ChangeSelectedFontSize", [&] {
        Document *document = DocumentActive();
        if (!document || !document->view()->txtRTF.SelFontSize())
            return;
        TextPane &pane = document->view()->txtRTF;
        const double size = *pane.SelFontSize();
        const double wanted = std::clamp(size + (iDirection > 0 ? 1 : -1), rtf::smallestSize, rtf::largestSize);
        if (wanted == size)
            return;
        const TextDeed deed(pane, iDirection > 0 ? "larger text in"_L1 : "smaller text in"_L1);
        pane.setSelFontSize(wanted);
    });
}

} // namespace modFont
