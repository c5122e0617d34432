// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/Application.h"

#include <QApplication>
#include <QIcon>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    QApplication qtApplication(argc, argv);
    QApplication::setApplicationName(u"Quillery"_s);
    QApplication::setApplicationVersion(QStringLiteral(QUILLERY_VERSION));
    QApplication::setDesktopFileName(u"quillery"_s);
    QApplication::setWindowIcon(QIcon(u":/icons/quillery.svg"_s));

    // The names are one text again, as they were typed: blanks separate them, whatever the shell made of quotes.
    Application application(QApplication::arguments().mid(1).join(u' '));
    application.Main();
    return application.exec();
}
