// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "pages/PaintPages.h"
#include "support/RawOutline.h"

#include "pages/Pdf.h"
#include "pages/PrintComposition.h"
#include "pages/PrintFixture.h"

#include <QPainter>
#include <QPdfWriter>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

// Words that are each a line of their own.
QByteArray numberedLines(int count)
{
    QByteArray rtf("{\\rtf1{\\fonttbl{\\f0 DejaVu Sans;}}\\f0\\fs20 ");
    for (int i = 0; i < count; ++i)
        rtf += "w" + QByteArray::number(i) + "w\\par\n";
    return rtf + "}";
}

} // namespace

// Pages on a device that is no printer.
class tst_PaintPages : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_fixture = std::make_unique<PrintFixture>();
        m_device = std::make_unique<QPdfWriter>(name());
        m_device->setResolution(600);
        m_device->setPageSize(QPageSize(QPageSize::Letter));
        m_device->setPageMargins(QMarginsF());
    }

    void cleanup()
    {
        m_device.reset();
        QCOMPARE(m_fixture->errors.summary(), QStringList());
        m_fixture.reset();
    }

    void everyLineStandsOnAPageOnce();
    void theTextStandsWithinTheMargins();
    void whoIsAskedCanStopBehindAPage();
    void lengthsFollowTheDevicesResolution();

private:
    QString name() const { return m_folder->filePath(u"out.pdf"_s); }

    QRectF place() const
    {
        return devicePixels(*m_device, drawingRectangle(paperOf(m_device->pageLayout(), 600), PrintMargins()));
    }

    PrintOutcome paint(const QByteArray &text, const std::function<bool()> &goesOn)
    {
        Document &document = m_fixture->plant({u"Root"_s});
        PrintFixture::setText(document, u"Root"_s, text);
        rawOutline(document).tree.setLabel(document.tree.root(), QString());
        const PrintComposition composition({&document, document.tree.root(), true}, QFont(u"DejaVu Sans"_s));
        QPainter painter(m_device.get());
        return paintPages(composition, *m_device, painter, place(), goesOn);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<PrintFixture> m_fixture;
    std::unique_ptr<QPdfWriter> m_device;
};

void tst_PaintPages::everyLineStandsOnAPageOnce()
{
    QCOMPARE(paint(numberedLines(200), [] { return true; }), PrintOutcome::Printed);
    const QList<pdf::Page> pages = pdf::pagesOf(name());
    QVERIFY(pages.size() > 2);
    QStringList found;
    for (const pdf::Page &page : pages)
        found += page.texts();
    QStringList expected;
    for (int i = 0; i < 200; ++i)
        expected += u"w%1w"_s.arg(i);
    QCOMPARE(found, expected);
}

void tst_PaintPages::theTextStandsWithinTheMargins()
{
    QCOMPARE(paint(numberedLines(200), [] { return true; }), PrintOutcome::Printed);
    // An inch on each side of US letter paper, in points; letters may reach a little beyond their place.
    const QRectF room = QRectF(72, 72, 612 - 144, 792 - 144).adjusted(-2, -2, 2, 2);
    for (const pdf::Page &page : pdf::pagesOf(name())) {
        for (const pdf::Word &word : page.words)
            QVERIFY2(room.contains(word.place), qPrintable(word.text));
    }
}

void tst_PaintPages::whoIsAskedCanStopBehindAPage()
{
    int asked = 0;
    QCOMPARE(paint(numberedLines(500), [&asked] { return ++asked < 2; }), PrintOutcome::Stopped);
    QCOMPARE(asked, 2);
    QCOMPARE(pdf::pagesOf(name()).size(), 2);
}

void tst_PaintPages::lengthsFollowTheDevicesResolution()
{
    QCOMPARE(devicePixels(*m_device, 1440.0), 600.0);
    m_device->setResolution(300);
    QCOMPARE(devicePixels(*m_device, 1440.0), 300.0);
}

QTEST_MAIN(tst_PaintPages)
#include "tst_PaintPages.moc"
