// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "support/RefusedMemory.h"

#include <cstdlib>
#include <new>

// Where the program's own code begins and ends, as the linker knows it; Qt's is elsewhere.
extern "C" const char __executable_start;
extern "C" const char etext;

namespace
{

bool isOfTheProgram(const void *caller)
{
    return caller >= &__executable_start && caller < &etext;
}

// Null when there is none.
void *memoryFor(std::size_t size, const void *caller) noexcept
{
    const bool counts = !memoryIsRefusedToTheProgramAlone || isOfTheProgram(caller);
    if (counts && requestsUntilRefusal >= 0 && requestsUntilRefusal-- == 0) {
        memoryWasRefused = true;
        return nullptr;
    }
    return std::malloc(size ? size : 1);
}

void *memoryOf(std::size_t size, const void *caller)
{
    if (void *memory = memoryFor(size, caller))
        return memory;
    throw std::bad_alloc();
}

} // namespace

void *operator new(std::size_t size)
{
    return memoryOf(size, __builtin_return_address(0));
}

// Qt's hashes, which are compiled into the program, ask so where they cannot do without.
void *operator new[](std::size_t size)
{
    return memoryOf(size, nullptr);
}

// Sorting asks for its working memory so, and does without.
void *operator new(std::size_t size, const std::nothrow_t &) noexcept
{
    return memoryFor(size, __builtin_return_address(0));
}

void *operator new[](std::size_t size, const std::nothrow_t &) noexcept
{
    return memoryFor(size, __builtin_return_address(0));
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
