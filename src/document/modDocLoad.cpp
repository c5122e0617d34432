// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Reading a file into a new document window.

#include "document/modDoc.h"

#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/FileNature.h"
#include "document/Globals.h"
#include "document/OutlinePane.h"
#include "document/Ports.h"
#include "document/SafeFile.h"
#include "document/TextPane.h"
#include "document/UnfinishedSaves.h"
#include "document/modNodes.h"
#include "formats/Format.h"

#include "util/ByteSink.h"
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

// Why what is shown is something other than what the file is, in words; empty for an outline and for plain text.
QString strangeness(qint16 iVersion, const QByteArray &buffer)
{
    if (iVersion == Document::nativeFormat)
        return QString();
    if (iVersion != Document::plainTextFormat)
        return u"it is an outline of the format version %1, which this program does not know"_s.arg(iVersion);
    return whyNoPlainText(buffer);
}

// Compares what is written with bytes at hand.
class ComparingSink final : public ByteSink
{
public:
    explicit ComparingSink(QByteArrayView expected)
        : m_rest(expected)
    {
    }

    void write(QByteArrayView bytes) override
    {
        m_same = m_same && m_rest.startsWith(bytes);
        if (m_same)
            m_rest = m_rest.sliced(bytes.size());
    }

    bool same() const { return m_same && m_rest.isEmpty(); }

private:
    QByteArrayView m_rest;
    bool m_same = true;
};

// A native file that was read whole would be saved as the same bytes. One that would not was made by another hand or
// has come to harm in a way that still reads as a document: the log then says so.
void remarkOnOddities(const Document &document, const QString &sFile, const QByteArray &buffer, ReadOutline &result)
{
    if (!result.remark.isEmpty())
        return;
    if (document.m_iFileFormatVersion != Document::nativeFormat) {
        if (formatOfExtension(sFile).version == Document::nativeFormat)
            result.remark =
                u"read as plain text, because its format version is %1"_s.arg(document.m_iFileFormatVersion);
        return;
    }
    ComparingSink sink(buffer);
    formatOfVersion(document.m_iFileFormatVersion).write(*document.outline, sink);
    if (!sink.same())
        result.remark = u"the file differs from what saving it unchanged would write"_s;
}

// A file that is being opened.
struct OpenedFile {
    QString sFile;
    QByteArray buffer;
    qint16 iVersion = Document::nativeFormat;
    ReadOutline read;
};

// Reads as far as it goes. What keeps it from being the whole file is the failure of what was read.
OpenedFile readFile(const QString &sFile)
{
    OpenedFile file;
    file.sFile = sFile;
    ReadOutline &read = file.read;
    try {
        file.buffer = readWholeFile(sFile);
        file.iVersion = formatVersionOf(sFile, file.buffer);
        read = formatOfVersion(file.iVersion).read(file.buffer);
        if (read.failure)
            return file;
        if (read.damage.isEmpty())
            read.damage = strangeness(file.iVersion, file.buffer);
        if (!read.damage.isEmpty())
            throw RunTimeError(
                ErrorNumber::InvalidFileFormat,
                u"%1: %2: %3"_s.arg(errorDescription(ErrorNumber::InvalidFileFormat), sFile, read.damage));
    } catch (...) {
        read.failure = std::current_exception();
    }
    return file;
}

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
    if (file.iVersion == Document::nativeFormat)
        document.setPaneFonts(document.m_fntOutlineFont, document.m_fntOutlineFont);
    document.m_iFileFormatVersion = Document::nativeFormat;
    showLoaded(document, document.tree.root());
    document.autoFitSplit();
    ports().commands->MenuEnableDynamic();
    document.notice = u"The file %1 could not be read whole"_s.arg(file.sFile);
    ports().commands->UpdateStatusBarText(document.notice);
    const QString cause = file.read.damage.isEmpty() ? currentError().description : file.read.damage;
    document.tell({NoticeKind::NotReadWhole, u"%1: %2. What was read is shown here without the file's name, so that "
                                             "saving it does not replace the file."_s.arg(document.notice, cause)});
}

// The format ends a label at its first brace. The rest is still in the file, but no longer once it is saved over.
void tellOfCutLabels(Document &document, int cutLabels)
{
    const QString which = cutLabels == 1 ? u"A label of the file holds a \"}\" and is"_s
                                         : u"%1 labels of the file hold a \"}\" and are"_s.arg(cutLabels);
    document.tell(
        {NoticeKind::NotReadWhole, which + u" shown up to it only. Saving the document gives up the rest."_s});
}

// A document that is a look at a file takes on the caption, and not the file's name and lock.
void takeOn(Document &document, const OpenedFile &file, const QString &sCaption)
{
    document.m_iFileFormatVersion = file.iVersion;
    document.m_bFromOutline = file.iVersion == Document::nativeFormat;
    // The base font of the texts is the outline's by design; the text font stays what new texts are given.
    if (file.iVersion == Document::nativeFormat)
        document.setPaneFonts(document.m_fntOutlineFont, document.m_fntOutlineFont);
    if (sCaption.isEmpty())
        document.m_sFile = file.sFile;
    document.setCaption(sCaption.isEmpty() ? file.sFile : sCaption);
    document.m_fileAccess = document.bReadOnly() ? FileAccess::ReadOnly : FileAccess::Writable;
}

void showWhole(Document &document, OpenedFile &file, const QString &sCaption)
{
    takeOn(document, file, sCaption);
    if (document.m_fileAccess == FileAccess::ReadOnly)
        markReadOnly(document);
    showLoaded(document, document.tree.selected());
    remarkOnOddities(document, file.sFile, file.buffer, file.read);
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
        ports().commands->MenuEnableDynamic();
        ports().commands->UpdateStatusBarText(u"The file %1 could not be found"_s.arg(sFile));
        return true;
    }
    const HourglassPointer hourglass;
    ports().commands->UpdateStatusBarText(QString());
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
    // Only now it is known whether the document may be written.
    ports().commands->MenuEnable(iDocumentCount);
    ports().commands->MenuEnableDynamic();
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

bool DocLoadUnnamed(const QString &sFile, const QString &sCaption)
{
    return procedure(routineName, [&] { return load(sFile, sCaption); });
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
