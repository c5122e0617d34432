// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/PlaceTrail.h"

#include "document/Document.h"

#include <algorithm>
#include <utility>

namespace
{

bool isThere(const Place &place)
{
    return place.document && place.document->tree.entry(place.entry);
}

} // namespace

void PlaceTrail::show(const Place &place)
{
    const bool isWhereOneIs = !m_places.empty() && m_places[m_at] == place;
    m_passing = isWhereOneIs ? std::nullopt : std::optional(place);
    Q_EMIT changed();
}

void PlaceTrail::settle()
{
    if (!m_passing)
        return;
    if (!m_places.empty())
        m_places.resize(m_at + 1);
    std::erase_if(m_places, [](const Place &place) { return !place.document; });
    m_places.push_back(*std::exchange(m_passing, std::nullopt));
    if (m_places.size() > mostPlaces)
        m_places.erase(m_places.begin());
    m_at = m_places.size() - 1;
    Q_EMIT changed();
}

std::optional<Place> PlaceTrail::shown() const
{
    if (m_passing || m_places.empty())
        return m_passing;
    return m_places[m_at];
}

// Who only passes has the place where he was before behind him.
std::optional<std::size_t> PlaceTrail::next(int direction) const
{
    const std::optional<Place> here = shown();
    const std::ptrdiff_t first = std::ptrdiff_t(m_at) + (direction < 0 && m_passing ? 0 : direction);
    for (std::ptrdiff_t at = first; at >= 0 && at < std::ssize(m_places); at += direction) {
        const Place &place = m_places[static_cast<std::size_t>(at)];
        if (isThere(place) && place != here)
            return static_cast<std::size_t>(at);
    }
    return std::nullopt;
}

Place PlaceTrail::moveTo(std::size_t place)
{
    m_at = place;
    m_passing.reset();
    Q_EMIT changed();
    return m_places[m_at];
}

std::optional<Place> PlaceTrail::goBack()
{
    if (!canGoBack())
        return std::nullopt;
    settle();
    return moveTo(*next(-1));
}

std::optional<Place> PlaceTrail::goForward()
{
    const std::optional<std::size_t> place = next(1);
    return place ? std::optional(moveTo(*place)) : std::nullopt;
}

std::vector<Place> PlaceTrail::others() const
{
    std::vector<Place> found;
    const std::optional<Place> here = shown();
    for (auto place = m_places.rbegin(); place != m_places.rend(); ++place) {
        if (isThere(*place) && *place != here && std::ranges::find(found, *place) == found.end())
            found.push_back(*place);
    }
    return found;
}
