// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QMdiSubWindow>

class frmDocument;

// The frame of a document window inside the main window; tells when the document has been closed for good. A dot on its
// icon tells of unsaved changes.
class DocumentFrame final : public QMdiSubWindow
{
    Q_OBJECT

public:
    // Takes the form over.
    explicit DocumentFrame(frmDocument *form, QWidget *parent = nullptr);
    ~DocumentFrame() override;

    frmDocument *form() const { return m_form; }

    // What a new window takes of the main window: most of it, so that others show behind it.
    QSize sizeHint() const override;

Q_SIGNALS:
    void closed(DocumentFrame *frame);

protected:
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    QIcon ownIcon() const;
    void showUnsaved();

    frmDocument *const m_form;
    QMetaObject::Connection m_positionChanges;
    bool m_showsUnsaved = false;
};
