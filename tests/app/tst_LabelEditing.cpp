// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/DocumentFrame.h"
#include "app/MainFixture.h"
#include "commands/ToolbarTable.h"
#include "document/modDoc.h"
#include "document/modNodes.h"
#include "platform/RichTextBox.h"
#include "platform/TreeView.h"
#include "support/OutlineText.h"
#include "support/RawOutline.h"
#include "window/frmDocument.h"

#include <QApplication>
#include <QLineEdit>
#include <QMdiArea>
#include <QMenuBar>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QWindow>

using namespace Qt::StringLiterals;

// A label open for editing beside the rest of the program, and the keyboard between panes and menu bar.
class tst_LabelEditing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void cleanup() { m_main.reset(); }

    void anOpenLabelCountsAsTheOutlineHavingTheFocus_data();
    void anOpenLabelCountsAsTheOutlineHavingTheFocus();
    void aTextKeyLeavesTheTextBehindAnOpenLabelAlone_data();
    void aTextKeyLeavesTheTextBehindAnOpenLabelAlone();
    void theNewDocumentOfTheStartHasItsLabelOpenAndTheOutlineFocused();
    void savingByMenuKeysKeepsTheKeyboardInTheOutline();
    void lettersTypedAfterACommandRunNoOtherCommand();
    void leavingTheMenusReturnsToTheOpenLabel();
    void escapeTooOftenLosesNoLabel();
    void aDialogOpenedFromTheMenusReturnsToTheOutline();
    void lookingIntoAMenuFirstChangesNothing();
    void aCommandAfterALookIntoTheMenuReturnsTheKeyboard();
    void aMenuKeyOpensAnotherMenuAndReturnsTheKeyboard();
    void anOutlineKeyWorksWhileTheMenuBarIsMarked();
    void aClickEndsALabelEditThatWaitsForTheMenus();
    void aMenuBarThatIsLeftOverGivesTheKeyboardBack();

private:
    Document &plant(const QStringList &outline);
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const;
    void type(const QString &text) const;
    QLineEdit *editor() const;
    void expectOutline() const;

    frmDocument &form() const { return static_cast<frmDocument &>(DocumentActive()->view()->window); }

    QMenuBar &bar() const { return *m_main->main.menuBar(); }

    std::unique_ptr<MainFixture> m_main;
};

void tst_LabelEditing::init()
{
    m_main = std::make_unique<MainFixture>();
    m_main->start();
    m_main->main.resize(1000, 800);
    m_main->main.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_main->main));
}

// A document with the outline, saved so that saving asks nothing.
Document &tst_LabelEditing::plant(const QStringList &outline)
{
    modDoc::DocNew();
    Document &document = *DocumentActive();
    plantOutline(rawOutline(document).tree, outline);
    modNodes::NodeSelect(document, document.tree.selected());
    document.m_sFile = m_main->app.folder.filePath(u"planted.qly"_s);
    modDoc::DocSave(document.m_sFile);
    form().treeView->setFocus();
    return document;
}

// To the window, as the desktop delivers keys: whatever has the keyboard gets it.
void tst_LabelEditing::press(Qt::Key key, Qt::KeyboardModifiers modifiers) const
{
    QTest::keyClick(m_main->main.windowHandle(), key, modifiers);
}

void tst_LabelEditing::type(const QString &text) const
{
    for (const QChar character : text)
        QTest::sendKeyEvent(QTest::Click, m_main->main.windowHandle(), Qt::Key_unknown, character, Qt::NoModifier);
}

// The open label editor, or null; one that was closed lives on until the event loop deletes it.
QLineEdit *tst_LabelEditing::editor() const
{
    for (QLineEdit *each : form().treeView->findChildren<QLineEdit *>()) {
        if (!each->isHidden())
            return each;
    }
    return nullptr;
}

// The outline or a label in it has the keyboard, and the program says so everywhere.
void tst_LabelEditing::expectOutline() const
{
    const Document &document = *DocumentActive();
    QVERIFY(!QApplication::activePopupWidget());
    const QWidget *focus = QApplication::focusWidget();
    QVERIFY(focus && (focus == form().treeView || focus == editor()));
    QVERIFY(document.view()->m_bOutlineHasFocus());
    QVERIFY(!document.view()->m_bTextHasFocus());
    QVERIFY(!m_main->enabled("mnuEditSelectAll"));
    QVERIFY(!m_main->enabled("mnuEditDelete"));
    QVERIFY(!m_main->enabled("mnuEditInsertTab"));
    for (const auto &[key, shown] : {std::pair{"Delete Text", false}, {"Go To Text", true}, {"Copy Entry", true}}) {
        const QString name = u"tb"_s + QLatin1StringView(toolbarTable[toolbarRow(key)].icon);
        QCOMPARE(!m_main->main.findChild<QToolButton *>(name)->isHidden(), shown);
    }
}

static const QStringList &sample()
{
    static const QStringList outline{u"Root +"_s, u" C <"_s, u" B"_s, u" A"_s};
    return outline;
}

void tst_LabelEditing::anOpenLabelCountsAsTheOutlineHavingTheFocus_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::newRow("Alt+A") << int{Qt::Key_A} << int{Qt::AltModifier};
    QTest::newRow("Alt+B") << int{Qt::Key_B} << int{Qt::AltModifier};
    QTest::newRow("Alt+I") << int{Qt::Key_I} << int{Qt::AltModifier};
    QTest::newRow("F2") << int{Qt::Key_F2} << int{Qt::NoModifier};
    QTest::newRow("by menu") << 0 << int{Qt::NoModifier};
}

void tst_LabelEditing::anOpenLabelCountsAsTheOutlineHavingTheFocus()
{
    QFETCH(const int, key);
    QFETCH(const int, modifiers);
    plant(sample());
    m_main->choose("mnuViewGoToText");
    QVERIFY(DocumentActive()->view()->m_bTextHasFocus());
    if (key != 0)
        press(static_cast<Qt::Key>(key), static_cast<Qt::KeyboardModifier>(modifiers));
    else
        m_main->choose("mnuOutlineRename");
    QVERIFY(editor());
    expectOutline();
    press(Qt::Key_Return);
    QVERIFY(!editor());
    expectOutline();
}

void tst_LabelEditing::aTextKeyLeavesTheTextBehindAnOpenLabelAlone_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    constexpr int ctrl = Qt::ControlModifier;
    constexpr int shift = Qt::ShiftModifier;
    QTest::newRow("the time") << int{Qt::Key_M} << ctrl;
    QTest::newRow("the date") << int{Qt::Key_D} << ctrl;
    QTest::newRow("a tab") << int{Qt::Key_Tab} << ctrl;
    QTest::newRow("larger") << int{Qt::Key_Greater} << (ctrl | shift);
    QTest::newRow("smaller") << int{Qt::Key_Less} << (ctrl | shift);
}

void tst_LabelEditing::aTextKeyLeavesTheTextBehindAnOpenLabelAlone()
{
    QFETCH(const int, key);
    QFETCH(const int, modifiers);
    Document &document = plant(sample());
    m_main->choose("mnuViewGoToText");
    type(u"All of this text"_s);
    press(Qt::Key_A, Qt::ControlModifier);
    const QByteArray before = document.tree.storedText(document.tree.selected());
    press(Qt::Key_F2);
    type(u"New"_s);
    press(static_cast<Qt::Key>(key), static_cast<Qt::KeyboardModifiers>(QFlag(modifiers)));
    QCOMPARE(document.tree.storedText(document.tree.selected()), before);
    QCOMPARE(document.view()->txtRTF.Text(), u"All of this text"_s);
    press(Qt::Key_Return);
    QCOMPARE(document.tree.storedText(document.tree.selected()), before);
    QCOMPARE(document.tree.selected()->label(), u"New"_s);
}

void tst_LabelEditing::theNewDocumentOfTheStartHasItsLabelOpenAndTheOutlineFocused()
{
    m_main.reset();
    m_main = std::make_unique<MainFixture>();
    m_main->app.settings.setValue(u"Settings"_s, u"StartWithNewDocument"_s, u"True"_s);
    m_main->start();
    m_main->main.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_main->main));
    QVERIFY(DocumentActive());
    QVERIFY(editor());
    expectOutline();
}

void tst_LabelEditing::savingByMenuKeysKeepsTheKeyboardInTheOutline()
{
    const QString file = m_main->app.folder.filePath(u"first.qly"_s);
    m_main->app.core.dialogs.saveNames = {file};
    m_main->choose("mnuFileNew");
    Document &document = *DocumentActive();
    type(u"My root"_s);
    press(Qt::Key_F, Qt::AltModifier);
    QVERIFY(QApplication::activePopupWidget());
    press(Qt::Key_S);
    QCOMPARE(document.m_sFile, file);
    QCOMPARE(document.tree.root()->label(), u"My root"_s);
    QVERIFY(!document.m_bDataChanged());
    expectOutline();
    press(Qt::Key_I, Qt::AltModifier);
    type(u"Child"_s);
    press(Qt::Key_Return);
    QCOMPARE(DocumentActive(), &document);
    QCOMPARE(dumpOutline(document.tree), QStringList({u"My root +"_s, u" Child <"_s}));
}

void tst_LabelEditing::lettersTypedAfterACommandRunNoOtherCommand()
{
    Document &document = plant(sample());
    press(Qt::Key_F2);
    press(Qt::Key_A, Qt::ControlModifier);
    type(u"Renamed"_s);
    press(Qt::Key_F, Qt::AltModifier);
    press(Qt::Key_S);
    expectOutline();
    type(u"cost"_s);
    expectOutline();
    QCOMPARE(document.tree.root()->child(0)->label(), u"Renamed"_s);
    QCOMPARE(document.tree.root()->child(1)->label(), u"B"_s);
    QCOMPARE(document.tree.root()->child(2)->label(), u"A"_s);
}

void tst_LabelEditing::leavingTheMenusReturnsToTheOpenLabel()
{
    Document &document = plant(sample());
    press(Qt::Key_I, Qt::AltModifier);
    type(u"Ty"_s);
    press(Qt::Key_F, Qt::AltModifier);
    press(Qt::Key_Escape);
    press(Qt::Key_Escape);
    expectOutline();
    type(u"ped"_s);
    press(Qt::Key_Return);
    QCOMPARE(document.tree.selected()->label(), u"Typed"_s);
    expectOutline();
}

void tst_LabelEditing::escapeTooOftenLosesNoLabel()
{
    Document &document = plant(sample());
    press(Qt::Key_I, Qt::AltModifier);
    type(u"Typed"_s);
    press(Qt::Key_F, Qt::AltModifier);
    for (int times = 0; times < 4; ++times)
        press(Qt::Key_Escape);
    QVERIFY(!editor());
    QCOMPARE(document.tree.selected()->label(), u"Typed"_s);
    expectOutline();
}

void tst_LabelEditing::aDialogOpenedFromTheMenusReturnsToTheOutline()
{
    Document &document = plant(sample());
    press(Qt::Key_F2);
    type(u"Typed"_s);
    bool shown = false;
    QTimer closing;
    connect(&closing, &QTimer::timeout, this, [&shown] {
        if (QWidget *box = QApplication::activeModalWidget()) {
            shown = true;
            box->close();
        }
    });
    closing.start(0);
    press(Qt::Key_H, Qt::AltModifier);
    press(Qt::Key_A);
    closing.stop();
    QVERIFY(shown);
    m_main->main.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_main->main));
    expectOutline();
    QCOMPARE(document.tree.selected()->label(), u"Typed"_s);
}

void tst_LabelEditing::lookingIntoAMenuFirstChangesNothing()
{
    plant(sample());
    const Document *before = DocumentActive();
    press(Qt::Key_F, Qt::AltModifier);
    press(Qt::Key_Escape);
    press(Qt::Key_F, Qt::AltModifier);
    press(Qt::Key_N);
    QVERIFY(DocumentActive() != before);
    expectOutline();
    type(u"Found"_s);
    press(Qt::Key_Return);
    press(Qt::Key_B, Qt::AltModifier);
    type(u"Below"_s);
    press(Qt::Key_Return);
    QCOMPARE(dumpOutline(DocumentActive()->tree), QStringList({u"Found +"_s, u" Below <"_s}));
}

void tst_LabelEditing::aCommandAfterALookIntoTheMenuReturnsTheKeyboard()
{
    plant(sample());
    press(Qt::Key_F, Qt::AltModifier);
    press(Qt::Key_Escape);
    press(Qt::Key_F, Qt::AltModifier);
    press(Qt::Key_S);
    expectOutline();
}

void tst_LabelEditing::aMenuKeyOpensAnotherMenuAndReturnsTheKeyboard()
{
    plant(sample());
    press(Qt::Key_F2);
    press(Qt::Key_F, Qt::AltModifier);
    press(Qt::Key_Escape);
    press(Qt::Key_V, Qt::AltModifier);
    QCOMPARE(QApplication::activePopupWidget(), m_main->action(u"mnuView"_s)->menu());
    press(Qt::Key_O, Qt::AltModifier);
    for (int times = 0; times < 5; ++times)
        press(Qt::Key_Escape);
    expectOutline();
}

void tst_LabelEditing::anOutlineKeyWorksWhileTheMenuBarIsMarked()
{
    Document &document = plant(sample());
    press(Qt::Key_F, Qt::AltModifier);
    press(Qt::Key_Escape);
    press(Qt::Key_B, Qt::AltModifier);
    QCOMPARE(document.tree.entryCount(), 5);
    expectOutline();
}

void tst_LabelEditing::aClickEndsALabelEditThatWaitsForTheMenus()
{
    Document &document = plant(sample());
    press(Qt::Key_F2);
    type(u"Typed"_s);
    press(Qt::Key_F, Qt::AltModifier);
    press(Qt::Key_Escape);
    const QPoint inText = form().textBox->viewport()->mapTo(&m_main->main, QPoint(20, 20));
    QTest::mouseClick(m_main->main.windowHandle(), Qt::LeftButton, Qt::NoModifier, inText);
    QVERIFY(!editor());
    QCOMPARE(document.tree.selected()->label(), u"Typed"_s);
    QCOMPARE(QApplication::focusWidget(), form().textBox);
    QVERIFY(document.view()->m_bTextHasFocus());
    QVERIFY(m_main->enabled("mnuEditSelectAll"));
}

void tst_LabelEditing::aMenuBarThatIsLeftOverGivesTheKeyboardBack()
{
    plant(sample());
    bar().setFocus();
    QVERIFY(bar().hasFocus());
    QTRY_VERIFY(form().treeView->hasFocus());
}

QTEST_MAIN(tst_LabelEditing)
#include "tst_LabelEditing.moc"
