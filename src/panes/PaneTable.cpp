// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "panes/PaneTable.h"

#include "panes/HistoryPane.h"

#include <array>

namespace
{

template <typename Made>
std::unique_ptr<Pane> make(Dispatcher &dispatcher)
{
    return std::make_unique<Made>(dispatcher);
}

constexpr std::array rows{
    PaneRow{"mnuToolsHistory", make<HistoryPane>},
};

} // namespace

std::span<const PaneRow> paneTable()
{
    return rows;
}
