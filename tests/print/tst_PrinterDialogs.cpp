// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "print/PrinterDialogs.h"
#include "support/ModalSteps.h"

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

// The desktop's dialogs about printers, on a machine that may have none.
class tst_PrinterDialogs : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
        m_printer->setOutputFormat(QPrinter::PdfFormat);
        m_printer->setOutputFileName(m_folder->filePath(u"notes.pdf"_s));
        m_printer->setPageSize(QPageSize(QPageSize::A4));
    }

    void withoutAPrinterThereIsTheFile()
    {
        next([this](QDialog &dialog) {
            QCOMPARE(dialog.windowTitle(), u"Print"_s);
            const QStringList texts = textsOf(dialog);
            QVERIFY2(texts.contains(u"Print to File (PDF)"_s), qPrintable(texts.join(u'|')));
            QVERIFY2(texts.contains(m_folder->filePath(u"notes.pdf"_s)), qPrintable(texts.join(u'|')));
            // The whole text is printed: no pages can be chosen.
            const auto *print = qobject_cast<QPrintDialog *>(&dialog);
            QVERIFY(print && !print->testOption(QAbstractPrintDialog::PrintPageRange));
            dialog.accept();
        });
        QVERIFY(m_dialogs.choose(*m_printer, proposed(), nullptr));
        QCOMPARE(m_printer->outputFormat(), QPrinter::PdfFormat);
        QCOMPARE(m_printer->outputFileName(), m_folder->filePath(u"notes.pdf"_s));
    }

    void aPrinterWithoutAFileGetsTheProposed()
    {
        m_printer->setOutputFileName(QString());
        m_printer->setDocName(u"My notes.v2"_s);
        next([this](QDialog &dialog) {
            selectFile(dialog);
            const QStringList texts = textsOf(dialog);
            QVERIFY2(texts.contains(proposed()), qPrintable(texts.join(u'|')));
            dialog.accept();
        });
        QVERIFY(m_dialogs.choose(*m_printer, proposed(), nullptr));
        QCOMPARE(m_printer->outputFormat(), QPrinter::PdfFormat);
        QCOMPARE(m_printer->outputFileName(), proposed());
    }

    void theFileCanBeAnother()
    {
        next([this](QDialog &dialog) {
            for (QLineEdit *edit : dialog.findChildren<QLineEdit *>()) {
                if (edit->text().endsWith(u"notes.pdf"_s))
                    edit->setText(m_folder->filePath(u"other.pdf"_s));
            }
            dialog.accept();
        });
        QVERIFY(m_dialogs.choose(*m_printer, proposed(), nullptr));
        QCOMPARE(m_printer->outputFileName(), m_folder->filePath(u"other.pdf"_s));
    }

    void aCancelledDialogChangesNothing()
    {
        next([](QDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
        QVERIFY(!m_dialogs.choose(*m_printer, proposed(), nullptr));
        QCOMPARE(m_printer->outputFileName(), m_folder->filePath(u"notes.pdf"_s));
    }

    void theSetUpShowsWhatThePrinterHas()
    {
        m_printer->setPageSize(QPageSize(QPageSize::Legal));
        m_printer->setPageOrientation(QPageLayout::Landscape);
        next([](QDialog &dialog) {
            QCOMPARE(dialog.windowTitle(), u"Print Setup"_s);
            QCOMPARE(box(dialog, u"cmbPrinter"_s)->currentText(), u"Print to File (PDF)"_s);
            QCOMPARE(box(dialog, u"cmbPrinter"_s)->count(), QPrinterInfo::availablePrinterNames().size() + 1);
            QCOMPARE(box(dialog, u"cmbPaper"_s)->currentText(), QPageSize::name(QPageSize::Legal));
            QVERIFY(dialog.findChild<QRadioButton *>(u"optLandscape"_s)->isChecked());
            for (const QLabel *label : dialog.findChildren<QLabel *>())
                QVERIFY(!label->text().isEmpty());
            dialog.accept();
        });
        QVERIFY(m_dialogs.setUp(*m_printer, nullptr));
        QCOMPARE(m_printer->pageLayout().pageSize().id(), QPageSize::Legal);
        QCOMPARE(m_printer->pageLayout().orientation(), QPageLayout::Landscape);
    }

    void theSetUpChangesThePaper()
    {
        next([](QDialog &dialog) {
            QComboBox *paper = box(dialog, u"cmbPaper"_s);
            paper->setCurrentIndex(paper->findText(QPageSize::name(QPageSize::A5)));
            dialog.findChild<QRadioButton *>(u"optLandscape"_s)->click();
            QTest::mouseClick(dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok), Qt::LeftButton);
        });
        QVERIFY(m_dialogs.setUp(*m_printer, nullptr));
        QCOMPARE(m_printer->pageLayout().pageSize().id(), QPageSize::A5);
        QCOMPARE(m_printer->pageLayout().orientation(), QPageLayout::Landscape);
        QCOMPARE(m_printer->outputFileName(), m_folder->filePath(u"notes.pdf"_s));
    }

    void aCancelledSetUpChangesNothing()
    {
        next([](QDialog &dialog) {
            box(dialog, u"cmbPaper"_s)->setCurrentIndex(0);
            dialog.findChild<QRadioButton *>(u"optLandscape"_s)->click();
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
        QVERIFY(!m_dialogs.setUp(*m_printer, nullptr));
        QCOMPARE(m_printer->pageLayout().pageSize().id(), QPageSize::A4);
        QCOMPARE(m_printer->pageLayout().orientation(), QPageLayout::Portrait);
    }

    void paperOfAnUnusualSizeStays()
    {
        const QPageSize card(QSizeF(100, 148), QPageSize::Millimeter, u"Card"_s);
        m_printer->setPageSize(card);
        next([](QDialog &dialog) {
            QCOMPARE(box(dialog, u"cmbPaper"_s)->currentText(), u"Card"_s);
            dialog.accept();
        });
        QVERIFY(m_dialogs.setUp(*m_printer, nullptr));
        QCOMPARE(m_printer->pageLayout().pageSize().sizePoints(), card.sizePoints());
    }

private:
    // Runs the step on the dialog that is shown next.
    void next(const std::function<void(QDialog &)> &step)
    {
        m_steps.next([step](QWidget *window) {
            auto *dialog = qobject_cast<QDialog *>(window);
            QVERIFY(dialog);
            step(*dialog);
            // A step that failed must not leave the dialog open.
            if (dialog->isVisible())
                dialog->reject();
        });
    }

    static QComboBox *box(const QDialog &dialog, const QString &name) { return dialog.findChild<QComboBox *>(name); }

    QString proposed() const { return m_folder->filePath(u"My notes.v2.pdf"_s); }

    // The last of the printers, where there are others.
    static void selectFile(QDialog &dialog)
    {
        QComboBox *printers = box(dialog, u"printers"_s);
        printers->setCurrentIndex(printers->count() - 1);
    }

    static QStringList textsOf(const QDialog &dialog)
    {
        QStringList texts;
        for (const QLineEdit *edit : dialog.findChildren<QLineEdit *>())
            texts << edit->text();
        for (const QComboBox *list : dialog.findChildren<QComboBox *>())
            texts << list->currentText();
        return texts;
    }

    ModalSteps m_steps;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QPrinter> m_printer;
    DesktopPrinterDialogs m_dialogs;
};

QTEST_MAIN(tst_PrinterDialogs)
#include "tst_PrinterDialogs.moc"
