// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "formats/Findings.h"
#include "formats/RecordNames.h"

#include "model/ForeignRecords.h"

#include <QByteArray>
#include <QString>

#include <array>

class Entry;
struct Outline;
struct ReadOutline;

// Reads the entries of a native file in one pass over its bytes. Positions are 0-based here.
//
// What it meets beside the records of the format, in their order, the result tells as a remark or as damage. A remark
// is what is understood or kept all the same: unknown records, another order, absent flags, white space. Damage is what
// may have lost something: an end that is missing, bytes where none belong, a place that does not exist.
class EntryReader
{
public:
    // Texts are copied, or are parts of the buffer, which then has to stay as long as the outline.
    enum class Texts { Copied, InPlace };

    EntryReader(const QByteArray &buffer, ReadOutline &result, Texts texts = Texts::Copied);

    // Throws what breaks it off (see modDocV1.h); the outline then has what was read by then.
    void read();

private:
    enum Record { NodeKey, NodeLabel, NodeTagged, NodeVisible, NodeText, RecordCount };

    void scan();
    qsizetype startOfRecords();
    qsizetype readRecord(qsizetype at);
    qsizetype readHeaderRecord(int record, qsizetype at);
    qsizetype readEntryRecord(Record record, qsizetype at);
    qsizetype readExactLabel(qsizetype at);
    // To be written back behind so many records of the program's own.
    qsizetype keepForeignRecord(qsizetype at, int behindRecords);
    void takeText(qsizetype start, qsizetype end);
    void beginEntry(QByteArrayView path, qsizetype at);
    void completeEntry();
    void noteOrder(Record record, qsizetype at);
    bool takeFlag(QByteArrayView value, qsizetype at);
    // Looks at what stands between a record's brace and the next record, and gives the place behind the brace.
    qsizetype endRecord(qsizetype brace, bool &cut);
    void setTrailerApart();
    void tell();

    QByteArrayView nameAt(qsizetype at) const;
    qsizetype nextBrace(qsizetype from);
    qsizetype nextOpener(qsizetype from) const;

    const QByteArray &m_buffer;
    const Texts m_texts;
    ReadOutline &m_result;
    Outline &m_outline;
    Findings m_damage;
    Findings m_remarks;
    int m_cutLabels = 0;

    // Which records of the header were met.
    std::array<bool, recordNames::header.size()> m_hasHeader = {};
    // How many records of the program's own stand before the place that is read, in the header or the entry.
    int m_behind = 0;
    ForeignRecordList m_foreign;

    // The entry that is being read, and what was read of it.
    Entry *m_entry = nullptr;
    std::array<bool, RecordCount> m_has = {};
    QByteArrayView m_labelValue;
    QString m_label;
    bool m_labelCut = false;
    QByteArray m_text;
    bool m_tagged = false;
    bool m_visible = false;
    bool m_inText = false;

    qsizetype m_nextBrace = -1;
};
