// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "panes/VersionsModel.h"
#include "vault/VersionKeeper.h"

#include <QDialog>

#include <memory>
#include <optional>

class Document;
class QEvent;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QTreeView;
class ScrolledTogether;

// The versions of a document: which there are, what of each is another now, and the ways to bring it back.
class frmVersions final : public QDialog
{
    Q_OBJECT

public:
    frmVersions(VersionKeeper &keeper, Document &document, QWidget *parent);
    ~frmVersions() override;

protected:
    void changeEvent(QEvent *event) override;

private:
    QTreeView *makeTable(QAbstractItemModel &model, const QString &name, const QString &spoken);
    QPlainTextEdit *makeText(const QString &name, const QString &spoken);
    QPushButton *makeButton(const QString &name, const QString &caption, void (frmVersions::*run)());
    void layOut();
    void say(const QString &text);
    void takeList(const VersionKeeper::Listed &listed);
    void readVersion();
    void takeVersion(const VersionKeeper::Read &read);
    void compare();
    void showDifference();
    void markWords();
    void enableButtons();
    const EntryDifference *difference() const;
    QString versionTime() const;
    void bringBackAll();
    void bringBackBranch();
    void bringBackText();
    void openVersion();

    VersionKeeper &m_keeper;
    Document &m_document;
    VersionsModel m_versions;
    DifferencesModel m_differences;
    // The version that is read, and it beside the document.
    std::optional<KeptOutline> m_version;
    std::unique_ptr<ComparedVersion> m_compared;
    // Told apart from answers to what was asked before.
    int m_asked = 0;

    QLabel *const m_state;
    QTreeView *const m_lstVersions;
    QTreeView *const m_lstDifferences;
    QPlainTextEdit *const m_txtThen;
    QPlainTextEdit *const m_txtNow;
    QLabel *const m_lblThen;
    QLabel *const m_lblNow;
    const std::unique_ptr<ScrolledTogether> m_together;
    QPushButton *const m_cmdOpen;
    QPushButton *const m_cmdAll;
    QPushButton *const m_cmdBranch;
    QPushButton *const m_cmdText;
};
