// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/Globals.h"
#include "document/NoPorts.h"
#include "support/FakeDocument.h"
#include "util/RunTimeError.h"
#include "util/SettingsStore.h"

#include <QTest>

#include <algorithm>
#include <deque>
#include <map>
#include <memory>
#include <set>
#include <string_view>

// Scripted ports: a test sets the answers beforehand and reads afterwards what was asked.

class FakeDocumentWindows final : public DocumentWindows
{
public:
    Document &createDocument(std::unique_ptr<Outline> outline = nullptr) override
    {
        auto fake = std::make_unique<FakeDocument>(std::move(outline));
        FakeDocument *opened = fake.get();
        opened->window.onActivate = [this, opened] { active = opened; };
        opened->window.onClose = [this, opened] { return close(opened); };
        open.push_back(std::move(fake));
        active = opened;
        ++iDocumentCount;
        if (onCreate)
            onCreate();
        return opened->document;
    }

    Document *activeDocument() const override { return active ? &active->document : nullptr; }

    std::vector<Document *> documents() const override
    {
        std::vector<Document *> all;
        for (const auto &fake : open)
            all.push_back(&fake->document);
        return all;
    }

    void closeMainWindow() override { ++timesMainWindowClosed; }

    void say(const QString &text) override { said = text; }

    // The fake behind a document, for what only the fake knows (its panes' counters).
    FakeDocument &fakeOf(const Document &document)
    {
        const auto found =
            std::find_if(open.begin(), open.end(), [&](const auto &fake) { return &fake->document == &document; });
        Q_ASSERT(found != open.end());
        return **found;
    }

    // What happens when a window has opened.
    std::function<void()> onCreate;
    std::vector<std::unique_ptr<FakeDocument>> open;
    FakeDocument *active = nullptr;
    int timesMainWindowClosed = 0;
    // What is said while no document is active.
    QString said;
    // Whether a window that is asked to close does so.
    bool closable = true;

private:
    bool close(FakeDocument *closing)
    {
        if (!closable)
            return false;
        if (active == closing)
            active = nullptr;
        open.erase(std::find_if(open.begin(), open.end(), [&](const auto &fake) { return fake.get() == closing; }));
        if (!active && !open.empty())
            active = open.back().get();
        --iDocumentCount;
        return true;
    }
};

// Gives the scripted answers one after the other. A question that no answer was set for fails the test and is
// cancelled.
class FakeDialogs final : public Dialogs
{
public:
    Answer ask(const QString &question) override
    {
        questions.append(question);
        if (onAsk)
            onAsk();
        return take(answers, question, Answer::Cancel);
    }

    Answer askPlainly(const QString &question, Answer preset) override
    {
        plainQuestions.append(question);
        presets.push_back(preset);
        return take(answers, question, Answer::Cancel);
    }

    void inform(const QString &text) override { informations.append(text); }

    void informPlainly(const QString &text) override { notices.append(text); }

    void warn(const QString &text) override { warnings.append(text); }

    std::optional<QString> askOpenName(const FileDialogRequest &request) override
    {
        openRequests.push_back(request);
        return take(openNames, QStringLiteral("open dialog"), std::optional<QString>());
    }

    std::optional<QString> askSaveName(const FileDialogRequest &request) override
    {
        saveRequests.push_back(request);
        return take(saveNames, QStringLiteral("save dialog"), std::optional<QString>());
    }

    std::optional<FontAttributes> askFont(const FontDialogRequest &request) override
    {
        fontRequests.push_back(request);
        return take(fonts, QStringLiteral("font dialog"), std::optional<FontAttributes>());
    }

    // What happens while a question stands.
    std::function<void()> onAsk;
    std::deque<Answer> answers;
    std::deque<std::optional<QString>> openNames;
    std::deque<std::optional<QString>> saveNames;
    std::deque<std::optional<FontAttributes>> fonts;
    QStringList questions;
    QStringList plainQuestions;
    QStringList informations;
    std::vector<Answer> presets; // of the plain questions
    QStringList notices;
    QStringList warnings;
    std::vector<FileDialogRequest> openRequests;
    std::vector<FileDialogRequest> saveRequests;
    std::vector<FontDialogRequest> fontRequests;

private:
    template <typename T>
    static T take(std::deque<T> &scripted, const QString &asked, const T &otherwise)
    {
        if (scripted.empty()) {
            QTest::qFail(qPrintable(QStringLiteral("No answer was set for: ") + asked), __FILE__, __LINE__);
            return otherwise;
        }
        const T answer = scripted.front();
        scripted.pop_front();
        return answer;
    }
};

class FakeMousePointer final : public MousePointer
{
public:
    void setHourglass(bool on) override
    {
        hourglass = on;
        if (on)
            ++timesHourglass;
    }

    bool hourglass = false;
    int timesHourglass = 0;
};

class FakeRecentFiles final : public RecentFiles
{
public:
    struct Update {
        QString file;
        bool remove;
    };

    void UpdateMRUFile(const QString &sFile, bool bRemove) override { updates.push_back({sFile, bRemove}); }

    QString itemCaption(int iIndex) const override { return captions.value(iIndex - 1); }

    std::vector<Update> updates;
    QStringList captions;
};

class FakeClipboard final : public Clipboard
{
public:
    void clear() override
    {
        held.clear();
        heldRich.clear();
    }

    QString text() const override { return held; }

    void setText(const QString &text) override
    {
        clear();
        held = text;
    }

    QByteArray richText() const override { return heldRich; }

    void setRichText(const QByteArray &rtf) override
    {
        clear();
        heldRich = rtf;
    }

    QByteArray picture() const override { return heldPicture; }

    QString held;
    QByteArray heldRich;
    QByteArray heldPicture;
};

// A clock that stands still.
class FakeClock final : public Clock
{
public:
    QDateTime now() const override { return moment; }

    QDateTime moment{QDate(2026, 3, 4), QTime(15, 6, 7)};
};

// A settings store in memory. A section lists its decimal keys in numeric order, as the real one does.
class FakeSettingsStore final : public SettingsStore
{
public:
    std::optional<QString> value(const QString &section, const QString &key) const override
    {
        const auto found = values.find({section, key});
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }

    void setValue(const QString &section, const QString &key, const QString &value) override
    {
        if (failing)
            throw RunTimeError(ErrorNumber::PathFileAccess);
        values[{section, key}] = value;
        written.append(section + u'/' + key);
    }

    Section section(const QString &section) const override
    {
        Section found;
        for (const auto &[place, value] : values) {
            if (place.first == section)
                found.emplace_back(place.second, value);
        }
        std::stable_sort(found.begin(), found.end(),
                         [](const auto &a, const auto &b) { return a.first.toLongLong() < b.first.toLongLong(); });
        return found;
    }

    void removeValue(const QString &section, const QString &key) override { values.erase({section, key}); }

    void flush() override
    {
        if (failing)
            throw RunTimeError(ErrorNumber::PathFileAccess);
        ++timesFlushed;
    }

    std::map<std::pair<QString, QString>, QString> values;
    // "section/key" of each value written, in the order of writing.
    QStringList written;
    int timesFlushed = 0;
    // Whether writing fails, as on a full disk.
    bool failing = false;
};

// Notes what it is asked to print.
class FakePrinting final : public Printing
{
public:
    struct Call {
        QString name;
        PrintExtent extent;
    };

    void print(const PrintExtent &extent) override { calls.push_back({QStringLiteral("print"), extent}); }

    void preview(const PrintExtent &extent) override { calls.push_back({QStringLiteral("preview"), extent}); }

    void setUp() override { calls.push_back({QStringLiteral("setUp"), {}}); }

    std::vector<Call> calls;
};

// All ports as fakes, registered while it lives, with the core's global state as it is at the start of the program.
struct FakePorts {
    FakePorts()
        : m_before(ports())
    {
        resetGlobals();
        ports() = {&windows, &dialogs, &pointer, &recentFiles, &clipboard, &clock, &printing, portsOfNobody().files};
    }

    ~FakePorts()
    {
        windows.open.clear();
        ports() = m_before;
        resetGlobals();
    }

    FakePorts(const FakePorts &) = delete;
    FakePorts &operator=(const FakePorts &) = delete;

    // What a status bar would say.
    QString statusText() const
    {
        const Document *document = ports().windows->activeDocument();
        if (!document)
            return windows.said;
        const Entry *selected = document->tree.selected();
        return document->said().value_or(selected ? selected->label() : QString());
    }

    FakeDocumentWindows windows;
    FakeDialogs dialogs;
    FakeMousePointer pointer;
    FakeRecentFiles recentFiles;
    FakeClipboard clipboard;
    FakeClock clock;
    FakePrinting printing;

private:
    static void resetGlobals()
    {
        g_options = Options();
        g_fntDefaultOutlineFont = clsFont();
        g_fntDefaultTextFont = clsFont();
        bBusy = false;
        iActionDepth = 0;
        iDocumentCount = 0;
    }

    Ports m_before;
};
