// Counts what a test program opens and closes in the node store.
#pragma once

#include <cstdint>
#include <utility>

#include "Platform/Export.h"

// The number of open handles, and a checksum over the values of all open handles and serialization contexts, which is 0
// on Windows. The checksum also differs if one handle was closed twice and another one left open. Called from any
// thread.
PLATFORM_EXPORT std::pair<std::uint64_t, std::uint64_t> OpenHandles();
