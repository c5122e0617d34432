// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Logged changes as bytes. What was written once stays readable: another form is another version of the database.

#include "vault/LoggedChange.h"

#include "model/StoredText.h"
#include "util/RunTimeError.h"

#include <QDataStream>
#include <QIODevice>

#include <type_traits>

using namespace Qt::StringLiterals;

namespace
{

constexpr auto streamVersion = QDataStream::Qt_6_0;

// Lists longer than this are no lists, but damage: more than an outline has entries, several times over.
constexpr quint32 longestList = 1 << 24;

// Puts values down, or takes them back in the same order: one description of each kind serves both ways.
class ByteWriter
{
public:
    ByteWriter() { m_stream.setVersion(streamVersion); }

    QByteArray bytes;

    template <typename Value>
    void operator()(const Value &value)
    {
        if constexpr (std::is_enum_v<Value>)
            m_stream << static_cast<quint64>(value);
        else
            m_stream << value;
    }

    template <typename Value, typename Each>
    void list(const std::vector<Value> &values, Each &&each)
    {
        m_stream << static_cast<quint32>(values.size());
        for (const Value &value : values)
            each(value);
    }

private:
    QDataStream m_stream{&bytes, QIODevice::WriteOnly};
};

class ByteReader
{
public:
    explicit ByteReader(const QByteArray &bytes)
        : m_stream(bytes)
    {
        m_stream.setVersion(streamVersion);
    }

    template <typename Value>
    void operator()(Value &value)
    {
        if constexpr (std::is_enum_v<Value>) {
            quint64 number = 0;
            m_stream >> number;
            value = static_cast<Value>(number);
        } else {
            m_stream >> value;
        }
        check();
    }

    template <typename Value, typename Each>
    void list(std::vector<Value> &values, Each &&each)
    {
        quint32 count = 0;
        (*this)(count);
        if (count > longestList)
            throw RunTimeError(ErrorNumber::InvalidFileFormat);
        values.clear();
        for (quint32 place = 0; place < count; ++place)
            each(values.emplace_back());
    }

    void requireEnd() const
    {
        if (!m_stream.atEnd())
            throw RunTimeError(ErrorNumber::InvalidFileFormat);
    }

private:
    void check() const
    {
        if (m_stream.status() != QDataStream::Ok)
            throw RunTimeError(ErrorNumber::InvalidFileFormat);
    }

    QDataStream m_stream;
};

template <typename Way, typename Values>
void describeList(Way &way, Values &values)
{
    way.list(values, [&way](auto &value) { way(value); });
}

template <typename Way, typename Records>
void describeForeign(Way &way, Records &records)
{
    way.list(records, [&way](auto &record) {
        way(record.behind);
        way(record.bytes);
    });
}

// A record is const where it is written.
template <typename Way, typename Record>
requires std::is_same_v<std::remove_const_t<Record>, EntryRecord>

void describe(Way &way, Record &record)
{
    way(record.id);
    way(record.level);
    way(record.insertion);
    way(record.label);
    way(record.storedText);
    describeForeign(way, record.foreignRecords);
    way(record.tagged);
    way(record.expanded);
    way(record.sorted);
}

void describe(ByteWriter &way, const clsFont &font)
{
    way(font.Name());
    way(font.Size());
    for (const bool value : {font.Bold(), font.Italic(), font.StrikeThrough(), font.Underline()})
        way(value);
}

void describe(ByteReader &way, clsFont &font)
{
    QString name;
    qint64 size = 0;
    bool looks[4] = {};
    way(name);
    way(size);
    for (bool &look : looks)
        way(look);
    font.setName(name);
    font.setSize(size);
    font.setBold(looks[0]);
    font.setItalic(looks[1]);
    font.setStrikeThrough(looks[2]);
    font.setUnderline(looks[3]);
}

void describePieces(ByteWriter &way, const PiecedText &text)
{
    way.list(text.pieces(), [&way](const PiecedText::Piece &piece) {
        way(piece.start);
        way(piece.length);
        way(piece.own);
    });
}

void describePieces(ByteReader &way, PiecedText &text)
{
    std::vector<PiecedText::Piece> pieces;
    way.list(pieces, [&way](PiecedText::Piece &piece) {
        way(piece.start);
        way(piece.length);
        way(piece.own);
        if (piece.start < 0 ? piece.length != piece.own.size() : piece.length < 0)
            throw RunTimeError(ErrorNumber::InvalidFileFormat);
    });
    text = PiecedText(std::move(pieces));
}

// The parts of each kind of change.
template <typename Way>
struct ChangeParts {
    Way &way;

    void operator()(auto &change)
    {
        using Kind = std::remove_cvref_t<decltype(change)>;
        if constexpr (std::is_same_v<Kind, logged::Insert>) {
            way.list(change.tops, [this](auto &top) {
                way(top.parent);
                way(top.row);
                way.list(top.entries, [this](auto &record) { describe(way, record); });
            });
        } else if constexpr (std::is_same_v<Kind, change::Remove>) {
            describeList(way, change.entries);
        } else if constexpr (std::is_same_v<Kind, change::Move>) {
            way(change.entry);
            way(change.parent);
            way(change.row);
            describeList(way, change.insertion);
        } else if constexpr (std::is_same_v<Kind, change::Label>) {
            way(change.entry);
            way(change.label);
        } else if constexpr (std::is_same_v<Kind, change::Tag>) {
            way(change.entry);
            way(change.tagged);
        } else if constexpr (std::is_same_v<Kind, change::Expand>) {
            describeList(way, change.expansion.opened);
            describeList(way, change.expansion.closed);
        } else if constexpr (std::is_same_v<Kind, change::Sorted>) {
            way(change.entry);
            way(change.sorted);
        } else if constexpr (std::is_same_v<Kind, change::Reorder>) {
            way(change.parent);
            describeList(way, change.order);
        } else if constexpr (std::is_same_v<Kind, change::Renew>) {
            way(change.entry);
            describeList(way, change.insertion);
        } else if constexpr (std::is_same_v<Kind, logged::Text>) {
            way(change.entry);
            way(change.text);
        } else if constexpr (std::is_same_v<Kind, logged::TextPieces>) {
            way(change.entry);
            way(change.other);
            way(change.sum);
            describePieces(way, change.text);
        } else if constexpr (std::is_same_v<Kind, change::Fonts>) {
            describe(way, change.outlineFont);
            describe(way, change.textFont);
        } else if constexpr (std::is_same_v<Kind, change::Foreign>) {
            way(change.entry);
            describeForeign(way, change.records);
        } else {
            static_assert(std::is_same_v<Kind, change::FileForeign>);
            describeForeign(way, change.header);
            way(change.trailer);
        }
    }
};

// As the entry stores it.
QByteArray storedForm(const logged::Text &text)
{
    return text.state == logged::Text::State::Uncompressed ? compressedText(text.text) : text.text;
}

template <size_t Index = 0>
LoggedChange emptyChange(size_t index)
{
    if constexpr (Index < std::variant_size_v<LoggedChange>) {
        if (index == Index)
            return LoggedChange(std::in_place_index<Index>);
        return emptyChange<Index + 1>(index);
    } else {
        throw RunTimeError(ErrorNumber::InvalidFileFormat);
    }
}

} // namespace

QByteArray toBytes(const LoggedStep &step)
{
    ByteWriter way;
    way(step.name);
    way(step.time);
    way(step.selectedBefore);
    way.list(step.changes, [&way](const LoggedChange &change) {
        way(static_cast<quint8>(change.index()));
        if (const auto *text = std::get_if<logged::Text>(&change)) {
            const logged::Text kept{text->entry, storedForm(*text), logged::Text::State::Stored, {}};
            ChangeParts<ByteWriter>{way}(kept);
        } else {
            std::visit(ChangeParts<ByteWriter>{way}, change);
        }
    });
    return way.bytes;
}

LoggedStep stepOfBytes(const QByteArray &bytes)
{
    ByteReader way(bytes);
    LoggedStep step;
    way(step.name);
    way(step.time);
    way(step.selectedBefore);
    way.list(step.changes, [&way](LoggedChange &change) {
        quint8 kind = 0;
        way(kind);
        change = emptyChange(kind);
        std::visit(ChangeParts<ByteReader>{way}, change);
    });
    way.requireEnd();
    return step;
}

QByteArray toBytes(const EntryRecord &record)
{
    ByteWriter way;
    describe(way, record);
    return way.bytes;
}

EntryRecord recordOfBytes(const QByteArray &bytes)
{
    ByteReader way(bytes);
    EntryRecord record;
    describe(way, record);
    way.requireEnd();
    return record;
}

QByteArray headToBytes(const Snapshot &snapshot)
{
    ByteWriter way;
    describe(way, snapshot.outlineFont);
    describe(way, snapshot.textFont);
    describeForeign(way, snapshot.foreignHeader);
    way(snapshot.foreignTrailer);
    return way.bytes;
}

Snapshot headOfBytes(const QByteArray &bytes)
{
    ByteReader way(bytes);
    Snapshot snapshot;
    describe(way, snapshot.outlineFont);
    describe(way, snapshot.textFont);
    describeForeign(way, snapshot.foreignHeader);
    way(snapshot.foreignTrailer);
    way.requireEnd();
    return snapshot;
}
