// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "window/modView.h"

#include "window/frmDocument.h"
#include "window/modSplit.h"

#include "platform/OutlineWidth.h"
#include "platform/RichTextBox.h"
#include "platform/TreeView.h"

#include "document/DocumentView.h"
#include "document/Globals.h"
#include "document/Ports.h"

#include "util/Procedure.h"

#include <QStyle>

#include <cmath>

namespace
{

constexpr float fittingStep = 100;

frmDocument *activeForm()
{
    Document *document = DocumentActive();
    return document ? dynamic_cast<frmDocument *>(&document->view()->window) : nullptr;
}

// Runs a routine on the active document window, if there is one.
template <typename Body>
void onActiveForm(const char *name, Body &&body)
{
    procedure(name, [&] {
        if (frmDocument *form = activeForm())
            body(*form);
    });
}

void toggle(const char *name, bool Options::*option)
{
    procedure(name, [&] { g_options.*option = !(g_options.*option); });
}

// The outline's width that needs no horizontal scroll bar, in pixels.
int neededWidth(const frmDocument &form)
{
    TreeView &view = *form.treeView;
    OutlineWidth &width = *form.outlineWidth;
    const int frame = 2 * view.frameWidth();
    const bool scrolls =
        width.visibleRows() * view.sizeHintForIndex(view.model()->index(0, 0)).height() > view.height() - frame;
    const int bar = scrolls ? view.style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, &view) : 0;
    return width.widestRow() + frame + bar;
}

void fitSplit(frmDocument &form)
{
    const int needed = neededWidth(form);
    const float steps = std::ceil((form.toTwips(needed) - modSplit::minimumPaneWidth) / fittingStep);
    float position = modSplit::minimumPaneWidth + std::max(steps, 0.F) * fittingStep;
    // A step less may do as well: a pane is as many whole pixels wide as are nearest to its twips.
    if (steps > 0 && form.toPixels(position - fittingStep) >= needed)
        position -= fittingStep;
    modSplit::SplitSizeControls(form, position);
}

} // namespace

namespace modView
{

void ViewInitialise(frmDocument &form)
{
    procedure("modView ViewInitialise",
              [&] { modSplit::SplitSizeControls(form, (form.Width() - modSplit::rightHandAllowance) / 3); });
}

void ViewGoToOutline()
{
    onActiveForm("modView ViewGoToOutline", [](frmDocument &form) { form.treeView->setFocus(); });
}

void ViewGoToText()
{
    onActiveForm("modView ViewGoToText", [](frmDocument &form) { form.textBox->setFocus(); });
}

void ViewMaximiseLeft()
{
    onActiveForm("modView ViewMaximiseLeft",
                 [](frmDocument &form) { modSplit::SplitSizeControls(form, form.Width()); });
}

void ViewMaximiseRight()
{
    onActiveForm("modView ViewMaximiseRight", [](frmDocument &form) { modSplit::SplitSizeControls(form, 0); });
}

void ViewEqualiseLeftAndRight()
{
    onActiveForm("modView ViewEqualiseLeftAndRight", [](frmDocument &form) {
        modSplit::SplitSizeControls(form, (form.Width() - modSplit::rightHandAllowance) / 2);
    });
}

void ViewFitSplit()
{
    onActiveForm("modView ViewFitSplit", [](frmDocument &form) {
        form.treeView->setFocus();
        fitSplit(form);
    });
}

void ViewMoveSplit()
{
    onActiveForm("modView ViewMoveSplit", [](frmDocument &form) { modSplit::SplitMoveStart(form); });
}

void ViewAutoFitSplit(frmDocument &form)
{
    procedure("modView ViewAutoFitSplit", [&] {
        // Without rows to fit to, the split stays where it is.
        if (!bBusy && g_options.AutoSplit && form.document().tree.root())
            fitSplit(form);
    });
}

void ViewOptionsAutoFitSplit()
{
    toggle("modView ViewOptionsAutoFitSplit", &Options::AutoSplit);
    if (g_options.AutoSplit)
        ViewFitSplit();
}

void ViewOptionsBackupOnSave()
{
    toggle("modView ViewOptionsBackupOnSave", &Options::Backup);
}

void ViewOptionsStartWithNewDoc()
{
    toggle("modView ViewOptionsStartWithNewDoc", &Options::StartWithNewDocument);
}

void ViewOptionsStartWithPrevDocs()
{
    toggle("modView ViewOptionsStartWithPrevDocs", &Options::StartWithLatestDocuments);
}

void ViewOptionsClickToRenameEntry()
{
    toggle("modView ViewOptionsClickToRenameEntry", &Options::AutoLabelEdit);
    for (Document *document : ports().windows->documents())
        document->view()->trvOutline.setLabelEdit(optionalLabelEdit());
}

} // namespace modView
