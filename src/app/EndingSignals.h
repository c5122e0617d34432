// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

#include <array>

class QSocketNotifier;

// The signals by which a desktop, a terminal or a service manager ends a program: SIGTERM, SIGHUP and SIGINT. They
// become an ordinary event, told from the event loop, so that whoever hears of it may do anything. While one lives, a
// write over a file-size limit and one to a broken pipe fail as any other write does, instead of ending the program.
//
// What the program was started to ignore (nohup, a script's background jobs) stays ignored. A second SIGINT while the
// first was not heard ends the program at once. Only one can live at a time.
class EndingSignals final : public QObject
{
    Q_OBJECT

public:
    explicit EndingSignals(QObject *parent = nullptr);
    ~EndingSignals() override;

Q_SIGNALS:
    void received(int signal);

private:
    void hear();

    // Written by the handler, read from the event loop; -1 where there is none.
    std::array<int, 2> m_pipe{-1, -1};
    QSocketNotifier *m_notifier = nullptr;
};
