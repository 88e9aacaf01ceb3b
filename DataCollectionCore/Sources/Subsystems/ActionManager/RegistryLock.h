// The lock of the manager's registries, and the proof that it is held.
#pragma once

#include <algorithm>
#include <vector>

#include "Common/Base/Lock.h"

namespace DataCollection::ActionManagement {

// An operation of a registry takes this as its last argument. It proves that the caller holds their lock.
using RegistryProof = const Harbor::LockGuard&;

// Makes room for one more entry by doubling, as an insertion at the end would, so that the insertion cannot fail.
template <class Entry>
void ReserveForOneMore(std::vector<Entry>& entries) {
    if (entries.size() == entries.capacity()) entries.reserve(std::max<std::size_t>(2 * entries.capacity(), 8));
}

}  // namespace DataCollection::ActionManagement
