// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/MainFixture.h"
#include "app/PlaceKeeper.h"
#include "commands/CommandKeys.h"
#include "commands/ToolbarTable.h"
#include "document/modDoc.h"
#include "platform/RichTextBox.h"
#include "platform/TreeView.h"
#include "window/frmDocument.h"

#include <QDialog>
#include <QHelpEvent>
#include <QLineEdit>
#include <QTest>
#include <QTextEdit>
#include <QToolButton>
#include <QToolTip>
#include <QWindow>

using namespace Qt::StringLiterals;

static const std::span<const KeyBinding> desktopKeys = keysOf(CommandKey::Road::Desktop);

// The keys as they are pressed in the running main window.
class tst_DesktopKeys : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void cleanup() { m_main.reset(); }

    void aKeyOfTheDocumentWindowsMapIsNotAmongThem();
    void theMenusShowThemBesideCaptionsThatStayAsTheyAre();
    void theToolTipsShowThemBesideNamesThatStayAsTheyAre();
    void withNoDocumentNewAndOpenWorkAndTheOthersDoNothing();
    void eachRunsItsItemFromEitherPane_data();
    void eachRunsItsItemFromEitherPane();
    void theFormatsBelongToTheText();
    void aKeyEndsALabelEditFirst();
    void aFormatKeyLeavesALabelBeingTypedAlone();
    void aReadOnlyDocumentIgnoresWhatWrites();
    void nothingHappensBehindAModalDialog();
    void aKeyHeldDownRunsItsItemOnce();
    void theyWorkOnKeyboardsOfAnotherScript_data();
    void theyWorkOnKeyboardsOfAnotherScript();
    void aSignInALettersPlaceIsAnotherKey();

private:
    Document &openDocument() const;
    void visitPlaces() const;

    // As the window system sends it, shortcuts included.
    void press(int key, Qt::KeyboardModifiers modifiers) const
    {
        QTest::keyClick(m_main->main.windowHandle(), Qt::Key(key), modifiers);
    }

    void press(QKeyCombination key) const { press(key.key(), key.keyboardModifiers()); }

    frmDocument *form() const { return dynamic_cast<frmDocument *>(&DocumentActive()->view()->window); }

    QStringList *watch(const char *item);

    std::unique_ptr<MainFixture> m_main;
    QStringList m_chosen;
};

void tst_DesktopKeys::init()
{
    m_chosen.clear();
    m_main = std::make_unique<MainFixture>();
    m_main->start();
    m_main->main.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_main->main));
}

Document &tst_DesktopKeys::openDocument() const
{
    modDoc::DocLoad(m_main->app.makeFile(u"a.txt"_s, "label"));
    return *DocumentActive();
}

// Leaves places before and behind.
void tst_DesktopKeys::visitPlaces() const
{
    Document &document = *DocumentActive();
    for (int i = 0; i < 3; ++i) {
        modNodes::NodeSelect(document, modNodes::NodeInsert(document, Relationship::tvwChild, document.tree.root()));
        m_main->main.places().settle();
    }
    m_main->main.places().goBack();
    m_main->refresh();
}

// Has an item only tell that it was chosen.
QStringList *tst_DesktopKeys::watch(const char *item)
{
    QAction *action = m_main->action(QString::fromLatin1(item));
    action->disconnect();
    connect(action, &QAction::triggered, this, [this, action] { m_chosen += action->objectName(); });
    return &m_chosen;
}

void tst_DesktopKeys::aKeyOfTheDocumentWindowsMapIsNotAmongThem()
{
    for (const KeyBinding &each : desktopKeys) {
        const QKeyEvent event(QEvent::KeyPress, Qt::Key(each.key), combinationOf(each).keyboardModifiers());
        QVERIFY2(!bindingOf(event), each.command.data());
    }
}

void tst_DesktopKeys::theMenusShowThemBesideCaptionsThatStayAsTheyAre()
{
    for (const KeyBinding &each : desktopKeys) {
        const QAction *action = m_main->action(toText(each.command));
        QVERIFY(action->shortcuts().contains(QKeySequence(combinationOf(each))));
        QVERIFY(action->isShortcutVisibleInContextMenu());
        QCOMPARE(action->text(), toText(commandTable[commandRow(each.command)].caption));
    }
}

void tst_DesktopKeys::theToolTipsShowThemBesideNamesThatStayAsTheyAre()
{
    openDocument();
    const auto tipOf = [this](const char *name) {
        auto *button = m_main->main.findChild<QToolButton *>(QString::fromLatin1(name));
        QHelpEvent event(QEvent::ToolTip, QPoint(2, 2), button->mapToGlobal(QPoint(2, 2)));
        QCoreApplication::sendEvent(button, &event);
        return QToolTip::text();
    };
    QCOMPARE(tipOf("tbNewFile"), u"New File (Ctrl+N)"_s);
    QCOMPARE(tipOf("tbSaveFile"), u"Save File (Ctrl+S)"_s);
    QCOMPARE(tipOf("tbNewEntryBelow"), u"New Entry Below (Alt+B)"_s);
    QCOMPARE(tipOf("tbPreviewFile"), u"Preview File"_s);
    QCOMPARE(m_main->main.findChild<QToolButton *>(u"tbNewFile"_s)->toolTip(), u"New File"_s);
    QToolTip::hideText();
}

void tst_DesktopKeys::withNoDocumentNewAndOpenWorkAndTheOthersDoNothing()
{
    for (const KeyBinding &each : desktopKeys)
        watch(each.command.data());
    for (const KeyBinding &each : desktopKeys)
        press(combinationOf(each));
    QCOMPARE(m_chosen, QStringList({u"mnuFileNew"_s, u"mnuFileOpen"_s, u"mnuFileExit"_s, u"mnuSearchFind"_s}) +
                           (m_main->enabled("mnuSearchRepeat") ? QStringList(u"mnuSearchRepeat"_s) : QStringList()) +
                           QStringList(u"mnuToolsGoToAnything"_s));
}

void tst_DesktopKeys::eachRunsItsItemFromEitherPane_data()
{
    QTest::addColumn<std::size_t>("place");
    for (std::size_t place = 0; place < desktopKeys.size(); ++place)
        QTest::newRow(qPrintable(QKeySequence(combinationOf(desktopKeys[place])).toString())) << place;
}

void tst_DesktopKeys::eachRunsItsItemFromEitherPane()
{
    QFETCH(const std::size_t, place);
    const KeyBinding &each = desktopKeys[place];
    openDocument();
    visitPlaces();
    watch(each.command.data());
    form()->textBox->setFocus();
    press(combinationOf(each));
    QCOMPARE(m_chosen, QStringList(toText(each.command)));
    form()->treeView->setFocus();
    press(combinationOf(each));
    const bool belongsToTheText = each.command.starts_with("mnuEdit") || each.command == "mnuToolsSplit";
    QCOMPARE(m_chosen.size(), belongsToTheText ? 1 : 2);
}

void tst_DesktopKeys::theFormatsBelongToTheText()
{
    const Document &document = openDocument();
    form()->textBox->setFocus();
    form()->textBox->selectAll();
    press(Qt::Key_B, Qt::ControlModifier);
    QCOMPARE(document.view()->txtRTF.SelBold(), std::optional(true));
    press(Qt::Key_B, Qt::ControlModifier);
    QCOMPARE(document.view()->txtRTF.SelBold(), std::optional(false));
}

void tst_DesktopKeys::aKeyEndsALabelEditFirst()
{
    const Document &document = openDocument();
    form()->treeView->setFocus();
    press(Qt::Key_F2, Qt::NoModifier);
    QTRY_VERIFY(qobject_cast<QLineEdit *>(QApplication::focusWidget()));
    QTest::keyClicks(QApplication::focusWidget(), u"typed"_s);
    press(Qt::Key_S, Qt::ControlModifier);
    QVERIFY(!qobject_cast<QLineEdit *>(QApplication::focusWidget()));
    QCOMPARE(document.tree.root()->label(), u"typed"_s);
    QVERIFY(!document.m_bDataChanged());
}

void tst_DesktopKeys::aFormatKeyLeavesALabelBeingTypedAlone()
{
    openDocument();
    form()->treeView->setFocus();
    press(Qt::Key_F2, Qt::NoModifier);
    QTRY_VERIFY(qobject_cast<QLineEdit *>(QApplication::focusWidget()));
    const auto *editor = qobject_cast<QLineEdit *>(QApplication::focusWidget());
    QTest::keyClicks(QApplication::focusWidget(), u"typed"_s);
    for (const int key : {Qt::Key_U, Qt::Key_B, Qt::Key_I})
        press(key, Qt::ControlModifier);
    QCOMPARE(QApplication::focusWidget(), editor);
    QCOMPARE(editor->text(), u"typed"_s);
}

void tst_DesktopKeys::aReadOnlyDocumentIgnoresWhatWrites()
{
    const QString file = m_main->app.makeFile(u"locked.txt"_s, "label");
    QVERIFY(QFile::setPermissions(file, QFile::ReadOwner));
    modDoc::DocLoad(file);
    form()->textBox->setFocus();
    for (const char *item : {"mnuFileSave", "mnuEditFormatBold", "mnuSearchReplace", "mnuFilePrint"})
        watch(item);
    press(Qt::Key_S, Qt::ControlModifier);
    press(Qt::Key_B, Qt::ControlModifier);
    press(Qt::Key_H, Qt::ControlModifier);
    QCOMPARE(m_chosen, QStringList());
    press(Qt::Key_P, Qt::ControlModifier);
    QCOMPARE(m_chosen, QStringList(u"mnuFilePrint"_s));
}

void tst_DesktopKeys::nothingHappensBehindAModalDialog()
{
    openDocument();
    for (const KeyBinding &each : desktopKeys)
        watch(each.command.data());
    QDialog dialog(&m_main->main);
    auto *field = new QLineEdit(&dialog);
    dialog.setModal(true);
    dialog.show();
    field->setFocus();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    for (const KeyBinding &each : desktopKeys)
        QTest::keyClick(dialog.windowHandle(), Qt::Key(each.key), combinationOf(each).keyboardModifiers());
    QCOMPARE(m_chosen, QStringList());
}

void tst_DesktopKeys::aKeyHeldDownRunsItsItemOnce()
{
    openDocument();
    QVERIFY(!m_main->action(u"mnuFileClose"_s)->autoRepeat());
    watch("mnuFileNew");
    QKeyEvent held(QEvent::KeyPress, 0x422, Qt::ControlModifier, 57, 0, 0, QString(), true);
    QCoreApplication::sendEvent(form()->treeView, &held);
    QCOMPARE(m_chosen, QStringList());
}

void tst_DesktopKeys::theyWorkOnKeyboardsOfAnotherScript_data()
{
    QTest::addColumn<int>("letter");
    QTest::addColumn<quint32>("scanCode");
    QTest::addColumn<QString>("item");
    QTest::newRow("Russian, Ctrl+S") << 0x42b << 39U << u"mnuFileSave"_s;
    QTest::newRow("Russian, Ctrl+N") << 0x422 << 57U << u"mnuFileNew"_s;
    QTest::newRow("Russian, Ctrl+W") << 0x426 << 25U << u"mnuFileClose"_s;
    QTest::newRow("Greek, Ctrl+F") << 0x3a6 << 41U << u"mnuSearchFind"_s;
    QTest::newRow("Russian, Ctrl+B") << 0x418 << 56U << u"mnuEditFormatBold"_s;
}

void tst_DesktopKeys::theyWorkOnKeyboardsOfAnotherScript()
{
    QFETCH(const int, letter);
    QFETCH(const quint32, scanCode);
    QFETCH(const QString, item);
    openDocument();
    watch(qPrintable(item));
    form()->textBox->setFocus();
    QKeyEvent claim(QEvent::ShortcutOverride, letter, Qt::ControlModifier, scanCode, 0, 0);
    claim.ignore();
    QCoreApplication::sendEvent(form()->textBox, &claim);
    QVERIFY(claim.isAccepted());
    QCOMPARE(m_chosen, QStringList());
    QKeyEvent event(QEvent::KeyPress, letter, Qt::ControlModifier, scanCode, 0, 0);
    QCoreApplication::sendEvent(form()->textBox, &event);
    QCOMPARE(m_chosen, QStringList(item));
}

// Where US keyboards have Q and W, the keyboards after Dvorak have the apostrophe and the comma.
void tst_DesktopKeys::aSignInALettersPlaceIsAnotherKey()
{
    openDocument();
    watch("mnuFileExit");
    watch("mnuFileClose");
    QKeyEvent apostrophe(QEvent::KeyPress, Qt::Key_Apostrophe, Qt::ControlModifier, 24, 0, 0);
    QCoreApplication::sendEvent(form()->textBox, &apostrophe);
    QKeyEvent comma(QEvent::KeyPress, Qt::Key_Comma, Qt::ControlModifier, 25, 0, 0);
    QCoreApplication::sendEvent(form()->textBox, &comma);
    QCOMPARE(m_chosen, QStringList());
}

QTEST_MAIN(tst_DesktopKeys)
#include "tst_DesktopKeys.moc"
