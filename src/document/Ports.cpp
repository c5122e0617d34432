// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/Ports.h"

#include "document/Document.h"
#include "document/NoPorts.h"

namespace
{

int s_hourglasses = 0;

Dialogs &userDialogs()
{
    return *ports().dialogs;
}

} // namespace

Ports &ports()
{
    static Ports instance = portsOfNobody();
    return instance;
}

Document *DocumentActive()
{
    return ports().windows->activeDocument();
}

FileWitness &followerOfFiles()
{
    return *ports().files;
}

bool userAgrees(const QString &question)
{
    return userDialogs().ask(question) == Answer::Yes;
}

bool userAgrees(const QString &question, Answer preset)
{
    return userDialogs().askPlainly(question, preset) == Answer::Yes;
}

void sayOfActive(const QString &text)
{
    DocumentWindows &windows = *ports().windows;
    if (Document *document = windows.activeDocument())
        document->say(text);
    else
        windows.say(text);
}

HourglassPointer::HourglassPointer()
{
    if (s_hourglasses++ == 0)
        ports().pointer->setHourglass(true);
}

HourglassPointer::~HourglassPointer()
{
    if (--s_hourglasses == 0)
        ports().pointer->setHourglass(false);
}
