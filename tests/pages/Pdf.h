// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QImage>
#include <QProcess>
#include <QRectF>
#include <QRegularExpression>
#include <QStringList>
#include <QTest>

// PDF files as other programs read them (poppler-utils).
namespace pdf
{

struct Word {
    QString text;
    QRectF place; // in points from the page's upper left corner
};

struct Page {
    QSizeF size; // in points
    QList<Word> words;

    QStringList texts() const
    {
        QStringList all;
        for (const Word &word : words)
            all << word.text;
        return all;
    }
};

inline QByteArray run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        QTest::qFail(qPrintable(program + QStringLiteral(" is needed: ") + process.errorString()), __FILE__, __LINE__);
    return process.readAllStandardOutput();
}

inline QList<Page> pagesOf(const QString &file)
{
    static const QRegularExpression tag(
        QStringLiteral("<page width=\"([0-9.]+)\" height=\"([0-9.]+)\">|<word xMin=\"([-0-9.]+)\" yMin=\"([-0-9.]+)\" "
                       "xMax=\"([-0-9.]+)\" yMax=\"([-0-9.]+)\">([^<]*)</word>"));
    const QString html =
        QString::fromUtf8(run(QStringLiteral("pdftotext"), {QStringLiteral("-bbox"), file, QStringLiteral("-")}));
    QList<Page> pages;
    for (auto found = tag.globalMatch(html); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        const auto number = [&match](int group) { return match.captured(group).toDouble(); };
        if (match.hasCaptured(1))
            pages.append({QSizeF(number(1), number(2)), {}});
        else
            pages.last().words.append(
                {match.captured(7), QRectF(QPointF(number(3), number(4)), QPointF(number(5), number(6)))});
    }
    return pages;
}

// A page from 0 at 72 dots per inch.
inline QImage picture(const QString &file, int page)
{
    const QString number = QString::number(page + 1);
    const QByteArray bytes =
        run(QStringLiteral("pdftoppm"), {QStringLiteral("-r"), QStringLiteral("72"), QStringLiteral("-f"), number,
                                         QStringLiteral("-l"), number, file});
    return QImage::fromData(bytes, "ppm");
}

} // namespace pdf
