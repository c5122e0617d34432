// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "support/RefusedMemory.h"

#include <cstdlib>
#include <new>

namespace
{

// Null when there is none.
void *memoryFor(std::size_t size) noexcept
{
    if (requestsUntilRefusal >= 0 && requestsUntilRefusal-- == 0) {
        memoryWasRefused = true;
        return nullptr;
    }
    return std::malloc(size ? size : 1);
}

void *memoryOf(std::size_t size)
{
    if (void *memory = memoryFor(size))
        return memory;
    throw std::bad_alloc();
}

} // namespace

void *operator new(std::size_t size)
{
    return memoryOf(size);
}

void *operator new[](std::size_t size)
{
    return memoryOf(size);
}

// Sorting asks for its working memory so, and does without.
void *operator new(std::size_t size, const std::nothrow_t &) noexcept
{
    return memoryFor(size);
}

void *operator new[](std::size_t size, const std::nothrow_t &) noexcept
{
    return memoryFor(size);
}

void operator delete(void *memory) noexcept
{
    std::free(memory);
}

void operator delete[](void *memory) noexcept
{
    std::free(memory);
}

void operator delete(void *memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete[](void *memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete(void *memory, const std::nothrow_t &) noexcept
{
    std::free(memory);
}

void operator delete[](void *memory, const std::nothrow_t &) noexcept
{
    std::free(memory);
}
