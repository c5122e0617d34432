// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/MainFixture.h"
#include "commands/ToolbarTable.h"
#include "support/RawOutline.h"

#include "support/OutlineText.h"

#include "document/modDoc.h"
#include "document/modNodes.h"
#include "outline/modOutline.h"
#include "platform/TreeView.h"
#include "window/frmDocument.h"

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

using namespace Qt::StringLiterals;

// The outline's commands in the whole program: by menu, toolbar and key alike.
class tst_OutlineMenu : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void menuToolbarAndKeyDoTheSame_data();
    void menuToolbarAndKeyDoTheSame();
    void aReadOnlyDocumentIsNotChanged_data();
    void aReadOnlyDocumentIsNotChanged();
    void withNoDocumentNothingHappens_data();
    void withNoDocumentNothingHappens();
    void aCommandKeepsTheLabelThatIsBeingTyped();
    void renamingTakesAnyLabel_data();
    void renamingTakesAnyLabel();
    void escapeKeepsTheLabelOfANewEntry();
    void clickToRenameIsForAllOpenWindows();
    void clickToRenameIsForLaterWindowsToo();

private:
    Document &plant(const QStringList &outline);
    TreeView &view() const;
    QLineEdit *editor() const;
    QToolButton &button(std::string_view key) const;

    std::unique_ptr<MainFixture> m_main;
};

void tst_OutlineMenu::init()
{
    m_main = std::make_unique<MainFixture>();
    m_main->start();
    QVERIFY(QTest::qWaitForWindowActive(&m_main->main));
}

void tst_OutlineMenu::cleanup()
{
    modOutline::copiedEntry().clear();
    m_main.reset();
}

Document &tst_OutlineMenu::plant(const QStringList &outline)
{
    modDoc::DocNew();
    Document &document = *DocumentActive();
    plantOutline(rawOutline(document).tree, outline);
    modNodes::NodeSelect(document, document.tree.selected());
    document.history.markSaved();
    view().setFocus();
    return document;
}

TreeView &tst_OutlineMenu::view() const
{
    return *dynamic_cast<frmDocument &>(DocumentActive()->view()->window).treeView;
}

// The open label editor, or null; one that was closed lives on until the event loop deletes it.
QLineEdit *tst_OutlineMenu::editor() const
{
    for (QLineEdit *each : view().findChildren<QLineEdit *>()) {
        if (!each->isHidden())
            return each;
    }
    return nullptr;
}

QToolButton &tst_OutlineMenu::button(std::string_view key) const
{
    const QString name = u"tb"_s + QLatin1StringView(toolbarTable[toolbarRow(key)].icon);
    return *m_main->main.findChild<QToolButton *>(name);
}

struct OutlineItem {
    const char *item;
    // Empty where the toolbar has no such button, and no key where there is none.
    const char *button;
    QKeyCombination key;
    // Whether a read-only document offers it.
    bool onReadOnly;
};

static constexpr auto noKey = QKeyCombination(Qt::Key_unknown);

static constexpr OutlineItem items[] = {
    {"mnuOutlineInsertAbove", "New Entry Above", Qt::ALT | Qt::Key_A, false},
    {"mnuOutlineInsertBelow", "New Entry Below", Qt::ALT | Qt::Key_B, false},
    {"mnuOutlineInsertChild", "New Entry As Child", Qt::ALT | Qt::Key_I, false},
    {"mnuOutlineIndent", "Indent Entry", Qt::ALT | Qt::Key_Right, false},
    {"mnuOutlineUnindent", "Unindent Entry", Qt::ALT | Qt::Key_Left, false},
    {"mnuOutlineMoveUp", "Move Entry Up", Qt::ALT | Qt::Key_Up, false},
    {"mnuOutlineMoveDown", "Move Entry Down", Qt::ALT | Qt::Key_Down, false},
    {"mnuOutlineMoveFirst", "Move Entry First", Qt::ALT | Qt::Key_Home, false},
    {"mnuOutlineMoveLast", "Move Entry Last", Qt::ALT | Qt::Key_End, false},
    {"mnuOutlineCopy", "Copy Entry", Qt::ALT | Qt::Key_C, true},
    {"mnuOutlinePaste", "Paste Entry", Qt::ALT | Qt::Key_P, false},
    {"mnuOutlinePasteAndDelete", "", noKey, false},
    {"mnuOutlineDelete", "Delete Entry", Qt::ALT | Qt::Key_Delete, false},
    {"mnuOutlineRename", "", QKeyCombination(Qt::Key_F2), false},
    {"mnuOutlineTaggedEntry", "Tag Entry", Qt::ALT | Qt::Key_T, true},
    {"mnuOutlineExpand", "Expand Entry", Qt::KeypadModifier | Qt::Key_Plus, true},
    {"mnuOutlineCollapse", "Contract Entry", Qt::KeypadModifier | Qt::Key_Minus, true},
    {"mnuOutlineExpandAll", "Expand all levels", noKey, true},
    {"mnuOutlineCollapseAll", "", noKey, true},
    {"mnuOutlineExpandLevel2", "Expand to level 2", noKey, true},
    {"mnuOutlineSortCurrent", "Sort Entry", noKey, false},
    {"mnuOutlineSortAll", "", noKey, false},
};

static void addItems()
{
    QTest::addColumn<int>("index");
    for (size_t i = 0; i < std::size(items); ++i)
        QTest::newRow(items[i].item) << static_cast<int>(i);
}

static const QStringList &outlineFor(QByteArrayView item)
{
    static const QStringList open = {u"Root +"_s, u" b +"_s, u"  b1"_s, u"  b2 +<"_s,
                                     u"   z"_s,   u"   y"_s, u"  b3"_s, u" a"_s};
    static const QStringList closed = {u"Root +"_s, u" b +"_s, u"  b1"_s, u"  b2 <"_s,
                                       u"   z"_s,   u"   y"_s, u"  b3"_s, u" a"_s};
    return item == "mnuOutlineExpand" ? closed : open;
}

void tst_OutlineMenu::menuToolbarAndKeyDoTheSame_data()
{
    addItems();
}

void tst_OutlineMenu::menuToolbarAndKeyDoTheSame()
{
    QFETCH(const int, index);
    const OutlineItem &item = items[index];
    const auto outcome = [&](const std::function<void()> &act) {
        Document &document = plant(outlineFor(item.item));
        modOutline::OutlineCopy();
        m_main->app.core.dialogs.answers = {Answer::Yes};
        act();
        m_main->app.core.dialogs.answers.clear();
        const bool naming = editor();
        document.view()->trvOutline.EndLabelEdit();
        QStringList result = dumpOutline(document.tree);
        result.append(naming ? u"naming"_s : u"not naming"_s);
        return result;
    };
    const QStringList byMenu = outcome([&] { m_main->choose(item.item); });
    QVERIFY(DocumentActive()->m_bDataChanged() || QLatin1StringView(item.item) == "mnuOutlineCopy"_L1);
    if (*item.button) {
        const QStringList byButton = outcome([&] { button(item.button).click(); });
        QCOMPARE(byButton, byMenu);
    }
    if (item.key != noKey) {
        const QStringList byKey =
            outcome([&] { QTest::keyClick(&view(), item.key.key(), item.key.keyboardModifiers()); });
        QCOMPARE(byKey, byMenu);
    }
}

void tst_OutlineMenu::aReadOnlyDocumentIsNotChanged_data()
{
    addItems();
}

void tst_OutlineMenu::aReadOnlyDocumentIsNotChanged()
{
    QFETCH(const int, index);
    const OutlineItem &item = items[index];
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"fixed.qly"_s);
    Document &document = plant(outlineFor(item.item));
    QCOMPARE(modDoc::DocSave(file), SaveOutcome::Saved);
    document.m_sFile = file;
    QVERIFY(QFile::setPermissions(file, QFile::ReadOwner));
    document.lookAtFileAgain();
    modOutline::OutlineCopy();
    m_main->refresh();
    QCOMPARE(m_main->enabled(item.item), item.onReadOnly);
    if (item.onReadOnly)
        return;
    const QStringList before = dumpOutline(document.tree);
    document.history.markSaved();
    if (item.key != noKey)
        QTest::keyClick(&view(), item.key.key(), item.key.keyboardModifiers());
    // Buttons are not greyed, and some that change an outline are shown in one that cannot be changed.
    if (*item.button)
        button(item.button).click();
    QCOMPARE(dumpOutline(document.tree), before);
    QVERIFY(!document.m_bDataChanged());
    QVERIFY(!editor());
}

void tst_OutlineMenu::withNoDocumentNothingHappens_data()
{
    addItems();
}

void tst_OutlineMenu::withNoDocumentNothingHappens()
{
    QFETCH(const int, index);
    QVERIFY(!DocumentActive());
    QVERIFY(!m_main->enabled(items[index].item));
    m_main->action(QLatin1StringView(items[index].item))->trigger();
    QVERIFY(m_main->main.windows().documents().empty());
}

void tst_OutlineMenu::aCommandKeepsTheLabelThatIsBeingTyped()
{
    const Document &document = plant({u"Root +"_s, u" A"_s, u" B <"_s});
    m_main->choose("mnuOutlineRename");
    QTest::keyClicks(editor(), u"typed"_s);
    m_main->choose("mnuOutlineMoveUp");
    QVERIFY(!editor());
    QCOMPARE(dumpOutline(document.tree), QStringList({u"Root +"_s, u" typed <"_s, u" A"_s}));
}

void tst_OutlineMenu::renamingTakesAnyLabel_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("expected");
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("blanks") << u"  "_s << u"  "_s;
    QTest::newRow("quotes and markup") << u"'\"<b>&{\\}"_s << u"'\"<b>&{\\}"_s;
    QTest::newRow("beyond the code page") << u"Ελλάδα 日本 😀"_s << u"Ελλάδα 日本 😀"_s;
    QTest::newRow("a line break") << u"one\ntwo"_s << u"one two"_s;
    QTest::newRow("a line break of a text file") << u"one\r\ntwo\r\n"_s << u"one two "_s;
}

void tst_OutlineMenu::renamingTakesAnyLabel()
{
    QFETCH(const QString, label);
    QFETCH(const QString, expected);
    const Document &document = plant({u"Root +"_s, u" A <"_s});
    m_main->choose("mnuOutlineRename");
    QApplication::clipboard()->setText(label);
    if (label.isEmpty())
        QTest::keyClick(editor(), Qt::Key_Delete);
    else
        editor()->paste();
    QTest::keyClick(editor(), Qt::Key_Return);
    QTRY_VERIFY(!editor());
    QCOMPARE(document.tree.selected()->label(), expected);
    QVERIFY(document.m_bDataChanged());
    QVERIFY(view().hasFocus());
}

void tst_OutlineMenu::escapeKeepsTheLabelOfANewEntry()
{
    const Document &document = plant({u"Root +"_s, u" A <"_s});
    m_main->choose("mnuOutlineInsertBelow");
    QTest::keyClicks(editor(), u"typed"_s);
    QTest::keyClick(editor(), Qt::Key_Escape);
    QTRY_VERIFY(!editor());
    QCOMPARE(dumpOutline(document.tree), QStringList({u"Root +"_s, u" A"_s, u" New Entry <"_s}));
}

void tst_OutlineMenu::clickToRenameIsForAllOpenWindows()
{
    const Document &first = plant({u"Root <"_s});
    const Document &second = plant({u"Root <"_s});
    for (const LabelEditMode mode : {LabelEditMode::tvwAutomatic, LabelEditMode::tvwManual}) {
        m_main->choose("mnuViewOptionsClickToRenameEntry");
        QCOMPARE(first.view()->trvOutline.LabelEdit(), mode);
        QCOMPARE(second.view()->trvOutline.LabelEdit(), mode);
        QCOMPARE(m_main->action(u"mnuViewOptionsClickToRenameEntry"_s)->isChecked(),
                 mode == LabelEditMode::tvwAutomatic);
        view().setFocus();
        QTest::qWait(QApplication::doubleClickInterval() + 1);
        const QRect row = view().visualRect(second.tree.indexOf(second.tree.root()));
        QTest::mouseClick(view().viewport(), Qt::LeftButton, {}, {row.left() + 30, row.center().y()});
        if (mode == LabelEditMode::tvwAutomatic) {
            QTRY_VERIFY(editor());
            QTest::keyClick(editor(), Qt::Key_Escape);
            QTRY_VERIFY(!editor());
        } else {
            QTest::qWait(QApplication::doubleClickInterval() * 2);
            QVERIFY(!editor());
        }
    }
}

void tst_OutlineMenu::clickToRenameIsForLaterWindowsToo()
{
    plant({u"Root <"_s});
    m_main->choose("mnuViewOptionsClickToRenameEntry");
    QCOMPARE(plant({u"Root <"_s}).view()->trvOutline.LabelEdit(), LabelEditMode::tvwAutomatic);
}

QTEST_MAIN(tst_OutlineMenu)
#include "tst_OutlineMenu.moc"
