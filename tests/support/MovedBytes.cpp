// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// The program's own definitions of these functions come before the C library's.
#undef _FORTIFY_SOURCE

#include "support/MovedBytes.h"

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace
{

std::atomic<qint64> s_movedBytes = 0;

}

qint64 movedBytes()
{
    return s_movedBytes;
}

// What does the work, under names that the compiler does not take for those of the functions here.
extern "C" {
void *moveReally(void *to, const void *from, size_t size, size_t room) __asm__("__memmove_chk");
void *copyReally(void *to, const void *from, size_t size, size_t room) __asm__("__memcpy_chk");

#pragma GCC visibility push(default)

void *memmove(void *to, const void *from, size_t size) noexcept
{
    s_movedBytes.fetch_add(static_cast<qint64>(size), std::memory_order_relaxed);
    return moveReally(to, from, size, SIZE_MAX);
}

void *memcpy(void *__restrict to, const void *__restrict from, size_t size) noexcept
{
    s_movedBytes.fetch_add(static_cast<qint64>(size), std::memory_order_relaxed);
    return copyReally(to, from, size, SIZE_MAX);
}

#pragma GCC visibility pop
} // extern "C"
