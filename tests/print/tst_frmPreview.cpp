// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "print/frmPreview.h"

#include "pages/Pdf.h"
#include "pages/PrintFixture.h"
#include "print/PrintWindows.h"
#include "print/ScriptedDialogs.h"
#include "util/Procedure.h"

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QPointer>
#include <QPrinter>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace
{

// So many lines, each a word of its own.
QByteArray lines(int count)
{
    QByteArray rtf("{\\rtf1{\\fonttbl{\\f0 DejaVu Sans;}}\\f0\\fs20 ");
    for (int i = 0; i < count; ++i)
        rtf += "w" + QByteArray::number(i) + "w\\par\n";
    return rtf + "}";
}

} // namespace

// The window through which everything is printed, with PDF files as paper.
class tst_frmPreview : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_fixture = std::make_unique<PrintFixture>();
        m_dialogs = std::make_unique<ScriptedDialogs>();
        m_dialogs->onChoose = [this](QPrinter &printer) { printer.setOutputFileName(file()); };
        m_windows = std::make_unique<PrintWindows>(*m_dialogs);
        // Nothing is to come out of a printer that the machine may have.
        m_windows->printer().setOutputFormat(QPrinter::PdfFormat);
    }

    void cleanup()
    {
        QCOMPARE(m_fixture->errors.summary(), QStringList());
        QVERIFY(QApplication::topLevelWidgets().isEmpty());
        m_windows.reset();
        m_fixture.reset();
    }

    void theControlsKeepTheirProportions();
    void everyControlIsNamed();
    void thePagesAreShownAsTheyWillBePrinted();
    void theNumberOfPagesIsTold();
    void keysScroll();
    void aSheetFitsThePaneButStaysReadable();
    void theSheetsOnTheScreenAreDrawnOnce();
    void longTextsAreLaidOutWhileThePaneIsUsed();
    void escapeAndCloseEndIt();
    void printAsksForAPrinterAndPrints();
    void aCancelledDialogPrintsNothing();
    void otherPaperIsShownAfterwards();

    void printingWithoutThePreview();
    void aCancelledDialogPrintsNothingWithoutThePreview();
    void theWaitingWindowStopsThePrinting_data();
    void theWaitingWindowStopsThePrinting();
    void theFileIsNamedAfterTheDocument();
    void theFileGoesWhereTheLastOneWent();
    void failuresAreReported();
    void everyRoutineIsKnownToTheLog();
    void theSetUpLasts();
    void aCancelledSetUpIsNoError();

private:
    QString file() const { return m_folder->filePath(u"out.pdf"_s); }

    QStringList files() const { return QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden); }

    PrintExtent plant(const QByteArray &text)
    {
        Document &document = m_fixture->plant({u"Root"_s});
        m_fixture->setText(document, u"Root"_s, text);
        return {&document, document.tree.root(), true};
    }

    // Prints and removes the file again, so that the next file is proposed in the test's folder.
    void printSomewhereElse(const PrintExtent &extent)
    {
        m_windows->print(extent);
        QVERIFY(QFile::remove(file()));
    }

    std::unique_ptr<frmPreview> preview(const PrintExtent &extent)
    {
        auto window = std::make_unique<frmPreview>(extent, m_windows->printer(), *m_dialogs);
        window->show();
        if (!QTest::qWaitForWindowActive(window.get()))
            QTest::qFail("the window does not become active", __FILE__, __LINE__);
        return window;
    }

    static PreviewPane *pane(const QWidget &window) { return window.findChild<PreviewPane *>(u"txtDisplay"_s); }

    static QPushButton *button(const QWidget &window, int index)
    {
        return window.findChild<QPushButton *>(u"cmdInput%1"_s.arg(index));
    }

    static QString place(const QWidget &window) { return window.findChild<QLabel *>(u"lblPlace"_s)->text(); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<PrintFixture> m_fixture;
    std::unique_ptr<ScriptedDialogs> m_dialogs;
    std::unique_ptr<PrintWindows> m_windows;
};

namespace
{

// Runs once a modal window of that name is there.
void whenShown(const QString &name, const std::function<void(QWidget *)> &step)
{
    auto *timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer, [=] {
        QWidget *window = QApplication::activeModalWidget();
        if (!window || window->objectName() != name)
            return;
        timer->stop();
        timer->deleteLater();
        step(window);
    });
    timer->start(0);
}

} // namespace

void tst_frmPreview::theControlsKeepTheirProportions()
{
    const auto window = preview(plant(lines(10)));
    QCOMPARE(window->windowTitle(), u"Print Preview"_s);
    for (const QSize size : {QSize(1000, 800), QSize(600, 500)}) {
        window->resize(size);
        const int w = size.width() / 100;
        const int h = size.height() / 100;
        QCOMPARE(pane(*window)->geometry(), QRect(w, h, 98 * w, 90 * h));
        QCOMPARE(button(*window, 0)->geometry(), QRect(61 * w, 92 * h, 18 * w, 8 * h));
        QCOMPARE(button(*window, 1)->geometry(), QRect(81 * w, 92 * h, 18 * w, 8 * h));
    }
    QCOMPARE(button(*window, 0)->text(), u"&Print"_s);
    QCOMPARE(button(*window, 1)->text(), u"&Close"_s);
}

void tst_frmPreview::everyControlIsNamed()
{
    const auto window = preview(plant(lines(10)));
    QVERIFY(!pane(*window)->accessibleName().isEmpty());
    QCOMPARE(pane(*window)->accessibleDescription(), u"Page 1 of 1"_s);
    QVERIFY(pane(*window)->hasFocus());
    QTest::keyClick(pane(*window), Qt::Key_Tab);
    QVERIFY(button(*window, 0)->hasFocus());
    QTest::keyClick(button(*window, 0), Qt::Key_Tab);
    QVERIFY(button(*window, 1)->hasFocus());
}

void tst_frmPreview::thePagesAreShownAsTheyWillBePrinted()
{
    // A black letter at the beginning of the first line, an inch from the edges.
    Document &document = m_fixture->plant({u"HHHH"_s});
    m_fixture->setText(document, u"HHHH"_s, "");
    const auto window = preview({&document, document.tree.root(), false});
    const QImage image = pane(*window)->viewport()->grab().toImage();
    const QSize sheet = pane(*window)->sheetSize();
    const double scale = sheet.width() / (m_windows->printer().pageLayout().fullRectPoints().width() / 72.0);
    QRect ink;
    QRect white;
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y) {
            const QColor colour = image.pixelColor(x, y);
            if (colour == QColor(Qt::white))
                white |= QRect(x, y, 1, 1);
        }
    }
    QVERIFY(std::abs(white.width() - sheet.width()) <= 1);
    for (int x = white.left() + 3; x < white.right() - 3; ++x) {
        for (int y = white.top() + 3; y < image.height(); ++y) {
            if (qGray(image.pixel(x, y)) < 100)
                ink |= QRect(x, y, 1, 1);
        }
    }
    QVERIFY2(std::abs(ink.left() - white.left() - scale) < 5, qPrintable(QString::number(ink.left() - white.left())));
    QVERIFY2(ink.top() - white.top() > scale && ink.top() - white.top() < scale * 1.2,
             qPrintable(QString::number(ink.top() - white.top())));
}

void tst_frmPreview::theNumberOfPagesIsTold()
{
    const PrintExtent extent = plant(lines(500));
    const auto window = preview(extent);
    QTRY_VERIFY(pane(*window)->isWhole());
    const int count = pane(*window)->pageCount();
    QVERIFY(count > 5);
    QCOMPARE(place(*window), u"Page 1 of %1"_s.arg(count));
    pane(*window)->verticalScrollBar()->setValue(pane(*window)->verticalScrollBar()->maximum());
    QCOMPARE(place(*window), u"Page %1 of %1"_s.arg(count));
    QCOMPARE(pane(*window)->accessibleDescription(), place(*window));
    // As many as are printed.
    window->PrintCopies();
    QCOMPARE(m_fixture->errors.summary(), QStringList(u"5 frmPreview PrintRTF"_s));
    m_fixture->errors.clear();
    m_windows->printer().setOutputFileName(file());
    window->PrintCopies();
    QCOMPARE(pdf::pagesOf(file()).size(), count);
}

void tst_frmPreview::keysScroll()
{
    const auto window = preview(plant(lines(500)));
    QTRY_VERIFY(pane(*window)->isWhole());
    const QScrollBar *bar = pane(*window)->verticalScrollBar();
    QTest::keyClick(pane(*window), Qt::Key_Down);
    const int line = bar->value();
    QVERIFY(line > 0);
    QTest::keyClick(pane(*window), Qt::Key_PageDown);
    QVERIFY(bar->value() > line + 100);
    QTest::keyClick(pane(*window), Qt::Key_End);
    QCOMPARE(bar->value(), bar->maximum());
    QTest::keyClick(pane(*window), Qt::Key_Home);
    QCOMPARE(bar->value(), 0);
}

void tst_frmPreview::aSheetFitsThePaneButStaysReadable()
{
    const auto window = preview(plant(lines(500)));
    window->resize(700, 600);
    QVERIFY(pane(*window)->sheetSize().width() < 700);
    QCOMPARE(pane(*window)->horizontalScrollBar()->maximum(), 0);
    // Not wider than the paper.
    window->resize(3000, 600);
    const double inches = m_windows->printer().pageLayout().fullRectPoints().width() / 72.0;
    QCOMPARE(pane(*window)->sheetSize().width(), qRound(inches * window->logicalDpiX()));
    // A line keeps two thirds of its width.
    window->resize(200, 600);
    const double least = inches * window->logicalDpiX() / 1.5;
    QVERIFY(std::abs(pane(*window)->sheetSize().width() - least) < 3);
    QVERIFY(pane(*window)->horizontalScrollBar()->maximum() > 0);
}

void tst_frmPreview::theSheetsOnTheScreenAreDrawnOnce()
{
    const auto window = preview(plant(lines(2000)));
    QTRY_VERIFY(pane(*window)->isWhole());
    window->resize(400, 8000);
    PreviewPane &pages = *pane(*window);
    const int seen = pages.viewport()->height() / pages.sheetSize().height();
    QVERIFY(seen > 6 && pages.pageCount() > 2 * seen);
    pages.viewport()->grab();
    QVERIFY2(pages.sheetsKept() >= seen, qPrintable(QString::number(pages.sheetsKept())));
    // Not all that was ever seen is kept, least of all in a smaller window.
    pages.verticalScrollBar()->setValue(pages.verticalScrollBar()->maximum());
    pages.viewport()->grab();
    QVERIFY(pages.sheetsKept() <= seen + 4);
    window->resize(400, 800);
    pages.viewport()->grab();
    QVERIFY2(pages.sheetsKept() <= 5, qPrintable(QString::number(pages.sheetsKept())));
}

void tst_frmPreview::longTextsAreLaidOutWhileThePaneIsUsed()
{
    QStringList outline{u"Root"_s};
    for (int i = 0; i < 40; ++i)
        outline << u" entry%1"_s.arg(i);
    Document &document = m_fixture->plant(outline);
    for (int i = 0; i < 40; ++i)
        m_fixture->setText(document, u"entry%1"_s.arg(i), lines(2000));
    frmPreview window({&document, document.tree.root(), true}, m_windows->printer(), *m_dialogs);
    window.show();
    QVERIFY(!pane(window)->isWhole());
    const int before = pane(window)->pageCount();
    QVERIFY(before > 0);
    // The last page so far is on the screen, and will get more lines.
    pane(window)->verticalScrollBar()->setValue(pane(window)->verticalScrollBar()->maximum());
    pane(window)->viewport()->grab();
    QCOMPARE(place(window), u"Page %1 of %1..."_s.arg(before));
    QTRY_VERIFY_WITH_TIMEOUT(pane(window)->isWhole(), 60000);
    QVERIFY(pane(window)->pageCount() > before);
    QCOMPARE(place(window), u"Page %1 of %2"_s.arg(before).arg(pane(window)->pageCount()));
    const QImage shown = pane(window)->viewport()->grab().toImage();
    const QSize size = window.size();
    window.resize(size - QSize(100, 0));
    window.resize(size);
    QVERIFY(pane(window)->viewport()->grab().toImage() == shown);
}

void tst_frmPreview::escapeAndCloseEndIt()
{
    for (const bool byKey : {true, false}) {
        const auto window = preview(plant(lines(3)));
        if (byKey)
            QTest::keyClick(pane(*window), Qt::Key_Escape);
        else
            QTest::mouseClick(button(*window, 1), Qt::LeftButton);
        QVERIFY(!window->isVisible());
        QCOMPARE(m_dialogs->timesChosen, 0);
    }
}

void tst_frmPreview::printAsksForAPrinterAndPrints()
{
    const auto window = preview(plant(lines(300)));
    int waits = 0;
    whenShown(u"frmPrinting"_s, [&waits, &window](QWidget *wait) {
        ++waits;
        QVERIFY(wait->isModal());
        QCOMPARE(wait->findChild<QLabel *>()->text(), u"Printing - please wait..."_s);
        QCOMPARE(wait->findChild<QPushButton *>()->text(), u"Cancel"_s);
        QCOMPARE(wait->parentWidget(), window.get());
    });
    // A button's key presses it for a moment first.
    QTest::keyClick(pane(*window), Qt::Key_P, Qt::AltModifier);
    QTRY_COMPARE(m_dialogs->timesChosen, 1);
    QCOMPARE(m_dialogs->lastParent, window.get());
    QCOMPARE(waits, 1);
    QCOMPARE(pdf::pagesOf(file()).size(), pane(*window)->pageCount());
    // It can go on showing.
    QVERIFY(window->isVisible());
    QVERIFY(pane(*window)->isEnabled());
    QCOMPARE(window->focusWidget(), pane(*window));
}

void tst_frmPreview::aCancelledDialogPrintsNothing()
{
    const PrintExtent extent = plant(lines(3));
    printSomewhereElse(extent);
    m_dialogs->timesChosen = 0;
    const auto window = preview(extent);
    m_windows->printer().setOutputFileName(file());
    m_dialogs->answer = false;
    QTest::mouseClick(button(*window, 0), Qt::LeftButton);
    QCOMPARE(m_dialogs->timesChosen, 1);
    QCOMPARE(files(), QStringList());
    QVERIFY(window->isVisible());
    QCOMPARE(window->focusWidget(), pane(*window));
    QTest::keyClick(pane(*window), Qt::Key_Return);
    QCOMPARE(m_dialogs->timesChosen, 2);
    QCOMPARE(window->focusWidget(), pane(*window));
    // Who has come to the button by the keyboard stays there.
    button(*window, 0)->setFocus();
    QTest::keyClick(button(*window, 0), Qt::Key_Return);
    QCOMPARE(m_dialogs->timesChosen, 3);
    QCOMPARE(window->focusWidget(), button(*window, 0));
}

void tst_frmPreview::otherPaperIsShownAfterwards()
{
    const auto window = preview(plant(lines(300)));
    const int before = pane(*window)->pageCount();
    m_dialogs->onChoose = [this](QPrinter &printer) {
        printer.setOutputFileName(file());
        printer.setPageSize(QPageSize(QPageSize::A3));
    };
    QTest::mouseClick(button(*window, 0), Qt::LeftButton);
    QTRY_VERIFY(pane(*window)->isWhole());
    QVERIFY(pane(*window)->pageCount() < before);
    QCOMPARE(pdf::pagesOf(file()).size(), pane(*window)->pageCount());
}

void tst_frmPreview::printingWithoutThePreview()
{
    m_windows->print(plant(lines(300)));
    QCOMPARE(m_dialogs->timesChosen, 1);
    const QList<pdf::Page> pages = pdf::pagesOf(file());
    QVERIFY(pages.size() > 3);
    QCOMPARE(pages.first().words.first().text, u"Root"_s);
    QCOMPARE(pages.last().words.last().text, u"w299w"_s);
}

void tst_frmPreview::aCancelledDialogPrintsNothingWithoutThePreview()
{
    const PrintExtent extent = plant(lines(300));
    printSomewhereElse(extent);
    m_dialogs->answer = false;
    m_windows->print(extent);
    QCOMPARE(m_dialogs->timesChosen, 2);
    // What would have been printed would be in the folder that is proposed.
    QCOMPARE(QFileInfo(m_dialogs->proposedFile).path(), m_folder->path());
    QCOMPARE(files(), QStringList());
}

void tst_frmPreview::theWaitingWindowStopsThePrinting_data()
{
    QTest::addColumn<QString>("way");
    for (const char *way : {"button", "Escape", "close"})
        QTest::newRow(way) << QString::fromLatin1(way);
}

void tst_frmPreview::theWaitingWindowStopsThePrinting()
{
    QFETCH(const QString, way);
    bool asked = false;
    whenShown(u"frmPrinting"_s, [&](QWidget *wait) {
        asked = true;
        if (way == u"button"_s)
            QTest::mouseClick(wait->findChild<QPushButton *>(u"cmdCancel"_s), Qt::LeftButton);
        else if (way == u"Escape"_s)
            QTest::keyClick(wait, Qt::Key_Escape);
        else
            wait->close();
    });
    m_windows->print(plant(lines(20000)));
    QVERIFY(asked);
    QCOMPARE(files(), QStringList());
    // Nothing of it stays for the next time.
    m_windows->print(plant(lines(3)));
    QCOMPARE(pdf::pagesOf(file()).size(), 1);
}

void tst_frmPreview::theFileIsNamedAfterTheDocument()
{
    PrintExtent extent = plant(lines(1));
    printSomewhereElse(extent);
    m_dialogs->answer = false;
    extent.document->m_sFile = u"/somewhere/else/My notes.v2.qly"_s;
    m_windows->print(extent);
    QCOMPARE(files(), QStringList());
    QCOMPARE(QFileInfo(m_dialogs->proposedFile).fileName(), u"My notes.v2.pdf"_s);
    QVERIFY(QFileInfo(m_dialogs->proposedFile).isAbsolute());
    QVERIFY(QFileInfo(QFileInfo(m_dialogs->proposedFile).path()).isDir());
    QCOMPARE(m_dialogs->jobName, u"My notes.v2"_s);
    // One that was never saved is known by its window.
    extent.document->m_sFile.clear();
    extent.document->setCaption(u"A/B"_s);
    m_windows->print(extent);
    QCOMPARE(QFileInfo(m_dialogs->proposedFile).fileName(), u"A-B.pdf"_s);
}

void tst_frmPreview::theFileGoesWhereTheLastOneWent()
{
    PrintExtent extent = plant(lines(1));
    extent.document->m_sFile = u"/a/notes.qly"_s;
    m_windows->print(extent);
    QVERIFY(QFileInfo(m_dialogs->proposedFile).path() != m_folder->path());
    const QString proposed = m_folder->filePath(u"notes.pdf"_s);
    m_windows->print(extent);
    QCOMPARE(m_dialogs->proposedFile, proposed);
    // From now on every proposal is taken, or the dialog cancelled.
    m_dialogs->onChoose = nullptr;
    for (const bool answer : {true, false, false, true, true}) {
        m_dialogs->answer = answer;
        m_windows->print(extent);
        QCOMPARE(m_dialogs->proposedFile, proposed);
    }
    // A folder that is gone is not proposed.
    QVERIFY(QDir(m_folder->path()).removeRecursively());
    m_dialogs->answer = false;
    m_windows->print(extent);
    QVERIFY(QFileInfo(m_dialogs->proposedFile).path() != m_folder->path());
}

void tst_frmPreview::failuresAreReported()
{
    m_dialogs->onChoose = [this](QPrinter &printer) {
        printer.setOutputFileName(m_folder->filePath(u"none/out.pdf"_s));
    };
    const PrintExtent extent = plant(lines(1));
    extent.document->m_sFile = u"/a/My notes.qly"_s;
    m_windows->print(extent);
    QCOMPARE(m_fixture->errors.summary(), QStringList(u"76 frmPreview PrintRTF"_s));
    const QString told = u"The document My notes could not be printed"_s;
    QCOMPARE(m_fixture->fake.statusText(), told);
    QCOMPARE(extent.document->noted(), told);
    m_fixture->errors.clear();
    // Until it has been printed.
    m_dialogs->onChoose = [this](QPrinter &printer) { printer.setOutputFileName(file()); };
    m_windows->print(extent);
    QCOMPARE(extent.document->noted(), QString());
}

void tst_frmPreview::everyRoutineIsKnownToTheLog()
{
    frmPreview window(plant(lines(1)), m_windows->printer(), *m_dialogs);
    QCOMPARE(g_sProcedure, u"frmPreview WYSIWYG_RTF"_s);
    window.show();
    g_sProcedure.clear();
    window.resize(400, 400);
    QCOMPARE(g_sProcedure, u"frmPreview Form_Resize"_s);
}

void tst_frmPreview::theSetUpLasts()
{
    m_dialogs->onSetUp = [](QPrinter &printer) {
        printer.setPageSize(QPageSize(QPageSize::A5));
        printer.setPageOrientation(QPageLayout::Landscape);
    };
    m_windows->setUp();
    m_windows->print(plant(lines(1)));
    const QSizeF size = pdf::pagesOf(file()).first().size;
    QVERIFY(std::abs(size.width() - 595) <= 1);
    QVERIFY(std::abs(size.height() - 420) <= 1);
}

void tst_frmPreview::aCancelledSetUpIsNoError()
{
    m_dialogs->answer = false;
    QCOMPARE(errorNumberOf([this] { m_windows->setUp(); }), 32755);
}

QTEST_MAIN(tst_frmPreview)
#include "tst_frmPreview.moc"
