// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/DocumentFrame.h"
#include "app/MainFixture.h"
#include "app/UnsavedIcon.h"
#include "document/modDoc.h"
#include "platform/RichTextBox.h"
#include "window/frmDocument.h"

#include <QAccessible>
#include <QApplication>
#include <QMdiArea>
#include <QMenuBar>
#include <QTest>

using namespace Qt::StringLiterals;

// The dot on a document window's icon: it is there as long as there is something to be saved.
class tst_UnsavedDot : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void cleanup() { m_main.reset(); }

    void theDotComesAndGoesWithWhatIsUnsaved();
    void theDotIsInTheTitleAndInTheMenuBar();
    void eachWindowHasItsOwn();
    void aDocumentThatMayNotBeSavedHasNone();
    void theIconIsTheProgramsOwn();
    void theDotIsDrawnInAnySize_data();
    void theDotIsDrawnInAnySize();
    void theDotFollowsTheColoursOfTheDesktop();

private:
    DocumentFrame &frame() const { return *static_cast<DocumentFrame *>(form().parentWidget()); }

    frmDocument &form() const { return static_cast<frmDocument &>(DocumentActive()->view()->window); }

    // Whether an icon has the dot, as anybody sees it.
    static bool hasDot(const QIcon &icon) { return countOf(icon.pixmap(QSize(32, 32), 1).toImage(), dotColour()) > 50; }

    static QColor dotColour() { return QColor(240, 120, 32); }

    static int countOf(const QImage &image, const QColor &colour)
    {
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                count += image.pixelColor(x, y) == colour ? 1 : 0;
        }
        return count;
    }

    QString description() const
    {
        return QAccessible::queryAccessibleInterface(&frame())->text(QAccessible::Description);
    }

    // The icon as the title of a window, or the menu bar beside a maximised one, draws it.
    int dotsShown(QWidget &where, const QRect &part) const
    {
        QTest::qWait(0);
        return countOf(where.grab(part).toImage(), dotColour());
    }

    void open(const QString &name) const
    {
        modDoc::DocLoad(m_main->app.makeFile(name, nativeBytes({u"Root <"_s, u" First"_s})));
    }

    std::unique_ptr<MainFixture> m_main;
};

void tst_UnsavedDot::initTestCase()
{
    QApplication::setWindowIcon(QIcon(QStringLiteral(QUILLERY_SOURCE_DIR "/resources/icons/quillery.svg")));
}

void tst_UnsavedDot::init()
{
    m_main = std::make_unique<MainFixture>();
    m_main->start();
    QVERIFY(QTest::qWaitForWindowActive(&m_main->main));
    open(u"a.qly"_s);
}

void tst_UnsavedDot::theDotComesAndGoesWithWhatIsUnsaved()
{
    const QString title = frame().windowTitle();
    QVERIFY(!hasDot(frame().windowIcon()));
    QCOMPARE(description(), QString());
    form().textBox->setFocus();
    QTest::keyClicks(form().textBox, u"words"_s);
    QVERIFY(hasDot(frame().windowIcon()));
    QCOMPARE(description(), u"Unsaved changes"_s);
    QCOMPARE(frame().windowTitle(), title);
    m_main->choose("mnuFileSave");
    QVERIFY(!hasDot(frame().windowIcon()));
    QCOMPARE(description(), QString());
    // What was saved can be left by undoing, and come back to by redoing.
    QTest::keyClick(form().textBox, Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(hasDot(frame().windowIcon()));
    QTest::keyClick(form().textBox, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QVERIFY(!hasDot(frame().windowIcon()));
}

void tst_UnsavedDot::theDotIsInTheTitleAndInTheMenuBar()
{
    frame().showNormal();
    const QRect title(0, 0, frame().width(), form().y());
    const int before = dotsShown(frame(), title);
    DocumentActive()->history.setLabel(DocumentActive()->tree.root(), u"Changed"_s);
    QVERIFY(dotsShown(frame(), title) > before + 5);
    m_main->choose("mnuFileSave");
    QCOMPARE(dotsShown(frame(), title), before);
    frame().showMaximized();
    QWidget &menuBar = *m_main->main.menuBar();
    const int without = dotsShown(menuBar, menuBar.rect());
    DocumentActive()->history.setLabel(DocumentActive()->tree.root(), u"Again"_s);
    QVERIFY(dotsShown(menuBar, menuBar.rect()) > without + 5);
    m_main->choose("mnuFileSave");
    QCOMPARE(dotsShown(menuBar, menuBar.rect()), without);
}

void tst_UnsavedDot::eachWindowHasItsOwn()
{
    const DocumentFrame &first = frame();
    open(u"b.qly"_s);
    DocumentActive()->history.setLabel(DocumentActive()->tree.root(), u"Changed"_s);
    QVERIFY(hasDot(frame().windowIcon()));
    QVERIFY(!hasDot(first.windowIcon()));
    // A new document is nowhere but in its window.
    m_main->choose("mnuFileNew");
    QVERIFY(hasDot(frame().windowIcon()));
}

void tst_UnsavedDot::aDocumentThatMayNotBeSavedHasNone()
{
    const QString sFile = m_main->app.makeFile(u"locked.qly"_s);
    QVERIFY(QFile::setPermissions(sFile, QFile::ReadOwner));
    modDoc::DocLoad(sFile);
    DocumentActive()->history.touch();
    QVERIFY(!hasDot(frame().windowIcon()));
}

void tst_UnsavedDot::theIconIsTheProgramsOwn()
{
    const QSize size(32, 32);
    QCOMPARE(frame().windowIcon().pixmap(size, 1).toImage(), QApplication::windowIcon().pixmap(size, 1).toImage());
}

void tst_UnsavedDot::theDotIsDrawnInAnySize_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<qreal>("ratio");
    for (const int size : {16, 22, 32, 48}) {
        for (const qreal ratio : {1.0, 1.5, 2.0})
            QTest::addRow("%d at %g", size, ratio) << size << ratio;
    }
}

void tst_UnsavedDot::theDotIsDrawnInAnySize()
{
    QFETCH(const int, size);
    QFETCH(const qreal, ratio);
    const QIcon icon = unsavedIcon(QApplication::windowIcon());
    const QImage image = icon.pixmap(QSize(size, size), ratio).toImage();
    QCOMPARE(image.width(), qRound(size * ratio));
    const int side = image.width();
    // In the lower right quarter, and nowhere else.
    QCOMPARE(image.pixelColor(side * 3 / 4, side * 3 / 4), dotColour());
    QVERIFY(countOf(image, dotColour()) > side * side / 32);
    QCOMPARE(countOf(image.copy(0, 0, side, side / 2), dotColour()), 0);
    QCOMPARE(countOf(image.copy(0, 0, side / 2, side), dotColour()), 0);
}

void tst_UnsavedDot::theDotFollowsTheColoursOfTheDesktop()
{
    frame().showMaximized();
    DocumentActive()->history.setLabel(DocumentActive()->tree.root(), u"Changed"_s);
    const QColor ring(1, 200, 3);
    const auto ringsOf = [&] { return countOf(frame().windowIcon().pixmap(QSize(64, 64), 1).toImage(), ring); };
    QCOMPARE(ringsOf(), 0);
    const QPalette before = QGuiApplication::palette();
    QPalette palette = before;
    palette.setColor(QPalette::Base, ring);
    QApplication::setPalette(palette);
    const int rings = ringsOf();
    QWidget &menuBar = *m_main->main.menuBar();
    const int shown = dotsShown(menuBar, menuBar.rect());
    QApplication::setPalette(before);
    QVERIFY(rings > 20);
    QVERIFY(shown > 5);
}

QTEST_MAIN(tst_UnsavedDot)
#include "tst_UnsavedDot.moc"
