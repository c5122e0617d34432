// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QStringView>

// The words of characters: what stands between blanks and holds a letter or a digit.
qint64 wordCount(QStringView characters);

// Those of a text in its stored form, as it is shown; none for a text that is damaged. Any thread may ask.
qint64 wordsOfText(const QByteArray &storedText);
