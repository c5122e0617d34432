// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/TextPane.h"
#include "model/ReadableText.h"

#include <QTextCursor>
#include <QTextEdit>
#include <QTextFormat>

#include <optional>

class Dialogs;
struct BoundedHtml;

// The rich-text pane, on Qt's text editor. Nothing that is loaded, pasted or dropped makes it read a file or an
// address that a text names.
class RichTextBox final : public QTextEdit, public TextPane
{
    Q_OBJECT

public:
    explicit RichTextBox(QWidget *parent = nullptr);
    ~RichTextBox() override;

    // What asks the user and tells him something; without it nobody is asked and nothing told.
    void setDialogs(Dialogs *dialogs) { m_dialogs = dialogs; }

    QTextCursor caret() const override;
    void setCaret(const QTextCursor &caret) override;
    QRect SelectionOnScreen() const override;

    void showText(std::shared_ptr<EntryDocument> text) override;

    const std::shared_ptr<EntryDocument> &shown() const override { return m_shown; }

    // Puts the caret, and what is in sight, where they were when the text was last shown.
    void returnToPlace();

    bool pasteRTF(const QByteArray &rtf) override;
    bool pasteText(const QString &text) override;
    bool pastePicture(const QByteArray &file) override;

    QFont Font() const override;
    void setFont(const QFont &font) override;
    void changeFont(const QFont &font) override;
    bool Locked() const override;
    void setLocked(bool locked) override;
    bool PaneVisible() const override;
    void setPaneVisible(bool visible) override;
    void setFocus() override;
    using QWidget::setFocus;

Q_SIGNALS:
    // The selection or the caret moved, or the format at the caret changed.
    void selectionMoved();
    void gotFocus();
    // What was pasted came without parts that no text can hold; which, in words.
    void partsLeftOut(const QString &parts);
    // The keys that undo and redo were pressed in a text of an entry, which the pane leaves to whoever knows its steps.
    void undoWanted();
    void redoWanted();

protected:
    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
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
    void paintSigns();
    void takeFont();
    void goBackOrForth(bool isBack);
    void tellUser(const QString &text);
    bool hasRoomFor(const QString &text) const;
    bool hasRoomForPlain(const QString &text) const;
    bool hasRoomForCells(qsizetype cells) const;
    bool isBearableWith(const QTextDocument &pasted) const;
    void putText(const QString &text);
    bool pasteWords(const QString &text);
    void pasteHtml(const QString &html, const QString &text);
    void insertHtmlFragment(const BoundedHtml &bounded);
    void holdPictures(int from, int to, const std::vector<QByteArray> &files);
    void noteChange();
    void noteSelection();
    void keepGlyphs();

    Dialogs *m_dialogs = nullptr;
    QFont m_font;
    std::shared_ptr<EntryDocument> m_shown;
    bool m_paneVisible = true;
    std::optional<Noted> m_noted;
    // In the paragraph whose glyphs are kept.
    QTextCursor m_kept;
    std::optional<Coloured> m_coloured;
    std::vector<ReadableSign> m_signs;
    bool m_loading = false;
    bool m_isDropping = false;
};
