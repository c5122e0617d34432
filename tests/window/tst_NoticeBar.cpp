// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "support/RawOutline.h"
#include "window/WindowFixture.h"

#include "support/ErrorRecorder.h"
#include "support/Obstacles.h"
#include "support/OutlineText.h"

#include "document/modDoc.h"
#include "document/modFile.h"
#include "window/NoticeBar.h"
#include "window/SplitterBar.h"

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <functional>

using namespace Qt::StringLiterals;

namespace
{

const QString notSaved = u"The file /home/me/a.qly could not be saved (Disk full)."_s;
const QString notReadWhole = u"The file /home/me/b.qly could not be read whole."_s;

// How far apart two colours are in brightness, from 1 to 21, as guidelines for readable text count it.
double contrast(const QColor &first, const QColor &second)
{
    const auto brightness = [](const QColor &colour) {
        const auto linear = [](double part) {
            return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
    };
    const double one = brightness(first) + 0.05;
    const double other = brightness(second) + 0.05;
    return std::max(one, other) / std::min(one, other);
}

} // namespace

class tst_NoticeBar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void aDocumentWithoutNoticesHasNoBar();
    void aNoticeStandsAboveBothPanes();
    void noticesStandBelowOneAnotherTheGravestFirst();
    void dismissingAnyNoticeLeavesTheOthers();
    void everyKindCanBeDismissed_data();
    void everyKindCanBeDismissed();
    void aNoticeOutlastsKeysAndSelections();
    void noticesShowInTheirOwnWindowOnly();
    void tryAgainSavesTheWindowsOwnDocument();
    void tryAgainThatFailsTellsOnceMore();
    void tryAgainAsksForANameWhereAnotherFileWasChosen();
    void saveAsAsksForAName();
    void aLabelBeingEditedIsTakenBeforeSaving();
    void theBarNeverTakesTheFocusByItself();
    void aClickLeavesTheFocusInThePane();
    void f6LeadsIntoTheBarAndEscapeBack_data();
    void f6LeadsIntoTheBarAndEscapeBack();
    void tabGoesThroughTheBarsButtons();
    void tabGoesBetweenThePanesWhateverStands();
    void returnPressesTheButton();
    void theFocusGoesBackWhenTheNoticeGoes();
    void accessKeysWorkFromThePanes();
    void thePanesKeepTheirKeys();
    void theWindowsKeysWorkFromTheBar();
    void f6WithoutNoticesIsThePanes();
    void longTextsWrap();
    void whatIsTypedForAnEntryTooManyGoesNowhere_data();
    void whatIsTypedForAnEntryTooManyGoesNowhere();
    void manyNoticesLeaveThePanesHalfTheWindow();
    void inANarrowWindowTheButtonsStandBelow();
    void aLargerFontGetsMoreRoom();
    void aNoticeThatStandsIsNotLaidOutForEver();
    void textIsReadableInLightAndDark_data();
    void textIsReadableInLightAndDark();
    void theCaretStaysInSight();
    void theSelectedRowStaysInSight();
    void theSplitKeepsItsPlace();
    void aScreenReaderFindsAMessageToSpeak();

private:
    frmDocument &form() { return m_fixture->form(); }

    Document &document() { return form().document(); }

    NoticeBar &bar() { return *form().noticeBar; }

    // The texts of the rows to be seen, from the top.
    QStringList shown()
    {
        QList<NoticeRow *> rows;
        for (NoticeRow *row : bar().findChildren<NoticeRow *>()) {
            if (row->isVisible())
                rows.append(row);
        }
        std::ranges::sort(rows, {}, [](const NoticeRow *row) { return row->y(); });
        QStringList texts;
        for (const NoticeRow *row : rows)
            texts.append(row->accessibleName());
        return texts;
    }

    // A button of the row with a text.
    QPushButton *button(const QString &text, const char *name)
    {
        for (NoticeRow *row : bar().findChildren<NoticeRow *>()) {
            if (row->isVisible() && row->accessibleName() == text)
                return row->findChild<QPushButton *>(QLatin1StringView(name));
        }
        return nullptr;
    }

    void click(const QString &text, const char *name)
    {
        QPushButton *found = button(text, name);
        QVERIFY(found && found->isVisible());
        QTest::mouseClick(found, Qt::LeftButton);
    }

    // Whether the gravest notice is framed, as it is for a moment when it is told.
    bool drawsTheEye()
    {
        QTest::qWait(0);
        const QImage image = bar().grab().toImage();
        return image.pixelColor(0, image.height() / 2) == bar().palette().color(QPalette::Highlight);
    }

    void openDocument();

    std::unique_ptr<WindowFixture> m_fixture;
};

void tst_NoticeBar::init()
{
    m_fixture = std::make_unique<WindowFixture>();
    QVERIFY(QTest::qWaitForWindowActive(&m_fixture->main));
    openDocument();
    form().treeView->setFocus();
}

void tst_NoticeBar::cleanup()
{
    m_fixture.reset();
}

void tst_NoticeBar::openDocument()
{
    modDoc::DocNew();
    plantOutline(rawOutline(document()).tree, {u"Root"_s, u" First"_s, u" Second"_s});
    rawOutline(document()).tree.setExpanded(document().tree.root(), true);
    modNodes::NodeSelect(document(), document().tree.root());
    document().history.markSaved();
}

void tst_NoticeBar::aDocumentWithoutNoticesHasNoBar()
{
    QVERIFY(!bar().isVisible());
    QCOMPARE(form().treeView->y(), 0);
    QCOMPARE(form().treeView->height(), form().height());
}

void tst_NoticeBar::aNoticeStandsAboveBothPanes()
{
    document().tell({NoticeKind::NotReadWhole, notReadWhole});
    QCOMPARE(shown(), QStringList{notReadWhole});
    QCOMPARE(bar().geometry().topLeft(), QPoint(0, 0));
    QCOMPARE(bar().width(), form().width());
    QVERIFY(bar().height() > 20 && bar().height() < 100);
    for (const QWidget *pane : {static_cast<QWidget *>(form().treeView), static_cast<QWidget *>(form().textBox),
                                static_cast<QWidget *>(form().imgSplitter)}) {
        QCOMPARE(pane->y(), bar().height());
        QCOMPARE(pane->height(), form().height() - bar().height());
    }
    document().dismiss(NoticeKind::NotReadWhole);
    QVERIFY(!bar().isVisible());
    QCOMPARE(form().treeView->height(), form().height());
    QCOMPARE(form().textBox->y(), 0);
}

void tst_NoticeBar::noticesStandBelowOneAnotherTheGravestFirst()
{
    document().tell({NoticeKind::NoBackup, u"No backup."_s});
    document().tell({NoticeKind::NotSaved, notSaved});
    document().tell({NoticeKind::NotReadWhole, notReadWhole});
    QTest::qWait(0);
    QCOMPARE(shown(), QStringList({notSaved, notReadWhole, u"No backup."_s}));
    document().tell({NoticeKind::NotSaved, u"Another reason."_s});
    QCOMPARE(shown(), QStringList({u"Another reason."_s, notReadWhole, u"No backup."_s}));
}

void tst_NoticeBar::dismissingAnyNoticeLeavesTheOthers()
{
    document().tell({NoticeKind::NoBackup, u"No backup."_s});
    document().tell({NoticeKind::NotSaved, notSaved});
    document().tell({NoticeKind::NotReadWhole, notReadWhole});
    QTest::qWait(0);
    click(notReadWhole, "cmdDismiss");
    QCOMPARE(shown(), QStringList({notSaved, u"No backup."_s}));
    click(notSaved, "cmdDismiss");
    QTest::qWait(0);
    QCOMPARE(shown(), QStringList{u"No backup."_s});
    QCOMPARE(document().notices().size(), size_t(1));
    document().tell({NoticeKind::NotSaved, notSaved});
    QCOMPARE(shown(), QStringList({notSaved, u"No backup."_s}));
}

void tst_NoticeBar::everyKindCanBeDismissed_data()
{
    QTest::addColumn<NoticeKind>("kind");
    QTest::addColumn<QStringList>("buttons");
    QTest::newRow("not saved") << NoticeKind::NotSaved << QStringList{u"Save as..."_s, u"Try again"_s, u"Dismiss"_s};
    QTest::newRow("not read whole") << NoticeKind::NotReadWhole << QStringList{u"Dismiss"_s};
    QTest::newRow("damaged text") << NoticeKind::DamagedText << QStringList{u"Dismiss"_s};
    QTest::newRow("full") << NoticeKind::DocumentFull << QStringList{u"Dismiss"_s};
    QTest::newRow("no backup") << NoticeKind::NoBackup << QStringList{u"Dismiss"_s};
}

void tst_NoticeBar::everyKindCanBeDismissed()
{
    QFETCH(const NoticeKind, kind);
    QFETCH(const QStringList, buttons);
    document().tell({kind, u"What happened."_s});
    QTest::qWait(0);
    QStringList captions;
    for (const QPushButton *each : bar().findChildren<QPushButton *>()) {
        captions.append(each->text().remove(u'&'));
        QCOMPARE(each->accessibleDescription(), u"What happened."_s);
    }
    QCOMPARE(captions, buttons);
    click(u"What happened."_s, "cmdDismiss");
    QVERIFY(document().notices().empty());
    QVERIFY(!bar().isVisible());
}

void tst_NoticeBar::aNoticeOutlastsKeysAndSelections()
{
    document().tell({NoticeKind::NotSaved, notSaved});
    QTest::keyClick(form().treeView, Qt::Key_Down);
    QTest::keyClick(form().treeView, Qt::Key_Down);
    QTest::keyClick(form().treeView, Qt::Key_Tab);
    QTest::keyClicks(form().textBox, u"words"_s);
    form().Form_Activate();
    QCOMPARE(shown(), QStringList{notSaved});
    QCOMPARE(document().tree.selected()->label(), u"Second"_s);
    QCOMPARE(form().textBox->toPlainText(), u"words"_s);
}

void tst_NoticeBar::noticesShowInTheirOwnWindowOnly()
{
    Document &first = document();
    const NoticeBar &firstBar = bar();
    openDocument();
    first.tell({NoticeKind::NotSaved, notSaved});
    QVERIFY(!bar().isVisibleTo(&form()));
    QVERIFY(firstBar.isVisibleTo(firstBar.parentWidget()));
}

void tst_NoticeBar::tryAgainSavesTheWindowsOwnDocument()
{
    const TestFolder folder;
    document().m_sFile = folder(u"a.qly"_s);
    document().history.touch();
    folder.setMode(QString(), 0555);
    {
        const OrdinaryUser user;
        QVERIFY(!modFile::FileSave());
        QCOMPARE(shown().size(), 1);
        const QString told = shown().first();
        QVERIFY2(told.startsWith(u"The file %1 could not be saved"_s.arg(folder(u"a.qly"_s))), qPrintable(told));
        QTest::keyClick(form().treeView, Qt::Key_Down);
        QCOMPARE(shown(), QStringList{told});
        folder.setMode(QString(), 0777);
    }
    QTest::qWait(0);
    folder.setMode(QString(), 0777);
    click(shown().first(), "cmdTryAgain");
    QCOMPARE(shown(), QStringList());
    QVERIFY(!document().m_bDataChanged());
    QVERIFY(folder.read(u"a.qly"_s).contains("First"));
}

void tst_NoticeBar::tryAgainThatFailsTellsOnceMore()
{
    document().m_sFile = u"/dev/null/a.qly"_s;
    QVERIFY(!modFile::FileSave());
    const QStringList told = shown();
    QVERIFY(drawsTheEye());
    QTRY_VERIFY(!drawsTheEye());
    click(told.first(), "cmdTryAgain");
    QCOMPARE(shown(), told);
    QVERIFY(drawsTheEye());
}

void tst_NoticeBar::tryAgainAsksForANameWhereAnotherFileWasChosen()
{
    const TestFolder folder;
    document().m_sFile = folder(u"own.qly"_s);
    m_fixture->fakes.dialogs.saveNames = {u"/dev/null/copy.qly"_s, folder(u"copy.qly"_s)};
    QVERIFY(!modFile::FileSaveAs());
    QTest::qWait(0);
    click(shown().first(), "cmdTryAgain");
    QCOMPARE(folder.names(), QStringList{u"copy.qly"_s});
    QVERIFY(!bar().isVisible());
}

void tst_NoticeBar::saveAsAsksForAName()
{
    const TestFolder folder;
    document().m_sFile = u"/dev/null/a.qly"_s;
    m_fixture->fakes.dialogs.saveNames = {std::nullopt, folder(u"b.qly"_s)};
    QVERIFY(!modFile::FileSave());
    QTest::qWait(0);
    click(shown().first(), "cmdSaveAs");
    QCOMPARE(shown().size(), 1);
    click(shown().first(), "cmdSaveAs");
    QVERIFY(!bar().isVisible());
    QCOMPARE(document().m_sFile, folder(u"b.qly"_s));
    QCOMPARE(folder.names(), QStringList{u"b.qly"_s});
}

void tst_NoticeBar::aLabelBeingEditedIsTakenBeforeSaving()
{
    const TestFolder folder;
    document().m_sFile = folder(u"a.qly"_s);
    document().tell({NoticeKind::NotSaved, notSaved, document().m_sFile});
    QTest::qWait(0);
    QTest::keyClick(form().treeView, Qt::Key_F2);
    QTest::keyClicks(QApplication::focusWidget(), u"Renamed"_s);
    click(notSaved, "cmdTryAgain");
    QCOMPARE(document().tree.root()->label(), u"Renamed"_s);
    QVERIFY(folder.read(u"a.qly"_s).contains("Renamed"));
}

void tst_NoticeBar::theBarNeverTakesTheFocusByItself()
{
    form().textBox->setFocus();
    document().tell({NoticeKind::NotSaved, notSaved});
    QTest::qWait(0);
    QVERIFY(form().textBox->hasFocus());
    document().dismiss(NoticeKind::NotSaved);
    QTest::qWait(0);
    QVERIFY(form().textBox->hasFocus());
}

void tst_NoticeBar::aClickLeavesTheFocusInThePane()
{
    form().textBox->setFocus();
    document().tell({NoticeKind::NotSaved, notSaved});
    QTest::qWait(0);
    QTest::mouseClick(bar().findChild<QLabel *>(u"lblNotice"_s), Qt::LeftButton);
    QVERIFY(form().textBox->hasFocus());
    click(notSaved, "cmdDismiss");
    QVERIFY(form().textBox->hasFocus());
    QVERIFY(document().view()->m_bTextHasFocus());
}

void tst_NoticeBar::f6LeadsIntoTheBarAndEscapeBack_data()
{
    QTest::addColumn<bool>("fromText");
    QTest::addColumn<Qt::Key>("back");
    QTest::newRow("from the outline with Esc") << false << Qt::Key_Escape;
    QTest::newRow("from the outline with F6") << false << Qt::Key_F6;
    QTest::newRow("from the text with Esc") << true << Qt::Key_Escape;
    QTest::newRow("from the text with F6") << true << Qt::Key_F6;
}

void tst_NoticeBar::f6LeadsIntoTheBarAndEscapeBack()
{
    QFETCH(const bool, fromText);
    QFETCH(const Qt::Key, back);
    QWidget *pane = fromText ? static_cast<QWidget *>(form().textBox) : form().treeView;
    pane->setFocus();
    document().tell({NoticeKind::NotSaved, notSaved});
    QTest::qWait(0);
    QTest::keyClick(pane, Qt::Key_F6);
    QCOMPARE(QApplication::focusWidget(), button(notSaved, "cmdSaveAs"));
    QTest::keyClick(QApplication::focusWidget(), back);
    QCOMPARE(QApplication::focusWidget(), pane);
    QCOMPARE(document().view()->m_bTextHasFocus(), fromText);
    QCOMPARE(shown(), QStringList{notSaved});
}

void tst_NoticeBar::tabGoesThroughTheBarsButtons()
{
    document().tell({NoticeKind::NotSaved, notSaved});
    document().tell({NoticeKind::NotReadWhole, notReadWhole});
    QTest::qWait(0);
    QTest::keyClick(form().treeView, Qt::Key_F6);
    for (const auto &[text, name] : {std::pair(notSaved, "cmdSaveAs"), std::pair(notSaved, "cmdTryAgain"),
                                     std::pair(notSaved, "cmdDismiss"), std::pair(notReadWhole, "cmdDismiss")}) {
        QCOMPARE(QApplication::focusWidget(), button(text, name));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(QApplication::focusWidget(), form().treeView);
    QTest::keyClick(form().treeView, Qt::Key_F6);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(QApplication::focusWidget(), form().textBox);
}

void tst_NoticeBar::tabGoesBetweenThePanesWhateverStands()
{
    document().tell({NoticeKind::NotSaved, notSaved});
    QTest::qWait(0);
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab}) {
        const Qt::KeyboardModifiers modifiers = key == Qt::Key_Tab ? Qt::NoModifier : Qt::ShiftModifier;
        QTest::keyClick(form().treeView, key, modifiers);
        QCOMPARE(QApplication::focusWidget(), form().textBox);
        QTest::keyClick(form().textBox, key, modifiers);
        QCOMPARE(QApplication::focusWidget(), form().treeView);
    }
    QTest::keyClick(form().treeView, Qt::Key_F2);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), form().textBox);
}

void tst_NoticeBar::returnPressesTheButton()
{
    document().tell({NoticeKind::NotReadWhole, notReadWhole});
    QTest::qWait(0);
    QTest::keyClick(form().treeView, Qt::Key_F6);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QVERIFY(document().notices().empty());
    document().tell({NoticeKind::NotReadWhole, notReadWhole});
    QTest::keyClick(form().treeView, Qt::Key_F6);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QVERIFY(document().notices().empty());
}

void tst_NoticeBar::theFocusGoesBackWhenTheNoticeGoes()
{
    form().treeView->setFocus();
    document().tell({NoticeKind::NotSaved, notSaved});
    QTest::qWait(0);
    QTest::keyClick(form().treeView, Qt::Key_F6);
    document().dismiss(NoticeKind::NotSaved);
    QVERIFY(form().treeView->hasFocus());
    form().textBox->setFocus();
    document().tell({NoticeKind::NotSaved, notSaved});
    QTest::keyClick(form().textBox, Qt::Key_F6);
    document().dismiss(NoticeKind::NotSaved);
    QVERIFY(form().textBox->hasFocus());
    QVERIFY(document().view()->m_bTextHasFocus());
}

void tst_NoticeBar::accessKeysWorkFromThePanes()
{
    const TestFolder folder;
    document().m_sFile = folder(u"a.qly"_s);
    for (QWidget *pane : {static_cast<QWidget *>(form().treeView), static_cast<QWidget *>(form().textBox)}) {
        pane->setFocus();
        document().tell({NoticeKind::NotSaved, notSaved, document().m_sFile});
        QTest::qWait(0);
        QTest::keyClick(pane, Qt::Key_R, Qt::AltModifier);
        QTRY_VERIFY(document().notices().empty());
        QCOMPARE(folder.names(), QStringList{u"a.qly"_s});
        document().tell({NoticeKind::NotReadWhole, notReadWhole});
        QTest::qWait(0);
        QTest::keyClick(pane, Qt::Key_D, Qt::AltModifier);
        QTRY_VERIFY(document().notices().empty());
        QVERIFY(pane->hasFocus());
        QFile::remove(document().m_sFile);
    }
}

void tst_NoticeBar::thePanesKeepTheirKeys()
{
    document().tell({NoticeKind::NotSaved, notSaved});
    QTest::qWait(0);
    const int entries = document().tree.entryCount();
    QTest::keyClick(form().treeView, Qt::Key_Down);
    QTest::keyClick(form().treeView, Qt::Key_A, Qt::AltModifier);
    QCOMPARE(document().tree.entryCount(), entries + 1);
    QVERIFY2(m_fixture->fakes.dialogs.saveNames.empty(), "no name was asked for");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    form().textBox->setFocus();
    QTest::keyClicks(form().textBox, u"a b"_s);
    QTest::keyClick(form().textBox, Qt::Key_Return);
    QTest::keyClick(form().textBox, Qt::Key_Escape);
    QCOMPARE(form().textBox->toPlainText(), u"a b\n"_s);
    QCOMPARE(shown(), QStringList{notSaved});
}

void tst_NoticeBar::theWindowsKeysWorkFromTheBar()
{
    document().tell({NoticeKind::NotReadWhole, notReadWhole});
    QTest::qWait(0);
    QTest::keyClick(form().treeView, Qt::Key_F6);
    const int entries = document().tree.entryCount();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_I, Qt::AltModifier);
    QCOMPARE(document().tree.entryCount(), entries + 1);
}

void tst_NoticeBar::f6WithoutNoticesIsThePanes()
{
    QTest::keyClick(form().treeView, Qt::Key_F6);
    QVERIFY(form().treeView->hasFocus());
}

void tst_NoticeBar::longTextsWrap()
{
    document().tell({NoticeKind::NotReadWhole, notReadWhole});
    QTest::qWait(0);
    const int oneLine = bar().height();
    QString path;
    for (int part = 0; part < 30; ++part)
        path += u"/a_folder_with_a_name"_s;
    document().tell({NoticeKind::NotReadWhole, u"The file %1 could not be read whole."_s.arg(path)});
    QVERIFY(bar().height() > oneLine * 2);
    QTest::qWait(0);
    const QLabel *label = bar().findChild<QLabel *>(u"lblNotice"_s);
    QVERIFY(bar().height() > oneLine * 2);
    QVERIFY(label->height() >= label->heightForWidth(label->width()));
    // Nothing is cut at the side: the text takes no more than the width that it has.
    const QRect needed =
        label->fontMetrics().boundingRect(QRect(0, 0, label->width(), 10000), Qt::TextWordWrap, label->text());
    QVERIFY2(needed.width() <= label->width(), qPrintable(QString::number(needed.width())));
    QVERIFY(bar().rect().contains(bar().mapFromGlobal(label->mapToGlobal(QPoint(label->width() - 1, 0)))));
    QCOMPARE(label->accessibleName(), document().notices()[0].text);
}

void tst_NoticeBar::manyNoticesLeaveThePanesHalfTheWindow()
{
    form().parentWidget()->resize(500, 200);
    for (const NoticeKind kind : {NoticeKind::NotSaved, NoticeKind::NotReadWhole, NoticeKind::DamagedText,
                                  NoticeKind::DocumentFull, NoticeKind::NoBackup})
        document().tell({kind, notSaved.repeated(4)});
    QTest::qWait(0);
    QVERIFY(form().treeView->height() >= form().height() / 2);
    QVERIFY(form().height() - bar().height() == form().treeView->height());
    // What does not fit is reached by the keyboard all the same.
    QTest::keyClick(form().treeView, Qt::Key_F6);
    for (int step = 0; step < 6; ++step)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    const QWidget *last = QApplication::focusWidget();
    QVERIFY(bar().isAncestorOf(last));
    QVERIFY(bar().rect().intersects(QRect(last->mapTo(&bar(), QPoint(0, 0)), last->size())));
    for (int count = 0; count < 5; ++count)
        document().dismiss(document().notices().front().kind);
    QCOMPARE(form().treeView->height(), form().height());
}

void tst_NoticeBar::inANarrowWindowTheButtonsStandBelow()
{
    document().tell({NoticeKind::NotSaved, notSaved});
    QTest::qWait(0);
    const QLabel *label = bar().findChild<QLabel *>(u"lblNotice"_s);
    const QPushButton *saveAs = button(notSaved, "cmdSaveAs");
    QVERIFY(saveAs->x() > label->geometry().right());
    form().parentWidget()->resize(320, 400);
    QTest::qWait(0);
    QVERIFY(saveAs->y() > label->geometry().bottom());
    QVERIFY(label->width() > form().width() / 2);
    QVERIFY(label->height() >= label->heightForWidth(label->width()));
    form().parentWidget()->resize(800, 400);
    QTest::qWait(0);
    QVERIFY(saveAs->x() > label->geometry().right());
}

void tst_NoticeBar::aLargerFontGetsMoreRoom()
{
    document().tell({NoticeKind::NotReadWhole, notReadWhole});
    QTest::qWait(0);
    const int before = bar().height();
    QFont large = QApplication::font();
    large.setPointSize(large.pointSize() * 3);
    bar().setFont(large);
    QTest::qWait(0);
    QVERIFY(bar().height() > before);
    QCOMPARE(form().treeView->y(), bar().height());
}

// The processor rests while the user reads it.
void tst_NoticeBar::aNoticeThatStandsIsNotLaidOutForEver()
{
    const QSignalSpy layouts(&bar(), &NoticeBar::heightChanged);
    const auto layoutsOf = [&layouts](const std::function<void()> &change) {
        change();
        for (int round = 0; round < 20; ++round)
            QCoreApplication::processEvents();
        const qsizetype before = layouts.size();
        for (int round = 0; round < 20; ++round)
            QCoreApplication::processEvents();
        return layouts.size() - before;
    };
    QCOMPARE(layoutsOf([this] { document().tell({NoticeKind::NotSaved, notSaved}); }), 0);
    QCOMPARE(layoutsOf([this] { document().tell({NoticeKind::NotReadWhole, notReadWhole}); }), 0);
    QCOMPARE(layoutsOf([this] { form().parentWidget()->resize(320, 400); }), 0);
    QCOMPARE(layoutsOf([this] { document().tell({NoticeKind::NotSaved, notSaved.repeated(5)}); }), 0);
    QCOMPARE(layoutsOf([this] { document().dismiss(NoticeKind::NotReadWhole); }), 0);
    QVERIFY(!layouts.isEmpty());
    QVERIFY(bar().isVisible());
}

void tst_NoticeBar::textIsReadableInLightAndDark_data()
{
    QTest::addColumn<QColor>("window");
    QTest::addColumn<QColor>("text");
    QTest::newRow("light") << QColor(239, 240, 241) << QColor(35, 38, 41);
    QTest::newRow("dark") << QColor(42, 46, 50) << QColor(252, 252, 252);
    QTest::newRow("high contrast") << QColor(Qt::black) << QColor(Qt::yellow);
}

void tst_NoticeBar::textIsReadableInLightAndDark()
{
    QFETCH(const QColor, window);
    QFETCH(const QColor, text);
    document().tell({NoticeKind::NotReadWhole, notReadWhole});
    QPalette colours;
    colours.setColor(QPalette::Window, window);
    colours.setColor(QPalette::WindowText, text);
    bar().setPalette(colours);
    QTest::qWait(0);
    const QImage image = bar().grab().toImage();
    const QColor background = image.pixelColor(image.width() / 2, 4);
    QVERIFY(background != window);
    QVERIFY2(contrast(background, text) >= 4.5, qPrintable(QString::number(contrast(background, text))));
    QCOMPARE(bar().findChild<QLabel *>(u"lblNotice"_s)->palette().color(QPalette::WindowText), text);
}

void tst_NoticeBar::theCaretStaysInSight()
{
    form().textBox->setFocus();
    QString text;
    for (int line = 0; line < 200; ++line)
        text += u"line %1\n"_s.arg(line);
    form().textBox->setPlainText(text);
    // The caret stands in the lowest line to be seen.
    form().textBox->setTextCursor(
        form().textBox->cursorForPosition(QPoint(2, form().textBox->viewport()->height() - 8)));
    QVERIFY(form().textBox->viewport()->rect().contains(form().textBox->cursorRect()));
    document().tell({NoticeKind::NotSaved, notSaved});
    QTest::qWait(0);
    QVERIFY(form().textBox->viewport()->rect().contains(form().textBox->cursorRect()));
}

void tst_NoticeBar::theSelectedRowStaysInSight()
{
    QStringList labels{u"Root"_s};
    for (int entry = 0; entry < 100; ++entry)
        labels.append(u" Entry %1"_s.arg(entry));
    modDoc::DocNew();
    plantOutline(rawOutline(document()).tree, labels);
    rawOutline(document()).tree.setExpanded(document().tree.root(), true);
    Entry *lowest = document().tree.root();
    for (Entry *child = lowest->firstChild(); child; child = child->next()) {
        const QRect row = form().treeView->visualRect(document().tree.indexOf(child));
        if (!form().treeView->viewport()->rect().contains(row))
            break;
        lowest = child;
    }
    modNodes::NodeSelect(document(), lowest);
    QCOMPARE(form().treeView->verticalScrollBar()->value(), 0);
    document().tell({NoticeKind::NotSaved, notSaved});
    QTest::qWait(0);
    const QRect row = form().treeView->visualRect(form().treeView->currentIndex());
    QVERIFY(form().treeView->viewport()->rect().contains(row));
}

void tst_NoticeBar::theSplitKeepsItsPlace()
{
    const int place = form().textBox->x();
    document().tell({NoticeKind::NotSaved, notSaved});
    QTest::qWait(0);
    QCOMPARE(form().textBox->x(), place);
    form().parentWidget()->resize(form().parentWidget()->width() - 50, 400);
    QTest::qWait(0);
    QCOMPARE(form().textBox->x(), place);
    document().dismiss(NoticeKind::NotSaved);
    QCOMPARE(form().textBox->x(), place);
}

void tst_NoticeBar::aScreenReaderFindsAMessageToSpeak()
{
    document().tell({NoticeKind::NotSaved, notSaved});
    QAccessibleInterface *row = QAccessible::queryAccessibleInterface(bar().findChild<NoticeRow *>());
    QCOMPARE(row->role(), QAccessible::AlertMessage);
    QCOMPARE(row->text(QAccessible::Name), notSaved);
    QVERIFY(!row->state().invisible);
    for (const auto &[name, caption] :
         {std::pair("cmdSaveAs", u"Save as..."_s), std::pair("cmdDismiss", u"Dismiss"_s)}) {
        QAccessibleInterface *found = QAccessible::queryAccessibleInterface(button(notSaved, name));
        QCOMPARE(found->text(QAccessible::Name), caption);
        QCOMPARE(found->text(QAccessible::Description), notSaved);
    }
}

void tst_NoticeBar::whatIsTypedForAnEntryTooManyGoesNowhere_data()
{
    QTest::addColumn<QString>("from");
    QTest::newRow("from the outline") << u"outline"_s;
    QTest::newRow("from the text") << u"text"_s;
    QTest::newRow("from an open label") << u"label"_s;
}

// A new entry is its command, its label, Tab and its text, typed without a look at the screen.
void tst_NoticeBar::whatIsTypedForAnEntryTooManyGoesNowhere()
{
    QFETCH(const QString, from);
    const ErrorRecorder errors;
    EntryTree &tree = rawOutline(document()).tree;
    {
        const BulkChange bulk(tree);
        while (tree.entryCount() < EntryTree::maximumCount)
            tree.insert(Relationship::tvwChild, tree.root());
    }
    Entry *selected = tree.root()->firstChild();
    modNodes::NodeSelect(document(), selected);
    form().textBox->setTextRTF("{\\rtf1 its text}");
    if (from == "text"_L1)
        form().textBox->setFocus();
    else if (from == "label"_L1)
        QTest::keyClick(form().treeView, Qt::Key_F2);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_B, Qt::AltModifier);
    QCOMPARE(errors.summary(), QStringList{u"6 modOutline OutlineInsertBelow"_s});
    QVERIFY(document().hasNotice(NoticeKind::DocumentFull));
    for (const QString &words : {u"Second thoughts"_s, u"\t"_s, u"of this and that"_s, u"\r"_s, u"more"_s}) {
        for (const QChar c : words) {
            const Qt::Key key = c == u'\t' ? Qt::Key_Tab : c == u'\r' ? Qt::Key_Return : Qt::Key(c.toUpper().unicode());
            QTest::sendKeyEvent(QTest::Click, QApplication::focusWidget(), key, QString(c), Qt::NoModifier);
        }
    }
    QCOMPARE(tree.selected(), selected);
    QCOMPARE(selected->label(), u"First"_s);
    QCOMPARE(form().textBox->Text(), u"its text"_s);
    QVERIFY(document().hasNotice(NoticeKind::DocumentFull));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    QVERIFY(form().treeView->hasFocus() || form().textBox->hasFocus());
    // Room again, and nothing to tell.
    modNodes::NodeDelete(document(), tree.root()->child(5));
    QVERIFY(!document().hasNotice(NoticeKind::DocumentFull));
}

QTEST_MAIN(tst_NoticeBar)
#include "tst_NoticeBar.moc"
