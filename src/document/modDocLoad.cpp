// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Reading a file into a new document window.

#include "document/modDoc.h"

#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/DocumentWindow.h"
#include "document/FileWitness.h"
#include "document/Globals.h"
#include "document/OpenedFile.h"
#include "document/OutlinePane.h"
#include "document/Ports.h"
#include "document/TextPane.h"
#include "document/UnfinishedSaves.h"
#include "document/modNodes.h"

#include "util/Procedure.h"
#include "util/RunTimeError.h"
#include "util/modString.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

constexpr auto routineName = "modDoc DocLoad";

void markReadOnly(Document &document)
{
    document.setCaption(document.m_sFile + u" (read-only)"_s);
    if (DocumentView *view = document.view())
        view->trvOutline.setLabelEdit(LabelEditMode::tvwManual);
    document.updateTextLock();
}

void showLoaded(Document &document, Entry *selected)
{
    if (DocumentView *view = document.view()) {
        view->trvOutline.setPaneVisible(true);
        // After the read-only step on purpose: with the option on, a read-only document has automatic label editing
        // again.
        view->trvOutline.setLabelEdit(optionalLabelEdit());
    }
    if (selected)
        modNodes::NodeSelectFull(document, selected);
    else
        modNodes::NodeTextGet(document, nullptr);
}

// Shows what was read, of the error being handled, without the file's name, so that a save cannot overwrite the file.
void keepWhatWasRead(Document &document, const OpenedFile &file)
{
    document.m_sFile.clear();
    document.takeFile(std::nullopt);
    if (file.iVersion == Document::nativeFormat)
        document.setPaneFonts(document.m_fntOutlineFont, document.m_fntOutlineFont);
    document.m_iFileFormatVersion = Document::nativeFormat;
    showLoaded(document, document.tree.root());
    document.autoFitSplit();
    const QString sWhat = u"The file %1 could not be read whole"_s.arg(file.sFile);
    document.note(sWhat);
    document.tell(
        {NoticeKind::NotReadWhole, u"%1: %2. What was read is shown here without the file's name, so that "
                                   "saving it does not replace the file."_s.arg(sWhat, causeOfFailure(file))});
}

// A document that is a look at a file takes on the caption, and not the file's name and lock.
void takeOn(Document &document, const OpenedFile &file, const QString &sCaption)
{
    document.m_iFileFormatVersion = file.iVersion;
    document.m_bFromOutline = file.iVersion == Document::nativeFormat;
    // The base font of the texts is the outline's by design; the text font stays what new texts are given.
    if (file.iVersion == Document::nativeFormat)
        document.setPaneFonts(document.m_fntOutlineFont, document.m_fntOutlineFont);
    if (sCaption.isEmpty()) {
        document.m_sFile = file.sFile;
        document.takeFile(file.stamp);
    }
    document.setCaption(sCaption.isEmpty() ? file.sFile : sCaption);
    document.m_fileAccess = document.bReadOnly() ? FileAccess::ReadOnly : FileAccess::Writable;
    document.lookAtFileAgain();
}

void showWhole(Document &document, OpenedFile &file, const QString &sCaption)
{
    takeOn(document, file, sCaption);
    if (document.m_fileAccess == FileAccess::ReadOnly)
        markReadOnly(document);
    showLoaded(document, document.tree.selected());
    remarkOnOddities(document, file);
}

// Fills the window that was opened for what was read. Throws what kept it from being the whole file.
void show(Document &document, OpenedFile &file, const QString &sCaption)
{
    if (DocumentView *view = document.view())
        view->trvOutline.setPaneVisible(false);
    try {
        if (file.read.failure)
            std::rethrow_exception(file.read.failure);
        showWhole(document, file, sCaption);
    } catch (...) {
        keepWhatWasRead(document, file);
        throw;
    }
}

// Opens a file in a window of its own, under its name or under a caption. A file that does not exist opens nothing.
bool load(const QString &sFile, const QString &sCaption)
{
    if (!modString::FileExists(sFile)) {
        sayOfActive(u"The file %1 could not be found"_s.arg(sFile));
        return true;
    }
    const HourglassPointer hourglass;
    sayOfActive(QString());
    OpenedFile file;
    Document *document = nullptr;
    {
        const BusyScope busy;
        file = readFile(sFile);
        document = modDoc::DocInit(std::move(file.read.outline));
        if (!document)
            return false;
        show(*document, file, sCaption);
    }
    if (!file.read.remark.isEmpty())
        remark(u"%1: %2"_s.arg(sFile, file.read.remark));
    if (file.read.cutLabels > 0)
        tellOfCutLabels(*document, file.read.cutLabels);
    if (document->m_iFileFormatVersion == Document::nativeFormat)
        document->checkTexts();
    document->autoFitSplit();
    if (sCaption.isEmpty())
        ports().recentFiles->UpdateMRUFile(sFile, false);
    followerOfFiles().fileRead(*document);
    return true;
}

bool loadAndOffer(const QString &sFile, QSet<QString> &asked);

// Asks about what saves that were cut short would have written. It becomes a document beside the others, in a file of
// its own from the first moment. Opening that asks about what belongs to it, so what there is to ask about is looked up
// again after each answer, and nothing is asked twice.
void offerUnfinishedSaves(const QString &sFile, QSet<QString> &asked)
{
    while (true) {
        const std::vector<UnfinishedSave> saves = unfinishedSaves(sFile);
        const auto next = std::ranges::find_if(
            saves, [&asked](const UnfinishedSave &unfinished) { return !asked.contains(unfinished.path); });
        if (next == saves.end())
            return;
        asked.insert(next->path);
        const QString sTime = QLocale::system().toString(QFileInfo(next->path).lastModified(), QLocale::ShortFormat);
        const QString sWhat = next->isOldContent ? u"so that it may be damaged, but all that it held before is there"_s
                                                 : u"but all that was to be saved is there"_s;
        const Answer answer = ports().dialogs->ask(
            u"Saving the file %1 was cut short (%2), %3. Do you want to keep it in a file of its own and open that? If "
            "you choose No, it is deleted."_s.arg(next->target, sTime, sWhat));
        if (answer == Answer::Yes)
            loadAndOffer(nameUnfinishedSave(*next, saves), asked);
        else if (answer == Answer::No)
            QFile::remove(next->path);
    }
}

bool loadAndOffer(const QString &sFile, QSet<QString> &asked)
{
    const bool bLoaded = procedure(routineName, [&] { return load(sFile, QString()); });
    procedure(routineName, [&] {
        if (!sFile.isEmpty())
            offerUnfinishedSaves(sFile, asked);
    });
    return bLoaded;
}

} // namespace

namespace modDoc
{

bool DocLoad(const QString &sFile)
{
    QSet<QString> asked;
    return loadAndOffer(sFile, asked);
}

bool showOrLoad(const QString &sFile)
{
    const Document *open = documentOfFile(sFile);
    if (!open || !open->view())
        return DocLoad(sFile);
    open->view()->window.bringToFront();
    return true;
}

Document *documentOfFile(const QString &sFile, const Document *leftOut)
{
    const std::vector<Document *> documents = ports().windows->documents();
    const auto found = std::ranges::find_if(documents, [&](const Document *document) {
        return document != leftOut && isSameFile(document->m_sFile, sFile);
    });
    return found == documents.end() ? nullptr : *found;
}

bool DocLoadUnnamed(const QString &sFile, const QString &sCaption)
{
    return procedure(routineName, [&] { return load(sFile, sCaption); });
}

Document *openForReading(std::unique_ptr<Outline> outline, const QString &sCaption)
{
    return procedure("modDoc openForReading", [&] {
        const HourglassPointer hourglass;
        Document *document = DocInit(std::move(outline));
        if (!document)
            return document;
        document->m_bForReading = true;
        document->m_bFromOutline = true;
        document->m_fileAccess = FileAccess::ReadOnly;
        document->setPaneFonts(document->m_fntOutlineFont, document->m_fntOutlineFont);
        document->setCaption(sCaption);
        showLoaded(*document, document->tree.selected() ? document->tree.selected() : document->tree.root());
        if (DocumentView *view = document->view())
            view->trvOutline.setLabelEdit(LabelEditMode::tvwManual);
        document->updateTextLock();
        document->checkTexts();
        document->autoFitSplit();
        document->lookAtFileAgain();
        return document;
    });
}

std::unique_ptr<Document> openUnshown(const QString &sFile)
{
    OpenedFile file = readFile(sFile);
    if (file.read.failure)
        std::rethrow_exception(file.read.failure);
    auto document = std::make_unique<Document>(std::move(file.read.outline));
    takeOn(*document, file, QString());
    return document;
}

} // namespace modDoc
