// A library cannot be put before another one here, so only the store's own count is checked.
#include "Support/NodeLedger.h"

#include "NodeFabric/Authoring.h"

std::pair<std::uint64_t, std::uint64_t> OpenHandles() {
    std::uint64_t count = ~std::uint64_t{0};
    AcnGetOpenHandleCount(&count);
    return {count, 0};
}
