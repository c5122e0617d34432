// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/FontDialog.h"

#include "platform/ColourBox.h"
#include "rtf/CharChange.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

#include <cmath>

using namespace Qt::StringLiterals;

namespace
{

constexpr int usualSizes[] = {8, 9, 10, 11, 12, 14, 16, 18, 20, 22, 24, 26, 28, 36, 48, 72};
// The sample is drawn no larger: its frame does not grow.
constexpr double largestSample = 48;

struct Style {
    const char16_t *name;
    bool bold;
    bool italic;
};

constexpr Style styles[] = {
    {u"Regular", false, false}, {u"Italic", false, true}, {u"Bold", true, false}, {u"Bold Italic", true, true}};

// A label with an access key over a control.
void addLabel(QGridLayout &layout, const QString &caption, QWidget *buddy, int column)
{
    auto *label = new QLabel(caption);
    label->setBuddy(buddy);
    layout.addWidget(label, 0, column);
}

QListWidget *makeList(const QString &name, const QString &accessibleName)
{
    auto *list = new QListWidget;
    list->setObjectName(name);
    list->setAccessibleName(accessibleName);
    list->setUniformItemSizes(true);
    return list;
}

// The families by the names that texts use: of two makers' fonts of one name, the system's first.
QStringList familyNames()
{
    QStringList names;
    for (const QString &family : QFontDatabase::families())
        names.append(family.section(u" ["_s, 0, 0));
    names.removeDuplicates();
    return names;
}

QString sizeText(double points)
{
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return locale.toString(points, 'g', 6);
}

Qt::CheckState checkState(const std::optional<bool> &on)
{
    return !on ? Qt::PartiallyChecked : *on ? Qt::Checked : Qt::Unchecked;
}

std::optional<bool> isChecked(const QCheckBox &box)
{
    return box.checkState() == Qt::PartiallyChecked ? std::nullopt : std::optional(box.isChecked());
}

QListWidgetItem *itemOf(const QListWidget &list, const QString &text)
{
    const QList<QListWidgetItem *> found = list.findItems(text, Qt::MatchFixedString);
    return found.isEmpty() ? nullptr : found.first();
}

// Makes an item the current one, or none, without telling anybody.
void showItem(QListWidget &list, QListWidgetItem *item)
{
    const QSignalBlocker quiet(list);
    list.setCurrentItem(item);
    if (item)
        list.scrollToItem(item, QAbstractItemView::PositionAtCenter);
    else
        list.clearSelection();
}

} // namespace

FontDialog::FontDialog(const FontDialogRequest &request, QWidget *parent)
    : QDialog(parent)
    , m_request(request)
{
    setObjectName(u"FontDialog"_s);
    setWindowTitle(u"Font"_s);
    auto *layout = new QGridLayout(this);
    makeNames(*layout);
    makeStyles(*layout);
    makeSizes(*layout);
    if (m_request.effects)
        makeEffects(*layout);
    makeSample(*layout);
    layout->setColumnStretch(0, 3);
    layout->setColumnStretch(1, 2);
    layout->setColumnStretch(2, 1);
    layout->setRowStretch(2, 1);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    m_ok = buttons->button(QDialogButtonBox::Ok);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons, 4, 0, 1, 3);
    showInitial();
    showChoice();
    // The lists would like to be wider than names are.
    resize(minimumSizeHint().expandedTo(QSize(540, 440)));
    m_name->setFocus();
    m_name->selectAll();
}

void FontDialog::makeNames(QGridLayout &layout)
{
    m_name = new QLineEdit;
    m_name->setObjectName(u"fontName"_s);
    m_name->setToolTip(u"Type a part of a name to see the fonts that have it."_s);
    m_name->installEventFilter(this);
    m_names = makeList(u"fontNames"_s, u"Fonts"_s);
    m_names->addItems(familyNames());
    addLabel(layout, u"&Font:"_s, m_name, 0);
    layout.addWidget(m_name, 1, 0);
    layout.addWidget(m_names, 2, 0);
    connect(m_name, &QLineEdit::textEdited, this, &FontDialog::filterNames);
    connect(m_names, &QListWidget::currentTextChanged, this, [this](const QString &name) {
        m_name->setText(name);
        showChoice();
    });
}

void FontDialog::makeStyles(QGridLayout &layout)
{
    m_styles = makeList(u"fontStyles"_s, u"Font style"_s);
    for (const Style &style : styles)
        m_styles->addItem(QString::fromUtf16(style.name));
    addLabel(layout, u"Font st&yle:"_s, m_styles, 1);
    layout.addWidget(m_styles, 1, 1, 2, 1);
    connect(m_styles, &QListWidget::itemSelectionChanged, this, &FontDialog::showChoice);
}

void FontDialog::makeSizes(QGridLayout &layout)
{
    m_size = new QLineEdit;
    m_size->setObjectName(u"fontSize"_s);
    m_size->installEventFilter(this);
    m_sizes = makeList(u"fontSizes"_s, u"Sizes"_s);
    for (const int size : usualSizes)
        m_sizes->addItem(sizeText(size));
    addLabel(layout, u"&Size:"_s, m_size, 2);
    layout.addWidget(m_size, 1, 2);
    layout.addWidget(m_sizes, 2, 2);
    connect(m_size, &QLineEdit::textEdited, this, [this](const QString &typed) {
        showItem(*m_sizes, itemOf(*m_sizes, typed));
        showChoice();
    });
    connect(m_sizes, &QListWidget::currentTextChanged, this, [this](const QString &size) {
        m_size->setText(size);
        showChoice();
    });
}

void FontDialog::makeEffects(QGridLayout &layout)
{
    auto *group = new QGroupBox(u"Effects"_s);
    m_strikeThrough = new QCheckBox(u"Stri&ke out"_s);
    m_strikeThrough->setObjectName(u"fontStrikeThrough"_s);
    m_underline = new QCheckBox(u"&Underline"_s);
    m_underline->setObjectName(u"fontUnderline"_s);
    m_colour = new ColourBox;
    m_colour->setObjectName(u"fontColour"_s);
    auto *colourLabel = new QLabel(u"&Colour:"_s);
    colourLabel->setBuddy(m_colour);
    auto *column = new QVBoxLayout(group);
    for (QWidget *each : std::initializer_list<QWidget *>{m_strikeThrough, m_underline, colourLabel, m_colour})
        column->addWidget(each);
    column->addStretch();
    layout.addWidget(group, 3, 0);
    connect(m_strikeThrough, &QCheckBox::stateChanged, this, &FontDialog::showChoice);
    connect(m_underline, &QCheckBox::stateChanged, this, &FontDialog::showChoice);
    connect(m_colour, &ColourBox::colourChanged, this, &FontDialog::showChoice);
}

void FontDialog::makeSample(QGridLayout &layout)
{
    auto *group = new QGroupBox(u"Sample"_s);
    m_sample = new QLabel(u"AaBbYyZz"_s);
    m_sample->setObjectName(u"fontSample"_s);
    m_sample->setAlignment(Qt::AlignCenter);
    m_sample->setFixedHeight(90);
    // A wide sample is cut off rather than making the dialog grow.
    m_sample->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    m_sample->setAutoFillBackground(true);
    m_sample->setBackgroundRole(QPalette::Base);
    m_sample->setForegroundRole(QPalette::Text);
    (new QVBoxLayout(group))->addWidget(m_sample);
    if (m_request.effects)
        layout.addWidget(group, 3, 1, 1, 2);
    else
        layout.addWidget(group, 3, 0, 1, 3);
}

void FontDialog::showInitial()
{
    const FontAttributes &initial = m_request.initial;
    m_name->setText(initial.name.value_or(QString()));
    showItem(*m_names, itemOf(*m_names, m_name->text()));
    if (initial.size && *initial.size > 0)
        m_size->setText(sizeText(*initial.size));
    showItem(*m_sizes, itemOf(*m_sizes, m_size->text()));
    QListWidgetItem *style = nullptr;
    for (int row = 0; row < m_styles->count(); ++row) {
        if (initial.bold == styles[row].bold && initial.italic == styles[row].italic)
            style = m_styles->item(row);
    }
    showItem(*m_styles, style);
    if (!m_request.effects)
        return;
    m_strikeThrough->setTristate(!initial.strikeThrough);
    m_strikeThrough->setCheckState(checkState(initial.strikeThrough));
    m_underline->setTristate(!initial.underline);
    m_underline->setCheckState(checkState(initial.underline));
    m_colour->setColour(initial.colour);
}

// Leaves the names that hold what was typed, and points to the one that is it or begins with it.
void FontDialog::filterNames(const QString &typed)
{
    QListWidgetItem *best = nullptr;
    int bestRank = 0;
    for (int row = 0; row < m_names->count(); ++row) {
        QListWidgetItem *item = m_names->item(row);
        const QString name = item->text();
        const bool holds = name.contains(typed, Qt::CaseInsensitive);
        item->setHidden(!holds);
        const int rank = !holds || typed.isEmpty()                       ? 0
                         : name.compare(typed, Qt::CaseInsensitive) == 0 ? 3
                         : name.startsWith(typed, Qt::CaseInsensitive)   ? 2
                                                                         : 1;
        if (rank > bestRank) {
            best = item;
            bestRank = rank;
        }
    }
    showItem(*m_names, best);
    showChoice();
}

// The name of the list that is pointed to; a font that this system has not is kept when it was there before.
std::optional<QString> FontDialog::chosenName() const
{
    const QString typed = m_name->text();
    if (const QListWidgetItem *item = m_names->currentItem(); item && item->isSelected())
        return item->text();
    return typed.isEmpty() || typed == m_request.initial.name ? m_request.initial.name : std::nullopt;
}

std::optional<double> FontDialog::chosenSize() const
{
    const QString typed = m_size->text().trimmed();
    // A size that was there before is kept as it is, however odd.
    if (typed.isEmpty() || (m_request.initial.size && typed == sizeText(*m_request.initial.size)))
        return m_request.initial.size;
    bool isNumber = false;
    double points = QLocale().toDouble(typed, &isNumber);
    if (!isNumber)
        points = typed.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(points) || points < rtf::smallestSize || points > rtf::largestSize)
        return std::nullopt;
    return rtf::sizeInHalfPoints(points);
}

bool FontDialog::isAcceptable() const
{
    return (m_name->text().isEmpty() || chosenName()) && (m_size->text().trimmed().isEmpty() || chosenSize());
}

FontAttributes FontDialog::chosen() const
{
    FontAttributes answer = m_request.initial;
    answer.name = chosenName();
    answer.size = chosenSize();
    if (const QList<QListWidgetItem *> selected = m_styles->selectedItems(); !selected.isEmpty()) {
        const Style &style = styles[m_styles->row(selected.first())];
        answer.bold = style.bold;
        answer.italic = style.italic;
    }
    if (m_request.effects) {
        answer.strikeThrough = isChecked(*m_strikeThrough);
        answer.underline = isChecked(*m_underline);
        answer.colour = m_colour->colour();
    }
    return answer;
}

// Follows every choice: the sample, and whether the dialog can be accepted.
void FontDialog::showChoice()
{
    if (!m_ok)
        return;
    const FontAttributes now = chosen();
    QFont font = QDialog::font();
    if (now.name && !now.name->isEmpty())
        font.setFamilies({*now.name});
    if (now.size && *now.size > 0)
        font.setPointSizeF(std::min(*now.size, largestSample));
    font.setBold(now.bold.value_or(false));
    font.setItalic(now.italic.value_or(false));
    font.setUnderline(now.underline.value_or(false));
    font.setStrikeOut(now.strikeThrough.value_or(false));
    m_sample->setFont(font);
    QPalette palette = QDialog::palette();
    if (now.colour && now.colour->isValid())
        palette.setColor(QPalette::Text, *now.colour);
    m_sample->setPalette(palette);
    m_ok->setEnabled(isAcceptable());
}

// The arrow keys of a line go through the list below it.
bool FontDialog::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    auto &key = *static_cast<QKeyEvent *>(event);
    switch (key.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown: {
        QListWidget *list = watched == m_name ? m_names : m_sizes;
        QKeyEvent passedOn(key.type(), key.key(), key.modifiers());
        QCoreApplication::sendEvent(list, &passedOn);
        return true;
    }
    default:
        return QDialog::eventFilter(watched, event);
    }
}
