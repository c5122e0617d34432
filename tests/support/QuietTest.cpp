// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Linked into every test program: a warning that a test does not expect fails it. A test that provokes one says so with
// QTest::ignoreMessage.

#include <QRegularExpression>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

QtMessageHandler s_testsHandler = nullptr;

// What the machine says of itself: what a platform without a screen cannot do, and scripts that its fonts do not have.
constexpr QLatin1StringView machine[] = {"This plugin does not support "_L1, "OpenType support missing for "_L1};

// Of pictures that are none, which are an everyday thing to the readers, the toolkit says more than is wanted.
constexpr auto pictures = "qt.gui.imageio";

bool isNoise(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    return (type == QtWarningMsg || type == QtCriticalMsg) && !QByteArrayView(context.category).startsWith(pictures) &&
           std::ranges::none_of(machine,
                                [said = message.trimmed()](QLatin1StringView begin) { return said.startsWith(begin); });
}

void failOnNoise(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    const bool fails = isNoise(type, context, message);
    // Said anew for each message: what a test function asks for ends with it. A message that the function expects is
    // taken before.
    if (fails)
        QTest::failOnWarning(QRegularExpression(u"^"_s + QRegularExpression::escape(message)));
    s_testsHandler(fails ? QtWarningMsg : type, context, message);
}

} // namespace

// Stands in for Qt's own, which runs the same three; Qt installs its message handler in the first of them.
int QTest::qExec(QObject *testObject, int argc, char **argv)
{
    qInit(testObject, argc, argv);
    s_testsHandler = qInstallMessageHandler(failOnNoise);
    const int failures = qRun();
    qCleanup();
    return failures;
}
