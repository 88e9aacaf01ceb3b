#include "CountedAllocations.h"

#include <cstdlib>
#include <new>

namespace {

thread_local std::uint64_t allocations = 0;

}  // namespace

namespace Benchmarks {

std::uint64_t AllocationsOfThisThread() noexcept {
    return allocations;
}

}  // namespace Benchmarks

// The array and the nothrow forms of the standard library end in this.
void* operator new(std::size_t size) {
    ++allocations;
    if (void* const memory = std::malloc(size)) return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
