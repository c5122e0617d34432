// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <linux/perf_event.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdint>

// Counts the instructions that this thread carries out itself, which a busy machine does not change as it changes
// times. It counts none where the system does not let it.
class Instructions
{
public:
    Instructions()
    {
        perf_event_attr wanted = {};
        wanted.type = PERF_TYPE_HARDWARE;
        wanted.size = sizeof wanted;
        wanted.config = PERF_COUNT_HW_INSTRUCTIONS;
        wanted.disabled = 1;
        wanted.exclude_kernel = 1;
        wanted.exclude_hv = 1;
        m_descriptor = static_cast<int>(syscall(SYS_perf_event_open, &wanted, 0, -1, -1, PERF_FLAG_FD_CLOEXEC));
    }

    ~Instructions()
    {
        if (m_descriptor >= 0)
            close(m_descriptor);
    }

    Instructions(const Instructions &) = delete;
    Instructions &operator=(const Instructions &) = delete;

    void start() { tell(PERF_EVENT_IOC_ENABLE); }

    void stop() { tell(PERF_EVENT_IOC_DISABLE); }

    double count() const
    {
        std::uint64_t counted = 0;
        return m_descriptor >= 0 && read(m_descriptor, &counted, sizeof counted) == sizeof counted
                   ? static_cast<double>(counted)
                   : 0;
    }

private:
    void tell(unsigned long request)
    {
        if (m_descriptor >= 0)
            ioctl(m_descriptor, request, 0);
    }

    int m_descriptor = -1;
};
