// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "util/StateFolder.h"

#include <QDir>

using namespace Qt::StringLiterals;

QString stateFolder()
{
    // A relative value of the variable counts as none (XDG base directories).
    const QString base = qEnvironmentVariable("XDG_STATE_HOME");
    return (QDir::isAbsolutePath(base) ? base : QDir::homePath() + u"/.local/state"_s) + u"/Quillery"_s;
}
