// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "OutlineDocument.h"

#include <QFile>
#include <QGuiApplication>
#include <QSaveFile>
#include <QStringList>

#include <cstdio>

namespace
{

constexpr int failed = 1;
constexpr int wrongUse = 2;

int complain(const QString &subject, const QString &what)
{
    std::fprintf(stderr, "%s: %s\n", qUtf8Printable(subject), qUtf8Printable(what));
    return failed;
}

} // namespace

// qlymake SOURCE TARGET: makes a native outline document from a readable source (see OutlineSource.h).
int main(int argc, char *argv[])
{
    // Fonts are only named here, never shown, so no display is needed.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 3) {
        std::fputs("usage: qlymake SOURCE TARGET\n", stderr);
        return wrongUse;
    }

    QFile source(arguments.at(1));
    if (!source.open(QIODevice::ReadOnly))
        return complain(source.fileName(), source.errorString());
    try {
        const QByteArray bytes = makeNativeFile(QString::fromUtf8(source.readAll()));
        QSaveFile target(arguments.at(2));
        if (!target.open(QIODevice::WriteOnly) || target.write(bytes) != bytes.size() || !target.commit())
            return complain(target.fileName(), target.errorString());
    } catch (const std::exception &error) {
        return complain(source.fileName(), QString::fromUtf8(error.what()));
    }
    return 0;
}
