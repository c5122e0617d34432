// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QComboBox>

#include <optional>

// A list of colours, of which one is chosen or none. Any other colour is to be had through its last row.
class ColourBox final : public QComboBox
{
    Q_OBJECT

public:
    explicit ColourBox(QWidget *parent = nullptr);

    // An invalid colour is the automatic one; nothing where none is chosen.
    std::optional<QColor> colour() const;
    void setColour(const std::optional<QColor> &colour);

Q_SIGNALS:
    // The user chose another colour.
    void colourChanged();

protected:
    // On the closed list keys and wheel go through the colours alone.
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    int rowOf(const QColor &colour) const;
    int addOwn(const QColor &colour);
    void choose(int row);

    bool m_isStepping = false;
    // The row to return to when no other colour is chosen after all.
    int m_row = -1;
};
