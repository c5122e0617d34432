// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "text/modEdit.h"

#include "document/ActiveDocument.h"
#include "document/DocumentView.h"
#include "document/TextDeed.h"
#include "document/TextPane.h"
#include "document/modNodes.h"
#include "rtf/Rtf.h"
#include "text/modFont.h"
#include "util/Procedure.h"

#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

constexpr int indentStep = 300; // twips

// Runs a command on the text pane of the active document. On a long text it may take a while.
template <typename Body>
void onActiveText(const char *name, Body &&body)
{
    onActiveDocument(name, [&](Document &document) { body(document.view()->txtRTF); });
}

// The same for a command that changes the text, which one that is not shown whole does not let happen. The step that
// comes of it is named by what is done.
template <typename Body>
void changeActiveText(const char *name, QLatin1StringView what, Body &&body)
{
    onActiveText(name, [&](TextPane &pane) {
        if (DocumentActive()->bTextWithheld())
            return;
        const TextDeed deed(pane, what);
        body(pane);
    });
}

void insert(const char *name, QLatin1StringView what, const QString &text)
{
    changeActiveText(name, what, [&](TextSelection &selection) { selection.setSelText(text); });
}

// Only what is known to be all on goes off by being used once; a mixed selection goes off as well.
void toggle(const char *name, QLatin1StringView what, std::optional<bool> (TextSelection::*property)() const,
            void (TextSelection::*set)(bool))
{
    changeActiveText(name, what, [&](TextSelection &selection) {
        const std::optional<bool> on = (selection.*property)();
        (selection.*set)(on && !*on);
    });
}

void align(const char *name, QLatin1StringView what, TextSelection::Alignment alignment)
{
    changeActiveText(name, what, [&](TextSelection &selection) { selection.setSelAlignment(alignment); });
}

void lower(TextSelection &selection)
{
    selection.mapSelText([](const QString &text) { return text.toLower(); });
}

void upper(TextSelection &selection)
{
    selection.mapSelText([](const QString &text) { return text.toUpper(); });
}

// A picture counts as the blank that stands for it in the selected text.
bool beginsWord(QChar before)
{
    return before == u' ' || before == u'\r' || before == u'\n' || before == QChar::LineSeparator ||
           before == QChar::ObjectReplacementCharacter || (before >= u'0' && before <= u'9');
}

// A letter outside the basic plane is two units; it gets its capital as a whole.
void properName(TextSelection &selection)
{
    QChar before = u' ';
    selection.mapSelText([&before](const QString &text) {
        const QString small = text.toLower();
        QString proper;
        proper.reserve(small.size());
        for (qsizetype i = 0; i < small.size(); ++i) {
            const qsizetype units = small[i].isHighSurrogate() && i + 1 < small.size() ? 2 : 1;
            const QString letter = small.mid(i, units);
            proper += beginsWord(before) ? letter.toUpper() : letter;
            i += units - 1;
            before = small[i];
        }
        return proper;
    });
}

// Runs a change of case where there is something to change.
template <typename Change>
void changeCase(const char *name, QLatin1StringView what, Change &&change)
{
    changeActiveText(name, what, [&](TextSelection &selection) {
        if (!selection.SelText().isEmpty())
            change(selection);
    });
}

QString dateText(QLocale::FormatType form)
{
    return QLocale::system().toString(ports().clock->now().date(), form);
}

} // namespace

namespace modEdit
{

void EditCut()
{
    changeActiveText("modEdit EditCut", "cutting from"_L1, [](TextSelection &selection) {
        ports().clipboard->setText(selection.SelText());
        selection.setSelText({});
    });
}

void EditCopy()
{
    onActiveText("modEdit EditCopy", [](TextSelection &selection) {
        const QByteArray rtf = selection.SelRTF();
        Clipboard &clipboard = *ports().clipboard;
        if (rtf.isEmpty())
            clipboard.clear();
        else
            clipboard.setRichText(rtf);
    });
}

void EditPaste()
{
    changeActiveText("modEdit EditPaste", "pasting in"_L1, [](TextPane &pane) {
        const Clipboard &clipboard = *ports().clipboard;
        if (const QByteArray rtf = clipboard.richText(); !rtf.isEmpty())
            pane.pasteRTF(rtf);
        else if (const QString text = clipboard.text(); !text.isEmpty())
            pane.pasteText(text);
        else if (const QByteArray picture = clipboard.picture(); !picture.isEmpty())
            pane.pastePicture(picture);
    });
}

void EditPasteSpecial()
{
    changeActiveText("modEdit EditPasteSpecial", "pasting without formatting in"_L1, [](TextPane &pane) {
        const Clipboard &clipboard = *ports().clipboard;
        QString text = clipboard.text();
        // Our own Copy puts rich text there alone.
        if (text.isEmpty())
            text = rtf::toPlainText(clipboard.richText());
        if (!text.isEmpty())
            pane.pasteText(text);
    });
}

void EditDelete()
{
    insert("modEdit EditDelete", "deletion in"_L1, {});
}

void EditSelectAll()
{
    onActiveText("modEdit EditSelectAll", [](TextSelection &selection) {
        selection.setSelStart(0);
        selection.setSelLength(static_cast<int>(selection.Text().size()));
    });
}

void EditClearEntryText()
{
    procedure("modEdit EditClearEntryText", [] {
        Document *document = DocumentActive();
        if (!document)
            return;
        const Answer answer = ports().dialogs->askPlainly(
            u"Are you sure that you want to delete all the text for this entry?"_s, Answer::Yes);
        if (answer != Answer::Yes)
            return;
        const HourglassPointer hourglass;
        if (document->bTextWithheld()) {
            modNodes::NodeTextDiscard(*document);
            return;
        }
        TextPane &pane = document->view()->txtRTF;
        const TextDeed deed(pane, "clearing of the text of"_L1);
        pane.clearText();
    });
}

void EditInsertTab()
{
    insert("modEdit EditInsertTab", "insertion of a tab in"_L1, u"\t"_s);
}

void EditInsertLongDate()
{
    insert("modEdit EditInsertLongDate", "insertion of the long date in"_L1, dateText(QLocale::LongFormat));
}

void EditInsertShortDate()
{
    insert("modEdit EditInsertShortDate", "insertion of the short date in"_L1, dateText(QLocale::ShortFormat));
}

void EditInsertTime()
{
    insert("modEdit EditInsertTime", "insertion of the time in"_L1, ports().clock->now().toString(u"HH:mm"_s));
}

void EditCaseLower()
{
    changeCase("modEdit EditCaseLower", "small letters in"_L1, lower);
}

void EditCaseUpper()
{
    changeCase("modEdit EditCaseUpper", "capitals in"_L1, upper);
}

void EditCaseProper()
{
    changeCase("modEdit EditCaseProper", "proper names in"_L1, properName);
}

void EditCaseToggle()
{
    changeCase("modEdit EditCaseToggle", "change of case in"_L1, [](TextSelection &selection) {
        const QString text = selection.SelText();
        const int start = selection.SelStart();
        if (text == text.toLower())
            properName(selection);
        else if (text == text.toUpper())
            lower(selection);
        else
            upper(selection);
        // A few letters become two, so the length is not what it was.
        const int end = selection.SelStart();
        selection.setSelStart(start);
        selection.setSelLength(end - start);
    });
}

void EditFormatBold()
{
    toggle("modEdit EditFormatBold", "bold in"_L1, &TextSelection::SelBold, &TextSelection::setSelBold);
}

void EditFormatItalic()
{
    toggle("modEdit EditFormatItalic", "italic in"_L1, &TextSelection::SelItalic, &TextSelection::setSelItalic);
}

void EditFormatUnderline()
{
    toggle("modEdit EditFormatUnderline", "underline in"_L1, &TextSelection::SelUnderline,
           &TextSelection::setSelUnderline);
}

void EditFormatStrikeThrough()
{
    toggle("modEdit EditFormatStrikeThrough", "strikethrough in"_L1, &TextSelection::SelStrikeThru,
           &TextSelection::setSelStrikeThru);
}

void EditFormatBullet()
{
    toggle("modEdit EditFormatBullet", "bullets in"_L1, &TextSelection::SelBullet, &TextSelection::setSelBullet);
}

void EditFormatIndent()
{
    changeActiveText("modEdit EditFormatIndent", "indent in"_L1, [](TextSelection &selection) {
        if (const std::optional<int> indent = selection.SelIndent())
            selection.setSelIndent(*indent + indentStep);
    });
}

void EditFormatUnindent()
{
    changeActiveText("modEdit EditFormatUnindent", "unindent in"_L1, [](TextSelection &selection) {
        selection.setSelIndent(std::max(selection.SelIndent().value_or(0) - indentStep, 0));
    });
}

void EditCurrentFont()
{
    procedure("modEdit EditCurrentFont", [] {
        Document *document = DocumentActive();
        if (!document)
            return;
        TextPane &pane = document->view()->txtRTF;
        const TextDeed deed(pane, "font in"_L1);
        if (pane.SelLength() > 0)
            modFont::ChangeRTFSelFont(pane);
        else
            modFont::ChangeRTFFont(pane);
    });
}

void EditDocumentFont()
{
    procedure("modEdit EditDocumentFont", [] {
        const Document *document = DocumentActive();
        if (!document)
            return;
        const HourglassPointer hourglass;
        clsFont font;
        document->m_fntTextFont.CopyTo(font);
        if (modFont::ChangeFontDetails(font)) {
            font.CopyTo(g_fntPendingTextFont);
            modFont::ChangeDocumentTextFontDetails(false);
        }
    });
}

void EditFormatLeft()
{
    align("modEdit EditFormatLeft", "left alignment in"_L1, TextSelection::Left);
}

void EditFormatCentre()
{
    align("modEdit EditFormatCentre", "centring in"_L1, TextSelection::Centre);
}

void EditFormatRight()
{
    align("modEdit EditFormatRight", "right alignment in"_L1, TextSelection::Right);
}

} // namespace modEdit
