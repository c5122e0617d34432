// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>
#include <QElapsedTimer>

#include <functional>
#include <memory>

class QProgressBar;

// Tells how far a long work is that holds up the program, and lets the user stop it. What is done soon is done without
// it: it is shown from half a second on. No other window can be used meanwhile.
class WorkProgress final : public QDialog
{
    Q_OBJECT

public:
    // What is being done, as a sentence; shown after so many milliseconds.
    explicit WorkProgress(const QString &what, QWidget *parent = nullptr, int rest = 500);
    ~WorkProgress() override;

    // Lets the user act, every now and then; false when the work is to be stopped. No `all` where nobody knows how much
    // there is.
    bool goOn(int done, int all);

    void reject() override;

private:
    class Arrow;

    const int m_rest;
    QElapsedTimer m_sinceStart;
    QElapsedTimer m_sinceTurn;
    QProgressBar *m_bar;
    // Who is to press a button needs another pointer than the hourglass.
    std::unique_ptr<Arrow> m_arrow;
    bool m_cancelled = false;
};

// The same as a function that is asked whether to go on; the window lives as long as it does.
std::function<bool(int done, int all)> workProgress(const QString &what, QWidget *parent);
