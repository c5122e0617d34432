// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class QTextDocument;

// The page of a text that names pictures of the document, with the pictures themselves in their places, so that it can
// be read elsewhere. Those that a page cannot show, and those beyond the bound (limits::mostCopiedPictures), leave an
// empty place of their size.
QString htmlWithPictures(const QString &html, const QTextDocument &document);
