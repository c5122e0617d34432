// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

// What stands in the way of reading and writing files, for tests.

// While it lives, the process may do what an ordinary user may, though the superuser runs the test: the superuser is
// refused nothing.
class OrdinaryUser
{
public:
    OrdinaryUser()
        : m_superuser(geteuid() == 0)
    {
        if (m_superuser && (setresgid(nobody, nobody, 0) != 0 || setresuid(nobody, nobody, 0) != 0))
            qFatal("The test cannot become an ordinary user");
    }

    ~OrdinaryUser()
    {
        if (m_superuser && (setresuid(0, 0, 0) != 0 || setresgid(0, 0, 0) != 0))
            qFatal("The test cannot become the superuser again");
    }

    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;

private:
    static constexpr uid_t nobody = 65534;
    bool m_superuser;
};

// While it lives, a file cannot grow beyond so many bytes: to the program this is what a full disk is.
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes)
        : m_signalBefore(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit limit = m_before;
        limit.rlim_cur = bytes;
        if (setrlimit(RLIMIT_FSIZE, &limit) != 0)
            qFatal("The test cannot limit the size of files");
    }

    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_signalBefore);
    }

    FullDisk(const FullDisk &) = delete;
    FullDisk &operator=(const FullDisk &) = delete;

private:
    rlimit m_before = {};
    void (*m_signalBefore)(int);
};

// A temporary folder that an ordinary user can use as well as the superuser.
class TestFolder
{
public:
    TestFolder() { setMode(QString(), 0777); }

    ~TestFolder() { setMode(QString(), 0777); }

    TestFolder(const TestFolder &) = delete;
    TestFolder &operator=(const TestFolder &) = delete;

    QString path() const { return m_folder.path(); }

    QString operator()(const QString &name) const { return m_folder.path() + QLatin1Char('/') + name; }

    // Every name in the folder, hidden ones too, sorted.
    QStringList names() const
    {
        return QDir(m_folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    }

    void write(const QString &name, const QByteArray &content, mode_t mode = 0666) const
    {
        QFile file((*this)(name));
        // A file system may flush one that is overwritten to disk at once, which takes its time.
        file.remove();
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("The test cannot write %s", qPrintable(file.fileName()));
        file.close();
        setMode(name, mode);
    }

    // The content of a file; null when there is none.
    QByteArray read(const QString &name) const
    {
        QFile file((*this)(name));
        if (!file.open(QIODevice::ReadOnly))
            return QByteArray();
        const QByteArray content = file.readAll();
        return content.isNull() ? QByteArray("") : content;
    }

    void setMode(const QString &name, mode_t mode) const
    {
        chmod(QFile::encodeName(name.isEmpty() ? m_folder.path() : (*this)(name)).constData(), mode);
    }

    mode_t mode(const QString &name) const
    {
        struct stat status = {};
        return stat(QFile::encodeName((*this)(name)).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
    }

private:
    QTemporaryDir m_folder;
};
