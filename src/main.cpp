// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/Application.h"
#include "app/BusApplication.h"
#include "app/modMain.h"

#include <QApplication>
#include <QIcon>

#include <cstdio>
#include <string_view>

using namespace Qt::StringLiterals;

namespace
{

constexpr const char *helpText =
    "Usage: quillery [FILE]...\n"
    "Write, arrange and search outlines.\n\n"
    "Opens the files; without any, what the options say: the documents of the last session,\n"
    "a new one, both or none. An argument that is no file as it stands may hold several\n"
    "names with blanks between.\n\n"
    "A program that runs in the same session already opens them in its window.\n\n"
    "      --alone    start beside a program that runs already\n"
    "      --help     show this text and end\n"
    "      --version  show the version and end\n";

// Whether the arguments ask for a text instead of the program, which then needs no display.
bool answersInTheTerminal(int argc, char *argv[])
{
    for (int place = 1; place < argc; ++place) {
        const std::string_view argument = argv[place];
        if (argument == "--version")
            std::puts("Quillery " QUILLERY_VERSION);
        else if (argument == "--help")
            std::fputs(helpText, stdout);
        else
            continue;
        return true;
    }
    return false;
}

} // namespace

int main(int argc, char *argv[])
{
    if (answersInTheTerminal(argc, argv))
        return 0;
    QApplication qtApplication(argc, argv);
    QApplication::setApplicationName(u"Quillery"_s);
    QApplication::setApplicationVersion(QStringLiteral(QUILLERY_VERSION));
    QApplication::setDesktopFileName(u"quillery"_s);
    QApplication::setWindowIcon(QIcon(u":/icons/quillery.svg"_s));

    QStringList arguments = QApplication::arguments().mid(1);
    const bool alone = arguments.removeAll(u"--alone"_s) > 0;
    // Outlives all else: until the end somebody may ask.
    BusApplication bus(QDBusConnection::sessionBus());
    if (!alone && bus.handOver(modMain::ExistingFiles(modMain::GetArgumentFiles(arguments))))
        return 0;
    Application application(arguments);
    application.Main();
    frmMain &window = application.mainWindow();
    bus.setReceiver(
        {[&window] { window.comeToFront(); }, [&window](const auto &files) { return window.openFiles(files); }});
    return application.exec();
}
