// Counts the allocations of a program that links CountedAllocations.cpp.
#pragma once

#include <cstdint>

namespace Benchmarks {

// How often operator new has been called on this thread.
[[nodiscard]] std::uint64_t AllocationsOfThisThread() noexcept;

}  // namespace Benchmarks
