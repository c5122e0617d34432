// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include <QTest>

// What warnings do to a test: the one that nobody expects must fail, and only that one.
class tst_warningsFail : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void anUnexpectedWarning() { qWarning("planted"); }

    void anUnexpectedCriticalMessage() { qCritical("planted"); }

    void noWarning() { qDebug("something else"); }

    void anExpectedWarning()
    {
        QTest::ignoreMessage(QtWarningMsg, "planted");
        qWarning("planted");
    }

    void whatTheMachineSaysOfItself()
    {
        qWarning("This plugin does not support propagateSizeHints()");
        qWarning("  OpenType support missing for \"DejaVu Sans\", script 9");
    }
};

QTEST_MAIN(tst_warningsFail)
#include "tst_warningsFail.moc"
