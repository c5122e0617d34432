// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "search/PassedOver.h"

#include "document/Document.h"
#include "model/ShownLabel.h"

using namespace Qt::StringLiterals;

void PassedOver::add(const Entry &entry)
{
    constexpr qsizetype mostNamed = 5;
    if (m_entries.insert(entry.id()).second && m_labels.size() < mostNamed)
        m_labels.append(u'"' + briefLabel(entry.label()) + u'"');
}

void PassedOver::tell(Document &document) const
{
    if (m_entries.empty()) {
        document.dismiss(NoticeKind::NotReplaced);
        return;
    }
    const auto count = static_cast<qsizetype>(m_entries.size());
    const QString named = m_labels.join(u", "_s) + (count > m_labels.size() ? u", \u2026"_s : QString());
    const QString what = count == 1 ? u"Nothing was replaced in the text of %1, which cannot"_s.arg(named)
                                    : u"Nothing was replaced in the texts of %1 entries, which cannot"_s.arg(count);
    document.tell(
        {NoticeKind::NotReplaced, what + u" be shown whole"_s + (count == 1 ? u"."_s : u": %1."_s.arg(named))});
}
