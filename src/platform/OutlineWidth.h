// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QFontMetrics>
#include <QHash>
#include <QObject>
#include <QStringView>

#include <array>

class Entry;
class EntryTree;
class TreeView;

// How wide the outline pane's rows are: what it takes to show every visible label whole. Kept until the outline
// changes, so that asking again costs nothing, and found without laying out more than a few labels.
class OutlineWidth final : public QObject
{
    Q_OBJECT

public:
    // To be made before the view is given the tree: what is known must be forgotten before anybody who follows the view
    // asks again.
    OutlineWidth(TreeView &view, const EntryTree &tree);

    // The widest visible row in pixels, indentation and image included; 0 for an empty outline.
    int widestRow();
    // How many entries have a row.
    int visibleRows();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void forgetFont();
    void measure();
    int estimate(QStringView label);
    int estimate(QChar character);
    int exactWidth(const Entry *entry) const;

    TreeView &m_view;
    const EntryTree &m_tree;
    QFontMetrics m_metrics;
    // What the image and the margins around it and the label take at most.
    int m_frame = 0;
    std::array<qint16, 256> m_latin = {};
    QHash<char16_t, qint16> m_others;
    bool m_known = false;
    int m_widest = 0;
    int m_rows = 0;
};
