// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/DroppedFiles.h"

#include <QMimeData>
#include <QTest>
#include <QUrl>

using namespace Qt::StringLiterals;

class tst_DroppedFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFileListIsTakenInItsOrder();
    void aFileListComesBeforeText();
    void plainTextIsOneName();
    void plainTextComesBeforeRichText();
    void richTextIsOneName();
    void addressesOfOtherMachinesAreNoFiles();
    void otherDataNamesNothing();
};

void tst_DroppedFiles::aFileListIsTakenInItsOrder()
{
    QMimeData data;
    data.setUrls({QUrl(u"file:///z.qly"_s), QUrl(u"file:///docs/my%20%C3%A4pfel.qly"_s), QUrl(u"file:///a.txt"_s)});
    QCOMPARE(droppedFiles(data), QStringList({u"/z.qly"_s, u"/docs/my äpfel.qly"_s, u"/a.txt"_s}));
}

void tst_DroppedFiles::aFileListComesBeforeText()
{
    QMimeData data;
    data.setText(u"/other.qly"_s);
    data.setUrls({QUrl(u"file:///a.qly"_s)});
    QCOMPARE(droppedFiles(data), QStringList(u"/a.qly"_s));
}

void tst_DroppedFiles::plainTextIsOneName()
{
    QMimeData data;
    data.setText(u"/docs/two words.qly"_s);
    QCOMPARE(droppedFiles(data), QStringList(u"/docs/two words.qly"_s));
}

void tst_DroppedFiles::plainTextComesBeforeRichText()
{
    QMimeData data;
    data.setData(u"text/rtf"_s, "/rich.qly");
    data.setText(u"/plain.qly"_s);
    QCOMPARE(droppedFiles(data), QStringList(u"/plain.qly"_s));
}

void tst_DroppedFiles::richTextIsOneName()
{
    for (const QString &format : {u"text/rtf"_s, u"application/rtf"_s, u"text/richtext"_s}) {
        QMimeData data;
        data.setData(format, "/rich.qly");
        QCOMPARE(droppedFiles(data), QStringList(u"/rich.qly"_s));
    }
}

void tst_DroppedFiles::addressesOfOtherMachinesAreNoFiles()
{
    QMimeData data;
    data.setUrls({QUrl(u"https://example.org/a.qly"_s)});
    QCOMPARE(droppedFiles(data), QStringList());
    data.setUrls({QUrl(u"https://example.org/a.qly"_s), QUrl(u"file:///b.qly"_s)});
    QCOMPARE(droppedFiles(data), QStringList(u"/b.qly"_s));
}

void tst_DroppedFiles::otherDataNamesNothing()
{
    QMimeData data;
    QCOMPARE(droppedFiles(data), QStringList());
    data.setData(u"image/png"_s, "x");
    QCOMPARE(droppedFiles(data), QStringList());
}

QTEST_GUILESS_MAIN(tst_DroppedFiles)
#include "tst_DroppedFiles.moc"
