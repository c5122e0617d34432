// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/frmDebug.h"

#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/Ports.h"
#include "document/TextPane.h"
#include "util/Procedure.h"

#include <QApplication>
#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

// Nothing for a selection that mixes sizes.
QString sizeText(std::optional<double> points)
{
    return points ? QString::number(*points) : QString();
}

QString details(const Document &document)
{
    const TextPane &pane = document.view()->txtRTF;
    QStringList lines{QString::fromLatin1(pane.TextRTF()), u"Font name "_s + pane.Font().family(),
                      u"Font size "_s + sizeText(pane.Font().pointSizeF()),
                      u"Selected font name "_s + pane.SelFontName().value_or(QString()),
                      u"Selected font size "_s + sizeText(pane.SelFontSize())};
    if (const Entry *entry = document.tree.selected()) {
        lines.append(u"Index "_s + QString::number(document.tree.collection().indexOf(entry)));
        lines.append(u"Key "_s + document.tree.key(entry));
    }
    return lines.join(u"\r\n"_s);
}

} // namespace

frmDebug::frmDebug(QWidget *parent)
    : QDialog(parent)
    , m_details(new QPlainTextEdit)
{
    setObjectName(u"frmDebug"_s);
    setWindowTitle(u"Diagnostics"_s);
    setSizeGripEnabled(true);
    m_details->setObjectName(u"txtDetails"_s);
    m_details->setAccessibleName(windowTitle());
    m_details->setReadOnly(true);
    // The caret, which a read-only text does not have by itself, lets the keyboard select what is to be copied.
    m_details->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_details->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));

    auto *cmdInput = new QPushButton(u"&Close"_s);
    cmdInput->setObjectName(u"cmdInput"_s);
    cmdInput->setDefault(true);
    connect(cmdInput, &QPushButton::clicked, this, &frmDebug::cmdInput_Click);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_details);
    layout->addWidget(cmdInput, 0, Qt::AlignRight);
    const QFontMetrics metrics(m_details->font());
    resize(metrics.horizontalAdvance(u'0') * 80, metrics.lineSpacing() * 24);
    procedure("frmDebug Form_Load", [this] { Form_Load(); });
}

void frmDebug::showModally()
{
    frmDebug(QApplication::activeWindow()).exec();
}

void frmDebug::Form_Load()
{
    ShowDetails();
}

void frmDebug::ShowDetails()
{
    procedure("frmDebug ShowDetails", [this] {
        const Document *document = DocumentActive();
        m_details->setPlainText(document ? details(*document) : QString());
    });
}

void frmDebug::cmdInput_Click()
{
    procedure("frmDebug cmdInput_Click", [this] { accept(); });
}
