// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "commands/CommandKeys.h"
#include "commands/CommandTable.h"

#include <QKeyEvent>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_CommandKeys : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void modifiersAreExact_data();
    void modifiersAreExact();
    void aKeyBelongsToItsRoad();
    void aKeyOfAnotherScriptIsFoundByItsPlace();
    void theTextOfAKeyIsTheDesktopsOrTheCaptions();
};

void tst_CommandKeys::modifiersAreExact_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<QByteArray>("command");
    const auto row = [](const char *name, int key, Qt::KeyboardModifiers modifiers, const char *command) {
        QTest::newRow(name) << key << static_cast<int>(modifiers) << QByteArray(command);
    };
    row("Alt+Up", Qt::Key_Up, Qt::AltModifier, "mnuOutlineMoveUp");
    row("the keypad's Alt+Up", Qt::Key_Up, Qt::AltModifier | Qt::KeypadModifier, "mnuOutlineMoveUp");
    row("Up", Qt::Key_Up, Qt::NoModifier, "");
    row("Alt+Shift+Up", Qt::Key_Up, Qt::AltModifier | Qt::ShiftModifier, "");
    row("the keypad's plus", Qt::Key_Plus, Qt::KeypadModifier, "mnuOutlineExpand");
    row("the keypad's Ctrl+plus", Qt::Key_Plus, Qt::KeypadModifier | Qt::ControlModifier, "mnuOutlineExpand");
    row("plus", Qt::Key_Plus, Qt::NoModifier, "");
    row("F2", Qt::Key_F2, Qt::NoModifier, "mnuOutlineRename");
    row("Ctrl+F2", Qt::Key_F2, Qt::ControlModifier, "mnuOutlineRename");
    row("Alt+Home", Qt::Key_Home, Qt::AltModifier, "keyOutlineMoveFirst");
    row("Ctrl+Shift+<", Qt::Key_Less, Qt::ControlModifier | Qt::ShiftModifier, "keyTextSmaller");
    row("Ctrl+F6", Qt::Key_F6, Qt::ControlModifier, "keyWindowNext");
    row("Ctrl+Shift+F6", Qt::Key_F6, Qt::ControlModifier | Qt::ShiftModifier, "");
}

void tst_CommandKeys::modifiersAreExact()
{
    QFETCH(const int, key);
    QFETCH(const int, modifiers);
    QFETCH(const QByteArray, command);
    const KeyBinding *binding = bindingOf(QKeyEvent(QEvent::KeyPress, key, Qt::KeyboardModifiers(modifiers)));
    QCOMPARE(binding ? toText(binding->command) : QString(), QString::fromLatin1(command));
}

void tst_CommandKeys::aKeyBelongsToItsRoad()
{
    const QKeyEvent save(QEvent::KeyPress, Qt::Key_S, Qt::ControlModifier);
    QVERIFY(!bindingOf(save));
    const KeyBinding *binding = bindingOf(save, CommandKey::Road::Desktop);
    QVERIFY(binding);
    QCOMPARE(toText(binding->command), u"mnuFileSave"_s);
    QVERIFY(!bindingOf(QKeyEvent(QEvent::KeyPress, Qt::Key_A, Qt::AltModifier), CommandKey::Road::Desktop));
}

void tst_CommandKeys::aKeyOfAnotherScriptIsFoundByItsPlace()
{
    const QKeyEvent russian(QEvent::KeyPress, 0x42b, Qt::ControlModifier, 39, 0, 0);
    const KeyBinding *binding = bindingOf(russian, CommandKey::Road::Desktop);
    QVERIFY(binding && isByPlace(*binding, russian));
    QCOMPARE(toText(binding->command), u"mnuFileSave"_s);
    const QKeyEvent latin(QEvent::KeyPress, Qt::Key_S, Qt::ControlModifier, 39, 0, 0);
    QVERIFY(!isByPlace(*bindingOf(latin, CommandKey::Road::Desktop), latin));
}

void tst_CommandKeys::theTextOfAKeyIsTheDesktopsOrTheCaptions()
{
    const auto textOf = [](const char *name) { return keyTextOf(commandTable[commandRow(name)]); };
    QCOMPARE(textOf("mnuFileSaveAs"), u"Ctrl+Shift+S"_s);
    QCOMPARE(textOf("mnuOutlineMoveUp"), u"Alt+Up"_s);
    // The desktop's key, not the one that the window manager has.
    QCOMPARE(textOf("mnuFileExit"), u"Ctrl+Q"_s);
    QCOMPARE(textOf("mnuFileSaveAll"), QString());
}

QTEST_GUILESS_MAIN(tst_CommandKeys)
#include "tst_CommandKeys.moc"
