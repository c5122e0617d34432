// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/LeftOutText.h"

#include "document/Document.h"
#include "model/ShownLabel.h"

#include "rtf/LeftOut.h"
#include "rtf/Rtf.h"

using namespace Qt::StringLiterals;

namespace
{

struct LeftOutName {
    rtf::LeftOut kind;
    const char16_t *name;
};

constexpr LeftOutName leftOutNames[] = {
    {rtf::LeftOut::Footnotes, u"footnotes"},      {rtf::LeftOut::Headers, u"headers or footers"},
    {rtf::LeftOut::Comments, u"comments"},        {rtf::LeftOut::Bookmarks, u"bookmarks"},
    {rtf::LeftOut::Marks, u"marks for an index"}, {rtf::LeftOut::Formulas, u"formulas"},
    {rtf::LeftOut::Objects, u"embedded objects"},
};

} // namespace

QString leftOutParts(const QByteArray &text)
{
    if (!rtf::isRtf(text))
        return {};
    const rtf::LeftOutKinds kinds = rtf::leftOut(text);
    QStringList names;
    for (const auto &[kind, name] : leftOutNames) {
        if (kinds.testFlag(kind))
            names.append(QString::fromUtf16(name));
    }
    const QString last = names.isEmpty() ? QString() : names.takeLast();
    return names.isEmpty() ? last : names.join(u", "_s) + u" and "_s + last;
}

void tellOfLeftOutParts(Document &document)
{
    const Entry *entry = document.texts.shownEntry();
    const bool mayChange = entry && !document.bTextWithheld() && document.m_fileAccess != FileAccess::ReadOnly;
    const QString parts = mayChange ? document.texts.shown()->leftOut() : QString();
    if (parts.isEmpty())
        document.dismiss(NoticeKind::LeftOutParts);
    else
        document.tell({NoticeKind::LeftOutParts,
                       u"The text of \"%1\" comes from another program and has %2 that are not shown here. They are "
                       "kept until the text is changed for the first time, and then they are gone."_s.arg(
                           briefLabel(entry->label()), parts)});
}
