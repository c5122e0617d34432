// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/modNodes.h"
#include "model/Entry.h"
#include "model/StoredText.h"
#include "platform/RichTextBox.h"
#include "rtf/Rtf.h"
#include "search/modSearch.h"
#include "support/FakeDocument.h"
#include "support/FakePorts.h"
#include "support/RawOutline.h"

// A document with a real text pane that is the active one, and a search that begins with nothing set.
class SearchFixture
{
public:
    SearchFixture()
        : view(document, outline, box, window)
    {
        ports().windows = &windows;
        windows.document = &document;
        g_sSearchFind.clear();
        g_sSearchReplace.clear();
        g_sSearchWhere.clear();
        g_sSearchScope = QStringLiteral("0");
        g_bSearchMatchCase = g_bSearchWholeWord = g_bSearchBackwards = false;
        g_iSearchMode = 1;
    }

    ~SearchFixture()
    {
        g_iSearchMode = 0;
        windows.document = nullptr;
    }

    SearchFixture(const SearchFixture &) = delete;
    SearchFixture &operator=(const SearchFixture &) = delete;

    static QByteArray rtf(const QString &text)
    {
        QByteArray bytes("{\\rtf1 ");
        for (const QChar c : text)
            bytes += c == u'\n' ? QByteArray("\\par ") : QByteArray(1, c.toLatin1());
        return bytes + "}";
    }

    // Adds an entry behind the others of a parent; null for the root.
    Entry *add(Entry *parent, const QString &label, const QString &text)
    {
        Entry *entry = rawOutline(document).tree.insert(Relationship::tvwChild, parent);
        rawOutline(document).tree.setLabel(entry, label);
        rawOutline(document).tree.setStoredText(entry, NodeTextCompressIfRequired(rtf(text)));
        return entry;
    }

    QString textOf(const Entry *entry) const
    {
        return rtf::toPlainText(NodeTextDecompressIfRequired(document.tree.storedText(entry)));
    }

    void show(const QString &text) { box.setTextRTF(rtf(text)); }

    void select(int start, int length)
    {
        box.setSelStart(start);
        box.setSelLength(length);
    }

    class OneDocument final : public DocumentWindows
    {
    public:
        Document &createDocument(std::unique_ptr<Outline>) override { qFatal("no document is made here"); }

        Document *activeDocument() const override { return document; }

        std::vector<Document *> documents() const override { return {}; }

        void closeMainWindow() override {}

        void say(const QString &) override {}

        Document *document = nullptr;
    };

    FakePorts fake;
    RichTextBox box;
    FakeOutlinePane outline;
    FakeDocumentWindow window;
    Document document;
    DocumentView view;
    OneDocument windows;
};
