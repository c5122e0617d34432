// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "panes/PaneTable.h"

#include <array>

namespace
{

constexpr std::array rows{
    PaneRow{"mnuToolsFindEverywhere", makeFindPane, "keyFindEverywhere"},
    PaneRow{"mnuToolsHistory", makeHistoryPane},
};

} // namespace

std::span<const PaneRow> paneTable()
{
    return rows;
}
