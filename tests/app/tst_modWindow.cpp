// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/modWindow.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTest>

class tst_modWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void cleanup() { m_area.reset(); }

    void horizontalTilesStandOneAboveTheOther();
    void verticalTilesStandSideBySide();
    void tilesLeaveRoomForIcons();
    void aMaximisedWindowIsTiledToo();
    void nothingToArrangeIsNoError();
    void cascadedWindowsAreOffsetAndKeepIconsMinimised();
    void iconsLineUpAlongTheBottom();
    void iconsThatDoNotFitGoIntoAnotherRow();

private:
    QMdiSubWindow *addWindow();

    std::unique_ptr<QMdiArea> m_area;
};

void tst_modWindow::init()
{
    m_area = std::make_unique<QMdiArea>();
    m_area->resize(901, 700);
    m_area->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_area.get()));
}

QMdiSubWindow *tst_modWindow::addWindow()
{
    QMdiSubWindow *window = m_area->addSubWindow(new QWidget);
    window->show();
    return window;
}

void tst_modWindow::horizontalTilesStandOneAboveTheOther()
{
    const QList<QMdiSubWindow *> windows{addWindow(), addWindow(), addWindow()};
    modWindow::WindowTileHorizontal(*m_area);
    int top = 0;
    for (const QMdiSubWindow *window : windows) {
        QCOMPARE(window->x(), 0);
        QCOMPARE(window->width(), m_area->viewport()->width());
        QCOMPARE(window->y(), top);
        top += window->height();
    }
    QCOMPARE(top, m_area->viewport()->height());
}

void tst_modWindow::verticalTilesStandSideBySide()
{
    const QList<QMdiSubWindow *> windows{addWindow(), addWindow()};
    modWindow::WindowTileVertical(*m_area);
    int left = 0;
    for (const QMdiSubWindow *window : windows) {
        QCOMPARE(window->y(), 0);
        QCOMPARE(window->height(), m_area->viewport()->height());
        QCOMPARE(window->x(), left);
        left += window->width();
    }
    QCOMPARE(left, m_area->viewport()->width());
}

void tst_modWindow::tilesLeaveRoomForIcons()
{
    const QMdiSubWindow *tiled = addWindow();
    QMdiSubWindow *icon = addWindow();
    icon->showMinimized();
    modWindow::WindowTileVertical(*m_area);
    QVERIFY(icon->isMinimized());
    QCOMPARE(tiled->geometry(),
             QRect(0, 0, m_area->viewport()->width(), m_area->viewport()->height() - icon->height()));
}

void tst_modWindow::aMaximisedWindowIsTiledToo()
{
    QMdiSubWindow *first = addWindow();
    QMdiSubWindow *second = addWindow();
    second->showMaximized();
    modWindow::WindowTileHorizontal(*m_area);
    QVERIFY(!second->isMaximized());
    QVERIFY(!first->geometry().intersects(second->geometry()));
}

void tst_modWindow::nothingToArrangeIsNoError()
{
    modWindow::WindowCascade(*m_area);
    modWindow::WindowTileHorizontal(*m_area);
    modWindow::WindowTileVertical(*m_area);
    modWindow::WindowArrangeIcons(*m_area);
    QVERIFY(m_area->subWindowList().isEmpty());
}

void tst_modWindow::cascadedWindowsAreOffsetAndKeepIconsMinimised()
{
    const QMdiSubWindow *first = addWindow();
    const QMdiSubWindow *second = addWindow();
    QMdiSubWindow *icon = addWindow();
    icon->showMinimized();
    modWindow::WindowCascade(*m_area);
    QVERIFY(first->x() != second->x() && first->y() != second->y());
    QVERIFY(icon->isMinimized());
}

void tst_modWindow::iconsLineUpAlongTheBottom()
{
    const QList<QMdiSubWindow *> icons{addWindow(), addWindow()};
    for (QMdiSubWindow *icon : icons) {
        icon->showMinimized();
        icon->move(100, 50);
    }
    modWindow::WindowArrangeIcons(*m_area);
    const int height = m_area->viewport()->height();
    QCOMPARE(icons.at(0)->pos(), QPoint(0, height - icons.at(0)->height()));
    QCOMPARE(icons.at(1)->pos(), QPoint(icons.at(0)->width(), height - icons.at(1)->height()));
}

void tst_modWindow::iconsThatDoNotFitGoIntoAnotherRow()
{
    QList<QMdiSubWindow *> icons;
    int width = 0;
    while (width <= m_area->viewport()->width()) {
        icons.append(addWindow());
        icons.last()->showMinimized();
        width += icons.last()->width();
    }
    modWindow::WindowArrangeIcons(*m_area);
    const int height = m_area->viewport()->height();
    QCOMPARE(icons.last()->pos(), QPoint(0, height - 2 * icons.last()->height()));
}

QTEST_MAIN(tst_modWindow)
#include "tst_modWindow.moc"
