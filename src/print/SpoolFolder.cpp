// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "print/SpoolFolder.h"

#include "util/RunTimeError.h"

#include <QDir>
#include <QScopeGuard>

namespace
{

constexpr char temporaryFolder[] = "TMPDIR";

} // namespace

SpoolFolder::SpoolFolder()
{
    if (!m_folder.isValid())
        throw RunTimeError(ErrorNumber::PathFileAccess, m_folder.errorString());
}

void SpoolFolder::collect(const std::function<void()> &run) const
{
    const bool wasSet = qEnvironmentVariableIsSet(temporaryFolder);
    const QByteArray before = qgetenv(temporaryFolder);
    const auto restore = qScopeGuard([&] {
        if (wasSet)
            qputenv(temporaryFolder, before);
        else
            qunsetenv(temporaryFolder);
    });
    qputenv(temporaryFolder, QFile::encodeName(path()));
    run();
}

void SpoolFolder::clear() const
{
    QDir folder(path());
    for (const QString &name : folder.entryList(QDir::Files | QDir::Hidden | QDir::System))
        folder.remove(name);
}
