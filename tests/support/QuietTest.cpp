// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Linked into every test program: a warning that a test does not expect fails it. A test that provokes one says so with
// QTest::ignoreMessage.

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

QtMessageHandler s_testsHandler = nullptr;

// Whether nobody expects the message. The platform without a screen tells what it cannot do, and the toolkit more than
// is wanted of pictures that are none, which are an everyday thing to the readers.
bool isNoise(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    return (type == QtWarningMsg || type == QtCriticalMsg) && !message.startsWith("This plugin does not support "_L1) &&
           !QByteArrayView(context.category).startsWith("qt.gui.imageio");
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
