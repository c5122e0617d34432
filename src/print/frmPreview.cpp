// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "print/frmPreview.h"

#include "document/Document.h"
#include "document/TextPane.h"
#include "pages/PagedText.h"
#include "print/PreviewPane.h"
#include "print/PrintProgress.h"
#include "print/PrintRTF.h"
#include "print/PrinterDialogs.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"

#include <QLabel>
#include <QPrinter>
#include <QPushButton>
#include <QScreen>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// Disabling the control with the focus moves it on; it comes back, also into a window that is not active then.
class Disabled
{
public:
    explicit Disabled(QWidget &control)
        : m_control(control)
        , m_hadFocus(control.window()->focusWidget() == &control)
    {
        m_control.setEnabled(false);
    }

    ~Disabled()
    {
        m_control.setEnabled(true);
        if (m_hadFocus)
            m_control.setFocus();
    }

    Disabled(const Disabled &) = delete;
    Disabled &operator=(const Disabled &) = delete;

private:
    QWidget &m_control;
    bool m_hadFocus;
};

} // namespace

frmPreview::frmPreview(const PrintExtent &extent, QPrinter &printer, PrinterDialogs &dialogs, QWidget *parent)
    : QDialog(parent)
    , m_extent(extent)
    , m_printer(printer)
    , m_dialogs(dialogs)
{
    setObjectName(u"frmPreview"_s);
    setWindowTitle(u"Print Preview"_s);
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    makeControls();
    procedure("frmPreview Form_Load", [this] { Form_Load(); });
}

void frmPreview::makeControls()
{
    txtDisplay = new PreviewPane(this);
    txtDisplay->setObjectName(u"txtDisplay"_s);
    txtDisplay->setAccessibleName(u"Pages"_s);
    connect(txtDisplay, &PreviewPane::changed, this, &frmPreview::showPlace);
    lblPlace = new QLabel(this);
    lblPlace->setObjectName(u"lblPlace"_s);
    const QString captions[] = {u"&Print"_s, u"&Close"_s};
    for (std::size_t i = 0; i < cmdInput.size(); ++i) {
        cmdInput[i] = new QPushButton(captions[i], this);
        cmdInput[i]->setObjectName(u"cmdInput%1"_s.arg(i));
        // A click leaves the focus to the pages.
        cmdInput[i]->setFocusPolicy(Qt::TabFocus);
        connect(cmdInput[i], &QPushButton::clicked, this, [this, i] { cmdInput_Click(static_cast<Button>(i)); });
    }
    cmdInput[Print]->setDefault(true);
    // Keys scroll at once.
    txtDisplay->setFocus();
}

void frmPreview::Form_Load()
{
    constexpr qint32 inch = 1440;
    m_margins = {inch, inch, inch, inch};
    PreviewNodeAll();
    layOutForPrinter();
    constexpr QSize wanted(900, 1000);
    resize(screen() ? wanted.boundedTo(screen()->availableSize() * 9 / 10) : wanted);
}

void frmPreview::PreviewNodeAll()
{
    procedure("frmPreview PreviewNodeAll", [this] { txtFormat.emplace(m_extent, m_extent.document->baseFont()); });
}

// The printer may be another one than before, with other paper.
void frmPreview::layOutForPrinter()
{
    txtDisplay->setLeastLineWidth(WYSIWYG_RTF(*txtDisplay, m_margins.left, m_margins.right));
}

// Makes the pane break lines and pages as the printer does. The answer is what a line's width is at least when shown.
qint32 frmPreview::WYSIWYG_RTF(PreviewPane &control, qint32 left, qint32 right)
{
    return procedure("frmPreview WYSIWYG_RTF", [&] {
        const PrinterPaper paper = paperOf(m_printer);
        const PrintRectangle place = drawingRectangle(paper, {left, m_margins.top, right, m_margins.bottom});
        PreviewPane::Paper sheet;
        sheet.size = QSizeF(devicePixels(m_printer, paper.width), devicePixels(m_printer, paper.height));
        sheet.text = devicePixels(m_printer, place)
                         .translated(devicePixels(m_printer, paper.offsetX), devicePixels(m_printer, paper.offsetY));
        sheet.dotsPerInch = m_printer.resolution();
        if (sheet != m_sheet)
            control.setText(std::make_unique<PagedText>(txtFormat.value(), m_printer, sheet.text.size()), sheet);
        m_sheet = sheet;
        return leastShownWidth(place.right - place.left);
    });
}

int frmPreview::exec()
{
    return Form_Activate() ? QDialog::exec() : int(Rejected);
}

// Whether there is still something to show.
bool frmPreview::Form_Activate()
{
    return procedure("frmPreview Form_Activate", [this] {
        if (m_bCloseAtOnce)
            return false;
        if (m_bPrintAtOnce)
            PrintCopies();
        return !m_bPrintAtOnce;
    });
}

void frmPreview::resizeEvent(QResizeEvent *event)
{
    QDialog::resizeEvent(event);
    Form_Resize();
}

void frmPreview::Form_Resize()
{
    procedure("frmPreview Form_Resize", [this] {
        const double W = width();
        const double H = height();
        const auto put = [&](QWidget &control, double left, double top, double wide, double high) {
            control.setGeometry(qRound(left * W), qRound(top * H), qRound(wide * W), qRound(high * H));
        };
        put(*txtDisplay, 0.01, 0.01, 0.98, 0.9);
        put(*lblPlace, 0.01, 0.92, 0.58, 0.08);
        put(*cmdInput[Print], 0.61, 0.92, 0.18, 0.08);
        put(*cmdInput[Close], 0.81, 0.92, 0.18, 0.08);
    });
}

void frmPreview::showPlace()
{
    const QString count = QString::number(txtDisplay->pageCount());
    const QString text =
        u"Page %1 of %2"_s.arg(txtDisplay->currentPage() + 1).arg(txtDisplay->isWhole() ? count : count + u"..."_s);
    lblPlace->setText(text);
    txtDisplay->setAccessibleDescription(text);
}

void frmPreview::cmdInput_Click(Button index)
{
    procedure("frmPreview cmdInput_Click", [&] {
        if (index == Print)
            ChoosePrinterAndPrintCopies();
        else
            reject();
    });
}

void frmPreview::ChoosePrinterAndPrintCopies()
{
    procedure("frmPreview ChoosePrinterAndPrintCopies", [this] {
        {
            // The pane's pages are measured on the printer that is being chosen.
            const Disabled pane(*txtDisplay);
            if (!m_dialogs.choose(m_printer, m_sFile, this))
                throw RunTimeError(ErrorNumber::Cancelled);
        }
        PrintCopies();
        layOutForPrinter();
    });
}

void frmPreview::PrintCopies()
{
    procedure("frmPreview PrintCopies", [this] {
        PrintProgress progress(isVisible() ? this : parentWidget());
        progress.show();
        // The first pages of a long text take their time.
        progress.goOn();
        const Disabled pane(*txtDisplay);
        const auto goesOn = [&progress] { return progress.goOn(); };
        tellOutcome(PrintRTF(txtFormat.value(), m_printer, m_margins, goesOn));
    });
}

// The document's own notice outlasts the label that is shown when its window becomes active again.
void frmPreview::tellOutcome(PrintOutcome outcome)
{
    Document &document = *m_extent.document;
    const QString failure = u"The document %1 could not be printed"_s.arg(m_printer.docName());
    if (outcome == PrintOutcome::Failed)
        document.note(failure);
    else if (outcome == PrintOutcome::Printed && document.noted() == failure)
        document.unsay();
}
