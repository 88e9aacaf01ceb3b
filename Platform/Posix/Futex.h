// Sleeping on a word of memory until it changes.
#pragma once

#include <linux/futex.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdint>

namespace Platform::Posix {

using FutexWord = std::atomic_ref<std::uint32_t>;
static_assert(FutexWord::is_always_lock_free);

// Sleeps while the word has that value, at most until the moment of the monotonic clock (null: for ever). Returns false
// when the time has come. May return early; leaves errno as it was.
inline bool FutexWait(std::uint32_t& word, std::uint32_t value, const timespec* deadline) noexcept {
    const int errnoBefore = errno;
    // The form with a mask is the one whose time is absolute.
    const long result =
        syscall(SYS_futex, &word, FUTEX_WAIT_BITSET_PRIVATE, value, deadline, nullptr, FUTEX_BITSET_MATCH_ANY);
    const bool timedOut = result == -1 && errno == ETIMEDOUT;
    errno = errnoBefore;
    return !timedOut;
}

// Wakes up to that many sleepers. Returns whether there was one.
inline bool FutexWake(std::uint32_t& word, int count) noexcept {
    return syscall(SYS_futex, &word, FUTEX_WAKE_PRIVATE, count) > 0;
}

}  // namespace Platform::Posix
