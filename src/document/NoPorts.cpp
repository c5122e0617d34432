// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/NoPorts.h"

#include "document/FileWitness.h"
#include "model/Outline.h"
#include "util/RunTimeError.h"

namespace
{

class NoWindows final : public DocumentWindows
{
public:
    Document &createDocument(std::unique_ptr<Outline>) override { throw RunTimeError(ErrorNumber::InvalidCall); }

    Document *activeDocument() const override { return nullptr; }

    std::vector<Document *> documents() const override { return {}; }

    void closeMainWindow() override {}

    void say(const QString &) override {}
};

class NoDialogs final : public Dialogs
{
public:
    Answer ask(const QString &) override { return Answer::Cancel; }

    Answer askPlainly(const QString &, Answer) override { return Answer::Cancel; }

    void inform(const QString &) override {}

    void informPlainly(const QString &) override {}

    void warn(const QString &) override {}

    std::optional<QString> askOpenName(const FileDialogRequest &) override { return std::nullopt; }

    std::optional<QString> askSaveName(const FileDialogRequest &) override { return std::nullopt; }

    std::optional<FontAttributes> askFont(const FontDialogRequest &) override { return std::nullopt; }
};

class NoPointer final : public MousePointer
{
public:
    void setHourglass(bool) override {}
};

class NoRecentFiles final : public RecentFiles
{
public:
    void UpdateMRUFile(const QString &, bool) override {}

    QString itemCaption(int) const override { return {}; }
};

class NoClipboard final : public Clipboard
{
public:
    void clear() override {}

    QString text() const override { return {}; }

    void setText(const QString &) override {}

    QByteArray richText() const override { return {}; }

    void setRichText(const QByteArray &) override {}

    QByteArray picture() const override { return {}; }
};

class PlainClock final : public Clock
{
public:
    QDateTime now() const override { return QDateTime::currentDateTime(); }
};

class NoPrinting final : public Printing
{
public:
    void print(const PrintExtent &) override {}

    void preview(const PrintExtent &) override {}

    void setUp() override {}
};

class NoFollower final : public FileWitness
{
public:
    void fileRead(const Document &) override {}

    void fileWritten(Document &) override {}

    void aboutToReplace(const Document &, bool) override {}

    bool willKeep(const Document &) override { return false; }

    void recovered(const Document &, const QString &, const QDateTime &) override {}
};

} // namespace

Ports portsOfNobody()
{
    static NoWindows windows;
    static NoDialogs dialogs;
    static NoPointer pointer;
    static NoRecentFiles recentFiles;
    static NoClipboard clipboard;
    static const PlainClock clock;
    static NoPrinting printing;
    static NoFollower files;
    return {&windows, &dialogs, &pointer, &recentFiles, &clipboard, &clock, &printing, &files};
}
