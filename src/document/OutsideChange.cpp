// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/OutsideChange.h"

#include "document/Document.h"
#include "document/FileWitness.h"
#include "document/Ports.h"
#include "document/modDoc.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace
{

// What cannot be read is the same as long as nobody has written it.
bool isSameVersion(const std::optional<FileStamp> &one, const FileStamp &other)
{
    return one && (one->hasContentOf(other) || (one->identity && one->identity == other.identity));
}

// The last copy must not be closed without a question.
void loseFile(Document &document)
{
    FileRecord &record = document.fileRecord;
    record.theirs.reset();
    document.dismiss(NoticeKind::FileChanged);
    if (std::exchange(record.isGone, true))
        return;
    if (!document.m_bDataChanged()) {
        record.lostAt = document.history.position();
        document.history.forgetSaved();
    }
    document.tell({NoticeKind::FileGone, u"The file %1 is not there any more. What it held is in this window only: "
                                         "saving writes it again."_s.arg(document.m_sFile)});
}

void findFileAgain(Document &document)
{
    if (!std::exchange(document.fileRecord.isGone, false))
        return;
    // What was undone meanwhile is what it was, too.
    if (std::exchange(document.fileRecord.lostAt, std::nullopt) == document.history.position() ||
        !document.m_bDataChanged())
        document.history.markSaved();
    document.dismiss(NoticeKind::FileGone);
}

void tellOfTheirs(Document &document, const FileStamp &theirs)
{
    FileRecord &record = document.fileRecord;
    if (isSameVersion(record.conceded, theirs) || isSameVersion(record.theirs, theirs))
        return;
    record.theirs = theirs;
    document.tell({NoticeKind::FileChanged, u"The file %1 has changed on the disk since this window read or saved it. "
                                            "What it holds now is not shown here."_s.arg(document.m_sFile)});
}

} // namespace

void lookForOutsideChange(Document &document)
{
    FileRecord &record = document.fileRecord;
    const DocumentNotice *notSaved = document.notice(NoticeKind::NotSaved);
    if (notSaved && notSaved->file.isEmpty() && !document.m_sFile.isEmpty() && !document.bReadOnly())
        document.dismiss(NoticeKind::NotSaved);
    if (!record.own)
        return;
    const FileLook look = lookAtFile(document.m_sFile, *record.own);
    if (look.fate == FileFate::Gone) {
        loseFile(document);
        return;
    }
    findFileAgain(document);
    if (look.fate == FileFate::Changed) {
        tellOfTheirs(document, look.now);
        return;
    }
    record = {look.now, {}, {}, false, {}};
    document.dismiss(NoticeKind::FileChanged);
}

bool mayReplaceFile(Document &document)
{
    FileRecord &record = document.fileRecord;
    if (!record.own)
        return true;
    const FileLook look = lookAtFile(document.m_sFile, *record.own);
    if (look.fate == FileFate::Same)
        record.own = look.now;
    if (look.fate != FileFate::Changed || isSameVersion(record.conceded, look.now))
        return true;
    const QString question =
        followerOfFiles().willKeep(document)
            ? u"The file %1 has changed on the disk since this window read or saved it. Do you want to save over it? "
              "What was changed there is kept as a version of it, and can be brought back."_s
            : u"The file %1 has changed on the disk since this window read or saved it, and what was changed there "
              "would be lost. Do you want to save over it?"_s;
    if (!userAgrees(question.arg(document.m_sFile)))
        return false;
    record.conceded = look.now;
    return true;
}

void keepMine(Document &document)
{
    document.fileRecord.conceded = std::exchange(document.fileRecord.theirs, std::nullopt);
    // What it is stands nowhere else now, whatever is undone.
    document.history.forgetSaved();
    document.dismiss(NoticeKind::FileChanged);
}

void openTheirsBeside(const Document &document)
{
    modDoc::DocLoadUnnamed(document.m_sFile, document.m_sFile + u" (on the disk)"_s);
}
