// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/DesktopClipboard.h"

#include "platform/PastedPicture.h"
#include "platform/RichTextMime.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

using namespace Qt::StringLiterals;

void DesktopClipboard::clear()
{
    QGuiApplication::clipboard()->clear();
}

QByteArray DesktopClipboard::richText() const
{
    const QMimeData *held = QGuiApplication::clipboard()->mimeData();
    return held ? RichTextMime::textOf(*held) : QByteArray();
}

void DesktopClipboard::setRichText(const QByteArray &rtf)
{
    auto *data = new QMimeData;
    data->setData(RichTextMime::written, rtf);
    QGuiApplication::clipboard()->setMimeData(data);
}

QString DesktopClipboard::text() const
{
    QString text = QGuiApplication::clipboard()->text();
    return text.replace("\r\n"_L1, "\n"_L1).replace(u'\r', u'\n').replace(u'\n', "\r\n"_L1);
}

void DesktopClipboard::setText(const QString &text)
{
    QGuiApplication::clipboard()->setText(QString(text).replace("\r\n"_L1, "\n"_L1));
}

QByteArray DesktopClipboard::picture() const
{
    const QMimeData *held = QGuiApplication::clipboard()->mimeData();
    return held ? PastedPicture::fileIn(*held) : QByteArray();
}
