// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/ColourBox.h"
#include "platform/FontDialog.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace
{

FontAttributes known()
{
    return {u"DejaVu Serif"_s, 10.5, false, true, true, false, QColor(Qt::red)};
}

} // namespace

class tst_FontDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void whatIsKnownIsShownAndAnswered();
    void whatIsNotKnownIsEmptyAndNotAnswered();
    void effectsThatAreNotOfferedAreAnsweredAsTheyCame();
    void namesAreFilteredByWhatIsTyped();
    void aFontThatIsNotHereStays();
    void namesOfNoFontAreRefused();
    void theArrowKeysGoThroughTheList();
    void sizes_data();
    void sizes();
    void aSizeThatWasThereStaysHoweverOdd_data();
    void aSizeThatWasThereStaysHoweverOdd();
    void sizesOfTheList();
    void stylesAndEffects();
    void colours();
    void keysOnTheClosedColoursAskForNone();
    void colourWithoutANameGetsARow();
    void everyControlHasAName();

private:
    template <class Widget>
    static Widget &find(const QDialog &dialog, const char *name)
    {
        auto *widget = dialog.findChild<Widget *>(QString::fromLatin1(name));
        if (!widget)
            qFatal("no %s", name);
        return *widget;
    }

    static bool canAccept(const QDialog &dialog)
    {
        return dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->isEnabled();
    }

    static void type(QLineEdit &line, const QString &text)
    {
        line.selectAll();
        QTest::keyClick(&line, Qt::Key_Delete);
        QTest::keyClicks(&line, text);
    }
};

void tst_FontDialog::initTestCase()
{
    for (const QString &family : {u"DejaVu Sans"_s, u"DejaVu Serif"_s}) {
        if (!QFontDatabase::families().contains(family))
            QSKIP("the DejaVu fonts are not installed");
    }
}

void tst_FontDialog::whatIsKnownIsShownAndAnswered()
{
    const FontDialog dialog({known(), true});
    QCOMPARE(find<QLineEdit>(dialog, "fontName").text(), u"DejaVu Serif"_s);
    QCOMPARE(find<QListWidget>(dialog, "fontNames").currentItem()->text(), u"DejaVu Serif"_s);
    QCOMPARE(find<QListWidget>(dialog, "fontStyles").currentItem()->text(), u"Italic"_s);
    QCOMPARE(find<QLineEdit>(dialog, "fontSize").text(), QLocale().toString(10.5));
    QVERIFY(find<QCheckBox>(dialog, "fontUnderline").isChecked());
    QVERIFY(dialog.chosen() == known());
    QVERIFY(canAccept(dialog));
}

void tst_FontDialog::whatIsNotKnownIsEmptyAndNotAnswered()
{
    const FontDialog dialog({{}, true});
    QVERIFY(find<QLineEdit>(dialog, "fontName").text().isEmpty());
    QVERIFY(find<QLineEdit>(dialog, "fontSize").text().isEmpty());
    QVERIFY(find<QListWidget>(dialog, "fontNames").selectedItems().isEmpty());
    QVERIFY(find<QListWidget>(dialog, "fontStyles").selectedItems().isEmpty());
    QCOMPARE(find<QCheckBox>(dialog, "fontStrikeThrough").checkState(), Qt::PartiallyChecked);
    QCOMPARE(find<ColourBox>(dialog, "fontColour").currentIndex(), -1);
    QVERIFY(dialog.chosen() == FontAttributes());
    QVERIFY(canAccept(dialog));
}

void tst_FontDialog::effectsThatAreNotOfferedAreAnsweredAsTheyCame()
{
    const FontDialog dialog({known(), false});
    QVERIFY(!dialog.findChild<ColourBox *>());
    QVERIFY(!dialog.findChild<QCheckBox *>());
    QVERIFY(dialog.chosen() == known());
}

void tst_FontDialog::namesAreFilteredByWhatIsTyped()
{
    const FontDialog dialog({{}, false});
    const auto &names = find<QListWidget>(dialog, "fontNames");
    type(find<QLineEdit>(dialog, "fontName"), u"serif"_s);
    for (int row = 0; row < names.count(); ++row) {
        const QListWidgetItem *item = names.item(row);
        QCOMPARE(item->isHidden(), !item->text().contains(u"serif"_s, Qt::CaseInsensitive));
    }
    QVERIFY(dialog.chosen().name->contains(u"serif"_s, Qt::CaseInsensitive));
    // One that is the name goes before one that only begins with it.
    type(find<QLineEdit>(dialog, "fontName"), u"dejavu sans"_s);
    QCOMPARE(dialog.chosen().name, std::optional(u"DejaVu Sans"_s));
}

void tst_FontDialog::aFontThatIsNotHereStays()
{
    FontAttributes initial = known();
    initial.name = u"No Such Font"_s;
    const FontDialog dialog({initial, false});
    QCOMPARE(find<QLineEdit>(dialog, "fontName").text(), u"No Such Font"_s);
    QVERIFY(canAccept(dialog));
    QVERIFY(dialog.chosen() == initial);
}

void tst_FontDialog::namesOfNoFontAreRefused()
{
    const FontDialog dialog({known(), false});
    type(find<QLineEdit>(dialog, "fontName"), u"qqqqqq"_s);
    QVERIFY(!canAccept(dialog));
    type(find<QLineEdit>(dialog, "fontName"), u"DejaVu Sans"_s);
    QVERIFY(canAccept(dialog));
}

void tst_FontDialog::theArrowKeysGoThroughTheList()
{
    const FontDialog dialog({known(), false});
    auto &name = find<QLineEdit>(dialog, "fontName");
    const auto &names = find<QListWidget>(dialog, "fontNames");
    const int row = names.currentRow();
    QTest::keyClick(&name, Qt::Key_Up);
    QCOMPARE(names.currentRow(), row - 1);
    QCOMPARE(name.text(), names.item(row - 1)->text());
    QCOMPARE(dialog.chosen().name, std::optional(name.text()));
}

void tst_FontDialog::sizes_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<double>("size");
    QTest::newRow("whole") << u"13"_s << 13.0;
    QTest::newRow("half") << u"9.5"_s << 9.5;
    QTest::newRow("to half points") << u" 9.3 "_s << 9.5;
    QTest::newRow("largest") << u"1638"_s << 1638.0;
    QTest::newRow("too large") << u"1639"_s << 0.0;
    QTest::newRow("nothing of a size") << u"0"_s << 0.0;
    QTest::newRow("negative") << u"-4"_s << 0.0;
    QTest::newRow("words") << u"large"_s << 0.0;
    QTest::newRow("no number") << u"nan"_s << 0.0;
}

void tst_FontDialog::sizes()
{
    QFETCH(const QString, typed);
    QFETCH(const double, size);
    const FontDialog dialog({known(), false});
    type(find<QLineEdit>(dialog, "fontSize"), typed);
    QCOMPARE(canAccept(dialog), size > 0);
    if (size > 0)
        QCOMPARE(dialog.chosen().size, std::optional(size));
}

void tst_FontDialog::aSizeThatWasThereStaysHoweverOdd_data()
{
    QTest::addColumn<double>("size");
    QTest::newRow("quarters") << 8.25;
    QTest::newRow("too large") << 2000.0;
    QTest::newRow("too small") << 0.5;
}

void tst_FontDialog::aSizeThatWasThereStaysHoweverOdd()
{
    QFETCH(const double, size);
    FontAttributes initial = known();
    initial.size = size;
    const FontDialog dialog({initial, false});
    QVERIFY(canAccept(dialog));
    QCOMPARE(dialog.chosen().size, std::optional(size));
}

void tst_FontDialog::sizesOfTheList()
{
    const FontDialog dialog({{}, false});
    auto &size = find<QLineEdit>(dialog, "fontSize");
    QTest::keyClick(&size, Qt::Key_Down);
    QTest::keyClick(&size, Qt::Key_Down);
    QCOMPARE(size.text(), u"9"_s);
    QCOMPARE(dialog.chosen().size, std::optional(9.0));
    type(size, u"36"_s);
    QCOMPARE(find<QListWidget>(dialog, "fontSizes").currentItem()->text(), u"36"_s);
}

void tst_FontDialog::stylesAndEffects()
{
    FontDialog dialog({known(), true});
    find<QListWidget>(dialog, "fontStyles").setCurrentRow(3);
    find<QCheckBox>(dialog, "fontUnderline").click();
    find<QCheckBox>(dialog, "fontStrikeThrough").click();
    const FontAttributes chosen = dialog.chosen();
    QCOMPARE(chosen.bold, std::optional(true));
    QCOMPARE(chosen.italic, std::optional(true));
    QCOMPARE(chosen.underline, std::optional(false));
    QCOMPARE(chosen.strikeThrough, std::optional(true));
}

void tst_FontDialog::colours()
{
    FontDialog dialog({known(), true});
    auto &box = find<ColourBox>(dialog, "fontColour");
    QCOMPARE(box.currentText(), u"Red"_s);
    QTest::keyClick(&box, Qt::Key_Home);
    QVERIFY(dialog.chosen().colour && !dialog.chosen().colour->isValid());
    box.setCurrentText(u"Navy"_s);
    QCOMPARE(dialog.chosen().colour, std::optional(QColor(0, 0, 128)));
}

void tst_FontDialog::keysOnTheClosedColoursAskForNone()
{
    ColourBox box;
    box.show();
    QVERIFY(QTest::qWaitForWindowActive(&box));
    bool asked = false;
    const auto watch = [&asked] {
        QTimer::singleShot(0, qApp, [&asked] {
            if (QWidget *dialog = QApplication::activeModalWidget()) {
                asked = true;
                dialog->close();
            }
        });
    };
    box.setColour(QColor(Qt::white));
    QCOMPARE(box.currentText(), u"White"_s);
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_End, Qt::Key_O, Qt::Key_O}) {
        watch();
        QTest::keyClick(&box, key);
        QCoreApplication::processEvents();
        QVERIFY(!asked);
        QVERIFY(box.colour());
    }
    // Chosen from the open list it does.
    box.setColour(QColor(Qt::white));
    box.showPopup();
    QTRY_VERIFY(box.view()->isVisible());
    QTest::keyClick(box.view(), Qt::Key_End);
    watch();
    QTest::keyClick(box.view(), Qt::Key_Return);
    QTRY_VERIFY(asked);
    QCOMPARE(box.colour(), std::optional(QColor(Qt::white)));
}

void tst_FontDialog::colourWithoutANameGetsARow()
{
    ColourBox box;
    const int rows = box.count();
    box.setColour(QColor(1, 2, 3));
    QCOMPARE(box.colour(), std::optional(QColor(1, 2, 3)));
    QCOMPARE(box.count(), rows + 1);
    box.setColour(QColor());
    QCOMPARE(box.currentText(), u"Automatic"_s);
    box.setColour(QColor(1, 2, 3));
    QCOMPARE(box.count(), rows + 1);
    box.setColour(std::nullopt);
    QVERIFY(!box.colour());
}

// What a screen reader says of each control that takes the focus.
void tst_FontDialog::everyControlHasAName()
{
    const FontDialog dialog({known(), true});
    for (const QWidget *widget : dialog.findChildren<QWidget *>()) {
        if (widget->focusPolicy() == Qt::NoFocus || !widget->isVisibleTo(&dialog))
            continue;
        QAccessibleInterface *reader = QAccessible::queryAccessibleInterface(const_cast<QWidget *>(widget));
        if (widget->objectName().startsWith(u"font"))
            QVERIFY2(!reader->text(QAccessible::Name).isEmpty(), qPrintable(widget->objectName()));
    }
}

QTEST_MAIN(tst_FontDialog)
#include "tst_FontDialog.moc"
