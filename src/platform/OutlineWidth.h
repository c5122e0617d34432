// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QFontMetricsF>
#include <QHash>
#include <QObject>
#include <QStringView>

#include <vector>

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

    // How many rows were measured as they are drawn so far, which is what takes time.
    int measuredRows() const { return m_measured; }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void forgetFont();
    void measure();
    int estimate(QStringView label, bool plain);
    double advance(char16_t before, char16_t code);
    double measuredAdvance(char16_t before, char16_t code) const;
    double overhang(char16_t last);
    double atMost(char16_t code);
    int exactWidth(const Entry *entry) const;

    TreeView &m_view;
    const EntryTree &m_tree;
    QFontMetricsF m_metrics;
    // What a character adds behind another, in pixels: a table of all pairs of the commonest, and those met of the
    // others.
    std::vector<double> m_pairs;
    QHash<quint32, double> m_otherPairs;
    QHash<char16_t, double> m_overhangs;
    mutable int m_measured = 0;
    bool m_known = false;
    int m_widest = 0;
    int m_rows = 0;
};
