// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/EntryPreview.h"

#include <QFrame>

class Document;
class Entry;
class QLabel;
class RichTextBox;
class frmDocument;

// Lies over the text pane of a document's window while entries are only looked at: where the entry stands, and its
// text.
class PreviewOverlay final : public QFrame, public EntryPreview
{
    Q_OBJECT

public:
    explicit PreviewOverlay(frmDocument &form);

    // To be called when the window has its panes and its document.
    void follow();

    void show(const Preview &preview) override;
    void end() override;

    bool isShown() const override { return m_preview.entry != EntryId::None; }

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void changeEvent(QEvent *event) override;

private:
    void leave();
    void keepKeyboard(QWidget *widget);
    void takeColours();
    void showHead(const Entry &entry);
    void showText(const Entry &entry);

    frmDocument &m_form;
    QLabel *const m_head;
    RichTextBox *const m_text;
    Preview m_preview;
    // The entry whose text is shown.
    EntryId m_shown = EntryId::None;
};
