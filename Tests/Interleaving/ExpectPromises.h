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

// Ends the process after a failure: the threads of that run are stuck in the code under test. A single seed runs after
// seed 0, as it does among the others: the first run of a process also builds what is built once, and takes more steps.
inline void ExpectPromisesKept(const std::function<void()>& scenario) {
    const auto run = [&](std::uint64_t seed) {
        if (const auto failure = Run(seed, scenario)) {
            ADD_FAILURE() << *failure;
            std::cout.flush();
            std::_Exit(EXIT_FAILURE);
        }
        if (testing::Test::HasFailure()) std::cout << "seed " << seed << '\n';
        return !testing::Test::HasFailure();
    };
    if (!run(0)) return;
    if (const std::uint64_t seed = NumberFromEnvironment("INTERLEAVING_SEED", 0); seed != 0) {
        run(seed);
        return;
    }
    const std::uint64_t count = NumberFromEnvironment("INTERLEAVING_SEEDS", USUAL_SEED_COUNT);
    for (std::uint64_t seed = 1; seed < count && run(seed); ++seed) continue;
}

}  // namespace Interleaving
