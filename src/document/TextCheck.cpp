// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/TextCheck.h"

#include "document/Document.h"
#include "model/Limits.h"
#include "model/ShownLabel.h"
#include "model/StoredText.h"

#include "util/Procedure.h"

#include <QElapsedTimer>

#include <zlib.h>

#include <algorithm>
#include <array>
#include <new>
#include <set>

using namespace Qt::StringLiterals;

namespace
{

constexpr int restMilliseconds = 20;
constexpr int sliceMilliseconds = 5;

} // namespace

// Inflates a stream without keeping what comes of it.
class TextCheck::Probe
{
public:
    enum Outcome { Going, Sound, Damaged };

    // The length is that of the text which the stream is said to hold.
    Probe(const QByteArray &storedText, CompressedPart part)
        : m_storedText(storedText)
        , m_rest(QByteArrayView(m_storedText).sliced(part.start))
        , m_length(part.length)
    {
        if (inflateInit(&m_stream) != Z_OK)
            throw std::bad_alloc();
    }

    ~Probe() { inflateEnd(&m_stream); }

    Probe(const Probe &) = delete;
    Probe &operator=(const Probe &) = delete;

    // Goes one step on.
    Outcome step()
    {
        constexpr qsizetype inputBytes = 65536;
        std::array<Bytef, 65536> output;
        if (m_stream.avail_in == 0) {
            const qsizetype size = std::min(m_rest.size(), inputBytes);
            m_stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(m_rest.data()));
            m_stream.avail_in = static_cast<uInt>(size);
            m_rest = m_rest.sliced(size);
        }
        m_stream.next_out = output.data();
        m_stream.avail_out = static_cast<uInt>(output.size());
        const int result = inflate(&m_stream, Z_NO_FLUSH);
        const qint64 bound = std::min<qint64>(m_length, limits::longestInflated);
        if (const auto made = static_cast<qint64>(m_stream.total_out); made > bound)
            return m_length > bound ? Sound : Damaged;
        if (result == Z_STREAM_END)
            return Sound;
        const bool starved = m_stream.avail_in == 0 && m_rest.isEmpty() && m_stream.avail_out > 0;
        return result != Z_OK || starved ? Damaged : Going;
    }

    const QByteArray &storedText() const { return m_storedText; }

    qint64 made() const { return static_cast<qint64>(m_stream.total_out); }

private:
    const QByteArray m_storedText;
    QByteArrayView m_rest;
    qint32 m_length;
    z_stream m_stream = {};
};

TextCheck::TextCheck(Document &document)
    : m_document(document)
{
    const EntryCollection &entries = document.tree.collection();
    m_texts.reserve(static_cast<std::size_t>(entries.count()));
    for (int index = 1; index <= entries.count(); ++index) {
        // What is still to be made from the pane is sound.
        const Entry *entry = entries.at(index);
        if (!document.tree.isPending(entry))
            m_texts.push_back(document.tree.storedText(entry));
    }
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
        procedure("modNodes TextCheck", [this] {
            if (!goOn())
                m_timer.stop();
        });
    });
    m_timer.start(restMilliseconds);
}

TextCheck::~TextCheck() = default;

bool TextCheck::goOn()
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < sliceMilliseconds) {
        if (m_probe) {
            const Probe::Outcome outcome = m_probe->step();
            if (outcome == Probe::Going)
                continue;
            if (outcome == Probe::Damaged)
                m_damaged.push_back(m_probe->storedText());
            m_inflated += m_probe->made();
            m_probe.reset();
        } else if (m_next < m_texts.size() && m_inflated < limits::mostChecked) {
            take(m_texts[m_next++]);
        } else {
            m_texts.clear();
            m_next = 0;
            tell();
            return false;
        }
    }
    return true;
}

void TextCheck::take(const QByteArray &storedText)
{
    if (!readsAsCompressed(storedText))
        return;
    m_probe = std::make_unique<Probe>(storedText, compressedPart(storedText));
}

void TextCheck::tell()
{
    if (m_damaged.empty()) {
        m_document.dismiss(NoticeKind::DamagedText);
        return;
    }
    // An entry that has another text by now, has other bytes.
    std::set<const char *> damaged;
    for (const QByteArray &storedText : m_damaged)
        damaged.insert(storedText.constData());
    QStringList labels;
    const EntryTree &tree = m_document.tree;
    for (const Entry *entry = tree.root(); entry; entry = nextInOutline(entry, tree.root())) {
        if (!tree.isPending(entry) && damaged.contains(tree.storedText(entry).constData()))
            labels.append(entry->label());
    }
    m_damaged.clear();
    if (labels.isEmpty()) {
        m_document.dismiss(NoticeKind::DamagedText);
        return;
    }
    remark(u"%1: damaged texts: %2"_s.arg(m_document.m_sFile).arg(labels.size()));
    tellOfDamagedTexts(m_document, labels, labels.size());
}

void tellOfDamagedTexts(Document &document, const QStringList &labels, qsizetype count)
{
    constexpr qsizetype mostNamed = 5;
    QStringList named;
    for (const QString &label : labels.first(std::min(labels.size(), mostNamed)))
        named.append(u'"' + briefLabel(label) + u'"');
    const QString which = named.join(u", "_s) + (count > named.size() ? u", \u2026"_s : QString());
    const QString what = count == 1
                             ? u"The text of %1 is damaged and cannot be shown."_s.arg(which)
                             : u"The texts of %1 entries are damaged and cannot be shown: %2."_s.arg(count).arg(which);
    document.tell({NoticeKind::DamagedText,
                   what + u" What there is of it is kept in the file as it is; \"Clear entry text\" in the Edit menu "
                          "makes room for a new text."_s});
}
