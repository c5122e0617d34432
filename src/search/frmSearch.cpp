// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "search/frmSearch.h"

#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/OutlinePane.h"
#include "document/Ports.h"
#include "document/TextPane.h"
#include "search/clsHistory.h"
#include "search/modSearch.h"
#include "util/Blanks.h"
#include "util/Procedure.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QScreen>

using namespace Qt::StringLiterals;

namespace
{

constexpr QLatin1StringView scopes[] = {"Current entry text"_L1, "All entry texts"_L1, "All entry names"_L1};

// Where the match stands on the screen: in the text, or among the labels the whole row.
QRect matchOnScreen()
{
    const Document *document = DocumentActive();
    if (!document)
        return {};
    return searchScope() == SearchScope::AllNames ? document->view()->trvOutline.SelectedRow()
                                                  : document->view()->txtRTF.SelectionOnScreen();
}

} // namespace

frmSearch::frmSearch(QWidget *parent)
    : QDialog(parent)
    , m_isReplacing(g_iSearchMode == 2)
{
    setObjectName(u"frmSearch"_s);
    setWindowTitle(u"Search"_s);
    makeControls();
    procedure("frmSearch Form_Load", [this] { Form_Load(); });
}

frmSearch::~frmSearch()
{
    // The controls outlive this part of the dialog, and tell of the end of their input while they go.
    for (QComboBox *box : cmbInput)
        box->disconnect(this);
    for (QCheckBox *box : chkInput)
        box->disconnect(this);
    for (QPushButton *button : cmdInput)
        button->disconnect(this);
}

void frmSearch::makeControls()
{
    const QString labels[] = {u"Fi&nd expression"_s, u"Re&place expression"_s, u"W&here?"_s};
    const QString checks[] = {u"&Match case?"_s, u"Match &whole word?"_s, u"Direction &backwards?"_s};
    const QString buttons[] = {u"&Find"_s, u"&Replace"_s, u"Replace &All"_s, u"&Close"_s};
    auto *grid = new QGridLayout(this);
    int row = 0;
    for (std::size_t i = 0; i < cmbInput.size(); ++i, ++row) {
        cmbInput[i] = new QComboBox;
        cmbInput[i]->setObjectName(u"cmbInput%1"_s.arg(i));
        lblInput[i] = new QLabel(labels[i]);
        lblInput[i]->setObjectName(u"lblInput%1"_s.arg(i));
        lblInput[i]->setBuddy(cmbInput[i]);
        const QString name = QString(labels[i]).remove(u'&');
        cmbInput[i]->setAccessibleName(name);
        cmbInput[i]->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        cmbInput[i]->setMinimumContentsLength(30);
        if (i != Where) {
            cmbInput[i]->setEditable(true);
            cmbInput[i]->lineEdit()->setAccessibleName(name);
            cmbInput[i]->setInsertPolicy(QComboBox::NoInsert);
            cmbInput[i]->setCompleter(nullptr);
        }
        connect(cmbInput[i], &QComboBox::editTextChanged, this, [this] { inputChanged("frmSearch cmbInput_Change"); });
        connect(cmbInput[i], &QComboBox::currentIndexChanged, this,
                [this] { inputChanged("frmSearch cmbInput_Click"); });
        grid->addWidget(lblInput[i], row, 0);
        grid->addWidget(cmbInput[i], row, 1);
    }
    for (std::size_t i = 0; i < chkInput.size(); ++i, ++row) {
        chkInput[i] = new QCheckBox(checks[i]);
        chkInput[i]->setObjectName(u"chkInput%1"_s.arg(i));
        connect(chkInput[i], &QCheckBox::toggled, this, [this] { inputChanged("frmSearch chkInput_Click"); });
        grid->addWidget(chkInput[i], row, 1);
    }
    auto *line = new QHBoxLayout;
    line->addStretch();
    for (std::size_t i = 0; i < cmdInput.size(); ++i) {
        cmdInput[i] = new QPushButton(buttons[i]);
        cmdInput[i]->setObjectName(u"cmdInput%1"_s.arg(i));
        cmdInput[i]->setAutoDefault(false);
        connect(cmdInput[i], &QPushButton::clicked, this, [this, i] { cmdInput_Click(static_cast<Button>(i)); });
        line->addWidget(cmdInput[i]);
    }
    cmdInput[Find]->setDefault(true);
    grid->addLayout(line, row, 0, 1, 2);
    grid->setRowStretch(row, 1);
}

void frmSearch::Form_Load()
{
    m_loading = true;
    for (QWidget *part : std::initializer_list<QWidget *>{cmbInput[Replacement], lblInput[Replacement],
                                                          cmdInput[Replace], cmdInput[ReplaceAll]})
        part->setVisible(m_isReplacing);
    LoadFindAndReplaceLists();
    cmbInput[Where]->clear();
    for (const QLatin1StringView scope : scopes)
        cmbInput[Where]->addItem(scope);
    chkInput[MatchCase]->setChecked(g_bSearchMatchCase);
    chkInput[WholeWord]->setChecked(g_bSearchWholeWord);
    chkInput[Backwards]->setChecked(g_bSearchBackwards);
    cmbInput[Expression]->setEditText(g_sSearchFind);
    cmbInput[Replacement]->setEditText(g_sSearchReplace);
    cmbInput[Where]->setCurrentIndex(cmbInput[Where]->findText(g_sSearchWhere));
    cmbInput[Expression]->lineEdit()->selectAll();
    EnableControls();
    m_loading = false;
}

void frmSearch::LoadFindAndReplaceLists()
{
    procedure("frmSearch LoadFindAndReplaceLists", [&] {
        for (auto [history, list] :
             {std::pair(&g_hisFind, cmbInput[Expression]), std::pair(&g_hisReplace, cmbInput[Replacement])}) {
            list->clear();
            history->Load(*searchPorts().settings);
            bool atEnd = false;
            for (QString entry = history->FirstEntry(atEnd); !atEnd; entry = history->NextEntry(atEnd))
                list->addItem(entry);
        }
    });
}

void frmSearch::ApplySettings()
{
    procedure("frmSearch ApplySettings", [&] {
        g_bSearchMatchCase = chkInput[MatchCase]->isChecked();
        g_bSearchWholeWord = chkInput[WholeWord]->isChecked();
        g_bSearchBackwards = chkInput[Backwards]->isChecked();
        g_sSearchFind = withoutOuterBlanks(cmbInput[Expression]->currentText());
        g_sSearchReplace = withoutOuterBlanks(cmbInput[Replacement]->currentText());
        g_sSearchWhere = withoutOuterBlanks(cmbInput[Where]->currentText());
        g_sSearchScope = QString::number(cmbInput[Where]->currentIndex());
    });
}

void frmSearch::EnableControls()
{
    procedure("frmSearch EnableControls", [&] {
        // What was selected in the text when the dialog came may be blanks alone.
        cmdInput[Find]->setEnabled(!withoutOuterBlanks(g_sSearchFind).isEmpty() && !g_sSearchWhere.isEmpty());
        cmdInput[Replace]->setEnabled(false);
        cmdInput[ReplaceAll]->setEnabled(m_isReplacing && !g_sSearchReplace.isEmpty() &&
                                         !modSearch::replacementHoldsExpression());
    });
}

void frmSearch::inputChanged(const char *name)
{
    if (m_loading)
        return;
    procedure(name, [this] {
        ApplySettings();
        EnableControls();
    });
}

void frmSearch::cmdInput_Click(Button index)
{
    // A button that has the keyboard loses it by being disabled, to the one behind it.
    const QPointer<QWidget> focused = focusWidget();
    procedure("frmSearch cmdInput_Click", [&] {
        const HourglassPointer hourglass;
        cmdInput[index]->setEnabled(false);
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        ApplySettings();
        g_hisFind.Store(g_sSearchFind);
        if (!g_sSearchReplace.isEmpty()) {
            g_hisReplace.Store(g_sSearchReplace);
            m_hasReplacement = true;
        }
        switch (index) {
        case Find:
            find();
            break;
        case Replace:
            modSearch::SearchPerformReplace();
            break;
        case ReplaceAll:
            modSearch::SearchReplaceAll();
            break;
        case Close:
            g_hisFind.Save(*searchPorts().settings);
            // Without anything new the list would only be written with one more blank row at its head.
            if (m_hasReplacement)
                g_hisReplace.Save(*searchPorts().settings);
            accept();
            return;
        }
        if (index != Find) {
            cmdInput[Replace]->setEnabled(false);
            cmdInput[ReplaceAll]->setEnabled(false);
        }
    });
    QWidget *wanted = focused && focused->isEnabled() ? focused.data() : cmdInput[Find];
    if (wanted != focusWidget())
        wanted->setFocus();
}

void frmSearch::find()
{
    cmdInput[Replace]->setEnabled(false);
    cmdInput[ReplaceAll]->setEnabled(false);
    searchPorts().saveSettings();
    const bool found = modSearch::SearchPerform();
    EnableControls();
    if (m_isReplacing && found)
        cmdInput[Replace]->setEnabled(!modSearch::replacementHoldsExpression());
    cmdInput[Find]->setEnabled(true);
    moveOff(matchOnScreen());
}

void frmSearch::moveOff(const QRect &match)
{
    const QRect own = frameGeometry();
    if (match.isNull() || !own.intersects(match) || !screen())
        return;
    constexpr int gap = 12;
    const QRect area = screen()->availableGeometry();
    const int below = match.bottom() + gap;
    const int above = match.top() - gap - own.height();
    const int y = below + own.height() <= area.bottom() ? below : above >= area.top() ? above : -1;
    if (y >= 0) {
        move(own.left(), y);
        return;
    }
    // Beside it, where the screen is too low.
    const int right = match.right() + gap;
    move(right + own.width() <= area.right() ? right : std::max(area.left(), match.left() - gap - own.width()),
         own.top());
}

void frmSearch::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    // Before anything is found it is the text that is looked for.
    if (const Document *document = DocumentActive(); document && !event->spontaneous())
        moveOff(document->view()->txtRTF.SelectionOnScreen());
}

void frmSearch::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier)
        cmdInput_Click(Close);
    else
        QDialog::keyPressEvent(event);
}
