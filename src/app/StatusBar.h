// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QStatusBar>

#include <optional>

class QLabel;
class QTimer;
class QToolButton;

// The status bar: a text, the states of the Caps Lock, Num Lock and Insert keys, the time and the date. A key's panel
// is pale while the key is off, and empty where its state is unknown. Panels' objects are named after the bar and their
// key, such as "sbStatusBarCaps".
class StatusBar final : public QStatusBar
{
    Q_OBJECT

public:
    explicit StatusBar(QWidget *parent = nullptr);

    // Shows the keys' states and the time, and keeps them current from now on. The application's ports must be
    // registered.
    void start();

    void setText(const QString &text);
    // Whether typing overwrites; nothing when there is no text to type in.
    void setOverwriting(std::optional<bool> overwriting);

Q_SIGNALS:
    // The Insert key's panel was clicked.
    void insertClicked();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    enum class Panel { Caps, Num, Ins };

    QToolButton *addKeyPanel(Panel panel, const QString &key, const QString &name);
    QLabel *addClockPanel(const QString &key);
    void sbStatusBar_PanelClick(Panel panel);
    void showLockKeys();
    void showTime();

    QLabel *const m_text;
    QToolButton *m_caps = nullptr;
    QToolButton *m_num = nullptr;
    QToolButton *m_ins = nullptr;
    QLabel *m_time = nullptr;
    QLabel *m_date = nullptr;
    QTimer *const m_tick;
};
