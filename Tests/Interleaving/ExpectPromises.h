// A scenario as a test: so many seeds as the build allows, or those that the environment names.
//
//     INTERLEAVING_SEEDS=100000 ./ManagerInterleavingTests --gtest_filter=...    that many seeds
//     INTERLEAVING_SEED=4711 ./ManagerInterleavingTests --gtest_filter=...       this one
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <string>

#include "Interleaving/Interleaving.h"

namespace Interleaving {

inline std::uint64_t NumberFromEnvironment(const char* name, std::uint64_t otherwise) {
    const char* const text = std::getenv(name);
    return text != nullptr ? std::stoull(text) : otherwise;
}

// Ends the process after a failure: the threads of that run stand in the code under test.
inline void ExpectPromisesKept(const std::function<void()>& scenario) {
    const std::uint64_t first = NumberFromEnvironment("INTERLEAVING_SEED", 0);
    const bool isOneSeed = std::getenv("INTERLEAVING_SEED") != nullptr;
    const std::uint64_t count = isOneSeed ? 1 : NumberFromEnvironment("INTERLEAVING_SEEDS", USUAL_SEED_COUNT);
    for (std::uint64_t seed = first; seed < first + count; ++seed) {
        if (const auto failure = Run(seed, scenario)) {
            ADD_FAILURE() << *failure;
            std::cout.flush();
            std::_Exit(EXIT_FAILURE);
        }
        ASSERT_FALSE(testing::Test::HasFailure()) << "seed " << seed;
    }
}

}  // namespace Interleaving
