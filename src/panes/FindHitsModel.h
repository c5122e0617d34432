// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "find/FindHit.h"
#include "find/FindQuery.h"
#include "find/FindReplace.h"

#include <QAbstractListModel>
#include <QPointer>
#include <QTimer>

#include <map>
#include <memory>
#include <vector>

class Document;
class FindRun;

// What is found in documents, as the rows of a list: those of an entry stand below a row with its label, and where
// several documents are looked through, those of a document below one with its name. It follows its runs, which find
// more and follow what changes. Nothing of a row is made before it is asked for.
class FindHitsModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    enum class RowKind { Document, Entry, Hit, More };

    // What a row stands for. Null for what it is not about.
    struct Row {
        RowKind kind = RowKind::Document;
        Document *document = nullptr;
        const EntryHits *found = nullptr;
        // The hit's place among those of the entry.
        int number = 0;

        const FindHit *hit() const
        {
            return kind == RowKind::Hit ? &found->hits[static_cast<size_t>(number)] : nullptr;
        }
    };

    struct Counts {
        qint64 hits = 0;
        int entries = 0;
        int unreadable = 0;
        int givenUp = 0;
        bool isFinished = true;
    };

    explicit FindHitsModel(QObject *parent);
    ~FindHitsModel() override;

    // Looks anew. What was found before stays until there is something else to be shown, but no longer than a moment.
    void search(const std::vector<Document *> &documents, const FindQuery &query);

    const FindQuery &query() const { return m_query; }

    // Whether what is shown was found by an earlier search.
    bool isStale() const { return m_isStale; }

    void dropStale();

    Row row(int row) const;

    Counts counts() const;
    // Of the document or the entry that a row stands for.
    qint64 countOf(int row) const;

    // The next row of a hit from a row on (exclusive), in steps of 1 or -1; -1 where there is none.
    int hitRow(int from, int step) const;
    // Has the rest of an entry's hits found, which its last row stands for.
    void tellMore(int row);

    // Whether rows have check marks, which say what is replaced.
    void setCheckable(bool checkable);

    bool isCheckable() const { return m_isCheckable; }

    void setAllChecked(bool checked);
    Qt::CheckState checkedOfAll() const;

    // What of a document is checked.
    std::vector<FindReplace::Choice> choicesOf(const Document &document) const;
    // How many hits are, in all documents.
    qint64 checkedCount() const;
    // The documents that have hits.
    std::vector<Document *> documents() const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    // Brings the rows up to date with what has changed.
    void refresh();

Q_SIGNALS:
    // counts() answers differently.
    void counted();
    // All was looked through.
    void finished();
    void checksChanged();

private:
    struct Group {
        EntryHits found;
        int firstRow = 0;
        // Empty while all are checked.
        std::vector<bool> unchecked = {};
    };

    struct Section {
        QPointer<Document> document;
        std::unique_ptr<FindRun> run;
        std::vector<Group> groups;
        // What has changed since, no hits for what is gone.
        std::map<EntryId, EntryHits> due;
        bool isOrderDue = false;
        int firstRow = 0;
        int rows = 0;
    };

    // Where something stands, whatever row that is now.
    struct Place {
        const Document *document = nullptr;
        EntryId entry = EntryId::None;
        RowKind kind = RowKind::Document;
        int number = 0;
    };

    void listenTo(Section &section, Document &document);
    void append(Section &section, const std::vector<EntryHits> &entries);
    void dropDocument(const QObject *document);
    void noteFinished();
    static int rowsOf(const Group &group);
    int headRows(const Section &section) const;
    void count();
    void takeDue(Section &section);
    static void sort(Section &section);
    std::pair<const Section *, const Group *> find(int row) const;
    Place placeOf(int row) const;
    int rowOf(const Place &place) const;
    QString text(const Row &row) const;
    QString spoken(const Row &row) const;
    Qt::CheckState checkedAt(int row) const;
    static Qt::CheckState checkedOf(const Group &group);
    static Qt::CheckState checkedOf(const Section &section);
    static FindReplace::Choice choiceOf(const Group &group);
    static void check(Group &group, bool checked);
    static void checkHit(Group &group, int number, bool checked);
    void noteChecks();

    // In the documents' order. Those of the latest search are the next ones until they are shown.
    std::vector<std::unique_ptr<Section>> m_sections;
    std::vector<std::unique_ptr<Section>> m_next;
    FindQuery m_query;
    bool m_isStale = false;
    bool m_isCheckable = false;
    // Whether each document has a row with its name.
    bool m_isEachNamed = false;
    bool m_isNextNamed = false;
    QTimer m_refreshing;
    QTimer m_dropping;
};

// The labels of the entries above one, from the root on, or from those below it.
enum class PathFrom { Root, BelowRoot };
QString pathOf(const Document &document, EntryId entry, PathFrom from = PathFrom::Root);
// A document's file without its folders, or what it is called without one.
QString shortNameOf(const Document &document);
// "12 hits in 3 entries", "… so far" while it goes on.
QString inWords(const FindHitsModel::Counts &counts);
