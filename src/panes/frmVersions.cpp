// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "panes/frmVersions.h"

#include "document/Document.h"
#include "document/Ports.h"
#include "document/modDoc.h"
#include "formats/PlainText.h"
#include "model/Contrast.h"
#include "panes/ScrolledTogether.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"
#include "vault/TextComparison.h"

#include <QEvent>
#include <QFileInfo>
#include <QGridLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QTextEdit>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace
{

// A text beside another one; of a very long one the beginning.
QString readableForm(const QByteArray &storedText)
{
    constexpr qsizetype mostCharacters = 100'000;
    try {
        return plainTextOf(storedText).left(mostCharacters);
    } catch (const RunTimeError &) {
        return u"This text is too long to be shown here."_s;
    }
}

QWidget *withCaption(QLabel *label, QWidget *content)
{
    auto *box = new QWidget;
    auto *layout = new QVBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    label->setBuddy(content);
    layout->addWidget(label);
    layout->addWidget(content);
    return box;
}

// What is not there any more is struck out, what is new is underlined: the colour behind it, which the colours of the
// desktop let through as far as the words stay readable, says the same once more.
QTextCharFormat markOf(const QPalette &palette, bool isNew)
{
    const QColor paper = palette.color(QPalette::Base);
    const QColor ink = palette.color(QPalette::Text);
    const QColor hue = isNew ? QColor(0, 160, 60) : QColor(220, 40, 40);
    constexpr double mostHue = 0.45;
    constexpr double step = 0.05;
    double share = mostHue;
    while (share > step && Contrast::between(Contrast::mixed(paper, hue, share), ink) < Contrast::readable)
        share -= step;
    QTextCharFormat format;
    format.setBackground(Contrast::mixed(paper, hue, share));
    format.setForeground(ink);
    format.setFontUnderline(isNew);
    format.setFontStrikeOut(!isNew);
    return format;
}

void mark(QPlainTextEdit &text, const UnmatchedWords &unmatched, bool isNew)
{
    const QTextCharFormat format = markOf(text.palette(), isNew);
    QList<QTextEdit::ExtraSelection> marks;
    for (const TextStretch &stretch : unmatched.stretches) {
        QTextCursor words(text.document());
        words.setPosition(static_cast<int>(stretch.start));
        words.setPosition(static_cast<int>(stretch.start + stretch.length), QTextCursor::KeepAnchor);
        marks.append({words, format});
    }
    text.setExtraSelections(marks);
}

// A text that is longer than its room is shown where it differs first.
void showFirst(QPlainTextEdit &text, const UnmatchedWords &unmatched)
{
    if (unmatched.stretches.empty())
        return;
    QTextCursor first(text.document());
    first.setPosition(static_cast<int>(unmatched.stretches.front().start));
    text.setTextCursor(first);
    text.centerCursor();
}

QString inWords(const UnmatchedWords &unmatched, const QString &what)
{
    return unmatched.words == 1  ? u" (1 word %1)"_s.arg(what)
           : unmatched.words > 1 ? u" (%1 words %2)"_s.arg(QLocale::system().toString(unmatched.words), what)
                                 : QString();
}

} // namespace

frmVersions::frmVersions(VersionKeeper &keeper, Document &document, QWidget *parent)
    : QDialog(parent)
    , m_keeper(keeper)
    , m_document(document)
    , m_state(new QLabel)
    , m_lstVersions(makeTable(m_versions, u"lstVersions"_s, u"Versions of the document"_s))
    , m_lstDifferences(makeTable(m_differences, u"lstDifferences"_s, u"Entries that are different now"_s))
    , m_txtThen(makeText(u"txtThen"_s, u"Text of the version"_s))
    , m_txtNow(makeText(u"txtNow"_s, u"Text now"_s))
    , m_lblThen(new QLabel)
    , m_lblNow(new QLabel)
    , m_together(new ScrolledTogether(*m_txtThen, *m_txtNow))
    , m_cmdOpen(makeButton(u"cmdOpen"_s, u"&Open"_s, &frmVersions::openVersion))
    , m_cmdAll(makeButton(u"cmdAll"_s, u"Bring back &all"_s, &frmVersions::bringBackAll))
    , m_cmdBranch(makeButton(u"cmdBranch"_s, u"Bring back &branch"_s, &frmVersions::bringBackBranch))
    , m_cmdText(makeButton(u"cmdText"_s, u"Bring back &text"_s, &frmVersions::bringBackText))
{
    setObjectName(u"frmVersions"_s);
    setWindowTitle(document.m_sFile.isEmpty() ? u"Versions"_s
                                              : u"Versions of "_s + QFileInfo(document.m_sFile).fileName());
    setSizeGripEnabled(true);
    m_state->setObjectName(u"lblState"_s);
    m_state->setWordWrap(true);
    layOut();
    connect(m_lstVersions->selectionModel(), &QItemSelectionModel::currentRowChanged, this, &frmVersions::readVersion);
    connect(m_lstDifferences->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &frmVersions::showDifference);
    connect(m_lstVersions, &QTreeView::activated, this, &frmVersions::openVersion);
    enableButtons();
    if (document.m_sFile.isEmpty()) {
        say(u"This document has no file yet. Each save will keep a version of it."_s);
        return;
    }
    say(u"The versions are being looked up\u2026"_s);
    keeper.list(document.m_sFile, this, [this](const VersionKeeper::Listed &listed) { takeList(listed); });
}

frmVersions::~frmVersions() = default;

QTreeView *frmVersions::makeTable(QAbstractItemModel &model, const QString &name, const QString &spoken)
{
    auto *table = new QTreeView;
    table->setObjectName(name);
    table->setAccessibleName(spoken);
    table->setModel(&model);
    table->setRootIsDecorated(false);
    table->setUniformRowHeights(true);
    table->setAllColumnsShowFocus(true);
    table->setTabKeyNavigation(false);
    return table;
}

QPlainTextEdit *frmVersions::makeText(const QString &name, const QString &spoken)
{
    auto *text = new QPlainTextEdit;
    text->setObjectName(name);
    text->setAccessibleName(spoken);
    text->setReadOnly(true);
    text->setTabChangesFocus(true);
    // The caret, which a read-only text does not have by itself, lets the keyboard select what is to be copied.
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return text;
}

QPushButton *frmVersions::makeButton(const QString &name, const QString &caption, void (frmVersions::*run)())
{
    auto *button = new QPushButton(caption);
    button->setObjectName(name);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this,
            [this, run] { procedure("frmVersions clicked", [this, run] { (this->*run)(); }); });
    return button;
}

void frmVersions::layOut()
{
    auto *texts = new QSplitter(Qt::Horizontal);
    m_lblThen->setObjectName(u"lblThen"_s);
    m_lblNow->setObjectName(u"lblNow"_s);
    texts->addWidget(withCaption(m_lblThen, m_txtThen));
    texts->addWidget(withCaption(m_lblNow, m_txtNow));
    auto *all = new QSplitter(Qt::Vertical);
    all->addWidget(withCaption(new QLabel(u"&Versions"_s), m_lstVersions));
    all->addWidget(withCaption(new QLabel(u"&Different now"_s), m_lstDifferences));
    all->addWidget(texts);
    all->setChildrenCollapsible(false);
    texts->setChildrenCollapsible(false);

    auto *cmdClose = new QPushButton(u"&Close"_s);
    cmdClose->setObjectName(u"cmdClose"_s);
    cmdClose->setAutoDefault(false);
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::reject);
    auto *buttons = new QHBoxLayout;
    for (QPushButton *button : {m_cmdOpen, m_cmdAll, m_cmdBranch, m_cmdText})
        buttons->addWidget(button);
    buttons->addStretch();
    buttons->addWidget(cmdClose);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(all, 1);
    layout->addWidget(m_state);
    layout->addLayout(buttons);

    constexpr int columns = 110;
    constexpr int lines = 38;
    const QSize wanted(fontMetrics().averageCharWidth() * columns, fontMetrics().lineSpacing() * lines);
    // The desktop puts a frame around it.
    constexpr double mostOfScreen = 0.9;
    resize(wanted.boundedTo(screen()->availableSize() * mostOfScreen));
    for (QTreeView *table : {m_lstVersions, m_lstDifferences})
        table->header()->setSectionResizeMode(QHeaderView::Interactive);
    m_lstDifferences->header()->resizeSection(0, fontMetrics().averageCharWidth() * columns / 2);
}

void frmVersions::say(const QString &text)
{
    m_state->setText(text);
    m_state->setAccessibleName(text);
}

void frmVersions::takeList(const VersionKeeper::Listed &listed)
{
    m_versions.setVersions(listed.versions);
    for (int column = 0; column < m_versions.columnCount(); ++column)
        m_lstVersions->resizeColumnToContents(column);
    if (!listed.failure.isEmpty())
        say(u"The versions could not be read: %1."_s.arg(listed.failure));
    else if (listed.versions.empty())
        say(u"No version of this document has been kept yet. Each save keeps one."_s);
    else
        m_lstVersions->setCurrentIndex(m_versions.index(0, 0));
    m_lstVersions->setFocus();
}

void frmVersions::readVersion()
{
    const int row = m_lstVersions->currentIndex().row();
    m_version.reset();
    compare();
    ++m_asked;
    if (row < 0)
        return;
    say(u"The version is being read\u2026"_s);
    m_keeper.read(m_document.m_sFile, m_versions.version(row).number, this,
                  [this, asked = m_asked](const VersionKeeper::Read &read) {
                      if (asked == m_asked)
                          takeVersion(read);
                  });
}

void frmVersions::takeVersion(const VersionKeeper::Read &read)
{
    if (!read.failure.isEmpty()) {
        say(u"The version could not be read: %1."_s.arg(read.failure));
        return;
    }
    m_version = read.outline;
    procedure("frmVersions compare", [this] { compare(); });
}

// Compares the version with what the document is now.
void frmVersions::compare()
{
    m_differences.setCompared(nullptr);
    m_compared.reset();
    if (m_version) {
        const HourglassPointer hourglass;
        m_compared = std::make_unique<ComparedVersion>(m_document, *m_version);
        m_differences.setCompared(m_compared.get());
        say(m_compared->isSame() ? u"The document is what this version is."_s
            : m_compared->differences().empty()
                ? u"Every entry is what it was; only fonts, or what the file says beside the entries, are different."_s
                : u"Entries that are different now: %1."_s.arg(inWords(countsOf(m_compared->differences()))));
        m_lstDifferences->setCurrentIndex(m_differences.index(0, 0));
    }
    showDifference();
}

const EntryDifference *frmVersions::difference() const
{
    const int row = m_lstDifferences->currentIndex().row();
    return m_compared && row >= 0 ? &m_compared->differences()[static_cast<size_t>(row)] : nullptr;
}

void frmVersions::showDifference()
{
    const EntryDifference *shown = difference();
    m_txtThen->setPlainText(shown ? readableForm(m_compared->textThen(*shown)) : QString());
    m_txtNow->setPlainText(shown ? readableForm(m_compared->textNow(*shown)) : QString());
    markWords();
    enableButtons();
}

void frmVersions::markWords()
{
    const TextComparison compared = compareTexts(m_txtThen->toPlainText(), m_txtNow->toPlainText());
    mark(*m_txtThen, compared.before, false);
    mark(*m_txtNow, compared.after, true);
    m_together->setCompared({});
    showFirst(*m_txtThen, compared.before);
    showFirst(*m_txtNow, compared.after);
    m_together->setCompared(compared);
    const EntryDifference *shown = difference();
    const bool isSame = compared.before.stretches.empty() && compared.after.stretches.empty();
    const bool looksDifferent = shown && shown->hasOtherText && isSame;
    m_lblThen->setText(u"Text t&hen"_s + inWords(compared.before, u"gone since"_s));
    m_lblNow->setText(u"Text &now"_s + (looksDifferent ? u" (the same words, formatted differently)"_s
                                                       : inWords(compared.after, u"new"_s)));
    m_txtThen->setAccessibleName(m_lblThen->text().remove(u'&'));
    m_txtNow->setAccessibleName(m_lblNow->text().remove(u'&'));
}

void frmVersions::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    // The texts get their colours after the dialog does.
    if (event->type() == QEvent::PaletteChange)
        QMetaObject::invokeMethod(this, &frmVersions::markWords, Qt::QueuedConnection);
}

void frmVersions::enableButtons()
{
    const EntryDifference *shown = difference();
    const bool mayChange = !m_document.bReadOnly();
    m_cmdOpen->setEnabled(m_version.has_value());
    m_cmdAll->setEnabled(mayChange && m_compared && !m_compared->isSame());
    m_cmdBranch->setEnabled(mayChange && shown && m_compared->canBringBackBranch(*shown));
    m_cmdText->setEnabled(mayChange && shown && m_compared->canBringBackText(*shown));
}

QString frmVersions::versionTime() const
{
    return shownTime(m_versions.version(m_lstVersions->currentIndex().row()).time);
}

void frmVersions::bringBackAll()
{
    m_compared->bringBackAll(versionTime());
    compare();
}

void frmVersions::bringBackBranch()
{
    const EntryDifference chosen = *difference();
    m_compared->bringBackBranch(chosen);
    compare();
}

void frmVersions::bringBackText()
{
    const EntryDifference chosen = *difference();
    m_compared->bringBackText(chosen);
    compare();
}

void frmVersions::openVersion()
{
    if (!m_version)
        return;
    const QString caption = u"%1 as of %2 (read-only)"_s.arg(QFileInfo(m_document.m_sFile).fileName(), versionTime());
    modDoc::openForReading(outlineOf(*m_version), caption);
    accept();
}
