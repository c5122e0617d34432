// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "commands/CommandTable.h"
#include "commands/Dispatcher.h"
#include "panes/PaneDocks.h"
#include "support/FakePorts.h"

#include <QAction>
#include <QDockWidget>
#include <QLineEdit>
#include <QMainWindow>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

// The smallest pane that there can be: what a new one has to say of itself.
class SamplePane final : public Pane
{
public:
    QString name() const override { return u"Sample"_s; }

    Qt::DockWidgetArea area() const override { return Qt::LeftDockWidgetArea; }

    QWidget *makeWidget() override { return new QLineEdit(u"sample"_s); }

    void follow(Document *active) override { followed.append(active); }

    bool escape() override { return std::exchange(isBusy, false); }

    static inline bool isBusy = false;

    static inline QList<Document *> followed;
};

constexpr PaneRow sampleRows[] = {
    {"mnuToolsHistory", [](const PaneHost &) -> std::unique_ptr<Pane> { return std::make_unique<SamplePane>(); },
     "keyDiagnostics"},
};

} // namespace

class tst_PaneDocks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void aPaneIsHiddenUntilItsCommandShowsIt();
    void itsItemIsMarkedWhicheverWayItIsShownOrClosed();
    void showingGivesItTheKeyboardAndClosingGivesItBack();
    void f6GoesRoundAndEscapeGoesBackAtOnce();
    void itsKeyGoesIntoItWhereverTheKeyboardIs();
    void escEndsWhatThePaneHasToEndFirst();
    void everyPaneFollowsTheActiveDocument();
    void whereItStandsIsRemembered();
    void nothingIsRememberedOfPanesNeverShown();
    void whatIsNoStateIsPassedOver();

private:
    void makeWindow();

    QDockWidget &dock() const { return *m_window->findChild<QDockWidget *>(u"dock_mnuToolsHistory"_s); }

    bool inPane() const { return QApplication::focusWidget() == dock().widget(); }

    std::unique_ptr<FakePorts> m_fakes;
    std::unique_ptr<Dispatcher> m_dispatcher;
    std::unique_ptr<QMainWindow> m_window;
    QLineEdit *m_document = nullptr;
    QAction *m_item = nullptr;
    PaneDocks *m_docks = nullptr;
};

void tst_PaneDocks::init()
{
    SamplePane::followed.clear();
    m_fakes = std::make_unique<FakePorts>();
    m_dispatcher = std::make_unique<Dispatcher>();
    makeWindow();
}

void tst_PaneDocks::cleanup()
{
    m_window.reset();
    m_dispatcher.reset();
    m_fakes.reset();
}

void tst_PaneDocks::makeWindow()
{
    m_window = std::make_unique<QMainWindow>();
    m_window->resize(800, 500);
    m_document = new QLineEdit(u"document"_s);
    m_window->setCentralWidget(m_document);
    m_item = new QAction(m_window.get());
    m_item->setObjectName(u"mnuToolsHistory"_s);
    m_docks = new PaneDocks(*m_window, PaneHost{*m_dispatcher, m_fakes->windows, {}}, sampleRows,
                            [this] { m_document->setFocus(); });
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_document->setFocus();
}

void tst_PaneDocks::aPaneIsHiddenUntilItsCommandShowsIt()
{
    QVERIFY(dock().isHidden());
    QVERIFY(m_item->isCheckable() && !m_item->isChecked());
    m_dispatcher->run("mnuToolsHistory");
    QVERIFY(dock().isVisible());
    QVERIFY(m_item->isChecked());
    QCOMPARE(dock().windowTitle(), u"Sample"_s);
    QCOMPARE(m_window->dockWidgetArea(&dock()), Qt::LeftDockWidgetArea);
    m_dispatcher->run("mnuToolsHistory");
    QVERIFY(dock().isHidden());
    QVERIFY(!m_item->isChecked());
}

void tst_PaneDocks::itsItemIsMarkedWhicheverWayItIsShownOrClosed()
{
    dock().show();
    QVERIFY(m_item->isChecked());
    dock().close();
    QVERIFY(!m_item->isChecked());
}

void tst_PaneDocks::showingGivesItTheKeyboardAndClosingGivesItBack()
{
    m_dispatcher->run("mnuToolsHistory");
    QTRY_VERIFY(inPane());
    m_dispatcher->run("mnuToolsHistory");
    QVERIFY(m_document->hasFocus());
}

void tst_PaneDocks::f6GoesRoundAndEscapeGoesBackAtOnce()
{
    // With no pane to be seen it stays where it is.
    m_dispatcher->run("keyPaneNext");
    QVERIFY(m_document->hasFocus());
    dock().show();
    m_document->setFocus();
    m_dispatcher->run("keyPaneNext");
    QVERIFY(inPane());
    QTest::keyClick(dock().widget(), Qt::Key_F6);
    QVERIFY(m_document->hasFocus());
    m_dispatcher->run("keyPaneNext");
    QTest::keyClick(dock().widget(), Qt::Key_Escape);
    QVERIFY(m_document->hasFocus());
    QVERIFY(dock().isVisible());
}

void tst_PaneDocks::itsKeyGoesIntoItWhereverTheKeyboardIs()
{
    m_dispatcher->run("keyDiagnostics");
    QVERIFY(dock().isVisible() && inPane());
    QVERIFY(m_item->isChecked());
    // Once more it does not close it, as its item does.
    m_dispatcher->run("keyDiagnostics");
    QVERIFY(dock().isVisible() && inPane());
    m_document->setFocus();
    m_dispatcher->run("keyDiagnostics");
    QVERIFY(inPane());
}

void tst_PaneDocks::escEndsWhatThePaneHasToEndFirst()
{
    m_dispatcher->run("mnuToolsHistory");
    SamplePane::isBusy = true;
    QTest::keyClick(m_window->windowHandle(), Qt::Key_Escape);
    QVERIFY(inPane() && !SamplePane::isBusy);
    QTest::keyClick(m_window->windowHandle(), Qt::Key_Escape);
    QVERIFY(m_document->hasFocus());
}

void tst_PaneDocks::everyPaneFollowsTheActiveDocument()
{
    Document &document = m_fakes->windows.createDocument();
    m_docks->follow(&document);
    m_docks->follow(nullptr);
    QCOMPARE(SamplePane::followed, QList<Document *>({&document, nullptr}));
}

void tst_PaneDocks::whereItStandsIsRemembered()
{
    m_dispatcher->run("mnuToolsHistory");
    m_window->addDockWidget(Qt::BottomDockWidgetArea, &dock());
    const QString state = m_docks->state();
    QVERIFY(!state.isEmpty());
    makeWindow();
    QVERIFY(dock().isHidden());
    m_docks->restore(state);
    QVERIFY(dock().isVisible());
    QVERIFY(m_item->isChecked());
    QCOMPARE(m_window->dockWidgetArea(&dock()), Qt::BottomDockWidgetArea);
}

void tst_PaneDocks::nothingIsRememberedOfPanesNeverShown()
{
    QCOMPARE(m_docks->state(), QString());
    m_docks->restore(QString());
    QVERIFY(dock().isHidden());
}

void tst_PaneDocks::whatIsNoStateIsPassedOver()
{
    m_docks->restore(u"no state"_s);
    QVERIFY(dock().isHidden());
    QVERIFY(!m_item->isChecked());
}

QTEST_MAIN(tst_PaneDocks)
#include "tst_PaneDocks.moc"
