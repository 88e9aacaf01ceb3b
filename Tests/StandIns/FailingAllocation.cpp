#include "FailingAllocation.h"

#include <algorithm>
#include <cstdlib>
#include <new>

constinit thread_local int AllocationsUntilFailure = -1;

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    if (AllocationsUntilFailure >= 0 && AllocationsUntilFailure-- == 0) return nullptr;
    return std::malloc(std::max<std::size_t>(size, 1));
}
void* operator new(std::size_t size) {
    if (void* const memory = operator new(size, std::nothrow)) return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
