// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/EntryId.h"

#include <QObject>
#include <QPointer>

#include <optional>
#include <vector>

class Document;

// An entry of a document.
struct Place {
    QPointer<Document> document;
    EntryId entry = EntryId::None;

    bool operator==(const Place &) const = default;
};

// The places where one has been, in all documents, to go back to and forth again. A place through which one only passes
// does not count. One whose entry was deleted is passed over until the entry is back, one of a closed document for
// good.
class PlaceTrail final : public QObject
{
    Q_OBJECT

public:
    // The oldest go.
    static constexpr int mostPlaces = 200;

    // Another place is shown, or the same. It does not count before it is settled on.
    void show(const Place &place);
    // The place that is shown counts. Whatever could be gone forth to cannot any more, unless it counted already.
    void settle();

    bool canGoBack() const { return next(-1).has_value(); }

    bool canGoForward() const { return next(1).has_value(); }

    // Where to go back or forth to, which is where one is from then on and has only to be shown; nothing where there is
    // no such place. The place that is left to go back counts.
    std::optional<Place> goBack();
    std::optional<Place> goForward();

    // Where one has been and could be again, each place once, the latest first; without the one that is shown.
    std::vector<Place> others() const;

Q_SIGNALS:
    void changed();

private:
    std::optional<Place> shown() const;
    std::optional<std::size_t> next(int direction) const;
    Place moveTo(std::size_t place);

    std::vector<Place> m_places;
    // The place at which one is, or was before one passed on.
    std::size_t m_at = 0;
    // What is shown and does not count yet.
    std::optional<Place> m_passing;
};
