// Makes one allocation of a call fail.
#pragma once

#include <gtest/gtest.h>

#include <utility>

// The number of allocations of this thread before the one that fails; negative if none does.
extern constinit thread_local int AllocationsUntilFailure;

// Makes the call, in which the allocation of that number fails. Returns whether the call made so many. The test fails
// if the call throws.
template <class Call>
bool WithFailingAllocation(int number, const Call& call) {
    AllocationsUntilFailure = number;
    EXPECT_NO_THROW(call());
    return std::exchange(AllocationsUntilFailure, -1) < 0;
}
