// Scope guards over the locks.
#pragma once

#include <mutex>
#include <shared_mutex>

#include "Common/Base/Lock.h"

namespace Harbor {

using CriticalSectionGuard = std::lock_guard<CriticalSection>;
using SharedGuard = std::shared_lock<ReaderWriterLock>;
using ExclusiveGuard = std::unique_lock<ReaderWriterLock>;

}  // namespace Harbor
