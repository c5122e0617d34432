// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "vault/LeftBehind.h"

#include <QDialog>
#include <QPointer>

#include <map>
#include <memory>
#include <vector>

class Document;
class QLabel;
class QPushButton;
class QTreeWidget;
class Vault;

// Shows the documents that were open with unsaved changes when the program, or the machine, last ended without being
// asked to. What is not decided about stays, and is offered again at the next start. It does not keep the user from the
// documents.
class RecoveryList final : public QDialog
{
    Q_OBJECT

public:
    RecoveryList(std::vector<std::unique_ptr<LeftBehind>> left, Vault &vault, QWidget *parent = nullptr);
    ~RecoveryList() override;

    // Shows what a folder of the vault has, if anything; null when it has nothing. A list that the parent shows already
    // is brought to the front.
    static RecoveryList *offer(Vault &vault, QWidget *parent);
    // The same for a user who asked for it, and is told when there is nothing.
    static void showWhatIsLeft(Vault &vault, QWidget *parent);

private:
    void fillList();
    void updateButtons();
    std::vector<LeftBehind *> chosen() const;
    void recover();
    void look();
    void discard();
    void remove(const std::vector<LeftBehind *> &gone);

    // Leaves nobody with a look at what has become something else.
    void closeLook(const LeftBehind &left);
    void renameLook(const LeftBehind &left);
    Document *lookOf(const LeftBehind &left) const;

    std::vector<std::unique_ptr<LeftBehind>> m_left;
    // The documents that show what was left behind, to be read only.
    std::map<const LeftBehind *, QPointer<Document>> m_looks;
    Vault &m_vault;
    QLabel *m_text = nullptr;
    QTreeWidget *m_list = nullptr;
    QPushButton *m_recover = nullptr;
    QPushButton *m_look = nullptr;
    QPushButton *m_discard = nullptr;
};
