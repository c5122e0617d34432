// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/modDoc.h"

#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/FileNature.h"
#include "document/FileWitness.h"
#include "document/Globals.h"
#include "document/LeftOutText.h"
#include "document/OutlinePane.h"
#include "document/OutsideChange.h"
#include "document/Ports.h"
#include "document/SafeFile.h"
#include "document/TextPane.h"
#include "formats/Format.h"
#include "model/StoredText.h"

#include "util/Procedure.h"
#include "util/RunTimeError.h"
#include "util/modString.h"

#include <QLocale>

#include <optional>

using namespace Qt::StringLiterals;

namespace
{

constexpr auto saveName = "modDoc DocSave";

// A new document window with its untitled caption.
Document &openUntitled(std::unique_ptr<Outline> outline)
{
    Document &document = ports().windows->createDocument(std::move(outline));
    document.setCaption(u"Document %1"_s.arg(iDocumentCount));
    return document;
}

// The backup's name: the same path with the extension "bak".
QString backupName(const QString &sFile)
{
    return modString::StringWithoutExtension(sFile) + u".bak"_s;
}

// Takes a step of making the backup. That it fails keeps nobody from saving; why it failed is returned.
template <typename Step>
std::optional<ErrorNumber> tryBackupStep(Step &&step)
{
    try {
        step();
        return std::nullopt;
    } catch (const RunTimeError &error) {
        reportError(saveName, error);
        return error.number();
    }
}

// Whether a document of one entry is more than the words of a text file.
bool isMoreThanText(const Document &document)
{
    const Entry *root = document.tree.root();
    QFont font = document.baseFont();
    document.m_fntTextFont.SetFont(font);
    return document.m_bFromOutline ||
           (root && !looksPlain(NodeTextDecompressIfRequired(document.tree.storedText(root)), font));
}

bool textFormatAccepted(const Document &document, qint16 iVersion)
{
    if (iVersion != Document::plainTextFormat)
        return true;
    if (document.tree.entryCount() <= 1)
        return !isMoreThanText(document) ||
               userAgrees(u"Warning - you are saving this document as plain text. Only its words will be in "
                          "the file: formatting, tables, pictures and whatever else an outline holds will be "
                          "lost if the file is reloaded. Do you want to continue?"_s);
    return userAgrees(
        u"Warning - you are saving this document in text format.  Although the text itself will be retained, "
        "any rich text formatting and organisation into entries will be lost if the file is reloaded.  Normally "
        "you should save the file as text only if you wish to load it into another application that does not "
        "recognise the native formatting.  Do you want to continue?"_s);
}

// Of the error being handled.
QString notSavedText(const Document &document, const QString &sFile)
{
    if (!document.tree.root())
        return u"The file %1 was not saved: this document has no entries any more, and no file is replaced by nothing."_s
            .arg(sFile);
    const auto number = static_cast<ErrorNumber>(currentError().number);
    const bool folderGone = number == ErrorNumber::FileNotFound || number == ErrorNumber::PathNotFound;
    const bool isOther = number == ErrorNumber::InvalidFileFormat;
    const QString reason = folderGone ? u"there is no such folder"_s
                           : isOther  ? u"read again from the disk, it was not what was written"_s
                                      : errorDescription(number);
    return u"The file %1 could not be saved: %2. What you changed is in this window only."_s.arg(sFile, reason);
}

QString savedText(const Document &document)
{
    const QString sTime = QLocale::system().toString(ports().clock->now().time(), QLocale::ShortFormat);
    const int count = document.tree.entryCount();
    return count == 1 ? u"Saved at %1, 1 entry"_s.arg(sTime) : u"Saved at %1, %2 entries"_s.arg(sTime).arg(count);
}

// Whether a file may be written over in place, because nothing else can be done in its folder.
bool inPlaceAccepted(const QString &sFile)
{
    return userAgrees(
        u"The folder of \"%1\" takes no new files, so the file cannot be replaced as a whole. Do you want to "
        "write over it in place? What it holds now is kept in another folder until that has succeeded."_s.arg(sFile));
}

// What can be neither written nor put back is damaged; the user learns where the whole old content is.
void replaceFile(Document &document, SafeFile &file)
{
    try {
        file.replace();
    } catch (...) {
        if (const QString sCopy = file.strandedCopy(); !sCopy.isEmpty())
            document.tell({NoticeKind::FileDamaged,
                           u"The file %1 could be neither written nor put back as it was. What "
                           "it held before is whole in the file %2."_s.arg(file.target(), sCopy),
                           file.target()});
        throw;
    }
    // Another file is what it was.
    if (const DocumentNotice *told = document.notice(NoticeKind::FileDamaged); told && told->file == file.target())
        document.dismiss(NoticeKind::FileDamaged);
}

// What the disk holds of a document must be that document for whoever opens it, or the old file stays.
void readBack(const Document &document, const Format &format, const QByteArray &content)
{
    if (!format.difference)
        return;
    const ReadOutline read = format.readInPlace(content);
    if (read.failure)
        std::rethrow_exception(read.failure);
    const QString difference = format.difference(document.outline(), *read.outline);
    if (!difference.isEmpty())
        throw RunTimeError(ErrorNumber::InvalidFileFormat,
                           u"%1: %2, read again, has %3"_s.arg(errorDescription(ErrorNumber::InvalidFileFormat),
                                                               document.m_sFile, difference));
}

// False when what has come to stand in the file's place meanwhile is not to be replaced.
bool writeDocument(Document &document, bool isOwnFile)
{
    // The new content is complete and on disk before the old file or its backup is touched.
    SafeFile file(document.m_sFile, [&document] { return inPlaceAccepted(document.m_sFile); });
    const Format &format = formatOfVersion(document.m_iFileFormatVersion);
    format.write(document.outline(), file);
    FileStamp stamp;
    file.flushToDisk([&](const QByteArray &content) {
        stamp.digest = ContentDigest(content);
        readBack(document, format, content);
    });
    if (isOwnFile && !mayReplaceFile(document))
        return false;
    const QString sBackup = backupName(file.target());
    // A file named .bak would be its own backup, and a protected backup is not to be touched.
    const bool bWanted = g_options.Backup && sBackup != file.target() && !isReadOnlyFile(sBackup);
    std::optional<ErrorNumber> failure;
    if (bWanted)
        failure = tryBackupStep([&] { file.keepOldFile(); });
    followerOfFiles().aboutToReplace(document, file.isInPlace());
    replaceFile(document, file);
    // The older backup goes only now: had the file not been replaced, it would still be the backup.
    if (bWanted && !failure)
        failure = tryBackupStep([&] { file.moveOldFileTo(sBackup); });
    stamp.identity = file.placed();
    document.takeFile(stamp);
    // Only now it is true that the file was saved.
    if (failure)
        document.tell({NoticeKind::NoBackup, u"The file was saved, but no backup of what it held before could be made "
                                             "as %1 (%2)."_s.arg(sBackup, errorDescription(*failure))});
    else
        document.dismiss(NoticeKind::NoBackup);
    return true;
}

// A document that was opened read-only and now has a file of its own can be edited.
void unlockSaved(Document &document)
{
    document.lookAtFileAgain();
    if (std::exchange(document.m_fileAccess, FileAccess::Writable) != FileAccess::ReadOnly)
        return;
    document.updateTextLock();
    if (DocumentView *view = document.view())
        view->trvOutline.setLabelEdit(optionalLabelEdit());
    tellOfLeftOutParts(document);
}

} // namespace

namespace modDoc
{

Document *DocInit(std::unique_ptr<Outline> outline)
{
    return procedure("modDoc DocInit", [&] { return &openUntitled(std::move(outline)); });
}

void DocNew()
{
    procedure("modDoc DocNew", [] { newDocument(); });
}

Document &newDocument(std::unique_ptr<Outline> outline)
{
    if (!outline)
        outline = std::make_unique<Outline>();
    g_fntDefaultOutlineFont.CopyTo(outline->outlineFont);
    g_fntDefaultTextFont.CopyTo(outline->textFont);
    Document &document = openUntitled(std::move(outline));
    DocumentView *view = document.view();
    if (view)
        view->trvOutline.setPaneVisible(false);
    document.setPaneFonts(g_fntDefaultOutlineFont, g_fntDefaultTextFont);
    document.history.forgetSaved();
    document.m_iFileFormatVersion = Document::nativeFormat;
    if (view) {
        view->trvOutline.setLabelEdit(optionalLabelEdit());
        view->trvOutline.setPaneVisible(true);
    }
    return document;
}

SaveOutcome DocSave(const QString &sFile)
{
    return procedure(saveName, [&] {
        Document *document = DocumentActive();
        return document ? save(*document, sFile) : SaveOutcome::Failed;
    });
}

SaveOutcome save(Document &document, const QString &sFile)
{
    const HourglassPointer hourglass;
    const BusyScope busy;
    const qint16 iVersion = DocDefaultVersionFromExt(sFile);
    const QString sOldFile = document.m_sFile;
    const qint16 iOldVersion = document.m_iFileFormatVersion;
    const bool isOwnFile = isSameFile(sOldFile, sFile);
    try {
        // Asked before anything else: whoever says no has the file, its backup and the document's name as they
        // were.
        if (!textFormatAccepted(document, iVersion))
            return SaveOutcome::Refused;
        if (isOwnFile && !mayReplaceFile(document))
            return SaveOutcome::Declined;
        if (!document.tree.root())
            throw RunTimeError(ErrorNumber::InvalidCall, u"%1: a document without entries, as %2"_s.arg(
                                                             errorDescription(ErrorNumber::InvalidCall), sFile));
        document.m_sFile = sFile;
        document.m_iFileFormatVersion = iVersion;
        if (!writeDocument(document, isOwnFile)) {
            document.m_sFile = sOldFile;
            document.m_iFileFormatVersion = iOldVersion;
            return SaveOutcome::Declined;
        }
    } catch (...) {
        document.m_sFile = sOldFile;
        document.m_iFileFormatVersion = iOldVersion;
        document.history.touch();
        document.note(u"The file %1 could not be saved"_s.arg(sFile));
        document.tell({NoticeKind::NotSaved, notSavedText(document, sFile), sFile});
        // Of a save before this one.
        document.dismiss(NoticeKind::NoBackup);
        throw;
    }
    document.dismiss(NoticeKind::NotSaved);
    // What was read has a file now, which holds all that is shown.
    document.dismiss(NoticeKind::NotReadWhole);
    document.dismiss(NoticeKind::Recovered);
    document.m_bSaveRefused = false;
    document.m_bFromOutline = iVersion == Document::nativeFormat;
    unlockSaved(document);
    document.setCaption(document.m_sFile);
    ports().recentFiles->UpdateMRUFile(document.m_sFile, false);
    document.note(savedText(document));
    followerOfFiles().fileWritten(document);
    return SaveOutcome::Saved;
}

qint16 DocDefaultVersionFromExt(const QString &sFile)
{
    return formatOfExtension(sFile).version;
}

} // namespace modDoc
