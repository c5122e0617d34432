// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/Toolbar.h"
#include "app/ToolbarSupport.h"
#include "commands/Dispatcher.h"
#include "support/FakePorts.h"

#include <QMainWindow>
#include <QPainter>
#include <QRegularExpression>
#include <QTest>
#include <QToolButton>

#include <set>

using namespace Qt::StringLiterals;

namespace
{

int leftOf(const QWidget &window, std::string_view key)
{
    return buttonOf(window, key)->mapTo(&window, QPoint()).x();
}

// Where the lines between groups that are seen stand.
QList<int> linesIn(const QWidget &window)
{
    QList<int> places;
    for (const QWidget *line : window.findChildren<QWidget *>(u"tbLine"_s)) {
        if (line->isVisible())
            places.append(line->mapTo(&window, QPoint()).x());
    }
    return places;
}

CommandState outlineState()
{
    CommandState state;
    state.documentCount = 1;
    state.ActiveWritable = state.ActiveSavable = state.AnyWritable = state.Writable = state.Selected =
        state.OutlineFocus = true;
    return state;
}

CommandState rootState()
{
    CommandState state = outlineState();
    state.IsRoot = state.FirstSibling = state.LastSibling = true;
    return state;
}

CommandState textState()
{
    CommandState state = outlineState();
    state.OutlineFocus = false;
    state.TextFocus = true;
    return state;
}

} // namespace

// The toolbar by itself, with every command bound.
class tst_Toolbar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void cleanup()
    {
        m_window.reset();
        m_dispatcher.reset();
        m_fakes.reset();
    }

    void everyButtonIsCalledByItsKey();
    void theButtonsStandInTheOrderOfTheTable();
    void aClickRunsTheRoutineAndIsThenTold();
    void aButtonWithoutARoutineStaysHidden();
    void noButtonIsEverGreyed();
    void withoutAPaneTheFilesButtonsAreLeft();
    void aButtonWhoseCommandCannotBeRunDoesNothing();
    void buttonsStayWhereTheyAreWhenTheSelectionMoves();
    void theOtherPanesButtonsGiveUpTheirPlaces();
    void linesStandBetweenVisibleGroupsOnly();
    void theHeightNeverChanges();
    void aNewPaletteRedrawsTheIcons();
    void theIconsAreSharpOnDenseScreens();

private:
    void makeBar(const std::set<std::string_view> &unbound = {});
    void apply(const CommandState &state) const;

    std::unique_ptr<FakePorts> m_fakes;
    std::unique_ptr<Dispatcher> m_dispatcher;
    std::unique_ptr<QMainWindow> m_window;
    Toolbar *m_bar = nullptr;
    QStringList m_calls;
    // Clicks that the bar has told of.
    int m_clicks = 0;
    CommandState m_state;
};

void tst_Toolbar::init()
{
    m_fakes = std::make_unique<FakePorts>();
    m_calls.clear();
    m_clicks = 0;
    makeBar();
}

void tst_Toolbar::makeBar(const std::set<std::string_view> &unbound)
{
    m_window.reset();
    m_dispatcher = std::make_unique<Dispatcher>([this] { return m_state; });
    for (const ToolbarRow &button : toolbarTable) {
        const CommandRow &row = commandTable[button.command];
        if (unbound.contains(row.name)) {
            m_dispatcher->bind(row.name, nullptr);
            continue;
        }
        m_dispatcher->bind(row.name, [this, &row](int argument) {
            m_calls.append(u"%1 %2 %3"_s.arg(toText(row.name)).arg(argument).arg(m_clicks));
        });
    }
    m_window = std::make_unique<QMainWindow>();
    m_bar = new Toolbar(*m_dispatcher);
    connect(m_bar, &Toolbar::buttonClicked, this, [this] { ++m_clicks; });
    m_window->addToolBar(m_bar);
    m_window->resize(2000, 300);
    m_window->show();
}

void tst_Toolbar::apply(const CommandState &state) const
{
    m_bar->apply(state);
    layOut();
}

void tst_Toolbar::everyButtonIsCalledByItsKey()
{
    for (const ToolbarRow &row : toolbarTable) {
        const QToolButton *button = buttonOf(*m_bar, row.key);
        QVERIFY2(button, row.key.data());
        const QString key = toText(row.key);
        QCOMPARE(button->text(), key);
        QCOMPARE(button->toolTip(), key);
        QCOMPARE(button->accessibleName(), key);
        QCOMPARE(button->accessibleDescription(), key);
        QCOMPARE(button->isCheckable(), row.kind == ButtonKind::Toggle);
        QCOMPARE(button->toolButtonStyle(), Qt::ToolButtonIconOnly);
        QVERIFY(!button->icon().isNull());
    }
    QCOMPARE(m_bar->findChildren<QToolButton *>(QRegularExpression(u"^tb"_s)).size(), std::ssize(toolbarTable));
}

void tst_Toolbar::theButtonsStandInTheOrderOfTheTable()
{
    CommandState state = outlineState();
    state.TextFocus = state.HasChildren = state.CanMoveDown = state.HasPrevious = true;
    apply(state);
    int last = -1;
    for (const ToolbarRow &row : toolbarTable) {
        if (!buttonOf(*m_bar, row.key)->isVisible())
            continue;
        QVERIFY2(leftOf(*m_bar, row.key) > last, row.key.data());
        last = leftOf(*m_bar, row.key);
    }
    // All but Contract Entry, which never is beside Expand Entry.
    QCOMPARE(shownIn(*m_bar).size(), std::ssize(toolbarTable) - 1);
}

void tst_Toolbar::aClickRunsTheRoutineAndIsThenTold()
{
    CommandState state = outlineState();
    state.TextFocus = state.HasChildren = state.CanMoveDown = state.HasPrevious = true;
    QStringList expected;
    int clicks = 0;
    for (const ToolbarRow &row : toolbarTable) {
        const CommandRow &command = commandTable[row.command];
        state.Expanded = command.name == "mnuOutlineCollapse";
        state.Copied = state.Savable = true;
        apply(state);
        m_state = state;
        QTest::mouseClick(buttonOf(*m_bar, row.key), Qt::LeftButton);
        expected.append(u"%1 %2 %3"_s.arg(toText(command.name)).arg(command.argument).arg(clicks));
        ++clicks;
        QCOMPARE(m_clicks, clicks);
    }
    QCOMPARE(m_calls, expected);
}

// Paste Entry is shown in the outline whether or not an entry was copied.
void tst_Toolbar::aButtonWhoseCommandCannotBeRunDoesNothing()
{
    m_state = outlineState();
    apply(m_state);
    QTest::mouseClick(buttonOf(*m_bar, "Paste Entry"), Qt::LeftButton);
    QCOMPARE(m_calls, QStringList());
    QCOMPARE(m_clicks, 1);
    m_state.Copied = true;
    QTest::mouseClick(buttonOf(*m_bar, "Paste Entry"), Qt::LeftButton);
    QCOMPARE(m_calls, QStringList(u"mnuOutlinePaste 0 1"_s));
}

void tst_Toolbar::aButtonWithoutARoutineStaysHidden()
{
    makeBar({"mnuOutlineMoveUp", "mnuFilePrint", "mnuFilePrintEntry"});
    CommandState state = outlineState();
    state.HasPrevious = true;
    apply(state);
    QVERIFY(buttonOf(*m_bar, "Move Entry First")->isVisible());
    for (const char *key : {"Move Entry Up", "Print File", "Print Entry"})
        QVERIFY2(!buttonOf(*m_bar, key)->isVisible(), key);
    // It leaves no gap either.
    QCOMPARE(buttonOf(*m_bar, "Move Entry Up")->parentWidget()->isVisible(), false);
}

void tst_Toolbar::noButtonIsEverGreyed()
{
    for (const CommandState &state : {CommandState(), outlineState(), rootState(), textState()}) {
        apply(state);
        for (const ToolbarRow &row : toolbarTable) {
            const QToolButton *button = buttonOf(*m_bar, row.key);
            QVERIFY2(button->isEnabled() || !button->isVisible(), row.key.data());
        }
    }
}

void tst_Toolbar::withoutAPaneTheFilesButtonsAreLeft()
{
    apply(outlineState());
    QVERIFY(shownIn(*m_bar).contains(u"Copy Entry"_s));
    CommandState noPane = outlineState();
    noPane.OutlineFocus = false;
    apply(noPane);
    QCOMPARE(shownIn(*m_bar), QStringList({u"New File"_s, u"Open File"_s, u"Save File"_s, u"Print File"_s,
                                           u"Preview File"_s, u"Print Entry"_s, u"Preview Entry"_s}));
    apply(CommandState());
    QCOMPARE(shownIn(*m_bar), QStringList({u"New File"_s, u"Open File"_s}));
}

void tst_Toolbar::buttonsStayWhereTheyAreWhenTheSelectionMoves()
{
    apply(outlineState());
    std::map<std::string_view, int> before;
    for (const ToolbarRow &row : toolbarTable) {
        if (buttonOf(*m_bar, row.key)->isVisible())
            before[row.key] = leftOf(*m_bar, row.key);
    }
    CommandState readOnly = rootState();
    readOnly.Writable = readOnly.ActiveWritable = readOnly.ActiveSavable = false;
    readOnly.HasChildren = true;
    int compared = 0;
    for (const CommandState &state : {rootState(), readOnly}) {
        apply(state);
        for (const auto &[key, left] : before) {
            if (buttonOf(*m_bar, key)->isVisible()) {
                QCOMPARE(leftOf(*m_bar, key), left);
                ++compared;
            }
        }
        QVERIFY(!buttonOf(*m_bar, "Move Entry First")->isVisible());
    }
    QVERIFY(compared > 20);
}

void tst_Toolbar::theOtherPanesButtonsGiveUpTheirPlaces()
{
    apply(outlineState());
    const int pane = leftOf(*m_bar, "Go To Text");
    const int levels = leftOf(*m_bar, "Expand all levels");
    apply(textState());
    QCOMPARE(leftOf(*m_bar, "Go To Outline"), pane);
    QVERIFY(leftOf(*m_bar, "Right Align Text") < levels);
    QVERIFY(!buttonOf(*m_bar, "Copy Entry")->parentWidget()->isVisible());
}

void tst_Toolbar::linesStandBetweenVisibleGroupsOnly()
{
    apply(CommandState());
    QCOMPARE(linesIn(*m_bar).size(), 0);

    // Files, panes, entries, new entries, moving, marking, expanding.
    apply(outlineState());
    QCOMPARE(linesIn(*m_bar).size(), 6);
    const QList<int> places = linesIn(*m_bar);

    // The root is neither moved nor tagged: no line is left around what is empty.
    apply(rootState());
    QCOMPARE(linesIn(*m_bar).size(), 4);
    for (const int place : linesIn(*m_bar))
        QVERIFY(places.contains(place));

    // Files, panes, printing the entry, and the four groups of the text.
    apply(textState());
    QCOMPARE(linesIn(*m_bar).size(), 6);
}

void tst_Toolbar::theHeightNeverChanges()
{
    QCoreApplication::processEvents();
    const int height = m_bar->height();
    QVERIFY(height > 20);
    for (const CommandState &state : {CommandState(), outlineState(), rootState(), textState(), CommandState()}) {
        apply(state);
        QCOMPARE(m_bar->height(), height);
    }
}

void tst_Toolbar::aNewPaletteRedrawsTheIcons()
{
    const auto hasColour = [this](const QColor &colour) {
        const QImage image = buttonOf(*m_bar, "New File")->icon().pixmap(QSize(48, 48), 1.0).toImage();
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y) == colour)
                    return true;
            }
        }
        return false;
    };
    QVERIFY(hasColour(m_bar->palette().color(QPalette::ButtonText)));
    const QPalette before = QApplication::palette();
    QPalette dark = before;
    dark.setColor(QPalette::ButtonText, QColor(240, 230, 220));
    QApplication::setPalette(dark);
    QCoreApplication::processEvents();
    const bool redrawn = hasColour(QColor(240, 230, 220));
    QApplication::setPalette(before);
    QVERIFY(redrawn);
}

void tst_Toolbar::theIconsAreSharpOnDenseScreens()
{
    const QIcon icon = buttonOf(*m_bar, "New File")->icon();
    const QPixmap dense = icon.pixmap(QSize(20, 20), 2.0);
    QCOMPARE(dense.size(), QSize(40, 40));
    QCOMPARE(dense.devicePixelRatio(), 2.0);
    // Drawn at that size, not enlarged.
    QImage plain = icon.pixmap(QSize(40, 40), 1.0).toImage();
    plain.setDevicePixelRatio(2.0);
    QCOMPARE(dense.toImage(), plain);

    QImage painted(40, 40, QImage::Format_ARGB32_Premultiplied);
    painted.setDevicePixelRatio(2.0);
    painted.fill(Qt::transparent);
    QPainter painter(&painted);
    icon.paint(&painter, QRect(0, 0, 20, 20));
    painter.end();
    QCOMPARE(painted.convertToFormat(QImage::Format_ARGB32), plain.convertToFormat(QImage::Format_ARGB32));
}

QTEST_MAIN(tst_Toolbar)
#include "tst_Toolbar.moc"
