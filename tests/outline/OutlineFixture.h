// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "support/FakePorts.h"
#include "support/OutlineText.h"
#include "support/RawOutline.h"

#include "document/modDoc.h"
#include "document/modNodes.h"

#include <QAbstractItemModelTester>

// One open document with fake panes, whose outline is written and read as indented text.
struct OutlineFixture {
    explicit OutlineFixture(const QStringList &outline)
    {
        modDoc::DocNew();
        plantOutline(rawOutline(document()).tree, outline);
        document().history.markSaved();
    }

    Document &document() { return *DocumentActive(); }

    FakeDocument &fake() { return fakes.windows.fakeOf(document()); }

    QStringList dump() { return dumpOutline(document().tree); }

    Entry *entry(const QString &label) { return entryLabelled(document().tree, label); }

    void select(const QString &label) { modNodes::NodeSelect(document(), entry(label)); }

    // The labels in the order of insertion.
    QStringList collection()
    {
        QStringList labels;
        const EntryCollection &entries = document().tree.collection();
        for (int index = 1; index <= entries.count(); ++index)
            labels.append(entries.at(index)->label());
        return labels;
    }

    FakePorts fakes;
};
