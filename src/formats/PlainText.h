// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

// A text's lines, whichever way they end, each followed by CR LF.
QString withLineEnds(const QString &text);

// An entry's plain text from its stored form: what the text pane shows, every break as CR LF. Error
// 7 for a text that is not to be had whole for its length.
QString plainTextOf(const QByteArray &storedText);
