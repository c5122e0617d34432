// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <vector>

// Lets the next `more` elements be added to a vector without a failure; throws where there is no memory. Asked for one
// element at a time, it still grows by doubling.
template <typename T>
void makeRoomBehind(std::vector<T> &elements, size_t more)
{
    if (elements.capacity() - elements.size() < more)
        elements.reserve(std::max(elements.size() + more, elements.capacity() * 2));
}
