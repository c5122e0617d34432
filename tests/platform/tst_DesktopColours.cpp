// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/Contrast.h"
#include "platform/DesktopColours.h"

#include <QApplication>
#include <QCheckBox>
#include <QImage>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPushButton>
#include <QStyle>
#include <QStyleOption>
#include <QTest>
#include <QTextEdit>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

// What can be made out on desktops of high contrast, on pictures of real controls.
class tst_DesktopColours : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void init()
    {
        QApplication::setPalette(QPalette());
        QApplication::setStyle(u"fusion"_s);
    }

    void cleanup() { init(); }

    void checkBoxesHaveAnOutline_data() { addDesktops(); }

    void checkBoxesHaveAnOutline();

    void greyedTextIsPalerAndLegible_data() { addDesktops(); }

    void greyedTextIsPalerAndLegible();

    void greyedButtonsAndMenuItemsAreLegible_data() { addDesktops(); }

    void greyedButtonsAndMenuItemsAreLegible();

    void panesAndMenusHaveABorder_data() { addDesktops(); }

    void panesAndMenusHaveABorder();

    void theFocusIsSeen_data() { addDesktops(); }

    void theFocusIsSeen();

    void captionsCanBeRead_data() { addDesktops(); }

    void captionsCanBeRead();

    void textKeepsItsOwnColours_data() { addDesktops(); }

    void textKeepsItsOwnColours();
    void usualDesktopsStayAsTheyAre_data();
    void usualDesktopsStayAsTheyAre();
    void greyedTextOfADarkDesktopIsLegible();
    void lightColoursFollowDarkOnes();

private:
    // As a Plasma desktop hands its colours on: greyed text has a darker shade of the buttons.
    static QPalette desktop(const QColor &ground, const QColor &text, const QColor &chosen, const QColor &chosenText)
    {
        QPalette palette(ground, ground);
        palette.setColor(QPalette::Base, ground);
        for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
            palette.setColor(role, text);
            palette.setColor(QPalette::Disabled, role, ground.darker());
        }
        palette.setColor(QPalette::Highlight, chosen);
        palette.setColor(QPalette::HighlightedText, chosenText);
        return palette;
    }

    static QPalette darkDesktop()
    {
        QPalette palette =
            desktop(QColor(42, 46, 50), QColor(252, 252, 252), QColor(61, 174, 233), QColor(252, 252, 252));
        palette.setColor(QPalette::Base, QColor(27, 30, 32));
        return palette;
    }

    static void addDesktops()
    {
        QTest::addColumn<QPalette>("colours");
        QTest::newRow("black and yellow") << desktop(Qt::black, Qt::yellow, Qt::white, Qt::black);
        QTest::newRow("black and white") << desktop(Qt::black, Qt::white, Qt::cyan, Qt::black);
        QTest::newRow("nearly black") << desktop(QColor(8, 8, 12), Qt::white, Qt::green, Qt::black);
        QTest::newRow("white and black") << desktop(Qt::white, Qt::black, Qt::black, Qt::white);
    }

    static void show(QWidget &widget)
    {
        widget.show();
        QVERIFY(QTest::qWaitForWindowExposed(&widget));
    }

    static QImage picture(QWidget &widget) { return widget.grab().toImage(); }

    // The greatest contrast of a part of a picture to a colour.
    static double most(const QImage &image, const QRect &part, const QColor &ground)
    {
        double found = 1;
        const QRect inside = part & image.rect();
        for (int y = inside.top(); y <= inside.bottom(); ++y) {
            for (int x = inside.left(); x <= inside.right(); ++x)
                found = std::max(found, Contrast::between(image.pixelColor(x, y), ground));
        }
        return found;
    }

    static double mostOf(QWidget &widget, QPalette::ColorRole ground)
    {
        const QImage image = picture(widget);
        return most(image, image.rect(), widget.palette().color(ground));
    }

    // The least contrast along the middle of the four edges to the surroundings and to what is inside.
    static double edge(const QImage &image, const QRect &part, const QColor &ground)
    {
        const QPoint middle = part.center();
        return std::min({Contrast::between(image.pixelColor(part.left(), middle.y()), ground),
                         Contrast::between(image.pixelColor(part.right(), middle.y()), ground),
                         Contrast::between(image.pixelColor(middle.x(), part.top()), ground),
                         Contrast::between(image.pixelColor(middle.x(), part.bottom()), ground)});
    }
};

void tst_DesktopColours::checkBoxesHaveAnOutline()
{
    QFETCH(const QPalette, colours);
    QApplication::setPalette(colours);
    const DesktopColours mended;
    QCheckBox box(u"Match case?"_s);
    show(box);
    QStyleOptionButton option;
    option.initFrom(&box);
    const QRect indicator = box.style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, &box);
    const QImage image = picture(box);
    QCOMPARE_GE(edge(image, indicator, box.palette().color(QPalette::Window)), Contrast::discernible);
    QCOMPARE_GE(edge(image, indicator, box.palette().color(QPalette::Base)), Contrast::discernible);
}

void tst_DesktopColours::greyedTextIsPalerAndLegible()
{
    QFETCH(const QPalette, colours);
    QApplication::setPalette(colours);
    const DesktopColours mended;
    QLabel label(u"MMM"_s);
    show(label);
    const double usual = mostOf(label, QPalette::Window);
    label.setEnabled(false);
    const double greyed = mostOf(label, QPalette::Window);
    QCOMPARE_GE(greyed, Contrast::discernible);
    QCOMPARE_GE(usual, 2 * greyed);
}

void tst_DesktopColours::greyedButtonsAndMenuItemsAreLegible()
{
    QFETCH(const QPalette, colours);
    QApplication::setPalette(colours);
    const DesktopColours mended;
    QPushButton button(u"MMM"_s);
    button.setEnabled(false);
    show(button);
    const QImage image = picture(button);
    const QRect middle = image.rect().adjusted(6, 6, -6, -6);
    QCOMPARE_GE(most(image, middle, image.pixelColor(middle.topLeft())), Contrast::discernible);

    QMenu menu;
    menu.addAction(u"MMM"_s)->setEnabled(false);
    show(menu);
    const QImage items = picture(menu);
    const QRect inside = items.rect().adjusted(3, 3, -3, -3);
    QCOMPARE_GE(most(items, inside, items.pixelColor(inside.topLeft())), Contrast::discernible);
}

void tst_DesktopColours::panesAndMenusHaveABorder()
{
    QFETCH(const QPalette, colours);
    QApplication::setPalette(colours);
    const DesktopColours mended;
    QWidget window;
    auto *pane = new QTextEdit;
    pane->setReadOnly(true);
    auto *button = new QPushButton(u"Find"_s);
    auto *layout = new QVBoxLayout(&window);
    layout->addWidget(pane);
    layout->addWidget(button);
    show(window);
    window.setFocus();
    const QImage image = picture(window);
    for (const QWidget *framed : {static_cast<QWidget *>(pane), static_cast<QWidget *>(button)}) {
        QCOMPARE_GE(edge(image, framed->geometry(), window.palette().color(QPalette::Window)), Contrast::discernible);
        QCOMPARE_GE(edge(image, framed->geometry(), window.palette().color(QPalette::Base)), Contrast::discernible);
    }

    QMenu menu;
    menu.addAction(u"Find"_s);
    show(menu);
    const QImage items = picture(menu);
    QCOMPARE_GE(edge(items, items.rect(), menu.palette().color(QPalette::Window)), Contrast::discernible);
}

void tst_DesktopColours::theFocusIsSeen()
{
    QFETCH(const QPalette, colours);
    QApplication::setPalette(colours);
    const DesktopColours mended;
    QWidget window;
    auto *one = new QPushButton(u"One"_s);
    auto *other = new QPushButton(u"Other"_s);
    auto *layout = new QVBoxLayout(&window);
    layout->addWidget(one);
    layout->addWidget(other);
    show(window);
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    one->setFocus(Qt::TabFocusReason);
    const QColor ground = window.palette().color(QPalette::Window);
    const QImage image = picture(window);
    QCOMPARE_GE(edge(image, one->geometry(), ground), 1.5 * edge(image, other->geometry(), ground));
}

void tst_DesktopColours::captionsCanBeRead()
{
    QFETCH(const QPalette, colours);
    QApplication::setPalette(colours);
    const DesktopColours mended;
    QMdiArea area;
    area.resize(500, 400);
    QMdiSubWindow *windows[2] = {};
    for (QMdiSubWindow *&window : windows) {
        window = area.addSubWindow(new QTextEdit);
        window->setWindowTitle(u"MMMM"_s);
        window->resize(300, 200);
        window->show();
    }
    show(area);
    area.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&area));
    area.setActiveSubWindow(windows[0]);
    QVERIFY(windows[0]->windowState() & Qt::WindowActive);
    for (QMdiSubWindow *window : windows) {
        QStyleOptionTitleBar bar;
        bar.initFrom(window);
        bar.subControls = QStyle::SC_All;
        bar.titleBarFlags = window->windowFlags();
        bar.rect.setHeight(window->style()->pixelMetric(QStyle::PM_TitleBarHeight, &bar, window));
        const auto place = [&](QStyle::SubControl part) {
            return window->style()->subControlRect(QStyle::CC_TitleBar, &bar, part, window);
        };
        const QImage image = picture(*window);
        const QRect label = place(QStyle::SC_TitleBarLabel).adjusted(4, 4, -4, -4);
        const QColor ground = image.pixelColor(label.left(), label.center().y());
        QCOMPARE_GE(most(image, label, ground), Contrast::readable);
        for (const auto button :
             {QStyle::SC_TitleBarMinButton, QStyle::SC_TitleBarMaxButton, QStyle::SC_TitleBarCloseButton})
            QCOMPARE_GE(most(image, place(button).adjusted(5, 5, -5, -5), ground), Contrast::readable);
    }
}

void tst_DesktopColours::textKeepsItsOwnColours()
{
    QFETCH(const QPalette, colours);
    QApplication::setPalette(colours);
    const DesktopColours mended;
    for (const auto role : {QPalette::Base, QPalette::Text, QPalette::WindowText, QPalette::ButtonText,
                            QPalette::Highlight, QPalette::HighlightedText})
        QCOMPARE(QApplication::palette().color(role), colours.color(role));
    QCOMPARE_GE(Contrast::between(QApplication::palette().color(QPalette::Window), colours.color(QPalette::WindowText)),
                11.0);
}

void tst_DesktopColours::usualDesktopsStayAsTheyAre_data()
{
    QTest::addColumn<QPalette>("colours");
    QTest::newRow("the toolkit's own") << QApplication::style()->standardPalette();
    QTest::newRow("light") << [] {
        QPalette light = desktop(QColor(239, 240, 241), QColor(35, 38, 41), QColor(61, 174, 233), Qt::white);
        light.setColor(QPalette::Base, Qt::white);
        return light;
    }();
    QTest::newRow("dark") << [] {
        QPalette dark = darkDesktop();
        for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
            dark.setColor(QPalette::Disabled, role, Qt::gray);
        return dark;
    }();
}

void tst_DesktopColours::usualDesktopsStayAsTheyAre()
{
    QFETCH(const QPalette, colours);
    QApplication::setPalette(colours);
    const QPalette before = QApplication::palette();
    const QStyle *style = QApplication::style();
    const DesktopColours asked;
    QCOMPARE(QApplication::palette(), before);
    QCOMPARE(QApplication::style(), style);
}

// Such a desktop gives greyed text half the brightness of its buttons.
void tst_DesktopColours::greyedTextOfADarkDesktopIsLegible()
{
    QApplication::setPalette(darkDesktop());
    const DesktopColours mended;
    QLabel label(u"MMM"_s);
    label.setEnabled(false);
    show(label);
    QCOMPARE_GE(mostOf(label, QPalette::Window), Contrast::discernible);
    QCOMPARE(QApplication::palette().color(QPalette::Window), darkDesktop().color(QPalette::Window));
}

void tst_DesktopColours::lightColoursFollowDarkOnes()
{
    const QColor usual = QApplication::palette().color(QPalette::Window);
    DesktopColours colours;
    colours.follow(1);
    QCOMPARE_LT(QApplication::palette().color(QPalette::Window).lightness(), 100);
    colours.follow(0);
    QCOMPARE(QApplication::palette().color(QPalette::Window), usual);
}

QTEST_MAIN(tst_DesktopColours)
#include "tst_DesktopColours.moc"
