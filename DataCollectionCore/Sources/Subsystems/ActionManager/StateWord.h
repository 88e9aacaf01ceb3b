// The state of a subscription in one atomic word, so that an idle cycle finds out with one read that there is nothing
// to do. The words of all subscriptions lie close together: a scan over them streams memory.
#pragma once

#include <atomic>
#include <cstdint>

namespace DataCollection::ActionManagement {

using StateWord = std::atomic<std::uint32_t>;

namespace SubscriptionState {
inline constexpr std::uint32_t Started = 1;               // Start was called while the subscription was alive
inline constexpr std::uint32_t UnsubscribeRequested = 2;  // Unsubscribe was called; never reset
inline constexpr std::uint32_t Detached = 4;              // UnsubscribeInternal has run: no longer alive
inline constexpr std::uint32_t MustPoll = 8;              // an attached action does not report its marks to the word
inline constexpr std::uint32_t Marked = 16;               // an attached action may be marked
}  // namespace SubscriptionState

// Whether TriggerActionsIfNeeded could do anything.
constexpr bool NeedsTriggering(std::uint32_t state) noexcept {
    using namespace SubscriptionState;
    constexpr std::uint32_t due = Started | Marked;
    return (state & (UnsubscribeRequested | MustPoll)) != 0 || (state & due) == due;
}

// Owns a word of the module's pool, with the value 0 at first. After its end the word may be used again, but its memory
// stays readable and writable until the module is unloaded. A late write through an old pointer sets a flag of another
// subscription; the next cycle then examines that subscription and finds nothing to do.
class PooledStateWord {
public:
    // Out of memory throws std::bad_alloc.
    PooledStateWord();
    PooledStateWord(const PooledStateWord&) = delete;
    PooledStateWord& operator=(const PooledStateWord&) = delete;
    ~PooledStateWord();

    StateWord* Get() const noexcept { return word_; }
    StateWord* operator->() const noexcept { return word_; }
    std::uint32_t Load() const noexcept { return word_->load(); }
    bool Has(std::uint32_t flag) const noexcept { return (word_->load() & flag) != 0; }
    void Set(std::uint32_t flag) noexcept { word_->fetch_or(flag); }
    void Clear(std::uint32_t flag) noexcept { word_->fetch_and(~flag); }

private:
    StateWord* const word_;
};

}  // namespace DataCollection::ActionManagement
