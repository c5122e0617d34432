// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/TextPane.h"

#include <QTextEdit>
#include <QTextFormat>

#include <optional>

struct BoundedHtml;

// The rich-text pane, on Qt's text editor. Nothing that is loaded, pasted or dropped makes it read a file or an
// address that a text names.
class RichTextBox final : public QTextEdit, public TextPane
{
    Q_OBJECT

public:
    explicit RichTextBox(QWidget *parent = nullptr);
    ~RichTextBox() override;

    QByteArray TextRTF() const override;
    void setTextRTF(const QByteArray &rtf) override;
    QString Text() const override;
    QString FindableText() const override;

    QByteArray SelRTF() const override;
    void setSelRTF(const QByteArray &rtf) override;
    QString SelText() const override;
    // CR LF (or CR) begins a new paragraph, a lone LF a new line within the paragraph, as in Text().
    void setSelText(const QString &text) override;
    bool pasteRTF(const QByteArray &rtf) override;
    bool pasteText(const QString &text) override;
    bool pastePicture(const QByteArray &file) override;
    void mapSelText(const std::function<QString(const QString &)> &map) override;
    void changeSelection(const rtf::CharChange &change) override;
    void changeText(const rtf::CharChange &change) override;
    void replaceText(const std::vector<TextReplacement> &replacements) override;
    void beginEditGroup() override;
    void endEditGroup() override;
    void beginJoinedSteps() override;
    void endJoinedSteps() override;
    void clearText() override;
    bool SelHoldsCells() const override;
    int SelStart() const override;
    // Collapses the selection. Offsets beyond the text are taken as its end.
    void setSelStart(int start) override;
    int SelLength() const override;
    void setSelLength(int length) override;
    QRect SelectionOnScreen() const override;

    std::optional<bool> SelBold() const override;
    void setSelBold(bool on) override;
    std::optional<bool> SelItalic() const override;
    void setSelItalic(bool on) override;
    std::optional<bool> SelUnderline() const override;
    void setSelUnderline(bool on) override;
    std::optional<bool> SelStrikeThru() const override;
    void setSelStrikeThru(bool on) override;
    std::optional<QString> SelFontName() const override;
    void setSelFontName(const QString &name) override;
    std::optional<double> SelFontSize() const override;
    void setSelFontSize(double points) override;
    std::optional<QColor> SelColor() const override;
    void setSelColor(const QColor &colour) override;
    std::optional<bool> SelBullet() const override;
    void setSelBullet(bool on) override;
    std::optional<int> SelIndent() const override;
    void setSelIndent(int twips) override;
    // Justified paragraphs count as left-aligned.
    std::optional<Alignment> SelAlignment() const override;
    void setSelAlignment(Alignment alignment) override;

    QFont Font() const override;
    void setFont(const QFont &font) override;
    void changeFont(const QFont &font) override;
    bool Locked() const override;
    void setLocked(bool locked) override;
    bool PaneVisible() const override;
    void setPaneVisible(bool visible) override;
    void setFocus() override;
    using QWidget::setFocus;

    // A word is a run of letters and digits.
    int Find(const QString &expression, int start, int end, int options) override;

Q_SIGNALS:
    // The user or a Sel member changed the text or its format. Assigning TextRTF and setting the base font do not.
    void changed();
    // The selection or the caret moved, or the format at the caret changed.
    void selectionMoved();
    void gotFocus();

protected:
    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    QMimeData *createMimeDataFromSelection() const override;
    bool canInsertFromMimeData(const QMimeData *source) const override;
    void insertFromMimeData(const QMimeData *source) override;

private:
    // What selectionMoved() told last.
    struct Noted {
        int anchor;
        int position;
        QTextCharFormat charFormat;
        QTextBlockFormat blockFormat;
        bool operator==(const Noted &) const = default;
    };

    // What readable colours were found for.
    struct Coloured {
        int revision;
        int first;
        int last;
        qint64 palette;
        bool operator==(const Coloured &) const = default;
    };

    std::pair<QTextBlock, QTextBlock> paragraphsInSight() const;
    void colourVisibleText();
    std::size_t fontIndex() const;
    void takeFont();
    QTextDocument *freshDocument();
    void showDocument(QTextDocument *fresh);
    void insertPlain(const QString &text);
    static QString withParagraphs(QString text);
    static void removeSelection(QTextCursor &cursor);
    void tellUser(const QString &text);
    bool hasRoomFor(const QString &text);
    bool hasRoomForCells(qsizetype cells) const;
    bool hasRoomForHeight(const QTextDocument &pasted) const;
    bool pasteWords(const QString &text);
    void pasteHtml(const QString &html, const QString &text);
    void insertHtmlFragment(const BoundedHtml &bounded);
    void holdPictures(int from, int to, const std::vector<QByteArray> &files);
    void noteChange();
    void noteSelection();

    QFont m_font;
    // The base fonts that the text has had since it was shown, the first one first.
    std::vector<QFont> m_fonts;
    bool m_paneVisible = true;
    // What Text() and FindableText() answer, once it is asked for.
    void learnText() const;
    mutable QString m_text;
    mutable QString m_findableText;
    mutable bool m_textKnown = false;
    int m_editGroups = 0;
    // While steps are joined, how many steps the undo history had before.
    std::optional<int> m_stepsBefore;
    std::optional<Noted> m_noted;
    std::optional<Coloured> m_coloured;
    bool m_loading = false;
    bool m_isDropping = false;
};
