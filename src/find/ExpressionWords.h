// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

// What stands, in one case or another, in every text that matches a valid regular expression: runs of its characters
// that none of its ways leaves out. Few where that is not plain to see, or none.
QStringList certainWords(QStringView expression);
