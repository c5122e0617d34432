// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/OpenedFile.h"

#include "document/Document.h"
#include "document/FileNature.h"
#include "document/SafeFile.h"

#include "util/ByteSink.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"

using namespace Qt::StringLiterals;

namespace
{

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

} // namespace

OpenedFile readFile(const QString &sFile)
{
    // Looked at first: what is written to it from now on shows later.
    const std::optional<FileIdentity> identity = identityOf(sFile);
    OpenedFile file;
    try {
        file = readContent(sFile, readWholeFile(sFile));
    } catch (...) {
        file.sFile = sFile;
        file.read.failure = std::current_exception();
    }
    file.stamp.identity = identity;
    return file;
}

OpenedFile readContent(const QString &sFile, const QByteArray &content)
{
    OpenedFile file;
    file.sFile = sFile;
    file.buffer = content;
    ReadOutline &read = file.read;
    try {
        file.stamp.digest = ContentDigest(file.buffer);
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

void remarkOnOddities(const Document &document, OpenedFile &file)
{
    ReadOutline &result = file.read;
    if (!result.remark.isEmpty())
        return;
    if (document.m_iFileFormatVersion != Document::nativeFormat) {
        if (formatOfExtension(file.sFile).version == Document::nativeFormat)
            result.remark =
                u"read as plain text, because its format version is %1"_s.arg(document.m_iFileFormatVersion);
        return;
    }
    ComparingSink sink(file.buffer);
    formatOfVersion(document.m_iFileFormatVersion).write(document.outline(), sink);
    if (!sink.same())
        result.remark = u"the file differs from what saving it unchanged would write"_s;
}

QString causeOfFailure(const OpenedFile &file)
{
    return file.read.damage.isEmpty() ? currentError().description : file.read.damage;
}

// The format ends a label at its first brace. The rest is still in the file, but no longer once it is saved over.
void tellOfCutLabels(Document &document, int cutLabels)
{
    const QString which = cutLabels == 1 ? u"A label of the file holds a \"}\" and is"_s
                                         : u"%1 labels of the file hold a \"}\" and are"_s.arg(cutLabels);
    document.tell(
        {NoticeKind::NotReadWhole, which + u" shown up to it only. Saving the document gives up the rest."_s});
}
