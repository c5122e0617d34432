// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QFont>
#include <QString>

// What keeps a file's bytes from being plain text, in words that follow "because"; empty for a plain text. Shown as
// text and saved again, such a file would be destroyed.
QString whyNoPlainText(const QByteArray &bytes);

// Whether a text, RTF or not, is no more than its characters: without tables, pictures, lists and fields, and looking
// as the document's font lets any text look. Such a text loses nothing as a plain one.
bool looksPlain(const QByteArray &text, const QFont &font);
