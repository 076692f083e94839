// SPDX-License-Identifier: BSD-3-Clause
#include "benchmarks/support/AllocationCounter.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

// Global, since replacement operators are free functions.
std::atomic<std::uint64_t> allocations{0};

} // namespace

std::uint64_t allocationCount() {
    return allocations.load();
}

// The array and nothrow forms end here, too; aligned ones are not in use.
void* operator new(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size == 0 ? 1 : size))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
