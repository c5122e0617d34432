// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "search/clsHistory.h"

#include <QComboBox>

class QLineEdit;
class SettingsStore;

// A button at a line's end that empties it, with a name to be heard.
void giveClearButton(QLineEdit &line);

// Where is typed what is looked for, with the latest searches in its list. Up and Down walk through the hits.
class FindBox final : public QComboBox
{
    Q_OBJECT

public:
    explicit FindBox(QWidget *parent);

    // Fills the list with what is kept; null for nothing.
    void setSettings(SettingsStore *settings);
    // Puts what stands in it at the head of the list, and keeps that.
    void remember();

    // Puts a text in, and selects it.
    void begin(const QString &text);

Q_SIGNALS:
    // The text is another one.
    void edited();
    // A search of the list was chosen.
    void recalled();
    // So many rows on, or back where it is negative.
    void walked(int rows);
    // Enter was pressed.
    void entered();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void fillList();

    clsHistory m_history{QStringLiteral("FindEverywhereHistory")};
    SettingsStore *m_settings = nullptr;
};
