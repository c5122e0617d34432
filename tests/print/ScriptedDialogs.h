// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "print/PrinterDialogs.h"

#include <QPointer>
#include <QPrinter>
#include <QWidget>

#include <functional>

// Answers as the test says.
class ScriptedDialogs final : public PrinterDialogs
{
public:
    bool choose(QPrinter &printer, const QString &file, QWidget *parent) override
    {
        ++timesChosen;
        lastParent = parent;
        proposedFile = printer.outputFileName().isEmpty() ? file : printer.outputFileName();
        jobName = printer.docName();
        if (answer && onChoose)
            onChoose(printer);
        return answer;
    }

    bool setUp(QPrinter &printer, QWidget *) override
    {
        if (answer && onSetUp)
            onSetUp(printer);
        return answer;
    }

    bool answer = true;
    std::function<void(QPrinter &)> onChoose;
    std::function<void(QPrinter &)> onSetUp;
    int timesChosen = 0;
    QPointer<QWidget> lastParent;
    QString proposedFile;
    QString jobName;
};
