// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/EndingSignals.h"

#include <QSocketNotifier>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace
{

constexpr std::array endingSignals{SIGTERM, SIGHUP, SIGINT};
constexpr std::array failingWrites{SIGXFSZ, SIGPIPE};

// All that a handler may touch.
volatile std::sig_atomic_t handlersPipe = -1;
volatile std::sig_atomic_t interrupted = 0;

void handle(int number)
{
    const int before = errno;
    if (number == SIGINT && interrupted) {
        // Who presses the keys twice does not want to wait for a command that may never end.
        std::signal(SIGINT, SIG_DFL);
        raise(SIGINT);
    }
    if (number == SIGINT)
        interrupted = 1;
    const auto message = static_cast<unsigned char>(number);
    // A full pipe holds signals enough.
    [[maybe_unused]] const ssize_t written = write(handlersPipe, &message, 1);
    errno = before;
}

bool isIgnored(int number)
{
    struct sigaction current = {};
    return sigaction(number, nullptr, &current) == 0 && current.sa_handler == SIG_IGN;
}

void setHandler(int number, void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    sigaction(number, &action, nullptr);
}

} // namespace

EndingSignals::EndingSignals(QObject *parent)
    : QObject(parent)
{
    for (const int number : failingWrites)
        std::signal(number, SIG_IGN);
    if (pipe2(m_pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = new QSocketNotifier(m_pipe[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &EndingSignals::hear);
    handlersPipe = m_pipe[1];
    for (const int number : endingSignals) {
        if (!isIgnored(number))
            setHandler(number, handle);
    }
}

EndingSignals::~EndingSignals()
{
    for (const int number : endingSignals) {
        if (!isIgnored(number))
            setHandler(number, SIG_DFL);
    }
    for (const int number : failingWrites)
        std::signal(number, SIG_DFL);
    handlersPipe = -1;
    delete m_notifier;
    for (const int end : m_pipe) {
        if (end >= 0)
            close(end);
    }
}

void EndingSignals::hear()
{
    unsigned char number = 0;
    while (read(m_pipe[0], &number, 1) == 1)
        Q_EMIT received(number);
}
