// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/BreakableText.h"
#include "platform/DesktopClipboard.h"
#include "platform/MessageDialogs.h"
#include "platform/ScreenPointer.h"
#include "support/ModalSteps.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFileDialog>
#include <QFileSystemModel>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

const FileFilter outlines = {u"Quillery Files (*.qly)"_s, u"*.qly"_s};
const FileFilter texts = {u"Text Files (*.txt)"_s, u"*.txt;*.text"_s};
const FileFilter everything = {u"All Files (*.*)"_s, u"*.*"_s};

} // namespace

class tst_MessageDialogs : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        m_steps.clear();
    }

    void cleanup() { QVERIFY(m_steps.isDone()); }

    void aQuestionOffersYesNoAndCancel()
    {
        MessageDialogs dialogs;
        next([](QWidget *dialog) {
            auto *box = qobject_cast<QMessageBox *>(dialog);
            QVERIFY(box);
            QCOMPARE(box->windowTitle(), u"Quillery"_s);
            QCOMPARE(box->text(), u"Do you want to save the file <b>?"_s);
            QCOMPARE(box->textFormat(), Qt::PlainText);
            QCOMPARE(box->icon(), QMessageBox::Question);
            QCOMPARE(box->standardButtons(), QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
            QTest::mouseClick(box->button(QMessageBox::No), Qt::LeftButton);
        });
        QCOMPARE(dialogs.ask(u"Do you want to save the file <b>?"_s), Answer::No);
    }

    void yesIsTheButtonOfEnter()
    {
        MessageDialogs dialogs;
        next([](QWidget *dialog) { QTest::keyClick(dialog, Qt::Key_Return); });
        QCOMPARE(dialogs.ask(u"?"_s), Answer::Yes);
    }

    void thePresetAnswerIsTheButtonOfEnter()
    {
        MessageDialogs dialogs;
        for (const Answer preset : {Answer::Yes, Answer::No, Answer::Cancel}) {
            next([](QWidget *dialog) {
                QCOMPARE(qobject_cast<QMessageBox *>(dialog)->icon(), QMessageBox::NoIcon);
                QTest::keyClick(dialog, Qt::Key_Return);
            });
            QCOMPARE(dialogs.askPlainly(u"?"_s, preset), preset);
        }
    }

    void escapeCancelsAQuestion()
    {
        MessageDialogs dialogs;
        next([](QWidget *dialog) { QTest::keyClick(dialog, Qt::Key_Escape); });
        QCOMPARE(dialogs.ask(u"?"_s), Answer::Cancel);
        next([](QWidget *dialog) { dialog->close(); });
        QCOMPARE(dialogs.ask(u"?"_s), Answer::Cancel);
    }

    void aWarningHasOneButton()
    {
        MessageDialogs dialogs;
        bool seen = false;
        next([&seen](QWidget *dialog) {
            auto *box = qobject_cast<QMessageBox *>(dialog);
            QVERIFY(box);
            seen = true;
            QCOMPARE(box->windowTitle(), u"Quillery"_s);
            QCOMPARE(box->text(), u"No such file"_s);
            QCOMPARE(box->icon(), QMessageBox::Warning);
            QCOMPARE(box->standardButtons(), QMessageBox::Ok);
            QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
        });
        dialogs.warn(u"No such file"_s);
        QVERIFY(seen);
    }

    // Names may be longer than any window, and what tells them apart is often at their ends.
    void aLongFileNameIsSeenToItsEnd()
    {
        MessageDialogs dialogs;
        const QString question = u"Do you want to save the file /home/%1_the_end.qly?"_s.arg(QString(230, u'w'));
        next([&question](QWidget *dialog) {
            const auto *label = dialog->findChild<QLabel *>(u"qt_msgbox_label"_s);
            QVERIFY(label);
            const QRect needed = label->fontMetrics().boundingRect(QRect(0, 0, label->contentsRect().width(), 10000),
                                                                   Qt::TextWordWrap, label->text());
            QVERIFY2(needed.width() <= label->width() && needed.height() <= label->height(),
                     qPrintable(u"%1 x %2 in %3 x %4"_s.arg(needed.width())
                                    .arg(needed.height())
                                    .arg(label->width())
                                    .arg(label->height())));
            QVERIFY(dialog->width() < 1000);
            // To be spoken as it is.
            QCOMPARE(label->accessibleName(), question);
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        QCOMPARE(dialogs.ask(question), Answer::Cancel);
    }

    // In the bar that the desktop draws above it, beside an icon and its buttons.
    void aBoxHasRoomForItsTitle()
    {
        MessageDialogs dialogs;
        next([](QWidget *dialog) {
            QFont font = dialog->font();
            font.setBold(true);
            QVERIFY(dialog->width() >= QFontMetrics(font).horizontalAdvance(dialog->windowTitle()) + 100);
            QTest::keyClick(dialog, Qt::Key_Return);
        });
        dialogs.warn(u"!"_s);
    }

    void boxesBelongToTheActiveWindow()
    {
        QWidget window;
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        MessageDialogs dialogs;
        next([&window](QWidget *dialog) {
            QCOMPARE(dialog->parentWidget(), &window);
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        dialogs.ask(u"?"_s);
    }

    void anExistingFileIsChosen()
    {
        create(u"a.qly"_s);
        MessageDialogs dialogs;
        next([this](QWidget *dialog) {
            QCOMPARE(shownFilters(dialog), QStringList({outlines.description, texts.description}));
            accept(dialog, path(u"a.qly"_s));
        });
        QCOMPARE(dialogs.askOpenName({{outlines, texts}, u"qly"_s, QString()}), std::optional(path(u"a.qly"_s)));
    }

    void allFilesAreThoseWithoutAStopToo()
    {
        MessageDialogs dialogs;
        next([](QWidget *dialog) {
            QCOMPARE(shownFilters(dialog), QStringList({everything.description, texts.description}));
            const auto *files = dialog->findChild<QFileSystemModel *>();
            QCOMPARE(files->nameFilters(), QStringList({u"*"_s}));
            choose(dialog, 1);
            QCOMPARE(files->nameFilters(), QStringList({u"*.txt"_s, u"*.text"_s}));
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        QCOMPARE(dialogs.askOpenName({{everything, texts}, u"qly"_s, QString()}), std::nullopt);
    }

    void aMissingFileIsNotOpened()
    {
        MessageDialogs dialogs;
        next([this](QWidget *dialog) { accept(dialog, path(u"none.qly"_s)); });
        next([](QWidget *dialog) { QTest::keyClick(dialog, Qt::Key_Return); });
        next([](QWidget *dialog) { qobject_cast<QFileDialog *>(dialog)->reject(); });
        QCOMPARE(dialogs.askOpenName({{outlines}, u"qly"_s, QString()}), std::nullopt);
    }

    void cancellingChoosesNothing()
    {
        MessageDialogs dialogs;
        next([](QWidget *dialog) { QTest::keyClick(dialog, Qt::Key_Escape); });
        QCOMPARE(dialogs.askSaveName({{outlines}, u"qly"_s, u"New"_s}), std::nullopt);
    }

    void theInitialNameIsOffered()
    {
        MessageDialogs dialogs;
        next([this](QWidget *dialog) {
            auto *files = qobject_cast<QFileDialog *>(dialog);
            QCOMPARE(files->directory().absolutePath(), m_folder->path());
            QCOMPARE(nameField(dialog)->text(), u"a.qly"_s);
            QTest::keyClick(nameField(dialog), Qt::Key_Return);
        });
        QCOMPARE(dialogs.askSaveName({{outlines}, u"qly"_s, path(u"a.qly"_s)}), std::optional(path(u"a.qly"_s)));
    }

    void aNameWithoutExtensionGetsOne_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("filter");
        QTest::addColumn<QString>("saved");
        QTest::newRow("first filter") << u"a"_s << 0 << u"a.qly"_s;
        QTest::newRow("the chosen filter's") << u"a"_s << 1 << u"a.txt"_s;
        QTest::newRow("all files: the default one") << u"a"_s << 2 << u"a.qly"_s;
        QTest::newRow("an extension of its own") << u"a.xyz"_s << 1 << u"a.xyz"_s;
        QTest::newRow("a stop at the end") << u"a."_s << 0 << u"a.qly"_s;
        QTest::newRow("a stop in the middle") << u"a.b.c"_s << 0 << u"a.b.c"_s;
        QTest::newRow("blanks") << u"my notes"_s << 0 << u"my notes.qly"_s;
    }

    void aNameWithoutExtensionGetsOne()
    {
        QFETCH(QString, typed);
        QFETCH(int, filter);
        QFETCH(QString, saved);
        MessageDialogs dialogs;
        next([this, typed, filter](QWidget *dialog) {
            choose(dialog, filter);
            accept(dialog, path(typed));
        });
        QCOMPARE(dialogs.askSaveName({{outlines, texts, everything}, u"qly"_s, QString()}).value_or(QString()),
                 path(saved));
    }

    // A stop in a name is no extension: such a name would be saved as plain text.
    void aNameUnderTheDocumentsFilterGetsItsExtension_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("filter");
        QTest::addColumn<QString>("saved");
        QTest::newRow("a title") << u"Dr. Smith"_s << 0 << u"Dr. Smith.qly"_s;
        QTest::newRow("a date") << u"Meeting 21.11.2026"_s << 0 << u"Meeting 21.11.2026.qly"_s;
        QTest::newRow("a version") << u"v1.2"_s << 0 << u"v1.2.qly"_s;
        QTest::newRow("another extension") << u"a.doc"_s << 0 << u"a.doc.qly"_s;
        QTest::newRow("its own extension") << u"a.qly"_s << 0 << u"a.qly"_s;
        QTest::newRow("its own in capitals") << u"a.QLY"_s << 0 << u"a.QLY"_s;
        QTest::newRow("that of another filter") << u"a.txt"_s << 0 << u"a.txt"_s;
        QTest::newRow("the second of another filter") << u"a.text"_s << 0 << u"a.text"_s;
        QTest::newRow("an extension alone") << u".qly"_s << 0 << u".qly.qly"_s;
        QTest::newRow("a stop at the end") << u"etc."_s << 0 << u"etc.qly"_s;
        QTest::newRow("under the other filter") << u"notes.md"_s << 1 << u"notes.md"_s;
        QTest::newRow("without a stop under the other filter") << u"notes"_s << 1 << u"notes.txt"_s;
    }

    void aNameUnderTheDocumentsFilterGetsItsExtension()
    {
        QFETCH(QString, typed);
        QFETCH(int, filter);
        QFETCH(QString, saved);
        MessageDialogs dialogs;
        next([this, typed, filter](QWidget *dialog) {
            choose(dialog, filter);
            accept(dialog, path(typed));
        });
        QCOMPARE(dialogs.askSaveName({{outlines, texts}, u"qly"_s, QString(), u"qly"_s}).value_or(QString()),
                 path(saved));
    }

    void aFolderThatIsMissingIsAskedForAgain()
    {
        MessageDialogs dialogs;
        next([this](QWidget *dialog) { accept(dialog, path(u"none/a"_s)); });
        next([this](QWidget *dialog) {
            auto *box = qobject_cast<QMessageBox *>(dialog);
            QVERIFY(box);
            QVERIFY(box->text().startsWith(breakable(path(u"none"_s))));
            QTest::keyClick(box, Qt::Key_Return);
        });
        next([this](QWidget *dialog) { accept(dialog, path(u"a"_s)); });
        QCOMPARE(dialogs.askSaveName({{outlines}, u"qly"_s, QString(), u"qly"_s}), std::optional(path(u"a.qly"_s)));
    }

    void aFileIsOpenedByItsNameWithoutExtension_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("opened");
        QTest::newRow("the extension is added") << u"base"_s << u"base.qly"_s;
        QTest::newRow("to a name with a stop too") << u"v1.2"_s << u"v1.2.qly"_s;
        QTest::newRow("not to a file that is there") << u"README"_s << u"README"_s;
        QTest::newRow("nor to a whole name") << u"base.qly"_s << u"base.qly"_s;
    }

    void aFileIsOpenedByItsNameWithoutExtension()
    {
        QFETCH(QString, typed);
        QFETCH(QString, opened);
        for (const QString &name : {u"base.qly"_s, u"v1.2.qly"_s, u"README"_s, u"README.qly"_s})
            create(name);
        MessageDialogs dialogs;
        next([this, typed](QWidget *dialog) { accept(dialog, path(typed)); });
        // Where nothing of the name is found, there is a message to answer.
        m_steps.closeWhatIsLeft();
        QCOMPARE(dialogs.askOpenName({{outlines, everything}, u"qly"_s, QString()}).value_or(QString()), path(opened));
    }

    void anExistingFileIsReplacedOnlyAfterAQuestion()
    {
        create(u"a.qly"_s);
        MessageDialogs dialogs;
        next([this](QWidget *dialog) { accept(dialog, path(u"a"_s)); });
        next([this](QWidget *dialog) {
            auto *box = qobject_cast<QMessageBox *>(dialog);
            QVERIFY(box);
            QVERIFY(box->text().startsWith(breakable(path(u"a.qly"_s))));
            // The careful answer is the one of Enter.
            QTest::keyClick(box, Qt::Key_Return);
        });
        next([this](QWidget *dialog) { accept(dialog, path(u"a.qly"_s)); });
        next([](QWidget *dialog) {
            QTest::mouseClick(qobject_cast<QMessageBox *>(dialog)->button(QMessageBox::Yes), Qt::LeftButton);
        });
        QCOMPARE(dialogs.askSaveName({{outlines}, u"qly"_s, QString()}), std::optional(path(u"a.qly"_s)));
    }

    void theNextDialogBeginsWhereTheLastEnded()
    {
        create(u"a.qly"_s);
        MessageDialogs dialogs;
        next([this](QWidget *dialog) { accept(dialog, path(u"a.qly"_s)); });
        QVERIFY(dialogs.askOpenName({{outlines}, u"qly"_s, QString()}));
        next([this](QWidget *dialog) {
            QCOMPARE(qobject_cast<QFileDialog *>(dialog)->directory().absolutePath(), m_folder->path());
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        QVERIFY(!dialogs.askSaveName({{outlines}, u"qly"_s, QString()}));
    }

    void hourglassIsOneStepHoweverOftenItIsShown()
    {
        ScreenPointer pointer;
        QVERIFY(!QApplication::overrideCursor());
        pointer.setHourglass(true);
        pointer.setHourglass(true);
        QVERIFY(QApplication::overrideCursor());
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
        pointer.setHourglass(false);
        QVERIFY(!QApplication::overrideCursor());
        pointer.setHourglass(false);
        {
            ScreenPointer passing;
            passing.setHourglass(true);
        }
        QVERIFY(!QApplication::overrideCursor());
    }

    void dialogsShowTheArrowWithinACommand()
    {
        ScreenPointer pointer;
        pointer.setHourglass(true);
        MessageDialogs dialogs;
        next([](QWidget *dialog) {
            QCOMPARE(QApplication::overrideCursor()->shape(), Qt::ArrowCursor);
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        dialogs.ask(u"?"_s);
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    }

    void clipboardTextComesWithCarriageReturns()
    {
        DesktopClipboard clipboard;
        QApplication::clipboard()->setText(u"one\ntwo\r\nthree\rfour"_s);
        QCOMPARE(clipboard.text(), u"one\r\ntwo\r\nthree\r\nfour"_s);
        clipboard.setText(u"a\r\nb"_s);
        // Other programs of this desktop end their lines with a line feed alone.
        QCOMPARE(QApplication::clipboard()->text(), u"a\nb"_s);
        QCOMPARE(clipboard.text(), u"a\r\nb"_s);
        QApplication::clipboard()->clear();
        QCOMPARE(clipboard.text(), QString());
    }

private:
    void next(const ModalSteps::Step &step) { m_steps.next(step); }

    static QLineEdit *nameField(QWidget *dialog) { return dialog->findChild<QLineEdit *>(u"fileNameEdit"_s); }

    static void accept(QWidget *dialog, const QString &name)
    {
        nameField(dialog)->setText(name);
        QTest::keyClick(nameField(dialog), Qt::Key_Return);
    }

    static void choose(QWidget *dialog, int filter)
    {
        auto *filters = dialog->findChild<QComboBox *>(u"fileTypeCombo"_s);
        filters->setFocus();
        QTest::keyClick(filters, Qt::Key_Home);
        for (int i = 0; i < filter; ++i)
            QTest::keyClick(filters, Qt::Key_Down);
        QCOMPARE(filters->currentIndex(), filter);
    }

    static QStringList shownFilters(QWidget *dialog)
    {
        const auto *combo = dialog->findChild<QComboBox *>(u"fileTypeCombo"_s);
        QStringList filters;
        for (int i = 0; i < combo->count(); ++i)
            filters.append(combo->itemText(i));
        return filters;
    }

    QString path(const QString &name) const { return m_folder->filePath(name); }

    void create(const QString &name) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    ModalSteps m_steps;
};

QTEST_MAIN(tst_MessageDialogs)
#include "tst_MessageDialogs.moc"
