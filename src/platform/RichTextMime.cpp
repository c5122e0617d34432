// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/RichTextMime.h"

#include "rtf/Rtf.h"

#include <QMimeData>

#include <algorithm>

namespace
{

constexpr QLatin1StringView understood[] = {RichTextMime::written, QLatin1StringView("application/rtf"),
                                            QLatin1StringView("text/richtext")};

} // namespace

bool RichTextMime::isIn(const QMimeData &source)
{
    return std::any_of(std::cbegin(understood), std::cend(understood),
                       [&source](QLatin1StringView type) { return source.hasFormat(type); });
}

QByteArray RichTextMime::textOf(const QMimeData &source)
{
    for (const QLatin1StringView type : understood) {
        const QByteArray data = source.data(type);
        if (rtf::isRtf(data))
            return data;
    }
    return {};
}
