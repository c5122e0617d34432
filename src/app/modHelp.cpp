// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/modHelp.h"

#include "app/frmAbout.h"
#include "util/Procedure.h"

namespace modHelp
{

void HelpAbout(QWidget *owner)
{
    procedure("modHelp HelpAbout", [&] { frmAbout(owner).exec(); });
}

} // namespace modHelp
