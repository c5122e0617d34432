// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "support/RefusedMemory.h"

#include <cstdlib>
#include <new>

namespace
{

void *memoryOf(std::size_t size)
{
    if (requestsUntilRefusal >= 0 && requestsUntilRefusal-- == 0) {
        memoryWasRefused = true;
        throw std::bad_alloc();
    }
    if (void *memory = std::malloc(size ? size : 1))
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
