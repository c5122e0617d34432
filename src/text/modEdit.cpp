// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "text/modEdit.h"

#include "document/ActiveDocument.h"
#include "document/DocumentView.h"
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

// The same for a command that changes the text, which one that is not shown whole does not let happen.
template <typename Body>
void changeActiveText(const char *name, Body &&body)
{
    onActiveText(name, [&](TextPane &pane) {
        if (!DocumentActive()->bTextWithheld())
            body(pane);
    });
}

void insert(const char *name, const QString &text)
{
    changeActiveText(name, [&](TextSelection &selection) { selection.setSelText(text); });
}

// Only what is known to be all on goes off by being used once; a mixed selection goes off as well.
void toggle(const char *name, std::optional<bool> (TextSelection::*property)() const, void (TextSelection::*set)(bool))
{
    changeActiveText(name, [&](TextSelection &selection) {
        const std::optional<bool> on = (selection.*property)();
        (selection.*set)(on && !*on);
    });
}

void align(const char *name, TextSelection::Alignment alignment)
{
    changeActiveText(name, [&](TextSelection &selection) { selection.setSelAlignment(alignment); });
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
void changeCase(const char *name, Change &&change)
{
    changeActiveText(name, [&](TextSelection &selection) {
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
    changeActiveText("modEdit EditCut", [](TextSelection &selection) {
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
    changeActiveText("modEdit EditPaste", [](TextPane &pane) {
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
    changeActiveText("modEdit EditPasteSpecial", [](TextPane &pane) {
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
    insert("modEdit EditDelete", {});
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
        if (document->bTextWithheld())
            modNodes::NodeTextDiscard(*document);
        else
            document->view()->txtRTF.clearText();
    });
}

void EditInsertTab()
{
    insert("modEdit EditInsertTab", u"\t"_s);
}

void EditInsertLongDate()
{
    insert("modEdit EditInsertLongDate", dateText(QLocale::LongFormat));
}

void EditInsertShortDate()
{
    insert("modEdit EditInsertShortDate", dateText(QLocale::ShortFormat));
}

void EditInsertTime()
{
    insert("modEdit EditInsertTime", ports().clock->now().toString(u"HH:mm"_s));
}

void EditCaseLower()
{
    changeCase("modEdit EditCaseLower", lower);
}

void EditCaseUpper()
{
    changeCase("modEdit EditCaseUpper", upper);
}

void EditCaseProper()
{
    changeCase("modEdit EditCaseProper", properName);
}

void EditCaseToggle()
{
    changeCase("modEdit EditCaseToggle", [](TextSelection &selection) {
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
    toggle("modEdit EditFormatBold", &TextSelection::SelBold, &TextSelection::setSelBold);
}

void EditFormatItalic()
{
    toggle("modEdit EditFormatItalic", &TextSelection::SelItalic, &TextSelection::setSelItalic);
}

void EditFormatUnderline()
{
    toggle("modEdit EditFormatUnderline", &TextSelection::SelUnderline, &TextSelection::setSelUnderline);
}

void EditFormatStrikeThrough()
{
    toggle("modEdit EditFormatStrikeThrough", &TextSelection::SelStrikeThru, &TextSelection::setSelStrikeThru);
}

void EditFormatBullet()
{
    toggle("modEdit EditFormatBullet", &TextSelection::SelBullet, &TextSelection::setSelBullet);
}

void EditFormatIndent()
{
    changeActiveText("modEdit EditFormatIndent", [](TextSelection &selection) {
        if (const std::optional<int> indent = selection.SelIndent())
            selection.setSelIndent(*indent + indentStep);
    });
}

void EditFormatUnindent()
{
    changeActiveText("modEdit EditFormatUnindent", [](TextSelection &selection) {
        selection.setSelIndent(std::max(selection.SelIndent().value_or(0) - indentStep, 0));
    });
}

void EditCurrentFont()
{
    procedure("modEdit EditCurrentFont", [] {
        Document *document = DocumentActive();
        if (!document)
            return;
        if (document->view()->txtRTF.SelLength() > 0)
            modFont::ChangeRTFSelFont(document->view()->txtRTF);
        else
            modFont::ChangeRTFFont(document->view()->txtRTF);
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
    align("modEdit EditFormatLeft", TextSelection::Left);
}

void EditFormatCentre()
{
    align("modEdit EditFormatCentre", TextSelection::Centre);
}

void EditFormatRight()
{
    align("modEdit EditFormatRight", TextSelection::Right);
}

} // namespace modEdit
