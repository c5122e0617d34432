// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "util/Bracket.h"

#include <QByteArray>
#include <QColor>
#include <QPointer>
#include <QString>
#include <QTextCursor>
#include <QTextDocument>

#include <functional>
#include <optional>
#include <vector>

struct TextReplacement;

namespace rtf
{
class CharChange;
}

// A text document and what is selected in it, as the commands on texts see it, whether a pane shows it or not. Offsets
// count UTF-16 units of Text(), in which a paragraph break is the two characters CR LF and a line break within a
// paragraph one, so that Text().mid(SelStart(), SelLength()) == SelText() holds; but selected cells of a table are
// these cells alone in whatever is read from the selection or done to it, and SelStart and SelLength reach from the
// first to the last of them. A selection property is empty when the selection mixes values.
class TextSelection
{
public:
    enum Alignment { Left = 0, Right = 1, Centre = 2 };

    virtual ~TextSelection() = default;

    // The caret with what is selected, and with the format of what is typed next.
    virtual QTextCursor caret() const = 0;
    virtual void setCaret(const QTextCursor &caret) = 0;

    // The whole text as an RTF document (pure ASCII).
    QByteArray TextRTF() const;
    // A picture is a blank.
    QString Text() const;
    // The same for whoever looks for something: a picture is U+FFFC.
    QString FindableText() const;

    QByteArray SelRTF() const;
    // Bytes that are no RTF go in as plain text (see AnsiCodec).
    void setSelRTF(const QByteArray &rtf);
    QString SelText() const;
    // CR LF (or CR) begins a new paragraph, a lone LF a new line within the paragraph, as in Text(). The new text looks
    // like the beginning of what it replaces.
    void setSelText(const QString &text);
    // Replaces the selected text, each stretch of one look by what `map` makes of it, in order, and leaves the caret
    // behind it. A stretch of line breaks is shown to `map` but stays.
    void mapSelText(const std::function<QString(const QString &)> &map);
    // Changes the look of the selection as one step of undo, or at a caret that of what is typed next.
    void changeSelection(const rtf::CharChange &change);
    // Changes the look of the whole text, an empty first paragraph's too, as one step of undo.
    void changeText(const rtf::CharChange &change);
    // Makes replacements (see EntryText.h) as one step of undo.
    void replaceText(const std::vector<TextReplacement> &replacements);
    // What is changed between these two is one step of undo. They nest; see EditGroup.
    void beginEditGroup();
    void endEditGroup();
    // Takes all text away, and all formatting of paragraphs; a step that can be undone.
    void clearText();
    // Whether cells of a table are selected: a replacement empties them, and leaves the table as it is.
    bool SelHoldsCells() const;
    int SelStart() const;
    // Collapses the selection. Offsets beyond the text are taken as its end.
    void setSelStart(int start);
    int SelLength() const;
    void setSelLength(int length);

    std::optional<bool> SelBold() const;
    void setSelBold(bool on);
    std::optional<bool> SelItalic() const;
    void setSelItalic(bool on);
    std::optional<bool> SelUnderline() const;
    void setSelUnderline(bool on);
    std::optional<bool> SelStrikeThru() const;
    void setSelStrikeThru(bool on);
    std::optional<QString> SelFontName() const;
    void setSelFontName(const QString &name);
    // In points.
    std::optional<double> SelFontSize() const;
    void setSelFontSize(double points);
    // An invalid colour is the automatic one.
    std::optional<QColor> SelColor() const;
    void setSelColor(const QColor &colour);
    std::optional<bool> SelBullet() const;
    void setSelBullet(bool on);
    // In twips.
    std::optional<int> SelIndent() const;
    void setSelIndent(int twips);
    // Justified paragraphs count as left-aligned.
    std::optional<Alignment> SelAlignment() const;
    void setSelAlignment(Alignment alignment);

protected:
    // A text from elsewhere, in which every kind of line break ends a paragraph.
    static QString withParagraphs(QString text);
    // Takes the selection away and leaves the cursor where what replaces it goes: of cells, the first one.
    static void removeSelection(QTextCursor &cursor);
    // As setSelText, of a text whose breaks are those of documents.
    void insertPlain(const QString &text);

private:
    // What was read of a document, and when.
    struct Known {
        QPointer<const QTextDocument> document;
        int revision = -1;
        QString text;
        QString findableText;
    };

    void learnText() const;

    mutable Known m_known;
    int m_editGroups = 0;
};

// What is selected in a text that no pane shows.
class UnshownSelection final : public TextSelection
{
public:
    explicit UnshownSelection(const QTextCursor &caret)
        : m_caret(caret)
    {
    }

    QTextCursor caret() const override { return m_caret; }

    void setCaret(const QTextCursor &caret) override { m_caret = caret; }

private:
    QTextCursor m_caret;
};

// Makes what is changed in a text while it lives one step of undo.
using EditGroup = Bracket<TextSelection, &TextSelection::beginEditGroup, &TextSelection::endEditGroup>;
