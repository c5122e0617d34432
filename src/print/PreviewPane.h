// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractScrollArea>
#include <QCache>
#include <QPixmap>
#include <QRectF>
#include <QSizeF>

#include <memory>

class PagedText;
class QTimer;

// Shows a text as sheets of paper below each other, with the lines and pages that the printer will make. A sheet is as
// wide as the pane, but not wider than the paper is and never so small that it cannot be read. Long texts are laid out
// bit by bit while the pane can be used already.
class PreviewPane final : public QAbstractScrollArea
{
    Q_OBJECT

public:
    explicit PreviewPane(QWidget *parent = nullptr);
    ~PreviewPane() override;

    // The paper's size and where on it the text stands, in pixels of the printer.
    struct Paper {
        QSizeF size;
        QRectF text;
        double dotsPerInch = 1;

        bool operator==(const Paper &other) const = default;
    };

    // Shows another text.
    void setText(std::unique_ptr<PagedText> text, const Paper &paper);

    // How wide a line of the text is shown at least, in twips.
    void setLeastLineWidth(int twips);

    // The pages known so far, and whether there are no more.
    int pageCount() const;
    bool isWhole() const;

    // The page at the middle of the pane, from 0.
    int currentPage() const;

    // A sheet's size on the screen.
    QSize sheetSize() const;

    // How many pictures of sheets are in memory.
    int sheetsKept() const { return static_cast<int>(m_sheets.size()); }

Q_SIGNALS:
    // Another page is the current one, or there are more pages.
    void changed();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent *event) override;
    // While it is disabled it lays out nothing.
    void changeEvent(QEvent *event) override;

private:
    void begin();
    void layOutMore();
    void fit();
    void updateScrollBars();
    int sheetTop(int page) const;
    const QPixmap &sheet(int page);

    std::unique_ptr<PagedText> m_text;
    Paper m_paper;
    double m_leastScale = 0;
    double m_scale = 1; // screen pixels to one of the printer
    QCache<int, QPixmap> m_sheets;
    QTimer *m_timer;
};
