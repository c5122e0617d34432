// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/DesktopClipboard.h"

#include <QClipboard>
#include <QGuiApplication>

using namespace Qt::StringLiterals;

QString DesktopClipboard::text() const
{
    QString text = QGuiApplication::clipboard()->text();
    return text.replace("\r\n"_L1, "\n"_L1).replace(u'\r', u'\n').replace(u'\n', "\r\n"_L1);
}

void DesktopClipboard::setText(const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
}
