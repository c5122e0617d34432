// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/modDoc.h"

#include "model/Document.h"
#include "model/DocumentWindow.h"
#include "model/Globals.h"
#include "model/OutlinePane.h"
#include "model/Ports.h"
#include "model/SafeFile.h"
#include "model/TextPane.h"

#include "util/Numbers.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"
#include "util/modString.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace
{

void applyFont(const clsFont &font, OutlinePane &pane)
{
    QFont platformFont = pane.Font();
    font.SetFont(platformFont);
    pane.setFont(platformFont);
}

void applyFont(const clsFont &font, TextPane &pane)
{
    QFont platformFont = pane.Font();
    font.SetFont(platformFont);
    pane.setFont(platformFont);
}

// The backup's name: the same path with the extension "bak".
QString backupName(const QString &sFile)
{
    return modString::StringWithoutExtension(sFile) + u".bak"_s;
}

bool isReadOnlyFile(const QString &sFile)
{
    const QFileInfo info(sFile);
    return info.exists() && (!info.permission(QFileDevice::WriteOwner) || !info.isWritable());
}

void makeBackup(SafeFile &file)
{
    const QString sBackup = backupName(file.target());
    // A file named .bak would be its own backup, and a protected backup is not to be touched.
    if (!g_options.Backup || sBackup == file.target() || isReadOnlyFile(sBackup) || QFileInfo(sBackup).isDir())
        return;
    file.moveOldFileTo(sBackup);
}

bool textFormatAccepted(const Document &document)
{
    if (document.m_iFileFormatVersion != Document::plainTextFormat || document.tree.entryCount() <= 1)
        return true;
    return ports().dialogs->ask(
               u"Warning - you are saving this document in text format.  Although the text itself will be retained, "
               "any rich text formatting and organisation into entries will be lost if the file is reloaded.  Normally "
               "you should save the file as text only if you wish to load it into another application that does not "
               "recognise the native formatting.  Do you want to continue?"_s) == Answer::Yes;
}

// Of the error being handled.
QString notSavedText(const QString &sFile)
{
    const auto number = static_cast<ErrorNumber>(currentError().number);
    const bool folderGone = number == ErrorNumber::FileNotFound || number == ErrorNumber::PathNotFound;
    const QString reason = folderGone ? u"there is no such folder"_s : errorDescription(number);
    return u"The file %1 could not be saved: %2. What you changed is in this window only."_s.arg(sFile, reason);
}

SaveOutcome writeDocument(const Document &document)
{
    // The new content is complete and on disk before the old file or its backup is touched.
    SafeFile file(document.m_sFile);
    if (document.m_iFileFormatVersion == Document::nativeFormat)
        ports().formats->writeNative(document, file);
    else
        ports().formats->writePlainText(document, file);
    file.flushToDisk();
    makeBackup(file);
    if (!textFormatAccepted(document))
        return SaveOutcome::Refused;
    file.replace();
    return SaveOutcome::Saved;
}

} // namespace

namespace modDoc
{

Document *DocInit()
{
    return procedure("modDoc DocInit", [] {
        Document &document = ports().windows->createDocument();
        document.window.setCaption(u"Document %1"_s.arg(iDocumentCount));
        return &document;
    });
}

void DocNew()
{
    procedure("modDoc DocNew", [] {
        const FailureScope failures;
        Document *document = DocInit();
        ports().commands->UpdateStatusBarText(QString());
        document->trvOutline.setPaneVisible(false);
        applyFont(g_fntDefaultOutlineFont, document->trvOutline);
        applyFont(g_fntDefaultTextFont, document->txtRTF);
        g_fntDefaultOutlineFont.CopyTo(document->m_fntOutlineFont);
        g_fntDefaultTextFont.CopyTo(document->m_fntTextFont);
        document->m_bDataChanged = true;
        document->m_iFileFormatVersion = Document::nativeFormat;
        document->trvOutline.setLabelEdit(g_options.AutoLabelEdit ? LabelEditMode::tvwAutomatic
                                                                  : LabelEditMode::tvwManual);
        document->trvOutline.setPaneVisible(true);
        ports().commands->MenuEnableDynamic();
    });
}

SaveOutcome DocSave(const QString &sFile)
{
    return procedure("modDoc DocSave", [&] {
        Document *document = DocumentActive();
        if (!document)
            return SaveOutcome::Failed;
        const HourglassPointer hourglass;
        const BusyScope busy;
        const QString sOldFile = document->m_sFile;
        const qint16 iOldVersion = document->m_iFileFormatVersion;
        SaveOutcome outcome = SaveOutcome::Failed;
        try {
            const FailureScope failures;
            document->m_sFile = sFile;
            document->m_iFileFormatVersion = Numbers::toInt16(Numbers::toNumber(DocDefaultVersionFromExt(sFile)));
            outcome = writeDocument(*document);
        } catch (...) {
            document->m_sFile = sOldFile;
            document->m_iFileFormatVersion = iOldVersion;
            document->m_bDataChanged = true;
            ports().commands->MenuEnableDynamic();
            document->notice = u"The file %1 could not be saved"_s.arg(sFile);
            ports().commands->UpdateStatusBarText(document->notice);
            document->tell({NoticeKind::NotSaved, notSavedText(sFile), sFile});
            throw;
        }
        if (outcome != SaveOutcome::Saved)
            return outcome;
        if (!document->notice.isEmpty()) {
            document->notice.clear();
            ports().commands->UpdateStatusBarText(QString());
            ports().commands->UpdateStatusBar(document->tree.selected());
        }
        document->dismiss(NoticeKind::NotSaved);
        document->window.setCaption(document->m_sFile);
        ports().commands->MenuEnableDynamic();
        ports().recentFiles->UpdateMRUFile(document->m_sFile, false);
        return outcome;
    });
}

QString DocDefaultVersionFromExt(const QString &sFile)
{
    return modString::StringExtension(sFile) == u"qly" ? u"1"_s : u"-1"_s;
}

} // namespace modDoc
