// Scope guards over the locks.
#pragma once

#include <mutex>
#include <shared_mutex>

namespace Harbor {

using CriticalSection = std::recursive_mutex;
using ReaderWriterLock = std::shared_mutex;

using CriticalSectionGuard = std::lock_guard<CriticalSection>;
using SharedGuard = std::shared_lock<ReaderWriterLock>;
using ExclusiveGuard = std::unique_lock<ReaderWriterLock>;

}  // namespace Harbor
