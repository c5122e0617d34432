// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/Recovery.h"

#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/DocumentWindow.h"
#include "document/FileWitness.h"
#include "document/Globals.h"
#include "document/OutlinePane.h"
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

// The document is that of a file, which is still as it was or gone.
void takeFile(Document &document, const QString &sFile, LeftBehind::FileNow now)
{
    document.m_sFile = sFile;
    if (now == LeftBehind::FileNow::AsItWas)
        document.takeFile(FileStamp{identityOf(sFile), ContentDigest(readWholeFile(sFile))});
}

void show(Document &document)
{
    if (Entry *selected = document.tree.selected())
        modNodes::NodeSelectFull(document, selected);
    document.checkTexts();
    document.autoFitSplit();
}

void tellOf(Document &document, const QStringList &sentences)
{
    if (!sentences.isEmpty())
        document.tell({NoticeKind::Recovered, sentences.join(u' ')});
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
        QStringList told;
        {
            const BusyScope busy;
            document = modDoc::DocInit(std::move(content.outline));
            if (!document)
                return nullptr;
            if (hasName)
                takeFile(*document, sFile, now);
            const QString caption = sFile.isEmpty() ? document->caption() : left.name() + u" (recovered)"_s;
            document->setCaption(hasName ? sFile : caption);
            if (const QString loss = fill(*document, left, content); !loss.isEmpty())
                told.append(loss);
        }
        show(*document);
        if (isChanged)
            told.append(
                u"The file %1 has changed since. It is open beside this document, which has its words from before "
                "the crash and no file yet; neither was made part of the other."_s.arg(sFile));
        else if (other && !hasName)
            told.append(
                u"The file %1 is open in another window, where it was changed. This document has its words from "
                "before the crash, and no file yet."_s.arg(sFile));
        else if (now == LeftBehind::FileNow::Gone)
            told.append(u"The file %1 is no longer there. Saving this document makes it again."_s.arg(sFile));
        tellOf(*document, told);
        // The file as it is on disk would be a second document of the same name.
        if (hasName && other && other->view())
            other->view()->window.close();
        if (hasName)
            ports().recentFiles->UpdateMRUFile(sFile, false);
        ports().files->recovered(*document, sFile);
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
            if (DocumentView *view = document->view())
                view->trvOutline.setLabelEdit(LabelEditMode::tvwManual);
        }
        show(*document);
        document->updateTextLock();
        if (!loss.isEmpty())
            tellOf(*document, {loss});
        return document;
    });
}
