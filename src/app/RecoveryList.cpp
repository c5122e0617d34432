// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/RecoveryList.h"

#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/DocumentWindow.h"
#include "document/Ports.h"
#include "util/FullPath.h"
#include "util/Procedure.h"
#include "vault/Recovery.h"
#include "vault/Vault.h"

#include <QDialogButtonBox>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

enum Column { NameColumn, ChangesColumn, TimeColumn, FileColumn, FolderColumn };

Dialogs &dialogs()
{
    return *ports().dialogs;
}

QString inChanges(int steps)
{
    return steps == 1 ? u"1 change"_s : u"%1 changes"_s.arg(steps);
}

QString changesOf(const LeftBehind &left)
{
    if (!left.damage().isEmpty())
        return u"cannot be read"_s;
    const int steps = left.state().steps;
    if (const qint64 lost = left.recordsCutOff(); lost > 0)
        return u"%1, %2 lost"_s.arg(inChanges(steps)).arg(lost);
    if (steps > 0)
        return inChanges(steps);
    // What was done may all be undone, or be older than the steps that are kept.
    switch (left.fileNow()) {
    case LeftBehind::FileNow::Gone:
        return u"its file is gone"_s;
    case LeftBehind::FileNow::None:
        return u"all of it"_s;
    case LeftBehind::FileNow::AsItWas:
    case LeftBehind::FileNow::Changed:
        break;
    }
    return u"earlier changes"_s;
}

QString timeOf(const LeftBehind &left)
{
    if (!left.damage().isEmpty())
        return QString();
    // To the second: who knows when the program ended, sees what is missing.
    const QLocale locale = QLocale::system();
    const QDateTime &time = left.state().time;
    return locale.toString(time.date(), QLocale::ShortFormat) + u' ' + time.time().toString(u"HH:mm:ss"_s);
}

// What has become of its file.
QString fileOf(const LeftBehind &left)
{
    if (!left.damage().isEmpty())
        return QString();
    switch (left.fileNow()) {
    case LeftBehind::FileNow::AsItWas:
        return u"as it was"_s;
    case LeftBehind::FileNow::Changed:
        return u"changed since"_s;
    case LeftBehind::FileNow::Gone:
        return u"no longer there"_s;
    case LeftBehind::FileNow::None:
        break;
    }
    // Recovered beside its file, it has none of its own.
    return left.fileBehind().isEmpty() ? u"never saved"_s : u"recovered before, not saved"_s;
}

QString folderOf(const LeftBehind &left)
{
    return left.fileBehind().isEmpty() ? QString() : ShownPathName(QFileInfo(left.fileBehind()).absolutePath());
}

QStringList columnsOf(const LeftBehind &left)
{
    return {left.name(), changesOf(left), timeOf(left), fileOf(left), folderOf(left)};
}

QString namesOf(const std::vector<LeftBehind *> &left)
{
    constexpr size_t mostNamed = 5;
    QStringList names;
    for (size_t place = 0; place < std::min(left.size(), mostNamed); ++place)
        names.append(u'"' + left[place]->name() + u'"');
    const QString others = left.size() > mostNamed ? u" and %1 more"_s.arg(left.size() - mostNamed) : QString();
    return names.join(u", "_s) + others;
}

} // namespace

RecoveryList *RecoveryList::offer(Vault &vault, QWidget *parent)
{
    return procedure("RecoveryList offer", [&]() -> RecoveryList * {
        if (auto *shown = parent ? parent->findChild<RecoveryList *>() : nullptr; shown && shown->isVisible()) {
            shown->raise();
            shown->activateWindow();
            return shown;
        }
        std::vector<std::unique_ptr<LeftBehind>> left = LeftBehind::find(vault.folder());
        if (left.empty())
            return nullptr;
        auto *list = new RecoveryList(std::move(left), vault, parent);
        list->setAttribute(Qt::WA_DeleteOnClose);
        list->show();
        // The windows of several documents have asked for the keyboard before it.
        list->raise();
        list->activateWindow();
        return list;
    });
}

void RecoveryList::showWhatIsLeft(Vault &vault, QWidget *parent)
{
    if (!offer(vault, parent))
        dialogs().inform(u"Nothing is left to be recovered."_s);
}

RecoveryList::RecoveryList(std::vector<std::unique_ptr<LeftBehind>> left, Vault &vault, QWidget *parent)
    : QDialog(parent)
    , m_left(std::move(left))
    , m_vault(vault)
{
    setObjectName(u"RecoveryList"_s);
    setWindowTitle(u"Recover documents"_s);
    auto *layout = new QVBoxLayout(this);
    m_text = new QLabel;
    m_text->setObjectName(u"lblRecovery"_s);
    m_text->setWordWrap(true);
    layout->addWidget(m_text);

    m_list = new QTreeWidget;
    m_list->setObjectName(u"lstRecovery"_s);
    m_list->setAccessibleName(u"Documents left behind"_s);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    // Both ends of a long name tell something.
    m_list->setTextElideMode(Qt::ElideMiddle);
    m_list->setAllColumnsShowFocus(true);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    // The last column has what the others leave.
    m_list->header()->setStretchLastSection(false);
    m_list->setHeaderLabels({u"Document"_s, u"Unsaved"_s, u"Kept until"_s, u"Its file"_s, u"Where"_s});
    m_list->header()->setSectionResizeMode(FolderColumn, QHeaderView::Stretch);
    layout->addWidget(m_list);

    auto *buttons = new QDialogButtonBox;
    const auto addButton = [&](const QString &caption, const QString &name, QDialogButtonBox::ButtonRole role,
                               const QString &tip, auto &&pressed) {
        QPushButton *button = buttons->addButton(caption, role);
        button->setObjectName(name);
        button->setToolTip(tip);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, pressed);
        return button;
    };
    m_recover = addButton(u"&Recover"_s, u"cmdRecover"_s, QDialogButtonBox::ActionRole,
                          u"Opens the selected documents with their changes"_s, &RecoveryList::recover);
    m_recover->setDefault(true);
    m_look = addButton(u"L&ook"_s, u"cmdLook"_s, QDialogButtonBox::ActionRole,
                       u"Opens the selected documents to be read, and leaves them in this list"_s, &RecoveryList::look);
    m_discard = addButton(u"&Discard..."_s, u"cmdDiscard"_s, QDialogButtonBox::DestructiveRole,
                          u"Deletes what was kept of the selected documents"_s, &RecoveryList::discard);
    addButton(u"&Later"_s, u"cmdLater"_s, QDialogButtonBox::RejectRole,
              u"Asks again at the next start; Recover in the Tools menu shows this list before"_s, &QDialog::close);
    layout->addWidget(buttons);

    connect(m_list, &QTreeWidget::itemSelectionChanged, this, &RecoveryList::updateButtons);
    // Return is the preset button's.
    connect(m_list, &QTreeWidget::itemDoubleClicked, this, &RecoveryList::recover);
    fillList();
    m_list->setFocus();
    // The desktop puts a frame around it.
    constexpr double mostOfScreen = 0.9;
    constexpr int columnsOfText = 120;
    resize(sizeHint()
               .expandedTo({fontMetrics().averageCharWidth() * columnsOfText, 0})
               .boundedTo(screen()->availableSize() * mostOfScreen));
}

RecoveryList::~RecoveryList() = default;

void RecoveryList::fillList()
{
    const bool isAnyUnreadable =
        std::ranges::any_of(m_left, [](const auto &left) { return !left->damage().isEmpty(); });
    m_text->setText(u"Quillery, or the computer, ended before these documents were saved. Recover opens a document "
                    "with its changes and writes nothing to its file before you save it."_s +
                    (isAnyUnreadable
                         ? u" What was kept of a document and cannot be read stays here until it is discarded."_s
                         : QString()));
    m_list->clear();
    for (const auto &left : m_left) {
        QStringList columns = columnsOf(*left);
        auto *item = new QTreeWidgetItem(m_list, columns);
        item->setToolTip(NameColumn, left->fileBehind().isEmpty() ? left->name() : left->fileBehind());
        item->setToolTip(ChangesColumn, left->damage());
        item->setToolTip(FolderColumn, columns.back());
        item->setData(NameColumn, Qt::AccessibleTextRole, columns.filter(QRegularExpression(u"."_s)).join(u", "_s));
        item->setSelected(true);
    }
    for (int column = 0; column < FolderColumn; ++column)
        m_list->resizeColumnToContents(column);
    constexpr int mostCharacters = 30;
    const int mostOfName = fontMetrics().averageCharWidth() * mostCharacters;
    m_list->setColumnWidth(NameColumn, std::min(m_list->columnWidth(NameColumn), mostOfName));
    if (QTreeWidgetItem *first = m_list->topLevelItem(0))
        m_list->setCurrentItem(first, NameColumn, QItemSelectionModel::NoUpdate);
    updateButtons();
}

void RecoveryList::updateButtons()
{
    const std::vector<LeftBehind *> selected = chosen();
    const bool isReadable =
        std::ranges::any_of(selected, [](const LeftBehind *left) { return left->damage().isEmpty(); });
    m_recover->setEnabled(isReadable);
    m_look->setEnabled(isReadable);
    m_discard->setEnabled(!selected.empty());
}

std::vector<LeftBehind *> RecoveryList::chosen() const
{
    std::vector<LeftBehind *> selected;
    for (size_t row = 0; row < m_left.size(); ++row) {
        if (const QTreeWidgetItem *item = m_list->topLevelItem(static_cast<int>(row)); item && item->isSelected())
            selected.push_back(m_left[row].get());
    }
    return selected;
}

void RecoveryList::recover()
{
    procedure("RecoveryList recover", [this] {
        std::vector<LeftBehind *> recovered;
        std::vector<LeftBehind *> failed;
        for (LeftBehind *left : chosen()) {
            if (!left->damage().isEmpty() || !recoverDocument(*left, m_vault)) {
                failed.push_back(left);
                continue;
            }
            closeLook(*left);
            recovered.push_back(left);
        }
        remove(recovered);
        if (!failed.empty())
            dialogs().warn(u"Nothing of %1 could be read. What was kept of it stays where it is; the session log "
                           "says more."_s.arg(namesOf(failed)));
    });
}

void RecoveryList::look()
{
    procedure("RecoveryList look", [this] {
        for (LeftBehind *left : chosen()) {
            if (const Document *shown = lookOf(*left); shown && shown->view())
                shown->view()->window.bringToFront();
            else if (left->damage().isEmpty())
                m_looks[left] = lookAtLeftBehind(*left);
        }
    });
}

void RecoveryList::discard()
{
    procedure("RecoveryList discard", [this] {
        const std::vector<LeftBehind *> selected = chosen();
        if (selected.empty() ||
            !userAgrees(u"Do you want to discard the unsaved changes of %1? They cannot be recovered any more."_s.arg(
                            namesOf(selected)),
                        Answer::No))
            return;
        for (LeftBehind *left : selected) {
            renameLook(*left);
            left->discard();
        }
        remove(selected);
    });
}

// Null also for one that was saved as a file of its own.
Document *RecoveryList::lookOf(const LeftBehind &left) const
{
    const auto look = m_looks.find(&left);
    return look != m_looks.end() && look->second && look->second->m_bForReading && look->second->m_sFile.isEmpty()
               ? look->second
               : nullptr;
}

void RecoveryList::closeLook(const LeftBehind &left)
{
    if (const Document *look = lookOf(left); look && look->view())
        look->view()->window.close();
}

void RecoveryList::renameLook(const LeftBehind &left)
{
    if (Document *look = lookOf(left))
        look->setCaption(left.name() + u" (discarded, read-only)"_s);
}

void RecoveryList::remove(const std::vector<LeftBehind *> &gone)
{
    std::erase_if(m_left, [&gone](const auto &left) { return std::ranges::find(gone, left.get()) != gone.end(); });
    if (m_left.empty())
        close();
    else
        fillList();
}
