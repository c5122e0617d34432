// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "outline/LiteralOutline.h"
#include "support/FakeDocument.h"
#include "support/ShownRows.h"

#include "commands/Dispatcher.h"
#include "document/TextPane.h"
#include "model/StoredText.h"
#include "platform/TreeView.h"
#include "rtf/Rtf.h"
#include "window/frmDocument.h"

#include <QAbstractItemModelTester>

#include <optional>

// What an outline is shown in.
enum class Panes { Fake, FakeWithModelTester, RealOutline, RealWindow };

// One open document and the same outline done step by step.
class OpenOutline
{
public:
    OpenOutline(Panes panes, LiteralOutline::Copied &copied)
        : form(panes == Panes::RealWindow ? std::make_unique<frmDocument>(dispatcher) : nullptr)
        , ownView(panes == Panes::RealOutline ? std::make_unique<TreeView>() : nullptr)
        , ownDocument(form ? nullptr : std::make_unique<Document>())
        , view(form ? form->treeView : ownView.get())
        , document(form ? form->document() : *ownDocument)
        , literal(copied)
    {
        if (ownDocument)
            shownBy.emplace(*ownDocument, ownView ? static_cast<OutlinePane &>(*ownView) : pane, text, window);
        if (panes == Panes::FakeWithModelTester)
            tester.emplace(&document.history.itemModel(), QAbstractItemModelTester::FailureReportingMode::Fatal);
        if (ownView)
            ownView->setHistory(&document.history);
        if (QWidget *shown = form ? static_cast<QWidget *>(form.get()) : ownView.get()) {
            shown->resize(500, 200);
            shown->show();
        }
    }

    // How the outline differs from what it is to be, in words; empty when it does not. With `texts` also every entry's
    // text, which makes one that waited to be stored.
    QString difference(bool texts) const;

private:
    Dispatcher dispatcher;
    std::unique_ptr<frmDocument> form;
    std::unique_ptr<TreeView> ownView;
    FakeOutlinePane pane;
    FakeTextPane text;
    FakeDocumentWindow window;
    std::unique_ptr<Document> ownDocument;
    std::optional<DocumentView> shownBy;

    QString shownText() const { return document.view()->txtRTF.Text(); }

    QString plainText(const QByteArray &storedText) const
    {
        const QByteArray plain = NodeTextDecompressIfRequired(storedText);
        return rtf::isRtf(plain) ? rtf::toPlainText(plain) : QString::fromLatin1(plain);
    }

public:
    // Null with fake panes.
    TreeView *const view;
    Document &document;
    LiteralOutline literal;
    std::optional<QAbstractItemModelTester> tester;
    // Whether the text pane shows the selected entry: not when a test took the selection away.
    bool textShown = true;
};

inline QString OpenOutline::difference(bool texts) const
{
    const EntryTree &tree = document.tree;
    if (const QString broken = tree.brokenInvariant(); !broken.isEmpty())
        return broken;
    const std::vector<SlowEntry *> expected = literal.tree.inOutlineOrder();
    std::vector<const Entry *> found;
    for (const Entry *entry = tree.root(); entry; entry = nextInOutline(entry, tree.root()))
        found.push_back(entry);
    if (found.size() != expected.size())
        return QStringLiteral("%1 entries instead of %2").arg(found.size()).arg(expected.size());
    for (size_t i = 0; i < found.size(); ++i) {
        SlowEntry *slow = expected[i];
        slow->mark = i;
        if (found[i]->parent() != (slow->parent ? found[slow->parent->mark] : nullptr))
            return QStringLiteral("%1 lies in another entry").arg(described(found[i]));
        if (found[i]->label() != slow->label)
            return QStringLiteral("%1 instead of \"%2\"").arg(described(found[i]), slow->label);
        if (texts && tree.storedText(found[i]) != slow->text)
            return QStringLiteral("%1 has another text").arg(described(found[i]));
        if (found[i]->tagged() != slow->tagged || found[i]->expanded() != slow->expanded)
            return QStringLiteral("%1 is tagged or expanded otherwise").arg(described(found[i]));
    }
    for (size_t i = 0; i < expected.size(); ++i) {
        if (tree.collection().at(static_cast<int>(i) + 1) != found[literal.tree.collection[i]->mark])
            return QStringLiteral("another entry has index %1").arg(i + 1);
    }
    const SlowEntry *selected = literal.selected();
    if (tree.selected() != (selected ? found[selected->mark] : nullptr))
        return QStringLiteral("%1 is selected instead of %2")
            .arg(described(tree.selected()), selected ? selected->label : QStringLiteral("none"));
    if (texts && textShown && shownText() != (selected ? plainText(selected->text) : QString()))
        return QStringLiteral("the text pane does not show the selected entry's text");
    return QString();
}
