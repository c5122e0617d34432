// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Letting go of versions, and of what no version needs any more.

#include "vault/VersionStore.h"

#include "vault/PackedBytes.h"
#include "vault/VersionThinning.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

std::vector<VersionAge> agesOf(const std::vector<VersionInfo> &versions)
{
    std::vector<VersionAge> ages;
    ages.reserve(versions.size());
    for (const VersionInfo &version : versions)
        ages.push_back({version.time, version.isVerified});
    return ages;
}

} // namespace

qint64 VersionStore::size()
{
    const qint64 pages = m_database.value(u"PRAGMA page_count"_s).toLongLong();
    const qint64 freePages = m_database.value(u"PRAGMA freelist_count"_s).toLongLong();
    return (pages - freePages) * m_database.value(u"PRAGMA page_size"_s).toLongLong();
}

bool VersionStore::thin(const QDateTime &now, qint64 mostBytes)
{
    Database::Transaction transaction(m_database);
    std::vector<VersionInfo> versions = list();
    std::vector<qint64> gone;
    const std::vector<size_t> supernumerary = supernumeraryVersions(agesOf(versions), now);
    for (const size_t place : supernumerary)
        gone.push_back(versions[place].number);
    remove(gone);
    for (auto place = supernumerary.rbegin(); place != supernumerary.rend(); ++place)
        versions.erase(versions.begin() + static_cast<qptrdiff>(*place));
    while (size() > mostBytes) {
        const std::optional<size_t> next = firstToGo(agesOf(versions));
        if (!next)
            break;
        gone.push_back(versions[*next].number);
        remove({gone.back()});
        versions.erase(versions.begin() + static_cast<qptrdiff>(*next));
    }
    transaction.commit();
    // Room that is free in the file is used again; when it is most of the file, it is given back.
    constexpr qint64 worthGivingBack = 1 << 20;
    const qint64 freeBytes = m_database.value(u"PRAGMA freelist_count"_s).toLongLong() *
                             m_database.value(u"PRAGMA page_size"_s).toLongLong();
    if (freeBytes > worthGivingBack && freeBytes > size())
        m_database.run(u"VACUUM"_s);
    return !gone.empty();
}

void VersionStore::remove(const std::vector<qint64> &versions)
{
    if (versions.empty())
        return;
    for (const qint64 version : versions)
        m_database.run(u"DELETE FROM version WHERE id = ?"_s, {version});
    // Whose version before it went, has changed against another one now.
    qint64 before = 0;
    for (const VersionInfo &version : list()) {
        const bool lostBefore =
            std::ranges::any_of(versions, [&](qint64 gone) { return gone > before && gone < version.number; });
        if (lostBefore) {
            const std::vector<ComparedEntry> old = before > 0 ? comparedOf(before) : std::vector<ComparedEntry>();
            setChanges(version.number, countsOf(compareOutlines(old, comparedOf(version.number)).differences));
        }
        before = version.number;
    }
    removeUnused();
}

void VersionStore::removeUnused()
{
    QSet<qint64> unusedBlocks;
    QSet<qint64> unusedTexts;
    const auto collect = [this](const QString &statement, QSet<qint64> &numbers) {
        m_database.select(statement, {}, [&numbers](const QSqlQuery &row) {
            numbers.insert(row.value(0).toLongLong());
            return true;
        });
    };
    collect(u"SELECT id FROM block"_s, unusedBlocks);
    collect(u"SELECT id FROM text"_s, unusedTexts);
    m_database.select(u"SELECT blocks FROM version"_s, {}, [&](const QSqlQuery &row) {
        for (const qint64 number : unpackedNumbers(row.value(0).toByteArray()))
            unusedBlocks.remove(number);
        return true;
    });
    m_database.select(u"SELECT id, data FROM block"_s, {}, [&](const QSqlQuery &row) {
        if (unusedBlocks.contains(row.value(0).toLongLong()))
            return true;
        std::vector<NumberedEntry> entries;
        appendBlock(entries, inflatedBytes(row.value(1).toByteArray()));
        for (const NumberedEntry &entry : entries)
            unusedTexts.remove(entry.text);
        return true;
    });
    for (const qint64 number : std::as_const(unusedBlocks))
        m_database.run(u"DELETE FROM block WHERE id = ?"_s, {number});
    for (const qint64 number : std::as_const(unusedTexts))
        m_database.run(u"DELETE FROM text WHERE id = ?"_s, {number});
}
