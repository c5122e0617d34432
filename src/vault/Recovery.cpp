// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/Recovery.h"

#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/DocumentWindow.h"
#include "document/FileWitness.h"
#include "document/Globals.h"
#include "document/OutlinePane.h"
#include "document/OutsideChange.h"
#include "document/Ports.h"
#include "document/SafeFile.h"
#include "document/modDoc.h"
#include "document/modNodes.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"
#include "vault/Vault.h"

using namespace Qt::StringLiterals;

namespace
{

// What could not be recovered, in words; empty when all was.
QString lossOf(const LeftBehind::Content &content, qint64 notPlayed)
{
    QStringList losses;
    if (const qint64 records = content.lostRecords + notPlayed; records > 0)
        losses.append(records == 1 ? u"the last change"_s : u"the last %1 changes"_s.arg(records));
    if (content.damagedEntries > 0)
        losses.append(content.damagedEntries == 1 ? u"one entry"_s : u"%1 entries"_s.arg(content.damagedEntries));
    return losses.isEmpty()
               ? QString()
               : u"The recovery data is damaged: %1 could not be recovered."_s.arg(losses.join(u" and "_s));
}

// Fills a new window with the document, as it was when the program ended. What could not be recovered is returned.
QString fill(Document &document, const LeftBehind &left, const LeftBehind::Content &content)
{
    const DocumentFacts &facts = left.facts();
    DocumentView *view = document.view();
    if (view)
        view->trvOutline.setPaneVisible(false);
    document.m_iFileFormatVersion = facts.formatVersion;
    document.m_bFromOutline = facts.isFromOutline;
    document.setPaneFonts(document.m_fntOutlineFont, document.m_fntTextFont);
    if (QFont base; base.fromString(facts.baseFont))
        document.setBaseFont(base);
    if (!facts.isSaved || document.m_sFile.isEmpty() || left.fileNow() != LeftBehind::FileNow::AsItWas)
        document.history.forgetSaved();
    qint64 notPlayed = 0;
    {
        const HistoryBulk bulk(document.history);
        notPlayed = LeftBehind::replay(document, content, left.state());
    }
    document.m_fileAccess = FileAccess::Writable;
    if (view) {
        view->trvOutline.setPaneVisible(true);
        view->trvOutline.setLabelEdit(optionalLabelEdit());
    }
    const QString loss = lossOf(content, notPlayed);
    if (!loss.isEmpty())
        remark(u"%1: %2"_s.arg(left.name(), loss));
    return loss;
}

// The document is that of a file, which is still as it was or gone. What is to come under its name is known by what it
// was.
void takeFile(Document &document, const DocumentFacts &facts, LeftBehind::FileNow now)
{
    document.m_sFile = facts.file;
    if (now == LeftBehind::FileNow::AsItWas)
        document.takeFile(FileStamp{identityOf(facts.file), ContentDigest(readWholeFile(facts.file))});
    else
        document.takeFile(FileStamp{std::nullopt, ContentDigest::known(facts.fileDigest)});
}

void show(Document &document)
{
    if (Entry *selected = document.tree.selected())
        modNodes::NodeSelectFull(document, selected);
    document.checkTexts();
    document.autoFitSplit();
}

void tellOfLoss(Document &document, const QString &loss)
{
    if (!loss.isEmpty())
        document.tell({NoticeKind::NotRecoveredWhole, loss});
}

// Why a document is without the file that it was.
QString withoutFileText(const LeftBehind &left, bool isChanged)
{
    if (isChanged)
        return u"The file %1 has changed since. What it held when this document was recovered has a window of its own; "
               "this one has the words from before the crash and no file yet. Neither was made part of the other."_s;
    if (!left.facts().file.isEmpty())
        return u"The file %1 was open in another window and changed there when this document was recovered. This one "
               "has the words from before the crash, and no file yet."_s;
    return u"This document was recovered before: it has what was not saved of the file %1 then, and no file yet."_s;
}

} // namespace

Document *recoverDocument(LeftBehind &left, Vault &vault)
{
    return procedure("Recovery recoverDocument", [&]() -> Document * {
        const HourglassPointer hourglass;
        LeftBehind::Content content = left.read();
        const QString &sFile = left.facts().file;
        const LeftBehind::FileNow now = left.fileNow();
        Document *other = modDoc::documentOfFile(sFile);
        const bool isChanged = now == LeftBehind::FileNow::Changed;
        const bool hasName = !sFile.isEmpty() && !isChanged && !(other && other->hasUnsavedChanges());
        if (isChanged && !other)
            modDoc::DocLoad(sFile);
        Document *document = nullptr;
        QString loss;
        {
            const BusyScope busy;
            document = modDoc::DocInit(std::move(content.outline));
            if (!document)
                return nullptr;
            if (hasName)
                takeFile(*document, left.facts(), now);
            else
                document->m_sRecoveredFrom = left.fileBehind();
            if (!left.fileBehind().isEmpty())
                document->setCaption(hasName ? sFile : left.name() + u" (recovered)"_s);
            loss = fill(*document, left, content);
        }
        show(*document);
        tellOfLoss(*document, loss);
        if (hasName)
            lookForOutsideChange(*document);
        else if (!left.fileBehind().isEmpty())
            document->tell({NoticeKind::Recovered, withoutFileText(left, isChanged).arg(left.fileBehind())});
        // The file as it is on disk would be a second document of the same name.
        if (hasName && other && other->view())
            other->view()->window.close();
        if (hasName)
            ports().recentFiles->UpdateMRUFile(sFile, false);
        followerOfFiles().recovered(*document, left.fileBehind(), left.state().time);
        if (Journal *journal = vault.journalOf(*document))
            journal->setChangedAt(left.state().time);
        // A second crash finds the one or the other.
        if (vault.flush())
            left.discard();
        return document;
    });
}

Document *lookAtLeftBehind(LeftBehind &left)
{
    return procedure("Recovery lookAtLeftBehind", [&]() -> Document * {
        const HourglassPointer hourglass;
        LeftBehind::Content content = left.read();
        Document *document = nullptr;
        QString loss;
        {
            const BusyScope busy;
            document = modDoc::DocInit(std::move(content.outline));
            if (!document)
                return nullptr;
            document->setCaption(left.name() + u" (left behind, read-only)"_s);
            loss = fill(*document, left, content);
            // Nothing of it is to be saved, nor to be undone.
            document->history.startAnew();
            document->history.markSaved();
            document->m_fileAccess = FileAccess::ReadOnly;
            document->m_bForReading = true;
            if (DocumentView *view = document->view())
                view->trvOutline.setLabelEdit(LabelEditMode::tvwManual);
        }
        show(*document);
        document->updateTextLock();
        document->lookAtFileAgain();
        tellOfLoss(*document, loss);
        return document;
    });
}
