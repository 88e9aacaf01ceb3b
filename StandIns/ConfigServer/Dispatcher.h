// The thread of the service. It passes reports to callbacks, and none after the end of their watch.
//
// The service, its subscriptions and the thread share it; any of them may be the last owner. Any thread may call any
// operation. The lock is never held while a callback runs.
#pragma once

#include <deque>
#include <list>
#include <memory>
#include <unordered_map>
#include <vector>

#include "Common/Base/ConditionVariable.h"
#include "Common/Base/Thread.h"
#include "Harbor/ComponentPtr.h"
#include "Watch.h"

namespace ConfigServer {

struct PendingReport {
    std::shared_ptr<Watch> watch;
    Harbor::ComponentPtr<Harbor::IACNodeModifyEnum> modifications;
};

class Dispatcher : public std::enable_shared_from_this<Dispatcher> {
public:
    // Starts the thread. Must be called once. Throws HRX if there is no thread.
    void Run();
    // Ends every watch and drops all reports. Must be called once, after Run. Waits for the end of the thread. If it is
    // called on that thread, by a callback, it does not wait: the thread ends after the callback has returned.
    void Stop() noexcept;

    void AddWatch(std::shared_ptr<Watch> watch);
    // Returns WatchEnded if the watch has ended.
    [[nodiscard]] Harbor::HRESULT StartWatch(Watch& watch) noexcept;
    // Ends the watch of a subscription and waits for its running callback, except on the thread itself. Returns
    // 0x80070490 if there is no such watch, or, after the same wait, if it has already ended.
    [[nodiscard]] Harbor::HRESULT EndWatch(const Harbor::IACModifySubscription* subscription) noexcept;
    // Ends the watch like EndWatch and removes it. For the destruction of its subscription.
    void ForgetWatch(const Watch& watch) noexcept;

    [[nodiscard]] std::vector<std::shared_ptr<Watch>> WatchesOf(std::u16string_view path, std::int64_t changes);
    // Appends the reports to the queue: all, or none if memory runs out.
    void Post(std::vector<PendingReport> reports);

private:
    void Serve() noexcept;
    void ServeOldest(Harbor::UniqueLock& lock);
    void WaitForCallback(const Watch& watch, Harbor::UniqueLock& lock) noexcept;

    using WatchList = std::list<std::shared_ptr<Watch>>;

    Harbor::Thread thread_;
    std::shared_ptr<Dispatcher> self_;  // for the thread, which takes it

    Harbor::Lock lock_;  // guards all that follows
    Harbor::ConditionVariable workArrived_;
    Harbor::ConditionVariable reportServed_;
    WatchList watches_;  // of the subscriptions that are alive, in the order in which they were added
    std::unordered_map<const Harbor::IACModifySubscription*, WatchList::iterator> watchOf_;
    std::deque<PendingReport> reports_;  // oldest first
    const Watch* served_ = nullptr;      // whose report is under way
    Platform::DWORD threadId_ = 0;       // of the thread, once it runs
    bool stopping_ = false;
};

}  // namespace ConfigServer
