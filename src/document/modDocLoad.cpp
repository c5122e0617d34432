// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Reading a file into a new document window.

#include "document/modDoc.h"

#include "document/Document.h"
#include "document/DocumentWindow.h"
#include "document/FileNature.h"
#include "document/Globals.h"
#include "document/OutlinePane.h"
#include "document/Ports.h"
#include "document/SafeFile.h"
#include "document/TextPane.h"
#include "document/UnfinishedSaves.h"
#include "document/modNodes.h"

#include "util/ByteSink.h"
#include "util/Numbers.h"
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

qint16 fileFormatVersion(const QString &sFile, const QByteArray &buffer)
{
    const QString sStored = QString::fromLatin1(modDoc::DocLoadTag(buffer, "formatversion"));
    return Numbers::isNumeric(sStored) ? Numbers::toInt16(Numbers::toNumber(sStored))
                                       : modDoc::DocDefaultVersionFromExt(sFile);
}

void readOutline(Document &document, const QString &sFile, const QByteArray &buffer, LoadResult &result)
{
    document.m_iFileFormatVersion = fileFormatVersion(sFile, buffer);
    const BulkChange bulk(document.tree);
    if (document.m_iFileFormatVersion == Document::nativeFormat)
        ports().formats->readNative(document, buffer, result);
    else
        ports().formats->readPlainText(document, buffer);
}

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
void remarkOnOddities(const Document &document, const QString &sFile, const QByteArray &buffer, LoadResult &result)
{
    if (!result.remark.isEmpty())
        return;
    if (document.m_iFileFormatVersion != Document::nativeFormat) {
        if (modString::StringExtension(sFile) == u"qly")
            result.remark =
                u"read as plain text, because its format version is %1"_s.arg(document.m_iFileFormatVersion);
        return;
    }
    ComparingSink sink(buffer);
    ports().formats->writeNative(document, sink);
    if (!sink.same())
        result.remark = u"the file differs from what saving it unchanged would write"_s;
}

void applyFlags(Document &document, const LoadResult &result)
{
    const BulkChange bulk(document.tree);
    const auto flagged = [](const std::vector<bool> &flags, int index) {
        return static_cast<size_t>(index) < flags.size() && flags[static_cast<size_t>(index)];
    };
    const EntryCollection &entries = document.tree.collection();
    for (int index = 1; index <= entries.count(); ++index) {
        Entry *entry = entries.at(index);
        if (flagged(result.visible, index)) {
            // An open ancestor was opened with all of its own, so there the climb may end.
            for (Entry *ancestor = entry->parent(); ancestor && !ancestor->expanded(); ancestor = ancestor->parent())
                document.tree.setExpanded(ancestor, true);
        }
        if (flagged(result.tagged, index))
            document.tree.setTagged(entry, true);
    }
}

void markReadOnly(Document &document)
{
    document.window.setCaption(document.m_sFile + u" (read-only)"_s);
    document.trvOutline.setLabelEdit(LabelEditMode::tvwManual);
    document.txtRTF.setLocked(true);
}

void showLoaded(Document &document, Entry *selected)
{
    document.trvOutline.setPaneVisible(true);
    // After the read-only step on purpose: with the option on, a read-only document has automatic label editing again.
    document.trvOutline.setLabelEdit(optionalLabelEdit());
    if (selected)
        modNodes::NodeSelectFull(document, selected);
    else
        modNodes::NodeTextGet(document, nullptr);
}

// Leaves the window with what was read and without its file's name, so that a save cannot overwrite the file.
void keepWhatWasRead(Document &document, const QString &sFile, const LoadResult &result)
{
    document.m_sFile.clear();
    document.m_iFileFormatVersion = Document::nativeFormat;
    applyFlags(document, result);
    showLoaded(document, document.tree.root());
    document.window.autoFitSplit();
    ports().commands->MenuEnableDynamic();
    document.notice = u"The file %1 could not be read whole"_s.arg(sFile);
    ports().commands->UpdateStatusBarText(document.notice);
    const QString cause = result.damage.isEmpty() ? currentError().description : result.damage;
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

// A window that is a look at a file takes on the caption, and not the file's name and lock.
void loadInto(Document &document, const QString &sFile, LoadResult &result, const QString &sCaption)
{
    document.trvOutline.setPaneVisible(false);
    document.m_sFile = sFile;
    const QByteArray buffer = readWholeFile(sFile);
    readOutline(document, sFile, buffer, result);
    if (result.damage.isEmpty())
        result.damage = strangeness(document.m_iFileFormatVersion, buffer);
    // All that may fail comes before the window takes on the file's name and its lock: a window that keeps only what
    // could be read has neither.
    if (!result.damage.isEmpty())
        throw RunTimeError(ErrorNumber::InvalidFileFormat,
                           u"%1: %2: %3"_s.arg(errorDescription(ErrorNumber::InvalidFileFormat), sFile, result.damage));
    Entry *selected = document.tree.root();
    if (!result.selectedKey.isEmpty())
        selected = document.tree.itemByKey(result.selectedKey);
    document.m_bFromOutline = document.m_iFileFormatVersion == Document::nativeFormat;
    if (!sCaption.isEmpty())
        document.m_sFile.clear();
    document.window.setCaption(sCaption.isEmpty() ? sFile : sCaption);
    document.m_fileAccess = document.bReadOnly() ? FileAccess::ReadOnly : FileAccess::Writable;
    if (document.m_fileAccess == FileAccess::ReadOnly)
        markReadOnly(document);
    applyFlags(document, result);
    showLoaded(document, selected);
    remarkOnOddities(document, sFile, buffer, result);
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
    Document *document = modDoc::DocInit();
    if (!document)
        return false;
    LoadResult result;
    {
        const BusyScope busy;
        try {
            loadInto(*document, sFile, result, sCaption);
        } catch (...) {
            keepWhatWasRead(*document, sFile, result);
            throw;
        }
    }
    if (!result.remark.isEmpty())
        remark(u"%1: %2"_s.arg(sFile, result.remark));
    if (result.cutLabels > 0)
        tellOfCutLabels(*document, result.cutLabels);
    if (document->m_iFileFormatVersion == Document::nativeFormat)
        document->checkTexts();
    document->window.autoFitSplit();
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

QByteArray DocLoadTag(const QByteArray &buffer, const QByteArray &tagName)
{
    const QByteArray opener = recordOpener.toByteArray() + tagName + ' ';
    const qsizetype found = buffer.indexOf(opener);
    qsizetype end = 0;
    QByteArray value;
    if (found >= 0)
        DocLoadTagAtPosition(buffer, tagName, found + 1, end, value);
    return value;
}

bool DocLoadTagAtPosition(const QByteArray &buffer, const QByteArray &tagName, qsizetype position,
                          qsizetype &endPosition, QByteArray &value)
{
    value.clear();
    const QByteArrayView rest = QByteArrayView(buffer).sliced(qBound(qsizetype(0), position - 1, buffer.size()));
    const qsizetype openerSize = recordOpener.size() + tagName.size() + 1;
    const bool here = rest.startsWith(recordOpener) && rest.sliced(recordOpener.size()).startsWith(tagName) &&
                      rest.size() >= openerSize && rest[openerSize - 1] == ' ';
    if (!here)
        return false;
    const qsizetype brace = rest.indexOf('}');
    if (brace < 0) {
        // Cut off within the value: it ends where the bytes do.
        endPosition = buffer.size() + 1;
        value = rest.sliced(openerSize).toByteArray();
        return true;
    }
    endPosition = position + brace;
    value = brace >= openerSize ? rest.sliced(openerSize, brace - openerSize).toByteArray() : QByteArray();
    return true;
}

} // namespace modDoc
