// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/modFile.h"

#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/DocumentWindow.h"
#include "document/Ports.h"
#include "document/TextExchange.h"
#include "document/modDoc.h"
#include "document/modNodes.h"
#include "formats/Format.h"

#include "util/Procedure.h"
#include "util/modString.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

FileFilter filterOf(const Format &format)
{
    return {format.filter, format.pattern};
}

// Of every format, in their order.
std::vector<FileFilter> formatFilters()
{
    std::vector<FileFilter> filters;
    for (const Format &format : formats())
        filters.push_back(filterOf(format));
    return filters;
}

const Format &nativeFormat()
{
    return formatOfVersion(Document::nativeFormat);
}

const Format &textFormat()
{
    return formatOfVersion(Document::plainTextFormat);
}

// Whether a document cannot be saved under the name it has. Says why when that is the file's doing.
bool needsAnotherName(Document &document)
{
    if (document.m_sFile.isEmpty())
        return true;
    // Saved under a name that says something else, an outline would become plain text.
    if (document.m_bFromOutline && modDoc::DocDefaultVersionFromExt(document.m_sFile) != Document::nativeFormat)
        return true;
    if (document.m_fileAccess != FileAccess::Writable || !document.bReadOnly())
        return false;
    document.tell({NoticeKind::NotSaved, u"The file %1 may not be written any more. What you changed is in this window "
                                         "only: save it under another name."_s.arg(document.m_sFile)});
    return true;
}

FileDialogRequest saveRequest(const Document &document, std::vector<FileFilter> filters, const QString &extension)
{
    return {std::move(filters), extension, modString::StringWithoutExtension(document.m_sFile)};
}

void warn(const QString &text)
{
    ports().dialogs->warn(u"Warning - "_s + text);
}

void tellUnlessImported(const Document *imported, const QString &source)
{
    if (!imported)
        warn(source + u" could not be imported"_s);
}

// Asks for a file to write, which no document has open; `refusal` is what is said of one that has.
std::optional<QString> askFreeName(const FileDialogRequest &request, const Document *leftOut, const QString &refusal)
{
    const std::optional<QString> sFile = ports().dialogs->askSaveName(request);
    if (!sFile || !modDoc::documentOfFile(*sFile, leftOut))
        return sFile;
    warn(u"the file "_s + *sFile + refusal);
    return std::nullopt;
}

// The dialog for a document's file. Without its extension the name must not read as another format's.
FileDialogRequest saveAsRequest(const Document &document)
{
    FileDialogRequest request = saveRequest(document, formatFilters(), nativeFormat().extension);
    request.formatExtension = nativeFormat().extension;
    const QString sExtension = modString::StringExtension(request.initialName);
    if (std::ranges::find(formats(), sExtension, &Format::extension) != formats().end())
        request.initialName = document.m_sFile;
    return request;
}

// What the user wants of the active document; nothing without a document or after Cancel.
std::optional<PrintExtent> askExtent(const QString &question, bool bCurrentEntry)
{
    Document *document = DocumentActive();
    if (!document || !document->tree.selected())
        return std::nullopt;
    const Entry *selected = document->tree.selected();
    switch (ports().dialogs->askPlainly(question, Answer::No)) {
    case Answer::Yes:
        return PrintExtent{document, bCurrentEntry ? selected : document->tree.root(), true};
    case Answer::No:
        return PrintExtent{document, selected, false};
    case Answer::Cancel:
        break;
    }
    return std::nullopt;
}

} // namespace

namespace modFile
{

void FileNew()
{
    procedure("modFile FileNew", [] {
        modDoc::DocNew();
        Document *document = DocumentActive();
        if (!document || document->tree.root())
            return;
        Entry *root = modNodes::NodeInsert(*document, Relationship::tvwFirst, nullptr);
        modNodes::NodeInitialise(*document, root);
        // A document is never without an entry, so its first one is not to be undone.
        document->history.startAnew();
    });
}

void FileOpen()
{
    procedure("modFile FileOpen", [] {
        sayOfActive(QString());
        std::vector<FileFilter> filters = formatFilters();
        filters.push_back({u"All Files (*.*)"_s, u"*.*"_s});
        const auto sFile = ports().dialogs->askOpenName({std::move(filters), nativeFormat().extension, QString()});
        if (sFile)
            modDoc::DocLoad(*sFile);
    });
}

void FileMRU(int iIndex)
{
    procedure("modFile FileMRU", [&] {
        // The caption begins with an ampersand, a digit and a blank.
        constexpr int prefixLength = 3;
        RecentFiles &recentFiles = *ports().recentFiles;
        const QString sFile = recentFiles.itemCaption(iIndex).mid(prefixLength).trimmed();
        if (modDoc::documentOfFile(sFile)) {
            warn(u"the file "_s + sFile + u" is already loaded, so cannot be loaded again"_s);
            return;
        }
        const bool bExists = modString::FileExists(sFile);
        if (bExists)
            modDoc::DocLoad(sFile);
        else
            warn(u"the file "_s + sFile + u" no longer exists, so cannot be loaded"_s);
        recentFiles.UpdateMRUFile(sFile, !bExists);
    });
}

bool FileSave()
{
    return procedure("modFile FileSave", [] {
        Document *document = DocumentActive();
        if (!document)
            return false;
        // What has no file that takes it is nowhere but here: cancelling the dialog must not make it look saved.
        if (needsAnotherName(*document))
            return FileSaveAs();
        const bool bUnsavedBefore = document->hasUnsavedChanges();
        const SaveOutcome outcome = modDoc::DocSave(document->m_sFile);
        const bool bRefused = outcome == SaveOutcome::Refused && document->tree.entryCount() > 1;
        if (bRefused)
            document->m_bSaveRefused = bUnsavedBefore;
        if (bRefused || outcome == SaveOutcome::Saved)
            document->history.markSaved();
        return outcome == SaveOutcome::Saved;
    });
}

bool FileSaveAs()
{
    return procedure("modFile FileSaveAs", [] {
        Document *document = DocumentActive();
        if (!document)
            return false;
        const auto sFile =
            askFreeName(saveAsRequest(*document), document, u" is open in another window, so cannot be saved over"_s);
        if (!sFile || modDoc::DocSave(*sFile) != SaveOutcome::Saved)
            return false;
        document->history.markSaved();
        return true;
    });
}

void FileSaveAll()
{
    procedure("modFile FileSaveAll", [] {
        Document *failed = nullptr;
        for (Document *document : ports().windows->documents()) {
            // A file that turned read-only matters only to a document that has something to save.
            if (document->bReadOnly() && !(document->mayBeSaved() && document->hasUnsavedChanges()))
                continue;
            if (DocumentView *view = document->view())
                view->window.activate();
            if (!FileSave() && !failed && document->hasNotice(NoticeKind::NotSaved))
                failed = document;
        }
        // What could not be saved is not to stay behind the windows that were saved after it.
        if (failed && failed->view())
            failed->view()->window.activate();
    });
}

void FileClose()
{
    procedure("modFile FileClose", [] {
        if (Document *document = DocumentActive(); document && document->view())
            document->view()->window.close();
        sayOfActive(QString());
    });
}

void FileExit()
{
    procedure("modFile FileExit", [] { ports().windows->closeMainWindow(); });
}

void FileImportText()
{
    procedure("modFile FileImportText", [] {
        const auto sFile = ports().dialogs->askOpenName({{filterOf(textFormat())}, textFormat().extension, QString()});
        if (sFile)
            tellUnlessImported(modDocText::DocImport(*sFile), u"the file "_s + *sFile);
    });
}

void FileImportClipboard()
{
    procedure("modFile FileImportClipboard",
              [] { tellUnlessImported(modDocClipboard::DocImport(), u"the clipboard"_s); });
}

void FileExportText()
{
    procedure("modFile FileExportText", [] {
        const Document *document = DocumentActive();
        if (!document)
            return;
        // The document that has the file would look as if it were still in there, and be closed without a question.
        const auto sFile = askFreeName(saveRequest(*document, {filterOf(textFormat())}, textFormat().extension),
                                       nullptr, u" is open, so cannot be exported over"_s);
        if (sFile)
            modDocText::DocExport(*sFile);
    });
}

void FileExportClipboard()
{
    procedure("modFile FileExportClipboard", [] {
        if (DocumentActive())
            modDocClipboard::DocExport();
    });
}

void FilePrint(bool bCurrentEntry)
{
    procedure("modFile FilePrint", [&] {
        if (const auto extent = askExtent(u"Do you want to include any child entries?"_s, bCurrentEntry))
            ports().printing->print(*extent);
    });
}

void FilePrintPreview(bool bCurrentEntry)
{
    procedure("modFile FilePrintPreview", [&] {
        if (const auto extent = askExtent(u"Do you want to include all lower level entries?"_s, bCurrentEntry))
            ports().printing->preview(*extent);
    });
}

void FilePrintSetup()
{
    procedure("modFile FilePrintSetup", [] { ports().printing->setUp(); });
}

} // namespace modFile
