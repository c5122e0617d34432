// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/Document.h"

#include "document/DocumentWindow.h"
#include "document/Globals.h"
#include "document/OutlinePane.h"
#include "document/SafeFile.h"
#include "document/TextCheck.h"
#include "document/TextPane.h"

#include <algorithm>

LabelEditMode optionalLabelEdit()
{
    return g_options.AutoLabelEdit ? LabelEditMode::tvwAutomatic : LabelEditMode::tvwManual;
}

Document::Document(OutlinePane &outlinePane, TextPane &textPane, DocumentWindow &documentWindow,
                   std::unique_ptr<Outline> read)
    : outline(read ? std::move(read) : std::make_unique<Outline>())
    , tree(outline->tree)
    , m_fntOutlineFont(outline->outlineFont)
    , m_fntTextFont(outline->textFont)
    , history(*outline)
    , texts(outline->tree)
    , trvOutline(outlinePane)
    , txtRTF(textPane)
    , window(documentWindow)
{
    QObject::connect(&texts, &LiveTexts::changed, &texts, [this] { history.touch(); });
    // What is told of damaged texts may have gone with their entries.
    const auto lookAgain = [this] {
        if (hasNotice(NoticeKind::DamagedText))
            checkTexts();
    };
    QObject::connect(&tree, &EntryTree::rowsRemoved, &tree, lookAgain);
    QObject::connect(&tree, &EntryTree::modelReset, &tree, lookAgain);
}

Document::~Document() = default;

void Document::setPaneFonts(const clsFont &outlineFont, const clsFont &textFont)
{
    QFont font = trvOutline.Font();
    outlineFont.SetFont(font);
    trvOutline.setFont(font);
    font = txtRTF.Font();
    textFont.SetFont(font);
    txtRTF.setFont(font);
}

void Document::checkTexts()
{
    m_textCheck = std::make_unique<TextCheck>(*this);
}

bool Document::bReadOnly() const
{
    const QString sFile = m_sFile.trimmed();
    return !sFile.isEmpty() && isReadOnlyFile(sFile);
}

void Document::updateTextLock()
{
    const Entry *entry = texts.shown() ? texts.shownEntry() : tree.selected();
    txtRTF.setLocked(!entry || bTextWithheld() || m_fileAccess == FileAccess::ReadOnly);
}

bool Document::bReadOnlyAsSeen() const
{
    if (!m_seenFile || m_seenFile->sFile != m_sFile)
        m_seenFile = SeenFile{m_sFile, bReadOnly()};
    return m_seenFile->bReadOnly;
}

void Document::tell(DocumentNotice told)
{
    const auto place = std::ranges::lower_bound(m_notices, told.kind, {}, &DocumentNotice::kind);
    if (place == m_notices.end() || place->kind != told.kind)
        m_notices.insert(place, std::move(told));
    else if (*place == told)
        return;
    else
        *place = std::move(told);
    window.noticesChanged();
}

void Document::dismiss(NoticeKind kind)
{
    if (std::erase_if(m_notices, [kind](const DocumentNotice &told) { return told.kind == kind; }) > 0)
        window.noticesChanged();
}

bool Document::hasNotice(NoticeKind kind) const
{
    return std::ranges::find(m_notices, kind, &DocumentNotice::kind) != m_notices.end();
}
