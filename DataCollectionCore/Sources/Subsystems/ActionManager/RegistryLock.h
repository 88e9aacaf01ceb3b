// The lock of the manager's registries, and the proof that it is held.
#pragma once

#include <vector>

#include "Common/Base/Lock.h"

namespace DataCollection::ActionManagement {

// An operation of a registry takes this as its last argument. It proves that the caller holds their lock.
using RegistryProof = const Harbor::LockGuard&;

// Makes room for one more entry, and for half as many again, so that the insertion cannot fail and seldom copies.
template <class Entry>
void ReserveForOneMore(std::vector<Entry>& entries) {
    if (entries.size() == entries.capacity()) entries.reserve(entries.capacity() * 3 / 2 + 8);
}

}  // namespace DataCollection::ActionManagement
