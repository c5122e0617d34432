// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "print/PrintProgress.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

PrintProgress::PrintProgress(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(u"frmPrinting"_s);
    setWindowTitle(u"Print"_s);
    setWindowModality(Qt::ApplicationModal);
    constexpr int margin = 24;
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin / 2);
    auto *label = new QLabel(u"Printing - please wait..."_s);
    label->setObjectName(u"lblPrinting"_s);
    column->addWidget(label);
    column->addSpacing(margin / 2);
    auto *line = new QHBoxLayout;
    line->addStretch();
    auto *cancel = new QPushButton(u"Cancel"_s);
    cancel->setObjectName(u"cmdCancel"_s);
    connect(cancel, &QPushButton::clicked, this, &PrintProgress::reject);
    line->addWidget(cancel);
    line->addStretch();
    column->addLayout(line);
    setAccessibleName(label->text());
}

bool PrintProgress::goOn()
{
    QCoreApplication::processEvents();
    return !m_cancelled;
}

// Escape, the button and the window's own close button all come here. The window stays until the printing has stopped.
void PrintProgress::reject()
{
    m_cancelled = true;
}
